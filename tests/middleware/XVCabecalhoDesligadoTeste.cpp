// The machine-wide switch, in a program of its own because a process reads it once: nothing is concluded
// from headers, and none is made, updated or lost.
#include "tests/middleware/XVCenarioConversao.h"

namespace {

class CXVCabecalhoDesligadoTeste : public CXVCenarioConversao {
  protected:
    CXVCabecalhoDesligadoTeste() {
        m_registry.SetNumero(k_sChaveRegistrySuite, "XVDataBase_DesabilitaCabecalho", 1);
    }
};

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
        // An operation writes behind the headers and into none.
        const std::string sMensagens = Conteudo("CRINTEGMIDMENS20230605.dat");
        const auto status = XVStatusPS({XVChaveDmc(XVDma(2023, 6, 5), 1)}, 0, eXVSMiddleware_Erro, "", "");
        EXPECT_EQ(Abre()->GravaStatusIntegracao(status), S_OK);
        EXPECT_EQ(Conteudo("CRINTEGMIDMENS20230605.dat"), sMensagens + CXVBytes().Texto("").Str());
        EXPECT_EQ(Conteudo(k_pszIndice).substr(0, 240), base[k_pszIndice].substr(0, 240));
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
