// A store whose version file is not there: version 0 only where nothing says otherwise. And listed files
// that are gone, stamps that were left, records that no program of this system wrote.
#include "middleware/BaseMiddleware.h"
#include "support/codes/XVCodigos.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";

class CXVVersaoAusenteTeste : public CXVCenarioConversao {
  protected:
    void Recomeca(const TArquivos& rArquivos) {
        m_Arquivos.Restaura(m_vazio);
        Instala(rArquivos);
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
        for (const bool bSomenteLeitura : {false, true}) {
            CBaseMiddleware loja;
            loja.SetSomenteLeitura(bSomenteLeitura);
            EXPECT_NE(loja.Inicializa(&m_Dono), S_OK);
        }
        EXPECT_EQ(m_Arquivos.Diferenca(antes, RetratoSemLogs()), "");
        bool bNomeado = false;
        for (const auto& falha : captura.GetFalhas())
            bNomeado |= falha.sMensagem.find(sNomeado) != std::string::npos;
        EXPECT_TRUE(bNomeado) << sNomeado;
    }
    TArquivos SemVersao(unsigned uiVersao, bool bCabecalho) const {
        TArquivos base = CXVFabricaBases(uiVersao, bCabecalho).Cria();
        base.erase(k_pszVersao);
        return base;
    }

    const CXVSistemaArquivosMemoria::TRetrato m_vazio = m_Arquivos.Retrata();
};

// Up to version 2 the days' files are in the first layout; from 2 on the key map is not.
TEST_F(CXVVersaoAusenteTeste, RegistrosDeLeiautePosteriorContradizemAVersaoZero) {
    for (const bool bCabecalho : {false, true})
        for (const bool bControle : {false, true})
            for (unsigned uiVersao = 2; uiVersao <= 5; ++uiVersao) {
                TArquivos base = SemVersao(uiVersao, bCabecalho);
                if (bControle) base[k_pszControle] = CXVBytes().Texto("CRINDEXINTEG.dat");
                Recomeca(base);
                EsperaRecusa("CRCHAVEREGTER.dat", "version " + std::to_string(uiVersao));
                base.erase("CRCHAVEREGTER.dat");
                if (uiVersao < 3) continue;
                Recomeca(base);
                EsperaRecusa(CXVFabricaBases::NomeMembro(0),
                             "days alone, version " + std::to_string(uiVersao));
            }
}

