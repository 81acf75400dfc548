// The container, and the operations on files by name.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};

// A file that tells when it is initialised and finalised.
class CXVFileNarrador final : public IXVFileBase {
  public:
    CXVFileNarrador(std::string sNome, CXVDataBase& rDB, std::string& rDiario)
        : m_sNome(std::move(sNome)), m_rDB(rDB), m_rDiario(rDiario) {
        m_rDB.AddFile(this);
    }
    ~CXVFileNarrador() override { m_rDB.RemoveFile(this); }
    const std::string& GetNomeArquivo() const override { return m_sNome; }
    EModulo GetModulo() const override { return XV_DF; }
    XVUInt64 GetTamanho() const override { return 0; }
    HRESULT DeletaArquivo() override { return S_OK; }
    void DesabilitaControleCriacaoArquivos() override { m_rDiario += "x" + m_sNome; }
    HRESULT hrInicializa = S_OK;
    HRESULT hrFinaliza = S_OK;

  private:
    HRESULT OnInicializa() override {
        m_rDiario += "+" + m_sNome;
        return hrInicializa;
    }
    HRESULT OnFinaliza() override {
        m_rDiario += "-" + m_sNome;
        return hrFinaliza;
    }
    std::string m_sNome;
    CXVDataBase& m_rDB;
    std::string& m_rDiario;
};

class Container : public CXVCenarioBanco {
  protected:
    std::string m_sDiario;
    CXVDataBase m_xvDB{XV_DF};
};
class Utilitarios : public CXVCenarioBanco {
  protected:
    std::string Auditoria() const { return Le("XVLogGeral_202403.log"); }
    void CriaBom(const std::string& sNome) { Cria(sNome, ArquivoComCabecalho(sNome, Bytes({k_reg}))); }
};

TEST_F(Container, ArquivosEntramESaemNaOrdemDosBytesDosNomes) {
    CXVFileNarrador a("a", m_xvDB, m_sDiario);
    { CXVFileNarrador efemero("0", m_xvDB, m_sDiario); }
    auto pPrimeiro = std::make_unique<CXVFileNarrador>("b", m_xvDB, m_sDiario);
    CXVFileNarrador segundo("b", m_xvDB, m_sDiario);
    pPrimeiro.reset();  // of two objects of a name the later one counts
    m_xvDB.DesabilitaControleCriacaoArquivos();
    CXVFileNarrador Z("Z", m_xvDB, m_sDiario);
    EXPECT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK) << "again: nothing";
    EXPECT_EQ(m_xvDB.Finaliza(), S_OK);
    EXPECT_EQ(m_xvDB.Finaliza(), S_OK);
    EXPECT_EQ(m_sDiario, "xZ+Z+a+b-Z-a-b");
}

TEST_F(Container, FalhaDeUmArquivoNaoDeixaNinguemAberto) {
    CXVFileNarrador a("a", m_xvDB, m_sDiario);
    CXVFileNarrador b("b", m_xvDB, m_sDiario);
    CXVFileNarrador c("c", m_xvDB, m_sDiario);
    b.hrInicializa = eHardIO;
    CXVCapturaTrace captura;
    EXPECT_EQ(m_xvDB.Inicializa(&m_Dono), eHardIO);
    EXPECT_EQ(m_sDiario, "+a+b-b-a");
    EXPECT_FALSE(m_xvDB.EstaInicializado());
    b.hrInicializa = S_OK;
    a.hrFinaliza = eDiskFull;
    b.hrFinaliza = eHardIO;
    m_sDiario.clear();
    ASSERT_EQ(m_xvDB.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(m_xvDB.Finaliza(), eDiskFull) << "the first code";
    EXPECT_EQ(m_sDiario, "+a+b+c-a-b-c");
    EXPECT_TRUE(captura.Contem("file.second->Inicializa(this)"));
    EXPECT_TRUE(captura.Contem("file.second->Finaliza()"));
}

TEST_F(Utilitarios, ApagarDeixaNaAuditoriaOTextoDoUsuario) {
    const auto apaga = [&](XVUShort usUsuario, EModulo eModulo) {
        const CXVDonoFixo dono("MATRIZ", usUsuario);
        EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&dono, eModulo, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
                  S_OK);
        EXPECT_FALSE(Existe("A.dat"));
        return Auditoria();
    };
    const std::pair<XVUShort, const char*> aCasos[] = {{65535, "durante a conversão da base de dados\n"},
                                                       {0, "sem informação de usuário logado\n"},
                                                       {7, "pelo usuário \""}};
    for (const auto& [usUsuario, pszQuem] : aCasos) {
        CriaBom("A.dat");
        const std::string sLinha =
            "\t" + std::to_string(usUsuario) + "\t99\t2\t21\t0\tArquivo \"A.dat\" removido " + pszQuem;
        EXPECT_NE(apaga(usUsuario, XV_DF).find(sLinha), std::string::npos) << sLinha;
    }
    const std::string s = Auditoria();
    EXPECT_EQ(apaga(7, XV_DF), s) << "an absent file is no error and leaves no entry";
    CriaBom("A.dat");
    EXPECT_EQ(apaga(7, k_eModuloSemAuditoria), s) << "the module without audit";
}

