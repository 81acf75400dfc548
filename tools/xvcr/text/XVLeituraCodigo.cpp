#include "tools/xvcr/text/XVLeituraCodigo.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <span>

#include "support/messages/XVMensagens.h"
#include "support/names/XVNomesHResult.h"
#include "support/values/XVTextoAscii.h"

namespace {

template <class T>
bool LeNumero(std::string_view sDigitos, int iBase, T* pNumero) {
    const char* pszFim = sDigitos.data() + sDigitos.size();
    const auto [pszLido, erro] = std::from_chars(sDigitos.data(), pszFim, *pNumero, iBase);
    return erro == std::errc() && pszLido == pszFim && !sDigitos.empty();
}

bool DeNumero(std::string_view sTexto, XVUInt* pulCodigo) {
    constexpr std::size_t k_uiDigitos = 8;
    if (sTexto.starts_with("0x") || sTexto.starts_with("0X"))
        return LeNumero(sTexto.substr(2), 16, pulCodigo);
    // Eight digits are a code without its "0x": failures are longer when they are written in decimal.
    if (sTexto.size() == k_uiDigitos && LeNumero(sTexto, 16, pulCodigo)) return true;
    std::int32_t lNegativo = 0;
    if (sTexto.starts_with('-') && LeNumero(sTexto, 10, &lNegativo)) {
        *pulCodigo = static_cast<XVUInt>(lNegativo);
        return true;
    }
    return LeNumero(sTexto, 10, pulCodigo);
}

bool DeNome(std::string_view sTexto, std::span<const SNomeCodigo> lista, XVUInt ulMais, XVUInt* pulCodigo) {
    const auto p = std::ranges::find_if(
        lista, [sTexto](const SNomeCodigo& r) { return XVIgualSemCaixa(r.pszNome, sTexto); });
    if (p == lista.end()) return false;
    *pulCodigo = p->ulCodigo | ulMais;
    return true;
}

}  // namespace

std::string XVLeituraCodigo::Le(std::string_view sTexto, HRESULT* phr) {
    constexpr XVUInt k_ulFacilityWin32 = 0x80070000U;
    XVUInt ulCodigo = 0;
    if (const SMensagemCodigo* pMensagem = XVBuscaMensagemPorNome(sTexto); pMensagem != nullptr)
        ulCodigo = static_cast<XVUInt>(pMensagem->hr);
    else if (!DeNumero(sTexto, &ulCodigo) && !DeNome(sTexto, XVNomesHResult::k_listaHResult, 0, &ulCodigo) &&
             !DeNome(sTexto, XVNomesHResult::k_listaWin32, k_ulFacilityWin32, &ulCodigo))
        return "esperado um código (0x81080AAA) ou o nome simbólico de um";
    *phr = XVHResult(ulCodigo);
    return {};
}
