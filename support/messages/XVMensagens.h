// The one table of sentences for people: symbolic name and Portuguese explanation of every code of the
// component and of the engine.
//
// Who finds a sentence where: a program that tells a person of a failure carries this table and asks it. A
// line of the error log asks the library "XVLMensagem" (XVLMensagem.h), which carries the table too and may
// be replaced by one that knows more modules of the suite; support/trace/XVBibliotecaMensagens.h asks it and
// remembers its answers. Every library that is loaded by name, this one and "XVMens" (support/faults) and the
// providers included, is looked for by CXVBibliotecaDinamica alone (platform/XVBibliotecaDinamica.h).
#pragma once

#include <string_view>

#include "platform/XVTipos.h"

struct SMensagemCodigo {
    HRESULT hr;
    std::string_view sNome;       // "E_XVCR_ARQUIVO_NAO_EXISTE"
    std::string_view sDescricao;  // one Portuguese sentence
};

// The entry of a code, or null. Thread rule: any thread.
const SMensagemCodigo* XVBuscaMensagem(HRESULT hr);
// The entry of a symbolic name, any case, or null. Thread rule: any thread.
const SMensagemCodigo* XVBuscaMensagemPorNome(std::string_view sNome);
