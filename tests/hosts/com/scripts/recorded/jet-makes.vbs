' No database yet, and the provider is there: the file is made by it, then read.
Dim cube, names
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
Check "no lists yet", IsEmpty(cube.Qinfo), True
Check "result", cube.GetSetNames(names, "Periods"), 0
CheckArray "names", names, 8204, 1
CheckValue "first", names(0), "String", "Demo"
Check "second", IsNull(names(1)), True
Finish
