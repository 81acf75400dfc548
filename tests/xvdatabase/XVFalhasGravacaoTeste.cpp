// The writing operations swept with failing file operations, and what the same object does afterwards.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVVarreduraFalhas.h"

namespace {

using CXVFileVersao = CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>;

class FalhasGravacao : public CXVVarreduraFalhas {};

TEST_F(FalhasGravacao, PrimeiroRegistro) {
    Varre({[&] {
               return UsaRegistros([](CXVFileTeste& rFile) {
                   XVUInt uiPosicao = 0;
                   return rFile.GravaColecao(uiPosicao, {{{rFile.GetQtdRegistros() + 1, 0, 0}}});
               });
           },
           [&] { return Estado("A.dat"); }});
}

TEST_F(FalhasGravacao, RegistrosSobrepostosEEstendidos) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}})));
    Varre({[&] {
               return UsaRegistros([](CXVFileTeste& rFile) {
                   XVUInt uiPosicao = 2;
                   return rFile.GravaColecao(uiPosicao,
                                             std::vector<REG_TESTE>{{12, 1, 1}, {13, 1, 1}, {14, 1, 1}});
               });
           },
           [&] { return Estado("A.dat"); }, true});
}

TEST_F(FalhasGravacao, CabecalhoAcrescentadoAArquivoAntigo) {
    Cria("A.dat", Bytes({{1, 0, 0}, {2, 0, 0}}));
    Varre(
        {[&] { return UsaRegistros([](CXVFileTeste&) { return S_OK; }); }, [&] { return Estado("A.dat"); }});
    EXPECT_EQ(m_sAntes, m_sDepois);
    EXPECT_FALSE(Existe("A.cab"));
}

TEST_F(FalhasGravacao, VersaoDoArquivo) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
    Varre({[&] { return UsaRegistros([](CXVFileTeste& rFile) { return rFile.GravaVersaoArquivo(3); }); },
           [&] {
               const std::string s = Estado("A.dat");
               return s.starts_with(k_pszRecusado) ? s : std::to_string(Campo<XVUShort>(Le("A.dat"), 104));
           }});
}

TEST_F(FalhasGravacao, TextoPrimeiroEAnexado) {
    const SOperacao operacao{
        [&] {
            return Usa<CXVTextFile>("T.dat", [](CXVTextFile& rFile) {
                XVUInt uiPosicao = 0;
                return rFile.GravaColecao(uiPosicao, std::vector<std::string>{"abc", "", "defgh"});
            });
        },
        [&] { return Estado("T.dat"); }};
    Varre(operacao);
    m_Arquivos.Restaura(m_Inicial);
    Cria("T.dat", ArquivoComCabecalho("T.dat", Prefixado("antigo")));
    Varre(operacao);
}

TEST_F(FalhasGravacao, RegistroUnicoPrimeiroESobreposto) {
    SOperacao operacao{[&] {
                           return Usa<CXVFileVersao>("V.dat", [](CXVFileVersao& rFile) {
                               return rFile.Grava({0x0102, {7, 7, 7}});
                           });
                       },
                       [&] {
                           const std::string s = Estado("V.dat");
                           const bool bSemRegistro = Existe("V.dat") && s.empty();
                           return bSemRegistro ? k_pszRecusado + std::string("sem registro") : s;
                       }};
    Varre(operacao);
    m_Arquivos.Restaura(m_Inicial);
    Cria("V.dat", ArquivoComCabecalho("V.dat", std::string(16, 'v')));
    operacao.bSobrepoe = true;
    Varre(operacao);
}

TEST_F(FalhasGravacao, RegistroUnicoPorNome) {
    Cria("V.dat", ArquivoComCabecalho("V.dat", std::string(16, 'v')));
    Varre({[&] {
               return CXVDataBaseUtil::GravaSingleReg(&m_Dono, XV_DF, {3, {}}, "V.dat");
           },
           [&] { return Estado("V.dat"); }});
    EXPECT_FALSE(Existe("V.srk"));
}

TEST_F(FalhasGravacao, ListagemNoControle) {
    Cria(k_pszControle, Prefixado("outro.dat"));
    Cria("A.dat", ArquivoComCabecalho("A.dat", ""));
    // A full disk postpones the listing to the next opening and nothing else.
    Varre({[&] {
               const HRESULT hr = UsaRegistros([](CXVFileTeste&) { return S_OK; });
               return SUCCEEDED(hr) && Estado(k_pszControle) == Prefixado("outro.dat") ? eDiskFull : hr;
           },
           [&] {
               const std::string s = Estado(k_pszControle);
               const bool bInteiro =
                   s == Prefixado("outro.dat") || s == Prefixado("outro.dat") + Prefixado("A.dat");
               return bInteiro ? s : k_pszRecusado + s;
           }});
}

TEST_F(FalhasGravacao, DelecaoDeArquivoListado) {
    for (const auto eControle : {CXVDataBaseUtil::eRemoveDoControle, CXVDataBaseUtil::eMantemNoControle}) {
        Cria(k_pszControle, Prefixado("outro.dat") + Prefixado("A.dat"));
        Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
        Varre({[&] { return CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", eControle); },
               [&] { return Estado("A.dat"); }});
        EXPECT_EQ(LeTextos(k_pszControle).size(), eControle == CXVDataBaseUtil::eRemoveDoControle ? 1U : 2U);
    }
}

TEST_F(FalhasGravacao, TrocaPelaCopiaConvertida) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
    Cria("A.tra", ArquivoComCabecalho("A.dat", Bytes({{2, 0, 0}, {3, 0, 0}})));
    Varre({[&] {
               // A second run finds the copy gone; what is left to do then is the stamp.
               if (Existe("A.tra")) return CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "A.dat", 2);
               return UsaRegistros([](CXVFileTeste& rFile) { return rFile.GravaVersaoArquivo(2); });
           },
           [&] {
               const std::string s = Existe("A.tra") ? "a mover" : Estado("A.dat");
               return s;
           }});
    EXPECT_EQ(m_sDepois, Bytes({{2, 0, 0}, {3, 0, 0}}));
}

