// Text files and single-record files.
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

using T = std::vector<std::string>;

class ArquivoTexto : public CXVCenarioBanco {};

// Memory that runs out after the file was loaded.
class CXVTextFileSemMemoria : public CXVTextFile {
  public:
    using CXVTextFile::CXVTextFile;
    bool m_bFalta = true;

  protected:
    HRESULT OnInicializa() override {
        const HRESULT hr = CXVTextFile::OnInicializa();
        if (m_bFalta) throw std::bad_alloc();
        return hr;
    }
};
class RegistroUnico : public CXVCenarioBanco {};

TEST_F(ArquivoTexto, LeituraForaDosLimites) {
    std::string sTexto = "x";
    TXVBanco<CXVTextFile> ausente("A.dat");
    ASSERT_EQ(Abre(ausente), S_OK);
    EXPECT_EQ(ausente->Le(0, sTexto), E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    EXPECT_EQ(sTexto, "");
    EXPECT_EQ(ausente->Le(1, sTexto), E_XVCR_ARQUIVO_NAO_EXISTE);
    ASSERT_EQ(ausente.xvDB.Finaliza(), S_OK);
    Cria("B.dat", ArquivoComCabecalho("B.dat", ""));
    TXVBanco<CXVTextFile> vazio("B.dat");
    ASSERT_EQ(Abre(vazio), S_OK);
    EXPECT_EQ(vazio->Le(1, sTexto), E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    XVUInt uiPosicao = 1;
    EXPECT_EQ(vazio->Grava(uiPosicao, "x"), E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    EXPECT_EQ(vazio->GravaColecao(uiPosicao, T{}), S_OK) << "empty: before the position is looked at";
    EXPECT_EQ(uiPosicao, 1U);
    ASSERT_EQ(vazio.xvDB.Finaliza(), S_OK);
}

TEST_F(ArquivoTexto, CargaSemMemoriaSoltaOArquivoEASeguinteMantemOCabecalho) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Prefixado("um")));
    TXVBanco<CXVTextFileSemMemoria> banco("A.dat");
    EXPECT_THROW(XVIgnora(Abre(banco)), std::bad_alloc);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    banco->m_bFalta = false;
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, "dois"), S_OK);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos("A.dat"), (T{"um", "dois"}));
}

TEST_F(ArquivoTexto, TextoMudadoEAnexadoEOAntigoFicaComoBytesMortos) {
    TXVBanco<CXVTextFile> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->GravaColecao(uiPosicao, T{"um", "", "tres"}), S_OK);
    EXPECT_EQ(uiPosicao, 1U);
    EXPECT_EQ(Le("A.dat").substr(240), Prefixado("um") + Prefixado("") + Prefixado("tres"));
    const std::string sAntes = Le("A.dat");
    m_Falhas.Limpa();
    EXPECT_EQ(banco->GravaColecao(uiPosicao, T{"um", "", "tres"}), S_OK);
    XVUInt uiSegunda = 2;
    EXPECT_EQ(banco->GravaColecao(uiSegunda, T{"", "tres"}), S_OK) << "any stored run";
    EXPECT_EQ(uiSegunda, 2U);
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 0U);
    EXPECT_EQ(Le("A.dat"), sAntes);
    EXPECT_EQ(banco->GravaColecao(uiPosicao, T{"um", "", "trEs"}), S_OK);
    EXPECT_EQ(uiPosicao, 4U);
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 2U) << "one of data, one of header";
    EXPECT_EQ(Le("A.dat").substr(240), Prefixado("um") + Prefixado("") + Prefixado("tres") + Prefixado("um") +
                                           Prefixado("") + Prefixado("trEs"));
    uiSegunda = 6;
    EXPECT_EQ(banco->GravaColecao(uiSegunda, T{"trEs", "novo"}), S_OK)
        << "a run past the end is new as a whole";
    EXPECT_EQ(uiSegunda, 7U);
    uiSegunda = 0;
    EXPECT_EQ(banco->Grava(uiSegunda, "um"), S_OK) << "position 0 always appends";
    EXPECT_EQ(uiSegunda, 9U);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos("A.dat"), (T{"um", "", "tres", "um", "", "trEs", "trEs", "novo", "um"}));
}

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

TEST_F(ArquivoTexto, PrimeiraGravacaoEncontraTextosQueApareceramDepois) {
    TXVBanco<CXVTextFile> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    Cria("A.dat", ArquivoComCabecalho("A.dat", Prefixado("alheio")));
    XVUInt uiPosicao = 0;
    EXPECT_EQ(banco->Grava(uiPosicao, "meu"), S_OK);
    EXPECT_EQ(uiPosicao, 2U);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos("A.dat"), (T{"alheio", "meu"}));
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
    const REG_TESTE outro{4, 5, 6};
    IXVFileBase& rBase = banco.xvFile;
    XVUInt uiPosicao = 0;
    EXPECT_EQ(rBase.SetRegData(uiPosicao, &outro), S_OK);
    EXPECT_EQ(rBase.SetArrayData(&outro, 1), S_OK);
    EXPECT_EQ(rBase.SetArrayData(&outro, 2), E_INVALIDARG);
    EXPECT_EQ(rBase.SetRegData(uiPosicao, nullptr), E_POINTER);
    EXPECT_EQ(banco->Le(reg), S_OK);
    EXPECT_EQ(reg, outro);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("V.dat"), std::vector{outro});
}

TEST_F(RegistroUnico, TamanhoErradoERecusado) {
    for (const std::size_t uiTamanho : {0U, 15U, 17U, 32U}) {
        SCOPED_TRACE(uiTamanho);
        const std::string s = ArquivoComCabecalho("V.dat", std::string(uiTamanho, 'v'));
        Cria("V.dat", s);
        EXPECT_EQ(Tenta<CXVFileUnico>("V.dat"), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
        EXPECT_EQ(Le("V.dat"), s);
    }
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
