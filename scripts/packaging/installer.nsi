; The installer of the component's server and of xvcr for 64-bit Windows. Made by scripts/package:
;   makensis -DVERSAO=a.b.c.d -DPASTA=<staged files> -DSAIDA=<installer> installer.nsi
;
; An update never takes a file away that somebody needs: the new ones are written into a folder of their own,
; each old one is renamed (which works while it runs) and the new one takes its name. Then the class is
; registered again, and the running server is asked to end: it finishes the calls in progress and closes its
; stores, and its clients' next calls start the new program. An old program whose file can be deleted runs no more.
;
; Exit codes: 0 done; 2 not done, what was there before works as before: an exchange that fails takes back those
; before it; 3 done, but an old server still runs; 4 the registration failed, the files and the entry of installed
; programs are there.
Unicode true
Target amd64-unicode
SetCompressor zlib
Name "XVCR_Middleware ${VERSAO}"
OutFile "${SAIDA}"
!define CHAVE_REMOCAO "Software\Microsoft\Windows\CurrentVersion\Uninstall\XVCR_Middleware"
!define CHAVE_MODULO "SOFTWARE\Wow6432Node\Velmora\DF"
!define SERVIDOR "XVCR_Middleware.exe"
!define PROXY_32 "XVCR_MiddlewarePS32.dll"
InstallDir "$PROGRAMFILES64\XVCR_Middleware"
InstallDirRegKey HKLM "${CHAVE_REMOCAO}" "InstallLocation"
RequestExecutionLevel admin
LoadLanguageFile "${NSISDIR}/Contrib/Language files/PortugueseBR.nlf"
VIProductVersion "${VERSAO}"
VIAddVersionKey "ProductName" "XVCR_Middleware"
VIAddVersionKey "ProductVersion" "${VERSAO}"
VIAddVersionKey "FileDescription" "Instalador do componente de integrações"
VIAddVersionKey "FileVersion" "${VERSAO}"
VIAddVersionKey "LegalCopyright" ""
!include LogicLib.nsh
!include FileFunc.nsh
!include WordFunc.nsh
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Var dados   ; the module directory to write to the registry; "": the one in force stays
Var registra   ; what follows /RegServer: the account and who may use the server, where they are named
Var velho   ; what the old files are renamed to

!macro Desiste CODIGO TEXTO
  SetErrorLevel ${CODIGO}
  MessageBox MB_OK|MB_ICONSTOP "${TEXTO}" /SD IDOK
  Quit
!macroend

; Asks the servers to end and deletes the program $R8 as soon as nobody runs it. $R9: the program that knows how
; to ask. A server of a version that did not know the switch is asked by its window. An ending server is gone
; after 22 s (server/XVTemposFim.h), of which calls in progress get 18; this waits twice that.
!macro Encerra UN
Function ${UN}Encerra
  ExecWait '"$R9" /Stop' $0
  Delete $R8
  ${If} ${FileExists} $R8
    nsExec::Exec 'taskkill /IM ${SERVIDOR}'
    Pop $0
  ${EndIf}
  StrCpy $1 0
  ${Do}
    Delete $R8
    ${IfNot} ${FileExists} $R8
    ${OrIf} $1 >= 180
      ${ExitDo}
    ${EndIf}
    Sleep 250
    IntOp $1 $1 + 1
  ${Loop}
  ${If} ${FileExists} $R8
    SetErrorLevel 3
  ${EndIf}
FunctionEnd
!macroend
!insertmacro Encerra ""
!insertmacro Encerra "un."

; The switch's value in the command line $0, "" where it is not given.
!macro LeOpcao OPCAO VARIAVEL
  ; A shell may put the quotes around the whole word.
  ${WordReplace} $0 '"${OPCAO}=' '${OPCAO}="' "+" $0
  ${GetOptions} $0 "${OPCAO}=" ${VARIAVEL}
!macroend

Function .onInit
  ${GetParameters} $0
  !insertmacro LeOpcao "/Dados" $dados
  !insertmacro LeOpcao "/Conta" $1
  !insertmacro LeOpcao "/Acesso" $2
  ${If} $1 != ""
    StrCpy $registra ' "/Conta:$1"'
  ${EndIf}
  ${If} $2 != ""
    StrCpy $registra '$registra "/Acesso:$2"'
  ${EndIf}
  ClearErrors
FunctionEnd

