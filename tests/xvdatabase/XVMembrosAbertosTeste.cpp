// Members of groups: which of them stay open, what is read beside what, and texts read from the open file.
#include <thread>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVGroupFileDynamic.h"
#include "core/xvdatabase/XVGroupTextFileDynamic.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class MembrosAbertos : public CXVCenarioBanco {
  protected:
    static constexpr XVUInt k_ulRegistros = 25000;  // 400 KB

    MembrosAbertos() { SetOrcamento(0); }
    void SetOrcamento(XVUInt ulMB) {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "MemoriaMembros", ulMB);
    }
    static std::string Nome(char c, XVUInt64 uiChave) {
        return std::string(1, c) + "000" + std::to_string(uiChave) + ".dat";
    }
    void CriaRegistros(char c, XVUInt64 uiAte, XVUInt ulQuantidade) {
        for (XVUInt64 i = 1; i <= uiAte; ++i)
            Cria(Nome(c, i),
                 ArquivoComCabecalho(Nome(c, i), Bytes(std::vector<REG_TESTE>(ulQuantidade, {i, 2, 3}))));
    }
    void CriaTextos(XVUInt64 uiAte) {
        for (XVUInt64 i = 1; i <= uiAte; ++i)
            Cria(Nome('T', i), ArquivoComCabecalho(Nome('T', i), Prefixado("um") + Prefixado(Texto(i))));
    }
    static std::string Texto(XVUInt64 uiChave) { return std::string(40 + uiChave, 'x'); }
    std::string Abertos() {
        std::string s;
        for (const char c : {'A', 'B', 'T'})
            for (XVUInt64 i = 1; i <= 9; ++i) {
                std::unique_ptr<IXVArquivo> pArquivo;
                const CXVErroArquivo erro =
                    m_Arquivos.Abre(PastaDados(Nome(c, i)),
                                    {EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaTudo,
                                     ECriacaoArquivo::eSomenteExistente},
                                    pArquivo);
                if (erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento) s += c + std::to_string(i);
            }
        return s;
    }

    CXVDataBase m_xvDB{XV_DF};
    CXVGroupFileDynamic<REG_TESTE> m_a{"A????.dat", &m_xvDB, 2};
    CXVGroupFileDynamic<REG_TESTE> m_b{"B????.dat", &m_xvDB, 2};
    CXVGroupTextFileDynamic m_t{"T????.dat", &m_xvDB, 2};

    std::string Usa(char c, XVUInt64 uiChave) {
        REG_TESTE reg{};
        EXPECT_EQ((c == 'A' ? m_a : m_b).Le(uiChave, 1, &reg), S_OK);
        EXPECT_EQ(reg.uiChave, uiChave);
        return Abertos();
    }
    std::string LeTexto(XVUInt64 uiChave, XVUInt uiPosicao) {
        std::string sTexto;
        EXPECT_EQ(m_t.Le(uiChave, uiPosicao, &sTexto), S_OK);
        return sTexto;
    }
};

TEST_F(MembrosAbertos, SemOrcamentoFicamDoisESaiOUsadoHaMaisTempo) {
    CriaRegistros('A', 4, 1);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(Usa('A', 1), "A1");
    EXPECT_EQ(Usa('A', 2), "A1A2");
    EXPECT_EQ(Usa('A', 1), "A1A2");
    EXPECT_EQ(Usa('A', 3), "A1A3") << "in order of use, not of opening";
    EXPECT_EQ(Usa('A', 2), "A2A3");
    EXPECT_EQ(m_a.GetTamanho(), 2U * 256U) << "the open members";
    std::vector<REG_TESTE> lista;
    EXPECT_EQ(m_a.LeColecao(4, 1, 1, lista), S_OK);
    EXPECT_EQ(Abertos(), "A2A4");
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

TEST_F(MembrosAbertos, OrcamentoEDaBaseEValeTambemParaOQueCresce) {
    SetOrcamento(2);
    CriaRegistros('A', 3, k_ulRegistros);
    CriaRegistros('B', 3, k_ulRegistros);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) Usa('A', uiChave);
    Usa('B', 1);
    EXPECT_EQ(Usa('B', 2), "A1A2A3B1B2") << "2,000,000 bytes of records";
    Usa('A', 1);
    EXPECT_EQ(Usa('B', 3), "A1A3B1B2B3") << "the one of another group was used longest ago";
    Usa('A', 2);
    EXPECT_EQ(Usa('A', 3), "A1A2A3B2B3") << "the same of the group behind";
    XVUInt uiPosicao = 0;
    const std::vector<REG_TESTE> aMuitos(3 * k_ulRegistros, {9, 9, 9});
    EXPECT_EQ(m_b.GravaColecao(3, uiPosicao, aMuitos), S_OK);
    EXPECT_EQ(Abertos(), "A2A3B2B3") << "two of each group stay, whatever they take";
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

TEST_F(MembrosAbertos, SemHandlesFechamOsDispensaveisEAAberturaRepete) {
    SetOrcamento(100);
    CriaRegistros('A', 4, 1);
    CriaRegistros('B', 3, 1);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) Usa('B', uiChave);
    for (const XVUInt64 uiChave : {3U, 2U}) Usa('A', uiChave);
    EXPECT_EQ(Usa('A', 1), "A1A2A3B1B2B3");
    const CXVCapturaTrace captura;
    m_Falhas.SetFiltro([this](const std::string& s) {
        return s.ends_with("A0004.dat") && m_Arquivos.GetQuantidadeAberta() > 4;
    });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eAbre,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eMuitosArquivosAbertos});
    EXPECT_EQ(Usa('A', 4), "A1A4B2B3");
    EXPECT_EQ(m_Falhas.GetFalhasOcorridas(), 1U) << "at once";
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 0U);
    m_Falhas.SetFiltro({});
    m_Falhas.Limpa();
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

