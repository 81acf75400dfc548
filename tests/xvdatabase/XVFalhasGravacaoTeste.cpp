// Every writing operation with the Nth file operation failing, for every N: the failure is told, nothing
// stays open, and the data afterwards is that from before or from after.
#include <functional>
#include <sstream>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVGroupTextFileDynamic.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

using CXVFileVersao = CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>;

class FalhasGravacao : public CXVCenarioBanco {
  protected:
    // From opening to finalising, and the first code of both.
    template <class TArquivo, class TOperacao>
    HRESULT Usa(const std::string& sNome, TOperacao operacao) {
        TXVBanco<TArquivo> banco(sNome);
        HRESULT hr = Abre(banco);
        if (SUCCEEDED(hr)) hr = operacao(banco.xvFile);
        const HRESULT hrFinaliza = banco.xvDB.Finaliza();
        return FAILED(hr) ? hr : hrFinaliza;
    }
    HRESULT UsaRegistros(const std::function<HRESULT(CXVFileTeste&)>& fn) {
        return Usa<CXVFileTeste>("A.dat", [&](CXVFileTeste& rFile) {
            const SChavesTeste chaves;
            const HRESULT hr = rFile.IncluiIndex(&chaves, 0);
            return FAILED(hr) ? hr : fn(rFile);
        });
    }

    // What a reader sees, without changing anything: the payload, or the refusal. An absent file is as good
    // as an empty one.
    std::string Estado(const std::string& sNome) {
        TXVBanco<CXVTextFile> banco(sNome);
        banco.xvDB.SetSomenteLeituraSemBloqueio(true);
        if (!Existe(sNome)) return "";
        CXVFileBase xvFile(sNome, &banco.xvDB, ERegistroArquivo::eAvulso);
        HRESULT hr = xvFile.Inicializa(&m_Dono);
        if (SUCCEEDED(hr)) hr = xvFile.AbreArquivo(eModoLeituraSemBloqueio);
        if (SUCCEEDED(hr)) hr = xvFile.ConfereCabecalho();
        const auto uiSeek = static_cast<std::size_t>(xvFile.GetSeekCabecalho());
        XVIgnora(xvFile.Finaliza());
        if (SUCCEEDED(hr)) return Le(sNome).substr(uiSeek);
        std::ostringstream s;
        s << k_pszRecusado << std::hex << hr;
        return s.str();
    }

    struct SOperacao {
        std::function<HRESULT()> fnExecuta;
        std::function<std::string()> fnEstado;
    };
    // What a device that refused even the undoing may have left: a copy, or a file that is cut in its middle.
    static bool EhRecusaDeResto(HRESULT hr) {
        return hr == E_XVCR_ARQUIVO_CAB_ENCONTRADO || hr == E_XVCR_ARQUIVO_TRA_ENCONTRADO ||
               hr == E_XVCR_CRC_CABECALHO_NAO_CONFERE ||
               hr == E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA;
    }
    void Varre(const SOperacao& rOperacao);
    void VarreComFalha(const SOperacao& rOperacao, SFalhaArquivo falha);

    static constexpr const char* k_pszRecusado = "recusado ";
    std::string m_sAntes;
    std::string m_sDepois;
    CXVSistemaArquivosMemoria::TRetrato m_Inicial;
};

void FalhasGravacao::Varre(const SOperacao& rOperacao) {
    const CXVCapturaTrace captura;
    m_Falhas.SetFiltro([](const std::string& s) { return s.find("XVProfiler") == std::string::npos; });
    m_Inicial = m_Arquivos.Retrata();
    m_sAntes = rOperacao.fnEstado();
    ASSERT_EQ(rOperacao.fnExecuta(), S_OK);
    m_sDepois = rOperacao.fnEstado();
    for (const bool bPermanente : {false, true})
        for (const bool bMetade : {false, true})
            for (const ECausaArquivo eCausa : {ECausaArquivo::eDiscoCheio, ECausaArquivo::eErroFisico})
                VarreComFalha(rOperacao,
                              {.bPermanente = bPermanente, .eCausa = eCausa, .bGravaMetade = bMetade});
}

void FalhasGravacao::VarreComFalha(const SOperacao& rOperacao, SFalhaArquivo falha) {
    bool bHouveFalha = true;
    for (falha.uiNumero = 1; bHouveFalha; ++falha.uiNumero) {
        ASSERT_LT(falha.uiNumero, 300U);
        SCOPED_TRACE("operation " + std::to_string(falha.uiNumero) + (falha.bPermanente ? " and after" : "") +
                     (falha.bGravaMetade ? ", half written" : "") +
                     (falha.eCausa == ECausaArquivo::eDiscoCheio ? ", disk full" : ", hard I/O"));
        m_Arquivos.Restaura(m_Inicial);
        m_Falhas.Programa(falha);
        const HRESULT hr = rOperacao.fnExecuta();
        bHouveFalha = m_Falhas.GetFalhasOcorridas() > 0;
        m_Falhas.Limpa();
        ASSERT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        const std::string sEstado = rOperacao.fnEstado();
        if (SUCCEEDED(hr)) {
            ASSERT_EQ(sEstado, m_sDepois) << "success was claimed";
        }
        // Only where the device refuses even the undoing may the file be left to be refused.
        if (falha.bPermanente && sEstado.starts_with(k_pszRecusado)) continue;
        ASSERT_TRUE(sEstado == m_sAntes || sEstado == m_sDepois) << std::hex << hr << "\n"
                                                                 << ::testing::PrintToString(sEstado);
        const HRESULT hrProxima = rOperacao.fnExecuta();
        ASSERT_TRUE(hrProxima == S_OK || (falha.bPermanente && EhRecusaDeResto(hrProxima)))
            << "the next valid operation works " << std::hex << hrProxima;
        ASSERT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
}

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
           [&] { return Estado("A.dat"); }});
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
    const SOperacao operacao{[&] {
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
    Varre({[&] { return UsaRegistros([](CXVFileTeste&) { return S_OK; }); },
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
