// The machine-wide switch, in a program of its own because a process reads it once: nothing is concluded
// from headers, and none is made, updated or lost.
#include <functional>

#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVTextFile.h"
#include "middleware/BaseMiddleware.h"
#include "support/codes/XVCodigos.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

template <class TArquivo>
struct TXVBancoDesligado {
    explicit TXVBancoDesligado(const std::string& sNome) : xvDB(XV_DF), xvFile(sNome, &xvDB) {}
    ~TXVBancoDesligado() { EXPECT_EQ(xvDB.Finaliza(), S_OK); }
    CXVDataBase xvDB;
    TArquivo xvFile;
};

class CXVCabecalhoDesligadoTeste : public CXVCenarioConversao {
  protected:
    CXVCabecalhoDesligadoTeste() {
        m_registry.SetNumero(k_sChaveRegistrySuite, "XVDataBase_DesabilitaCabecalho", 1);
    }
};

TEST_F(CXVCabecalhoDesligadoTeste, NadaDoBlocoDeInformacoesImportaEElePermaneceComoEstava) {
    const std::string sDados = CXVBytes().Texto("um");
    const std::string sBom = XVArquivoDoTeste({"A.dat", 3, 4}, sDados);
    for (std::size_t i = 24; i < 240; ++i) {
        SCOPED_TRACE(i);
        std::string s = sBom;
        s[i] = static_cast<char>(s[i] ^ 0x81);
        Poe("A.dat", s);
        {
            TXVBancoDesligado<CXVTextFile> banco("A.dat");
            ASSERT_EQ(banco.xvDB.Inicializa(&m_Dono), S_OK);
            EXPECT_EQ(banco.xvFile.ConfereCabecalho(), S_OK);
            EXPECT_EQ(banco.xvFile.GravaVersaoArquivo(9), S_OK);
            std::string sLido;
            EXPECT_EQ(banco.xvFile.Le(1, sLido), S_OK);
            EXPECT_EQ(sLido, "um");
            XVUInt uiPosicao = 0;
            EXPECT_EQ(banco.xvFile.Grava(uiPosicao, "dois"), S_OK);
            EXPECT_EQ(uiPosicao, 2U);
        }
        EXPECT_EQ(Conteudo("A.dat"), s + CXVBytes().Texto("dois").Str());
    }
}

TEST_F(CXVCabecalhoDesligadoTeste, ArquivoSemCabecalhoFicaSemEleEAssinaturaDanificadaERecusada) {
    for (const std::string& s : {std::string(), CXVBytes().Texto("um").Str()}) {
        Poe("A.dat", s);
        {
            TXVBancoDesligado<CXVTextFile> banco("A.dat");
            ASSERT_EQ(banco.xvDB.Inicializa(&m_Dono), S_OK);
            XVUInt uiPosicao = 0;
            EXPECT_EQ(banco.xvFile.Grava(uiPosicao, "dois"), S_OK);
        }
        EXPECT_EQ(Conteudo("A.dat"), s + CXVBytes().Texto("dois").Str());
    }
    // Where its payload begins is not told by such a file, and a header is no text.
    for (std::size_t i = 0; i < 24; ++i) {
        std::string s = XVArquivoDoTeste({"A.dat"}, CXVBytes().Texto("um").Str());
        s[i] = static_cast<char>(s[i] ^ 1);
        Poe("A.dat", s);
        TXVBancoDesligado<CXVTextFile> banco("A.dat");
        EXPECT_EQ(banco.xvDB.Inicializa(&m_Dono), E_XVCR_CRC_CABECALHO_NAO_CONFERE) << i;
        EXPECT_EQ(Conteudo("A.dat"), s);
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
