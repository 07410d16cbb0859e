' The text work of the network classes under VBScript: by ProgID, late bound.
Option Explicit

Dim failures
failures = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        failures = failures + 1
        WScript.Echo "failed: " & what & ": " & actual & " instead of " & expected
    End If
End Sub

Class HostApplication
    Public Title
    Public Major
    Public Minor
    Public Revision
End Class

Const Boundary = "EEDBA9E2-7BCD-44F8-8E15-F0314AF5AB43"

Dim request, protocol, address, port, name
Set request = CreateObject("OrvBase0301.orvHTTPRequest")
Check "CrackURL", request.CrackURL("http://host:8080/a?b=c", protocol, address, port, name), True
Check "protocol", protocol, "http://"
Check "address", address, "host"
Check "port", port, 8080
Check "object name", name, "/a?b=c"
Check "CrackURL without outputs", request.CrackURL("http://host"), True
Check "CrackURL with one output", request.CrackURL("http://host:81", , , port), True
Check "port alone", port, 81
Check "CrackURL of no URL", request.CrackURL("host/path", protocol), False
Check "protocol as it was", protocol, "http://"
Check "default headers", request.DefaultHTTPHeaders, "Accept: */*" & vbCrLf & "X-Devote-To: Illis ^_^!" & vbCrLf
Check "cookies", request.GetFormattedCookies("a = 1; path=/" & vbCrLf & "b=2"), "a=1; b=2; "
request.CookiesIn = "a=1"
Check "CookiesIn", request.CookiesIn, "a=1"
Check "CookiesOut", request.CookiesOut, ""
Check "IsError of a new request", request.IsError, True
Check "LastRC of a new request", request.LastRC, 0

Dim application
Set application = New HostApplication
application.Title = "иц"
application.Major = 1
application.Minor = "2"
application.Revision = 3
Check "user agent", Left(request.BuildUserAgent(application), 14), "JOj 1.02.0003 "

Dim headers, form
headers = "X: y"
form = request.BuildForm(headers, Array("a", 1, "b", "2"))
Check "headers of a form", headers, "X: y" & vbCrLf & "Content-Type: multipart/form-data; boundary=" & Boundary & vbCrLf
Check "end of a form", Right(form, 45), vbCrLf & "2" & vbCrLf & "--" & Boundary & "--"
Check "form of an odd array", request.BuildForm(headers, Array("a")), ""
Check "form of an empty array", request.BuildForm(headers, Array()), ""

Dim builder
Set builder = CreateObject("OrvBase0301.HTTPFormBuilder")
Check "empty form", builder.FormData, "--" & Boundary & "--"
builder.AddTextElement "a", 1
builder.AddTextElement "b", "2"
Check "built form", builder.FormData, form
builder.Clear
builder.AddElement "a", "data", , , "charset without a type"
Check "element", builder.FormData, "--" & Boundary & vbCrLf & "Content-Disposition: form-data; name=""a""" & vbCrLf & vbCrLf & "data" & vbCrLf & "--" & Boundary & "--"
Check "header of the form", builder.Header, "Content-Type: multipart/form-data; boundary=" & Boundary & vbCrLf

Dim proxy
Set proxy = CreateObject("OrvBase0301.ProxySettings")
proxy.HTTP_AccessType = 3
proxy.HTTP_Address = "proxy:3128"
proxy.HTTP_BypassLocal = True
Check "access type", proxy.HTTP_AccessType, 3
proxy.HTTP_AccessType = 2
Check "unknown access type", proxy.HTTP_AccessType, 0
Check "no proxy", request.ProxySettings Is Nothing, True
Set request.ProxySettings = proxy
Check "proxy", request.ProxySettings.HTTP_Address, "proxy:3128"
Set request.ProxySettings = Nothing
Check "no proxy again", request.ProxySettings Is Nothing, True

application.Title = "Orvane script proxy"
proxy.HTTP_Password = "secret"
Check "saved proxy", proxy.HTTP_SaveProxySettings2(, application), True
Set proxy = CreateObject("OrvBase0301.ProxySettings")
Check "loaded proxy", proxy.HTTP_LoadProxySettings2(, application), True
Check "loaded password", proxy.HTTP_Password, "secret"
Check "loaded address", proxy.HTTP_Address, "proxy:3128"
Check "loaded flag", proxy.HTTP_BypassLocal, True
Check "proxy of another key", proxy.HTTP_LoadProxySettings2("Other", application), False
Check "reset address", proxy.HTTP_Address, ""
CreateObject("OrvBase0301.orvRegistry").DeleteKeyRecurse &H80000001, "Software\Tarn Hollow\Orvane\Orvane script proxy"

On Error Resume Next
request.BufferSize = 0
Check "buffer size of nothing", Err.Number, 5
Err.Clear
Check "buffer size", request.BufferSize, 1024
request.BuildUserAgent Nothing
Check "application that is Nothing", Err.Number, 91
Err.Clear
Set request.ProxySettings = builder
Check "another object for the proxy", Err.Number, 13
Err.Clear
form = request.BuildForm(headers, Array("a", Null))
Check "Null in a form", Err.Number, 94
Err.Clear
request.Execute "host"
Check "unbuilt member", Err.Number, 445
Err.Clear
CreateObject "OrvBase0301.IHTTPRequestCallback"
Check "internal class can't be created", Err.Number <> 0, True
Err.Clear
On Error GoTo 0

If failures = 0 Then WScript.Echo "script ended well"
