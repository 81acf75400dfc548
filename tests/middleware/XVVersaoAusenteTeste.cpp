// A store whose version file is not there: version 0 only where nothing says otherwise. And listed files
// that are gone, stamps that were left, records that no program of this system wrote.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "support/codes/XVCodigos.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

class CXVVersaoAusenteTeste : public CXVCenarioConversao {
  protected:
    void EsperaRecusaDe(const TArquivos& rArquivos, const std::string& sNomeado, const std::string& sCaso) {
        Recomeca(rArquivos);
        EsperaRecusa(sNomeado, sCaso);
        XVUShort usVersao = 0;
        std::vector<SPassoPrevisto> passos;
        CXVConversaoMiddleware conversao(nullptr);
        ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
        EXPECT_EQ(conversao.Simula(&usVersao, &passos), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS)
            << sCaso;
    }
    static TArquivos SemVersao(unsigned uiVersao, bool bCabecalho) {
        TArquivos base = XVBaseDourada(uiVersao, bCabecalho);
        base.erase(k_pszVersao);
        return base;
    }
};

// Up to version 2 the days' files are in the first layout; from 2 on the key map is not.
TEST_F(CXVVersaoAusenteTeste, RegistrosOuCarimboPosterioresContradizemAVersaoZero) {
    for (const bool bCabecalho : {false, true})
        for (unsigned uiVersao = 2; uiVersao <= 5; ++uiVersao) {
            TArquivos base = SemVersao(uiVersao, bCabecalho);
            if (bCabecalho) base[k_pszControle] = CXVBytes().Texto(k_pszIndice);
            EsperaRecusaDe(base, k_pszMapa, "version " + std::to_string(uiVersao));
            base.erase(k_pszMapa);
            if (uiVersao >= 3)
                EsperaRecusaDe(base, k_apszDias[0], "days alone, version " + std::to_string(uiVersao));
        }
    const TArquivos zero = SemVersao(0, true);
    for (const auto& [sNome, sBytes] : zero)
        for (const unsigned uiCarimbo : {2U, 6U}) {
            TArquivos alterada = zero;
            alterada[sNome] = XVArquivoDoTeste({sNome, 3, uiCarimbo}, Dados(sBytes));
            EsperaRecusaDe(alterada, sNome, sNome + std::to_string(uiCarimbo));
        }
}

TEST_F(CXVVersaoAusenteTeste, VersaoEControleAusentesNaoProvamNada) {
    // Date-times, index and texts look alike in every version.
    for (const char* pszNome : {k_pszDatas, k_pszIndice, "CRINTEGMIDJSON20230605.dat"}) {
        const std::string sBytes = SemVersao(0, true)[pszNome];
        EsperaRecusaDe({{pszNome, sBytes}}, k_pszVersao, pszNome);
        // With the list there, and the version file not on it, there never was one.
        Recomeca({{pszNome, sBytes}, {k_pszControle, CXVBytes().Texto(pszNome)}});
        EXPECT_EQ(Converte(), S_OK) << pszNome;
    }
    // Records that are possible in either layout show neither.
    EsperaRecusaDe({{k_apszDias[0], XVArquivoDoTeste({k_apszDias[0]}, std::string(880, '\0'))}}, k_pszVersao,
                   "zero records");
    Recomeca({{k_apszDias[0], SemVersao(0, true)[k_apszDias[0]]},
              {k_apszDias[1], XVArquivoDoTeste({k_apszDias[1]}, std::string(880, '\0'))}});
    EXPECT_EQ(Converte(), S_OK) << "one day that shows the first layout is enough";
    Recomeca({{k_pszIndice, ""}, {k_apszDias[0], XVArquivoDoTeste({k_apszDias[0]}, "")}});
    EXPECT_EQ(Converte(), S_OK) << "nothing in it";
}

