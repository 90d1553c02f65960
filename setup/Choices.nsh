; What is installed for whom and where: switches, what is installed already, and what the machine is.

; Refuse: ends a run that has changed nothing.
!macro Refuse code text
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    SetErrorLevel ${code}
    Quit
!macroend

!macro ReadFormer
    ReadRegStr $FormerDir SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    ReadRegStr $FormerArch SHCTX "${UNINSTALL_KEY}" "Architecture"
    ReadRegDWORD $FormerServer SHCTX "${UNINSTALL_KEY}" "MailStoreServer"
    ReadRegDWORD $FormerStore SHCTX "${UNINSTALL_KEY}" "LocalMailStore"
    ReadRegStr $FirstFolder SHCTX "${UNINSTALL_KEY}" "FirstFolder"
!macroend

Function .onInit
    SetRegView 64
    ${GetParameters} $R0
    Call ChooseMode
    Call ChooseArch
    Call ChooseStore
    Call ChooseFolder
FunctionEnd

; $Mode, and the installation of that mode that is replaced. One that is there for everybody and one for this user alone
; would stand in each other's way.
Function ChooseMode
    StrCpy $Mode ""
    ClearErrors
    ${GetOptions} $R0 "/ALLUSERS" $R1
    ${IfNot} ${Errors}
        StrCpy $Mode "AllUsers"
    ${EndIf}
    ClearErrors
    ${GetOptions} $R0 "/CURRENTUSER" $R1
    ${IfNot} ${Errors}
        ${If} $Mode != ""
            !insertmacro Refuse ${EXIT_USAGE} "/ALLUSERS and /CURRENTUSER cannot both be."
        ${EndIf}
        StrCpy $Mode "CurrentUser"
    ${EndIf}
    UserInfo::GetAccountType
    Pop $R2

    SetShellVarContext all
    ReadRegStr $R3 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    SetShellVarContext current
    ReadRegStr $R4 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $Mode == ""
        ${If} $R3 != ""
            StrCpy $Mode "AllUsers"
        ${ElseIf} $R4 != ""
        ${OrIf} $R2 != "Admin"
            StrCpy $Mode "CurrentUser"
        ${Else}
            StrCpy $Mode "AllUsers"
        ${EndIf}
    ${EndIf}
    ${If} $Mode == "CurrentUser"
    ${AndIf} $R3 != ""
        !insertmacro Refuse ${EXIT_OTHER_MODE} "${PRODUCT} is installed for all users of this machine already."
    ${ElseIf} $Mode == "AllUsers"
    ${AndIf} $R4 != ""
        !insertmacro Refuse ${EXIT_OTHER_MODE} "${PRODUCT} is installed for you alone. Remove it first, then install it for all users."
    ${EndIf}

    ${If} $Mode == "AllUsers"
        ${If} $R2 != "Admin"
            ${IfNot} ${Silent}
                ExecShell "runas" "$EXEPATH" "/ALLUSERS"
                SetErrorLevel 0
                Quit
            ${EndIf}
            !insertmacro Refuse ${EXIT_RIGHTS} "An installation for all users takes an administrator."
        ${EndIf}
        SetShellVarContext all
    ${EndIf}
    !insertmacro ReadFormer
FunctionEnd

; $Arch: Outlook's, else the system's, unless a switch says otherwise.
Function ChooseArch
    Call FindOutlook
    SetRegView 64
    StrCpy $Arch $OutlookArch
    ${If} $Arch == ""
        StrCpy $Arch "x64"
    ${EndIf}
    ClearErrors
    ${GetOptions} $R0 "/ARCH=" $R1
    ${IfNot} ${Errors}
        ${If} $R1 != "x64"
        ${AndIf} $R1 != "x86"
            !insertmacro Refuse ${EXIT_USAGE} "/ARCH= takes x64 or x86."
        ${EndIf}
        StrCpy $Arch $R1
    ${EndIf}
!ifdef WITH_X64
    ${If} $Arch == "x86"
        !insertmacro UnselectSection ${SecX64}
    ${EndIf}
