// The columns that searches keep of the records of days: that they say what the records say, whoever wrote
// meanwhile, that they are there without the file, and what they may not answer.
#include "middleware/XVDataBase_CR_Middleware.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"

namespace {

using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V2;

TReg Registro(XVUInt n) {
    TReg reg{};
    reg.regDataHoraInclusao = {XVDataHora(k_uiHoje, 1) + n};
    reg.regDataHoraAlteracaoStatus = {XVDataHora(k_uiHoje, 9) + 2 * n};
    reg.eTipoIntegracao = n % 251;
    reg.eTipoTransacao = 1 + n % 5;
    return reg;
}

std::string Linha(XVUInt eTipo, XVUInt eTransacao, REG_XVDMAHMSUTC regInclusao,
                  REG_XVDMAHMSUTC regAlteracao) {
    return std::to_string(eTipo) + "/" + std::to_string(eTransacao) + "/" +
           std::to_string(regInclusao.uiValor) + "/" + std::to_string(regAlteracao.uiValor) + "\n";
}

class CXVColunasTeste : public CXVCenarioSuite {
  protected:
    static constexpr XVUInt64 k_uiDia = 20240315;  // the first of four
    static constexpr XVUInt k_ulPorDia = 6000;     // 528,000 bytes of records, 108,000 of columns

    void Inicia(XVUInt ulOrcamento) {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "MemoriaMembros", ulOrcamento);
        ASSERT_EQ(m_base.Inicializa(&m_Dono), S_OK);
        for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 4; ++uiDia) {
            std::vector<TReg> lista;
            for (XVUInt n = 0; n < k_ulPorDia; ++n) lista.push_back(Registro(n));
            XVUInt uiPosicao = 0;
            ASSERT_EQ(m_base.m_Integracao.GravaColecao(uiDia, uiPosicao, lista), S_OK);
        }
        ASSERT_EQ(m_base.Finaliza(), S_OK);
        ASSERT_EQ(m_base.Inicializa(&m_Dono), S_OK);
    }
    std::string Colunas(XVUInt64 uiDia) {
        std::string s;
        const auto ve = [&](const TXVColunas<TReg>& r) {
            for (std::size_t i = 0; i < r.size();) {
                const auto parte = r.GetParte(i);
                i += parte.uiQuantidade;
                for (std::size_t k = 0; k < parte.uiQuantidade; ++k)
                    s += Linha(parte.pucTipos[k], parte.pucTransacoes[k], parte.pInclusoes[k],
                               parte.pAlteracoesStatus[k]);
            }
        };
        EXPECT_EQ(m_base.m_Integracao.VeColunas(uiDia, ve), S_OK);
        return s;
    }
    // What the file says.
    std::string Registros(XVUInt64 uiDia) {
        std::vector<TReg> lista;
        XVUInt64 uiQtd = 0;
        EXPECT_EQ(m_base.m_Integracao.GetQtdRegistros(uiDia, &uiQtd), S_OK);
        EXPECT_EQ(m_base.m_Integracao.LeColecao(uiDia, 1, uiQtd, lista), S_OK);
        std::string s;
        for (const TReg& reg : lista)
            s += Linha(reg.eTipoIntegracao, reg.eTipoTransacao, reg.regDataHoraInclusao,
                       reg.regDataHoraAlteracaoStatus);
        return s;
    }

    CXVSistemaArquivosFalhas m_falhas{m_Arquivos};
    CXVGuardaSistemaArquivos m_guarda{m_falhas};
    CXVDataBase_CR_Middleware m_base;
};

TEST_F(CXVColunasTeste, DizemOQueOsRegistrosDizemSemAbrirOArquivo) {
    Inicia(2);
    for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 4; ++uiDia) {
        const std::string sRegistros = Registros(uiDia);
        EXPECT_EQ(Colunas(uiDia), sRegistros);
    }
    EXPECT_FALSE(m_base.m_Integracao.TemArquivoAberto(k_uiDia)) << "there is no room for all";
    const XVUInt64 uiOperacoes = m_falhas.GetQuantidadeTotal();
    std::vector<std::string> listaAntes;
    for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 4; ++uiDia) listaAntes.push_back(Colunas(uiDia));
    EXPECT_EQ(m_falhas.GetQuantidadeTotal(), uiOperacoes);

    XVUInt uiPosicao = 1500;
    EXPECT_EQ(m_base.m_Integracao.Grava(k_uiDia, uiPosicao, Registro(7)), S_OK);
    uiPosicao = 0;
    EXPECT_EQ(m_base.m_Integracao.GravaColecao(k_uiDia, uiPosicao, std::vector<TReg>(1500, Registro(8))),
              S_OK);
    EXPECT_NE(Colunas(k_uiDia), listaAntes[0]);
    EXPECT_EQ(Colunas(k_uiDia), Registros(k_uiDia)) << "of a day that was closed";

    CXVOperacao operacao(&m_base);
    uiPosicao = 0;
    EXPECT_EQ(m_base.m_Integracao.Prepara(operacao, k_uiDia + 1, uiPosicao, Registro(9)), S_OK);
    EXPECT_EQ(Colunas(k_uiDia + 1), listaAntes[1]) << "nothing is on the disk yet";
    const CXVCapturaTrace captura;
    m_falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .eCausa = ECausaArquivo::eFimDeArquivo});
    EXPECT_EQ(operacao.Executa(), eEndOfFile);
    m_falhas.Limpa();
    EXPECT_EQ(Colunas(k_uiDia + 1), listaAntes[1]) << "and nothing came there";
    EXPECT_EQ(Registros(k_uiDia + 1), listaAntes[1]);

    uiPosicao = 0;
    EXPECT_EQ(Colunas(k_uiDia + 2), listaAntes[2]);
    m_falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = ECausaArquivo::eFimDeArquivo});
    EXPECT_EQ(m_base.m_Integracao.Grava(k_uiDia + 2, uiPosicao, Registro(10)), eEndOfFile);
    m_falhas.Limpa();
    EXPECT_FALSE(m_base.m_Integracao.TemArquivoAberto(k_uiDia + 2));
    const std::string sDia = "CRINTEGMID20240317.dat";
    m_Arquivos.CriaArquivo(PastaDados(sDia), XVArquivoDoTeste({sDia}, ""));
    EXPECT_EQ(m_base.m_Integracao.Grava(k_uiDia + 2, uiPosicao, Registro(11)), S_OK);
    EXPECT_EQ(Colunas(k_uiDia + 2), Registros(k_uiDia + 2)) << "of a file that was given up and found anew";
    ASSERT_EQ(m_base.Finaliza(), S_OK);
}

