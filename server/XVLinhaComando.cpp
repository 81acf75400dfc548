#include "server/XVLinhaComando.h"

#include <algorithm>

namespace {

struct SSwitch {
    std::wstring_view sNome;
    EComandoServidor eComando;
};

constexpr SSwitch k_aSwitches[] = {
    {L"embedding", EComandoServidor::eServeAtivado},
    {L"regserver", EComandoServidor::eRegistra},
    {L"unregserver", EComandoServidor::eDesregistra},
    {L"regserverperuser", EComandoServidor::eRegistraUsuario},
    {L"unregserverperuser", EComandoServidor::eDesregistraUsuario},
    {L"stop", EComandoServidor::ePara},
};

bool IgualSemCaixa(std::wstring_view sTexto, std::wstring_view sMinusculo) {
    return std::equal(sTexto.begin(), sTexto.end(), sMinusculo.begin(), sMinusculo.end(),
                      [](wchar_t a, wchar_t b) {
                          return (a >= L'A' && a <= L'Z' ? static_cast<wchar_t>(a - L'A' + L'a') : a) == b;
                      });
}

}  // namespace

EComandoServidor XVLeLinhaComando(const std::vector<std::wstring_view>& listaArgumentos) {
    if (listaArgumentos.empty()) return EComandoServidor::eServe;
    const std::wstring_view sArgumento = listaArgumentos.front();
    if (listaArgumentos.size() > 1 || sArgumento.empty() || (sArgumento[0] != L'/' && sArgumento[0] != L'-'))
        return EComandoServidor::eDesconhecido;
    for (const SSwitch& rSwitch : k_aSwitches)
        if (IgualSemCaixa(sArgumento.substr(1), rSwitch.sNome)) return rSwitch.eComando;
    return EComandoServidor::eDesconhecido;
}
