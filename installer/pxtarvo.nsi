; The installer, for 32-bit and 64-bit Windows. ./package defines VERSION, COPYRIGHT, SALIDA (the file to be made),
; ARCHIVOS (the macros with the package's files) and KILOBYTES. With NATIVO_64 it is a program of 64 bits, which is not
; handed over: for the test under a Wine that runs no others.
; Exit status: 0 done, 1 cancelled, 2 no administrator, 3 a DLL is in use, 4 a step failed. What a silent run has to say
; stands in PXTarvo-instalar.log in the folder for temporary files.
Unicode true
!ifdef NATIVO_64
  Target amd64-unicode
!endif
!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include WordFunc.nsh
!include "${ARCHIVOS}"

Name "PXTarvo ${VERSION}"
OutFile "${SALIDA}"
InstallDir ""
RequestExecutionLevel admin
SetCompressor /SOLID lzma
CRCCheck force
ManifestSupportedOS all
ManifestDPIAware true
BrandingText "${COPYRIGHT}"

!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE Spanish

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_SPANISH} ProductName "PXTarvo"
VIAddVersionKey /LANG=${LANG_SPANISH} ProductVersion "${VERSION}"
VIAddVersionKey /LANG=${LANG_SPANISH} FileDescription "Instalador de PXTarvo"
VIAddVersionKey /LANG=${LANG_SPANISH} FileVersion "${VERSION}"
VIAddVersionKey /LANG=${LANG_SPANISH} LegalCopyright "${COPYRIGHT}"

!define CLAVE "Software\Microsoft\Windows\CurrentVersion\Uninstall\PXTarvo"
!define TARVO "C:\TARVO"
; The regsvr32 of each kind, as a program of this kind reaches it.
!ifdef NATIVO_64
  !define REGSVR_X64 "$SYSDIR\regsvr32.exe"
  !define REGSVR_X86 "$WINDIR\SysWOW64\regsvr32.exe"
!else
  !define REGSVR_X64 "$WINDIR\Sysnative\regsvr32.exe"
  !define REGSVR_X86 "$SYSDIR\regsvr32.exe"
!endif

Var Anterior  ; the folder of the installed version, empty if there is none
Var Programas ; who holds a DLL
Var Fallos

