// What the mark of an open store does after a clean end, beside a living process and after a killed one.
#include <gtest/gtest.h>

#include "core/xvdatabase/XVMarcaAbertura.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

constexpr const char* k_pszMarca = "XVDATABASE_ABERTA.srk";

class MarcaAbertura : public CXVCenarioBanco {};

TEST_F(MarcaAbertura, ExisteEnquantoAbertaESomeNoFimLimpo) {
    CXVMarcaAbertura marca;
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    EXPECT_TRUE(Existe(k_pszMarca));
    marca.Fecha(false);
    EXPECT_TRUE(Existe(k_pszMarca));
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    marca.Fecha(true);
    EXPECT_FALSE(Existe(k_pszMarca));
}

TEST_F(MarcaAbertura, EmUsoPorOutroEhRecusadaSemTocarNosArquivos) {
    const std::string sComSobra = ArquivoComCabecalho("A.dat", "12345678") + "resto";
    CXVMarcaAbertura outra;
    ASSERT_EQ(outra.Abre(&m_Dono, PastaDados()), S_OK);
    Cria("A.dat", sComSobra);
    CXVCapturaTrace captura;
    CXVMarcaAbertura marca;
    EXPECT_EQ(marca.Abre(&m_Dono, PastaDados()), eSharingViolation);
    EXPECT_EQ(m_Relogio.GetQuantidadeDormidas(), 499U);
    EXPECT_EQ(Le("A.dat"), sComSobra);
    outra.Fecha(true);
}

TEST_F(MarcaAbertura, DepoisDeProcessoMortoASobraEhGuardadaECortada) {
    const std::string sCerto = ArquivoComCabecalho("A.dat", "12345678");
    const std::string sCrcErrado = [&] {
        std::string s = ArquivoComCabecalho("B.dat", "12345678");
        s[80] = 1;
        return s + "resto";
    }();
    const std::string sCurto = ArquivoComCabecalho("C.dat", "12345678").substr(0, 244);
    Cria("A.dat", sCerto + "resto");
    Cria("B.dat", sCrcErrado);
    Cria("C.dat", sCurto);
    Cria("D.dat", "sem cabeçalho");
    Cria(k_pszMarca, "1");
    CXVCapturaTrace captura;
    CXVMarcaAbertura marca;
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    marca.Fecha(true);
    EXPECT_EQ(Le("A.dat"), sCerto);
    EXPECT_EQ(Le("A.dat.srk"), "resto");
    EXPECT_EQ(Le("B.dat"), sCrcErrado);
    EXPECT_EQ(Le("C.dat"), sCurto);
    EXPECT_EQ(Le("D.dat"), "sem cabeçalho");
    ASSERT_EQ(captura.GetFalhas().size(), 1U);
    EXPECT_NE(captura.GetFalhas()[0].sMensagem.find("A.dat"), std::string::npos);
}

TEST_F(MarcaAbertura, SemMarcaUmComprimentoEstranhoFicaComoEsta) {
    const std::string sComSobra = ArquivoComCabecalho("A.dat", "12345678") + "resto";
    Cria("A.dat", sComSobra);
    CXVMarcaAbertura marca;
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    marca.Fecha(true);
    EXPECT_EQ(Le("A.dat"), sComSobra);
}

// Whoever waited for the mark finds it as its holder left it, not as it was when the waiting began.
TEST_F(MarcaAbertura, QuemEsperouVeComoOOutroTerminou) {
    const std::string sCerto = ArquivoComCabecalho("A.dat", "12345678");
    for (const bool bLimpo : {true, false}) {
        CXVMarcaAbertura outra;
        ASSERT_EQ(outra.Abre(&m_Dono, PastaDados()), S_OK);
        Cria("A.dat", sCerto + "resto");
        m_Relogio.SetAoDormir([&](XVUInt64) { outra.Fecha(bLimpo); });
        CXVCapturaTrace captura;
        CXVMarcaAbertura marca;
        ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
        m_Relogio.SetAoDormir({});
        marca.Fecha(true);
        EXPECT_EQ(Le("A.dat"), bLimpo ? sCerto + "resto" : sCerto);
        EXPECT_FALSE(Existe(k_pszMarca));
    }
}

TEST_F(MarcaAbertura, ArquivoQueNaoSePodeOlharGuardaAMarcaParaAProxima) {
    const std::string sCerto = ArquivoComCabecalho("A.dat", "12345678");
    Cria("A.dat", sCerto + "resto");
    Cria(k_pszMarca, "1");
    std::unique_ptr<IXVArquivo> pAlheio;
    ASSERT_TRUE(m_Arquivos
                    .Abre(PastaDados("A.dat"),
                          {EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaEscrita,
                           ECriacaoArquivo::eSomenteExistente},
                          pAlheio)
                    .Ok());
    CXVCapturaTrace captura;
    CXVMarcaAbertura marca;
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    marca.Fecha(true);
    pAlheio.reset();
    ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
    marca.Fecha(true);
    EXPECT_EQ(Le("A.dat"), sCerto);
    EXPECT_FALSE(Existe(k_pszMarca));
}

// The tail is cut only after it was kept: a fault in between leaves the mark and the file for the next try.
TEST_F(MarcaAbertura, FalhaAoGuardarASobraNaoPerdeNada) {
    const std::string sCerto = ArquivoComCabecalho("A.dat", "12345678");
    for (XVUInt64 n = 1;; ++n) {
        Cria("A.dat", sCerto + "resto");
        Cria(k_pszMarca, "1");
        m_Falhas.Programa(
            {.eOperacao = EOperacaoArquivo::eGrava, .uiNumero = n, .eCausa = ECausaArquivo::eDiscoCheio});
        CXVCapturaTrace captura;
        CXVMarcaAbertura marca;
        const HRESULT hr = marca.Abre(&m_Dono, PastaDados());
        const bool bHouveFalha = m_Falhas.GetFalhasOcorridas() > 0;
        m_Falhas.Limpa();
        if (!bHouveFalha) break;
        EXPECT_EQ(hr, eDiskFull);
        EXPECT_EQ(Le("A.dat"), sCerto + "resto");
        EXPECT_TRUE(Existe(k_pszMarca));
        ASSERT_EQ(marca.Abre(&m_Dono, PastaDados()), S_OK);
        marca.Fecha(true);
        EXPECT_EQ(Le("A.dat"), sCerto);
    }
}

}  // namespace
