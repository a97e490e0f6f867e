; The setup program for Windows, made by installer.sh, which defines
;   SOURCE           the folder that is installed
;   FILES            a script with the macros EachFile, EachFolder and EachFolderUp, which call a macro for each of them
;   LONGEST          how long the longest path in it is
;   SETUP            the setup program that is made, and COMPRESSOR how
;   KILOBYTES        how much it puts on the disk
;   VERSION, FILE_VERSION, PUBLISHER, COPYRIGHT, DESCRIPTION   as in the programs' own version record
;   PROJECT, PICTURE the project's folder, and the picture beside the text of the last page
; It is a program of 64 bits and therefore sees the registry and the folders as Carvello does.
Unicode true
Target amd64-unicode
SetCompressor ${COMPRESSOR} ; each file on its own: nothing is unpacked twice on a disk that may be full

!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include WinVer.nsh
!include WinMessages.nsh
!include nsDialogs.nsh
!include MUI2.nsh
!include "${FILES}"

; The list of programs, and what it is known by there. The keys are those of all users or of one.
!define PROGRAMS_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL_KEY "${PROGRAMS_KEY}\Carvello"
!define STAGING ".carvello-setup" ; in the folder, while files are unpacked

; Exit codes besides 0, and 1 for what its user cancels.
!define EXIT_REFUSED 2 ; the options, the folder or this Windows; nothing was touched
!define EXIT_RIGHTS 3  ; administrator rights are needed
!define EXIT_IN_USE 4  ; Carvello runs, or another setup
!define EXIT_FAILED 5  ; files could not be written or removed

Name Carvello
OutFile "${SETUP}"
BrandingText "Carvello ${VERSION}"
; As whoever starts it. Where all users get Carvello, it starts itself anew with the rights for that.
RequestExecutionLevel user
ManifestSupportedOS Win10
ManifestDPIAware true
ShowInstDetails nevershow
ShowUninstDetails show
AllowSkipFiles off
SetOverwrite try

VIProductVersion "${FILE_VERSION}"
VIAddVersionKey ProductName Carvello
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${FILE_VERSION}"
VIAddVersionKey FileDescription "${DESCRIPTION}"
VIAddVersionKey CompanyName "${PUBLISHER}"
VIAddVersionKey LegalCopyright "${COPYRIGHT}"

Var AllUsers    ; 1, or 0 for this user alone
Var WhoGiven    ; 1 where an option tells for whom
Var FolderGiven ; the folder of /D=
Var Passed      ; the options that a start with more rights gets, too
Var Earlier     ; the folder in which those users have Carvello already
Var FirstMade   ; the highest folder that had to be made
Var Staging
Var Placing     ; 1 when files have begun to be where they belong
Var ExitCode
Var Problem     ; 0, or the exit code of what is wrong with the folder
Var ProblemText
Var AllUsersButton
; "yes", "no" or nothing, as the options tell
Var StartMenuOption
Var DesktopOption
Var AssociationsOption
Var PathOption

!define MUI_ICON "${PROJECT}/resources/windows/carvello.ico"
!define MUI_UNICON "${PROJECT}/resources/windows/carvello.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_NOTCHECKED
!define MUI_FINISHPAGE_RUN_FUNCTION StartCarvello
!define MUI_FINISHPAGE_TEXT "$(TextFinished)"
!define MUI_UNCONFIRMPAGE_TEXT_TOP "$(TextRemoval)"

Page custom WhoPage LeaveWhoPage
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE LeaveFolderPage
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE German
!insertmacro MUI_LANGUAGE French
!include "${PROJECT}/packaging/windows/installer_texts.nsh"
!include "${PROJECT}/packaging/windows/installer_path.nsh"
!include "${PROJECT}/packaging/windows/installer_traces.nsh"
!include "${PROJECT}/packaging/windows/installer_options.nsh"

; Tells why it ends. What calls it, aborts.
!macro Fail CODE TEXT
  StrCpy $ExitCode ${CODE}
  SetErrorLevel ${CODE}
  MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
!macroend
!define Fail "!insertmacro Fail"

