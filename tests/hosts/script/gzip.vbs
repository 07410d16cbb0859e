' The gzip reader under VBScript: by ProgID, late bound.
Option Explicit

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Function Bytes(list)
    Dim each_
    For Each each_ In list
        Bytes = Bytes & Chr(each_)
    Next
End Function

Dim archive, member
Set archive = CreateObject("OrvBase0301.orvGZipArchive")
Check "IsLibraryAvailable", archive.IsLibraryAvailable, True

' A file of the text "Orvane" with the name "a.txt".
member = Bytes(Array(31, 139, 8, 8, 16, 0, 0, 0, 2, 11, 97, 46, 116, 120, 116, 0, 243, 47, 42, 75, 204, 75, 5, 0, 28, 39, 57, 13, 6, 0, 0, 0))
Check "UncompressData", archive.UncompressData(member), 0
Check "UncompressedData", archive.UncompressedData, "Orvane"
Check "FileName", archive.FileName, "a.txt"
Check "Comment", archive.Comment & archive.ExtraData, ""
Check "magic bytes", archive.ID1 & " " & archive.ID2, "31 139"
Check "CompressionMethod", archive.CompressionMethod, 8
Check "Flags", archive.Flags, 8
Check "ModificationTime", archive.ModificationTime, 16
Check "ExtraFlags", archive.ExtraFlags, 2
Check "OS", archive.OSCodeToString(archive.OS), "NTFS filesystem (NT)"
Check "HeaderCRC16", archive.HeaderCRC16, 0
Check "DataLen", archive.DataLen, 6
Check "DataCRC32", archive.DataCRC32, 221849372
Check "type of ID1", VarType(archive.ID1), 17
Check "type of HeaderCRC16", VarType(archive.HeaderCRC16), 2

Check "damaged member", archive.UncompressData(member & "x"), 2
Check "cleared", archive.ID1 & archive.UncompressedData, "0"
Check "OS after Clear", archive.OS, 255
Check "no member", archive.UncompressData("text"), 1
Check "text of a result", archive.UncompressErrorCodeToString(7), "Неверное значение длины даных"
Check "text of no result", archive.UncompressErrorCodeToString(8), archive.UncompressErrorCodeToString(99)

On Error Resume Next
archive.UncompressData Bytes(Array(31, 139))
Check "magic bytes alone", Err.Number, 5
On Error GoTo 0
If failures = 0 Then WScript.Echo "script ended well"
