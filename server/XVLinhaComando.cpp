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

bool EhSwitch(std::wstring_view sArgumento) {
    return !sArgumento.empty() && (sArgumento[0] == L'/' || sArgumento[0] == L'-');
}

bool LeOpcao(std::wstring_view sArgumento, SOpcoesInscricao& rOpcoes) {
    const std::size_t uiValor = sArgumento.find(L':') + 1;
    if (!EhSwitch(sArgumento) || uiValor == 0 || uiValor == sArgumento.size()) return false;
    const std::wstring_view sNome = sArgumento.substr(1, uiValor - 2);
    std::optional<std::wstring>* pOpcao = IgualSemCaixa(sNome, L"conta")    ? &rOpcoes.sConta
                                          : IgualSemCaixa(sNome, L"acesso") ? &rOpcoes.sAcesso
                                                                            : nullptr;
    if (pOpcao == nullptr || pOpcao->has_value()) return false;
    *pOpcao = sArgumento.substr(uiValor);
    return true;
}

}  // namespace

EComandoServidor XVLeLinhaComando(const std::vector<std::wstring_view>& listaArgumentos,
                                  SOpcoesInscricao* pOpcoes) {
    if (listaArgumentos.empty()) return EComandoServidor::eServe;
    const std::wstring_view sArgumento = listaArgumentos.front();
    if (!EhSwitch(sArgumento)) return EComandoServidor::eDesconhecido;
    EComandoServidor eComando = EComandoServidor::eDesconhecido;
    for (const SSwitch& rSwitch : k_aSwitches)
        if (IgualSemCaixa(sArgumento.substr(1), rSwitch.sNome)) eComando = rSwitch.eComando;
    SOpcoesInscricao opcoes;
    for (std::size_t i = 1; i < listaArgumentos.size(); ++i)
        if (eComando != EComandoServidor::eRegistra || !LeOpcao(listaArgumentos[i], opcoes))
            return EComandoServidor::eDesconhecido;
    if (pOpcoes != nullptr) *pOpcoes = opcoes;
    return eComando;
}
