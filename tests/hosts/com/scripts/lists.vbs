' The lists that a host program offers. Arguments: settings folder, an empty folder.
Const AnyArray = 8204
Dim cube, lists, names, count, i, folder
Set cube = CreateObject("VokCubeQ17.clMe")

UseSettings WScript.Arguments(0)
lists = cube.Qinfo
CheckArray "Qinfo", lists, AnyArray, 3
For i = 0 To 3
  Check "list " & i, VarType(lists(i)), AnyArray
Next
names = lists(0)
CheckValue "first period set", names(0), "String", "Demo"

names = 5
count = cube.GetSetNames(names, "Periods")
CheckValue "result", count, "Long", 0
CheckArray "names", names, AnyArray, 1
CheckValue "first name", names(0), "String", "Demo"

' Its failures alone reach the script, as numbers that a script can tell apart.
names = "before"
On Error Resume Next
count = cube.GetSetNames(names, "NoSuchTable")
Check "error", Err.Number, -2147217865
Check "description", InStr(Err.Description, "NoSuchTable") > 0, True
Check "source", Len(Err.Source) > 0, True
Err.Clear
On Error GoTo 0
CheckValue "variable", names, "String", "before"

' No database: Qinfo is empty, GetSetNames makes one.
folder = WScript.Arguments(1)
UseSettings folder
Check "Qinfo without a database", IsEmpty(cube.Qinfo), True
count = cube.GetSetNames(names, "DataSourceInfo")
CheckArray "no names", names, AnyArray, 0
Check "the one element", IsEmpty(names(0)), True
Check "database", CreateObject("Scripting.FileSystemObject").FileExists(folder & "\CubToQel.mdb"), True

For i = 1 To 10000
  Set cube = CreateObject("VokCubeQ17.clMe")
Next
CheckValue "the last of many", cube.Version, "String", "16.8.28"
Finish
