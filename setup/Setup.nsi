; The Windows installer; scripts/make-setup compiles it with
;   STAGE    a folder with x64 and x86 (or one of them), LICENSE.txt, eula.dat and tqodr_v1.0.chm
;   OUTPUT   the installer to be written
;   VERSION  the product's version, three numbers
;   ICON     the product's icon
; and SIGN, a command that signs a file, where there is a certificate.
;
; Switches: /S silent, /ALLUSERS or /CURRENTUSER, /ARCH=x64 or /ARCH=x86 against what was found, /LOCALSTORE for the
; mail store of machines without Outlook, and at the end /D=FOLDER.
Unicode true
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma

!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include MUI2.nsh
!include Product.nsh

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
; As whoever starts it: a plain user installs for himself, an administrator for all.
RequestExecutionLevel user
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "${COMPANY}"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 ${COMPANY}"
VIAddVersionKey "FileDescription" "Setup of ${PRODUCT}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "InternalName" "setup"
VIAddVersionKey "OriginalFilename" "TalmoreQuorvexOutlookDuplicateRemover-${VERSION}-setup.exe"

!ifdef SIGN
    !uninstfinalize '${SIGN} "%1"'
!endif

Var Mode             ; AllUsers or CurrentUser
Var Arch             ; the kind that is installed: x64 or x86
Var Server           ; 1 when the mail-store server is registered with it
Var Store            ; 1 when the local mail store is
Var FormerDir        ; the installation that is replaced, empty when there is none
Var FormerArch
Var FormerServer
Var FormerStore
Var Begun            ; 1 from the first change until the last
Var FolderText

!include Outlook.nsh
!include Registration.nsh
!include Traces.nsh
!insertmacro DefineFindWhatIsOpen ""
!insertmacro DefineFindWhatIsOpen "un."
!insertmacro DefineUnregister ""
!insertmacro DefineUnregister "un."
!insertmacro DefineRemoveTraces ""
!insertmacro DefineRemoveTraces "un."

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_WELCOMEPAGE_TEXT "Setup will install ${PRODUCT} ${VERSION}, the button in Outlook that finds duplicate mail.$\r$\n$\r$\nClose Outlook before you go on.$\r$\n$\r$\n$_CLICK"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE.txt"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipPageWithoutChoice
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_DIRECTORYPAGE_TEXT_TOP "$FolderText"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT "Start Outlook: the button $\"Talmore Duplicate Remover$\" opens the wizard. In Outlook 2010 and newer it is on the tab $\"Add-ins$\" of the ribbon."
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Section "-Prepare"
    StrCpy $R0 $FormerDir
    StrCpy $R1 $FormerArch
    Call WaitUntilClosed
    Call DecideWhatIsRegistered
    Call MakeRoom
SectionEnd

!ifdef WITH_X64
Section "-x64" SecX64
    SetOutPath "$INSTDIR\x64"
    File "${STAGE}/x64/*.*"
SectionEnd
!endif

!ifdef WITH_X86
Section "-x86" SecX86
    SetOutPath "$INSTDIR\x86"
    File "${STAGE}/x86/*.*"
SectionEnd
!endif

Section "-Common files" SecCommon
    SetOutPath $INSTDIR
    File "${STAGE}/*.*"
    ClearErrors
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ${If} ${Errors}
        Call Undo
        Abort "The folder cannot be written to. Setup has undone what it did."
    ${EndIf}
    Call ProtectFiles
SectionEnd

Section /o "Local mail store" SecStore
SectionEnd

Section "-Register"
    StrCpy $R0 $INSTDIR
    StrCpy $R1 $Arch
    StrCpy $R2 $Server
    StrCpy $R3 $Store
    Call Register
    ${If} $R9 != 0
        StrCpy $R4 "$R8 could not be registered (regsvr32: $R9). Setup has undone what it did."
        SetErrorLevel ${EXIT_REGISTRATION}
        Call Undo
        MessageBox MB_OK|MB_ICONSTOP "$R4" /SD IDOK
        Abort "$R4"
    ${EndIf}
    Call WriteEntries
    Call RemoveFormerFiles
    StrCpy $Begun 0
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SecStore} "For machines without a mail program: keeps mail in one file and becomes the default mail client."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; A file that cannot be written ends the installation by itself.
Function .onInstFailed
    Call Undo
FunctionEnd

; These speak of the sections above.
!include Choices.nsh
!include Files.nsh
!include Uninstall.nsh
