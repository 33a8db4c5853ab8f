' A database of the platform's own and nothing that could open it.
Dim cube, names
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
cube.Qinfo
On Error Resume Next
cube.GetSetNames names, "Periods"
Check "error", Err.Number, 3706
Check "width", InStr(Err.Description, "-bit host process finds no") > 0, True
Check "names", InStr(Err.Description, "Microsoft.ACE.OLEDB.16.0") > 0, True
Check "another way", InStr(Err.Description, "settings export sets.json --from FILE") > 0, True
Finish
