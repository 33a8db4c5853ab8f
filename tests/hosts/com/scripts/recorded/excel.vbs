' A run of two passes into the spreadsheet program: a new workbook, then more rows below.
Dim cube, result
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
result = cube.RunQuery("Domestic", "Demo", WScript.Arguments(1))
CheckArray "result", result, 8204, 4
Finish
