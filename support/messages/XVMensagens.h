// The one table of advice for people: symbolic name, sentence, cause and what to do for every code of the
// component, of the engine and of the system around them that a person may meet. Messages, logs, "xvcr
// explica" and the tables of the manual are all made from it.
//
// Who finds a sentence where: a program that tells a person of a failure carries this table and asks it. A
// line of the error log asks the library "XVLMensagem" (XVLMensagem.h), which carries the table too and may
// be replaced by one that knows more modules of the suite; support/trace/XVBibliotecaMensagens.h asks it and
// remembers its answers. Every library that is loaded by name, this one and "XVMens" (support/faults) and the
// providers included, is looked for by CXVBibliotecaDinamica alone (platform/XVBibliotecaDinamica.h).
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "platform/XVTipos.h"

// Where a person meets the code: the chapters of the manual.
enum class EAssuntoMensagem : std::uint8_t {
    eAbertura,  // the store does not open, or a file of it is refused
    eArquivos,  // the file system refuses
    eChamada,   // the call is refused, with nothing written
    eProcesso,  // the process, the component or the system around it
    eExecucao,  // the run time library's errors, outside of the store's own files
};

struct SMensagemCodigo {
    HRESULT hr;
    std::string_view sNome;  // "E_XVCR_ARQUIVO_NAO_EXISTE"; empty where the code has none
    EAssuntoMensagem eAssunto;
    std::string_view sDescricao;  // one Portuguese sentence: what happened, and the first thing to do
    std::string_view sCausa;      // why; what of the data is whole
    std::string_view sAcao;       // what to do, in the order of the steps
    HRESULT hrUltimo = 0;         // where not 0: the entry is that of all codes from hr to this one
};

// The table in its parts, each in ascending order of the codes. Thread rule: any thread.
std::array<std::span<const SMensagemCodigo>, 4> XVListaMensagens();

// The entry of a code, or null. Thread rule: any thread.
const SMensagemCodigo* XVBuscaMensagem(HRESULT hr);
// The entry of a symbolic name, any case, or null. Thread rule: any thread.
const SMensagemCodigo* XVBuscaMensagemPorNome(std::string_view sNome);

// The stable short name of a subject: "abertura", "arquivos", "chamada", "processo", "execucao".
std::string_view XVNomeAssunto(EAssuntoMensagem eAssunto);
