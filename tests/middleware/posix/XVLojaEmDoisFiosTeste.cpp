// Two callers at the same time, the second in the middle of the first one's work: who opens and who closes a
// store, and who may share a flush with an operation that waits for the device.
#include <ostream>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/posix/XVEsperaDeFio.h"

namespace {

class CXVLojaEmDoisFios : public CXVCenarioLoja {
  protected:
    CXVLojaEmDoisFios() : m_Fios(m_Arquivos), m_GuardaFios(m_Fios) {}

    // The second opens the store while the first is at the place; whether the second has waited.
    void Abrem(const CXVEsperaDeFio::TEncontro& fnEncontro, const std::function<void()>& fnPrimeiro,
               bool bFalha = false) {
        unsigned uiEncontros = 0;
        CXVEsperaDeFio fios(fnEncontro, {[this] {
                                const CXVCapturaTrace captura;
                                m_pSegunda = Abre(12);
                            }});
        if (bFalha) fios.FalhaOPrimeiro();
        fios.Executa(fnPrimeiro, [&](bool bEspera) {
            ++uiEncontros;
            EXPECT_TRUE(bEspera);
        });
        EXPECT_EQ(uiEncontros, 1U);
        ASSERT_NE(m_pSegunda, nullptr);
    }

    static bool AbreIndice(const SOperacaoArquivo& r) {
        return r.eOperacao == EOperacaoArquivo::eAbre && r.sCaminho.ends_with("CRINDEXINTEG.dat");
    }
    static bool LeIndice(const SOperacaoArquivo& r) {
        return r.eOperacao == EOperacaoArquivo::eLe && r.sCaminho.ends_with("CRINDEXINTEG.dat");
    }

