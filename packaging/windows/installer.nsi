; The installer: for the user who runs it alone, so that the program may keep its files beside itself and nobody
; needs an administrator. Silent with /S; with /OPENXML it also sets what opens XML files.
Target amd64-unicode
!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "Sections.nsh"

!define PROGRAM "KTRconfig"
!define CLASSES "Software\Classes"
!define CLASS "KTRconfig.Configuration"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PROGRAM}"

Name "${PROGRAM} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PROGRAM}"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
ManifestDPIAware true

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PROGRAM}"
VIAddVersionKey "FileDescription" "Installs ${PROGRAM}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "GPL-3.0-or-later"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\KTRconfig.exe"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"
LangString MANUAL ${LANG_ENGLISH} "${PROGRAM} Manual"
LangString MANUAL ${LANG_GERMAN} "${PROGRAM} Handbuch"
LangString LANGUAGE ${LANG_ENGLISH} "en"
LangString LANGUAGE ${LANG_GERMAN} "de"
LangString OPEN_XML ${LANG_ENGLISH} "Open XML files with it"
LangString OPEN_XML ${LANG_GERMAN} "XML-Dateien damit öffnen"
LangString ABOUT_PROGRAM ${LANG_ENGLISH} "The program, its manual, and an entry under $\"Open with$\" for XML files."
LangString ABOUT_PROGRAM ${LANG_GERMAN} "Das Programm, sein Handbuch und ein Eintrag unter „Öffnen mit“ für XML-Dateien."
LangString ABOUT_OPEN_XML ${LANG_ENGLISH} "A double click on any XML file opens it with KTRconfig, instead of what opens it now. \
  Uninstalling takes that back."
LangString ABOUT_OPEN_XML ${LANG_GERMAN} "Ein Doppelklick auf eine XML-Datei öffnet sie mit KTRconfig, statt womit sie jetzt \
  geöffnet wird. Die Deinstallation nimmt das zurück."
LangString RUNNING ${LANG_ENGLISH} "KTRconfig or ktrcli is open. Close it, then try again."
LangString RUNNING ${LANG_GERMAN} "KTRconfig oder ktrcli ist offen. Bitte schließen und dann wiederholen."

; Explorer asks again what opens what.
!macro ASSOCIATIONS_CHANGED
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

; A program that runs cannot be replaced or removed: half of it would stay. Silently this ends with 2.
!macro WAIT_UNTIL_CLOSED WHERE FILE
  try_${FILE}:
    IfFileExists "${WHERE}\${FILE}.exe" 0 closed_${FILE}
    ClearErrors
    FileOpen $0 "${WHERE}\${FILE}.exe" a
    IfErrors 0 free_${FILE}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(RUNNING)" /SD IDCANCEL IDRETRY try_${FILE}
    SetErrorLevel 2
    Quit
  free_${FILE}:
    FileClose $0
  closed_${FILE}:
!macroend

; Others may have put values or keys into it.
!macro DELETE_IF_EMPTY NAME KEY
  EnumRegKey $0 HKCU "${KEY}" 0
  StrCmp $0 "" 0 filled_${NAME}
  EnumRegValue $0 HKCU "${KEY}" 0
  StrCmp $0 "" 0 filled_${NAME}
  ReadRegStr $0 HKCU "${KEY}" "" ; which has no name
  StrCmp $0 "" 0 filled_${NAME}
  DeleteRegKey HKCU "${KEY}"
  filled_${NAME}:
!macroend

Section "${PROGRAM}" SectionProgram
  SectionIn RO
  ; The version before goes first, with files that this one no longer has; what the user put there stays.
  ReadRegStr $1 HKCU "${UNINSTALL}" "InstallLocation"
  StrCmp $1 "" first
  !insertmacro WAIT_UNTIL_CLOSED $1 KTRconfig
  !insertmacro WAIT_UNTIL_CLOSED $1 ktrcli
  IfFileExists "$1\uninstall.exe" 0 first
  ExecWait '"$1\uninstall.exe" /S _?=$1'
  Delete "$1\uninstall.exe"
  RMDir "$1"
first:
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}/*"
  CreateShortcut "$SMPROGRAMS\${PROGRAM}.lnk" "$INSTDIR\KTRconfig.exe"
  CreateShortcut "$SMPROGRAMS\$(MANUAL).lnk" "$INSTDIR\manual\$(LANGUAGE)\index.html"

  ; A configuration is an XML file like any other by its name: the program is offered for these, and takes them from
  ; nobody. The same stands in associate.cmd, for the zip.
  WriteRegStr HKCU "${CLASSES}\${CLASS}" "" "KTRconfig"
  WriteRegStr HKCU "${CLASSES}\${CLASS}\DefaultIcon" "" "$INSTDIR\KTRconfig.exe,0"
  WriteRegStr HKCU "${CLASSES}\${CLASS}\shell\open\command" "" '"$INSTDIR\KTRconfig.exe" "%1"'
  WriteRegStr HKCU "${CLASSES}\.xml\OpenWithProgids" "${CLASS}" ""
  !insertmacro ASSOCIATIONS_CHANGED
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "${PROGRAM}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\KTRconfig.exe"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; Whoever wants it says so. What was set before comes back when this one is uninstalled.
Section /o "$(OPEN_XML)" SectionOpenXml
  ReadRegStr $0 HKCU "${CLASSES}\.xml" ""
  WriteRegStr HKCU "${CLASSES}\${CLASS}" "Before" "$0"
  WriteRegStr HKCU "${CLASSES}\.xml" "" "${CLASS}"
  !insertmacro ASSOCIATIONS_CHANGED
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "$(ABOUT_PROGRAM)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionOpenXml} "$(ABOUT_OPEN_XML)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Asked for now, or before a newer version comes.
Function .onInit
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/OPENXML" $0
  IfErrors 0 chosen
  ReadRegStr $0 HKCU "${CLASSES}\.xml" ""
  StrCmp $0 "${CLASS}" 0 done
chosen:
  !insertmacro SelectSection ${SectionOpenXml}
done:
FunctionEnd

; What the program wrote (station list, record, logs) and what the user put there stays.
Section "Uninstall"
  !insertmacro WAIT_UNTIL_CLOSED $INSTDIR KTRconfig
  !insertmacro WAIT_UNTIL_CLOSED $INSTDIR ktrcli
  !include "${REMOVAL}" ; each file and folder that was installed, and no other
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${PROGRAM}.lnk"
  Delete "$SMPROGRAMS\${PROGRAM} Manual.lnk"
  Delete "$SMPROGRAMS\${PROGRAM} Handbuch.lnk"

  ReadRegStr $0 HKCU "${CLASSES}\.xml" ""
  StrCmp $0 "${CLASS}" 0 not_opened
  ReadRegStr $1 HKCU "${CLASSES}\${CLASS}" "Before"
  StrCmp $1 "" 0 +3
  DeleteRegValue HKCU "${CLASSES}\.xml" ""
  Goto not_opened
  WriteRegStr HKCU "${CLASSES}\.xml" "" "$1"
not_opened:
  DeleteRegKey HKCU "${CLASSES}\${CLASS}"
  DeleteRegValue HKCU "${CLASSES}\.xml\OpenWithProgids" "${CLASS}"
  !insertmacro DELETE_IF_EMPTY offers "${CLASSES}\.xml\OpenWithProgids"
  !insertmacro DELETE_IF_EMPTY xml "${CLASSES}\.xml"
  !insertmacro ASSOCIATIONS_CHANGED
  DeleteRegKey HKCU "${UNINSTALL}"
SectionEnd
