// busca: integrations by what is known of them.
#include <algorithm>
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLeituraIntegracoes.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/text/XVParecido.h"

namespace {

struct SBusca {
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    SOpcoesLeitura opcoes;
    bool bLe = false;
    bool bConta = false;
    bool bDmcs = false;
    bool bCsv = false;
    bool bDecrescente = false;
    CLI::Option* pOrdem = nullptr;
    EOrdem eOrdem = EOrdem::eDmc;
    CLI::Option* pLimite = nullptr;
    XVUInt ulLimite = 0;
};

void AdicionaFiltro(CLI::App& rComando, CXVDadosCR_FiltroIntegracaoMiddleware& rFiltro) {
    XVOpcaoValor(rComando, "--chave-inicial", "NÚMERO", "Menor chave externa; com --sistema, a chave exata",
                 &rFiltro.uiChaveIntegracaoSistemaTerceiroInicial);
    XVOpcaoValor(rComando, "--chave-final", "NÚMERO",
                 "Maior chave externa; não vale com --chave-inicial e --sistema",
                 &rFiltro.uiChaveIntegracaoSistemaTerceiroFinal);
    XVOpcaoValor(rComando, "--inclusao-de", "DATA-HORA", "Incluída desta data e desta hora do dia em diante",
                 &rFiltro.regDataHoraInicialInclusao);
    XVOpcaoValor(rComando, "--inclusao-ate", "DATA-HORA", "Incluída até esta data e esta hora do dia",
                 &rFiltro.regDataHoraFinalInclusao);
    XVOpcaoValor(rComando, "--alteracao-de", "DATA-HORA",
                 "Status mudado desta data e desta hora do dia em diante",
                 &rFiltro.regDataHoraInicialAlteracaoStatus);
    XVOpcaoValor(rComando, "--alteracao-ate", "DATA-HORA", "Status mudado até esta data e esta hora do dia",
                 &rFiltro.regDataHoraFinalAlteracaoStatus);
    XVOpcaoLista(rComando, "--tipo", "Tipos de integração", EEnumeracao::eTipoIntegracao,
                 &rFiltro.listaTipoIntegracao);
    XVOpcaoLista(rComando, "--status", "Status", EEnumeracao::eStatusIntegracao,
                 &rFiltro.listaStatusIntegracao);
    XVOpcaoLista(rComando, "--sistema", "Sistemas externos", EEnumeracao::eSistemaIntegracao,
                 &rFiltro.listaSistemaIntegracao);
    XVOpcaoLista(rComando, "--transacao", "Tipos de transação", EEnumeracao::eTipoTransacao,
                 &rFiltro.listaTipoTransacao);
}

void MostraDmcs(CXVSaida& rSaida, const std::vector<REG_XVDMC>& lista) {
    std::string sLinha;
    for (const REG_XVDMC regDmc : lista) {
        sLinha.clear();
        if (rSaida.EhJson())
            XVRegistroJson::AnexaObjeto(sLinha, regDmc);
        else
            regDmc.AnexaA(sLinha);
        rSaida.Linha(sLinha);
    }
}

void MostraQuantidade(CXVSaida& rSaida, std::size_t uiQuantidade) {
    if (rSaida.EhJson())
        rSaida.LinhaJson(XVJson{{"ulQuantidade", uiQuantidade}});
    else
        rSaida.Linha(std::to_string(uiQuantidade));
}

void Executa(const SBusca& rBusca, CXVContexto& rContexto) {
    const bool bLe = rBusca.bLe || rBusca.opcoes.GetFlags() != 0;
    CXVSaida& rSaida = rContexto.saida;
    if (int{bLe} + int{rBusca.bConta} + int{rBusca.bDmcs} + int{rBusca.bCsv} > 1)
        XVErroDeUso("--conta, --dmcs, --csv e a leitura das integrações excluem-se");
    if (rBusca.bCsv && rSaida.EhJson()) XVErroDeUso("--csv não vale junto com --json");
    const bool bOrdem = rBusca.pOrdem->count() > 0;
    if (rBusca.bDecrescente && !bOrdem) XVErroDeUso("--decrescente só vale com --ordem");
    if (bOrdem && rBusca.bConta) XVErroDeUso("--ordem não vale junto com --conta");
    const bool bLimite = rBusca.pLimite->count() > 0;
    if (bLimite && rBusca.bConta) XVErroDeUso("--limite não vale junto com --conta");
    if (!rBusca.filtro.listaSistemaIntegracao.empty() &&
        rBusca.filtro.uiChaveIntegracaoSistemaTerceiroInicial != 0 &&
        rBusca.filtro.uiChaveIntegracaoSistemaTerceiroFinal != 0)
        XVErroDeUso("com --sistema, --chave-inicial é a chave exata; --chave-final não vale junto");
    std::vector<REG_XVDMC> lista;
    XVConfere(rContexto.Abre(EUsoDaBase::eLeitura).BuscaPonteiros(rBusca.filtro, &lista));
    const std::size_t uiAchadas = lista.size();
    if (bOrdem) lista = XVOrdenaIntegracoes(rContexto, lista, rBusca.eOrdem, rBusca.bDecrescente);
    if (bLimite && lista.size() > rBusca.ulLimite) lista.resize(rBusca.ulLimite);
    if (rBusca.bConta) {
        MostraQuantidade(rSaida, lista.size());
    } else if (bLe) {
        XVMostraIntegracoes(rContexto, lista, rBusca.opcoes);
    } else if (rBusca.bCsv) {
        XVCsvIntegracoes(rContexto, lista);
    } else if (rBusca.bDmcs || rSaida.EhJson()) {
        MostraDmcs(rSaida, lista);
    } else {
        const std::size_t uiMostradas = XVTabelaIntegracoes(rContexto, lista);
        const std::string sMostradas = uiMostradas == uiAchadas ? "" : std::to_string(uiMostradas) + " de ";
        rSaida.Linha(sMostradas + std::to_string(uiAchadas) +
                     (uiAchadas == 1 ? " integração" : " integrações"));
    }
}

std::string LeOrdem(std::string_view sTexto, EOrdem* peOrdem) {
    static const std::string s_aNomes[] = {"dmc", "inclusao", "alteracao", "chave"};  // as EOrdem
    const auto p = std::find(std::begin(s_aNomes), std::end(s_aNomes), sTexto);
    if (p == std::end(s_aNomes))
        return "esperado dmc, inclusao, alteracao ou chave" + XVQuisDizer(sTexto, s_aNomes);
    *peOrdem = static_cast<EOrdem>(p - std::begin(s_aNomes));
    return {};
}

}  // namespace

