#include "tools/xvcr/commands/XVCompleta.h"

#include <algorithm>

#include "support/values/XVTextoAscii.h"
#include "tools/xvcr/commands/XVDeclaracoes.h"

namespace {

// The values of the option, of a list those of its last element.
std::vector<std::string> Valores(const CLI::Option& rOpcao, std::string_view sPalavra) {
    const EEnumeracao eEnumeracao = XVDeclaracoes::GetEnumeracao(rOpcao);
    const std::size_t uiVirgula = sPalavra.rfind(',');
    const std::string sAntes(uiVirgula == std::string_view::npos ? "" : sPalavra.substr(0, uiVirgula + 1));
    std::vector<std::string> lista;
    for (const SNomeEnumeracao& rNome : XVEnumeracoesTexto::GetNomes(eEnumeracao))
        lista.push_back(sAntes + std::string(rNome.GetCurto()));
    return lista;
}

std::vector<std::string> Candidatos(const CLI::App& rRaiz, const std::vector<std::string>& listaPalavras) {
    const std::vector<std::string> listaAntes(listaPalavras.begin(), std::prev(listaPalavras.end()));
    const std::vector<const CLI::App*> listaCaminho = XVDeclaracoes::GetCaminho(rRaiz, listaAntes);
    if (!listaAntes.empty()) {
        const CLI::Option* pOpcao = XVDeclaracoes::GetOpcao(listaCaminho, listaAntes.back());
        if (pOpcao != nullptr && XVDeclaracoes::LevaValor(*pOpcao))
            return Valores(*pOpcao, listaPalavras.back());
    }
    if (listaPalavras.back().starts_with('-')) return XVDeclaracoes::GetNomesDeOpcoes(listaCaminho);
    return XVDeclaracoes::GetNomesDeComandos(*listaCaminho.back());
}

}  // namespace

std::vector<std::string> XVCompletaPalavras(const CLI::App& rRaiz,
                                            const std::vector<std::string>& listaPalavras) {
    if (listaPalavras.empty()) return {};
    std::vector<std::string> lista = Candidatos(rRaiz, listaPalavras);
    const std::string sPalavra = XVEmMinusculas(listaPalavras.back());
    std::erase_if(lista, [&](const std::string& r) { return !XVEmMinusculas(r).starts_with(sPalavra); });
    return lista;
}
