; Installs the editor for all users. pack.cmake calls makensis with the symbols used here.
; Exit codes besides those of NSIS (0 done, 1 cancelled, 2 failed): 3 the program is running, 4 the system is too old,
; 5 installed already in another directory, 6 installed, but users may not write the settings, 7 the program would not start
; with this code page.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
SetDateSave off ; no times in setup.exe
RequestExecutionLevel admin
ManifestSupportedOS Win10
ManifestDPIAware true

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinVer.nsh
!include ${PROGRAM_FILES}

!define PROGRAM corvrec-config.exe
!define TITLE "Configurazione Corvane Recorder"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\CorvaneRecorder"
!define OWN_KEY "Software\Corvane Recorder"
; One value for each installed file, named after it. Only administrators can write here, unlike a list next to the files when these
; are in a directory of a user's. The value's data is NEW, or OLD during an upgrade until the file has been installed again.
!define FILES "${OWN_KEY}\Files"
!define NEW new
!define OLD old
!define SHORTCUT "$SMPROGRAMS\${TITLE}.lnk"

Name "Corvane Recorder"
Caption "Installazione di Corvane Recorder"
UninstallCaption "Rimozione di Corvane Recorder"
UninstallSubCaption 0 " "
UninstallSubCaption 1 " "
UninstallSubCaption 2 " "
SubCaption 1 " "
SubCaption 2 " "
SubCaption 3 " "
SubCaption 4 " "
BrandingText "Corvane Recorder ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Corvane Recorder"
InstallDirRegKey HKLM "${UNINSTALL}" InstallLocation
ShowInstDetails nevershow
ShowUninstDetails nevershow
AllowSkipFiles off
CompletedText "Completato"

VIProductVersion ${VERSION_NUMBERS}
VIFileVersion ${VERSION_NUMBERS}
VIAddVersionKey /LANG=1040 CompanyName "The Corvane Recorder developers"
VIAddVersionKey /LANG=1040 FileDescription "Installazione di Corvane Recorder"
VIAddVersionKey /LANG=1040 FileVersion ${VERSION}
VIAddVersionKey /LANG=1040 LegalCopyright "© 2026 The Corvane Recorder developers. Licenza MIT."
VIAddVersionKey /LANG=1040 ProductName "Corvane Recorder"
VIAddVersionKey /LANG=1040 ProductVersion ${VERSION}

Var installedIn   ; the directory of the installation that is upgraded, or empty
Var choice        ; what the page with the directory says about it
Var kept          ; what the first page of the removal says about the settings
Var parameters

; The pages. The texts replace those of NSIS, some of which have mistakes.

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${__FILEDIR__}/setup.bmp"
!define MUI_WELCOMEFINISHPAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_ABORTWARNING
!define MUI_ABORTWARNING_TEXT "Interrompere l'installazione?"
!define MUI_ABORTWARNING_CANCEL_DEFAULT

!define MUI_WELCOMEPAGE_TITLE "Corvane Recorder ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "Viene installato il programma di configurazione di Corvane Recorder, per tutti gli utenti del computer.$\r$\n$\r$\n\
Le impostazioni già presenti, cioè i file Corvrec.ini e modem.dat, restano come sono.$\r$\n$\r$\n\
Se il programma di configurazione è aperto, chiuderlo prima di continuare.$\r$\n$\r$\nPer continuare premere Avanti."
!insertmacro MUI_PAGE_WELCOME

!define MUI_PAGE_CUSTOMFUNCTION_SHOW FixDirectoryOfUpgrade
!define MUI_PAGE_HEADER_TEXT "Cartella"
!define MUI_PAGE_HEADER_SUBTEXT "Dove installare il programma."
!define MUI_DIRECTORYPAGE_TEXT_TOP "$choice$\r$\n$\r$\nAnche le impostazioni sono in questa cartella. Gli utenti possono modificare soltanto i file delle impostazioni, Corvrec.ini e \
modem.dat, e non quelli del programma."
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "Cartella del programma"
!insertmacro MUI_PAGE_DIRECTORY

!define MUI_PAGE_HEADER_TEXT "Installazione in corso"
!define MUI_PAGE_HEADER_SUBTEXT "Attendere la fine dell'installazione."
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "Installazione interrotta"
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT "L'installazione non è stata completata."
!insertmacro MUI_PAGE_INSTFILES

!define MUI_FINISHPAGE_TITLE "Installazione completata"
!define MUI_FINISHPAGE_TEXT "Il programma si apre dal menu Start, con la voce ${TITLE}.$\r$\n$\r$\n\
Le impostazioni sono nei file Corvrec.ini e modem.dat, nella cartella $INSTDIR.$\r$\n$\r$\nCon F1 il programma mostra la guida."
!insertmacro MUI_PAGE_FINISH

