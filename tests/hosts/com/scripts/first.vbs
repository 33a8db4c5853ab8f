' GetSetNames as a host's first call, and then a run. Arguments: settings folder, output path.
Const AnyArray = 8204
Dim cube, names, count, result
UseSettings WScript.Arguments(0)
Set cube = CreateObject("VokCubeQ17.clMe")
count = cube.GetSetNames(names, "DataSourceInfo")
CheckValue "first name", names(0), "String", "Domestic"
result = cube.RunQuery("Domestic", "Demo", WScript.Arguments(1))
CheckArray "result", result, AnyArray, 4
Finish
