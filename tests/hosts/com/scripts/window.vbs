' The settings window, which a person closes. Arguments: an empty folder.
Dim cube, number, file, result, folder
Set cube = CreateObject("VokCubeQ17.clMe")
folder = WScript.Arguments(0)
UseSettings folder
number = 7 : file = "any.mdb"
result = cube.ShowQCform(number, file)
CheckValue "window", result, "Boolean", True
Check "number", number, 7
CheckValue "file", file, "String", "any.mdb"
Check "database", CreateObject("Scripting.FileSystemObject").FileExists(folder & "\CubToQel.mdb"), True
Finish