; Nothing of this run stays: of a first installation, no folder either.
Function Limpa
  SetOutPath $TEMP
  RMDir /r "$INSTDIR\novo"
  RMDir $INSTDIR
FunctionEnd

; The module directory: the one that was named, or else the one in force, or else a folder for all users.
Function PreparaDados
  ReadRegStr $0 HKLM "${CHAVE_MODULO}" "Path"
  ReadRegStr $1 HKLM "${CHAVE_MODULO}" "Path_x64"
  ${If} $dados == ""
    ${If} "$0$1" != ""
      Return
    ${EndIf}
    SetShellVarContext all
    StrCpy $dados "$APPDATA\XVCR_Middleware"
  ${EndIf}
  ClearErrors
  CreateDirectory $dados
  ${If} ${Errors}
    Call Limpa
    !insertmacro Desiste 2 "O diretório de dados $dados não pôde ser criado."
  ${EndIf}
FunctionEnd

; $R2 becomes $R3; the error flag says that it did not. Who looks through new files, as virus scanners do, has them
; open for a moment: it is tried for two seconds.
Function Renomeia
  StrCpy $1 0
  ${Do}
    ClearErrors
    Rename $R2 $R3
    ${IfNot} ${Errors}
      Return
    ${EndIf}
    Sleep 100
    IntOp $1 $1 + 1
  ${LoopUntil} $1 >= 20
  SetErrors
FunctionEnd

!macro Renomeia DE PARA
  StrCpy $R2 "${DE}"
  StrCpy $R3 "${PARA}"
  Call Renomeia
!macroend

; Takes the exchange of the file $R1 back, if it took place: its new one has left novo\ then. What somebody runs of
; the new ones by now bears an old one's name until the next update.
Function DesfazTroca
  ${IfNot} ${FileExists} "$INSTDIR\novo\$R1"
    !insertmacro Renomeia "$INSTDIR\$R1" "$INSTDIR\novo\$R1"
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\$R1$velho"
    !insertmacro Renomeia "$INSTDIR\$R1$velho" "$INSTDIR\$R1"
  ${EndIf}
  Delete "$INSTDIR\novo\$R1"
  ${If} ${FileExists} "$INSTDIR\novo\$R1"
    !insertmacro Renomeia "$INSTDIR\novo\$R1" "$INSTDIR\$R1$velho"
  ${EndIf}
FunctionEnd

!macro DesfazTroca ARQUIVO
  StrCpy $R1 "${ARQUIVO}"
  Call DesfazTroca
!macroend

; All exchanges, the last one first; only once all new files lay in novo\.
Function Desfaz
  !insertmacro DesfazTroca "${SERVIDOR}"
  !insertmacro DesfazTroca "${PROXY_32}"
  !insertmacro DesfazTroca "XVCR_MiddlewarePS.dll"
  !insertmacro DesfazTroca "xvcr.exe"
  !insertmacro DesfazTroca "XVLMensagem.dll"
  Call Limpa
FunctionEnd

; The new file $R1 takes the old one's place. (Asking for the error flag clears it, so it is asked for at once.)
Function Troca
  ${If} ${FileExists} "$INSTDIR\$R1"
    !insertmacro Renomeia "$INSTDIR\$R1" "$INSTDIR\$R1$velho"
  ${Else}
    ClearErrors
  ${EndIf}
  ${IfNot} ${Errors}
    !insertmacro Renomeia "$INSTDIR\novo\$R1" "$INSTDIR\$R1"
    ${IfNot} ${Errors}
      Return
    ${EndIf}
  ${EndIf}
  StrCpy $R0 $R1
  Call Desfaz
  !insertmacro Desiste 2 "O arquivo $INSTDIR\$R0 não pôde ser trocado."
FunctionEnd

!macro Troca ARQUIVO
  StrCpy $R1 "${ARQUIVO}"
  Call Troca
!macroend

