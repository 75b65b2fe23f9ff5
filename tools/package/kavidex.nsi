; The installer: for the current user alone, so that nobody needs an administrator.
Unicode true
RequestExecutionLevel user
SetCompressor /SOLID lzma
Name "Kavidex ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$LOCALAPPDATA\Programs\Kavidex"
InstallDirRegKey HKCU "Software\Kavidex" "Folder"
!include "LogicLib.nsh"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kavidex"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section
  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  ClearErrors
  ExecWait '"$SYSDIR\regsvr32.exe" /s /n /i:user "$INSTDIR\Kavidex.ocx"' $0
  ${If} ${Errors}
    StrCpy $0 1
  ${EndIf}
  ${If} $0 != 0
    DetailPrint "Kavidex.ocx could not be registered ($0)."
    SetErrorLevel $0
    Abort "Kavidex.ocx could not be registered ($0)."
  ${EndIf}
  WriteRegStr HKCU "Software\Kavidex" "Folder" "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninst.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Kavidex"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Kavidex contributors"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninst.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninst.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

; Only what was installed goes: a folder that someone put files into stays.
Section "Uninstall"
  ExecWait '"$SYSDIR\regsvr32.exe" /s /u /n /i:user "$INSTDIR\Kavidex.ocx"'
  Delete "$INSTDIR\Kavidex.ocx"
  Delete "$INSTDIR\Kavidex.tlb"
  Delete "$INSTDIR\Kavidex.manifest"
  Delete "$INSTDIR\pdfium.dll"
  Delete "$INSTDIR\kavidex-*.exe"
  Delete "$INSTDIR\README.md"
  Delete "$INSTDIR\CHANGELOG.md"
  Delete "$INSTDIR\NOTICES.md"
  Delete "$INSTDIR\LICENSE.txt"
  RMDir /r "$INSTDIR\docs"
  RMDir /r "$INSTDIR\examples"
  RMDir /r "$INSTDIR\licenses"
  Delete "$INSTDIR\uninst.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL}"
  DeleteRegKey HKCU "Software\Kavidex"
SectionEnd
