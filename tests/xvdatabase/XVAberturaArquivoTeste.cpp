// Opening: the three modes and the retries.
#include <tuple>

#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};

class AberturaArquivo : public CXVCenarioBanco {
  protected:
    AberturaArquivo() {
        Cria(k_pszControle, Prefixado("A.dat"));
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    }
    void CriaBom() { Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({k_reg}))); }
};

TEST_F(AberturaArquivo, SoOQueNaoEFatalSeTentaDeNovo) {
    CriaBom();
    for (const auto& [eCausa, hr, uiTentativas] :
         {std::tuple{ECausaArquivo::eArquivoInvalido, eInvalidFile, 1U},
          std::tuple{ECausaArquivo::eViolacaoCompartilhamento, eSharingViolation, 500U}}) {
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eAbre, .bPermanente = true, .eCausa = eCausa});
        const XVUInt64 uiDormidos = m_Relogio.GetMilissegundosDormidos();
        EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), hr);
        EXPECT_EQ(Conta(EOperacaoArquivo::eAbre), uiTentativas);
        EXPECT_EQ(m_Relogio.GetMilissegundosDormidos() - uiDormidos, (uiTentativas - 1) * 10);
    }
}

// On a busy machine an attempt takes far longer than the wait for it.
TEST_F(AberturaArquivo, TentativasDemoradasAcabamEmCincoSegundos) {
    CriaBom();
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eAbre,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eViolacaoCompartilhamento});
    m_Relogio.SetAoDormir([&](XVUInt64) { m_Relogio.Avanca(90); });
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), eSharingViolation);
    EXPECT_EQ(Conta(EOperacaoArquivo::eAbre), 51U);
    m_Relogio.SetAoDormir({});
}

TEST_F(AberturaArquivo, ModosEReabertura) {
    m_Arquivos.Apaga(PastaDados(k_pszControle)).Ignora();
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    EXPECT_FALSE(banco->ExisteArquivo()) << "absent and not created: no error";
    EXPECT_EQ(banco->AbreArquivo(eModoLeituraSemBloqueio), S_OK);
    EXPECT_FALSE(banco->ExisteArquivo());
    const CXVCapturaTrace captura;
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava});
    EXPECT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), eHardIO);
    EXPECT_FALSE(Existe("A.dat")) << "a failed opening leaves nothing";

    EXPECT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), S_OK);
    EXPECT_EQ(banco->GetSeekCabecalho(), 240U);
    banco->FechaArquivo();
    EXPECT_EQ(banco->GetSeekCabecalho(), 0U);
    EXPECT_EQ(banco->GetTamanho(), 0U);
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGetTamanho});
    EXPECT_EQ(banco->AbreArquivo(eModoLeituraGravacao), eHardIO);
    EXPECT_FALSE(banco->ExisteArquivo()) << "a file of unknown length is not used";
    EXPECT_EQ(banco->AbreArquivo(eModoLeituraGravacao), S_OK);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// Opened for writing, a file gets the name that it was asked for by; viewing leaves it, as does a directory
// that lets nobody rename.
TEST_F(AberturaArquivo, NomeEmOutraCaixa) {
    Cria("a.DAT", ArquivoComCabecalho("A.dat", Bytes({k_reg})));
    for (const auto& [bConsulta, bRenomeia] : {std::pair(true, true), {false, false}, {false, true}}) {
        bool bPeloReal = false;
        m_Falhas.Limpa();
        m_Falhas.SetFiltro([&](const std::string& s) {
            bPeloReal = bPeloReal || s.ends_with("a.DAT");
            return s.ends_with("A.dat");
        });
        if (!bRenomeia) m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eSubstitui, .bPermanente = true});
        TXVBanco<CXVFileTeste> banco("A.dat");
        banco.xvDB.SetSomenteLeituraSemBloqueio(bConsulta);
        ASSERT_EQ(Abre(banco), S_OK);
        EXPECT_EQ(banco->GetQtdRegistros(), 1U);
        std::string sNomeReal;
        ASSERT_TRUE(m_Arquivos.BuscaNomeReal(PastaDados("A.dat"), sNomeReal).Ok());
        EXPECT_EQ(sNomeReal, bConsulta || !bRenomeia ? "a.DAT" : "A.dat");
        EXPECT_EQ(bPeloReal, sNomeReal == "a.DAT") << "where case matters there is no other file";
        ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
        m_Falhas.SetFiltro({});
    }
}

}  // namespace
