; The installer of brevint-explorer, for one user and without any right of an administrator. With /S it
; asks nothing. FILES is the folder that holds what is installed, LIST a file with a command for each of
; them that deletes it, OUTPUT the installer, VERSION its version.

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevint Explorer"

Target amd64-unicode
Name "Brevint Explorer"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Brevint Explorer"
InstallDirRegKey HKCU "${UNINSTALL}" "InstallLocation"
SetCompressor /SOLID lzma
SetDateSave off
ManifestDPIAware true
Icon "${ICON}"
UninstallIcon "${ICON}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Brevint Explorer"
VIAddVersionKey "FileDescription" "Installer of Brevint Explorer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "See copyright.txt"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
  SetOutPath "$INSTDIR"
  File "${FILES}/*.*"
  SetOutPath "$INSTDIR\licences"
  File "${FILES}/licences/*.txt"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Brevint Explorer.lnk" "$INSTDIR\brevint-explorer.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Brevint Explorer"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\brevint-explorer.exe"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; The files are named, so that what the user has put beside them stays. Folders and the key above the
; program's own go only if they hold nothing else: the command-line client keeps its session in the
; folder Brevint.
Section "Uninstall"
  !include "${LIST}"
  RMDir "$INSTDIR\licences"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Brevint Explorer.lnk"
  RMDir /r "$LOCALAPPDATA\Brevint\Explorer"
  RMDir "$LOCALAPPDATA\Brevint"
  DeleteRegKey HKCU "Software\Brevint\Explorer"
  DeleteRegKey /ifempty HKCU "Software\Brevint"
  DeleteRegKey HKCU "${UNINSTALL}"
SectionEnd
