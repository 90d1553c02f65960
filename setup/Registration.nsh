; Writes and takes back what makes Outlook load the add-in. Everything here goes by $Mode, AllUsers or CurrentUser, and
; by SHCTX, which stands for that mode's root of the registry.

!macro UseViewOf arch
    ${If} ${arch} == "x86"
        SetRegView 32
    ${Else}
        SetRegView 64
    ${EndIf}
!macroend

; Runs the regsvr32 of the DLL's kind; its exit code goes into $R9, 0 for success. Redirection does not apply to this
; 64-bit program, so System32 is the one of x64.
!macro Regsvr32 switch file arch
    StrCpy $R9 "$SYSDIR\regsvr32.exe"
    ${If} ${arch} == "x86"
        StrCpy $R9 "$WINDIR\SysWOW64\regsvr32.exe"
    ${EndIf}
    ClearErrors
    ${If} $Mode == "CurrentUser"
        ExecWait '"$R9" /s ${switch} /n /i:user "${file}"' $R9
    ${Else}
        ExecWait '"$R9" /s ${switch} "${file}"' $R9
    ${EndIf}
    ${If} ${Errors}
        StrCpy $R9 "-1"
    ${EndIf}
!macroend

!macro ReadServerOf class
    ReadRegStr $R8 SHCTX "${CLASSES_KEY}\CLSID\${class}\InprocServer32" ""
!macroend

; What regsvr32 /u would have removed, for a DLL that is gone or refuses.
!macro RemoveAddinKeys
    DeleteRegKey SHCTX "${CLASSES_KEY}\${ADDIN_PROGID}"
    DeleteRegKey SHCTX "${CLASSES_KEY}\TalmoreQuorvexOutlookDuplicate.Duplic.1"
    DeleteRegKey SHCTX "${CLASSES_KEY}\CLSID\${ADDIN_CLASS}"
    DeleteRegKey SHCTX "${CLASSES_KEY}\CLSID\{A3869348-5CFE-4B76-8804-8EC700CC9935}"
    ; The system mirrors the interface for the other kind of programs, on some systems in the machine's classes always.
    SetRegView 32
    DeleteRegKey SHCTX "${CLASSES_KEY}\Interface\{A3869348-5CFE-4B76-8804-8EC700CC9935}"
    DeleteRegKey HKLM "${CLASSES_KEY}\Interface\{A3869348-5CFE-4B76-8804-8EC700CC9935}"
    SetRegView 64
    DeleteRegKey SHCTX "${CLASSES_KEY}\Interface\{A3869348-5CFE-4B76-8804-8EC700CC9935}"
    !insertmacro UseViewOf $R1
    DeleteRegKey SHCTX "${CLASSES_KEY}\TypeLib\{FB9E5801-82CC-4476-B5D0-87A629368043}"
    DeleteRegKey SHCTX "${CLASSES_KEY}\AppID\{12DF1D42-4073-431E-B3F3-63AB8BDB08E0}"
    DeleteRegKey SHCTX "${CLASSES_KEY}\AppID\TalmoreQuorvexOutlookDuplicateRemover.DLL"
    DeleteRegKey HKCU "${ADDINS_KEY}\${ADDIN_PROGID}"
!macroend

; Unregister: takes back what the installation in folder $R0 of kind $R1 registered; $R2 is 1 when the mail-store server
; was among it, $R3 when the local mail store was. What others have registered in the meantime stays.
!macro DefineUnregister un
Function ${un}Unregister
    !insertmacro UseViewOf $R1
    !insertmacro ReadServerOf "${ADDIN_CLASS}"
    ${If} $R8 == "$R0\$R1\${ADDIN_DLL}"
        !insertmacro Regsvr32 "/u" "$R0\$R1\${ADDIN_DLL}" $R1
        ${If} $R9 != 0
            !insertmacro RemoveAddinKeys
        ${EndIf}
        ${If} $Mode == "AllUsers"
            DeleteRegKey HKLM "${ADDINS_KEY}\${ADDIN_PROGID}"
        ${EndIf}
    ${EndIf}
    ${If} $R2 == 1
        Call ${un}UnregisterServer
    ${EndIf}
    ${If} $R3 == 1
        ReadRegStr $R8 HKLM "${STORE_KEY}" "DLLPathEx"
        ${If} $R8 == "$R0\$R1\${STORE_DLL}"
            !insertmacro Regsvr32 "/u" "$R0\$R1\${STORE_DLL}" $R1
        ${EndIf}
    ${EndIf}
    SetRegView 64
FunctionEnd

