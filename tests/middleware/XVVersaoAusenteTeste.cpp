// A store whose version file is not there: version 0 only where nothing says otherwise. And listed files
// that are gone, stamps that were left, records that no program of this system wrote.
#include "middleware/BaseMiddleware.h"
#include "support/codes/XVCodigos.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";
constexpr const char* k_pszMapa = "CRCHAVEREGTER.dat";
constexpr const char* k_pszDatas = "CRDTHRINTEG.dat";
constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";

class CXVVersaoAusenteTeste : public CXVCenarioConversao {
  protected:
    void Recomeca(const TArquivos& rArquivos) {
        m_Arquivos.Restaura(m_vazio);
        Instala(rArquivos);
    }
    HRESULT AbreLoja(bool bSomenteLeitura) const {
        CBaseMiddleware loja;
        loja.SetSomenteLeitura(bSomenteLeitura);
        return loja.Inicializa(&m_Dono);
    }
    // Neither conversion, dry run, opening nor viewing takes the store, nothing of it changes, and the error
    // log names the file.
    void EsperaRecusa(const std::string& sNomeado, const std::string& sCaso) {
        SCOPED_TRACE(sCaso);
        const auto antes = RetratoSemLogs();
        const CXVCapturaTrace captura;
        XVUShort usVersao = 0;
        std::vector<SPassoPrevisto> passos;
        CXVConversaoMiddleware conversao(nullptr);
        ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
        EXPECT_EQ(conversao.Simula(&usVersao, &passos), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_EQ(Converte(), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_NE(AbreLoja(false), S_OK);
        EXPECT_NE(AbreLoja(true), S_OK);
        EXPECT_EQ(m_Arquivos.Diferenca(antes, RetratoSemLogs()), "");
        EXPECT_TRUE(XVTextoNoLog(captura, sNomeado)) << sNomeado;
    }
    static TArquivos SemVersao(unsigned uiVersao, bool bCabecalho) {
        TArquivos base = XVBaseDourada(uiVersao, bCabecalho);
        base.erase(k_pszVersao);
        return base;
    }

    const CXVSistemaArquivosMemoria::TRetrato m_vazio = m_Arquivos.Retrata();
};

// Up to version 2 the days' files are in the first layout; from 2 on the key map is not.
TEST_F(CXVVersaoAusenteTeste, RegistrosDeLeiautePosteriorContradizemAVersaoZero) {
    for (const bool bCabecalho : {false, true})
        for (unsigned uiVersao = 2; uiVersao <= 5; ++uiVersao) {
            TArquivos base = SemVersao(uiVersao, bCabecalho);
            if (bCabecalho) base[k_pszControle] = CXVBytes().Texto(k_pszIndice);
            Recomeca(base);
            EsperaRecusa(k_pszMapa, "version " + std::to_string(uiVersao));
            base.erase(k_pszMapa);
            if (uiVersao < 3) continue;
            Recomeca(base);
            EsperaRecusa(k_apszDias[0], "days alone, version " + std::to_string(uiVersao));
        }
}

TEST_F(CXVVersaoAusenteTeste, CarimboDePassoPosteriorContradizAVersaoZero) {
    const TArquivos base = SemVersao(0, true);
    for (const auto& [sNome, sBytes] : base)
        for (const unsigned uiCarimbo : {2U, 6U}) {
            TArquivos alterada = base;
            alterada[sNome] = XVArquivoDoTeste({sNome, 3, uiCarimbo}, Dados(sBytes));
            Recomeca(alterada);
            EsperaRecusa(sNome, sNome + std::to_string(uiCarimbo));
        }
}

TEST_F(CXVVersaoAusenteTeste, VersaoEControleAusentesNaoProvamNada) {
    // Date-times, index and texts look alike in every version.
    for (const char* pszNome : {k_pszDatas, k_pszIndice, "CRINTEGMIDJSON20230605.dat"}) {
        const std::string sBytes = SemVersao(0, true)[pszNome];
        Recomeca({{pszNome, sBytes}});
        EsperaRecusa(k_pszVersao, pszNome);
        // With the list there, and the version file not on it, there never was one.
        Recomeca({{pszNome, sBytes}, {k_pszControle, CXVBytes().Texto(pszNome)}});
        EXPECT_EQ(Converte(), S_OK) << pszNome;
    }
    // Records that are possible in either layout show neither.
    Recomeca({{k_apszDias[0], XVArquivoDoTeste({k_apszDias[0]}, std::string(880, '\0'))}});
    EsperaRecusa(k_pszVersao, "zero records");
    // Once converted, emptied of both: refused, not converted once more.
    Recomeca(XVBaseDourada(0, true));
    ASSERT_EQ(Converte(), S_OK);
    for (const char* pszNome : {k_pszVersao, k_pszControle})
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
    EsperaRecusa(k_pszMapa, "converted and emptied");
}

TEST_F(CXVVersaoAusenteTeste, VersaoZeroDeVerdadeConverteEDiretorioSemDadosServe) {
    TArquivos base = SemVersao(1, false);  // its files are those of version 0
    base.erase(k_pszMapa);
    Recomeca(base);
    EXPECT_EQ(Converte(), S_OK);
    Recomeca({{k_pszIndice, ""}, {k_apszDias[0], XVArquivoDoTeste({k_apszDias[0]}, "")}});
    EXPECT_EQ(Converte(), S_OK) << "nothing in it";
}

TEST_F(CXVVersaoAusenteTeste, VistaNaoMostraBaseDeVersaoAnteriorComoVazia) {
    TArquivos base = SemVersao(0, true);
    base.erase(k_pszIndice);
    Recomeca(base);
    EXPECT_EQ(AbreLoja(true), E_XVCR_VERSAO_INCOMPATIVEL);
}

TEST_F(CXVVersaoAusenteTeste, VistaRecusaArquivoUnicoListadoEAusenteSemMudarNada) {
    Recomeca(XVBaseDourada(0, true));
    ASSERT_EQ(Converte(), S_OK);
    const auto inteira = m_Arquivos.Retrata();
    for (const char* pszNome : {k_pszIndice, k_pszMapa, k_pszDatas}) {
        m_Arquivos.Restaura(inteira);
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
        const CXVBytes outro = CXVBytes().Texto("OUTRO.dat");
        for (const bool bListado : {true, false}) {
            m_Arquivos.CriaArquivo(PastaDados(k_pszControle),
                                   bListado ? CXVBytes(outro).Texto(pszNome) : outro);
            const auto antes = RetratoSemLogs();
            EXPECT_EQ(AbreLoja(true), bListado ? E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS : S_OK)
                << pszNome;
            EXPECT_EQ(m_Arquivos.Diferenca(antes, RetratoSemLogs()), "");
        }
    }
}

TEST_F(CXVVersaoAusenteTeste, ArquivoListadoAusenteParaAConversaoPeloNome) {
    for (unsigned uiVersao = 0; uiVersao < 5; ++uiVersao) {
        const TArquivos base = XVBaseDourada(uiVersao, true);
        // Names are the same in any case.
        const auto listado = [](const std::string& sNome) {
            return sNome == k_apszDias[1] ? "crintegmid20230606.DAT" : sNome;
        };
        CXVBytes lista;
        for (const auto& it : base) lista.Texto(listado(it.first));
        for (const auto& it : base) {
            Recomeca(base);
            m_Arquivos.CriaArquivo(PastaDados(k_pszControle), lista);
            ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(it.first)).Ok());
            EsperaRecusa(listado(it.first), it.first + " of version " + std::to_string(uiVersao));
        }
        Recomeca(base);
        m_Arquivos.CriaArquivo(PastaDados(k_pszControle), CXVBytes(lista).Texto("OUTROMODULO.dat"));
        EXPECT_EQ(Converte(), S_OK) << "another module's file is not this store's business";
    }
}

