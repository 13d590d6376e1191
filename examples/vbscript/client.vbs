' A late-bound client of the module. Register the module first, then:
'
'   cscript //nologo client.vbs
'
' Sets and reads the seven settings, asks for the checksum of the module's file. The last line is
' "done": a caller tests for it, since not every script host tells of a failed script by its exit
' code.

Option Explicit

Dim control
Set control = CreateObject("QuorvaneSecurity.SecurityCtrl")

control.ServerAddress = "reports.example.com"
control.ServerPort = 8080
control.ServerFile = "/scripts/collect.asp"
control.UseProxy = True
control.ProxyServer = "proxy.example.com:3128"
control.UserName = "clerk"
control.Password = "tea and biscuits"

WScript.Echo "ServerAddress=" & control.ServerAddress
WScript.Echo "ServerPort=" & control.ServerPort
WScript.Echo "ServerFile=" & control.ServerFile
WScript.Echo "UseProxy=" & CInt(control.UseProxy)
WScript.Echo "ProxyServer=" & control.ProxyServer
WScript.Echo "UserName=" & control.UserName
WScript.Echo "Password=" & String(8, "*") & " (" & Len(control.Password) & " characters)"

' A value that does not fit is refused, and the setting stays.
On Error Resume Next
control.ServerPort = 70000
WScript.Echo "ServerPort=70000 gives error " & Err.Number
Err.Clear
On Error GoTo 0
WScript.Echo "ServerPort=" & control.ServerPort

WScript.Echo "GetCRCValue=" & control.GetCRCValue
WScript.Echo "done"