// The same object, not a new one, goes on after a write of its data (1) or of its header (2) failed: for
// readers, on disk and for its caller it is what it was, and the next write does what the failed one should.
class ContinuaDepoisDaFalha : public CXVCenarioBanco {
  protected:
    template <class TArquivo>
    void Confere(const std::string& sDados, const std::function<HRESULT(TArquivo&, XVUInt&)>& fnGrava,
                 const std::function<std::string(TArquivo&)>& fnMemoria) {
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
        std::string sDepois;
        std::string sMemoriaDepois;
        for (const XVUInt64 uiNumero : {0U, 1U, 2U})
            for (const bool bMetade : {false, true}) {
                SCOPED_TRACE(testing::Message() << "write " << uiNumero << " half " << bMetade);
                const CXVCapturaTrace captura;
                const std::string sAntes = ArquivoComCabecalho("A.dat", sDados);
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
                    EXPECT_EQ(m_Falhas.GetFalhasOcorridas(), 1U);
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

TEST_F(ContinuaDepoisDaFalha, RegistrosEIndice) {
    const SChavesTeste chaves;
    Confere<CXVFileTeste>(
        Bytes({{1, 2, 3}, {4, 5, 6}}),
        [](CXVFileTeste& rFile, XVUInt& uiPosicao) {
            return rFile.GravaColecao(uiPosicao, std::vector<REG_TESTE>{{7, 8, 9}, {10, 11, 12}});
        },
        [&](CXVFileTeste& rFile) {
            // Declared at the first look; both columns of all keys that are ever written.
            if (rFile.IncluiIndex(&chaves, 0) == S_OK) {
                EXPECT_EQ(rFile.IncluiIndex(&chaves, 1), S_OK);
            }
            std::vector<REG_TESTE> lista;
            EXPECT_EQ(rFile.LeColecao(1, rFile.GetQtdRegistros(), lista), S_OK);
            std::string sTudo = Bytes(lista) + std::to_string(rFile.GetTamanho());
            for (XVUInt64 uiChave = 1; uiChave <= 12; ++uiChave)
                for (const XVUInt uiColuna : {0U, 1U}) {
                    XVUInt uiOnde = 0;
                    EXPECT_EQ(rFile.ExisteIndex(uiChave, uiOnde, uiColuna), S_OK);
                    sTudo += '/' + std::to_string(uiOnde);
                }
            return sTudo;
        });
}

TEST_F(ContinuaDepoisDaFalha, Textos) {
    Confere<CXVTextFile>(
        Prefixado("um") + Prefixado("dois"),
        [](CXVTextFile& rFile, XVUInt& uiPosicao) {
            return rFile.GravaColecao(uiPosicao, std::vector<std::string>{"tres", "quatro"});
        },
        [](CXVTextFile& rFile) {
            std::string sTodos = std::to_string(rFile.GetTamanho());
            for (XVUInt i = 1; i <= rFile.GetQtdRegistros(); ++i) {
                std::string sTexto;
                EXPECT_EQ(rFile.Le(i, sTexto), S_OK);
                sTodos += '/' + sTexto;
            }
            return sTodos;
        });
}

TEST_F(ContinuaDepoisDaFalha, RegistroUnico) {
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
TEST_F(ContinuaDepoisDaFalha, OQueNaoSeDesfazNaoSeUsaMais) {
    const CXVCapturaTrace captura;
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
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

TEST_F(FalhasGravacao, NumeroDeTentativasDeUmaGravacao) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
    for (const auto& [eCausa, uiTentativas] :
         {std::pair{ECausaArquivo::eDiscoCheio, 50U}, std::pair{ECausaArquivo::eViolacaoBloqueio, 50U},
          std::pair{ECausaArquivo::eErroFisico, 1U}}) {
        TXVBanco<CXVFileTeste> banco("A.dat");
        ASSERT_EQ(Abre(banco), S_OK);
        m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = eCausa});
        const XVUInt64 uiDormidos = m_Relogio.GetMilissegundosDormidos();
        XVUInt uiPosicao = 0;
        CXVCapturaTrace captura;
        EXPECT_NE(banco->Grava(uiPosicao, {2, 0, 0}), S_OK);
        EXPECT_EQ(uiPosicao, 0U);
        EXPECT_EQ(m_Relogio.GetMilissegundosDormidos() - uiDormidos, (uiTentativas - 1) * 10);
        XVUInt64 uiRegistradas = 0;
        for (const SFalhaCapturada& falha : captura.GetFalhas())
            uiRegistradas += falha.sExpressao == "GravaRegistros(uiPosicao, aRegistros)";
        EXPECT_EQ(uiRegistradas, uiTentativas) << "every attempt is reported";
        EXPECT_TRUE(captura.Contem("CatchGravacao(pEx)"));
        m_Falhas.Limpa();
        XVIgnora(banco.xvDB.Finaliza());
        EXPECT_EQ(LeRegistros("A.dat").size(), 1U);
    }
}

}  // namespace