; Puts the first of the programs in FOLDER into RESULT that cannot be replaced because it runs.
!macro FindRunning FOLDER RESULT
  StrCpy ${RESULT} ""
  !insertmacro TestRunning "${FOLDER}\carvello.exe" ${RESULT}
  !insertmacro TestRunning "${FOLDER}\carvello-cli.exe" ${RESULT}
  !insertmacro TestRunning "${FOLDER}\Vantrel.dll" ${RESULT}
!macroend
!macro TestRunning PATH RESULT
  ; To write, whoever else has it open; 3: it must be there.
  System::Call 'kernel32::CreateFile(t "${PATH}", i 0x40000000, i 7, p 0, i 3, i 0, p 0) p.r8 ?e'
  Pop $9
  ${If} $8 P<> -1
    System::Call 'kernel32::CloseHandle(p r8)'
  ${ElseIf} $9 = 32 ; a sharing violation
    StrCpy ${RESULT} "${PATH}"
  ${EndIf}
!macroend

Function .onInit
  StrCpy $ExitCode ""
  Call ReadOptions
  ${If} $Problem <> 0
    ${Fail} $Problem "$ProblemText"
    Abort
  ${EndIf}
  ${IfNot} ${AtLeastWin10}
    ${Fail} ${EXIT_REFUSED} "$(TextOldWindows)"
    Abort
  ${EndIf}

  ; Where nothing tells for whom: whoever has it, else this user alone.
  ${If} $WhoGiven <> 1
    StrCpy $AllUsers 0
    ReadRegStr $0 HKCU "${UNINSTALL_KEY}" InstallLocation
    ReadRegStr $1 HKLM "${UNINSTALL_KEY}" InstallLocation
    ${If} $0 == ""
    ${AndIf} $1 != ""
      StrCpy $AllUsers 1
    ${EndIf}
  ${EndIf}
  ${If} $AllUsers = 1
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != Admin
      ${If} ${Silent}
        ${Fail} ${EXIT_RIGHTS} ""
        Abort
      ${EndIf}
      ${If} $WhoGiven = 1
        Call StartWithRights
        Abort ; it has not
      ${EndIf}
    ${EndIf}
  ${EndIf}
  Call TakeUsers
FunctionEnd

; Starts this program anew with administrator rights, which Windows asks for, and ends this one; comes back only if that
; was denied.
Function StartWithRights
  StrCpy $0 "/AllUsers$Passed"
  ${If} $FolderGiven != ""
    StrCpy $0 "$0 /D=$FolderGiven"
  ${EndIf}
  ClearErrors
  ExecShell runas "$EXEPATH" "$0"
  ${IfNot} ${Errors}
    Quit
  ${EndIf}
  ${Fail} ${EXIT_RIGHTS} "$(TextRights)"
FunctionEnd

; What follows from $AllUsers: the folder, and what was chosen the last time, unless options tell.
Function TakeUsers
  ${If} $AllUsers = 1
    SetShellVarContext all
    StrCpy $0 "$PROGRAMFILES64\Carvello"
  ${Else}
    SetShellVarContext current
    StrCpy $0 "$LOCALAPPDATA\Programs\Carvello"
  ${EndIf}
  ReadRegStr $Earlier SHCTX "${UNINSTALL_KEY}" InstallLocation
  ${If} $FolderGiven != ""
    StrCpy $INSTDIR $FolderGiven
  ${ElseIf} $Earlier != ""
    StrCpy $INSTDIR $Earlier
  ${Else}
    StrCpy $INSTDIR $0
  ${EndIf}
  Call ChooseComponents
FunctionEnd

Function WhoPage
  ${If} $WhoGiven = 1
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "$(TextWho)" "$(TextWhoBelow)"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "$(TextThisUser)"
  Pop $1
  ${NSD_CreateLabel} 12u 24u -12u 26u "$(TextThisUserBelow)"
  Pop $0
  ${NSD_CreateRadioButton} 0 58u 100% 12u "$(TextAllUsers)"
  Pop $AllUsersButton
  ${NSD_CreateLabel} 12u 72u -12u 26u "$(TextAllUsersBelow)"
  Pop $0
  ${If} $AllUsers = 1
    ${NSD_Check} $AllUsersButton
    ${NSD_SetFocus} $AllUsersButton
  ${Else}
    ${NSD_Check} $1
    ${NSD_SetFocus} $1
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function LeaveWhoPage
  ${NSD_GetState} $AllUsersButton $0
  StrCpy $AllUsers 0
  ${If} $0 = ${BST_CHECKED}
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != Admin
      Call StartWithRights
      Abort
    ${EndIf}
    StrCpy $AllUsers 1
  ${EndIf}
  Call TakeUsers
