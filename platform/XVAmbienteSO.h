// Facts about the machine, the user and the process, and the allocator of buffers that cross the
// component's interface. Functions return an empty text or 0 where the system does not answer.
// Thread rule: any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/XVTipos.h"

namespace XVAmbienteSO {

std::string GetNomeComputador();     // at most 15 characters, as GetComputerName gives it
std::string GetNomeUsuario();        // local user of the process
std::string GetCaminhoExecutavel();  // absolute path of the running program
std::string GetDiretorioExecutavel();
XVUInt GetIdProcesso();
XVUInt GetIdThread();
std::size_t GetMaximoArquivosAbertos();  // by this process at one time; large where nothing limits it
bool EhSessaoRemota();

struct SMemoriaMaquina {
    XVUInt64 uiDisponivel = 0;  // bytes
    XVUInt64 uiTotal = 0;
};
SMemoriaMaquina GetMemoriaMaquina();
XVUInt64 GetMemoriaPrivadaProcesso();  // bytes

// "%d.%d.%d.%d" of the running program's version resource, or of the named system library
// ("kernel32.dll"); elsewhere the version built into the program and the kernel's release.
std::string GetVersaoExecutavel();
std::string GetVersaoSistema();

std::string NovoGuid();  // text form without braces, upper case

std::optional<std::string> GetVariavelAmbiente(const char* pszNome);

// Buffers handed to callers of the interface: the COM task allocator on Windows, the C allocator
// elsewhere. Null on exhaustion; uiTamanho 0 gives null.
void* AlocaSaida(std::size_t uiTamanho);
void LiberaSaida(void* pBuffer);

}  // namespace XVAmbienteSO