Section
  SetOutPath "$INSTDIR\novo"
  ; What an earlier update could not delete because somebody ran it.
  Delete "$INSTDIR\*.velho*"
  StrCpy $0 0
  ${Do}
    IntOp $0 $0 + 1
    StrCpy $velho ".velho$0"
  ${LoopWhile} ${FileExists} "$INSTDIR\*$velho"
  ClearErrors
  File "${PASTA}/${SERVIDOR}"
  File "${PASTA}/XVCR_MiddlewarePS.dll"
  File "${PASTA}/${PROXY_32}"
  File "${PASTA}/XVLMensagem.dll"
  File "${PASTA}/xvcr.exe"
  ${If} ${Errors}
    Call Limpa
    !insertmacro Desiste 2 "Os arquivos não puderam ser gravados em $INSTDIR."
  ${EndIf}
  Call PreparaDados

  SetOutPath $INSTDIR
  !insertmacro Troca "XVLMensagem.dll"
  !insertmacro Troca "xvcr.exe"
  !insertmacro Troca "XVCR_MiddlewarePS.dll"
  !insertmacro Troca "${PROXY_32}"
  !insertmacro Troca "${SERVIDOR}"
  ClearErrors
  File /r "${PASTA}/docs"
  File /r "${PASTA}/licences"
  File "${PASTA}/README.md"
  File "${PASTA}/CHANGELOG.md"
  File "${PASTA}/CONTENTS.txt"
  File "${PASTA}/xvcr.ps1"
  WriteUninstaller "$INSTDIR\Desinstala.exe"
  ${If} ${Errors}
    Call Desfaz
    !insertmacro Desiste 2 "Os documentos não puderam ser gravados em $INSTDIR."
  ${EndIf}
  WriteRegStr HKLM "${CHAVE_REMOCAO}" "DisplayName" "XVCR_Middleware"
  WriteRegStr HKLM "${CHAVE_REMOCAO}" "DisplayVersion" "${VERSAO}"
  WriteRegStr HKLM "${CHAVE_REMOCAO}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${CHAVE_REMOCAO}" "UninstallString" '"$INSTDIR\Desinstala.exe"'
  WriteRegStr HKLM "${CHAVE_REMOCAO}" "QuietUninstallString" '"$INSTDIR\Desinstala.exe" /S'
  WriteRegDWORD HKLM "${CHAVE_REMOCAO}" "NoModify" 1
  WriteRegDWORD HKLM "${CHAVE_REMOCAO}" "NoRepair" 1
  ${If} $dados != ""
    WriteRegStr HKLM "${CHAVE_MODULO}" "Path" $dados
  ${EndIf}
  ${If} ${Errors}
    Call Desfaz
    !insertmacro Desiste 2 "O registro do Windows não pôde ser gravado."
  ${EndIf}
  RMDir "$INSTDIR\novo"

  ; The entry of installed programs is there by now: what cannot be registered can be removed.
  StrCpy $0 -1   ; of a program that cannot be started
  ExecWait '"$INSTDIR\${SERVIDOR}" /RegServer$registra' $0
  ${If} $0 != 0
    IntFmt $0 "0x%08X" $0
    !insertmacro Desiste 4 "O componente não pôde ser registrado (código $0)."
  ${EndIf}

  StrCpy $R8 "$INSTDIR\${SERVIDOR}$velho"
  StrCpy $R9 "$INSTDIR\${SERVIDOR}"
  ${If} ${FileExists} $R8
    Call Encerra
  ${EndIf}
  Delete "$INSTDIR\*$velho"
SectionEnd

; Data and the value that says where they are stay: whoever installs again finds them. The registration goes
; first, so that nobody starts the server again once it was asked to end. What others put beside it stays too.
Section Uninstall
  ExecWait '"$INSTDIR\${SERVIDOR}" /UnregServer' $0
  ${If} $0 != 0
    IntFmt $0 "0x%08X" $0
    !insertmacro Desiste 4 "O registro do componente não pôde ser removido (código $0)."
  ${EndIf}
  StrCpy $R8 "$INSTDIR\${SERVIDOR}"
  StrCpy $R9 $R8
  Call un.Encerra
  Delete /REBOOTOK $R8
  Delete /REBOOTOK "$INSTDIR\XVCR_MiddlewarePS.dll"
  Delete /REBOOTOK "$INSTDIR\${PROXY_32}"
  Delete /REBOOTOK "$INSTDIR\XVLMensagem.dll"
  Delete /REBOOTOK "$INSTDIR\xvcr.exe"
  Delete /REBOOTOK "$INSTDIR\*.velho*"
  RMDir /r "$INSTDIR\docs"
  RMDir /r "$INSTDIR\licences"
  Delete "$INSTDIR\README.md"
  Delete "$INSTDIR\CHANGELOG.md"
  Delete "$INSTDIR\CONTENTS.txt"
  Delete "$INSTDIR\xvcr.ps1"
  Delete "$INSTDIR\Desinstala.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${CHAVE_REMOCAO}"
SectionEnd