FunctionEnd

Function LeaveFolderPage
  Call CheckFolder
  ${If} $Problem <> 0
    MessageBox MB_OK|MB_ICONSTOP "$ProblemText"
    Abort
  ${EndIf}
FunctionEnd

; Whether Carvello can be put into $INSTDIR as far as can be told without touching anything.
!macro TestForeign FILE PATH
  ${If} ${FileExists} "$INSTDIR\${PATH}"
    StrCpy $0 "$INSTDIR\${PATH}"
  ${EndIf}
!macroend
Function CheckFolder
  StrCpy $Problem 0
  StrCpy $0 $INSTDIR 1 -1
  ${If} $0 == "\"
    StrCpy $INSTDIR $INSTDIR -1
  ${EndIf}
  StrCpy $0 $INSTDIR 2
  StrCpy $1 $INSTDIR 2 1
  StrLen $2 $INSTDIR
  IntOp $2 $2 + ${LONGEST}
  ${If} $0 != "\\"
  ${AndIf} $1 != ":\"
    StrCpy $Problem ${EXIT_REFUSED}
    StrCpy $ProblemText "$(TextNoFolder)"
  ${ElseIf} $2 > 259 ; more than that the shell does not start
    StrCpy $Problem ${EXIT_REFUSED}
    StrCpy $ProblemText "$(TextLongFolder)"
  ${EndIf}
  ${If} $Problem <> 0
    Return
  ${EndIf}

  ; Files of somebody else are not written over.
  ${If} $INSTDIR != $Earlier
    StrCpy $0 ""
    !insertmacro TestForeign "" uninstall.exe
    !insertmacro EachFile TestForeign
    ${If} $0 != ""
      StrCpy $Problem ${EXIT_REFUSED}
      StrCpy $ProblemText "$(TextForeignFile)"
      Return
    ${EndIf}
  ${EndIf}

again:
  StrCpy $0 ""
  !insertmacro FindRunning $INSTDIR $0
  ${If} $0 == ""
  ${AndIf} $Earlier != ""
    !insertmacro FindRunning $Earlier $0
  ${EndIf}
  ${If} $0 != ""
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TextRunning)" /SD IDCANCEL IDRETRY again
    StrCpy $Problem ${EXIT_IN_USE}
    StrCpy $ProblemText "$(TextRunning)"
  ${EndIf}
FunctionEnd

!macro MakeStaged FOLDER
  CreateDirectory "$Staging\${FOLDER}"
!macroend
!macro Unpack FILE PATH
  File "/oname=$Staging\${PATH}" "${SOURCE}/${FILE}"
!macroend
!macro MakeFolder FOLDER
  CreateDirectory "$INSTDIR\${FOLDER}"
!macroend
!macro Place FILE PATH
  Delete "$INSTDIR\${PATH}"
  Rename "$Staging\${PATH}" "$INSTDIR\${PATH}"
!macroend
!macro RemoveFile FILE PATH
  Delete "$INSTDIR\${PATH}"
!macroend
!macro RemoveFolder FOLDER
  RMDir "$INSTDIR\${FOLDER}"
!macroend