// After a member was closed and opened again, an operation that fails leaves its texts as they were.
TEST_F(MembrosAbertos, OperacaoDesfeitaDepoisDeFecharEReabrir) {
    CriaTextos(3);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(m_t.Grava(1, uiPosicao, "tres"), S_OK);
    for (const XVUInt64 uiChave : {2U, 3U, 1U}) EXPECT_EQ(LeTexto(uiChave, 2), Texto(uiChave));
    {
        const CXVCapturaTrace captura;
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("T0002.dat"); });
        CXVOperacao operacao(&m_xvDB);
        XVUInt uiUm = 0;
        XVUInt uiDois = 0;
        ASSERT_EQ(m_t.Prepara(operacao, 1, uiUm, "perdido"), S_OK);
        ASSERT_EQ(m_t.Prepara(operacao, 2, uiDois, "perdido"), S_OK);
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .eCausa = ECausaArquivo::eFimDeArquivo});
        EXPECT_EQ(operacao.Executa(), eEndOfFile);
        m_Falhas.Limpa();
    }
    for (const XVUInt64 uiChave : {3U, 2U, 1U}) EXPECT_EQ(LeTexto(uiChave, 2), Texto(uiChave));
    uiPosicao = 0;
    ASSERT_EQ(m_t.Grava(1, uiPosicao, "quatro"), S_OK);
    EXPECT_EQ(uiPosicao, 4U);
    EXPECT_EQ(LeTexto(1, 3), "tres");
    EXPECT_EQ(LeTexto(1, 4), "quatro");
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos(Nome('T', 1)), (std::vector<std::string>{"um", Texto(1), "tres", "quatro"}));
}

TEST_F(MembrosAbertos, DanoDoTextoDepoisDaCargaTemOMesmoCodigo) {
    CriaTextos(1);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(LeTexto(1, 1), "um");
    const CXVCapturaTrace captura;
    const std::string sBom = Le(Nome('T', 1));
    std::string sTexto = "x";
    XVUInt uiPosicao = 1;
    Cria(Nome('T', 1), ArquivoComCabecalho(Nome('T', 1), Prefixado("uns") + Prefixado(Texto(0))));
    EXPECT_EQ(m_t.Le(1, 1, &sTexto), E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
    EXPECT_EQ(sTexto, "");
    EXPECT_EQ(m_t.Grava(1, uiPosicao, "dois"), S_OK) << "of another length: it need not be read";
    uiPosicao = 1;
    EXPECT_EQ(m_t.Grava(1, uiPosicao, "xx"), E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
    Cria(Nome('T', 1), sBom.substr(0, 250));
    EXPECT_EQ(m_t.Le(1, 2, &sTexto), eEndOfFile);
    EXPECT_EQ(sTexto, "");
    Cria(Nome('T', 1), sBom);
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eLe});
    EXPECT_EQ(m_t.Le(1, 2, &sTexto), eHardIO);
    EXPECT_EQ(LeTexto(1, 2), Texto(1)) << "a read that failed is no damage";
    XVIgnora(m_xvDB.Finaliza());
}

TEST_F(MembrosAbertos, TextoTrocadoPorOutroDoMesmoTamanhoNaoSeLe) {
    CriaTextos(1);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(m_t.Grava(1, uiPosicao, "tres"), S_OK);
    const XVUInt64 uiLidas = m_Falhas.GetQuantidade(EOperacaoArquivo::eLe);
    ASSERT_EQ(m_t.Grava(1, uiPosicao, "seis"), S_OK);
    EXPECT_EQ(uiPosicao, 4U);
    EXPECT_EQ(m_Falhas.GetQuantidade(EOperacaoArquivo::eLe), uiLidas) << "this opening wrote the old one";
    for (const char* pszTexto : {"seis", "dois"}) ASSERT_EQ(m_t.Grava(1, uiPosicao, pszTexto), S_OK);
    EXPECT_EQ(uiPosicao, 5U) << "the same once more is not written";
    uiPosicao = 2;
    ASSERT_EQ(m_t.Grava(1, uiPosicao, Texto(1)), S_OK);
    EXPECT_EQ(uiPosicao, 2U) << "nor one that was found there";
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos(Nome('T', 1)), (std::vector<std::string>{"um", Texto(1), "tres", "seis", "dois"}));
}

