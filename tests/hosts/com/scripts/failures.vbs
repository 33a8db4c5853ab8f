' Every code of a failed run, with the width of its number. Arguments: settings folder, an empty folder.
Const AnyArray = 8204
Dim cube, settings, empty_folder
Set cube = CreateObject("VokCubeQ17.clMe")
settings = WScript.Arguments(0) : empty_folder = WScript.Arguments(1)

Sub CheckFailure(source, output, wanted_type, wanted_code, wanted_message)
  Dim result : result = cube.RunQuery(source, "Demo", output)
  CheckArray source, result, AnyArray, 1
  If VarType(result) = AnyArray Then
    CheckValue source & " code", result(0), wanted_type, wanted_code
    CheckValue source & " message", result(1), "String", wanted_message
  End If
End Sub

UseSettings empty_folder
CheckFailure "Domestic", "failed", "Integer", 1111, "Database not Found"
UseSettings settings
CheckFailure "Nobody", "failed", "Integer", 2222, "Cann't read Settings"
CheckFailure "NoCube", "failed", "Integer", 3333, "Connection error"
CheckFailure "NoMember", "failed", "Integer", 4444, "Invalid date"
CheckFailure "NoMeasure", "failed", "Integer", 5555, "Not Valid Measure.Check your Settings"
CheckFailure "Domestic", "no folder\failed", "Long", 76, ""
Check "workbook", CreateObject("Scripting.FileSystemObject").FileExists("failed.xlsX"), False

' No screen here for a window: the number comes back through the variable, of any type.
Dim number, file, result
number = "7" : file = "any.mdb"
result = cube.ShowQCform(number, file)
CheckArray "window", result, AnyArray, 0
CheckValue "number", number, "Long", 445
CheckValue "file", file, "String", "any.mdb"
Finish