Section "$(TextProgram)" ProgramSection
  SectionIn RO
  System::Call 'kernel32::CreateMutex(p 0, i 0, t "CarvelloSetup") p.r0 ?e'
  Pop $0
  ${If} $0 = 183 ; it exists
    ${Fail} ${EXIT_IN_USE} "$(TextTwoSetups)"
    Abort
  ${EndIf}
  Call CheckFolder
  ${If} $Problem <> 0
    ${Fail} $Problem "$ProblemText"
    Abort
  ${EndIf}

  StrCpy $0 $INSTDIR
  ${DoUntil} ${FileExists} "$0\*.*"
    StrLen $1 $0
    ${If} $1 <= 3 ; a drive without files
      ${Break}
    ${EndIf}
    StrCpy $FirstMade $0
    ${GetParent} $0 $0
  ${Loop}

  ; All of it is unpacked before anything is changed, so that a full disk changes nothing.
  StrCpy $Staging "$INSTDIR\${STAGING}"
  RMDir /r $Staging
  ClearErrors
  CreateDirectory $Staging
  !insertmacro EachFolder MakeStaged
  !insertmacro EachFile Unpack
  WriteUninstaller "$Staging\uninstall.exe"
  ${If} ${Errors}
    ${Fail} ${EXIT_FAILED} "$(TextNotWritten)"
    Abort
  ${EndIf}

  ; What is there already is removed by the one who knows what that is.
  ${If} $Earlier != ""
  ${AndIf} ${FileExists} "$Earlier\uninstall.exe"
    ClearErrors
    ExecWait '"$Earlier\uninstall.exe" /S /Upgrade _?=$Earlier' $1
    ${If} ${Errors}
    ${OrIf} $1 <> 0
      StrCpy $0 $Earlier
      ${If} $1 <> ${EXIT_IN_USE}
        StrCpy $1 ${EXIT_FAILED}
      ${EndIf}
      ${Fail} $1 "$(TextEarlierStays)"
      Abort
    ${EndIf}
    Delete "$Earlier\uninstall.exe"
    RMDir $Earlier
  ${EndIf}

  StrCpy $Placing 1
  ClearErrors
  !insertmacro EachFolder MakeFolder
  !insertmacro EachFile Place
  !insertmacro Place "" uninstall.exe
  ${If} ${Errors}
    ${Fail} ${EXIT_FAILED} "$(TextNotWritten)"
    Abort
  ${EndIf}
  RMDir /r $Staging
  Call Register
SectionEnd

Section "$(TextStartMenu)" StartMenuSection
  Call AddToStartMenu
SectionEnd

Section /o "$(TextDesktop)" DesktopSection
  Call AddToDesktop
SectionEnd

Section /o "$(TextAssociations)" AssociationsSection
  Call OfferForFiles
SectionEnd

Section /o "$(TextPath)" PathSection
  Call AddToPath
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${ProgramSection} "$(TextProgramBelow)"
  !insertmacro MUI_DESCRIPTION_TEXT ${StartMenuSection} "$(TextStartMenuBelow)"
  !insertmacro MUI_DESCRIPTION_TEXT ${DesktopSection} "$(TextDesktopBelow)"
  !insertmacro MUI_DESCRIPTION_TEXT ${AssociationsSection} "$(TextAssociationsBelow)"
  !insertmacro MUI_DESCRIPTION_TEXT ${PathSection} "$(TextPathBelow)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Each section is named by now.
!macro ChooseComponent SECTION NAME OPTION DEFAULT
  StrCpy $0 ${DEFAULT}
  ${If} ${OPTION} == yes
    StrCpy $0 1
  ${ElseIf} ${OPTION} == no
    StrCpy $0 0
  ${ElseIf} $Earlier != ""
    ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" ${NAME}
  ${EndIf}
  ${If} $0 = 1
    !insertmacro SelectSection ${SECTION}
  ${Else}
    !insertmacro UnselectSection ${SECTION}
  ${EndIf}
!macroend
Function ChooseComponents
  !insertmacro ChooseComponent ${StartMenuSection} StartMenu $StartMenuOption 1
  !insertmacro ChooseComponent ${DesktopSection} Desktop $DesktopOption 0
  !insertmacro ChooseComponent ${AssociationsSection} Associations $AssociationsOption 0
  !insertmacro ChooseComponent ${PathSection} Path $PathOption 0
FunctionEnd

; Everything that was made goes again, up to the first folder that was there before.
Function .onInstFailed
  ${If} $ExitCode == "" ; the disk was full in the middle of a file
    SetErrorLevel ${EXIT_FAILED}
  ${EndIf}
  ${If} $Staging == "" ; nothing was made
    Return
  ${EndIf}
  SetOutPath $TEMP
  RMDir /r $Staging
  ${If} $Placing = 1
    !insertmacro EachFile RemoveFile
    Delete "$INSTDIR\uninstall.exe"
    !insertmacro EachFolderUp RemoveFolder
    Call RemoveTraces
  ${EndIf}
  ${If} $FirstMade != ""
    StrLen $1 $FirstMade
    StrCpy $0 $INSTDIR
    ${Do}
      RMDir $0
      StrLen $2 $0
      ${If} $2 <= $1
        ${Break}
      ${EndIf}
      ${GetParent} $0 $0
    ${Loop}
  ${EndIf}