; What installer and uninstaller share; PREFIJO is empty or "un.".
!macro COMUN PREFIJO
  ; Writes the text on the stack to the log and into the list of steps.
  Function ${PREFIJO}anotar
    Exch $0
    Push $1
    DetailPrint "$0"
    FileOpen $1 "$TEMP\PXTarvo-instalar.log" a
    FileSeek $1 0 END
    FileWrite $1 "$0$\r$\n"
    FileClose $1
    Pop $1
    Pop $0
  FunctionEnd

  ; Ends the program where no administrator runs it.
  Function ${PREFIJO}exigirAdministrador
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
      Push "Hacen falta permisos de administrador."
      Call ${PREFIJO}anotar
      MessageBox MB_OK|MB_ICONSTOP "Hacen falta permisos de administrador." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
  FunctionEnd

  ; Adds to $Programas who holds the file on the stack; nothing where it could be written to.
  Function ${PREFIJO}quienTiene
    Exch $R0
    ${IfNot} ${FileExists} "$R0"
      Goto libre
    ${EndIf}
    ClearErrors
    FileOpen $0 "$R0" a
    ${IfNot} ${Errors}
      FileClose $0
      Goto libre
    ${EndIf}
    StrCpy $R9 ""
    System::Call 'rstrtmgr::RmStartSession(*i .r1, i 0, w .r2) i .r0'
    ${If} $0 == 0
      System::Call '*(&w${NSIS_MAX_STRLEN} "$R0") p .r3'
      System::Call '*(p r3) p .r4'
      System::Call 'rstrtmgr::RmRegisterResources(i r1, i 1, p r4, i 0, p 0, i 0, p 0) i .r0'
      ; Room for 16 RM_PROCESS_INFO of 668 bytes: number and start of the process (4 + 8), its name (256 characters), ...
      System::Alloc 10688
      Pop $5
      System::Call 'rstrtmgr::RmGetList(i r1, *i .r6, *i 16 r7, p r5, *i .r8) i .r0'
      ${If} $0 == 0
        StrCpy $8 $5
        ${While} $7 > 0
          System::Call '*$8(i .r6, i, i, &w256 .r2)'
          StrCpy $R9 "$R9$2 (proceso $6)$\r$\n"
          IntPtrOp $8 $8 + 668
          IntOp $7 $7 - 1
        ${EndWhile}
      ${EndIf}
      System::Free $5
      System::Free $4
      System::Free $3
      System::Call 'rstrtmgr::RmEndSession(i r1)'
    ${EndIf}
    ${If} $R9 == ""
      StrCpy $R9 "un programa que Windows no nombra$\r$\n"
    ${EndIf}
    StrCpy $Programas "$Programas$R0:$\r$\n$R9"
  libre:
    Pop $R0
  FunctionEnd

  ; Ends the program while a DLL in the folder on the stack is in use and the user does not want to try again.
  Function ${PREFIJO}exigirLibres
    Exch $R1
  otraVez:
    StrCpy $Programas ""
    Push "$R1\x86\PXTarvo.dll"
    Call ${PREFIJO}quienTiene
    Push "$R1\x64\PXTarvo.dll"
    Call ${PREFIJO}quienTiene
    ${If} $Programas != ""
      Push "PXTarvo está en uso y no se ha cambiado nada.$\r$\n$Programas"
      Call ${PREFIJO}anotar
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "PXTarvo está en uso:$\r$\n$\r$\n$Programas$\r$\nCierre el programa y pulse Reintentar." /SD IDCANCEL IDRETRY otraVez
      SetErrorLevel 3
      Quit
    ${EndIf}
    Pop $R1
  FunctionEnd

  ; Runs a regsvr32 with what is on the stack: its file, then its arguments.
  Function ${PREFIJO}regsvr
    Exch $R3
    Exch
    Exch $R2
    ClearErrors
    ExecWait '"$R3" /s $R2' $0
    ${If} ${Errors}
      StrCpy $0 "no arranca"
    ${EndIf}
    ${If} $0 != 0
      Push "regsvr32 $R2: $0"
      Call ${PREFIJO}anotar
      IntOp $Fallos $Fallos + 1
    ${EndIf}
    Pop $R2
    Pop $R3
  FunctionEnd

  Function ${PREFIJO}quitarRegistroDll
    ${If} ${FileExists} "$INSTDIR\x64\PXTarvo.dll"
      Push '/u "$INSTDIR\x64\PXTarvo.dll"'
      Push "${REGSVR_X64}"
      Call ${PREFIJO}regsvr
    ${EndIf}
    ${If} ${FileExists} "${REGSVR_X86}"
    ${AndIf} ${FileExists} "$INSTDIR\x86\PXTarvo.dll"
      Push '/u "$INSTDIR\x86\PXTarvo.dll"'
      Push "${REGSVR_X86}"
      Call ${PREFIJO}regsvr
    ${EndIf}
  FunctionEnd

  ; Takes away what this program has written, but not what it did not: of C:\TARVO only what it made and nothing uses.
  Function ${PREFIJO}quitar
    Call ${PREFIJO}quitarRegistroDll
    SetOutPath "$TEMP"
    !insertmacro QUITAR_ARCHIVOS
    Delete "$INSTDIR\desinstalar.exe"
    RMDir "$INSTDIR"
    ReadRegDWORD $0 HKLM "${CLAVE}" "CreadaStock"
    ${If} $0 == 1
      RMDir "${TARVO}\STOCK"
    ${EndIf}
    ReadRegDWORD $0 HKLM "${CLAVE}" "CreadaTarvo"
    ${If} $0 == 1
      RMDir "${TARVO}"
    ${EndIf}
    DeleteRegKey HKLM "${CLAVE}"
  FunctionEnd
!macroend
!insertmacro COMUN ""
!insertmacro COMUN "un."

Function .onInit
  SetRegView 32
  Delete "$TEMP\PXTarvo-instalar.log"
  Call exigirAdministrador
  ReadRegStr $Anterior HKLM "${CLAVE}" "InstallLocation"
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR $Anterior
  ${EndIf}
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR "$PROGRAMFILES32\PXTarvo"
  ${EndIf}
  ReadRegStr $0 HKLM "${CLAVE}" "DisplayVersion"
  ${If} $0 != ""
    ${VersionCompare} "$0" "${VERSION}" $1
    ${If} $1 == 1
      MessageBox MB_YESNO|MB_ICONQUESTION "Está instalada una versión más nueva ($0). ¿Sustituirla por la ${VERSION}?" /SD IDYES IDYES +3
      SetErrorLevel 1
      Quit
    ${EndIf}
  ${EndIf}