// A file that carries the step's stamp or a later one has been through it; one before has not.
TEST_F(CXVVersaoAusenteTeste, CadaPassoRespeitaOsCarimbos) {
    const struct {
        unsigned uiVersao;
        const char* pszNome;
    } aCasos[] = {{3, k_apszDias[1]}, {4, k_pszMapa}, {4, k_pszDatas}};
    for (const auto& [uiVersao, pszNome] : aCasos)
        for (unsigned uiCarimbo = 0; uiCarimbo <= 6; ++uiCarimbo) {
            TArquivos base = XVBaseDourada(uiVersao, true);
            base[pszNome] = XVArquivoDoTeste({pszNome, 3, uiCarimbo}, Dados(base[pszNome]));
            Recomeca(base);
            EXPECT_EQ(Converte(), S_OK);
            EXPECT_EQ(Conteudo(pszNome) == base[pszNome], uiCarimbo > uiVersao) << pszNome << uiCarimbo;
        }
    // A stamp in a header that does not hold is no stamp: the file is refused for its damage.
    for (const unsigned uiVersao : {0U, 3U}) {
        TArquivos base = uiVersao == 0 ? SemVersao(0, true) : XVBaseDourada(3, true);
        std::string& rDia = base[k_apszDias[1]];
        rDia = XVArquivoDoTeste({k_apszDias[1], 3, 5}, Dados(rDia));
        rDia[130] ^= 1;
        Recomeca(base);
        EXPECT_EQ(Converte(), E_XVCR_CRC_CABECALHO_NAO_CONFERE) << uiVersao;
        EXPECT_EQ(Conteudo(k_apszDias[1]), rDia);
        ConfereSemRestos();
    }
}

