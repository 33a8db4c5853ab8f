' A cube of another program: through the platform's own cube objects, into a workbook of one row.
Dim cube, result
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
result = cube.RunQuery("Foreign", "Foreign", WScript.Arguments(1))
CheckArray "result", result, 8204, 4
Check "workbook", CreateObject("Scripting.FileSystemObject").FileExists(WScript.Arguments(1) & ".xlsX"), True
Finish
