' The library under VBScript: by ProgID, late bound. The last line tells that nothing stopped it.
Option Explicit

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Dim app, line
Set app = CreateObject("OrvBase0301.orvMain")
Set line = app.CommandLine

line.SetNewCommandLine "one ""two three"" four", True
Check "count", line.Count, 3
Check "item", line.Item(1), "two three"
line.SetNewCommandLine "program argument", False
Check "optional argument given", line.Count, 1
line.SetNewCommandLine "argument"
Check "optional argument left out", line.Count, 1
Check "name without regard to case", line.COUNT, 1

On Error Resume Next
line.Item -2
Check "error number", Err.Number, 9
Check "error source", Err.Source, "OrvBase0301"
Check "error has a description", Len(Err.Description) > 0, True
Err.Clear
app.LoadPictureEx "no such file"
Check "missing file", Err.Number, 53
Err.Clear
app.FixFonts Nothing
Check "unbuilt member", Err.Number, 445
Err.Clear
app.NoSuchMember
Check "unknown member", Err.Number, 438
Err.Clear
CreateObject "OrvBase0301.CommandLineParser"
Check "internal class can't be created", Err.Number <> 0, True
Err.Clear
On Error GoTo 0

Check "Cyrillic text", Left(app.GetLoadPictureExFilter(), 9), "Картинки|"
Check "pattern with cursors", InStr(app.GetLoadPictureExPattern(False, True), "*.CUR;") > 0, True

Dim info
Set info = CreateObject("OrvBase0301.PictureInfo")
Check "new PictureInfo", info.GetPictureTypeName, "Nothing"
Check "enumeration", info.PictureType, 0

Dim guard, copy
Set guard = CreateObject("OrvBase0301.orvAlone")
Set copy = CreateObject("OrvBase0301.orvAlone")
Check "first copy in the system", guard.IsAlone("orvane script"), True
Check "second copy in the system", copy.IsAlone("orvane script"), False
Check "first copy on the desktop", guard.IsAloneOnDesktop("orvane script"), True
Check "second copy on the desktop", copy.IsAloneOnDesktop("orvane script"), False
Check "desktop's test gave the system's name up", copy.IsAlone("orvane script"), True
Check "first copy of the user", guard.IsAloneAtUser("orvane script"), True
Set guard = Nothing
Set copy = Nothing

Dim sorter, list, plain, i
Set sorter = CreateObject("OrvBase0301.orvSort")
list = Array(3, "10", 2.5, 1)
sorter.QuickSort list
Check "QuickSort", list(0) & " " & list(2) & " " & list(3), "1 3 10"
list = Array("b", "a", "Z")
sorter.InsertionSort list
Check "InsertionSort", list(0) & list(1) & list(2), "Zab"
list = Array(Null, 2, 1)
sorter.QuickSort list
Check "QuickSort with Null", UBound(list), 2
ReDim list(999)
For i = 0 To 999
    list(i) = (i * 7919) Mod 1000
Next
sorter.QuickSort list
For i = 0 To 999
    Check "sorted element", list(i), i
Next

Class HostCollection
    Public Items
    Public Property Get Count
        Count = UBound(Items) + 1
    End Property
    Public Property Get Item(index)
        Item = Items(index - 1)
    End Property
End Class
Set list = New HostCollection
list.Items = Array(3, 1, 2)
sorter.QuickSortC list
sorter.InsertionSortC_ByLong list
sorter.QuickSortC_ByString list
Check "collection as it was", list.Item(1) & list.Item(2) & list.Item(3), "312"

On Error Resume Next
list.Items = Array()
sorter.QuickSortC list
Check "empty collection", Err.Number, 9
Err.Clear
list.Items = Array(1, "word")
sorter.QuickSortC_ByLong list
Check "no Long", Err.Number, 13
Err.Clear
plain = 5
sorter.QuickSort plain
Check "no array", Err.Number, 13
Err.Clear
On Error GoTo 0

Dim numbers, texts, position, found, joined
numbers = app.ArrayLong("1", 2.6, "no number", 1)
Check "ArrayLong", VarType(numbers), 8195
texts = app.ArrayBSTR("a", 2)
Check "ArrayBSTR", VarType(texts), 8200
found = False
position = app.InArray(numbers, "3", , , found)
Check "InArray", position, 1
Check "IsFound by reference", found, True
Check "IsInArray", app.IsInArray(numbers, 1, 1, 2), False
Check "element that is no number", app.IsInArray(numbers, 0, 2, 2), True

Class ScriptCollection
    Public Property Get Count
        Count = 3
    End Property
    Public Function Item(index)
        Select Case index
        Case 1: Item = "one"
        Case 2: Err.Raise 1234, "the script", "no such item"
        Case 3: Item = 3
        End Select
    End Function
End Class

Dim entries
Set entries = New ScriptCollection
found = False
position = app.InCollection(entries, "one", , , found)
Check "InCollection", position, 1
Check "IsFound of a collection", found, True
Check "IsInCollection", app.IsInCollection(entries, 3, 3), True
Check "JoinCollection", app.JoinCollection(entries, "-"), "one--3"
On Error Resume Next
joined = app.JoinCollection(entries, "-", True)
Check "JoinCollection with errors", Err.Number, 1234
Err.Clear
found = True
position = app.InArray(numbers, 5, 0, 9, found)
Check "InArray past the end", Err.Number, 9
Err.Clear
On Error GoTo 0

Dim buffer
Set buffer = CreateObject("OrvBase0301.orvStringBuffer")
buffer.Alloc 10
buffer.AddText "abc"
Check "padded buffer", buffer.Value, "abc       "
buffer.Trim
Check "trimmed buffer", buffer.Value & buffer.Size, "abc3"
buffer.Alloc 5, 65
Check "buffer of a character code", buffer.Value, "AAAAA"
buffer.Value = "new"
buffer.AddText 12
Check "buffer with a value", buffer.Value, "new12"

Dim watch
For Each watch In Array(CreateObject("OrvBase0301.orvBenchMark"), CreateObject("OrvBase0301.orvBenchMarkHP"))
    Check "new stopwatch", watch.GetTickDifferenceMS, 0
    Check "passes of a new stopwatch", watch.toString(4), "0 ms. / 4 (0 ms.)"
    watch.FirstMark
    watch.LaskMark
    Check "stopwatch", watch.GetTickDifferenceMS >= 0, True
Next
If failures = 0 Then WScript.Echo "script ended well"
