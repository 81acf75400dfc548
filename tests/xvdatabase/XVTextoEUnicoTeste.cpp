// Text files and single-record files.
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class ArquivoTexto : public CXVCenarioBanco {};
class RegistroUnico : public CXVCenarioBanco {};

TEST_F(ArquivoTexto, NulNoMeioFicaGuardadoELidoAteEle) {
    TXVBanco<CXVTextFile> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    const std::string sComNul("ab\0cd", 5);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, sComNul), S_OK);
    std::string sTexto;
    EXPECT_EQ(banco->Le(1, sTexto), S_OK);
    EXPECT_EQ(sTexto, "ab");
    EXPECT_EQ(banco->Grava(uiPosicao, sComNul), S_OK);
    EXPECT_EQ(uiPosicao, 1U) << "compared with all its bytes";
    EXPECT_EQ(banco->Grava(uiPosicao, "ab"), S_OK);
    EXPECT_EQ(uiPosicao, 2U);
    EXPECT_EQ(Le("A.dat").substr(240), Prefixado(sComNul) + Prefixado("ab"));
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

TEST_F(ArquivoTexto, PrefixosDanificadosSaoRecusadosEOArquivoFicaComoEstava) {
    const std::string sBom = Prefixado("ok");
    for (const std::string& sDados :
         {sBom + "x", sBom + "xx", sBom + "xxx", std::string("\x03\0\0\0ab", 6),
          sBom + std::string("\xFF\xFF\xFF\xFF", 4), sBom + std::string("\xFC\xFF\xFF\xFFzzzz", 8),
          sBom + std::string("\x01\0\0\0", 4)}) {
        SCOPED_TRACE(::testing::PrintToString(sDados));
        const std::string sArquivo = ArquivoComCabecalho("A.dat", sDados);
        Cria("A.dat", sArquivo);
        EXPECT_EQ(Tenta<CXVTextFile>("A.dat"), E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        EXPECT_EQ(Le("A.dat"), sArquivo);
    }
}

TEST_F(RegistroUnico, AusenteEZeroEAPrimeiraGravacaoSempreCria) {
    TXVBanco<CXVFileUnico> banco("V.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    REG_TESTE reg{1, 1, 1};
    EXPECT_EQ(banco->Le(reg), E_XVCR_ARQUIVO_NAO_EXISTE);
    EXPECT_EQ(banco->GetQtdRegistros(), 0U);
    EXPECT_TRUE(banco->PrecisaGravar({}));
    EXPECT_EQ(banco->Grava({}), S_OK) << "even an all-zero record";
    EXPECT_EQ(Le("V.dat").substr(240), std::string(16, '\0'));
    EXPECT_EQ(banco->GetQtdRegistros(), 1U);
    m_Falhas.Limpa();
    EXPECT_EQ(banco->Grava({}), S_OK);
    EXPECT_EQ(m_Falhas.GetQuantidadeTotal(), 0U);
    EXPECT_EQ(banco->Grava({1, 2, 3}), S_OK);
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 2U);
    EXPECT_EQ(m_Falhas.GetQuantidadeTotal(), 2U);
    EXPECT_EQ(banco->Le(reg), S_OK);
    EXPECT_EQ(reg, (REG_TESTE{1, 2, 3}));
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("V.dat"), std::vector{reg});
}

TEST_F(RegistroUnico, PrimeiraGravacaoEncontraRegistroQueApareceuDepois) {
    TXVBanco<CXVFileUnico> banco("V.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    const std::string sErrado = ArquivoComCabecalho("V.dat", std::string(17, 'v'));
    Cria("V.dat", sErrado);
    EXPECT_EQ(banco->Grava({1, 2, 3}), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
    EXPECT_EQ(Le("V.dat"), sErrado);
    Cria("V.dat", ArquivoComCabecalho("V.dat", Bytes({{1, 2, 3}})));
    m_Falhas.Limpa();
    EXPECT_EQ(banco->Grava({1, 2, 3}), S_OK);
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 0U) << "it stands there already";
    EXPECT_EQ(banco->Grava({7, 2, 3}), S_OK);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("V.dat"), (std::vector<REG_TESTE>{{7, 2, 3}}));
}

}  // namespace
