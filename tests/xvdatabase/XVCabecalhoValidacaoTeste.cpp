// Headers that do not fit, files without one, and what is left untouched.
#include <functional>

#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};

class CabecalhoValidacao : public CXVCenarioBanco {
  protected:
    // Opening the file is refused with the code and leaves every byte of it as found.
    void EsperaRecusa(const std::string& sConteudo, HRESULT hrEsperado, const char* pszCaso) {
        SCOPED_TRACE(pszCaso);
        Cria("A.dat", sConteudo);
        EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), hrEsperado);
        EXPECT_EQ(Le("A.dat"), sConteudo);
        EXPECT_FALSE(Existe("A.cab"));
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
};

TEST_F(CabecalhoValidacao, CadaDanoTemSeuCodigoEFicaComoEstava) {
    const std::string sBom = ArquivoComCabecalho("A.dat", Bytes({k_reg}));
    const auto altera = [&](const std::function<void(std::string&)>& fn) {
        std::string s = sBom;
        fn(s);
        FechaCrc(s);
        return s;
    };
    EsperaRecusa(sBom + "x", E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, "appended to by another program");
    EsperaRecusa(sBom.substr(0, 250), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, "cut in the payload");
    EsperaRecusa(sBom.substr(0, 239), E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE, "cut in the header");
    EsperaRecusa(sBom.substr(0, 24), E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE, "block A alone");
    EsperaRecusa(altera([](auto& s) { Poe<XVUShort>(s, 106, 128); }),
                 E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO, "created by a later engine");
    EsperaRecusa(altera([](auto& s) { Poe<XVUShort>(s, 108, 128); }),
                 E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO, "updated by a later engine");
    EsperaRecusa(altera([](auto& s) { s[112] = 'B'; }), E_XVCR_NOME_ARQUIVO_NAO_CONFERE,
                 "moved to another name");
    EsperaRecusa(ArquivoComCabecalho("A.dat", Bytes({k_reg}) + "x"), E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA,
                 "content that is refused behind a sound header");
}

TEST_F(CabecalhoValidacao, ArquivoAntigoNumDiscoCheioSeLeComoEsta) {
    Cria("A.dat", Bytes({k_reg}));
    const CXVCapturaTrace captura;
    m_Falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    EXPECT_EQ(LeRegistros("A.dat"), std::vector{k_reg});
    EXPECT_EQ(Le("A.dat"), Bytes({k_reg}));
    m_Falhas.Limpa();
}

TEST_F(CabecalhoValidacao, CopiaEncontradaNuncaESubstituida) {
    Cria("A.dat", Bytes({k_reg}));
    Cria("A.cab", "interrupted");
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_ARQUIVO_CAB_ENCONTRADO);
    EXPECT_EQ(Le("A.dat"), Bytes({k_reg}));
    EXPECT_EQ(Le("A.cab"), "interrupted");
    m_Arquivos.SetSomenteLeitura(PastaDados("A.cab"), true);
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_ARQUIVO_CAB_ENCONTRADO) << "read-only is found as well";
    Cria("A.tra", "");
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_ARQUIVO_TRA_ENCONTRADO);
    EXPECT_EQ(Tenta<CXVFileTeste>("A.tra"), S_OK) << "a transient copy has none of its own";
}

TEST_F(CabecalhoValidacao, LeituraSemBloqueioNaoValidaNemGravaMasNuncaTomaCabecalhoPorRegistros) {
    const auto le = [&](const std::string& sConteudo, XVUInt64 uiQtd) {
        Cria("A.dat", sConteudo);
        TXVBanco<CXVFileTeste> banco("A.dat");
        banco.xvDB.SetSomenteLeituraSemBloqueio(true);
        const HRESULT hr = Abre(banco);
        if (SUCCEEDED(hr)) {
            EXPECT_EQ(banco->GetQtdRegistros(), uiQtd);
            XVUInt uiPosicao = 0;
            EXPECT_EQ(banco->Grava(uiPosicao, k_reg), eXVReadOnly);
            EXPECT_EQ(banco->GravaVersaoArquivo(9), eXVReadOnly);
            EXPECT_EQ(banco.xvDB.Finaliza(), S_OK);
        }
        EXPECT_EQ(Le("A.dat"), sConteudo);
        return hr;
    };
    const std::string sBom = ArquivoComCabecalho("X.dat", Bytes({k_reg}));
    EXPECT_EQ(le(sBom, 1), S_OK) << "another name's header is not validated";
    EXPECT_EQ(le(Bytes({k_reg, k_reg}), 2), S_OK);
    EXPECT_EQ(le("", 0), S_OK);
    EXPECT_EQ(le(sBom.substr(0, 100), 0), E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE);
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eLe});
    EXPECT_EQ(le(sBom, 1), eHardIO) << "a header that cannot be read is not an absent one";
}

}  // namespace
