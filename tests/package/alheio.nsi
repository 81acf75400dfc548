; A client without compiler and type library: it calls the slots of the interface by number, over records laid out
; byte by byte (INICIALIZA: the sealed record of initialisation, a file). Exit code 0 when what it recorded is read
; back: slot 3 Inicializa, 13 GravaIntegracao, 10 LeIntegracao.
Unicode true
Target amd64-unicode
SetCompressor zlib
OutFile "${SAIDA}"
RequestExecutionLevel user
SilentInstall silent
!include LogicLib.nsh

!macro Exige PASSO
  ${If} $0 != 0
    SetErrorLevel ${PASSO}
    Quit
  ${EndIf}
!macroend

Section
  InitPluginsDir
  File "/oname=$PLUGINSDIR\inicializa" "${INICIALIZA}"
  System::Alloc 296
  Pop $R0
  System::Call 'kernel32::CreateFileW(w "$PLUGINSDIR\inicializa", i 0x80000000, i 1, p 0, i 3, i 0, p 0) p .R1'
  System::Call 'kernel32::ReadFile(p R1, p R0, i 296, *i .r1, p 0)'
  System::Call 'kernel32::CloseHandle(p R1)'

  System::Call 'ole32::CoInitializeEx(p 0, i 0)'
  System::Call 'ole32::CoCreateInstance(g "{78415b84-1d9e-4939-b37a-87f6aa9d6516}", p 0, i 4, \
    g "{c2141cb5-b40b-41f8-a6aa-c8c9c30aad48}", *p .r9) i .r0'
  !insertmacro Exige 10
  System::Call '$9->3(p R0) i .r0'
  !insertmacro Exige 11

  ; 176 bytes: three texts of 24 bytes, the first with 9 bytes; kinds from byte 136.
  System::Alloc 9
  Pop $R2
  System::Call 'kernel32::RtlMoveMemory(p R2, m `{"nsi":1}`, p 9)'
  System::Alloc 176
  Pop $R3
  System::Call '*$R3(i 9, i 0, p R2)'
  IntPtrOp $R4 $R3 + 136
  System::Call '*$R4(i 9, i 1, i 2, i 1)'
  System::Call '*(l 0) p .R5'
  System::Call '$9->13(p R5, p R3) i .r0'
  !insertmacro Exige 13

  System::Call '*$R5(l .R6)'
  System::Call '$9->10(l R6, p R3, l 1) i .r0'
  !insertmacro Exige 14
  System::Call '*$R3(i .r1, i .r2, p .r3)'
  System::Call '*$3(&m9 .r4)'
  ${If} "$1 $4" != '9 {"nsi":1}'
    SetErrorLevel 15
  ${Else}
    SetErrorLevel 0
  ${EndIf}
  System::Call '$9->2() i .r0'
SectionEnd
