// mapa: which id an external system gave to a record.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLojaParaVer.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVTabela.h"

namespace {

void AdicionaOpcoes(CLI::App& rComando, CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados, bool bChave,
                    bool bOrigem) {
    XVOpcaoValor(rComando, "--registro", "DMC", "Registro da suíte", &rDados.regDmcRegistroTelvo);
    if (bChave)
        XVOpcaoValor(rComando, "--chave-registro", "NÚMERO", "Id do registro no sistema externo",
                     &rDados.uiChaveRegistroSistemaTerceiro);
    XVOpcaoValor(rComando, "--base-dados", "NÚMERO", "Base de dados do sistema externo",
                 &rDados.uiBaseDadosTerceiro);
    XVOpcoesTipoESistema(rComando, &rDados.eTipoIntegracao, &rDados.eSistemaIntegracao);
    if (bOrigem)
        XVOpcaoValor(rComando, "--origem", "DMC", "Integração que produziu a ligação",
                     &rDados.regDmcOrigemIntegracao);
}

void Mostra(CXVContexto& rContexto, const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados) {
    if (!rDados.regDmcRegistroTelvo.EhNulo())
        rContexto.saida.Registro(rDados);
    else if (!rContexto.saida.EhJson())
        rContexto.saida.Linha("nenhuma ligação encontrada");
}

// What now stands there, which is not what was given: an origin that was not given stays as it was, and a
// mapping that was there before a pending one stays.
void MostraGravada(CXVContexto& rContexto, XVCliente::CXVCliente& rCliente,
                   const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados) {
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro gravada;
    XVConfere(rCliente.BuscaChaveRegistro(rDados, &gravada));
    Mostra(rContexto, gravada);
}

void AdicionaGrava(CLI::App& rMapa, CXVContexto& rContexto) {
    auto pDados = std::make_shared<CXVDadosCR_ChaveRegistroTelvoParaTerceiro>();
    CLI::App* pComando =
        XVAdicionaComando(rMapa, "grava", "Grava o id externo de um registro (inclui ou altera)",
                          "  xvcr mapa grava --registro 20261121-7-2 --chave-registro 5501 --tipo "
                          "CadastroProduto --sistema Mercos");
    AdicionaOpcoes(*pComando, *pDados, true, true);
    pComando->get_option("--chave-registro")->required();  // without it the id that stands there would go
    XVDefineAcao(pComando, rContexto, [pDados, &rContexto] {
        XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eGravacao);
        XVConfere(rCliente.GravaChaveRegistro(*pDados));
        MostraGravada(rContexto, rCliente, *pDados);
    });
}

void AdicionaPendente(CLI::App& rMapa, CXVContexto& rContexto) {
    auto pDados = std::make_shared<CXVDadosCR_ChaveRegistroTelvoParaTerceiro>();
    CLI::App* pComando = XVAdicionaComando(
        rMapa, "pendente", "Inclui uma ligação sem id externo, se o registro não tem nenhuma",
        "  xvcr mapa pendente --registro 20261121-7-2 --tipo CadastroProduto --sistema Mercos\n"
        "O resultado é a ligação que ficou gravada, a que já havia ou a nova.");
    AdicionaOpcoes(*pComando, *pDados, false, true);
    XVDefineAcao(pComando, rContexto, [pDados, &rContexto] {
        XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eGravacao);
        XVConfere(rCliente.GravaChaveRegistroPendente(*pDados));
        MostraGravada(rContexto, rCliente, *pDados);
    });
}

void AdicionaBusca(CLI::App& rMapa, CXVContexto& rContexto) {
    auto pFiltro = std::make_shared<CXVDadosCR_ChaveRegistroTelvoParaTerceiro>();
    CLI::App* pComando = XVAdicionaComando(
        rMapa, "busca", "Busca uma ligação pelo registro ou pelo id externo",
        "  xvcr mapa busca --registro 20261121-7-2 --tipo CadastroProduto --sistema Mercos\n"
        "  xvcr mapa busca --chave-registro 5501 --tipo CadastroProduto --sistema Mercos --json\n"
        "Nada encontrado não é erro: com --json, nenhuma linha sai.");
    AdicionaOpcoes(*pComando, *pFiltro, true, false);
    XVDefineAcao(pComando, rContexto, [pFiltro, &rContexto] {
        if (pFiltro->regDmcRegistroTelvo.EhNulo() && pFiltro->uiChaveRegistroSistemaTerceiro == 0)
            XVErroDeUso("a busca pede --registro ou --chave-registro");
        CXVDadosCR_ChaveRegistroTelvoParaTerceiro achado;
        XVConfere(rContexto.Abre(EUsoDaBase::eLeitura).BuscaChaveRegistro(*pFiltro, &achado));
        Mostra(rContexto, achado);
    });
}

void Lista(CXVContexto& rContexto) {
    CXVLojaParaVer loja(rContexto);
    std::vector<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2> lista;
    XVConfere((*loja).ListaChavesRegistro(&lista));
    CXVTabela tabela({{"Registro"}, {"Tipo"}, {"Sistema"}, {"Base"}, {"Id externo"}, {"Origem"}});
    using XVRegistroJson::ParaPessoa;
    for (const auto& reg : lista) {
        CXVDadosCR_ChaveRegistroTelvoParaTerceiro dados;
        dados.CopiarDe({reg.uiChaveRegistroSistemaTerceiro, reg.regDmcRegistroTelvo, reg.uiBaseDadosTerceiro,
                        reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.regDmcOrigemIntegracao});
        if (rContexto.saida.EhJson())
            rContexto.saida.Registro(dados);
        else
            tabela.Inclui({ParaPessoa(dados.regDmcRegistroTelvo),
                           ParaPessoa(EEnumeracao::eTipoIntegracao, dados.eTipoIntegracao),
                           ParaPessoa(EEnumeracao::eSistemaIntegracao, dados.eSistemaIntegracao),
                           ParaPessoa(dados.uiBaseDadosTerceiro),
                           ParaPessoa(dados.uiChaveRegistroSistemaTerceiro),
                           ParaPessoa(dados.regDmcOrigemIntegracao)});
    }
    if (!rContexto.saida.EhJson()) rContexto.saida.Escreve(tabela.Monta());
}

void AdicionaLista(CLI::App& rMapa, CXVContexto& rContexto) {
    CLI::App* pComando = XVAdicionaComando(rMapa, "lista", "Lista todas as ligações",
                                           "  xvcr mapa lista\n"
                                           "  xvcr mapa lista --json");
    XVDefineAcao(pComando, rContexto, [&rContexto] { Lista(rContexto); });
}

}  // namespace

void XVAdicionaMapa(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pMapa = XVAdicionaComando(rRaiz, "mapa", "Ligações entre registros da suíte e ids externos",
                                        "  xvcr mapa grava --help");
    pMapa->require_subcommand(1);
    AdicionaGrava(*pMapa, rContexto);
    AdicionaPendente(*pMapa, rContexto);
    AdicionaBusca(*pMapa, rContexto);
    AdicionaLista(*pMapa, rContexto);
}
