' Looks whether the control of QuorvaneSecurity.ocx is installed and works; prints a table.
'
'   cscript //nologo check-install.vbs [CRC]        (check-install.cmd picks the right cscript)
'
' CRC is the published one: signed, unsigned, or hexadecimal with 0x before it. Without it the numbers in
' published-crc.txt beside this script are taken, one at the start of each line; any of them will do.
' Exit code: 100 all is well, 1 something is wrong, 2 wrong arguments. Not 0: a script host may answer 0 for a script
' that broke off.

Option Explicit

Const kAllIsWell = 100
Const kSomethingIsWrong = 1
Const kWrongArguments = 2

Const kProgId = "QuorvaneSecurity.SecurityCtrl"
Const kClassId = "{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}"
Const kLibraryVersion = "TypeLib\{D87A57E5-81C3-11D5-97D8-0050BA8CAAD8}\1bb.10"
Const kHelpFile = "SecurityOCX.chm"
Const kPublished = "published-crc.txt"

Dim shell, files, advice, wrong, control, module
Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")
advice = ""
wrong = 0

Dim published
published = PublishedNumbers()

Row "CHECK", "RESULT", "FOUND"
If Is32Bit() Then
  CheckRegistration
  CheckCreation
  If Not control Is Nothing Then
    CheckProperties
    CheckNumber
  End If
  CheckHelp
End If
WScript.Echo ""
If wrong = 0 Then
  WScript.Echo "All is well."
  WScript.Quit kAllIsWell
End If
WScript.Echo "What to do:" & advice
WScript.Quit kSomethingIsWrong

' --- the table -------------------------------------------------------------------------------------------------------

Sub Row(what, result, found)
  WScript.Echo Left(what & Space(18), 18) & Left(result & Space(8), 8) & found
End Sub

Sub Good(what, found)
  Row what, "ok", found
End Sub

Sub Bad(what, found, remedy)
  Row what, "WRONG", found
  advice = advice & vbCrLf & "- " & remedy
  wrong = wrong + 1
End Sub

Function Environment(name)
  Environment = shell.Environment("PROCESS")(name)
End Function

' --- the checks ------------------------------------------------------------------------------------------------------

Function Is32Bit()
  Dim architecture
  architecture = Environment("PROCESSOR_ARCHITECTURE")
  Is32Bit = (LCase(architecture) = "x86")
  If Is32Bit Then
    Good "Script host", "32 bits"
  Else
    Bad "Script host", "64 bits (" & architecture & ")", _
        "This is the 64-bit script host, and the control has 32 bits: the two cannot meet. Start scripts with the" & _
        vbCrLf & "  32-bit one: " & Environment("SystemRoot") & "\SysWOW64\cscript.exe SCRIPT"
  End If
End Function