    TXVSistemaArquivosEnvolto<CXVVigiaFio> m_Fios;
    CXVGuardaSistemaArquivos m_GuardaFios;
    TLoja m_pSegunda;
};

TEST_F(CXVLojaEmDoisFios, QuemAbreNoMeioDeUmaAberturaEsperaEDivideALoja) {
    { Grava(*Abre(), CXVIntegracaoTeste(1)); }
    TLoja pPrimeira;
    ASSERT_NO_FATAL_FAILURE(Abrem(AbreIndice, [&] { pPrimeira = Abre(); }));
    ASSERT_NE(pPrimeira, nullptr);
    Grava(*pPrimeira, CXVIntegracaoTeste(2));
    EXPECT_EQ(XVBusca(*m_pSegunda).size(), 2U) << "one store";
    pPrimeira.reset();
    Grava(*m_pSegunda, CXVIntegracaoTeste(3));
    m_pSegunda.reset();
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    EXPECT_EQ(XVBusca(*Abre()).size(), 3U);
}

// The one that waits finds nothing of an opening that failed soon, neither an open journal nor an object
// counted.
TEST_F(CXVLojaEmDoisFios, QuemEsperaPorUmaAberturaQueFalhaAbrePorSi) {
    { Grava(*Abre(), CXVIntegracaoTeste(1)); }
    CBaseMiddleware primeira;
    ASSERT_NO_FATAL_FAILURE(Abrem(
        LeIndice, [&] { EXPECT_EQ(primeira.Inicializa(&m_Dono), eHardIO); }, true));
    Grava(*m_pSegunda, CXVIntegracaoTeste(2));
    EXPECT_EQ(XVBusca(*m_pSegunda).size(), 2U);
    EXPECT_EQ(m_pSegunda->Finaliza(), S_OK);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

TEST_F(CXVLojaEmDoisFios, QuemAbreNoMeioDeUmFechamentoEsperaEAbreDeNovo) {
    TLoja pPrimeira = Abre();
    Grava(*pPrimeira, CXVIntegracaoTeste(1));
    ASSERT_NO_FATAL_FAILURE(
        Abrem([](const SOperacaoArquivo& r) { return r.sCaminho.ends_with(k_pszNomeDiario); },
              [&] { EXPECT_EQ(pPrimeira->Finaliza(), S_OK); }));
    Grava(*m_pSegunda, CXVIntegracaoTeste(2));
    EXPECT_EQ(XVBusca(*m_pSegunda).size(), 2U);
    m_pSegunda.reset();
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

// Two operations end while the first of two integrations is being read: nobody sees one of them without the
// other.
TEST_F(CXVLojaEmDoisFios, LeituraDeVariasEhDeUmSoMomento) {
    const TLoja pLoja = Abre();
    std::vector<REG_XVDMC> aDmcs;
    for (const XVUInt64 uiChave : {1U, 2U})
        aDmcs.push_back(Grava(*pLoja, CXVIntegracaoTeste(uiChave).Textos("{}", "antes", "")));
    m_pSegunda = Abre(12);
    std::vector<SIntegracaoTransportada> lista;
    unsigned uiEncontros = 0;
    CXVEsperaDeFio(
        [](const SOperacaoArquivo& r) {
            return r.eOperacao == EOperacaoArquivo::eLe && r.sCaminho.ends_with("CRINTEGMIDJSON20240315.dat");
        },
        {[&] {
            const CXVCapturaTrace captura;
            for (const REG_XVDMC regDmc : aDmcs)
                EXPECT_EQ(m_pSegunda->GravaStatusIntegracao(
                              XVStatusPS(regDmc, 0, eXVSMiddleware_Erro, "depois", "")),
                          S_OK);
        }})
        .Executa([&] { EXPECT_EQ(pLoja->LeTransportadas(aDmcs, &lista), S_OK); },
                 [&](bool bEspera) {
                     ++uiEncontros;
                     EXPECT_FALSE(bEspera);
                 });
    EXPECT_EQ(uiEncontros, 1U);
    ASSERT_EQ(lista.size(), 2U);
    for (const SIntegracaoTransportada& r : lista) {
        EXPECT_EQ(r.dados.eStatusIntegracao, XVUInt{eXVSMiddleware_Erro});
        EXPECT_EQ(r.dados.sMensagemIntegracao, "depois");
    }
}

struct SParDeOperacoes {
    const char* pszPrimeira;
    const char* pszSegunda;  // both as XVOperacoesLoja names them
    bool bSozinha;           // the second must not be prepared before the first is over
};

void PrintTo(const SParDeOperacoes& rPar, std::ostream* pSaida) {
    *pSaida << rPar.pszPrimeira << ", " << rPar.pszSegunda;
}

class CXVFilaDaLoja : public CXVLojaEmDoisFios {
  protected:
    CXVFilaDaLoja() {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade", 1);
        const TLoja pLoja = Abre();
        EXPECT_TRUE(XVPovoaLoja(*pLoja, [this](unsigned uiDia) { SetDia(uiDia); }));
    }
    void Opera(const char* pszNome, CBaseMiddleware& rLoja) {
        const SOperacaoLoja& rOperacao = XVOperacaoLoja(pszNome);
        SetDia(rOperacao.uiDia);
        EXPECT_EQ(rOperacao.fnExecuta(rLoja), S_OK) << pszNome;
    }
    // What both leave on disk, brought together by fnOpera(first's store, second's).
    template <class TOpera>
    CXVSistemaArquivosMemoria::TRetrato Depois(TOpera fnOpera) {
        {
            const TLoja pPrimeira = Abre(11);
            const TLoja pSegunda = Abre(12);
            Opera("SemTextos", *pPrimeira);  // the first one after an opening flushes more than its entry
            fnOpera(*pPrimeira, *pSegunda);
        }
        return RetratoSemLogs();
    }
    void Confere(const SParDeOperacoes& rPar) {
        const auto antes = m_Arquivos.Retrata();
        const auto esperado = Depois([&](CBaseMiddleware& rPrimeira, CBaseMiddleware& rSegunda) {
            Opera(rPar.pszPrimeira, rPrimeira);
            Opera(rPar.pszSegunda, rSegunda);
        });
        m_Arquivos.Restaura(antes);
        bool bAnotada = rPar.bSozinha;
        const auto obtido = Depois([&](CBaseMiddleware& rPrimeira, CBaseMiddleware& rSegunda) {
            std::string sDiario;
            CXVEsperaDeFio(
                [&](const SOperacaoArquivo& r) {
                    sDiario = Conteudo(k_pszNomeDiario);
                    return r.eOperacao == EOperacaoArquivo::eSincroniza &&
                           r.sCaminho.ends_with(k_pszNomeDiario);
                },
                {[&] { Opera(rPar.pszSegunda, rSegunda); }})
                .Executa([&] { Opera(rPar.pszPrimeira, rPrimeira); },
                         [&](bool bEspera) {
                             EXPECT_TRUE(bEspera);
                             bAnotada = Conteudo(k_pszNomeDiario) != sDiario;
                         });
        });
        EXPECT_EQ(bAnotada, !rPar.bSozinha);
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(esperado, obtido), "");
    }
};

class CXVFilaDaLojaPares : public CXVFilaDaLoja, public testing::WithParamInterface<SParDeOperacoes> {};

// While the device flushes for the first. What may not share the next flush has entered nothing into the
// journal when it waits; and whoever waits, on disk it is as if they had come one after the other.
TEST_P(CXVFilaDaLojaPares, SoDivideADescargaQuemNaoDependeDeQuemEspera) {
    Confere(GetParam());
}

// A text file that no record of the day needs may be missing: both would make it.
TEST_F(CXVFilaDaLoja, QuemFariaOMesmoArquivoNaoDivideADescarga) {
    {
        const TLoja pLoja = Abre();
        for (XVUInt uiPonteiro = 1; uiPonteiro <= 2; ++uiPonteiro) {
            REG_XVDMC regDmc{XVChaveDmc(XVDma(2024, 3, 13), uiPonteiro)};
            CXVIntegracaoTeste integracao(uiPonteiro == 1 ? 3 : 0);
            ASSERT_EQ(pLoja->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
        }
    }
    ASSERT_TRUE(m_Arquivos.Apaga(PastaDados("CRINTEGMIDJSONRET20240313.dat")).Ok());
    Confere({"StatusPorChaveComRetorno", "AlteracaoDeOutroDia", true});
}

INSTANTIATE_TEST_SUITE_P(Pares, CXVFilaDaLojaPares,
                         testing::ValuesIn(std::vector<SParDeOperacoes>{
                             {"PosteriorDoDia", "PosteriorDoDia", false},
                             {"PosteriorDoDia", "PrimeiraDoDia", true},
                             {"PosteriorDoDia", "BancoTomaAPosicao", true},
                             {"BancoComChaveNova", "BancoComOutraChave", false},
                             {"BancoComChaveNova", "BancoComChaveNova", true},
                             {"BancoComChaveNova", "AlteracaoParaOBanco", true},
                             {"BancoTomaAPosicao", "BancoComChaveNova", true},
                             {"AlteracaoParaOBanco", "BancoComChaveNova", true},
                             {"PosteriorDoDia", "MapaAltera", true},
                             {"PosteriorDoDia", "MapaPendente", true},
                             {"PosteriorDoDia", "DataHoraAltera", true},
                             {"AlteracaoComRetorno", "AlteracaoSemRetorno", true},
                             {"AlteracaoComRetorno", "AlteracaoDeOutroDia", false},
                             {"AlteracaoComRetorno", "StatusPorDmcComRetorno", true},
                             {"StatusPorDmcComRetorno", "StatusPorChaveSemRetorno", true},
                             {"AlteracaoComRetorno", "StatusPorChaveComRetorno", false},
                             {"StatusPorDmcComRetorno", "AlteracaoSemRetorno", true},
                             {"StatusPorChaveSemRetorno", "AlteracaoSemRetorno", true},
                         }),
                         [](const auto& rInfo) {
                             return std::string(rInfo.param.pszPrimeira) + "_" + rInfo.param.pszSegunda;
                         });

}  // namespace
