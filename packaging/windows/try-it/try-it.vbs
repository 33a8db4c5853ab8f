' Tries the component of one width as a host program and writes down what it says. Arguments: the folder
' for the report, x64 or x86, and of another program's cube the file, the catalog, the OBS member and a
' measure. Settings, cube and workbooks are made in the folder; MDBPath is put back at the end.
Option Explicit
Const SettingsValue = "HKCU\Software\Vok\Varnel 17\MDBPath"
Dim shell, files, base, work, programs, vokcube, report, cube, before, looks

Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")
base = files.GetParentFolderName(files.GetParentFolderName(WScript.ScriptFullName))
programs = base & "\" & WScript.Arguments(1)
vokcube = """" & programs & "\vokcube.exe"""
work = WScript.Arguments(0) & "\" & WScript.Arguments(1)
MakeFolder work
MakeFolder work & "\settings"
Set report = files.CreateTextFile(work & "\report.txt", True, True)
looks = 0
Main
Tell "end of report, to look at: " & looks
report.Close

Sub MakeFolder(folder)
  If Not files.FolderExists(folder) Then files.CreateFolder folder
End Sub

Sub Tell(text)
  report.WriteLine text
  WScript.Echo text
End Sub

' What must hold, or a person must look at it.
Sub Expect(what, holds, seen)
  If holds Then
    Tell "right: " & what & ": " & seen
  Else
    looks = looks + 1
    Tell "LOOK:  " & what & ": " & seen
  End If
End Sub

Function Registered(key)
  On Error Resume Next
  Registered = ""
  Registered = shell.RegRead(key)
End Function

