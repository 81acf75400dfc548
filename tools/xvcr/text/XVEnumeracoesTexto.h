// Names of the enumerations of the records: as the enumerations spell them ("eXVSMiddleware_Pendente"), in
// short
// ("Pendente", any case) and as numbers.
#pragma once

#include <string>
#include <string_view>

#include "platform/XVTipos.h"

enum class EEnumeracao : std::uint8_t {
    eNenhuma,  // the field is a plain number
    eTipoIntegracao,
    eStatusIntegracao,
    eSistemaIntegracao,
    eTipoTransacao,
    eTipoData,
    eTipoConsulta,
    eStatusConsulta,
};

namespace XVEnumeracoesTexto {

// The full name, or an empty text for a value without name.
std::string_view GetNome(EEnumeracao eEnumeracao, XVUInt ulValor);

// The short name; a value without name as its number.
std::string GetNomeCurto(EEnumeracao eEnumeracao, XVUInt ulValor);

// A full or short name, or the number of a value that has a name. False: *pulValor unchanged.
bool Busca(EEnumeracao eEnumeracao, std::string_view sTexto, XVUInt* pulValor);

// The short names for messages and help: "Pendente, Enviado, ...".
std::string GetLista(EEnumeracao eEnumeracao);

}  // namespace XVEnumeracoesTexto
