#include "tools/xvcr/XVFormatoAjuda.h"

#include <set>

#include "tools/xvcr/commands/XVDeclaracoes.h"
#include "tools/xvcr/text/XVTextoTela.h"

CXVFormatoAjuda::CXVFormatoAjuda() {
    label("Usage", "Uso");
    label("OPTIONS", "OPÇÕES");
    label("SUBCOMMAND", "COMANDO");
    label("SUBCOMMANDS", "COMANDO");
    label("Positionals", "Argumentos");
    column_width(40);
}

std::string CXVFormatoAjuda::make_option(const CLI::Option* pOpcao, bool bPosicional) const {
    std::string sLinha = "  " + XVDeclaracoes::GetNomesDaAjuda(*pOpcao);
    if (XVDeclaracoes::LevaValor(*pOpcao)) sLinha += ' ' + pOpcao->get_type_name();
    // An option is "uma opção", a positional "um argumento".
    if (pOpcao->get_required()) sLinha += bPosicional ? " (obrigatório)" : " (obrigatória)";
    const std::size_t uiLargura = XVTextoTela::GetLargura(sLinha);
    sLinha.append(uiLargura < get_column_width() ? get_column_width() - uiLargura : 1, ' ');
    sLinha += pOpcao->get_description();
    for (const CLI::Option* pOutra : pOpcao->get_excludes())
        sLinha += "; não com " + XVDeclaracoes::GetNome(*pOutra);
    return sLinha + '\n';
}

std::string CXVFormatoAjuda::make_footer(const CLI::App* pComando) const {
    constexpr std::size_t k_uiLargura = 100;
    constexpr std::size_t k_uiRecuo = 17;
    std::string sValores;
    std::set<EEnumeracao> mostradas{EEnumeracao::eNenhuma};
    for (const CLI::Option* pOpcao : pComando->get_options()) {
        const EEnumeracao eEnumeracao = XVDeclaracoes::GetEnumeracao(*pOpcao);
        if (!mostradas.insert(eEnumeracao).second) continue;
        std::string sNome = "  " + std::string(XVDeclaracoes::GetNomeDoTipo(eEnumeracao));
        sNome.append(k_uiRecuo - XVTextoTela::GetLargura(sNome), ' ');
        const std::string sLista = XVEnumeracoesTexto::GetLista(eEnumeracao);
        for (const std::string& rLinha : XVTextoTela::Quebra(sLista, k_uiLargura - k_uiRecuo)) {
            sValores += sNome + rLinha + '\n';
            sNome.assign(k_uiRecuo, ' ');
        }
    }
    if (!sValores.empty()) sValores = "Valores, pelo nome ou pelo número:\n" + sValores + '\n';
    return sValores + CLI::Formatter::make_footer(pComando);
}