FunctionEnd

; Without the rights that setup may have.
Function StartCarvello
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\carvello.exe"'
FunctionEnd

; What tells the file at PATH from every other one, whatever name it goes by; nothing where there is none.
!macro IdentifyFile PATH RESULT
  StrCpy ${RESULT} ""
  System::Call 'kernel32::CreateFileW(t "${PATH}", i 0, i 7, p 0, i 3, i 0, p 0) p.r7'
  ${If} $7 P<> -1
    System::Call '*(&v52) p.r8' ; BY_HANDLE_FILE_INFORMATION: times from 4 on, size at 32, index at 44
    System::Call 'kernel32::GetFileInformationByHandle(p r7, p r8) i.r9'
    ${If} $9 <> 0
      System::Call '*$8(&v20, i.r5, i.r6, &v8, i.r9)'
      StrCpy ${RESULT} "$5 $6 $9"
      System::Call '*$8(&v36, i.r5, &v4, i.r6, i.r9)'
      StrCpy ${RESULT} "${RESULT} $5 $6 $9"
    ${EndIf}
    System::Free $8
    System::Call 'kernel32::CloseHandle(p r7)'
  ${EndIf}
!macroend

; Whether this is the installation that the list of programs has in HIVE, $0 becomes 1 then; from here on its folder has
; the name that it has there.
!macro FindInstallation HIVE
  StrCpy $0 0
  ReadRegStr $1 ${HIVE} "${UNINSTALL_KEY}" InstallLocation
  ${If} $1 == $INSTDIR
    StrCpy $0 1
  ${ElseIf} $1 != ""
    !insertmacro IdentifyFile "$INSTDIR\carvello.exe" $2
    !insertmacro IdentifyFile "$1\carvello.exe" $3
    ${If} $2 == $3
    ${AndIf} $2 != ""
      StrCpy $INSTDIR $1
      StrCpy $0 1
    ${EndIf}
  ${EndIf}
!macroend

Function un.onInit
  ClearErrors
  ${GetParameters} $0
  ${GetOptions} $0 "/Language=" $1
  !insertmacro TakeLanguage $1
  SetShellVarContext current
  !insertmacro FindInstallation HKCU
  ${If} $0 = 1
    Return
  ${EndIf}
  !insertmacro FindInstallation HKLM
  ${If} $0 = 1
    SetShellVarContext all
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != Admin
      ${IfNot} ${Silent}
        ClearErrors
        ExecShell runas "$INSTDIR\uninstall.exe"
        ${IfNot} ${Errors}
          Quit
        ${EndIf}
      ${EndIf}
      ${Fail} ${EXIT_RIGHTS} "$(TextRights)"
      Abort
    ${EndIf}
  ${EndIf}
FunctionEnd

Section Uninstall
again:
  !insertmacro FindRunning $INSTDIR $0
  ${If} $0 != ""
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TextRunning)" /SD IDCANCEL IDRETRY again
    SetErrorLevel ${EXIT_IN_USE}
    Abort
  ${EndIf}

  SetOutPath $TEMP
  ClearErrors
  !insertmacro EachFile RemoveFile
  ${If} ${Errors}
    StrCpy $0 $INSTDIR
    ${Fail} ${EXIT_FAILED} "$(TextEarlierStays)"
    Abort
  ${EndIf}
  !insertmacro EachFolderUp RemoveFolder
  Call un.RemoveTraces
  ; The setup program that removes an earlier version this way has its files there.
  ClearErrors
  ${GetParameters} $0
  ${GetOptions} $0 "/Upgrade" $1
  ${If} ${Errors}
    RMDir /r "$INSTDIR\${STAGING}"
  ${EndIf}
  Delete "$INSTDIR\uninstall.exe"
  RMDir $INSTDIR
  ${If} ${FileExists} $INSTDIR
    DetailPrint "$(TextFilesStay)"
  ${EndIf}
  DetailPrint "$(TextSettingsStay)"
SectionEnd