TEST_F(CXVVersaoAusenteTeste, VistaSoAbreAVersaoAtual) {
    const auto visita = [&](const TArquivos& rBase) {
        Recomeca(rBase);
        const auto antes = m_Arquivos.Retrata();
        const HRESULT hr = AbreEFecha(true);
        EXPECT_EQ(m_Arquivos.Diferenca(antes, m_Arquivos.Retrata()), "");
        return hr;
    };
    for (unsigned uiVersao = 0; uiVersao < 5; ++uiVersao)
        EXPECT_EQ(visita(XVBaseDourada(uiVersao, true)), E_XVCR_VERSAO_INCOMPATIVEL) << uiVersao;
    EXPECT_EQ(visita({{k_pszVersao, XVBaseDourada(3, true).at(k_pszVersao)}}), E_XVCR_VERSAO_INCOMPATIVEL);
    EXPECT_EQ(visita({}), S_OK) << "a directory without a store";
    const TArquivos atual = XVBaseDourada(5, true);
    EXPECT_EQ(visita(atual), S_OK);
    // A store that somebody is making passes through the versions.
    Recomeca(
        {{k_pszVersao, XVBaseDourada(3, true).at(k_pszVersao)}, {k_pszNomeDiario, ""}, {k_pszIndice, ""}});
    std::unique_ptr<IXVArquivo> pEscritor;
    ASSERT_TRUE(m_Arquivos
                    .Abre(PastaDados(k_pszNomeDiario),
                          {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                           ECriacaoArquivo::eSomenteExistente},
                          pEscritor)
                    .Ok());
    m_Relogio.SetAoDormir([&](XVUInt64) { Poe(k_pszVersao, atual.at(k_pszVersao)); });
    EXPECT_EQ(AbreEFecha(true), S_OK) << "it is waited for";
    m_Relogio.SetAoDormir(nullptr);
    pEscritor.reset();
    CXVBytes lista;
    for (const auto& it : atual) lista.Texto(it.first);
    for (const char* pszNome : {k_pszIndice, k_pszMapa, k_pszDatas}) {
        TArquivos semUm = atual;
        semUm.erase(pszNome);
        EXPECT_EQ(visita(semUm), S_OK) << pszNome << " was never made";
        semUm[k_pszControle] = lista;
        EXPECT_EQ(visita(semUm), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << pszNome;
        EXPECT_EQ(AbreEFecha(false), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << pszNome;
        EXPECT_TRUE(XVTextoNoLog(m_Captura, pszNome));
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
            TArquivos semUm = base;
            semUm[k_pszControle] = lista;
            semUm.erase(it.first);
            EsperaRecusaDe(semUm, listado(it.first), it.first + " of version " + std::to_string(uiVersao));
        }
        Recomeca(base);
        Poe(k_pszControle, lista.Texto("OUTROMODULO.dat"));
        EXPECT_EQ(Converte(), S_OK) << "another module's file is not this store's business";
    }
}

TEST_F(CXVVersaoAusenteTeste, ArquivoDanificadoEncerraOPassoPeloNomeETudoFicaComoEstava) {
    const std::string sDia = k_apszDias[1];
    for (const unsigned uiVersao : {0U, 3U}) {
        TArquivos base = uiVersao == 0 ? SemVersao(0, true) : XVBaseDourada(3, true);
        const std::string sBom = base[sDia];
        // A stamp in a header that does not hold is no stamp.
        std::string sCarimbo = XVArquivoDoTeste({sDia, 3, 5}, Dados(sBom));
        sCarimbo[130] ^= 1;
        const std::pair<std::string, HRESULT> aCasos[] = {
            {sCarimbo, E_XVCR_CRC_CABECALHO_NAO_CONFERE},
            {sBom.substr(0, sBom.size() - (uiVersao == 0 ? 80 : 88)), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE},
            {Dados(sBom).substr(0, 79), E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA}};
        for (const auto& [sBytes, hr] : aCasos) {
            base[sDia] = sBytes;
            Recomeca(base);
            const CXVCapturaTrace captura;
            EXPECT_EQ(Converte(), hr) << uiVersao;
            EXPECT_EQ(captura.GetFalhas().back().sExpressao,
                      uiVersao == 0 ? "ConverteBaseV01()" : "ConverteBaseV04()");
            EXPECT_EQ(captura.GetFalhas().back().sFuncao, "CBaseMiddleware::ExecutaConversao");
            for (const auto& [sNome, sAntes] : base) EXPECT_EQ(Conteudo(sNome), sAntes) << sNome;
            ConfereSemRestos();
        }
    }
}

// Files without header: what no program of this system can have written gets none, in the layout of the
// store's version. Offsets are of a field in the second record.
TEST_F(CXVVersaoAusenteTeste, DatasEPonteirosImpossiveisDeCadaLeiaute) {
    struct SCampo {
        const char* pszNome;
        std::size_t uiRegistro, uiOffset;
        unsigned uiVersao;
    };
    using TCampos = std::vector<SCampo>;
    const XVUInt64 uiDia = XVDma(2023, 5, 1);
    const TCampos chaves{{k_pszIndice, 24, 8, 5},   {k_apszDias[0], 80, 0, 2}, {k_apszDias[0], 80, 8, 2},
                         {k_apszDias[0], 88, 0, 3}, {k_apszDias[0], 88, 8, 5}, {k_pszMapa, 24, 8, 1},
                         {k_pszMapa, 40, 8, 5},     {k_pszMapa, 40, 32, 5}};
    const TCampos datas{{k_apszDias[0], 80, 16, 2}, {k_apszDias[0], 80, 24, 2}, {k_apszDias[0], 88, 16, 5},
                        {k_apszDias[0], 88, 24, 5}, {k_pszDatas, 32, 0, 4},     {k_pszDatas, 32, 0, 5}};
    const std::pair<XVUInt64, TCampos> aValores[] = {
        {XVChaveDmc(XVDma(2023, 2, 30), 1), chaves},  // no day of the calendar
        {XVChaveDmc(uiDia, 1) | 0x40, chaves},        // a reserved bit
        {XVChaveDmc(uiDia, 0), chaves},
        {0, {chaves[0], chaves[6]}},
        {XVChaveDmc(0, 1), {chaves[0]}},  // an integration has a day
        {uiDia << 32 | 86400, datas},
        {1, datas}};
    for (const auto& [uiValor, campos] : aValores)
        for (const auto& [pszNome, uiRegistro, uiOffset, uiVersao] : campos) {
            TArquivos base = XVBaseDourada(uiVersao, false);
            base[pszNome].replace(uiRegistro + uiOffset, 8, CXVBytes().U64(uiValor).Str());
            Recomeca(base);
            CBaseMiddleware loja;
            HRESULT hr = loja.Inicializa(&m_Dono);
            if (SUCCEEDED(hr)) hr = XVLe(loja, {XVChaveDmc(XVDma(2023, 6, 5), 1)}).hr;
            EXPECT_EQ(hr, E_XVCR_CRC_CABECALHO_NAO_CONFERE)
                << pszNome << " version " << uiVersao << " offset " << uiOffset << " value " << uiValor;
            EXPECT_EQ(Conteudo(pszNome), base[pszNome]);
        }
}

}  // namespace
