' Asks the component what a file says, a call on each line, and writes each with its answer and the
' types of that. Arguments: the file, and what stands for $1, $2 and so on in it.
Option Explicit
Dim shell, file, cube, line
Set shell = CreateObject("WScript.Shell")
Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments(0))
Set cube = CreateObject("VokCubeQ17.clMe")

Function Shown(value)
  Dim i, text
  If IsArray(value) And VarType(value) <> 8204 Then  ' Wine's scripts cannot look into other arrays
    Shown = "array of type " & VarType(value)
  ElseIf IsArray(value) Then
    For i = 0 To UBound(value)
      text = text & ", " & Shown(value(i))
    Next
    Shown = TypeName(value) & " {" & Mid(text, 3) & "}"
  ElseIf IsEmpty(value) Or IsNull(value) Or TypeName(value) = "Date" Then
    Shown = TypeName(value)
  Else
    Shown = TypeName(value) & " " & value
  End If
End Function

Function Filled(text)
  Dim i
  For i = 1 To WScript.Arguments.Count - 1
    text = Replace(text, "$" & i, WScript.Arguments(i))
  Next
  Filled = text
End Function

Function Answer(name, arguments)
  Dim parts, given, number, i
  parts = Split(Filled(arguments), "|")
  given = Split(Filled(arguments), "|")
  On Error Resume Next
  Select Case name
    Case "Settings" shell.RegWrite "HKCU\Software\Vok\Varnel 17\MDBPath", parts(0), "REG_SZ"
    Case "Version" Answer = Shown(cube.Version)
    Case "Qinfo" Answer = Shown(cube.Qinfo)
    Case "RunQuery" Answer = Shown(cube.RunQuery(parts(0), parts(1), parts(2)))
    Case "GetSetNames"
      number = "before"
      Answer = Shown(cube.GetSetNames(number, parts(0)))
      If Err.Number <> 0 Then Answer = "error " & Err.Number & " of " & Err.Source & ": " & Err.Description
      Answer = Answer & ", names " & Shown(number)
    Case "ShowQCform"
      number = "7"
      Answer = Shown(cube.ShowQCform(number, parts(0))) & ", error " & Shown(number)
  End Select
  If name <> "GetSetNames" And Err.Number <> 0 Then Answer = "error " & Err.Number & ": " & Err.Description
  For i = 0 To UBound(parts)
    If parts(i) <> given(i) Then Answer = Answer & ", changed " & parts(i)
  Next
End Function

Dim blank
Do Until file.AtEndOfStream
  line = file.ReadLine
  blank = InStr(line & " ", " ")
  WScript.Echo line & " -> " & Answer(Left(line, blank - 1), Mid(line, blank + 1))
Loop
