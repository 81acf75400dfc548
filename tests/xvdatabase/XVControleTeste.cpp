// Creation control: what is listed, when, and what a missing listed file means.
#include <thread>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

using T = std::vector<std::string>;

class Controle : public CXVCenarioBanco {
  protected:
    void CriaBom(const std::string& sNome) { Cria(sNome, ArquivoComCabecalho(sNome, "")); }
    T Listados() { return Existe(k_pszControle) ? LeTextos(k_pszControle) : T{}; }
};

TEST_F(Controle, PrimeiraAberturaListaUmaVez) {
    CriaBom("A.dat");
    CriaBom("b.dat");
    for (const char* pszNome : {"b.dat", "A.dat", "b.dat", "A.dat", "ausente.dat"})
        EXPECT_EQ(Tenta<CXVFileTeste>(pszNome), S_OK) << pszNome;
    EXPECT_EQ(Le(k_pszControle), Prefixado("b.dat") + Prefixado("A.dat")) << "no header, in order of opening";
}

TEST_F(Controle, ArquivoCriadoPorGravacaoEListadoNaProximaAbertura) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, {1, 0, 0}), S_OK);
    EXPECT_EQ(Listados(), T{});
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    EXPECT_EQ(Listados(), T{"A.dat"});
}

TEST_F(Controle, CaixaNaoImportaEIsentosNuncaEntram) {
    Cria(k_pszControle, Prefixado("a.DAT"));
    CriaBom("A.dat");
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    for (const char* pszNome : {"A.cab", "A.Srk", "A.TRA"}) {
        Cria(pszNome, "");
        EXPECT_EQ(Tenta<CXVTextFile>(pszNome), S_OK) << pszNome;
    }
    EXPECT_EQ(Listados(), T{"a.DAT"});
}

TEST_F(Controle, ListadoEAusenteERecusadoPeloNome) {
    CriaBom("A.dat");
    ASSERT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    ASSERT_TRUE(m_Arquivos.Apaga(PastaDados("A.dat")).Ok());
    CXVCapturaTrace captura;
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
    ASSERT_FALSE(captura.GetFalhas().empty());
    EXPECT_NE(captura.GetFalhas().front().sMensagem.find("A.dat"), std::string::npos);
    EXPECT_EQ(captura.GetFalhas().front().sFuncao,
              "CXVDataBaseControleCriacaoArquivos::GerenciaControleCriacaoArquivos");
    EXPECT_TRUE(captura.Contem("m_ControleCriacaoArquivos.GerenciaControleCriacaoArquivos(eModoAbertura)"));
    EXPECT_FALSE(Existe("A.dat"));
    TXVBanco<CXVFileTeste> leitor("A.dat");
    leitor.xvDB.SetSomenteLeituraSemBloqueio(true);
    EXPECT_EQ(Abre(leitor), S_OK) << "only the mode that reads and writes checks";
    ASSERT_EQ(leitor.xvDB.Finaliza(), S_OK);
}

TEST_F(Controle, DesabilitadoTiraDaListaESoRegravaSePreciso) {
    CriaBom("A.dat");
    CriaBom("B.dat");
    Cria(k_pszControle, Prefixado("A.dat") + Prefixado("B.dat"));
    const auto abreDesabilitado = [&] {
        CXVDataBase xvDB(XV_DF);
        xvDB.DesabilitaControleCriacaoArquivos();
        CXVFileTeste xvFile("A.dat", &xvDB);
        EXPECT_EQ(xvDB.Inicializa(&m_Dono), S_OK);
        EXPECT_EQ(xvDB.Finaliza(), S_OK);
    };
    abreDesabilitado();
    EXPECT_EQ(Listados(), T{"B.dat"});
    EXPECT_FALSE(Existe("XVDATABASE_FILE_CTRL.tra"));
    m_Falhas.SetFiltro([](const std::string& s) { return s.find("FILE_CTRL") != std::string::npos; });
    m_Falhas.Limpa();
    abreDesabilitado();
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava) + Conta(EOperacaoArquivo::eSubstitui), 0U);
}

TEST_F(Controle, ApagarTiraDaListaAntesDeApagar) {
    CriaBom("A.dat");
    Cria(k_pszControle, Prefixado("B.dat") + Prefixado("A.dat"));
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eApaga, .bPermanente = true});
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
              E_XVCR_DELECAO_ARQUIVO);
    EXPECT_EQ(Listados(), T{"B.dat"}) << "never a listed file that is missing";
    m_Falhas.Limpa();
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    EXPECT_EQ(Listados(), (T{"B.dat", "A.dat"}));
}