' The unnamed value of a key below HKEY_CLASSES_ROOT; empty when it is not there.
Function Registered(key)
  Registered = ""
  On Error Resume Next
  Registered = shell.RegRead("HKCR\" & key & "\")
  On Error GoTo 0
End Function

Function RegisterIt()
  RegisterIt = "As administrator, in the module's folder: " & _
      Environment("SystemRoot") & "\SysWOW64\regsvr32 QuorvaneSecurity.ocx" & vbCrLf & _
      "  (on a 32-bit Windows: regsvr32 QuorvaneSecurity.ocx). A program that brings its own manifest needs no" & vbCrLf & _
      "  registration; scripts do."
End Function

Sub CheckRegistration()
  Dim class_id
  class_id = Registered(kProgId & "\CLSID")
  module = Registered("CLSID\" & kClassId & "\InprocServer32")
  If class_id = "" Or module = "" Then
    Bad "Registration", kProgId & " is not registered", RegisterIt()
    Exit Sub
  End If
  If LCase(class_id) <> LCase(kClassId) Then
    Bad "Registration", kProgId & " is another class: " & class_id, RegisterIt()
    Exit Sub
  End If
  If Not files.FileExists(module) Then
    Bad "Registration", "no such file: " & module, "The module is not where it was registered. " & RegisterIt()
    Exit Sub
  End If
  Good "Registration", module
  If Registered(kLibraryVersion & "\409\win32") = "" Then
    Bad "Type library", "not registered", RegisterIt()
  Else
    Good "Type library", "version 443.16"
  End If
End Sub

Sub CheckCreation()
  Dim failure
  Set control = Nothing
  On Error Resume Next
  Set control = CreateObject(kProgId)
  failure = Err.Number & " " & Err.Description
  On Error GoTo 0
  If control Is Nothing And module = "" Then
    Row "Creation", "WRONG", "error " & failure  ' what to do about it was said above
  ElseIf control Is Nothing Then
    Bad "Creation", "error " & failure, "The control cannot be created; its file may be blocked or damaged: get it again."
  Else
    Good "Creation", kProgId
  End If
End Sub

' Puts a value, reads it back, and puts the old one back.
Sub TryProperty(name, value, failures)
  Dim old, back
  On Error Resume Next
  Err.Clear
  Select Case name
    Case "ServerAddress": old = control.ServerAddress: control.ServerAddress = value: back = control.ServerAddress: control.ServerAddress = old
    Case "ServerPort": old = control.ServerPort: control.ServerPort = value: back = control.ServerPort: control.ServerPort = old
    Case "ServerFile": old = control.ServerFile: control.ServerFile = value: back = control.ServerFile: control.ServerFile = old
    Case "UseProxy": old = control.UseProxy: control.UseProxy = value: back = control.UseProxy: control.UseProxy = old
    Case "ProxyServer": old = control.ProxyServer: control.ProxyServer = value: back = control.ProxyServer: control.ProxyServer = old
    Case "UserName": old = control.UserName: control.UserName = value: back = control.UserName: control.UserName = old
    Case "Password": old = control.Password: control.Password = value: back = control.Password: control.Password = old
  End Select
  If Err.Number <> 0 Then
    failures = failures & " " & name & " (error " & Err.Number & ")"
  ElseIf TypeName(back) <> TypeName(value) Or CStr(back) <> CStr(value) Then
    failures = failures & " " & name
  End If
  On Error GoTo 0
End Sub

Sub CheckProperties()
  Dim failures
  failures = ""
  TryProperty "ServerAddress", "reports.example.com", failures
  TryProperty "ServerPort", CInt(8080), failures
  TryProperty "ServerFile", "/scripts/collect.asp", failures
  TryProperty "UseProxy", True, failures
  TryProperty "ProxyServer", "proxy.example.com:3128", failures
  TryProperty "UserName", "clerk", failures
  TryProperty "Password", "tea and biscuits", failures
  If failures = "" Then
    Good "Seven properties", "each keeps its value"
  Else
    Bad "Seven properties", "not kept:" & failures, "The registered class is not this control, or its file is damaged: get it again."
  End If
End Sub

Sub CheckNumber()
  Dim number, failure
  number = Empty
  On Error Resume Next
  number = control.GetCRCValue
  failure = Err.Number & " " & Err.Description
  On Error GoTo 0
  If IsEmpty(number) Then
    Bad "CRC", "error " & failure, "The module's file cannot be read under its own name; it must end in .ocx."
  ElseIf published = "" Then
    Row "CRC", "--", number & ", with no published number to compare it with"
  ElseIf InStr(published, " " & number & " ") > 0 Then
    Good "CRC", number & ", as published"
  Else
    Bad "CRC", number & "; published:" & RTrim(published), _
        "This is not the published file, or the numbers are those of another version. Get the file again."
  End If
End Sub

Sub CheckHelp()
  Dim folder
  folder = Registered(kLibraryVersion & "\HELPDIR")
  If folder = "" And module <> "" Then folder = files.GetParentFolderName(module)
  If folder = "" Then
    Row "Help file", "--", "not looked for: no module is registered"
  ElseIf files.FileExists(files.BuildPath(folder, kHelpFile)) Then
    Good "Help file", files.BuildPath(folder, kHelpFile)
  ElseIf files.FileExists(files.BuildPath(files.GetParentFolderName(module), kHelpFile)) Then
    ' The system keeps the folder of the first registration until the module is unregistered.
    Bad "Help file", "registered in " & folder, "The help file lies beside the module, but an earlier folder is" & _
        " registered for it. Unregister" & vbCrLf & "  the module (regsvr32 /u) and register it again."
  Else
    Bad "Help file", "no " & kHelpFile & " in " & folder, "Copy " & kHelpFile & " into that folder."
  End If
End Sub

' --- published numbers -----------------------------------------------------------------------------------------------

' As the control tells them, each between blanks; empty when there are none.
Function PublishedNumbers()
  Dim path, line, lines
  PublishedNumbers = ""
  If WScript.Arguments.Count > 1 Then Usage "too many arguments"
  If WScript.Arguments.Count = 1 Then
    PublishedNumbers = " " & SignedNumber(WScript.Arguments(0)) & " "
    Exit Function
  End If
  path = files.BuildPath(files.GetParentFolderName(WScript.ScriptFullName), kPublished)
  If Not files.FileExists(path) Then Exit Function
  Set lines = files.OpenTextFile(path)
  Do Until lines.AtEndOfStream
    line = Trim(lines.ReadLine)
    If line <> "" Then PublishedNumbers = PublishedNumbers & " " & SignedNumber(FirstWord(line))
  Loop
  lines.Close
  If PublishedNumbers <> "" Then PublishedNumbers = PublishedNumbers & " "
End Function

Function FirstWord(line)
  Dim blank
  blank = InStr(Replace(line, vbTab, " ") & " ", " ")
  FirstWord = Left(line, blank - 1)
End Function

Function SignedNumber(word)
  Dim value, digits, place
  value = 0
  If LCase(Left(word, 2)) = "0x" Then
    digits = LCase(Mid(word, 3))
    If digits = "" Or Len(digits) > 8 Then Usage "no CRC: " & word
    For place = 1 To Len(digits)
      If InStr("0123456789abcdef", Mid(digits, place, 1)) = 0 Then Usage "no CRC: " & word
      value = value * 16 + InStr("0123456789abcdef", Mid(digits, place, 1)) - 1
    Next
  Else
    digits = word
    If Left(word, 1) = "-" Then digits = Mid(word, 2)
    If digits = "" Or Len(digits) > 10 Then Usage "no CRC: " & word
    For place = 1 To Len(digits)
      If InStr("0123456789", Mid(digits, place, 1)) = 0 Then Usage "no CRC: " & word
      value = value * 10 + InStr("0123456789", Mid(digits, place, 1)) - 1
    Next
    If digits <> word Then value = -value
  End If
  If value > 4294967295 Or value < -2147483648 Then Usage "no CRC: " & word
  If value > 2147483647 Then value = value - 4294967296
  SignedNumber = CStr(value)
End Function

Sub Usage(complaint)
  WScript.Echo "check-install: " & complaint
  WScript.Echo "usage: check-install.cmd [CRC]      CRC: signed, unsigned, or hexadecimal with 0x before it"
  WScript.Quit kWrongArguments
End Sub