void XVAdicionaBusca(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pBusca = std::make_shared<SBusca>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "busca", "Busca integrações",
        "  xvcr busca --status Pendente,Erro --sistema Mercos\n"
        "  xvcr busca --inclusao-de 2026-11-01 --inclusao-ate 2026-11-30 --conta\n"
        "  xvcr busca --status Erro --ordem inclusao --decrescente --limite 10\n"
        "  xvcr busca --status Sucesso --csv > integracoes.csv\n"
        "  xvcr busca --chave-inicial 9001 --sistema OfficialBank --le --todos --json\n"
        "A data e a hora de um limite são comparadas em separado: --inclusao-de 2026-11-01T10:00\n"
        "deixa de fora tudo o que foi incluído antes das 10:00, em qualquer dia.");
    AdicionaFiltro(*pComando, pBusca->filtro);
    pComando->add_flag("--le", pBusca->bLe, "Lê e mostra cada integração achada, como o comando le");
    pComando->add_flag("--conta", pBusca->bConta, "Mostra só a quantidade");
    pComando->add_flag("--dmcs", pBusca->bDmcs, "Mostra só os DMCs, um por linha");
    pComando->add_flag("--csv", pBusca->bCsv, "Valores separados por ponto e vírgula, sem os textos");
    pBusca->pOrdem = XVOpcao(*pComando, "--ordem", "CAMPO", "Ordena por dmc, inclusao, alteracao ou chave",
                             [pBusca](std::string_view s) { return LeOrdem(s, &pBusca->eOrdem); });
    pComando->add_flag("--decrescente", pBusca->bDecrescente, "Com --ordem: do maior para o menor");
    pBusca->pLimite = XVOpcaoContagem(*pComando, "--limite", "N", "Mostra no máximo as N primeiras achadas",
                                      &pBusca->ulLimite);
    pBusca->opcoes.Adiciona(*pComando);
    XVDefineAcao(pComando, rContexto, [pBusca, &rContexto] { Executa(*pBusca, rContexto); });
}
