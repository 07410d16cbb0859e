' The registry under VBScript: by ProgID, late bound.
Option Explicit

Const CurrentUser = &H80000001
Const rtString = 0
Const rtLong = 1
Const rtBoolean = 3

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Dim registry, path, success, existed, names, name, all
Set registry = CreateObject("OrvBase0301.orvRegistry")
path = "Software\Orvane script host"
registry.DeleteKeyRecurse CurrentUser, path

Check "IsKeyExist at first", registry.IsKeyExist(CurrentUser, path), False
Check "LastRegError", registry.LastRegError, 2
Check "names of a missing key", registry.GetSubKeysNames(CurrentUser, path) Is Nothing, True
Check "CreateKey", registry.CreateKey(CurrentUser, path & "\one", existed), True
Check "KeyAlreadyExist of a new key", existed, False
Check "CreateKey again", registry.CreateKey(CurrentUser, path & "\two"), True
Check "SetValue", registry.SetValue(CurrentUser, path, "text", rtString, "value", existed), True
Check "KeyAlreadyExist", existed, True
Check "GetValue", registry.GetValue(CurrentUser, path, "text", rtString, success), "value"
Check "Success", success, True
Check "GetValue without options", registry.GetValue(CurrentUser, path, "text"), "value"
Check "SetValue of an Integer", registry.SetValue(CurrentUser, path, "number", rtLong, 5), True
Check "the number", registry.GetValue(CurrentUser, path, "number", rtLong), 5
Check "SetValue of a text as a number", registry.SetValue(CurrentUser, path, "number", rtLong, "6"), False
Check "SetValue of a Boolean", registry.SetValue(CurrentUser, path, "flag", rtBoolean, True), True
Check "the Boolean", registry.GetValue(CurrentUser, path, "flag", rtBoolean), True
Check "its text", registry.GetValue(CurrentUser, path, "flag"), "True"
Check "a missing value", registry.GetValue(CurrentUser, path, "none", rtLong, success), 0
Check "Success of a missing value", success, False
Check "default value", registry.SetValue(CurrentUser, path), True
Check "default value read", registry.GetValue(CurrentUser, path, , , success), ""
Check "Success of the default value", success, True

Set names = registry.GetSubKeysNames(CurrentUser, path)
Check "Count", names.Count, 2
Check "Item", names.Item(1), "one"
Check "the default member", names(2), "two"
all = ""
For Each name In names
    all = all & name & ";"
Next
Check "For Each", all, "one;two;"
names.Add "three", "key"
Check "an item by its key", names("KEY"), "three"
names.Remove 1
Check "Remove", names.Count, 2
all = ""
For Each name In registry.GetValuesNames(CurrentUser, path)
    all = all & "[" & name & "]"
Next
Check "names of the values", Len(all), Len("[text][number][flag][]")

Check "DeleteValue", registry.DeleteValue(CurrentUser, path, "text"), True
Check "DeleteKey of a key with sub-keys", registry.DeleteKey(CurrentUser, path), False
Check "its error", registry.LastRegError, 1020
Check "DeleteKey", registry.DeleteKey(CurrentUser, path & "\one"), True
Check "DeleteKeyRecurse", registry.DeleteKeyRecurse(CurrentUser, path), True
Check "IsKeyExist at last", registry.IsKeyExist(CurrentUser, path), False

If failures = 0 Then WScript.Echo "script ended well"
