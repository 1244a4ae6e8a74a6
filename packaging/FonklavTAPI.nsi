; The installer. It puts the dialer into the folder of the suite, which other programs share: their paths, switches and
; language files are never overwritten and never removed, nor are the user's data.
;
; makensis -DVERSION= -DPROGRAM= -DCONTENTS= (folder of the texts) -DROOT= (of the sources) -DOUTPUT= FonklavTAPI.nsi
Unicode true
Target amd64-unicode
SetDateSave off  ; two builds make the same bytes
SetCompressor /SOLID lzma
AllowSkipFiles off  ; a program in use is a failure, also without questions
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\FonklavTAPI"
Name "FonklavTAPI ${VERSION}"
OutFile "${OUTPUT}"
; It writes below Program Files and what all users of the machine share.
RequestExecutionLevel admin
ManifestSupportedOS all
ManifestDPIAware true
InstallDir "$PROGRAMFILES64\Rufmon"
InstallDirRegKey HKLM "${UNINSTALL}" "InstallLocation"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Rufmon"
VIAddVersionKey CompanyName "Rufmon"
VIAddVersionKey LegalCopyright ""
VIAddVersionKey FileDescription "FonklavTAPI"
VIAddVersionKey FileVersion "${VERSION}"

!define MUI_ICON "${ROOT}/window/resources/FonklavTAPI.ico"
!define MUI_UNICON "${MUI_ICON}"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE German
LangString InUse ${LANG_ENGLISH} "FonklavTAPI.exe is in use: end the suite first."
LangString InUse ${LANG_GERMAN} "FonklavTAPI.exe wird benutzt: bitte zuerst die Suite beenden."

Function .onInit
  ; A suite of 32 bits stands in another folder.
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
  ${AndIf} $INSTDIR == "$PROGRAMFILES64\Rufmon"
  ${AndIf} ${FileExists} "$PROGRAMFILES32\Rufmon\*.*"
    StrCpy $INSTDIR "$PROGRAMFILES32\Rufmon"
  ${EndIf}
FunctionEnd

; The data root, found as the program finds it, into $0.
Function FindDataRoot
  SetShellVarContext all  ; $APPDATA is the folder for all users
  ClearErrors
  ReadINIStr $0 "$INSTDIR\Rufmonpaths.ini" Paths ProgramData
  ${If} ${Errors}
    StrCpy $0 1
  ${EndIf}
  ${GetRoot} $0 $1
  ${If} $1 != ""  ; a drive or a share: no number
    Return
  ${EndIf}
  StrLen $1 $PROGRAMFILES64  ; the other folder of this kind begins with the same letters
  StrCpy $1 $INSTDIR $1
  ${If} $0 == 0
  ${OrIf} $0 == ""
  ${AndIf} $1 != $PROGRAMFILES64
    StrCpy $0 $INSTDIR
  ${Else}
    StrCpy $0 "$APPDATA\Rufmon"
  ${EndIf}
FunctionEnd

; The folders that the program expects and does not make. What exists keeps its rights.
Function MakeDataRoot
  Call FindDataRoot
  ${If} ${FileExists} "$0\*.*"
    StrCpy $1 exists
  ${Else}
    StrCpy $1 new
  ${EndIf}
  CreateDirectory "$0\data"
  CreateDirectory "$0\log"
  ${If} $1 == new
    ; S-1-5-32-545: the users of the machine, whatever they are called in its language.
    nsExec::Exec '"$SYSDIR\icacls.exe" "$0" /grant *S-1-5-32-545:(OI)(CI)M'
    Pop $1
  ${EndIf}
FunctionEnd

Section
  SetOutPath "$INSTDIR"
  File "${PROGRAM}"
  File "/oname=FonklavTAPI-README.txt" "${CONTENTS}/README.txt"
  File "${CONTENTS}/Rufmonpaths.ini.sample"
  File "${CONTENTS}/Rufmonspec.ini.sample"
  SetOutPath "$INSTDIR\base"
  SetOverwrite off
  File "${ROOT}/lang/language_*.ini"
  SetOverwrite on
  Call MakeDataRoot
  WriteUninstaller "$INSTDIR\FonklavTAPI-uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL}" DisplayName "FonklavTAPI"
  WriteRegStr HKLM "${UNINSTALL}" DisplayVersion "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL}" DisplayIcon "$INSTDIR\FonklavTAPI.exe"
  WriteRegStr HKLM "${UNINSTALL}" Publisher "Rufmon"
  WriteRegStr HKLM "${UNINSTALL}" InstallLocation "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL}" UninstallString '"$INSTDIR\FonklavTAPI-uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL}" QuietUninstallString '"$INSTDIR\FonklavTAPI-uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL}" NoModify 1
  WriteRegDWORD HKLM "${UNINSTALL}" NoRepair 1
SectionEnd

Section Uninstall
  ClearErrors
  Delete "$INSTDIR\FonklavTAPI.exe"
  ${If} ${Errors}
    SetErrorLevel 2
    MessageBox MB_ICONEXCLAMATION "$(InUse)" /SD IDOK
    Abort
  ${EndIf}
  Delete "$INSTDIR\FonklavTAPI-README.txt"
  Delete "$INSTDIR\Rufmonpaths.ini.sample"
  Delete "$INSTDIR\Rufmonspec.ini.sample"
  Delete "$INSTDIR\FonklavTAPI-uninstall.exe"
  DeleteRegKey HKLM "${UNINSTALL}"
SectionEnd