TEST_F(CXVVersaoAusenteTeste, CarimboDePassoPosteriorContradizAVersaoZero) {
    const TArquivos base = SemVersao(0, true);
    for (const auto& [sNome, sBytes] : base)
        for (const unsigned uiCarimbo : {2U, 5U, 6U}) {
            TArquivos alterada = base;
            alterada[sNome] = XVArquivoDoTeste({sNome, 3, uiCarimbo}, Dados(sBytes));
            Recomeca(alterada);
            EsperaRecusa(sNome, sNome + std::to_string(uiCarimbo));
        }
    // A stamp in a header that does not hold says nothing: the damage is the reason, not the version.
    const std::string sMembro = CXVFabricaBases::NomeMembro(1);
    TArquivos danificada = base;
    danificada[sMembro] = XVArquivoDoTeste({sMembro, 3, 5}, Dados(base.at(sMembro)));
    danificada[sMembro][130] ^= 1;
    Recomeca(danificada);
    EXPECT_EQ(Converte(), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
}

TEST_F(CXVVersaoAusenteTeste, VersaoEControleAusentesNaoProvamNada) {
    // Date-times, index and texts look alike in every version.
    for (const char* pszNome : {"CRDTHRINTEG.dat", "CRINDEXINTEG.dat", "CRINTEGMIDJSON20230501.dat"}) {
        const std::string sBytes = SemVersao(0, true)[pszNome];
        Recomeca({{pszNome, sBytes}});
        EsperaRecusa(k_pszVersao, pszNome);
        // With the list there, and the version file not on it, there never was one.
        Recomeca({{pszNome, sBytes}, {k_pszControle, CXVBytes().Texto(pszNome)}});
        EXPECT_EQ(Converte(), S_OK) << pszNome;
    }
    // Records that are possible in either layout show neither.
    const std::string sMembro = CXVFabricaBases::NomeMembro(0);
    Recomeca({{sMembro, XVArquivoDoTeste({sMembro}, std::string(880, '\0'))}});
    EsperaRecusa(k_pszVersao, "zero records");
    // Once converted, emptied of both: refused, not converted once more.
    Recomeca(CXVFabricaBases(0, true).Cria());
    ASSERT_EQ(Converte(), S_OK);
    for (const char* pszNome : {k_pszVersao, k_pszControle})
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
    EsperaRecusa("CRCHAVEREGTER.dat", "converted and emptied");
}

TEST_F(CXVVersaoAusenteTeste, VersaoZeroDeVerdadeConverteEADiretorioSemDadosServe) {
    for (const bool bCabecalho : {false, true}) {
        Recomeca(SemVersao(0, bCabecalho));
        EXPECT_EQ(Converte(), S_OK);
        for (const auto& [sNome, sDados] : CXVFabricaBases(0, bCabecalho).DadosConvertidos())
            EXPECT_EQ(Dados(Conteudo(sNome)), sDados) << sNome;
        TArquivos base = SemVersao(1, bCabecalho);  // its files are those of version 0
        base.erase("CRCHAVEREGTER.dat");
        Recomeca(base);
        EXPECT_EQ(Converte(), S_OK);
    }
    const std::string sMembro = CXVFabricaBases::NomeMembro(0);
    Recomeca({{"CRINDEXINTEG.dat", ""}, {sMembro, XVArquivoDoTeste({sMembro}, "")}});
    EXPECT_EQ(Converte(), S_OK) << "nothing in it";
}

TEST_F(CXVVersaoAusenteTeste, VistaNaoMostraBaseDeVersaoAnteriorComoVazia) {
    TArquivos base = SemVersao(0, true);
    base.erase("CRINDEXINTEG.dat");
    Recomeca(base);
    CBaseMiddleware loja;
    loja.SetSomenteLeitura(true);
    EXPECT_EQ(loja.Inicializa(&m_Dono), E_XVCR_VERSAO_INCOMPATIVEL);
}

TEST_F(CXVVersaoAusenteTeste, VistaRecusaArquivoUnicoListadoEAusenteSemMudarNada) {
    Recomeca(CXVFabricaBases(0, true).Cria());
    ASSERT_EQ(Converte(), S_OK);
    const auto inteira = m_Arquivos.Retrata();
    const auto abre = [&] {
        const auto antes = RetratoSemLogs();
        CBaseMiddleware loja;
        loja.SetSomenteLeitura(true);
        const HRESULT hr = loja.Inicializa(&m_Dono);
        EXPECT_EQ(loja.Finaliza(), S_OK);
        EXPECT_EQ(m_Arquivos.Diferenca(antes, RetratoSemLogs()), "");
        return hr;
    };
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRCHAVEREGTER.dat", "CRDTHRINTEG.dat"}) {
        m_Arquivos.Restaura(inteira);
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
        m_Arquivos.CriaArquivo(PastaDados(k_pszControle), CXVBytes().Texto("OUTRO.dat").Texto(pszNome));
        EXPECT_EQ(abre(), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << pszNome;
        m_Arquivos.CriaArquivo(PastaDados(k_pszControle), CXVBytes().Texto("OUTRO.dat"));
        EXPECT_EQ(abre(), S_OK) << pszNome;
    }
}

TEST_F(CXVVersaoAusenteTeste, ArquivoListadoAusenteParaAConversaoPeloNome) {
    for (unsigned uiVersao = 0; uiVersao < 5; ++uiVersao) {
        const TArquivos base = CXVFabricaBases(uiVersao, true).Cria();
        CXVBytes lista;
        for (const auto& it : base)
            lista.Texto(it.first == "CRINTEGMID20230502.dat" ? "crintegmid20230502.DAT" : it.first);
        for (const auto& it : base) {
            Recomeca(base);
            m_Arquivos.CriaArquivo(PastaDados(k_pszControle), lista);
            ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(it.first)).Ok());
            EsperaRecusa(it.first == "CRINTEGMID20230502.dat" ? "crintegmid20230502.DAT" : it.first,
                         it.first + " of version " + std::to_string(uiVersao));
        }
        Recomeca(base);
        m_Arquivos.CriaArquivo(PastaDados(k_pszControle), CXVBytes(lista).Texto("OUTROMODULO.dat"));
        EXPECT_EQ(Converte(), S_OK) << "another module's file is not this store's business";
    }
}