FunctionEnd

Section
  SetRegView 32
  StrCpy $Fallos 0
  ${If} $Anterior != ""
    Push $Anterior
    Call exigirLibres
  ${EndIf}
  Push $INSTDIR
  Call exigirLibres
  ${If} $Anterior != ""
  ${AndIf} ${FileExists} "$Anterior\desinstalar.exe"
    DetailPrint "Se quita la versión anterior"
    CopyFiles /SILENT "$Anterior\desinstalar.exe" "$PLUGINSDIR\anterior.exe"
    ExecWait '"$PLUGINSDIR\anterior.exe" /S _?=$Anterior' $0
    ${If} $0 != 0
      Push "La versión anterior de $Anterior no se ha dejado quitar ($0)."
      Call anotar
      MessageBox MB_OK|MB_ICONSTOP "La versión anterior no se ha dejado quitar." /SD IDOK
      SetErrorLevel 4
      Quit
    ${EndIf}
  ${EndIf}

  ClearErrors
  !insertmacro PONER_ARCHIVOS
  ${If} ${RunningX64}
    !insertmacro PONER_ARCHIVOS_X64
  ${EndIf}
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\desinstalar.exe"
  ${If} ${Errors}
    Push "No se han podido escribir todos los archivos en $INSTDIR."
    Call anotar
    IntOp $Fallos $Fallos + 1
  ${EndIf}

  WriteRegStr HKLM "${CLAVE}" "DisplayName" "PXTarvo"
  WriteRegStr HKLM "${CLAVE}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${CLAVE}" "Publisher" "PXTarvo"
  WriteRegStr HKLM "${CLAVE}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${CLAVE}" "UninstallString" '"$INSTDIR\desinstalar.exe"'
  WriteRegStr HKLM "${CLAVE}" "QuietUninstallString" '"$INSTDIR\desinstalar.exe" /S'
  WriteRegDWORD HKLM "${CLAVE}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKLM "${CLAVE}" "NoModify" 1
  WriteRegDWORD HKLM "${CLAVE}" "NoRepair" 1
  ${IfNot} ${FileExists} "${TARVO}\*.*"
    WriteRegDWORD HKLM "${CLAVE}" "CreadaTarvo" 1
  ${EndIf}
  ${IfNot} ${FileExists} "${TARVO}\STOCK\*.*"
    WriteRegDWORD HKLM "${CLAVE}" "CreadaStock" 1
  ${EndIf}
  CreateDirectory "${TARVO}\STOCK"
  ${IfNot} ${FileExists} "${TARVO}\STOCK\*.*"
    Push "No se ha podido crear la carpeta ${TARVO}\STOCK."
    Call anotar
    IntOp $Fallos $Fallos + 1
  ${EndIf}

!ifdef NATIVO_64
  ${If} ${FileExists} "${REGSVR_X86}"
!endif
  Push '"$INSTDIR\x86\PXTarvo.dll"'
  Push "${REGSVR_X86}"
  Call regsvr
!ifdef NATIVO_64
  ${EndIf}
!endif
  ${If} ${RunningX64}
    Push '"$INSTDIR\x64\PXTarvo.dll"'
    Push "${REGSVR_X64}"
    Call regsvr
  ${EndIf}

  ${If} $Fallos != 0
    Push "PXTarvo no se ha podido instalar; se ha quitado lo que se había puesto."
    Call anotar
    Call quitar
    MessageBox MB_OK|MB_ICONSTOP "PXTarvo no se ha podido instalar. Lo que ha fallado está en $TEMP\PXTarvo-instalar.log" /SD IDOK
    SetErrorLevel 4
    Quit
  ${EndIf}
  Push "PXTarvo ${VERSION} instalado en $INSTDIR."
  Call anotar
  SetErrorLevel 0
SectionEnd

Function un.onInit
  SetRegView 32
  Call un.exigirAdministrador
FunctionEnd

Section Uninstall
  SetRegView 32
  StrCpy $Fallos 0
  Push $INSTDIR
  Call un.exigirLibres
  Call un.quitar
  ${If} $Fallos != 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "PXTarvo se ha quitado, pero no todo su registro. Lo que ha fallado está en $TEMP\PXTarvo-instalar.log" /SD IDOK
    SetErrorLevel 4
    Quit
  ${EndIf}
  SetErrorLevel 0
SectionEnd
