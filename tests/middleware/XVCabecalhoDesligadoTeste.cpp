// The machine-wide switch, in a program of its own because a process reads it once: nothing is concluded
// from headers, and none is made, updated or lost.
#include "core/xvdatabase/XVTextFile.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

class CXVCabecalhoDesligadoTeste : public CXVCenarioConversao {
  protected:
    CXVCabecalhoDesligadoTeste() {
        m_registry.SetNumero(k_sChaveRegistrySuite, "XVDataBase_DesabilitaCabecalho", 1);
    }
    // Opened, read and written, a text file keeps what it had before its texts; or it is refused as it is.
    void Confere(const std::string& sBytes, HRESULT hr) {
        Poe("A.dat", sBytes);
        {
            CXVDataBase xvDB(XV_DF);
            CXVTextFile xvFile("A.dat", &xvDB);
            EXPECT_EQ(xvDB.Inicializa(&m_Dono), hr);
            if (SUCCEEDED(hr)) {
                EXPECT_EQ(xvFile.ConfereCabecalho(), S_OK);
                EXPECT_EQ(xvFile.GravaVersaoArquivo(9), S_OK);
                XVUInt uiPosicao = 0;
                EXPECT_EQ(xvFile.Grava(uiPosicao, "dois"), S_OK);
                std::string sLido;
                EXPECT_EQ(xvFile.Le(uiPosicao, sLido), S_OK);
                EXPECT_EQ(sLido, "dois");
            }
            EXPECT_EQ(xvDB.Finaliza(), S_OK);
        }
        EXPECT_EQ(Conteudo("A.dat"), sBytes + (FAILED(hr) ? "" : CXVBytes().Texto("dois").Str()));
    }
};

TEST_F(CXVCabecalhoDesligadoTeste, NadaDoBlocoDeInformacoesImportaEElePermaneceComoEstava) {
    const std::string sDados = CXVBytes().Texto("um");
    Confere("", S_OK);
    Confere(sDados, S_OK);
    const std::string sBom = XVArquivoDoTeste({"A.dat", 3, 4}, sDados);
    for (std::size_t i = 0; i < 240; ++i) {
        SCOPED_TRACE(i);
        std::string s = sBom;
        s[i] = static_cast<char>(s[i] ^ 0x81);
        // Where its payload begins is not told without the signature, and a header is no text.
        Confere(s, i < 24 ? E_XVCR_CRC_CABECALHO_NAO_CONFERE : S_OK);
    }
}

TEST_F(CXVCabecalhoDesligadoTeste, ConversaoNaoConcluiNadaDosCarimbosNemDosCabecalhos) {
    for (unsigned uiCaso = 0; uiCaso < 10; ++uiCaso) {
        const unsigned uiVersao = uiCaso / 2;
        TArquivos base = XVBaseDourada(uiVersao, true);
        for (auto& [sNome, sBytes] : base) {
            sBytes = XVArquivoDoTeste({sNome, 3, 5}, Dados(sBytes));  // stamps of the last step,
            if (uiCaso % 2 == 1) sBytes[130] ^= 1;                    // in headers that hold or not
        }
        Recomeca(base);
        EXPECT_EQ(Converte(), S_OK) << uiCaso;
        for (const auto& [sNome, sDados] : XVDadosConvertidos(uiVersao)) {
            const std::string sConteudo = Conteudo(sNome);
            EXPECT_TRUE(sConteudo == sDados || sConteudo.substr(240) == sDados) << uiCaso << sNome;
            EXPECT_TRUE(sConteudo == base[sNome] || sConteudo == sDados) << "made without header: " << sNome;
        }
        ConfereSemRestos();
        CBaseMiddleware loja;
        EXPECT_EQ(loja.Inicializa(&m_Dono), S_OK);
    }
}

TEST_F(CXVCabecalhoDesligadoTeste, RegistrosDeLeiautePosteriorContradizemAVersaoZeroMesmoAssim) {
    TArquivos base = XVBaseDourada(5, true);
    base.erase(k_pszVersao);
    Instala(base);
    EsperaRecusa(k_pszMapa, "version 5");
}

// Without stamps a journal that only names files proves nothing, and neither does one that was cut off.
TEST_F(CXVCabecalhoDesligadoTeste, DiarioSemSomasERecusado) {
    Instala(XVBaseDourada(3, true));
    Poe(k_pszControle, CXVBytes().Texto(k_pszVersao));
    CXVBytes diario;
    diario.Junta("SVKRCV01").U16(4).U16(0).U32(1).Texto(k_apszDias[0]);
    diario.U64(CrcBitABit(diario.Str()));
    for (const std::size_t uiTamanho : {diario.Str().size(), std::size_t{20}, std::size_t{0}}) {
        Poe("CRMIDDLEWARECV.srk", diario.Str().substr(0, uiTamanho));
        EsperaRecusa("CRMIDDLEWARECV.srk", std::to_string(uiTamanho));
    }
}

}  // namespace
