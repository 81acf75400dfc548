// Codes as a person reads them. Thread rule: any thread.
#pragma once

#include <string>
#include <string_view>

#include "platform/XVTipos.h"

namespace XVCliente {

// "0x81080AAA"
std::string CodigoEmTexto(HRESULT hr);

// Symbolic name of a code of the component or of the system ("E_XVCR_ARQUIVO_NAO_EXISTE", "E_NOTIMPL"); empty
// for one that has none.
std::string_view NomeDoCodigo(HRESULT hr);

// What a code of the component or a common one of the system means: one sentence in Portuguese; empty for
// others.
std::string_view FraseDoCodigo(HRESULT hr);

// All three for a message: "0x81080AAA E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: <sentence>". Where there is no
// sentence, the text points to the error log.
std::string DescreveCodigo(HRESULT hr);

}  // namespace XVCliente
