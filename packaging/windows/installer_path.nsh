; The folder in PATH, so that carvello-cli is found. PATH is often longer than this language's texts may be, so it never
; becomes one of them: everything happens in memory, and the kind of the value stays what it is.

; ChangePath: $0 is "add" or "remove"; it becomes 1 where PATH was changed, else 0.
!macro ChangePathFunction UN
Function ${UN}ChangePath
  StrCpy $9 $0
  StrCpy $0 0
  ReadRegStr $1 HKLM "${UNINSTALL_KEY}" InstallLocation
  ${If} $1 == $INSTDIR ; for all users
    StrCpy $1 -2147483646 ; HKEY_LOCAL_MACHINE
    StrCpy $2 "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
  ${Else}
    StrCpy $1 -2147483647 ; HKEY_CURRENT_USER
    StrCpy $2 Environment
  ${EndIf}
  System::Call 'advapi32::RegOpenKeyExW(p r1, t r2, i 0, i 0x2001b, *p .r1) i .r3' ; to read and to set values
  ${If} $3 <> 0
    Return
  ${EndIf}

  System::Call 'advapi32::RegQueryValueExW(p r1, t "Path", p 0, *i .r4, p 0, *i .r5) i .r3' ; r4: kind, r5: bytes
  ${If} $3 = 2 ; there is none
    StrCpy $4 2 ; REG_EXPAND_SZ
    StrCpy $5 0
    StrCpy $3 0
  ${EndIf}
  ${If} $3 = 0
    ; r6: PATH, in r7 with a ";" on either side.
    StrLen $8 $INSTDIR
    IntOp $8 $8 * 2
    IntOp $8 $8 + $5
    IntOp $8 $8 + 16
    System::Alloc $8
    Pop $6
    System::Alloc $8
    Pop $7
    ${If} $5 > 0
      System::Call 'advapi32::RegQueryValueExW(p r1, t "Path", p 0, p 0, p r6, *i r5) i .r3'
    ${EndIf}
    System::Call 'kernel32::lstrcpyW(p r7, t ";")'
    System::Call 'kernel32::lstrcatW(p r7, p r6)'
    System::Call 'kernel32::lstrcatW(p r7, t ";")'
    System::Call 'shlwapi::StrStrIW(p r7, t ";$INSTDIR;") p .r8'
    ${If} $3 <> 0 ; changed in the meantime
    ${ElseIf} $9 == add
    ${AndIf} $8 P= 0
      System::Call 'kernel32::lstrlenW(p r7) i .r3'
      ${If} $3 > 2 ; there is something to come behind
        System::Call 'shlwapi::StrRChrW(p r6, p 0, i 59) p .r8' ; the last ";"
        ${If} $8 P<> 0
          System::Call 'kernel32::lstrlenW(p r8) i .r3'
        ${EndIf}
        ${If} $3 <> 1 ; which is not the end
          System::Call 'kernel32::lstrcatW(p r6, t ";")'
        ${EndIf}
      ${EndIf}
      System::Call 'kernel32::lstrcatW(p r6, t "$INSTDIR")'
      StrCpy $0 1
    ${ElseIf} $9 == remove
    ${AndIf} $8 P<> 0
      StrLen $3 ";$INSTDIR"
      IntOp $3 $3 * 2
      IntPtrOp $3 $3 + $8 ; the ";" behind it
      System::Call 'kernel32::lstrlenW(p r3) i .r5'
      IntOp $5 $5 * 2
      IntOp $5 $5 + 2
      System::Call 'kernel32::RtlMoveMemory(p r8, p r3, p r5)'
      ; Without the ";" on either side. Both are one where nothing is left.
      IntPtrOp $7 $7 + 2
      System::Call 'kernel32::lstrcpyW(p r6, p r7)'
      IntPtrOp $7 $7 - 2
      System::Call 'kernel32::lstrlenW(p r6) i .r3'
      ${If} $3 > 0
        IntOp $3 $3 - 1
        IntOp $3 $3 * 2
        IntPtrOp $3 $3 + $6
        System::Call '*$3(&i2 0)'
      ${EndIf}
      StrCpy $0 1
    ${EndIf}
    ${If} $0 = 1
      System::Call 'kernel32::lstrlenW(p r6) i .r5'
      ${If} $5 = 0
        System::Call 'advapi32::RegDeleteValueW(p r1, t "Path") i .r3'
      ${Else}
        IntOp $5 $5 * 2
        IntOp $5 $5 + 2
        System::Call 'advapi32::RegSetValueExW(p r1, t "Path", i 0, i r4, p r6, i r5) i .r3'
      ${EndIf}
      ${If} $3 <> 0
        StrCpy $0 0
      ${EndIf}
    ${EndIf}
    System::Free $6
    System::Free $7
  ${EndIf}
  System::Call 'advapi32::RegCloseKey(p r1)'
  ${If} $0 = 1 ; whoever starts programs takes the new one
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
  ${EndIf}
FunctionEnd
!macroend
!insertmacro ChangePathFunction ""
!insertmacro ChangePathFunction un.