// Files without header: what no program of this system can have written gets none, in the layout of the
// store's version. Offsets are of a field in the second record.
TEST_F(CXVVersaoAusenteTeste, DatasEPonteirosImpossiveisDeCadaLeiaute) {
    const struct {
        const char* pszNome;
        std::size_t uiRegistro, uiOffset;
        unsigned uiVersao;
    } aChaves[] = {{k_pszIndice, 24, 8, 5},   {k_apszDias[0], 80, 0, 2}, {k_apszDias[0], 80, 8, 2},
                   {k_apszDias[0], 88, 0, 3}, {k_apszDias[0], 88, 8, 5}, {k_pszMapa, 24, 8, 1},
                   {k_pszMapa, 40, 8, 5},     {k_pszMapa, 40, 32, 5}},
      aDatas[] = {{k_apszDias[0], 80, 16, 2}, {k_apszDias[0], 80, 24, 2}, {k_apszDias[0], 88, 16, 5},
                  {k_apszDias[0], 88, 24, 5}, {k_pszDatas, 32, 0, 4},     {k_pszDatas, 32, 0, 5}};
    const auto estraga = [this](const auto& rCampo, XVUInt64 uiValor) {
        const auto& [pszNome, uiRegistro, uiOffset, uiVersao] = rCampo;
        SCOPED_TRACE(testing::Message()
                     << pszNome << " version " << uiVersao << " offset " << uiOffset << " value " << uiValor);
        TArquivos base = XVBaseDourada(uiVersao, false);
        base[pszNome].replace(uiRegistro + uiOffset, 8, CXVBytes().U64(uiValor).Str());
        Recomeca(base);
        CBaseMiddleware loja;
        HRESULT hr = loja.Inicializa(&m_Dono);
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        if (SUCCEEDED(hr)) hr = loja.LeIntegracao({XVChaveDmc(XVDma(2023, 6, 5), 1)}, &reg, 0);
        EXPECT_EQ(hr, E_XVCR_CRC_CABECALHO_NAO_CONFERE);
        EXPECT_EQ(loja.Finaliza(), S_OK);
        EXPECT_EQ(Conteudo(pszNome), base[pszNome]);
    };
    const XVUInt64 uiDia = XVDma(2023, 5, 1);
    for (const auto& rCampo : aChaves) {
        estraga(rCampo, XVChaveDmc(XVDma(2023, 2, 30), 1));  // no day of the calendar
        estraga(rCampo, XVChaveDmc(uiDia, 1) | 0x40);        // a reserved bit
        estraga(rCampo, XVChaveDmc(uiDia, 0));
    }
    for (const auto& rCampo : aDatas) {
        estraga(rCampo, uiDia << 32 | 86400);
        estraga(rCampo, 1);
    }
    estraga(aChaves[0], 0);
    estraga(aChaves[0], XVChaveDmc(0, 1));  // an integration has a day
    estraga(aChaves[6], 0);
}

}  // namespace
