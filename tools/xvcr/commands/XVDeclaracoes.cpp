#include "tools/xvcr/commands/XVDeclaracoes.h"

namespace {

constexpr struct {
    EEnumeracao eEnumeracao;
    std::string_view sNome;
} k_aTipos[] = {
    {EEnumeracao::eTipoIntegracao, "TIPO"},       {EEnumeracao::eStatusIntegracao, "STATUS"},
    {EEnumeracao::eSistemaIntegracao, "SISTEMA"}, {EEnumeracao::eTipoTransacao, "TRANSAÇÃO"},
    {EEnumeracao::eTipoData, "TIPO-DATA"},        {EEnumeracao::eTipoConsulta, "TIPO-CONSULTA"},
};

}  // namespace

namespace XVDeclaracoes {

std::string_view GetNomeDoTipo(EEnumeracao eEnumeracao) {
    for (const auto& rTipo : k_aTipos)
        if (rTipo.eEnumeracao == eEnumeracao) return rTipo.sNome;
    return "NOME|NÚMERO";
}

EEnumeracao GetEnumeracao(const CLI::Option& rOpcao) {
    const std::string sTipo = rOpcao.get_type_name();
    for (const auto& rTipo : k_aTipos)
        if (rTipo.sNome == std::string_view(sTipo).substr(0, sTipo.find('['))) return rTipo.eEnumeracao;
    return EEnumeracao::eNenhuma;
}

std::string GetNome(const CLI::Option& rOpcao) {
    return rOpcao.get_lnames().empty() ? rOpcao.get_name(true) : "--" + rOpcao.get_lnames().front();
}

std::string GetNomesDaAjuda(const CLI::Option& rOpcao) {
    return rOpcao.get_snames().empty() ? GetNome(rOpcao)
                                       : "-" + rOpcao.get_snames().front() + ", " + GetNome(rOpcao);
}

bool LevaValor(const CLI::Option& rOpcao) {
    return rOpcao.get_items_expected_max() > 0;
}

std::string GetLinha(const CLI::App& rComando) {
    const CLI::App* pAcima = rComando.get_parent();
    return pAcima == nullptr ? rComando.get_name() : GetLinha(*pAcima) + ' ' + rComando.get_name();
}

const CLI::Option* GetOpcao(const std::vector<const CLI::App*>& listaCaminho, std::string_view sArgumento) {
    if (!sArgumento.starts_with('-')) return nullptr;
    const std::string sNome(sArgumento.substr(0, sArgumento.find('=')));
    for (const CLI::App* pComando : listaCaminho)
        for (const CLI::Option* pOpcao : pComando->get_options())
            if (pOpcao->check_name(sNome)) return pOpcao;
    return nullptr;
}

std::vector<const CLI::App*> GetCaminho(const CLI::App& rRaiz,
                                        const std::vector<std::string>& listaArgumentos) {
    std::vector<const CLI::App*> listaCaminho{&rRaiz};
    for (std::size_t i = 0; i < listaArgumentos.size(); ++i) {
        const std::string& rArgumento = listaArgumentos[i];
        if (rArgumento == "--") break;
        const CLI::Option* pOpcao = GetOpcao(listaCaminho, rArgumento);
        if (pOpcao != nullptr && LevaValor(*pOpcao) && rArgumento.find('=') == std::string::npos) ++i;
        for (const CLI::App* pComando : listaCaminho.back()->get_subcommands({})) {
            if (pComando->get_name() != rArgumento) continue;
            listaCaminho.push_back(pComando);
            break;
        }
    }
    return listaCaminho;
}

std::vector<std::string> GetNomesDeComandos(const CLI::App& rComando) {
    std::vector<std::string> listaNomes;
    for (const CLI::App* pComando : rComando.get_subcommands({})) listaNomes.push_back(pComando->get_name());
    return listaNomes;
}

std::vector<std::string> GetNomesDeOpcoes(const std::vector<const CLI::App*>& listaCaminho) {
    std::vector<std::string> listaNomes;
    for (auto p = listaCaminho.rbegin(); p != listaCaminho.rend(); ++p)
        for (const CLI::Option* pOpcao : (*p)->get_options())
            if (!pOpcao->get_positional()) listaNomes.push_back(GetNome(*pOpcao));
    return listaNomes;
}

}  // namespace XVDeclaracoes
