; Names that the installer and the product agree on.
!define PRODUCT "Talmore Quorvex Outlook Duplicate Remover"
!define COMPANY "Talmorex"
!define FOLDER_NAME "Talmorex\Duplicate Remover"

!define ADDIN_DLL "TalmoreQuorvexOutlookDuplicateRemover.dll"
!define ADDIN_PROGID "TalmoreQuorvexOutlookDuplicate.Duplicat"
!define ADDIN_CLASS "{2E1CE4E6-8591-4C0A-A3C2-46A0D2C1E371}"
!define SERVER_DLL "QuorvexDll.dll"
!define SERVER_PROGID "QuorvexDll.RDOSession"
!define SERVER_CLASS "{72559189-E9E5-476E-8CAD-B12D4F24CE09}"
!define STORE_DLL "LocalMapi.dll"

!define ADDINS_KEY "Software\Microsoft\Office\Outlook\Addins"
!define CLASSES_KEY "Software\Classes"
!define PATH_KEY "Software\Talmorex\Talmore Outlook Manager"
!define STORE_KEY "Software\Clients\Mail\LocalMapi"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\TalmoreQuorvexOutlookDuplicateRemover"

; The help reads no longer path than this.
!define LONGEST_FOLDER 129

; What a silent run ends with.
!define EXIT_OPEN 3            ; Outlook, or a program of ours, is open
!define EXIT_REGISTRATION 4    ; a registration failed; all is as it was
!define EXIT_RIGHTS 5          ; it takes an administrator
!define EXIT_USAGE 6           ; switches or folder that cannot be
!define EXIT_OTHER_MODE 7      ; installed already, but for other users than asked
!define EXIT_MAIL_CLIENT 8     ; the local mail store stands back before another mail client

; The files of the installation; `action` is a macro that takes folder and file name.
!macro EachBinary action folder
    !insertmacro ${action} "${folder}" "${ADDIN_DLL}"
    !insertmacro ${action} "${folder}" "${SERVER_DLL}"
    !insertmacro ${action} "${folder}" "${STORE_DLL}"
    !insertmacro ${action} "${folder}" "tqodr.exe"
    !insertmacro ${action} "${folder}" "mailexplorer.exe"
!macroend
!macro EachCommonFile action folder
    !insertmacro ${action} "${folder}" "eula.dat"
    !insertmacro ${action} "${folder}" "tqodr_v1.0.chm"
    !insertmacro ${action} "${folder}" "LICENSE.txt"
    !insertmacro ${action} "${folder}" "uninstall.exe"
!macroend
!macro EachFile action folder arch
    !insertmacro EachBinary ${action} "${folder}\${arch}"
    !insertmacro EachCommonFile ${action} "${folder}"
!macroend
