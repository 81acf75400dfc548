// The fields of a record as the cells of a table: short names for enumerations, text forms of DMCs and
// date-times, nothing for none, base64 for a text that is not valid UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "tools/xvcr/fields/XVRegistroJson.h"
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace XVValoresTabela {

enum class ETipo : std::uint8_t { eNumero, eNumeroGrande, eTexto, eDataHora };

struct SValor {
    ETipo eTipo = ETipo::eTexto;
    bool bBase64 = false;
    std::string sTexto{};
};

inline SValor Valor(EEnumeracao, const std::string& sTexto) {
    const bool bUtf8 = XVTextoTela::EhUtf8(sTexto);
    return {ETipo::eTexto, !bUtf8, bUtf8 ? sTexto : XVBase64::Codifica(sTexto)};
}
inline SValor Valor(EEnumeracao, REG_XVDMC regDmc) {
    return {ETipo::eTexto, false, regDmc.EhNulo() ? "" : regDmc.ToString()};
}
inline SValor Valor(EEnumeracao, REG_XVDMAHMSUTC regDataHora) {
    return {ETipo::eDataHora, false, regDataHora.EhValida() ? regDataHora.ToISO8601() : ""};
}
inline SValor Valor(EEnumeracao, XVUInt64 uiValor) {
    return {ETipo::eNumeroGrande, false, std::to_string(uiValor)};
}
inline SValor Valor(EEnumeracao eEnumeracao, XVUInt ulValor) {
    if (eEnumeracao == EEnumeracao::eNenhuma) return {ETipo::eNumero, false, std::to_string(ulValor)};
    return {ETipo::eTexto, false, XVEnumeracoesTexto::GetNomeCurto(eEnumeracao, ulValor)};
}
inline SValor Valor(EEnumeracao, XVByte ucValor) {
    return {ETipo::eNumero, false, std::to_string(ucValor)};
}

// fVisita(name, SValor). Where bTextos is false, the texts that may be long are left out.
template <class T, class FVisita>
void Percorre(const T& rDados, bool bTextos, FVisita&& fVisita) {
    XVRegistroJson::Visita(rDados, bTextos, [&](const TCampo<T>& rCampo, const auto& rValor) {
        fVisita(rCampo.sNome, Valor(rCampo.eEnumeracao, rValor));
    });
}

}  // namespace XVValoresTabela
