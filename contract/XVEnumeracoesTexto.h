// Names of the enumerations of the records, for everyone who shows or reads them: as the enumerations spell
// them ("eXVSMiddleware_Pendente") and in short ("Pendente"). Thread rule: any thread.
#pragma once

#include <span>
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

struct SNomeEnumeracao {
    XVUInt ulValor;
    std::string_view sNome;

    // What follows the enumeration's own prefix ("eXVSMiddleware_", "XVSMiddleware_", "Tipo_").
    constexpr std::string_view GetCurto() const {
        const std::size_t uiSublinhado = sNome.find('_');
        return uiSublinhado == std::string_view::npos ? sNome : sNome.substr(uiSublinhado + 1);
    }
};

namespace XVEnumeracoesTexto {

// The values that have a name, in their order; the first is always "none".
std::span<const SNomeEnumeracao> GetNomes(EEnumeracao eEnumeracao);

// The full name, or an empty text for a value without name.
std::string_view GetNome(EEnumeracao eEnumeracao, XVUInt ulValor);

// The short name; a value without name as its number.
std::string GetNomeCurto(EEnumeracao eEnumeracao, XVUInt ulValor);

// A full or short name, in any case, or the number of a value that has a name. False: *pulValor unchanged.
bool Busca(EEnumeracao eEnumeracao, std::string_view sTexto, XVUInt* pulValor);

// The values with their short names for messages and help: "1=Pendente, 2=Enviado, ...".
std::string GetLista(EEnumeracao eEnumeracao);

}  // namespace XVEnumeracoesTexto
