// Groups: which names are members, who is open, and what the first write creates.
#include "core/xvdatabase/XVGroupFileDynamic.h"
#include "core/xvdatabase/XVGroupTextFileDynamic.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

constexpr const char* k_pszPadrao = "GRP????.dat";

template <class TGrupo>
struct TXVBancoGrupo {
    explicit TXVBancoGrupo(const std::string& sPadrao = k_pszPadrao)
        : xvDB(XV_DF), xvGrupo(sPadrao, &xvDB, 2) {}
    TGrupo* operator->() { return &xvGrupo; }

    CXVDataBase xvDB;
    TGrupo xvGrupo;
};
using CXVGrupo = TXVBancoGrupo<CXVGroupFileDynamic<REG_TESTE>>;
using CXVGrupoTexto = TXVBancoGrupo<CXVGroupTextFileDynamic>;

class Grupo : public CXVCenarioBanco {
  protected:
    // Two members stay open.
    Grupo() { m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "MemoriaMembros", 0); }
    static std::string Nome(int iChave) { return "GRP000" + std::to_string(iChave) + ".dat"; }
    void CriaMembros(int iQuantidade) {
        for (int i = 1; i <= iQuantidade; ++i) {
            const REG_TESTE reg{static_cast<XVUInt64>(i), 0, 0};
            Cria(Nome(i), ArquivoComCabecalho(Nome(i), Bytes({reg})));
        }
    }
    // Members whose file is open at this moment, by asking for a share that an open one denies.
    std::string Abertos() {
        std::string s;
        for (int i = 1; i <= 9; ++i) {
            std::unique_ptr<IXVArquivo> pArquivo;
            const SAberturaArquivo abertura{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaTudo,
                                            ECriacaoArquivo::eSomenteExistente};
            const CXVErroArquivo erro = m_Arquivos.Abre(PastaDados(Nome(i)), abertura, pArquivo);
            if (erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento) s += std::to_string(i);
        }
        return s;
    }
};

TEST(NomeDeGrupo, NomeParaChaveEDeVolta) {
    using namespace XVNomeArquivo;
    const std::string_view sPadrao = "CRINTEGMID????????.dat";
    EXPECT_EQ(NomeParaChave("CRINTEGMID00000007.dat", sPadrao), 7U);
    EXPECT_EQ(NomeParaChave("crintegmid20240115.DAT", sPadrao), 20240115U);
    for (const char* pszNome :
         {"CRINTEGMIDJSON20240115.dat", "CRINTEGMID2024011.dat", "CRINTEGMID202401155.dat",
          "CRINTEGMID2024011a.dat", "CRINTEGMID+2024011.dat", "CRINTEGMID-2024011.dat",
          "CRINTEGMID 2024011.dat", "CRINTEGMID.2024011.dat", "CRINTEGMID20240115.datx",
          "XRINTEGMID20240115.dat", "CRINTEGMID????????.dat", ""})
        EXPECT_EQ(NomeParaChave(pszNome, sPadrao), std::nullopt) << pszNome;
    EXPECT_EQ(NomeParaChave("A18446744073709551616.d", "A????????????????????.d"), std::nullopt)
        << "over 64 bits";
    EXPECT_TRUE(EhArquivoControle("xvdatabase_FILE_ctrl.DAT"));
    EXPECT_EQ(ChaveParaNome(7, sPadrao), "CRINTEGMID00000007.dat");
    EXPECT_EQ(ChaveParaNome(123456789, sPadrao), "CRINTEGMID123456789.dat") << "the name grows";
    EXPECT_EQ(ChaveParaNome(7, "A???"), "007A") << "without a point the digits go first";
    EXPECT_EQ(TrocaExtensao("a.b/c", "tra"), "a.b/c.tra");
    EXPECT_EQ(TrocaExtensao("a.b\\c.dat", "tra"), "a.b\\c.tra");
}

TEST_F(Grupo, PrimeiraGravacaoCriaExatamenteUmArquivo) {
    CXVGrupoTexto grupo;
    const CXVCapturaTrace captura;  // the error log would be a file as well
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK);
    const auto antes = m_Arquivos.Retrata();
    XVUInt uiPosicao = 5;
    EXPECT_EQ(grupo->Grava(7, uiPosicao, "x"), E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    std::string sTexto;
    EXPECT_EQ(grupo->Le(7, 1, &sTexto), E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO)
        << "a refused write makes no member";
    uiPosicao = 0;
    EXPECT_EQ(grupo->Grava(7, uiPosicao, "x"), S_OK);
    EXPECT_EQ(m_Arquivos.Retrata().size(), antes.size() + 1);
    EXPECT_EQ(Le("GRP0007.dat").substr(240), Prefixado("x"));
    ASSERT_EQ(grupo.xvDB.Finaliza(), S_OK);
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK) << "finalising forgot everything";
    EXPECT_EQ(grupo->Le(7, 1, &sTexto), S_OK);
    EXPECT_EQ(sTexto, "x");
    ASSERT_EQ(grupo.xvDB.Finaliza(), S_OK);
}

