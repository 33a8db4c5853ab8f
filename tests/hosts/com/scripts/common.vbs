' What every host script begins with. It ends with Finish, whose last line says how it went: an error
' that nobody handles would end a script without a word.
Option Explicit
Dim fails : fails = 0

Sub Check(what, got, wanted)
  If got = wanted Then Exit Sub
  fails = fails + 1
  WScript.Echo "FAIL " & what & ": " & got & " where " & wanted & " was expected"
End Sub

Sub CheckValue(what, got, wanted_type, wanted)
  Check "type of " & what, TypeName(got), wanted_type
  If TypeName(got) = wanted_type Then Check what, got, wanted
End Sub

Sub CheckArray(what, got, wanted_type, wanted_bound)
  Check "type of " & what, VarType(got), wanted_type
  If VarType(got) = wanted_type Then Check "last index of " & what, UBound(got), wanted_bound
End Sub

Sub UseSettings(folder)
  CreateObject("WScript.Shell").RegWrite "HKCU\Software\Vok\Varnel 17\MDBPath", folder, "REG_SZ"
End Sub

Sub Finish()
  WScript.Echo "fails=" & fails
  WScript.Quit fails
End Sub
