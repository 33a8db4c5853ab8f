@echo off
rem Tries VokCubeQ17 as it is installed here, in each width, and leaves what it saw in the folder
rem "VokCubeQ17 report" on the desktop. It needs no rights and changes no settings of yours.
rem
rem   try-it.cmd [FILE.cub CATALOG OBS MEASURE]     with a cube of another program, read by MSOLAP
setlocal
set here=%~dp0
set report=%USERPROFILE%\Desktop\VokCubeQ17 report
mkdir "%report%" 2>nul
if /i "%PROCESSOR_ARCHITECTURE%"=="x86" (
  "%SystemRoot%\System32\cscript.exe" //nologo "%here%try-it.vbs" "%report%" x86 %*
) else (
  "%SystemRoot%\System32\cscript.exe" //nologo "%here%try-it.vbs" "%report%" x64 %*
  "%SystemRoot%\SysWOW64\cscript.exe" //nologo "%here%try-it.vbs" "%report%" x86 %*
)
echo.
echo Send the folder "%report%" back, as a zip file.
pause
