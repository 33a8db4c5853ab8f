' A database of the platform's own; Jet itself is not there, but two versions of what followed it are.
Dim cube, names
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
cube.Qinfo
On Error Resume Next
cube.GetSetNames names, "Periods"
Check "error", Err.Number, -2147467259
Check "description", Err.Description, "The file is locked."
Check "source", Err.Source, "double"
Finish