TEST_F(Controle, CopiaTraDoControleImpedeARemocaoENaoSeApaga) {
    CriaBom("A.dat");
    Cria(k_pszControle, Prefixado("A.dat"));
    Cria("XVDATABASE_FILE_CTRL.tra", "outro");
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
              E_XVCR_ARQUIVO_TRA_ENCONTRADO);
    EXPECT_EQ(Le("XVDATABASE_FILE_CTRL.tra"), "outro");
    EXPECT_TRUE(Existe("A.dat"));
}

TEST_F(Controle, FalhaNaRemocaoNaoDeixaCopia) {
    CriaBom("A.dat");
    const std::string sLista = Prefixado("A.dat") + Prefixado("B.dat");
    Cria(k_pszControle, sLista);
    m_Falhas.SetFiltro([](const std::string& s) { return s.find("FILE_CTRL") != std::string::npos; });
    for (const EOperacaoArquivo eOperacao :
         {EOperacaoArquivo::eGrava, EOperacaoArquivo::eSincroniza, EOperacaoArquivo::eSubstitui}) {
        m_Falhas.Programa(
            {.eOperacao = eOperacao, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
        CXVCapturaTrace captura;
        EXPECT_NE(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
                  S_OK);
        EXPECT_TRUE(captura.Contem("xvFileNew.GravaColecao(uiPosicao, aRegistrosNew)") ||
                    captura.Contem("CXVDataBaseUtil::RenomeiaArquivoTRA(this, m_eModulo, "
                                   "XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS)"));
        EXPECT_FALSE(Existe("XVDATABASE_FILE_CTRL.tra"));
        EXPECT_EQ(Le(k_pszControle), sLista);
    }
    m_Falhas.Limpa();
}

TEST_F(Controle, MarcaDoDiretorioEEsperadaERecusadaComTexto) {
    CriaBom("A.dat");
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    ASSERT_TRUE(m_Arquivos.MarcaDiretorio(PastaDados(), "DFXXMARCA1", pMarca).Ok());
    CXVCapturaTrace captura;
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), eSharingViolation);
    EXPECT_TRUE(
        captura.Contem("marca.Marca(sDiretorioMarca, IXVArqMarcaEnum::ControleCriacaoArquivosInMemory, "
                       "GetUsuario(), CAmbienteXV::GetSiglaModulo(m_eModulo))"));
    ASSERT_FALSE(captura.GetFalhas().empty());
    EXPECT_NE(captura.GetFalhas().front().sMensagem.find("iRetorno = "), std::string::npos);
    m_Relogio.SetAoDormir([&](XVUInt64) { pMarca.reset(); });
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    m_Relogio.SetAoDormir({});
    EXPECT_EQ(Listados(), T{"A.dat"});
}

TEST_F(Controle, ControleDanificadoRecusaAAberturaEFicaComoEstava) {
    CriaBom("A.dat");
    Cria(k_pszControle, Prefixado("A.dat") + "x");
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
    EXPECT_EQ(Le(k_pszControle), Prefixado("A.dat") + "x");
}

TEST_F(Controle, DoisFiosAoMesmoTempoListamCadaNomeUmaVez) {
    constexpr int k_iFios = 4;
    for (int i = 0; i < k_iFios; ++i) CriaBom("F" + std::to_string(i) + ".dat");
    CriaBom("comum.dat");
    // A sleep on this clock takes no time: without giving way here, all attempts at the mark are over before
    // the one who holds it runs again on a busy machine.
    m_Relogio.SetAoDormir([](XVUInt64) {
        for (int i = 0; i < 1000; ++i) std::this_thread::yield();
    });
    XVEmThreads(k_iFios, [&](unsigned i) {
        EXPECT_EQ(Tenta<CXVFileTeste>("F" + std::to_string(i) + ".dat"), S_OK);
        EXPECT_EQ(Tenta<CXVFileTeste>("comum.dat"), S_OK);
    });
    T listados = Listados();
    std::sort(listados.begin(), listados.end());
    EXPECT_EQ(listados, (T{"F0.dat", "F1.dat", "F2.dat", "F3.dat", "comum.dat"}));
}

}  // namespace
