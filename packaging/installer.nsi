; The installer of the Windows build, for one user: no administrator is needed.
;   setup.exe /S [/PROPERTIES] [/D=FOLDER]    silent; /PROPERTIES adds the entry of the context menu
Unicode true
Target amd64-unicode  ; as the plug-in itself
!include "FileFunc.nsh"
!include "MUI2.nsh"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\fiohost"
!define VERB "fiohost.properties"

Name "fiohost ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\fiohost"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
ManifestDPIAware true

!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Section "fiohost and the plug-in" HostSection
  SectionIn RO
  !include "${LISTS}/install.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\fiohost.lnk" "$INSTDIR\fiohost.exe" "view"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "fiohost"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\fiohost.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

!macro AddVerb EXTENSION
  WriteRegStr HKCU "Software\Classes\SystemFileAssociations\${EXTENSION}\shell\${VERB}" "" "Picture p&roperties"
  WriteRegStr HKCU "Software\Classes\SystemFileAssociations\${EXTENSION}\shell\${VERB}\command" "" \
    '"$INSTDIR\fiohost.exe" properties "%1" --window'
!macroend
!macro RemoveVerb EXTENSION
  DeleteRegKey HKCU "Software\Classes\SystemFileAssociations\${EXTENSION}\shell\${VERB}"
!macroend

Section /o "Properties in the context menu" PropertiesSection
  !insertmacro AddVerb ".jpg"
  !insertmacro AddVerb ".jpeg"
  !insertmacro AddVerb ".jpe"
  !insertmacro AddVerb ".mpo"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${HostSection} "The program, the plug-in and the libraries that it calls."
  !insertmacro MUI_DESCRIPTION_TEXT ${PropertiesSection} "Shows what a JPEG or MPO file knows from its context menu."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/PROPERTIES" $1
  IfErrors done
  SectionSetFlags ${PropertiesSection} ${SF_SELECTED}
done:
FunctionEnd

Section "Uninstall"
  !include "${LISTS}/uninstall.nsh"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\fiohost.lnk"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  !insertmacro RemoveVerb ".jpg"
  !insertmacro RemoveVerb ".jpeg"
  !insertmacro RemoveVerb ".jpe"
  !insertmacro RemoveVerb ".mpo"
SectionEnd