; The DLL's own removal takes the programmatic identifier with it, whoever holds it.
Function ${un}UnregisterServer
    !insertmacro ReadServerOf "${SERVER_CLASS}"
    ${If} $R8 != "$R0\$R1\${SERVER_DLL}"
        Return
    ${EndIf}
    ReadRegStr $R8 SHCTX "${CLASSES_KEY}\${SERVER_PROGID}\CLSID" ""
    ${If} $R8 == "${SERVER_CLASS}"
        !insertmacro Regsvr32 "/u" "$R0\$R1\${SERVER_DLL}" $R1
        ${If} $R9 == 0
            Return
        ${EndIf}
        DeleteRegKey SHCTX "${CLASSES_KEY}\${SERVER_PROGID}"
    ${EndIf}
    ReadRegStr $R8 SHCTX "${CLASSES_KEY}\${SERVER_PROGID}.1\CLSID" ""
    ${If} $R8 == "${SERVER_CLASS}"
        DeleteRegKey SHCTX "${CLASSES_KEY}\${SERVER_PROGID}.1"
    ${EndIf}
    DeleteRegKey SHCTX "${CLASSES_KEY}\CLSID\${SERVER_CLASS}"
FunctionEnd
!macroend

; Register: the installation in folder $R0 of kind $R1, with the mail-store server when $R2 is 1 and the local mail
; store when $R3 is. Ends at the first failure, with the DLL's name in $R8 and regsvr32's exit code in $R9, which is 0
; when all went well.
Function Register
    ${If} $R2 == 1
        StrCpy $R8 "${SERVER_DLL}"
        !insertmacro Regsvr32 "" "$R0\$R1\${SERVER_DLL}" $R1
        ${If} $R9 != 0
            Return
        ${EndIf}
    ${EndIf}
    ${If} $R3 == 1
        StrCpy $R8 "${STORE_DLL}"
        !insertmacro Regsvr32 "" "$R0\$R1\${STORE_DLL}" $R1
        ${If} $R9 != 0
            Return
        ${EndIf}
    ${EndIf}
    StrCpy $R8 "${ADDIN_DLL}"
    !insertmacro Regsvr32 "" "$R0\$R1\${ADDIN_DLL}" $R1
    ${If} $R9 == 0
    ${AndIf} $Mode == "AllUsers"
        Call ShowAddinToAllUsers
    ${EndIf}
FunctionEnd

; The add-in's own registration shows it to one user, the one who installs.
Function ShowAddinToAllUsers
    !insertmacro UseViewOf $R1
    WriteRegStr HKLM "${ADDINS_KEY}\${ADDIN_PROGID}" "FriendlyName" "TalmoreQuorvexOutlookDuplicateRemover"
    WriteRegStr HKLM "${ADDINS_KEY}\${ADDIN_PROGID}" "Description" "Talmore Quorvex Outlook Duplicate Remover Addin"
    WriteRegDWORD HKLM "${ADDINS_KEY}\${ADDIN_PROGID}" "LoadBehavior" 3
    WriteRegDWORD HKLM "${ADDINS_KEY}\${ADDIN_PROGID}" "CommandLineSafe" 0
    SetRegView 64
FunctionEnd

; Sets $R9 to 1 when below `root` another server than that of this installation, or of the one that it replaces, has the
; mail-store server's programmatic identifier. One whose file is gone has it no more.
!macro LookForOtherServer root
    ReadRegStr $0 ${root} "${CLASSES_KEY}\${SERVER_PROGID}\CLSID" ""
    ${If} $0 != ""
    ${AndIf} $0 != "${SERVER_CLASS}"
        StrCpy $R9 1
    ${ElseIf} $0 != ""
        ReadRegStr $1 ${root} "${CLASSES_KEY}\CLSID\${SERVER_CLASS}\InprocServer32" ""
        ${If} $1 != "$INSTDIR\$Arch\${SERVER_DLL}"
        ${AndIf} $1 != "$FormerDir\$FormerArch\${SERVER_DLL}"
        ${AndIf} ${FileExists} "$1"
            StrCpy $R9 1
        ${EndIf}
    ${EndIf}
!macroend

; $R9: 1 when the server may not be registered, since another one is there.
Function FindOtherServer
    StrCpy $R9 0
    !insertmacro UseViewOf $Arch
    !insertmacro LookForOtherServer HKLM
    ${If} $Mode == "CurrentUser"
        !insertmacro LookForOtherServer HKCU
    ${EndIf}
    SetRegView 64
FunctionEnd

; $R9: the mail client that the local mail store may not push aside, nothing when there is none.
Function FindOtherMailClient
    StrCpy $R9 ""
    ReadRegStr $0 HKLM "Software\Clients\Mail" ""
    ${If} $0 != ""
    ${AndIf} $0 != "LocalMapi"
        StrCpy $R9 $0
    ${ElseIf} $OutlookArch != ""
        StrCpy $R9 "Outlook"
    ${EndIf}
FunctionEnd