!define MUI_PAGE_HEADER_TEXT "Rimozione di Corvane Recorder"
!define MUI_PAGE_HEADER_SUBTEXT "Il programma di configurazione viene rimosso dal computer."
!define MUI_UNCONFIRMPAGE_TEXT_TOP "$kept$\r$\n$\r$\nPer rimuovere il programma premere Disinstalla."
!define MUI_UNCONFIRMPAGE_TEXT_LOCATION "Cartella:"
!insertmacro MUI_UNPAGE_CONFIRM

!define MUI_PAGE_HEADER_TEXT "Rimozione in corso"
!define MUI_PAGE_HEADER_SUBTEXT "Attendere la fine della rimozione."
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "Rimozione completata"
!define MUI_INSTFILESPAGE_FINISHHEADER_SUBTEXT "Il programma è stato rimosso."
!undef MUI_INSTFILESPAGE_ABORTHEADER_TEXT ; the page above leaves them defined
!undef MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "Rimozione interrotta"
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT "La rimozione non è stata completata."
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE Italian

; The functions that installer and uninstaller share; PREFIX is empty or "un.".
!macro SharedFunctions PREFIX
; Ends with exit code 3 while the program runs, in whichever session: then nobody can open its file for writing.
Function ${PREFIX}EndIfRunning
    IfFileExists "$INSTDIR\${PROGRAM}" +2
    Return
    again:
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${IfNot} ${Errors}
        FileClose $0
        Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Il programma di configurazione è aperto, forse da un altro utente.$\r$\n$\r$\n\
Chiuderlo e premere Riprova. Con Annulla non viene cambiato nulla." /SD IDCANCEL IDRETRY again
    SetErrorLevel 3
    Abort
FunctionEnd

Function ${PREFIX}MarkFilesAsOld
    StrCpy $0 0
    ${Do}
        EnumRegValue $1 HKLM "${FILES}" $0
        ${If} $1 == ""
            ${Break}
        ${EndIf}
        WriteRegStr HKLM "${FILES}" $1 ${OLD}
        IntOp $0 $0 + 1
    ${Loop}
FunctionEnd

; Deletes the files that are still marked, and the directories that become empty.
Function ${PREFIX}DeleteOldFiles
    StrCpy $0 0
    ${Do}
        EnumRegValue $1 HKLM "${FILES}" $0
        ${If} $1 == ""
            ${Break}
        ${EndIf}
        ReadRegStr $2 HKLM "${FILES}" $1
        ${If} $2 == ${OLD}
            Delete "$INSTDIR\$1"
            ${GetParent} "$INSTDIR\$1" $2
            ${DoWhile} $2 != $INSTDIR
                RMDir $2
                ${GetParent} $2 $2
            ${Loop}
            DeleteRegValue HKLM "${FILES}" $1 ; the next value now has this number
        ${Else}
            IntOp $0 $0 + 1
        ${EndIf}
    ${Loop}
FunctionEnd
!macroend
!insertmacro SharedFunctions ""
!insertmacro SharedFunctions un.

Function .onInit
    SetShellVarContext all
    ${IfNot} ${AtLeastWin10}
    ${OrIfNot} ${AtLeastBuild} 17763
        MessageBox MB_OK|MB_ICONSTOP "Corvane Recorder richiede Windows 10 a 64 bit, versione 1809 o successiva." /SD IDOK
        SetErrorLevel 4
        Quit
    ${EndIf}

    ; As the program decides: settings of one byte per character would not survive in another code page.
    System::Call '*(i, i, i, i, i) p .r1' ; room for a CPINFO, whose first member is MaxCharSize
    System::Call 'kernel32::GetCPInfo(i 0, p r1)'
    System::Call '*$1(i .r2)'
    System::Free $1
    ${If} $2 <> 1
        MessageBox MB_YESNO|MB_ICONEXCLAMATION|MB_DEFBUTTON2 "Su questo computer la lingua per i programmi non Unicode usa \
più byte per carattere (UTF-8 o una lingua asiatica). Così il programma di configurazione non si apre, perché rovinerebbe le \
lettere accentate delle impostazioni.$\r$\n$\r$\nSi cambia in Pannello di controllo, Area geografica, Opzioni di \
amministrazione, Cambia impostazioni locali del sistema.$\r$\n$\r$\nInstallare lo stesso?" /SD IDNO IDYES +3
        SetErrorLevel 7
        Quit
    ${EndIf}

    StrCpy $choice "Il programma viene installato nella cartella indicata. Per sceglierne un'altra premere Sfoglia."
    ReadRegStr $installedIn HKLM "${UNINSTALL}" InstallLocation
    IfFileExists "$installedIn\uninstall.exe" +2
    StrCpy $installedIn ""
    ${If} $installedIn == ""
        Return
    ${EndIf}
    StrCpy $choice "Il programma è già installato, e viene aggiornato nella stessa cartella."
    ${If} $installedIn != $INSTDIR
        MessageBox MB_OK|MB_ICONSTOP "Corvane Recorder è già installato nella cartella $installedIn.$\r$\n$\r$\n\
Per installarlo in un'altra cartella bisogna prima rimuoverlo; le impostazioni restano nella cartella di prima." /SD IDOK
        SetErrorLevel 5
        Quit
    ${EndIf}
