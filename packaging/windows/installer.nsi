; The installer: for the user who runs it alone, so that the program may keep its files beside itself and nobody
; needs an administrator.
Target amd64-unicode
!include "MUI2.nsh"

!define PROGRAM "KTRconfig"
!define CLASSES "Software\Classes"
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
VIAddVersionKey "LegalCopyright" ""

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
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

; Explorer asks again what opens what.
!macro ASSOCIATIONS_CHANGED
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Section
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}/*"
  CreateShortcut "$SMPROGRAMS\${PROGRAM}.lnk" "$INSTDIR\KTRconfig.exe"
  CreateShortcut "$SMPROGRAMS\$(MANUAL).lnk" "$INSTDIR\manual\$(LANGUAGE)\index.html"

  ; A configuration is an XML file like any other by its name: the program is offered for these, and takes them from
  ; nobody. The same stands in associate.cmd, for the zip.
  WriteRegStr HKCU "${CLASSES}\KTRconfig.Configuration" "" "KTRconfig"
  WriteRegStr HKCU "${CLASSES}\KTRconfig.Configuration\DefaultIcon" "" "$INSTDIR\KTRconfig.exe,0"
  WriteRegStr HKCU "${CLASSES}\KTRconfig.Configuration\shell\open\command" "" '"$INSTDIR\KTRconfig.exe" "%1"'
  WriteRegStr HKCU "${CLASSES}\.xml\OpenWithProgids" "KTRconfig.Configuration" ""
  !insertmacro ASSOCIATIONS_CHANGED
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "${PROGRAM}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\KTRconfig.exe"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; What the program wrote (station list, journal, logs) and what the user put there stays.
Section "Uninstall"
  Delete "$INSTDIR\*.exe"
  Delete "$INSTDIR\*.dll"
  Delete "$INSTDIR\README.txt"
  Delete "$INSTDIR\associate.cmd"
  Delete "$INSTDIR\language.ini"
  Delete "$INSTDIR\samples\pumping-station.xml"
  RMDir "$INSTDIR\samples"
  RMDir /r "$INSTDIR\licences"
  RMDir /r "$INSTDIR\manual"
  RMDir /r "$INSTDIR\platforms"
  RMDir /r "$INSTDIR\sqldrivers"
  RMDir /r "$INSTDIR\styles"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${PROGRAM}.lnk"
  Delete "$SMPROGRAMS\${PROGRAM} Manual.lnk"
  Delete "$SMPROGRAMS\${PROGRAM} Handbuch.lnk"
  DeleteRegKey HKCU "${CLASSES}\KTRconfig.Configuration"
  DeleteRegValue HKCU "${CLASSES}\.xml\OpenWithProgids" "KTRconfig.Configuration"
  !insertmacro ASSOCIATIONS_CHANGED
  DeleteRegKey HKCU "${UNINSTALL}"
SectionEnd
