' Settings and the start at logon, as a script uses them. The last line tells that nothing stopped it.
Option Explicit

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Const rtString = 0
Const rtLong = 1
Const rtBoolean = 3
Const HKEY_CURRENT_USER = &H80000001

Randomize
Dim unique
unique = "Orvane script " & CLng(Rnd * 1000000000)

Class Application
    Public Title
    Public Major
    Public Minor
End Class

Dim app, settings, registry, success, value
Set app = New Application
app.Title = unique
app.Major = 1
app.Minor = 2
Set settings = CreateObject("OrvBase0301.orvOrvaneSettings")
Set registry = CreateObject("OrvBase0301.orvRegistry")

Check "default path", settings.GetSettingPath(), "Software\Tarn Hollow\Orvane\Orvane - Byaka\Version 0.0"
Check "path", settings.GetSettingPath(unique, 1, 2, "a\b"), "Software\Tarn Hollow\Orvane\" & unique & "\Version 1.2\a\b"
Check "path of an application", settings.GetSettingPath2(app), "Software\Tarn Hollow\Orvane\" & unique & "\Version 1.2"

Check "value that was never saved", settings.LoadSetting2("k", "n", rtString, app, "fallback"), "fallback"
success = True
value = settings.LoadSetting2("k", "n", rtLong, app, , , success)
Check "empty value of a type", VarType(value) & value, "30"
Check "Success by reference", success, False

Check "SaveSetting2", settings.SaveSetting2("k", "n", rtString, "from 1.2", app), True
Check "SaveSetting2 of a Boolean", settings.SaveSetting2("k", "b", rtBoolean, True, app), True
Check "SaveSetting2 of another type", settings.SaveSetting2("k", "l", rtLong, "5", app), False
value = settings.LoadSetting2("k", "n", rtString, app, , , success)
Check "LoadSetting2", value, "from 1.2"
Check "Success by reference of a value", success, True

app.Minor = 10
Check "older version", settings.LoadSetting2("k", "n", rtString, app), "from 1.2"
Check "older version's Boolean", settings.LoadSetting2("k", "b", rtBoolean, app), True
Check "SaveSetting2 of the newer version", settings.SaveSetting2("k", "n", , "from 1.10", app), True
app.Major = 2
app.Minor = 0
Check "newest older version", settings.LoadSetting2("k", "n", rtString, app), "from 1.10"
app.Major = 1
Check "newer versions are not used", settings.LoadSetting2("k", "n", rtString, app, "fallback"), "fallback"
Check "explicit form", settings.LoadSetting("k", "n", rtString, unique, 1, 5), "from 1.2"
Check "object as a default", settings.LoadSetting("k", "n", rtString, unique, 0, 0, settings).GetSettingPath("t", 1, 2), settings.GetSettingPath("t", 1, 2)

On Error Resume Next
settings.GetSettingPath2
Check "no application", Err.Number, 91
Err.Clear
app.Major = "one"
settings.SaveSetting2 "k", "n", rtString, "x", app
Check "version that is no number", Err.Number, 13
Err.Clear
settings.SaveFormPlacement2 app
Check "unbuilt member", Err.Number, 445
Err.Clear
On Error GoTo 0

Check "clean-up", registry.DeleteKeyRecurse(HKEY_CURRENT_USER, "Software\Tarn Hollow\Orvane\" & unique), True

Dim autorun
Set autorun = CreateObject("OrvBase0301.orvAutorunSupport")
Check "for the current user at first", autorun.ForCurrentUserOnly, True
Check "not registered", autorun.IsInAutorun(unique), False
Check "AddToAutorun", autorun.AddToAutorun(unique, "x"), True
Check "IsInAutorun", autorun.IsInAutorun(unique), True
Check "GetAutorunString", autorun.GetAutorunString(unique), "x"
autorun.ForCurrentUserOnly = False
Check "other root", autorun.IsInAutorun(unique), False
autorun.ForCurrentUserOnly = True
Check "AddToAutorun without a command line", autorun.AddToAutorun(unique), True
Check "name of the program", LCase(Right(autorun.GetAutorunString(unique), 11)), "cscript.exe"
Check "DeleteFromAutorun", autorun.DeleteFromAutorun(unique), True
Check "deleted", autorun.IsInAutorun(unique), False
Check "AddToAutorun without a name", autorun.AddToAutorun("", "x"), False

If failures = 0 Then WScript.Echo "script ended well"
