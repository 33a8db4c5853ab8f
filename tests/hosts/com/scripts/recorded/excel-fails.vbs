' The program refuses to save: its number comes back, and it is told to quit all the same.
Dim cube, result
Set cube = CreateObject("VokCubeQ17.clMe")
UseSettings WScript.Arguments(0)
result = cube.RunQuery("Domestic", "Demo", WScript.Arguments(1))
CheckArray "result", result, 8204, 1
CheckValue "code", result(0), "Long", 1004
Finish