TEST_F(MembrosAbertos, TextosMuitoLidosFicamNaMemoriaEContamNoOrcamento) {
    SetOrcamento(1);
    CriaRegistros('A', 2, k_ulRegistros);
    const std::string sLongo(60000, 'x');
    for (const XVUInt64 i : {1U, 2U, 3U, 4U})
        Cria(Nome('T', i), ArquivoComCabecalho(Nome('T', i), Prefixado(sLongo) + Prefixado({"a\0b", 3})));
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U, 3U, 4U})
        for (XVUInt i = 1; i <= 4; ++i) EXPECT_EQ(LeTexto(uiChave, 2 - i % 2), i % 2 == 1 ? sLongo : "a");
    const XVUInt64 uiLidas = m_Falhas.GetQuantidade(EOperacaoArquivo::eLe);
    EXPECT_EQ(LeTexto(4, 1), sLongo);
    EXPECT_EQ(LeTexto(4, 2), "a");
    EXPECT_EQ(m_Falhas.GetQuantidade(EOperacaoArquivo::eLe), uiLidas);
    XVUInt uiPosicao = 0;
    EXPECT_EQ(m_t.Grava(4, uiPosicao, "novo"), S_OK);
    EXPECT_EQ(LeTexto(4, 3), "novo") << "behind what is in memory";
    Usa('A', 1);
    EXPECT_EQ(Usa('A', 2), "A1A2T2T3T4") << "800,000 bytes of records and 240,000 of texts";
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

TEST_F(MembrosAbertos, LeiturasCorremAoLadoDeOutrasEDaCargaDeUmMembro) {
    CXVSistemaArquivosGancho arquivos(m_Falhas);
    const CXVGuardaSistemaArquivos guarda(arquivos);
    CriaTextos(4);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) EXPECT_EQ(LeTexto(uiChave, 1), "um");
    int iVezes = 0;
    {
        const CXVGanchoArquivos gancho([&] {
            std::thread([&] { EXPECT_EQ(LeTexto(3, 2), Texto(3)); }).join();
            ++iVezes;
        });
        EXPECT_EQ(LeTexto(3, 1), "um");
        EXPECT_GT(iVezes, 0) << "beside a reading of the same member";
        EXPECT_EQ(LeTexto(4, 1), "um");
        EXPECT_GT(iVezes, 5) << "beside the closing of one member and the loading of another";
    }
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

TEST_F(MembrosAbertos, FiosLeemEGravamEnquantoMembrosFechamEAbrem) {
    constexpr XVUInt k_ulVoltas = 200;
    CriaTextos(5);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    std::atomic<XVUInt> ulErros = 0;
    XVEmThreads(3, [&](unsigned uiFio) {
        for (XVUInt i = 0; i < k_ulVoltas; ++i) {
            const XVUInt64 uiChave = (i * (uiFio + 1)) % 5 + 1;
            std::string sTexto;
            XVUInt uiPosicao = 0;
            if (m_t.Le(uiChave, 2, &sTexto) != S_OK || sTexto != Texto(uiChave)) ++ulErros;
            if (uiFio == 0 && m_t.Grava(uiChave, uiPosicao, "novo") != S_OK) ++ulErros;
            if (uiPosicao != 0 && (m_t.Le(uiChave, uiPosicao, &sTexto) != S_OK || sTexto != "novo"))
                ++ulErros;
        }
    });
    EXPECT_EQ(ulErros, 0U);
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
}

// While the directory is held for writing the list is read once, and again after it changed.
TEST_F(MembrosAbertos, ControleELidoUmaVezEnquantoODiretorioEstaEmPoder) {
    CriaRegistros('A', 4, 1);
    CXVDiario diario;
    ASSERT_EQ(diario.Abre(&m_Dono, XV_DF, PastaDados()), S_OK);
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    const auto leituras = [&](XVUInt64 uiChave) {
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with(k_pszControle); });
        m_Falhas.Limpa();
        Usa('A', uiChave);
        return Conta(EOperacaoArquivo::eAbre);
    };
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) EXPECT_GT(leituras(uiChave), 0U) << "it is listed";
    leituras(1);
    EXPECT_EQ(leituras(2) + leituras(3) + leituras(1), 0U);
    m_Falhas.SetFiltro({});
    ASSERT_EQ(
        CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, Nome('A', 2), CXVDataBaseUtil::eRemoveDoControle),
        S_OK);
    EXPECT_EQ(Tenta<CXVFileTeste>(Nome('A', 2)), S_OK) << "absent and listed no more";
    EXPECT_GT(leituras(4), 0U);
    ASSERT_EQ(m_xvDB.Finaliza(), S_OK);
    ASSERT_EQ(diario.Fecha(&m_Dono), S_OK);
    EXPECT_EQ(LeTextos(k_pszControle), (std::vector<std::string>{Nome('A', 1), Nome('A', 3), Nome('A', 4)}));
}

}  // namespace
