' A saved query, as a host program runs it. Arguments: settings folder, output path.
Const TextArray = 8200, IntegerArray = 8194, AnyArray = 8204
Dim cube, source, periods, output, result, started

started = Timer
Set cube = CreateObject("VokCubeQ17.clMe")
CheckValue "Version", cube.Version, "String", "16.8.28"
WScript.Echo "CreateObject and Version: " & FormatNumber((Timer - started) * 1000, 1) & " ms"

UseSettings WScript.Arguments(0)
source = "domestic" : periods = "Demo" : output = WScript.Arguments(1)
started = Timer
result = cube.RunQuery(source, periods, output)
WScript.Echo "RunQuery: " & FormatNumber((Timer - started) * 1000, 1) & " ms"

CheckArray "result", result, AnyArray, 4
Check "period names", VarType(result(0)), TextArray
Check "opening balances", VarType(result(1)), IntegerArray
Check "ranges", VarType(result(2)), TextArray
CheckValue "data source", result(3), "String", "Domestic"
CheckValue "period set", result(4), "String", "Demo"
Check "parameters stay", source & "," & periods, "domestic,Demo"

' By value, too, and from a second object.
Dim other : Set other = CreateObject("VokCubeQ17.clMe")
result = other.RunQuery("Domestic", "Demo", output & "2")
CheckArray "second result", result, AnyArray, 4
Check "second workbook", CreateObject("Scripting.FileSystemObject").FileExists(output & "2.xlsX"), True
Set cube = Nothing
CheckValue "the other object lives on", other.Version, "String", "16.8.28"
Finish