Sub TellProvider(name)
  Dim id, file
  id = Registered("HKCR\" & name & "\CLSID\")
  file = "not registered in this width"
  If id <> "" Then file = Registered("HKCR\CLSID\" & id & "\InprocServer32\") & Registered("HKCR\CLSID\" & id & "\LocalServer32\")
  Tell name & ": " & file
End Sub

Sub TellMachine
  Const Windows = "HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion\"
  Dim name
  Tell "Windows: " & Registered(Windows & "ProductName") & ", build " & Registered(Windows & "CurrentBuildNumber")
  Tell "language: " & Registered("HKCU\Control Panel\International\LocaleName") & ", short date: " & _
    Registered("HKCU\Control Panel\International\sShortDate")
  For Each name In Array("VokCubeQ17.clMe", "Excel.Application", "Microsoft.Jet.OLEDB.4.0", "Microsoft.ACE.OLEDB.12.0", _
      "Microsoft.ACE.OLEDB.15.0", "Microsoft.ACE.OLEDB.16.0", "MSOLAP", "ADODB.Connection", "ADOX.Catalog", "ADOMD.Catalog")
    TellProvider name
  Next
End Sub

' Runs a program, its words below the report's folder.
Sub RunProgram(name, command)
  Dim status
  status = shell.Run("cmd /c """ & command & " > """ & work & "\" & name & ".txt"" 2>&1""", 0, True)
  Expect name, status = 0, "status " & status & ", see " & name & ".txt"
End Sub

Sub MakeExample
  shell.CurrentDirectory = work
  RunProgram "cube", vokcube & " cube build --schema """ & base & "\examples\ledger\schema.xml"" --data """ & base & _
    "\examples\ledger"" --output ledger.cub"
  RunProgram "import", vokcube & " settings import """ & base & "\examples\ledger\settings.json"" --settings-folder settings"
  RunProgram "export", vokcube & " settings export export.json --settings-folder settings"
  RunProgram "built-in", vokcube & " run --data-source Domestic --periods Demo --settings-folder settings --output built-in"
  Tell "settings database: " & Beginning(work & "\settings\CubToQel.mdb")
End Sub

' "Standard Jet DB" and "Standard ACE DB" are a provider's, "SQLite format 3" is our own.
Function Beginning(file)
  On Error Resume Next
  Beginning = "none"
  Dim stream
  Set stream = files.OpenTextFile(file)
  Beginning = Mid(stream.Read(19), 1, 19)
  If Left(Beginning, 6) <> "SQLite" Then Beginning = Mid(Beginning, 5)
  stream.Close
End Function

Function Shown(value)
  On Error Resume Next
  Shown = TypeName(value)
  Shown = Shown & " " & value
End Function

Function Ran(dataSource, output)
  Dim result, from
  from = Timer
  result = cube.RunQuery(dataSource, "Demo", work & "\" & output)
  Ran = UBound(result) = 4
  Expect "run of " & dataSource & " into " & output, Ran, Shown(result(0)) & " " & Shown(result(1)) & ", seconds: " & (Timer - from)
End Function

' Both workbooks read by Excel: the built-in writer's, and the one that was made by way of Excel.
Sub CompareWorkbooks
  Dim excel, one, other, row, column, different
  On Error Resume Next
  Set excel = CreateObject("Excel.Application")
  If Err.Number <> 0 Then
    Tell "workbooks not compared: Excel is not there"
    Exit Sub
  End If
  Tell "Excel " & excel.Version
  Set one = excel.Workbooks.Open(work & "\built-in.xlsX").Worksheets("Data")
  Set other = excel.Workbooks.Open(work & "\host.xlsX").Worksheets("Data")
  Expect "used cells", one.UsedRange.Address = other.UsedRange.Address, one.UsedRange.Address & " and " & other.UsedRange.Address
  different = 0
  For row = 1 To one.UsedRange.Rows.Count
    For column = 1 To 20
      If one.Cells(row, column).Value <> other.Cells(row, column).Value Then different = different + 1
    Next
  Next
  Expect "cells that differ", different = 0 And Err.Number = 0, different & " " & Err.Description
  excel.DisplayAlerts = False
  excel.Quit
End Sub

Sub TryCalls
  Dim names, table
  Expect "Version", cube.Version = "16.8.28", cube.Version
  table = "Periods"
  cube.GetSetNames names, table
  Expect "names of period sets", UBound(names) >= 1, Shown(names(0))
  If Ran("Domestic", "host") Then CompareWorkbooks
  Ran "Domestic", "host"
  On Error Resume Next
  table = "NoSuchTable"
  cube.GetSetNames names, table
  Expect "the error for an unknown table", Err.Number <> 0, Err.Number & " " & Err.Source & ": " & Err.Description
  Err.Clear
End Sub

Sub TryPowerShell
  RunProgram "powershell", "powershell -NoProfile -Command ""$c = New-Object -ComObject VokCubeQ17.clMe; $n = $null; $t = 'Periods'; " & _
    "$c.Version; [void]$c.GetSetNames([ref]$n, [ref]$t); $n; $c.RunQuery('Domestic', 'Demo', '" & work & "\powershell') | Out-String"""
End Sub

' As JSON has it, in ASCII alone.
Function Quoted(text)
  Dim place, code
  Quoted = """"
  For place = 1 To Len(text)
    code = AscW(Mid(text, place, 1)) And 65535
    If code < 32 Or code > 126 Or code = 34 Or code = 92 Then
      Quoted = Quoted & "\u" & Right("000" & Hex(code), 4)
    Else
      Quoted = Quoted & Mid(text, place, 1)
    End If
  Next
  Quoted = Quoted & """"
End Function

' A data source on the cube that was named.
Sub TryOtherCube
  Dim document
  Set document = files.CreateTextFile(work & "\other.json", True)
  document.Write "{""dataSources"": [{""SetName"": ""Other"", ""VarnelMDB"": ""other.mdb"", ""CubeFile"": " & _
    Quoted(WScript.Arguments(2)) & ", ""CubeName"": " & Quoted(WScript.Arguments(3)) & ", ""OBS"": " & _
    Quoted(WScript.Arguments(4)) & ", ""ActFile"": """", ""CountMoney"": 1, ""MoneySets"": [{""MoneySet"": ""All"", ""Measure"": " & _
    Quoted(WScript.Arguments(5)) & ", ""Qty"": """", ""IsCalculated"": false}]}], ""periods"": []}"
  document.Close
  RunProgram "import-other", vokcube & " settings import other.json --settings-folder settings"
  Ran "Other", "other"
End Sub

Sub TryComponent
  Set cube = CreateObject("VokCubeQ17.clMe")
  TryCalls
  TryPowerShell
  If WScript.Arguments.Count > 5 Then TryOtherCube
End Sub

Sub Main
  TellMachine
  MakeExample
  before = Registered(SettingsValue)
  shell.RegWrite SettingsValue, work & "\settings", "REG_SZ"
  On Error Resume Next
  TryComponent
  If Err.Number <> 0 Then Expect "a call", False, Err.Number & " " & Err.Source & ": " & Err.Description
  If before = "" Then
    shell.RegDelete SettingsValue
  Else
    shell.RegWrite SettingsValue, before, "REG_SZ"
  End If
End Sub
