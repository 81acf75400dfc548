// Writes of files without a journal around them, on a device that fails: what the same object, not a new one,
// does afterwards. The sweeps of the store and of its conversion let every file operation of every use of
// these files fail.
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class GravacaoSemDiario : public CXVCenarioBanco {
  protected:
    GravacaoSemDiario() {
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    }
    // A write of its data (1) or of its header (2) fails: on disk, for readers and for its caller the file is
    // what it was, and the next write does what the failed one should.
    template <class TArquivo, class TGrava, class TMemoria>
    void Confere(const std::string& sDados, TGrava fnGrava, TMemoria fnMemoria) {
        const std::string sAntes = ArquivoComCabecalho("A.dat", sDados);
        std::string sDepois, sMemoriaDepois;
        for (const XVUInt uiNumero : {0U, 1U, 2U})
            for (const bool bMetade : {false, true}) {
                SCOPED_TRACE(testing::Message() << "write " << uiNumero << " half " << bMetade);
                const CXVCapturaTrace captura;
                Cria("A.dat", sAntes);
                TXVBanco<TArquivo> banco("A.dat");
                ASSERT_EQ(Abre(banco), S_OK);
                const std::string sMemoria = fnMemoria(banco.xvFile);
                XVUInt uiPosicao = 2;
                if (uiNumero != 0) {
                    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                                       .uiNumero = uiNumero,
                                       .bGravaMetade = bMetade});
                    EXPECT_EQ(fnGrava(banco.xvFile, uiPosicao), eHardIO);
                    m_Falhas.Limpa();
                    EXPECT_EQ(uiPosicao, 2U);
                    EXPECT_EQ(Le("A.dat"), sAntes);
                    EXPECT_EQ(fnMemoria(banco.xvFile), sMemoria);
                }
                EXPECT_EQ(fnGrava(banco.xvFile, uiPosicao), S_OK);
                if (uiNumero == 0) {
                    sDepois = Le("A.dat");
                    sMemoriaDepois = fnMemoria(banco.xvFile);
                    EXPECT_NE(sMemoriaDepois, sMemoria);
                }
                EXPECT_EQ(Le("A.dat"), sDepois);
                EXPECT_EQ(fnMemoria(banco.xvFile), sMemoriaDepois);
                ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
            }
    }
};

TEST_F(GravacaoSemDiario, OObjetoContinuaDepoisDaFalha) {
    Confere<CXVFileTeste>(
        Bytes({{1, 2, 3}, {4, 5, 6}}),
        [](CXVFileTeste& rFile, XVUInt& uiPosicao) {
            return rFile.GravaColecao(uiPosicao, std::vector<REG_TESTE>{{7, 8, 9}, {10, 11, 12}});
        },
        [](CXVFileTeste& rFile) {
            std::vector<REG_TESTE> lista;
            EXPECT_EQ(rFile.LeColecao(1, rFile.GetQtdRegistros(), lista), S_OK);
            return Bytes(lista) + std::to_string(rFile.GetTamanho());
        });
    Confere<CXVFileUnico>(
        Bytes({{1, 2, 3}}),
        [](CXVFileUnico& rFile, XVUInt&) {
            return rFile.Grava({7, 8, 9});
        },
        [](CXVFileUnico& rFile) {
            REG_TESTE reg{};
            EXPECT_EQ(rFile.Le(reg), S_OK);
            return Bytes({reg}) + std::to_string(rFile.GetTamanho());
        });
}

// The device refuses even the undoing: the object shows nothing more of a file that nobody knows, and a new
// opening finds what the device kept, or refuses it.
TEST_F(GravacaoSemDiario, OQueNaoSeDesfazNaoSeUsaMais) {
    const CXVCapturaTrace captura;
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 2, 3}})));
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    m_Falhas.Programa({.bPermanente = true, .bGravaMetade = true});
    XVUInt uiPosicao = 0;
    EXPECT_EQ(banco->Grava(uiPosicao, {4, 5, 6}), eHardIO);
    m_Falhas.Limpa();
    REG_TESTE reg{};
    EXPECT_EQ(banco->Le(1, &reg), E_XVCR_ARQUIVO_NAO_EXISTE);
    const std::string sDisco = Le("A.dat");
    EXPECT_EQ(banco->Grava(uiPosicao, {4, 5, 6}), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    EXPECT_EQ(Le("A.dat"), sDisco);
}

}  // namespace