TEST_F(CXVColunasTeste, FicamQuandoSoFaltamHandles) {
    Inicia(100);
    for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 3; ++uiDia) Colunas(uiDia);
    const std::size_t uiAbertos = m_Arquivos.GetQuantidadeAberta();
    m_falhas.SetFiltro([this, uiAbertos](const std::string& s) {
        return s.ends_with("20240318.dat") && m_Arquivos.GetQuantidadeAberta() >= uiAbertos;
    });
    m_falhas.Programa({.eOperacao = EOperacaoArquivo::eAbre,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eMuitosArquivosAbertos});
    EXPECT_NE(Registros(k_uiDia + 3), "");
    EXPECT_FALSE(m_base.m_Integracao.TemArquivoAberto(k_uiDia));
    m_falhas.SetFiltro({});
    m_falhas.Limpa();
    const XVUInt64 uiOperacoes = m_falhas.GetQuantidadeTotal();
    for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 3; ++uiDia) Colunas(uiDia);
    EXPECT_EQ(m_falhas.GetQuantidadeTotal(), uiOperacoes) << "columns have none to give";
    ASSERT_EQ(m_base.Finaliza(), S_OK);
}

TEST_F(CXVColunasTeste, ContamNoOrcamentoESaemComOsDias) {
    Inicia(0);
    for (int i = 0; i < 2; ++i)
        for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 4; ++uiDia) {
            const XVUInt64 uiOperacoes = m_falhas.GetQuantidadeTotal();
            const std::string sColunas = Colunas(uiDia);
            EXPECT_GT(m_falhas.GetQuantidadeTotal(), uiOperacoes) << "nothing is kept of a closed day";
            EXPECT_EQ(sColunas, Registros(uiDia));
        }
    ASSERT_EQ(m_base.Finaliza(), S_OK);
}

TEST_F(CXVColunasTeste, FiosBuscamAoLadoDeGravacoesEDeDiasQueFecham) {
    Inicia(1);
    std::atomic<XVUInt> ulErros = 0;
    XVEmThreads(3, [&](unsigned uiFio) {
        for (XVUInt i = 0; i < 40; ++i) {
            const XVUInt64 uiDia = k_uiDia + (i * (uiFio + 1)) % 4;
            XVUInt uiPosicao = 0;
            if (uiFio == 0 && m_base.m_Integracao.Grava(uiDia, uiPosicao, Registro(i)) != S_OK) ++ulErros;
            std::size_t uiVistas = 0;
            const HRESULT hr =
                m_base.m_Integracao.VeColunas(uiDia, [&](const TXVColunas<TReg>& r) { uiVistas = r.size(); });
            // S_FALSE: the budget took them before they were seen.
            if (FAILED(hr) || (hr == S_OK && uiVistas < std::max(k_ulPorDia, uiPosicao))) ++ulErros;
        }
    });
    EXPECT_EQ(ulErros, 0U);
    for (XVUInt64 uiDia = k_uiDia; uiDia < k_uiDia + 4; ++uiDia) EXPECT_EQ(Colunas(uiDia), Registros(uiDia));
    ASSERT_EQ(m_base.Finaliza(), S_OK);
}

// Values of later programs, in a day of which one record is not asked for, and an index that names more
// records than the day has: before the columns are made and after.
TEST_F(CXVCenarioLoja, ColunasNaoRespondemPeloQueNaoSabem) {
    TLoja pLoja = Abre();
    ASSERT_TRUE(XVPovoaLoja(*pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
    const TListaDmc doDia = XVBusca(*pLoja, {.incluidaDe = {XVDataHora(XVDma(2024, 3, 15), 0)}});
    ASSERT_EQ(doDia.size(), 3U);
    pLoja.reset();
    const std::string sDia15 = "CRINTEGMID20240315.dat";
    std::string sBytes = Conteudo(sDia15);
    sBytes[240 + 2 * 88 + 41] = 1;  // the third type gets 256 more
    m_Arquivos.CriaArquivo(PastaDados(sDia15), sBytes);
    const std::string sDia14 = "CRINTEGMID20240314.dat";
    m_Arquivos.CriaArquivo(PastaDados(sDia14), XVArquivoDoTeste({sDia14}, ""));
    pLoja = Abre();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(XVBusca(*pLoja, {.tipos = {eXVSMiddleware_BuscaPedidos + 256}, .sistemas = {Mercos}}),
                  TListaDmc{doDia[2]});
        const SBuscaFeita feita = XVBuscaComCodigo(*pLoja, {.tipos = {eXVSMiddleware_BuscaPedidos}});
        EXPECT_EQ(feita.hr, E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
        EXPECT_EQ(feita.lista, TListaDmc());
    }
}

}  // namespace
