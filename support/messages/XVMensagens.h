// The one table of sentences for people: symbolic name and Portuguese explanation of every code of the
// component and of the engine. Used by the command-line program, the messages library and the trace.
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
