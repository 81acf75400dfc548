// datahora: when an external system was last searched, and when it may be asked again.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLojaParaVer.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVTabela.h"

namespace {

void AdicionaOpcoes(CLI::App& rComando, CXVDadosCR_DataHoraIntegracaoTerceiro& rDados) {
    XVOpcoesTipoESistema(rComando, &rDados.eTipoIntegracao, &rDados.eSistemaIntegracao);
    XVOpcaoEnumeracao(rComando, "--tipo-data", "Qual data", EEnumeracao::eTipoData, &rDados.eTipoData)
        ->required();
}

void AdicionaGrava(CLI::App& rDataHora, CXVContexto& rContexto) {
    auto pDados = std::make_shared<CXVDadosCR_DataHoraIntegracaoTerceiro>();
    CLI::App* pComando = XVAdicionaComando(
        rDataHora, "grava", "Grava uma data-hora (inclui ou altera)",
        "  xvcr datahora grava --tipo BuscaPedidos --sistema Mercos --tipo-data DataUltimaBusca \\\n"
        "       --data-hora 2026-11-21T13:05:09Z");
    AdicionaOpcoes(*pComando, *pDados);
    XVOpcaoValor(*pComando, "--data-hora", "DATA-HORA", "Data-hora em UTC", &pDados->regDataHora)->required();
    XVDefineAcao(pComando, rContexto, [pDados, &rContexto] {
        XVConfere(rContexto.Abre(EUsoDaBase::eGravacao).GravaDataHora(*pDados));
        rContexto.saida.Registro(*pDados);
    });
}

void AdicionaBusca(CLI::App& rDataHora, CXVContexto& rContexto) {
    auto pFiltro = std::make_shared<CXVDadosCR_DataHoraIntegracaoTerceiro>();
    CLI::App* pComando = XVAdicionaComando(
        rDataHora, "busca", "Busca uma data-hora",
        "  xvcr datahora busca --tipo BuscaPedidos --sistema Mercos --tipo-data DataUltimaBusca\n"
        "Nada encontrado não é erro: com --json, nenhuma linha sai.");
    AdicionaOpcoes(*pComando, *pFiltro);
    XVDefineAcao(pComando, rContexto, [pFiltro, &rContexto] {
        CXVDadosCR_DataHoraIntegracaoTerceiro achada;
        XVConfere(rContexto.Abre(EUsoDaBase::eLeitura).BuscaDataHora(*pFiltro, &achada));
        if (!achada.regDataHora.EhNula())
            rContexto.saida.Registro(achada);
        else if (!rContexto.saida.EhJson())
            rContexto.saida.Linha("nenhuma data-hora encontrada");
    });
}

void Lista(CXVContexto& rContexto) {
    CXVLojaParaVer loja(rContexto);
    std::vector<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1> lista;
    XVConfere((*loja).ListaDatasHoras(&lista));
    CXVTabela tabela({{"Data-hora"}, {"Qual data"}, {"Tipo"}, {"Sistema"}});
    using XVRegistroJson::ParaPessoa;
    for (const auto& reg : lista) {
        CXVDadosCR_DataHoraIntegracaoTerceiro dados;
        dados.CopiarDe({reg.regDataHora, reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.eTipoData, {}});
        if (rContexto.saida.EhJson())
            rContexto.saida.Registro(dados);
        else
            tabela.Inclui({ParaPessoa(dados.regDataHora), ParaPessoa(EEnumeracao::eTipoData, dados.eTipoData),
                           ParaPessoa(EEnumeracao::eTipoIntegracao, dados.eTipoIntegracao),
                           ParaPessoa(EEnumeracao::eSistemaIntegracao, dados.eSistemaIntegracao)});
    }
    if (!rContexto.saida.EhJson()) rContexto.saida.Escreve(tabela.Monta());
}

void AdicionaLista(CLI::App& rDataHora, CXVContexto& rContexto) {
    CLI::App* pComando = XVAdicionaComando(rDataHora, "lista", "Lista todas as datas-horas",
                                           "  xvcr datahora lista\n"
                                           "  xvcr datahora lista --json");
    XVDefineAcao(pComando, rContexto, [&rContexto] { Lista(rContexto); });
}

}  // namespace

void XVAdicionaDataHora(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pDataHora =
        XVAdicionaComando(rRaiz, "datahora", "Datas-horas de busca e de requisição por sistema externo",
                          "  xvcr datahora busca --help");
    pDataHora->require_subcommand(1);
    AdicionaGrava(*pDataHora, rContexto);
    AdicionaBusca(*pDataHora, rContexto);
    AdicionaLista(*pDataHora, rContexto);
}
