; The options of setup's command line; docs/windows.md tells of them.

!macro TakeLanguage NAME
  ${If} ${NAME} == en
    StrCpy $LANGUAGE ${LANG_ENGLISH}
  ${ElseIf} ${NAME} == de
    StrCpy $LANGUAGE ${LANG_GERMAN}
  ${ElseIf} ${NAME} == fr
    StrCpy $LANGUAGE ${LANG_FRENCH}
  ${EndIf}
!macroend

; If the option $1 is /NAME, /NAME=yes or /NAME=no, VARIABLE becomes "yes" or "no", and $2 1.
!macro TakeSwitch NAME VARIABLE
  ${If} $1 == "/${NAME}"
  ${OrIf} $1 == "/${NAME}=yes"
    StrCpy ${VARIABLE} yes
    StrCpy $2 1
  ${ElseIf} $1 == "/${NAME}=no"
    StrCpy ${VARIABLE} no
    StrCpy $2 1
  ${EndIf}
!macroend

; Sets $AllUsers, $WhoGiven, $FolderGiven and the variables of components, and $Problem where an option is none. The system
; has taken /D= off the command line by then, unless it stands in quotes, as some shells put it there.
Function ReadOptions
  StrCpy $Problem 0
  StrCpy $WhoGiven 0
  StrCpy $FolderGiven $INSTDIR
  ${If} $INSTDIR == "" ; also where the system takes what is given for none
    System::Call 'kernel32::GetCommandLineW() p .r1'
    System::Call 'shlwapi::StrStrW(p r1, t " /D=") p .r1'
    ${If} $1 P<> 0
      System::Call 'kernel32::lstrcpynW(t .r2, p r1, i ${NSIS_MAX_STRLEN})'
      StrCpy $INSTDIR $2 "" 4
      StrCpy $Problem ${EXIT_REFUSED}
      StrCpy $ProblemText "$(TextNoFolder)"
      Return
    ${EndIf}
  ${EndIf}

  ${GetParameters} $0
  ${Do}
    StrCpy $1 $0 1
    ${If} $1 == " "
      StrCpy $0 $0 "" 1
      ${Continue}
    ${ElseIf} $1 == ""
      ${Break}
    ${EndIf}
    StrCpy $1 $0 4
    StrCpy $2 $0 1 -1
    ${If} $1 == '"/D='
    ${AndIf} $2 == '"'
      StrCpy $FolderGiven $0 -1 4
      ${Break}
    ${EndIf}

    ; $1: the next option, $0: what is behind it.
    StrCpy $2 0
    ${Do}
      StrCpy $1 $0 1 $2
      ${If} $1 == " "
      ${OrIf} $1 == ""
        ${Break}
      ${EndIf}
      IntOp $2 $2 + 1
    ${Loop}
    StrCpy $1 $0 $2
    StrCpy $0 $0 "" $2

    StrCpy $2 0
    ${If} $1 == /AllUsers
    ${OrIf} $1 == /CurrentUser
      StrCpy $3 0
      ${If} $1 == /AllUsers
        StrCpy $3 1
      ${EndIf}
      ${If} $WhoGiven = 0
      ${OrIf} $AllUsers = $3 ; not the one and the other
        StrCpy $AllUsers $3
        StrCpy $WhoGiven 1
        StrCpy $2 1
      ${EndIf}
    ${ElseIf} $1 S== /S ; the system has seen these two, which it wants in capitals
    ${OrIf} $1 S== /NCRC
      StrCpy $2 1
    ${ElseIf} $1 == /Language=en
    ${OrIf} $1 == /Language=de
    ${OrIf} $1 == /Language=fr
      StrCpy $3 $1 "" -2
      !insertmacro TakeLanguage $3
      StrCpy $Passed "$Passed $1"
      StrCpy $2 1
    ${Else}
      !insertmacro TakeSwitch StartMenu $StartMenuOption
      !insertmacro TakeSwitch Desktop $DesktopOption
      !insertmacro TakeSwitch Associations $AssociationsOption
      !insertmacro TakeSwitch Path $PathOption
      ${If} $2 = 1
        StrCpy $Passed "$Passed $1"
      ${EndIf}
    ${EndIf}
    ${If} $2 = 0
      StrCpy $Problem ${EXIT_REFUSED}
      StrCpy $ProblemText "$(TextNoOption)"
      Return
    ${EndIf}
  ${Loop}
FunctionEnd
