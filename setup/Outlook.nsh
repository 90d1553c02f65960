; What is known of the mail program on this machine.
Var OutlookArch    ; x64 or x86; empty where there is no Outlook

!macro AskForBitness view version
    SetRegView ${view}
    ReadRegStr $0 HKLM "Software\Microsoft\Office\${version}\Outlook" "Bitness"
    ${If} $0 == "x64"
    ${OrIf} $0 == "x86"
        StrCpy $OutlookArch $0
        Return
    ${EndIf}
!macroend

; GetBinaryType knows 0 for x86 programs and 6 for x64 ones.
!macro AskTheProgram view
    SetRegView ${view}
    ReadRegStr $0 HKLM "Software\Microsoft\Windows\CurrentVersion\App Paths\OUTLOOK.EXE" ""
    ${If} $0 != ""
        System::Call 'shlwapi::PathUnquoteSpacesW(w r0 r0)'
        System::Call 'kernel32::GetBinaryTypeW(w r0, *i .r1) i .r2'
        ${If} $2 <> 0
            ${If} $1 = 6
                StrCpy $OutlookArch "x64"
                Return
            ${ElseIf} $1 = 0
                StrCpy $OutlookArch "x86"
                Return
            ${EndIf}
        ${EndIf}
    ${EndIf}
!macroend

; Sets OutlookArch; leaves the registry's view changed.
Function FindOutlook
    StrCpy $OutlookArch ""
    !insertmacro AskForBitness 64 "16.0"
    !insertmacro AskForBitness 32 "16.0"
    !insertmacro AskForBitness 64 "15.0"
    !insertmacro AskForBitness 32 "15.0"
    !insertmacro AskForBitness 64 "14.0"
    !insertmacro AskForBitness 32 "14.0"
    !insertmacro AskTheProgram 64
    !insertmacro AskTheProgram 32
    SetRegView 64
    ReadRegStr $0 HKLM "Software\Microsoft\Office\ClickToRun\Configuration" "Platform"
    ${If} $0 == "x64"
    ${OrIf} $0 == "x86"
        StrCpy $OutlookArch $0
    ${EndIf}
FunctionEnd

; A file that a process runs or has loaded cannot be opened for writing.
!macro StopAtFileInUse folder file
    ${If} $R9 == ""
    ${AndIf} ${FileExists} "${folder}\${file}"
        ClearErrors
        FileOpen $R8 "${folder}\${file}" a
        ${If} ${Errors}
            StrCpy $R9 "${file}"
        ${Else}
            FileClose $R8
        ${EndIf}
    ${EndIf}
!macroend

; FindWhatIsOpen: of the installation in folder $R0 of kind $R1. Leaves its name in $R9, nothing when nothing is.
!macro DefineFindWhatIsOpen un
Function ${un}FindWhatIsOpen
    StrCpy $R9 ""
    FindWindow $R8 "rctrl_renwnd32"
    ${If} $R8 <> 0
        StrCpy $R9 "Outlook"
        Return
    ${EndIf}
    ${If} $R0 != ""
        !insertmacro EachBinary StopAtFileInUse "$R0\$R1"
    ${EndIf}
FunctionEnd

; WaitUntilClosed: the same, asking the user to close it; gives up when he does not, or when nobody can be asked.
Function ${un}WaitUntilClosed
    ${Do}
        Call ${un}FindWhatIsOpen
        ${If} $R9 == ""
            Return
        ${EndIf}
        ${If} $R9 == "Outlook"
            StrCpy $R8 "Outlook is open."
        ${Else}
            StrCpy $R8 "A program uses $R9."
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$R8$\r$\n$\r$\nClose Outlook and all windows of ${PRODUCT}, then press Retry." /SD IDCANCEL IDCANCEL`
            SetErrorLevel ${EXIT_OPEN}
            Abort "$R8 Nothing was changed."
        ${EndIf}
    ${Loop}
FunctionEnd
!macroend
