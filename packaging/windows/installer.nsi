; The installer. It installs for the user who runs it, which needs no administrator; /S installs silently, /D=FOLDER
; (last) says where. VERSION, FILES, REMOVAL_OF_FILES, which deletes them again, ICON and OUTPUT are given by ./build.
Target amd64-unicode ; as the programs are
!include MUI2.nsh

!define TITLE "ZRK6924 Loader"
!define REMOVAL "Software\Microsoft\Windows\CurrentVersion\Uninstall\zrk-loader"

Name "${TITLE} ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${TITLE}"
InstallDirRegKey HKCU "${REMOVAL}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
SetDateSave off ; the same bytes for the same programs
ManifestDPIAware true
BrandingText " "

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\zrk-loader.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs cannot be written over. Nothing has been changed by then.
!macro StopIfRunning ACTION
    ${If} ${FileExists} "$INSTDIR\zrk-loader.exe"
    ${AndIf} ${FileExists} "$INSTDIR\zrk-loader-cli.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\zrk-loader.exe" a
        FileOpen $1 "$INSTDIR\zrk-loader-cli.exe" a
        ${If} ${Errors}
            FileClose $0
            FileClose $1
            MessageBox MB_OK|MB_ICONEXCLAMATION "The loader is running. Close it, then ${ACTION} again." /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
        FileClose $0
        FileClose $1
    ${EndIf}
!macroend

Section
    !insertmacro StopIfRunning "install"
    SetOutPath "$INSTDIR"
    File /r "${FILES}\*.*"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    CreateDirectory "$SMPROGRAMS\${TITLE}"
    CreateShortcut "$SMPROGRAMS\${TITLE}\${TITLE}.lnk" "$INSTDIR\zrk-loader.exe"
    CreateShortcut "$SMPROGRAMS\${TITLE}\Command line.lnk" "$SYSDIR\cmd.exe" \
        '/k "cd /d "$INSTDIR" && zrk-loader-cli --help"' "$INSTDIR\zrk-loader-cli.exe"
    CreateShortcut "$SMPROGRAMS\${TITLE}\Uninstall.lnk" "$INSTDIR\uninstall.exe"

    WriteRegStr HKCU "${REMOVAL}" "DisplayName" "${TITLE}"
    WriteRegStr HKCU "${REMOVAL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${REMOVAL}" "DisplayIcon" "$INSTDIR\zrk-loader.exe"
    WriteRegStr HKCU "${REMOVAL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${REMOVAL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${REMOVAL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${REMOVAL}" "NoModify" 1
    WriteRegDWORD HKCU "${REMOVAL}" "NoRepair" 1
    SectionGetSize 0 $0
    WriteRegDWORD HKCU "${REMOVAL}" "EstimatedSize" $0
SectionEnd

Section Uninstall
    !insertmacro StopIfRunning "remove it"
    ; What the user has put there is the user's: presets, and whatever lies in a folder of the same name.
    !include "${REMOVAL_OF_FILES}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR" ; only when it is empty
    Delete "$LOCALAPPDATA\zrk-loader\window.conf"
    RMDir "$LOCALAPPDATA\zrk-loader"
    Delete "$SMPROGRAMS\${TITLE}\${TITLE}.lnk"
    Delete "$SMPROGRAMS\${TITLE}\Command line.lnk"
    Delete "$SMPROGRAMS\${TITLE}\Uninstall.lnk"
    RMDir "$SMPROGRAMS\${TITLE}"
    DeleteRegKey HKCU "${REMOVAL}"
SectionEnd
