; The installer: for the current user alone, so that nobody needs an administrator.
Unicode true
RequestExecutionLevel user
SetCompressor /SOLID lzma
Name "Kavidex ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$LOCALAPPDATA\Programs\Kavidex"
InstallDirRegKey HKCU "Software\Kavidex" "Folder"
!include "LogicLib.nsh"
!include "x64.nsh"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kavidex"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

; The library of 64 bits lies in a folder of its own, since both have a pdfium.dll beside them, and is
; registered by the system's own regsvr32 of 64 bits, which this program of 32 bits sees as Sysnative.
!define REGSVR32 '"$SYSDIR\regsvr32.exe" /s'
!define REGSVR64 '"$WINDIR\Sysnative\regsvr32.exe" /s'
!define USER "/n /i:user"

!macro Register COMMAND FILE
  ClearErrors
  ExecWait '${COMMAND} ${USER} "$INSTDIR\${FILE}"' $0
  ${If} ${Errors}
    StrCpy $0 1
  ${EndIf}
  ${If} $0 != 0
    DetailPrint "${FILE} could not be registered ($0)."
    SetErrorLevel $0
    Abort "${FILE} could not be registered ($0)."
  ${EndIf}
!macroend

; What takes all away is there before anything that may end the installation half-way.
Section
  SetOutPath "$INSTDIR"
  WriteRegStr HKCU "Software\Kavidex" "Folder" "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninst.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Kavidex"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Kavidex contributors"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninst.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninst.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
  File /r /x x64 "${STAGE}/*"
  !insertmacro Register '${REGSVR32}' "Kavidex.ocx"
  ${If} ${RunningX64}
    SetOutPath "$INSTDIR\x64"
    File /r "${STAGE}/x64/*"
    !insertmacro Register '${REGSVR64}' "x64\Kavidex64.ocx"
    SetOutPath "$INSTDIR"
  ${EndIf}
SectionEnd

; Only what was installed goes, file by file: what someone put into its folders stays.
Section "Uninstall"
  ExecWait '${REGSVR32} /u ${USER} "$INSTDIR\Kavidex.ocx"'
  ${If} ${RunningX64}
    ExecWait '${REGSVR64} /u ${USER} "$INSTDIR\x64\Kavidex64.ocx"'
  ${EndIf}
  !include "${FILES}"
  Delete "$INSTDIR\uninst.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL}"
  DeleteRegKey HKCU "Software\Kavidex"
SectionEnd
