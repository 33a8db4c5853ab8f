' Uses the component by the manifest beside it: nothing need be registered. Run it with the cscript.exe
' of the component's width (C:\Windows\System32 is that of 64 bit, C:\Windows\SysWOW64 that of 32 bit):
'
'   cscript //nologo ask.vbs "C:\Program Files\VokCubeQ17\x64"
Option Explicit
Dim context, cube, result
Set context = CreateObject("Microsoft.Windows.ActCtx")
context.Manifest = WScript.Arguments(0) & "\VokCubeQ17.Component.manifest"
Set cube = context.CreateObject("VokCubeQ17.clMe")
WScript.Echo "VokCubeQ17 " & cube.Version
