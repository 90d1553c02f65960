; The files of the installation: those that are replaced stand aside until all has gone well.

; What is registered besides the add-in.
Function DecideWhatIsRegistered
    StrCpy $Server 1
    Call FindOtherServer
    ${If} $R9 == 1
        DetailPrint "Another mail-store server is registered; it stays."
        StrCpy $Server 0
    ${EndIf}
    StrCpy $Store 0
    ${If} ${SectionIsSelected} ${SecStore}
        StrCpy $Store 1
    ${EndIf}
FunctionEnd

!macro SetAside folder file
    ${If} ${FileExists} "${folder}\${file}"
        Delete "${folder}\${file}.previous"
        Rename "${folder}\${file}" "${folder}\${file}.previous"
    ${EndIf}
!macroend
!macro PutBack folder file
    ${If} ${FileExists} "${folder}\${file}.previous"
        Delete "${folder}\${file}"
        Rename "${folder}\${file}.previous" "${folder}\${file}"
    ${EndIf}
!macroend
!macro DeleteFile folder file
    Delete "${folder}\${file}"
!macroend
!macro DeletePrevious folder file
    Delete "${folder}\${file}.previous"
!macroend

; The first change that is made: from here on Undo leads back.
Function MakeRoom
    StrCpy $Begun 1
    ${If} $FormerDir != $INSTDIR
        StrCpy $FormerFirstFolder $FirstFolder
        Call NoteFolders
    ${EndIf}
    Call NoteKeys
    ${If} $FormerDir == ""
        ; Setup finds by it what a power cut leaves behind.
        Call WriteUninstallEntry
    ${Else}
        StrCpy $R0 $FormerDir
        StrCpy $R1 $FormerArch
        StrCpy $R2 $FormerServer
        StrCpy $R3 $FormerStore
        Call Unregister
        ClearErrors
        !insertmacro EachFile SetAside "$FormerDir" "$FormerArch"
        ${If} ${Errors}
            SetErrorLevel ${EXIT_OPEN}
            Call Undo
            MessageBox MB_OK|MB_ICONSTOP "A file of the former version cannot be replaced. Setup has undone what it did." /SD IDOK
            Abort "A file of the former version cannot be replaced."
        ${EndIf}
    ${EndIf}
    Call MakeFolders
FunctionEnd

; Leads back to how it was, from wherever the installation has come to.
Function Undo
    ${If} $Begun != 1
        Return
    ${EndIf}
    StrCpy $Begun 0
    SetOutPath $TEMP
    StrCpy $R0 $INSTDIR
    StrCpy $R1 $Arch
    StrCpy $R2 $Server
    StrCpy $R3 $Store
    Call Unregister
    ${If} $FormerDir == ""
        !insertmacro EachFile DeleteFile "$INSTDIR" "$Arch"
        StrCpy $R2 $FirstFolder
        Call RemoveFolders
        Call RemoveEntry
    ${Else}
        Call UndoUpgrade
    ${EndIf}
FunctionEnd

Function UndoUpgrade
    ${If} $FormerDir != $INSTDIR
        !insertmacro EachFile DeleteFile "$INSTDIR" "$Arch"
        StrCpy $R2 $FirstFolder
        Call RemoveFolders
    ${ElseIf} $FormerArch != $Arch
        !insertmacro EachBinary DeleteFile "$INSTDIR\$Arch"
        RMDir "$INSTDIR\$Arch"
    ${EndIf}
    !insertmacro EachFile PutBack "$FormerDir" "$FormerArch"
    StrCpy $R0 $FormerDir
    StrCpy $R1 $FormerArch
    StrCpy $R2 $FormerServer
    StrCpy $R3 $FormerStore
    Call Register
FunctionEnd

; Once all has gone well.
Function RemoveFormerFiles
    ${If} $FormerDir == ""
        Return
    ${EndIf}
    !insertmacro EachFile DeletePrevious "$FormerDir" "$FormerArch"
    StrCpy $R0 $FormerDir
    StrCpy $R1 $FormerArch
    StrCpy $R2 ""
    ${If} $FormerDir != $INSTDIR
        StrCpy $R2 $FormerFirstFolder
    ${EndIf}
    Call RemoveFolders
