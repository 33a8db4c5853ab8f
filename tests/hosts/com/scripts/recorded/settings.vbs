' The command line on a database of the platform's own, an old one: it is brought up to date, and sets
' are saved, loaded and deleted there as the component does it.
Dim shell, files
Set shell = CreateObject("WScript.Shell")
Set files = CreateObject("Scripting.FileSystemObject")

Sub Vokcube(answers, command)
  Dim status
  status = shell.Run("cmd /c set VOK_RECORDER_ANSWERS=" & WScript.Arguments(1) & "\" & answers & "&& vokcube " & _
    command & " --settings-folder " & WScript.Arguments(0) & " > told.txt 2> errors.txt", 0, True)
  Check "status of " & command, status, 0
  If status <> 0 Then WScript.Echo files.OpenTextFile("errors.txt").ReadAll
End Sub

Vokcube "settings-old.answers", "settings import " & WScript.Arguments(1) & "\settings.json"
Vokcube "settings.answers", "settings export loaded.json"
Vokcube "settings.answers", "periods fill Foreign --interval year --from 2010-01-01 --last 1"
Vokcube "settings.answers", "settings delete periods Foreign"
Vokcube "settings.answers", "settings delete data-source Foreign"
Finish