// A file that carries the step's stamp or a later one has been through it; one before has not.
TEST_F(CXVVersaoAusenteTeste, CadaPassoRespeitaOsCarimbos) {
    const auto converte = [&](unsigned uiVersao, const std::string& sNome, unsigned uiCarimbo) {
        TArquivos base = CXVFabricaBases(uiVersao, true).Cria();
        base[sNome] = XVArquivoDoTeste({sNome, 3, uiCarimbo}, Dados(base[sNome]));
        Recomeca(base);
        EXPECT_EQ(Converte(), S_OK);
        return Conteudo(sNome) == base[sNome];
    };
    const std::string sMembro = CXVFabricaBases::NomeMembro(1);
    for (unsigned uiCarimbo = 0; uiCarimbo <= 6; ++uiCarimbo) {
        EXPECT_EQ(converte(3, sMembro, uiCarimbo), uiCarimbo >= 4) << uiCarimbo;
        EXPECT_EQ(converte(4, "CRCHAVEREGTER.dat", uiCarimbo), uiCarimbo >= 5) << uiCarimbo;
        EXPECT_EQ(converte(4, "CRDTHRINTEG.dat", uiCarimbo), uiCarimbo >= 5) << uiCarimbo;
    }
    // A stamp in a header that does not hold is no stamp: the file is refused.
    TArquivos base = CXVFabricaBases(3, true).Cria();
    base[sMembro] = XVArquivoDoTeste({sMembro, 3, 4}, Dados(base[sMembro]));
    base[sMembro][130] ^= 1;
    Recomeca(base);
    EXPECT_EQ(Converte(), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(Conteudo(sMembro), base[sMembro]);
    ConfereSemRestos();
}

// Files without header: what no program of this system can have written gets none, in the layout of the
// store's version.
class CXVConteudoImpossivelTeste : public CXVVersaoAusenteTeste {
  protected:
    // uiOffset in the second record of the file.
    void Estraga(const std::string& sNome, std::size_t uiTamanho, std::size_t uiOffset,
                 const CXVBytes& rBytes, unsigned uiVersao) {
        SCOPED_TRACE(testing::Message() << sNome << " version " << uiVersao << " offset " << uiOffset);
        TArquivos base = CXVFabricaBases(uiVersao, false).Cria();
        base[sNome].replace(uiTamanho + uiOffset, rBytes.Str().size(), rBytes.Str());
        Recomeca(base);
        CBaseMiddleware loja;
        HRESULT hr = loja.Inicializa(&m_Dono);
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        if (SUCCEEDED(hr)) hr = loja.LeIntegracao({XVChaveDmc(XVDma(2023, 5, 1), 1)}, &reg, 0);
        EXPECT_EQ(hr, E_XVCR_CRC_CABECALHO_NAO_CONFERE);
        EXPECT_EQ(loja.Finaliza(), S_OK);
        EXPECT_EQ(Conteudo(sNome), base[sNome]);
        EXPECT_EQ(Conteudo(sNome.substr(0, sNome.size() - 3) + "cab"), "<ausente>");
    }
};

TEST_F(CXVConteudoImpossivelTeste, DatasEPonteirosDeCadaLeiaute) {
    const CXVBytes dia = CXVBytes().U64(XVChaveDmc(XVDma(2023, 2, 30), 1));  // no day of the calendar
    const CXVBytes reservado = CXVBytes().U64(XVChaveDmc(XVDma(2023, 5, 1), 1) | 0x40);
    const CXVBytes semPonteiro = CXVBytes().U64(XVChaveDmc(XVDma(2023, 5, 1), 0));
    const CXVBytes segundos = CXVBytes().U64(XVDma(2023, 5, 1) << 32 | 86400);
    const CXVBytes soSegundos = CXVBytes().U64(1);
    const std::string sDia = CXVFabricaBases::NomeMembro(0);
    for (const CXVBytes& rDmc : {dia, reservado, semPonteiro}) {
        Estraga("CRINDEXINTEG.dat", 24, 8, rDmc, 5);
        for (const std::size_t uiOffset : {0U, 8U}) {
            Estraga(sDia, 80, uiOffset, rDmc, 2);
            Estraga(sDia, 88, uiOffset, rDmc, 3);
            Estraga(sDia, 88, uiOffset, rDmc, 5);
        }
        Estraga("CRCHAVEREGTER.dat", 24, 8, rDmc, 1);
        Estraga("CRCHAVEREGTER.dat", 40, 8, rDmc, 5);
        Estraga("CRCHAVEREGTER.dat", 40, 32, rDmc, 5);
    }
    for (const CXVBytes& rDataHora : {segundos, soSegundos}) {
        for (const std::size_t uiOffset : {16U, 24U}) {
            Estraga(sDia, 80, uiOffset, rDataHora, 2);
            Estraga(sDia, 88, uiOffset, rDataHora, 5);
        }
        Estraga("CRDTHRINTEG.dat", 32, 0, rDataHora, 4);
        Estraga("CRDTHRINTEG.dat", 32, 0, rDataHora, 5);
    }
    Estraga("CRINDEXINTEG.dat", 24, 8, CXVBytes().U64(0), 5);
    Estraga("CRINDEXINTEG.dat", 24, 8, CXVBytes().U64(XVChaveDmc(0, 1)), 5);  // an integration has a day
    Estraga("CRCHAVEREGTER.dat", 40, 8, CXVBytes().U64(0), 5);
}

}  // namespace