!else
    ${If} $Arch == "x64"
        !insertmacro Refuse ${EXIT_USAGE} "This setup holds nothing for x64."
    ${EndIf}
!endif
!ifdef WITH_X86
    ${If} $Arch == "x64"
        !insertmacro UnselectSection ${SecX86}
    ${EndIf}
!else
    ${If} $Arch == "x86"
        !insertmacro Refuse ${EXIT_USAGE} "This setup holds nothing for x86."
    ${EndIf}
!endif
FunctionEnd

; The local mail store makes itself the default mail client: only for all users, only where there is none, and only if
; it is asked for or was there before.
Function ChooseStore
    ${If} $FormerStore == 1
        !insertmacro SelectSection ${SecStore}
    ${EndIf}
    ClearErrors
    ${GetOptions} $R0 "/LOCALSTORE" $R1
    ${IfNot} ${Errors}
        ${If} $Mode != "AllUsers"
            !insertmacro Refuse ${EXIT_USAGE} "/LOCALSTORE needs an installation for all users."
        ${EndIf}
        Call FindOtherMailClient
        ${If} $R9 != ""
            !insertmacro Refuse ${EXIT_MAIL_CLIENT} "$R9 is this machine's mail client and stays so."
        ${EndIf}
        !insertmacro SelectSection ${SecStore}
    ${EndIf}
FunctionEnd

; The page with the local mail store.
Function SkipPageWithoutChoice
    Call FindOtherMailClient
    ${If} $Mode != "AllUsers"
    ${OrIf} $R9 != ""
        Abort
    ${EndIf}
FunctionEnd

; $INSTDIR: what /D= says, else where it is already, else the usual place.
Function ChooseFolder
    ${If} $INSTDIR == ""
        ; A folder that cannot be has been taken off the switches before this.
        System::Call 'kernel32::GetCommandLineW() w .R1'
        ClearErrors
        ${GetOptions} $R1 "/D=" $R1
        ${IfNot} ${Errors}
            !insertmacro Refuse ${EXIT_USAGE} "The folder of /D= cannot be made."
        ${EndIf}
        StrCpy $INSTDIR $FormerDir
    ${EndIf}
    ${If} $INSTDIR == ""
        ${If} $Mode == "AllUsers"
            StrCpy $INSTDIR "$PROGRAMFILES64\${FOLDER_NAME}"
        ${Else}
            StrCpy $INSTDIR "$LOCALAPPDATA\Programs\${FOLDER_NAME}"
        ${EndIf}
    ${EndIf}
    StrCpy $0 "64"
    ${If} $Arch == "x86"
        StrCpy $0 "32"
    ${EndIf}
    ${If} $Mode == "AllUsers"
        StrCpy $FolderText "It is installed for all users of this machine, for Outlook with $0 bits, in this folder:"
    ${Else}
        StrCpy $FolderText "It is installed for you alone, for Outlook with $0 bits, in this folder. (Start setup as administrator to install it for all users.)"
    ${EndIf}
    ${If} ${Silent}
        Call CheckFolder
        ${If} $R9 != ""
            !insertmacro Refuse ${EXIT_USAGE} "$R9"
        ${EndIf}
    ${EndIf}
FunctionEnd

!macro StopAtForeignFile folder file
    ${If} $R9 == ""
    ${AndIf} ${FileExists} "${folder}\${file}"
        StrCpy $R9 "The folder holds a file ${file} of somebody else's."
    ${EndIf}
!macroend

; $R9: what speaks against $INSTDIR, nothing if nothing does.
Function CheckFolder
    StrCpy $R9 ""
    StrLen $0 $INSTDIR
    ${If} $0 > ${LONGEST_FOLDER}
        StrCpy $R9 "The folder's path may have ${LONGEST_FOLDER} characters, not $0."
    ${ElseIf} $INSTDIR != $FormerDir
        !insertmacro EachFile StopAtForeignFile "$INSTDIR" "$Arch"
    ${EndIf}
FunctionEnd

Function .onVerifyInstDir
    Call CheckFolder
    ${If} $R9 != ""
        Abort
    ${EndIf}
FunctionEnd
