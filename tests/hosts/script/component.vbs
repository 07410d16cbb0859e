' The test component under VBScript: what scripts do with collections, arguments and objects.
Option Explicit

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Class ScriptObject
    Public Value
    Public Function Twice(x)
        Twice = x * 2
    End Function
    Public Sub Change(ByRef x)
        x = x & " changed"
    End Sub
    Public Sub Break(x)
        Err.Raise 1234, "the script", "broken by the script"
    End Sub
End Class

Dim items, entry, all
Set items = CreateObject("OrvTestComponent.TestItems")
items.Add "first"
items.Add 2
items.Add "zero", 1
Check "count", items.Count, 3
Check "default member", items(1), "zero"
Check "item", items.Item(3), 2
items(3) = "third"
Check "assigned through the default member", items(3), "third"
all = ""
For Each entry In items
    all = all & entry & ";"
Next
Check "For Each", all, "zero;first;third;"

Dim probe
Set probe = CreateObject("OrvTestComponent.TestProbe")
Check "defaults", probe.Join("a"), "a|7|-|хвост"
Check "all arguments", probe.Join("a", 1, "c", "d", True), "A|1|C|D"
Check "argument left out between", probe.Join("a", , , "d"), "a|7|-|d"
Check "arguments of the default member of a result", probe.Items.Count, 0
probe.Items.Add "x"
Check "forwarded to the default member", probe.Items(1), "x"

Dim v
v = 5
probe.ChangeLong v
Check "by reference, number", v, 6
v = "text"
probe.ChangeText v
Check "by reference, text", v, "text!"
v = "any"
probe.ChangeVariant v
Check "by reference, any value", v, "any?"
Dim o
probe.ChangeItems o
Check "by reference, variable that was empty", o.Count, 1
probe.ChangeItems o
Check "by reference, object", o.Count, 2
Check "variable arguments", probe.TypesOf(1, "s"), "2 8"
Check "enumeration", probe.NextShape, 7
Dim numbers
numbers = probe.Counted(3)
' Scripts can hand an array of Longs on, but not index it.
Check "array result", VarType(numbers), 8195

Dim mine
Set mine = New ScriptObject
mine.Value = "from the script"
Check "read from a script's object", probe.ReadFrom(mine, "Value"), "from the script"
probe.WriteTo mine, "Value", 42
Check "written to a script's object", mine.Value, 42
Check "called on a script's object", probe.CallOn(mine, "Twice", 21), 42

On Error Resume Next
probe.Fail 777, "told"
Check "error number", Err.Number, 777
Check "error description", Err.Description, "told"
Err.Clear
probe.NotBuilt
Check "unbuilt member", Err.Number, 445
Err.Clear
v = items.Item(99)
Check "index out of range", Err.Number, 9
Err.Clear
probe.ReadFrom mine, "NoSuchMember"
Check "unknown member of a script's object", Err.Number, 438
Err.Clear
probe.Join
Check "argument not optional", Err.Number, 449
Err.Clear
On Error GoTo 0

If failures = 0 Then WScript.Echo "script ended well"
