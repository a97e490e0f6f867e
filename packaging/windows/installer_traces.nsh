; What setup leaves outside its folder, and how that goes again. What was made is told by values of the key in the list of
; programs, so that nothing goes that was not made: StartMenu, Desktop, Associations and Path are 1 then.

!define RECORDING_ID Carvello.Recording
!define JOB_ID Carvello.Job
!define CAPABILITIES "Software\Carvello\Capabilities"

; The endings that Carvello is offered for, DO ENDING KIND-OF-FILE.
!macro EachEnding DO
  !insertmacro ${DO} .wav ${RECORDING_ID}
  !insertmacro ${DO} .rf64 ${RECORDING_ID}
  !insertmacro ${DO} .sigmf-meta ${RECORDING_ID}
  !insertmacro ${DO} .sigmf-collection ${RECORDING_ID}
  !insertmacro ${DO} .sigmf ${RECORDING_ID}
  !insertmacro ${DO} .json ${JOB_ID}
!macroend

!macro TellEndingsChanged
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)' ; SHCNE_ASSOCCHANGED
!macroend

; In the list of programs.
Function Register
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName Carvello
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "${PUBLISHER}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\carvello.exe,0"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation $INSTDIR
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Readme "$INSTDIR\README.md"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize ${KILOBYTES}
FunctionEnd

Function AddToStartMenu
  SetOutPath $INSTDIR ; where it starts in
  CreateShortcut "$SMPROGRAMS\Carvello.lnk" "$INSTDIR\carvello.exe" "" "" "" SW_SHOWNORMAL "" "$(TextShortcut)"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" StartMenu 1
FunctionEnd

Function AddToDesktop
  SetOutPath $INSTDIR
  CreateShortcut "$DESKTOP\Carvello.lnk" "$INSTDIR\carvello.exe" "" "" "" SW_SHOWNORMAL "" "$(TextShortcut)"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" Desktop 1
FunctionEnd

!macro WriteKind KIND TEXT
  WriteRegStr SHCTX "Software\Classes\${KIND}" "" "${TEXT}"
  WriteRegStr SHCTX "Software\Classes\${KIND}\DefaultIcon" "" "$INSTDIR\carvello.exe,0"
  WriteRegStr SHCTX "Software\Classes\${KIND}\shell\open\command" "" '"$INSTDIR\carvello.exe" "%1"'
!macroend
; The ending's own default stays whatever it is: here is only what else opens it.
!macro OfferForEnding ENDING KIND
  WriteRegStr SHCTX "Software\Classes\${ENDING}\OpenWithProgids" ${KIND} ""
  WriteRegStr SHCTX "Software\Classes\Applications\carvello.exe\SupportedTypes" ${ENDING} ""
  WriteRegStr SHCTX "${CAPABILITIES}\FileAssociations" ${ENDING} ${KIND}
!macroend
Function OfferForFiles
  !insertmacro WriteKind ${RECORDING_ID} "$(TextRecordingFile)"
  !insertmacro WriteKind ${JOB_ID} "$(TextJobFile)"
  WriteRegStr SHCTX "Software\Classes\Applications\carvello.exe" FriendlyAppName Carvello
  WriteRegStr SHCTX "Software\Classes\Applications\carvello.exe\shell\open\command" "" '"$INSTDIR\carvello.exe" "%1"'
  WriteRegStr SHCTX "${CAPABILITIES}" ApplicationName Carvello
  WriteRegStr SHCTX "${CAPABILITIES}" ApplicationDescription "$(TextShortcut)"
  !insertmacro EachEnding OfferForEnding
  WriteRegStr SHCTX Software\RegisteredApplications Carvello "${CAPABILITIES}"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" Associations 1
  !insertmacro TellEndingsChanged
FunctionEnd

Function AddToPath
  StrCpy $0 add
  Call ChangePath
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" Path $0
FunctionEnd

!macro TakeBackEnding ENDING KIND
  DeleteRegValue SHCTX "Software\Classes\${ENDING}\OpenWithProgids" ${KIND}
  DeleteRegKey /ifempty SHCTX "Software\Classes\${ENDING}\OpenWithProgids"
  DeleteRegKey /ifempty SHCTX "Software\Classes\${ENDING}"
!macroend
!macro RemoveTracesFunction UN
Function ${UN}RemoveTraces
  ; What was registered from another folder since is not this installation's.
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" InstallLocation
  ${If} $0 != $INSTDIR
    Return
  ${EndIf}
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" StartMenu
  ${If} $0 = 1
    Delete "$SMPROGRAMS\Carvello.lnk"
  ${EndIf}
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" Desktop
  ${If} $0 = 1
    Delete "$DESKTOP\Carvello.lnk"
  ${EndIf}
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" Associations
  ${If} $0 = 1
    DeleteRegValue SHCTX Software\RegisteredApplications Carvello
    DeleteRegKey /ifempty SHCTX Software\RegisteredApplications
    DeleteRegKey SHCTX "${CAPABILITIES}"
    DeleteRegKey /ifempty SHCTX Software\Carvello
    !insertmacro EachEnding TakeBackEnding
    DeleteRegKey SHCTX "Software\Classes\Applications\carvello.exe"
    DeleteRegKey /ifempty SHCTX Software\Classes\Applications
    DeleteRegKey SHCTX "Software\Classes\${RECORDING_ID}"
    DeleteRegKey SHCTX "Software\Classes\${JOB_ID}"
    !insertmacro TellEndingsChanged
  ${EndIf}
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" Path
  ${If} $0 = 1
    StrCpy $0 remove
    Call ${UN}ChangePath
  ${EndIf}
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  DeleteRegKey /ifempty SHCTX "${PROGRAMS_KEY}"
FunctionEnd
!macroend
!insertmacro RemoveTracesFunction ""
!insertmacro RemoveTracesFunction un.