// One member that cannot be closed, or deleted, is told; no other stays open for it.
TEST_F(Grupo, FalhaDeUmMembroEDitaEOsOutrosFecham) {
    CriaMembros(2);
    CXVGrupo grupo;
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U}) {
        XVUInt uiPosicao = 0;
        ASSERT_EQ(grupo->Grava(uiChave, uiPosicao, {7, 8, 9}), S_OK);
    }
    const CXVCapturaTrace captura;
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava});
    EXPECT_EQ(grupo.xvDB.Finaliza(), eHardIO);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK);
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with(Nome(2)); });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eApaga, .bPermanente = true});
    EXPECT_EQ(grupo->DeletaArquivo(), E_XVCR_DELECAO_ARQUIVO);
    EXPECT_TRUE(Existe(Nome(2)));
    m_Falhas.Limpa();
    ASSERT_EQ(grupo.xvDB.Finaliza(), S_OK);
}

// Three members in one operation, one more than stay open.
TEST_F(Grupo, MembroComGravacaoPreparadaFicaAberto) {
    CXVGrupo grupo;
    CriaMembros(3);
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK);
    CXVOperacao operacao(&grupo.xvDB);
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) {
        XVUInt uiPosicao = 0;
        ASSERT_EQ(grupo->Prepara(operacao, uiChave, uiPosicao, {uiChave, 8, 9}), S_OK);
    }
    EXPECT_EQ(Abertos(), "123");
    EXPECT_EQ(operacao.Executa(), S_OK);
    ASSERT_EQ(grupo.xvDB.Finaliza(), S_OK);
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(LeRegistros(Nome(i)).back(), (REG_TESTE{static_cast<XVUInt64>(i), 8, 9}));
}

TEST_F(Grupo, ControleDesabilitadoNaoListaMembros) {
    CriaMembros(1);
    CXVDataBase xvDB(XV_DF);
    xvDB.DesabilitaControleCriacaoArquivos();
    CXVGroupFileDynamic<REG_TESTE> xvGrupo(k_pszPadrao, &xvDB, 1);
    ASSERT_EQ(xvDB.Inicializa(&m_Dono), S_OK);
    REG_TESTE reg{};
    XVUInt uiPosicao = 0;
    EXPECT_EQ(xvGrupo.Grava(2, uiPosicao, {4, 5, 6}), S_OK);
    for (const XVUInt64 uiChave : {1U, 2U}) EXPECT_EQ(xvGrupo.Le(uiChave, 1, &reg), S_OK);
    ASSERT_EQ(xvDB.Finaliza(), S_OK);
    EXPECT_FALSE(Existe(k_pszControle));
}

// More members than the limit after a first write that failed: nobody remembers a member that is gone.
TEST_F(Grupo, PrimeiraGravacaoQueFalhaNaoDeixaMembro) {
    CriaMembros(3);
    CXVGrupo grupo;
    ASSERT_EQ(grupo.xvDB.Inicializa(&m_Dono), S_OK);
    const CXVCapturaTrace captura;
    REG_TESTE reg{};
    XVUInt uiPosicao = 0;
    for (const ECausaArquivo eCausa : {ECausaArquivo::eErroFisico, ECausaArquivo::eDiscoCheio}) {
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with(Nome(9)); });
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = eCausa});
        EXPECT_NE(grupo->Grava(9, uiPosicao, {1, 2, 3}), S_OK);
        EXPECT_TRUE(captura.Contem("pXVFileInterface->PreparaColecao(rOperacao, uiPosicao, aRegistros)"));
        m_Falhas.Limpa();
        EXPECT_EQ(grupo->Le(9, 1, &reg), E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO);
        for (const XVUInt64 uiChave : {1U, 2U, 3U}) EXPECT_EQ(grupo->Le(uiChave, 1, &reg), S_OK);
        EXPECT_EQ(Abertos(), "23");
    }
    ASSERT_EQ(grupo.xvDB.Finaliza(), S_OK);
}

}  // namespace
