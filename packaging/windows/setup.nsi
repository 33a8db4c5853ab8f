; Installs both widths of the component and its command line. scripts/package-windows gives VERSION,
; COMPANY, COPYRIGHT, STAGE (the folder of what is installed), OUT (the installer) and, as install.nsh
; and uninstall.nsh in LISTS, the files there.
;
;   VokCubeQ17-setup.exe [/S] [/MDBPATH="folder of the settings"] [/D=folder of the program]
;
; Exit codes: 1 cancelled, 2 a file cannot be written, 3 MDBPATH is not a full path, 4 not registered.
Unicode true
ManifestDPIAware true
RequestExecutionLevel admin
SetCompressor /SOLID lzma
!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include x64.nsh

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\VokCubeQ17"
!define SETTINGS "Software\Vok\Varnel 17"
!define REGSVR32 "$SYSDIR\regsvr32.exe" ; an installer of 32 bit finds its own there
!define REGSVR64 "$WINDIR\Sysnative\regsvr32.exe"
Var SettingsFolder

Name "VokCubeQ17"
OutFile "${OUT}"
BrandingText "VokCubeQ17 ${VERSION}"
ShowInstDetails show
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "VokCubeQ17"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs VokCubeQ17"
VIAddVersionKey CompanyName "${COMPANY}"
VIAddVersionKey LegalCopyright "${COPYRIGHT}"

!insertmacro MUI_PAGE_DIRECTORY
!define MUI_PAGE_HEADER_TEXT "$(SettingsTitle)"
!define MUI_PAGE_HEADER_SUBTEXT ""
!define MUI_DIRECTORYPAGE_TEXT_TOP "$(SettingsText)"
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "$(SettingsTitle)"
!define MUI_DIRECTORYPAGE_VARIABLE $SettingsFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE Hebrew
!insertmacro MUI_LANGUAGE Russian

LangString SettingsTitle ${LANG_ENGLISH} "Settings folder"
LangString SettingsTitle ${LANG_HEBREW} "תיקיית ההגדרות"
LangString SettingsTitle ${LANG_RUSSIAN} "Папка настроек"
LangString SettingsText ${LANG_ENGLISH} "Saved queries, their log and Qel.ini lie in this folder. It is made where it is missing, and stays when the program is removed."
LangString SettingsText ${LANG_HEBREW} "בתיקייה זו נמצאות השאילתות השמורות, היומן שלהן והקובץ Qel.ini. אם היא חסרה היא תיווצר, והיא תישאר גם לאחר הסרת התוכנה."
LangString SettingsText ${LANG_RUSSIAN} "В этой папке лежат сохранённые запросы, их журнал и Qel.ini. Если её нет, она будет создана; при удалении программы она остаётся."
LangString NotFull ${LANG_ENGLISH} "The settings folder must be a full path, such as C:\Settings:"
LangString NotFull ${LANG_HEBREW} "תיקיית ההגדרות חייבת להיות נתיב מלא, למשל C:\Settings:"
LangString NotFull ${LANG_RUSSIAN} "Папка настроек должна быть задана полным путём, например C:\Settings:"
LangString NotRegistered ${LANG_ENGLISH} "The component could not be registered, and nothing was installed. regsvr32 gave code"
LangString NotRegistered ${LANG_HEBREW} "לא ניתן היה לרשום את הרכיב, ודבר לא הותקן. קוד השגיאה של regsvr32:"
LangString NotRegistered ${LANG_RUSSIAN} "Компонент не удалось зарегистрировать, ничего не установлено. Код regsvr32:"

; Where programs of all users lie, and the registry's view, on this width of Windows.
!macro OnEitherWidth
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  SetShellVarContext all
!macroend

!macro Remove
  ${If} ${RunningX64}
    ExecWait '"${REGSVR64}" /u /s "$INSTDIR\x64\VokCubeQ17.dll"'
  ${EndIf}
  ExecWait '"${REGSVR32}" /u /s "$INSTDIR\x86\VokCubeQ17.dll"'
  RMDir /r "$SMPROGRAMS\VokCubeQ17"
  DeleteRegKey HKLM "${UNINSTALL}"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"
  !include "${LISTS}/uninstall.nsh"
!macroend

Function .onInit
  StrCpy $1 "$DOCUMENTS\VokCubeQ17" ; the user's own
  !insertmacro OnEitherWidth
  ${If} $INSTDIR == ""
    ReadRegStr $INSTDIR HKLM "${UNINSTALL}" InstallLocation
  ${EndIf}
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR "$PROGRAMFILES\VokCubeQ17"
    ${If} ${RunningX64}
      StrCpy $INSTDIR "$PROGRAMFILES64\VokCubeQ17"
    ${EndIf}
  ${EndIf}
  Call ReadOptions
  ${If} $SettingsFolder != ""
    Call CheckSettingsFolder
    Return
  ${EndIf}
  ReadRegStr $SettingsFolder HKCU "${SETTINGS}" MDBPath
  ${If} $SettingsFolder == ""
  ${AndIfNot} ${Silent}
    StrCpy $SettingsFolder $1
  ${EndIf}
