#include "tools/xvcr/text/XVLeituraValor.h"

#include <charconv>
#include <limits>
#include <vector>

#include "tools/xvcr/text/XVParecido.h"

namespace {

template <class T>
std::string LeNumero(std::string_view sTexto, T* pValor) {
    T valor{};
    const char* pszFim = sTexto.data() + sTexto.size();
    const auto [pszLido, erro] = std::from_chars(sTexto.data(), pszFim, valor);
    if (erro == std::errc::result_out_of_range && pszLido == pszFim)
        return "número acima do limite de " + std::to_string(std::numeric_limits<T>::max());
    if (erro != std::errc() || pszLido != pszFim) return "esperado um número inteiro sem sinal";
    *pValor = valor;
    return {};
}

}  // namespace

namespace XVLeituraValor {

std::string Le(std::string_view sTexto, XVUInt64* puiValor) {
    return LeNumero(sTexto, puiValor);
}
std::string Le(std::string_view sTexto, XVUInt* pulValor) {
    return LeNumero(sTexto, pulValor);
}
std::string Le(std::string_view sTexto, XVUShort* pusValor) {
    return LeNumero(sTexto, pusValor);
}
std::string Le(std::string_view sTexto, XVByte* pucValor) {
    return LeNumero(sTexto, pucValor);
}

std::string Le(std::string_view sTexto, REG_XVDMC* pDmc) {
    REG_XVDMC regDmc;
    if (!REG_XVDMC::DeString(sTexto, &regDmc) || !regDmc.EhValido())
        return "esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)";
    *pDmc = regDmc;
    return {};
}

std::string Le(std::string_view sTexto, REG_XVDMAHMSUTC* pDataHora) {
    REG_XVDMAHMSUTC regDataHora;
    if (!sTexto.empty() && !REG_XVDMAHMSUTC::DeISO8601(sTexto, &regDataHora) &&
        (!LeNumero(sTexto, &regDataHora.uiValor).empty() || !regDataHora.EhValida()))
        return "esperada uma data-hora ISO 8601 em UTC (2026-11-21T13:05:09Z) ou o valor empacotado";
    *pDataHora = regDataHora;
    return {};
}

std::string Le(std::string_view sTexto, EEnumeracao eEnumeracao, XVUInt* pulValor) {
    if (XVEnumeracoesTexto::Busca(eEnumeracao, sTexto, pulValor)) return {};
    std::vector<std::string> listaNomes;
    for (const SNomeEnumeracao& rNome : XVEnumeracoesTexto::GetNomes(eEnumeracao))
        listaNomes.emplace_back(rNome.GetCurto());
    return "valor desconhecido" + XVQuisDizer(sTexto, listaNomes) +
           "; os aceitos são: " + XVEnumeracoesTexto::GetLista(eEnumeracao);
}

}  // namespace XVLeituraValor