FunctionEnd

; Below Program Files only administrators write. Elsewhere, where for example any user may add to a folder of the
; drive's root, what all users' Outlook loads gets the same protection.
!macro Protect folder file
    StrCpy $R7 "${folder}\${file}"
    Call Protect
!macroend
Function Protect
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w "O:BAD:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)", i 1, *p .r0, p 0) i .r1'
    ${If} $1 <> 0
        System::Call 'advapi32::SetFileSecurityW(w R7, i 0x80000005, p r0)'    ; owner, and a DACL that inherits nothing
        System::Call 'kernel32::LocalFree(p r0)'
    ${EndIf}
FunctionEnd

; $R9: 1 when the folder has to be protected.
Function IsProtectionNeeded
    StrCpy $R9 0
    ${If} $Mode == "AllUsers"
        StrLen $0 "$PROGRAMFILES64\"
        StrCpy $1 $INSTDIR $0
        StrLen $2 "$PROGRAMFILES32\"
        StrCpy $3 $INSTDIR $2
        ${If} $1 != "$PROGRAMFILES64\"
        ${AndIf} $3 != "$PROGRAMFILES32\"
            StrCpy $R9 1
        ${EndIf}
    ${EndIf}
FunctionEnd

; Before anything lies in them. A folder that was there before keeps its own rights.
Function MakeFolders
    CreateDirectory "$INSTDIR\$Arch"
    ${IfNot} ${FileExists} "$INSTDIR\$Arch\*.*"
        Call Undo
        MessageBox MB_OK|MB_ICONSTOP "The folder $INSTDIR cannot be written to. Setup has undone what it did." /SD IDOK
        Abort "The folder cannot be written to."
    ${EndIf}
    Call IsProtectionNeeded
    ${If} $R9 == 1
        ${If} $FirstFolder != ""
            StrCpy $R7 $INSTDIR
            Call Protect
        ${EndIf}
        StrCpy $R7 "$INSTDIR\$Arch"
        Call Protect
    ${EndIf}
FunctionEnd

Function ProtectFiles
    Call IsProtectionNeeded
    ${If} $R9 == 1
        !insertmacro EachCommonFile Protect "$INSTDIR"
    ${EndIf}
FunctionEnd

; The value by which the product finds its own folder. A value that somebody else had put there comes back with the
; removal.
!macro WritePath view
    SetRegView ${view}
    ReadRegStr $0 SHCTX "${PATH_KEY}" "Path"
    WriteRegStr SHCTX "${PATH_KEY}" "Path" "$INSTDIR"
    SetRegView 64
    ${If} $0 != ""
    ${AndIf} $0 != $FormerDir
    ${AndIf} $0 != $INSTDIR
        WriteRegStr SHCTX "${UNINSTALL_KEY}" "FormerPath${view}" "$0"
    ${EndIf}
!macroend

Function WriteEntries
    Call WriteUninstallEntry
    !insertmacro WritePath 64
    ; Both kinds of programs share the user's entries, not the machine's.
    ${If} $Mode == "AllUsers"
        !insertmacro WritePath 32
    ${EndIf}
FunctionEnd

Function WriteUninstallEntry
    StrCpy $0 0
!ifdef WITH_X64
    ${If} $Arch == "x64"
        SectionGetSize ${SecX64} $0
    ${EndIf}
!endif
!ifdef WITH_X86
    ${If} $Arch == "x86"
        SectionGetSize ${SecX86} $0
    ${EndIf}
!endif
    SectionGetSize ${SecCommon} $1
    IntOp $0 $0 + $1
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\uninstall.exe,0"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "${COMPANY}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
    ; For the removal, and for the version that replaces this one.
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "Architecture" "$Arch"
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "MailStoreServer" $Server
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "LocalMailStore" $Store
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "FirstFolder" "$FirstFolder"
FunctionEnd
