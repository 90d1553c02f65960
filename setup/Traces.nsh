; Remembers which registry keys and folders were not there before, so that the removal leaves what was.
Var FirstFolder          ; the topmost folder that the installation made, empty when it made none
Var FormerFirstFolder    ; the same of the installation that is replaced
Var MadeKeys             ; how many keys are noted

; Sets FirstFolder for a new installation in $INSTDIR.
Function NoteFolders
    StrCpy $FirstFolder ""
    StrCpy $0 $INSTDIR
    ${DoUntil} ${FileExists} "$0\*.*"
        StrCpy $FirstFolder $0
        ${GetParent} $0 $0
        ${If} $0 == ""
            ${ExitDo}
        ${EndIf}
    ${Loop}
FunctionEnd

; Roots and views as RegOpenKeyEx takes them.
!define HANDLE_LM -2147483646
!define HANDLE_CU -2147483647
!define KEY_READ_64 0x20119
!define KEY_READ_32 0x20219

; Notes a key that is missing, as one more value of the entry for removal. It begins with the root, LM or CU, and the view.
!macro NoteKey root view key
    System::Call 'advapi32::RegOpenKeyExW(p ${HANDLE_${root}}, w "${key}", i 0, i ${KEY_READ_${view}}, *p .r0) i .r1'
    ${If} $1 = 0
        System::Call 'advapi32::RegCloseKey(p r0)'
    ${Else}
        IntOp $MadeKeys $MadeKeys + 1
        WriteRegStr SHCTX "${UNINSTALL_KEY}" "MadeKey$MadeKeys" "${root}${view}${key}"
    ${EndIf}
!macroend

!macro NoteClasses root view
    !insertmacro NoteKey ${root} ${view} "${CLASSES_KEY}"
    !insertmacro NoteKey ${root} ${view} "${CLASSES_KEY}\AppID"
    !insertmacro NoteKey ${root} ${view} "${CLASSES_KEY}\CLSID"
    !insertmacro NoteKey ${root} ${view} "${CLASSES_KEY}\Interface"
    !insertmacro NoteKey ${root} ${view} "${CLASSES_KEY}\TypeLib"
!macroend

!macro NoteAddins root view
    !insertmacro NoteKey ${root} ${view} "Software\Microsoft\Office"
    !insertmacro NoteKey ${root} ${view} "Software\Microsoft\Office\Outlook"
    !insertmacro NoteKey ${root} ${view} "${ADDINS_KEY}"
!macroend

!macro NoteProduct root view
    !insertmacro NoteKey ${root} ${view} "Software\Talmorex"
    !insertmacro NoteKey ${root} ${view} "${PATH_KEY}"
!macroend

!macro NoteArch view
    ${If} $Mode == "AllUsers"
        !insertmacro NoteClasses LM ${view}
        !insertmacro NoteAddins LM ${view}
    ${Else}
        !insertmacro NoteClasses CU ${view}
    ${EndIf}
!macroend

; Notes what the registration of this kind will make, each key after those above it.
Function NoteKeys
    StrCpy $MadeKeys 0
    ${Do}
        IntOp $0 $MadeKeys + 1
        ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "MadeKey$0"
        ${If} $1 == ""
            ${ExitDo}
        ${EndIf}
        StrCpy $MadeKeys $0
    ${Loop}
    ${If} $Mode == "CurrentUser"
        !insertmacro NoteKey CU 64 "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    ${EndIf}
    !insertmacro NoteAddins CU 64
    ${If} $Arch == "x86"
        !insertmacro NoteArch 32
    ${Else}
        !insertmacro NoteArch 64
    ${EndIf}
    ${If} $Mode == "AllUsers"
        !insertmacro NoteProduct LM 64
        !insertmacro NoteProduct LM 32
    ${Else}
        !insertmacro NoteProduct CU 64
    ${EndIf}
    SetRegView 64
FunctionEnd

; RemoveEntry: removes the entry for removal, then the keys that it notes, each before those above it; keys that somebody
; else has put something into stay.
; RemoveFolders: removes the empty folders of the installation in $R0 of kind $R1, up to $R2, the topmost that it made.
!macro DefineRemoveTraces un
Function ${un}RemoveEntry
    StrCpy $MadeKeys 0
    ${Do}
        IntOp $0 $MadeKeys + 1
        ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "MadeKey$0"
        ${If} $1 == ""
            ${ExitDo}
        ${EndIf}
        Push $1
        StrCpy $MadeKeys $0
    ${Loop}
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${DoWhile} $MadeKeys > 0
        Pop $0
        StrCpy $1 $0 2 2
        SetRegView 64
        ${If} $1 == "32"
            SetRegView 32
        ${EndIf}
        StrCpy $1 $0 "" 4
        StrCpy $0 $0 2
        ${If} $0 == "LM"
            DeleteRegKey /ifempty HKLM "$1"
        ${Else}
            DeleteRegKey /ifempty HKCU "$1"
        ${EndIf}
        IntOp $MadeKeys $MadeKeys - 1
    ${Loop}
    SetRegView 64
FunctionEnd

Function ${un}RemoveFolders
    SetOutPath $TEMP
    RMDir "$R0\$R1"
    ${If} $R2 == ""
        Return
    ${EndIf}
    StrCpy $0 $R0
    ${Do}
        RMDir $0
        ${If} $0 == $R2
        ${OrIf} $0 == ""
            Return
        ${EndIf}
        ${GetParent} $0 $0
    ${Loop}
FunctionEnd
!macroend