TEST_F(Utilitarios, RenomearTrocaOArquivoECarimbaAVersao) {
    CriaBom("A.dat");
    Cria("A.tra", ArquivoComCabecalho("A.dat", Bytes({k_reg, k_reg})));
    m_Arquivos.SetSomenteLeitura(PastaDados("A.tra"), true);
    EXPECT_NE(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "A.dat", 2), S_OK);
    EXPECT_TRUE(Existe("A.dat")) << "a read-only copy never counts as missing";
    m_Arquivos.SetSomenteLeitura(PastaDados("A.dat"), false);
    EXPECT_EQ(LeRegistros("A.dat").size(), 2U);

    Cria("A.tra", Bytes({k_reg}));  // without header
    EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "A.dat", 3), S_OK);
    EXPECT_FALSE(Existe("A.tra"));
    EXPECT_EQ(Campo<XVUShort>(Le("A.dat"), 104), 3);
    EXPECT_EQ(LeRegistros("A.dat"), std::vector{k_reg});
    Cria("B.tra", ArquivoComCabecalho("B.dat", ""));
    EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "B.dat", 3), S_OK);
    EXPECT_EQ(LeTextos(k_pszControle), (std::vector<std::string>{"A.dat", "B.dat"})) << "at once";
}

// The error log names the file and what the system said.
TEST_F(Utilitarios, OQueNaoSeMoveNemSeApagaDizPorQue) {
    for (const char* pszNome : {"A.dat", "B.dat"}) CriaBom(pszNome);
    Cria("A.cab", ArquivoComCabecalho("A.dat", ""));
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat") || s.ends_with("B.dat"); });
    const auto mensagens = [&](auto fnFaz, HRESULT hr) {
        const CXVCapturaTrace captura;
        m_Falhas.Programa({.bPermanente = true, .ulErroSistema = 13});
        EXPECT_EQ(fnFaz(), hr);
        m_Falhas.Limpa();
        std::string sTexto;
        for (const SFalhaCapturada& r : captura.GetFalhas())
            if (r.sFuncao.starts_with("CXVDataBaseUtil") && r.hr == 0)
                sTexto += r.sFuncao + ": " + r.sMensagem + '\n';
        return sTexto;
    };
    EXPECT_EQ(
        mensagens([&] { return CXVDataBaseUtil::RenomeiaArquivoCAB(&m_Dono, XV_DF, "A.dat"); },
                  E_XVCR_RENOMEACAO_ARQUIVO),
        "CXVDataBaseUtil::RenomeiaArquivoEXT: Erro ao renomear arquivo /telvo/MATRIZ/DF/A.cab DW: 13.\n");
    EXPECT_EQ(mensagens([&] { return CXVDataBaseUtil::DeletaSemControle(&m_Dono, XV_DF, "B.dat"); },
                        E_XVCR_DELECAO_ARQUIVO),
              "CXVDataBaseUtil::DeletaArquivo: Erro ao deletar arquivo /telvo/MATRIZ/DF/B.dat DW: 13.\n");
}

