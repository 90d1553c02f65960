; The removal: all that the installation made, and nothing else.
Function un.onInit
    SetRegView 64
    Call un.FindInstallation
    ${If} $Mode == "AllUsers"
        UserInfo::GetAccountType
        Pop $R2
        ${If} $R2 != "Admin"
            ${IfNot} ${Silent}
                ExecShell "runas" "$INSTDIR\uninstall.exe"
                SetErrorLevel 0
                Quit
            ${EndIf}
            !insertmacro Refuse ${EXIT_RIGHTS} "It is installed for all users; removing it takes an administrator."
        ${EndIf}
    ${EndIf}
FunctionEnd

; $R9: the number that the file system has for the file $R8, empty where there is no such file.
Function un.NumberOfFile
    StrCpy $R9 ""
    System::Call 'kernel32::CreateFileW(w R8, i 0, i 7, p 0, i 3, i 0, p 0) p .r0'
    ${If} $0 P<> -1
        System::Alloc 52
        Pop $1
        System::Call 'kernel32::GetFileInformationByHandle(p r0, p r1) i .r2'
        ${If} $2 <> 0
            System::Call '*$1(i, i, i, i, i, i, i, i, i, i, i, i .r3, i .r4)'
            StrCpy $R9 "$3.$4"
        ${EndIf}
        System::Free $1
        System::Call 'kernel32::CloseHandle(p r0)'
    ${EndIf}
FunctionEnd

; Reads the entry for removal of the mode that is set; leaves $R9 empty unless it is that of this folder, by whatever
; name this program was started (another drive letter, a short name). $INSTDIR becomes what the entry calls it.
Function un.ReadEntryOfThisFolder
    !insertmacro ReadFormer
    StrCpy $R9 ""
    ${If} $FormerDir != ""
        StrCpy $R8 "$INSTDIR\uninstall.exe"
        Call un.NumberOfFile
        StrCpy $R7 $R9
        StrCpy $R8 "$FormerDir\uninstall.exe"
        Call un.NumberOfFile
        ${If} $R7 == $R9
        ${AndIf} $R9 != ""
            StrCpy $INSTDIR $FormerDir
        ${ElseIf} $INSTDIR == $FormerDir
            StrCpy $R9 $FormerDir
        ${Else}
            StrCpy $R9 ""
        ${EndIf}
    ${EndIf}
FunctionEnd

; For whom it was installed, and what.
Function un.FindInstallation
    StrCpy $Mode "CurrentUser"
    SetShellVarContext current
    Call un.ReadEntryOfThisFolder
    ${If} $R9 == ""
        StrCpy $Mode "AllUsers"
        SetShellVarContext all
        Call un.ReadEntryOfThisFolder
    ${EndIf}
    ${If} $R9 == ""
        !insertmacro Refuse ${EXIT_USAGE} "$INSTDIR is no installation that Windows knows of. Install ${PRODUCT} there once more, then remove it."
    ${EndIf}
    StrCpy $Arch $FormerArch
    StrCpy $Server $FormerServer
    StrCpy $Store $FormerStore
FunctionEnd

!macro RemovePath view
    SetRegView 64
    ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "FormerPath${view}"
    SetRegView ${view}
    ReadRegStr $0 SHCTX "${PATH_KEY}" "Path"
    ${If} $0 == $INSTDIR
        ${If} $1 != ""
            WriteRegStr SHCTX "${PATH_KEY}" "Path" $1
        ${Else}
            DeleteRegValue SHCTX "${PATH_KEY}" "Path"
        ${EndIf}
    ${EndIf}
    SetRegView 64
!macroend

Section "Uninstall"
    StrCpy $R0 $INSTDIR
    StrCpy $R1 $Arch
    Call un.WaitUntilClosed
    StrCpy $R2 $Server
    StrCpy $R3 $Store
    Call un.Unregister
    !insertmacro RemovePath 64
    ${If} $Mode == "AllUsers"
        !insertmacro RemovePath 32
    ${EndIf}
    SetOutPath $TEMP
    !insertmacro EachFile DeleteFile "$INSTDIR" "$Arch"
    StrCpy $R2 $FirstFolder
    Call un.RemoveFolders
    Call un.RemoveEntry
SectionEnd