FunctionEnd

Function FixDirectoryOfUpgrade
    ${If} $installedIn != ""
        EnableWindow $mui.DirectoryPage.Directory 0
        EnableWindow $mui.DirectoryPage.BrowseButton 0
        GetDlgItem $0 $HWNDPARENT 1 ; Installa: the disabled field would keep the focus, and Enter would do nothing
        SendMessage $HWNDPARENT ${WM_NEXTDLGCTL} $0 1
    ${EndIf}
FunctionEnd

; Copies a sample unless the file is there, and lets users read and write the new file, or at the first installation any. Not
; delete it: in this directory they could not create it again. An upgrade keeps the rights that an administrator has given.
!macro Settings FILE
    StrCpy $2 ""
    IfFileExists "$INSTDIR\${FILE}" +2
    StrCpy $2 new
    SetOverwrite off
    File "${SAMPLES}/${FILE}"
    SetOverwrite on
    ${If} $2 == new
    ${OrIf} $installedIn == ""
        !insertmacro AllowWriting ${FILE}
    ${EndIf}
!macroend

!macro AllowWriting FILE
    nsExec::ExecToStack '"$SYSDIR\icacls.exe" "$INSTDIR\${FILE}" /grant "*S-1-5-32-545:(R,W)"'
    Pop $0
    Pop $1 ; what it prints
    ${If} $0 != 0
        MessageBox MB_OK|MB_ICONEXCLAMATION "Il programma è installato, ma non è stato possibile permettere agli utenti di scrivere \
il file ${FILE}: il programma potrà soltanto leggerlo.$\r$\n$\r$\n$1" /SD IDOK
        SetErrorLevel 6
    ${EndIf}
!macroend

Section
    Call EndIfRunning
    Call MarkFilesAsOld
    !insertmacro ProgramFiles
    SetOutPath $INSTDIR
    WriteUninstaller "$INSTDIR\uninstall.exe"
    Call DeleteOldFiles

    !insertmacro Settings Corvrec.ini
    !insertmacro Settings modem.dat

    CreateShortcut "${SHORTCUT}" "$INSTDIR\${PROGRAM}" "" "" "" "" "" "Modifica le impostazioni di Corvane Recorder"
    WriteRegStr HKLM "${UNINSTALL}" DisplayName "Corvane Recorder"
    WriteRegStr HKLM "${UNINSTALL}" DisplayVersion ${VERSION}
    WriteRegStr HKLM "${UNINSTALL}" DisplayIcon "$INSTDIR\${PROGRAM}"
    WriteRegStr HKLM "${UNINSTALL}" Publisher "The Corvane Recorder developers"
    WriteRegStr HKLM "${UNINSTALL}" InstallLocation $INSTDIR
    WriteRegStr HKLM "${UNINSTALL}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" EstimatedSize ${SIZE}
    WriteRegDWORD HKLM "${UNINSTALL}" NoModify 1
    WriteRegDWORD HKLM "${UNINSTALL}" NoRepair 1
SectionEnd

Function un.onInit
    SetShellVarContext all
    ${GetParameters} $parameters
    ClearErrors
    ${GetOptions} $parameters /PURGE $0
    ${If} ${Errors}
        StrCpy $parameters ""
        StrCpy $kept "Le impostazioni, cioè i file Corvrec.ini e modem.dat, restano nella cartella."
    ${Else}
        StrCpy $parameters /PURGE
        StrCpy $kept "Vengono eliminate anche le impostazioni, cioè i file Corvrec.ini e modem.dat."
    ${EndIf}
FunctionEnd

Section Uninstall
    Call un.EndIfRunning
    Call un.MarkFilesAsOld
    Call un.DeleteOldFiles
    Delete "$INSTDIR\uninstall.exe"
    Delete "${SHORTCUT}"
    DeleteRegKey HKLM "${UNINSTALL}"
    DeleteRegKey HKLM "${OWN_KEY}"
    ${If} $parameters == /PURGE
        Delete "$INSTDIR\Corvrec.ini"
        Delete "$INSTDIR\modem.dat"
    ${EndIf}
    SetOutPath $TEMP
    RMDir $INSTDIR ; only if it is empty
SectionEnd