TEST_F(Utilitarios, UmGrupoSaoSoOsMembros) {
    for (const char* pszNome : {"g01.dat", "G02.dat", "G03.dat", "G003.dat", "G0x.dat"}) CriaBom(pszNome);
    Cria("G01.tra", ArquivoComCabecalho("G01.dat", ""));
    Cria("G0x.tra", "");
    EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRAGroupFile(&m_Dono, XV_DF, "G01.dat", 2),
              E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO);
    EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRAGroupFile(&m_Dono, XV_DF, "G??.dat", 2), S_OK);
    EXPECT_EQ(LeRegistros("G01.dat").size(), 0U);
    EXPECT_FALSE(Existe("G02.dat") || Existe("G03.dat")) << "without a copy it is the live file that goes";
    EXPECT_LT(Auditoria().find("G02.dat"), Auditoria().find("G03.dat")) << "in the order of the keys";
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "G??.dat", CXVDataBaseUtil::eRemoveDoControle),
              S_OK);
    EXPECT_FALSE(Existe("G01.dat"));
    EXPECT_FALSE(Existe(k_pszControle)) << "the last name took the list with it";
    EXPECT_TRUE(Existe("G003.dat") && Existe("G0x.dat") && Existe("G0x.tra"));
}

TEST_F(Utilitarios, RegistroUnicoPorNome) {
    const auto le = [&](REG_CR_MIDDLEWARE_VERSAO& reg) {
        return CXVDataBaseUtil::LeSingleReg(&m_Dono, XV_DF, &reg, "V.dat");
    };
    REG_CR_MIDDLEWARE_VERSAO reg{9, {}};
    const auto antes = m_Arquivos.Retrata();
    EXPECT_EQ(le(reg), S_OK);
    EXPECT_EQ(reg.usVersao, 0);
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    Cria("V.srk", std::string(999, 'x'));  // left by a death
    for (const XVUShort usVersao : {XVUShort{1}, XVUShort{2}, XVUShort{2}}) {
        reg.usVersao = usVersao;
        ASSERT_EQ(CXVDataBaseUtil::GravaSingleReg(&m_Dono, XV_DF, reg, "V.dat"), S_OK);
        reg = {};
        ASSERT_EQ(le(reg), S_OK);
        EXPECT_EQ(reg.usVersao, usVersao);
        EXPECT_EQ(LeTextos(k_pszControle), std::vector<std::string>{"V.dat"});
    }
    const std::string sBom = Le("V.dat");
    EXPECT_EQ(Campo<XVUInt64>(sBom, 80), 1U) << "one update: the third write changed nothing";
    EXPECT_EQ(Tenta<CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>>("V.dat"), S_OK)
        << "a sound file to everybody";

    // The header, which has a checksum, says what the record was; a program that leaves it as it is goes on.
    EXPECT_EQ(Campo<XVUShort>(sBom, 104), 2U);
    for (const auto& [cVersao, hr] :
         {std::pair('\3', HRESULT{S_OK}), std::pair('\1', E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS),
          std::pair('\0', E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS)}) {
        Cria("V.dat", std::string(sBom).replace(240, 1, 1, cVersao));
        EXPECT_EQ(le(reg), hr);
    }
    Cria("V.dat", sBom + "x");
    EXPECT_EQ(le(reg), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
    std::string sRuim = sBom;
    sRuim[140] ^= 1;
    Cria("V.dat", sRuim);
    EXPECT_EQ(le(reg), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(CXVDataBaseUtil::GravaSingleReg(&m_Dono, XV_DF, reg, "V.dat"),
              E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(Le("V.dat"), sRuim);
    ASSERT_TRUE(m_Arquivos.Apaga(PastaDados("V.dat")).Ok());
    EXPECT_EQ(le(reg), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS)
        << "listed and missing is not version 0";
}

// A file that was never made has nothing to be replaced, and one that vanished stays listed.
TEST_F(Utilitarios, RenomearOQueNaoHaNaoMudaNada) {
    for (const char* pszNome : {"A.dat", "G01.dat"}) CriaBom(pszNome);
    ASSERT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "A.dat", 2), S_OK);
    Cria("B.tra", ArquivoComCabecalho("B.dat", ""));
    ASSERT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "B.dat", 3), S_OK);
    EXPECT_TRUE(m_Arquivos.Apaga(PastaDados("B.dat")).Ok());
    const auto antes = m_Arquivos.Retrata();
    for (const char* pszNome : {"B.dat", "C.dat"})
        EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, pszNome, 3), S_OK) << pszNome;
    EXPECT_EQ(CXVDataBaseUtil::RenomeiaArquivoTRAGroupFile(&m_Dono, XV_DF, "H??.dat", 2), S_OK);
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    EXPECT_EQ(LeTextos(k_pszControle), std::vector<std::string>{"B.dat"});
}

}  // namespace