FunctionEnd

; Words of the command line as Windows parts them: a caller may quote a whole word.
Function ReadOptions
  System::Call 'kernel32::GetCommandLineW() p .r2'
  System::Call 'shell32::CommandLineToArgvW(p r2, *i .r3) p .r4'
  ${Do}
    System::Call '*$4(w .r5)'
    StrCpy $6 $5 9
    ${If} $6 == "/MDBPATH="
      StrCpy $SettingsFolder $5 "" 9
    ${EndIf}
    IntOp $4 $4 + ${NSIS_PTR_SIZE}
    IntOp $3 $3 - 1
  ${LoopUntil} $3 == 0
FunctionEnd

; Without "\" at its end, which the names of files below it would double.
Function CheckSettingsFolder
  ${Do}
    StrCpy $0 $SettingsFolder 1 -1
    StrLen $1 $SettingsFolder
    ${If} $0 != "\"
    ${OrIf} $1 <= 3
      ${Break}
    ${EndIf}
    StrCpy $SettingsFolder $SettingsFolder -1
  ${Loop}
  StrCpy $0 $SettingsFolder 2
  StrCpy $1 $SettingsFolder 2 1
  ${If} $0 == "\\"
  ${OrIf} $1 == ":\"
    Return
  ${EndIf}
  MessageBox MB_OK|MB_ICONSTOP "$(NotFull)$\r$\n$SettingsFolder" /SD IDOK
  SetErrorLevel 3
  Abort
FunctionEnd

!macro Register program folder
  ExecWait '"${program}" /s "$INSTDIR\${folder}\VokCubeQ17.dll"' $0
  ${If} $0 != 0
    !insertmacro Remove
    MessageBox MB_OK|MB_ICONSTOP "$(NotRegistered) $0." /SD IDOK
    SetErrorLevel 4
    Abort
  ${EndIf}
!macroend

!macro StartMenu name folder
  CreateShortCut "$SMPROGRAMS\VokCubeQ17\${name}.lnk" "$INSTDIR\${folder}\vokcube-window.exe"
!macroend

Section
  !include "${LISTS}/install.nsh"
  ${If} ${RunningX64}
    ; One language table: the component looks for it beside its own file.
    Delete "$INSTDIR\x64\Lang.rs"
    System::Call 'kernel32::CreateHardLink(t "$INSTDIR\x64\Lang.rs", t "$INSTDIR\x86\Lang.rs", p 0) i .r0'
    ${If} $0 == 0
      CopyFiles /SILENT "$INSTDIR\x86\Lang.rs" "$INSTDIR\x64\Lang.rs"
    ${EndIf}
  ${EndIf}
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  !insertmacro Register "${REGSVR32}" x86
  CreateDirectory "$SMPROGRAMS\VokCubeQ17"
  ${If} ${RunningX64}
    !insertmacro Register "${REGSVR64}" x64
    !insertmacro StartMenu "VokCubeQ17" x64
    !insertmacro StartMenu "VokCubeQ17 (32-bit)" x86
  ${Else}
    !insertmacro StartMenu "VokCubeQ17" x86
  ${EndIf}
  CreateShortCut "$SMPROGRAMS\VokCubeQ17\Read me.lnk" "$INSTDIR\Read me.txt"

  ${If} $SettingsFolder != ""
    CreateDirectory "$SettingsFolder"
    WriteRegStr HKCU "${SETTINGS}" MDBPath "$SettingsFolder"
  ${EndIf}
  WriteRegStr HKLM "${UNINSTALL}" DisplayName "VokCubeQ17"
  WriteRegStr HKLM "${UNINSTALL}" DisplayVersion "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL}" Publisher "${COMPANY}"
  WriteRegStr HKLM "${UNINSTALL}" InstallLocation "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL}" DisplayIcon "$INSTDIR\x86\vokcube.exe"
  WriteRegStr HKLM "${UNINSTALL}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL}" NoModify 1
  WriteRegDWORD HKLM "${UNINSTALL}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKLM "${UNINSTALL}" EstimatedSize $0
SectionEnd

Function un.onInit
  !insertmacro OnEitherWidth
FunctionEnd

; The settings folder and its name in the registry stay.
Section Uninstall
  !insertmacro Remove
SectionEnd
