// The writing operations swept with failing file operations, and what the same object does afterwards.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVGroupTextFileDynamic.h"
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

TEST_F(FalhasGravacao, RegistroAnexado) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
    Varre({[&] {
               return UsaRegistros([](CXVFileTeste& rFile) {
                   XVUInt uiPosicao = 0;
                   return rFile.Grava(uiPosicao, {rFile.GetQtdRegistros() + 1, 0, 0});
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

TEST_F(FalhasGravacao, MembroNovoDeGrupo) {
    Varre({[&] {
               CXVDataBase xvDB(XV_DF);
               CXVGroupTextFileDynamic xvGrupo("G??.dat", &xvDB, 2);
               HRESULT hr = xvDB.Inicializa(&m_Dono);
               XVUInt uiPosicao = 0;
               if (SUCCEEDED(hr)) hr = xvGrupo.Grava(5, uiPosicao, "texto");
               const HRESULT hrFinaliza = xvDB.Finaliza();
               return FAILED(hr) ? hr : hrFinaliza;
           },
           [&] { return Estado("G05.dat"); }});
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
    Cria(k_pszControle, Prefixado("outro.dat") + Prefixado("A.dat"));
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}})));
    Varre({[&] {
               return CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat",
                                                     CXVDataBaseUtil::eRemoveDoControle);
           },
           [&] { return Estado("A.dat"); }});
    EXPECT_EQ(LeTextos(k_pszControle), std::vector<std::string>{"outro.dat"});
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

// The same object, not a new one, goes on after a fault that the device got over.
TEST_F(FalhasGravacao, OMesmoObjetoContinuaDepoisDaFalha) {
    const CXVCapturaTrace captura;
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    for (const bool bMetade : {false, true})
        for (XVUInt64 uiNumero = 1; uiNumero <= 5; ++uiNumero) {
            SCOPED_TRACE(uiNumero);
            Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 0, 0}, {2, 0, 0}})));
            TXVBanco<CXVFileTeste> banco("A.dat");
            const SChavesTeste chaves;
            ASSERT_EQ(banco->IncluiIndex(&chaves, 0), S_OK);
            ASSERT_EQ(Abre(banco), S_OK);
            m_Falhas.Programa(
                {.eOperacao = EOperacaoArquivo::eGrava,
                 .uiNumero = uiNumero,
                 .bPermanente = uiNumero > 2,
                 .eCausa = uiNumero == 1 ? ECausaArquivo::eErroFisico : ECausaArquivo::eDiscoCheio,
                 .bGravaMetade = bMetade});
            XVUInt uiPosicao = 1;
            const HRESULT hr = banco->Grava(uiPosicao, {9, 9, 9});
            m_Falhas.Limpa();
            REG_TESTE reg{};
            ASSERT_EQ(banco->Le(1, &reg), S_OK);
            EXPECT_EQ(reg.uiChave, FAILED(hr) ? 1U : 9U);
            uiPosicao = 0;
            ASSERT_EQ(banco->Grava(uiPosicao, {5, 0, 0}), S_OK);
            EXPECT_EQ(uiPosicao, 3U);
            ASSERT_EQ(banco->ExisteIndex(FAILED(hr) ? XVUInt64{1} : XVUInt64{9}, uiPosicao, 0), S_OK);
            EXPECT_EQ(uiPosicao, 1U);
            ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
            EXPECT_EQ(LeRegistros("A.dat").size(), 3U);
        }
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
