// Viewing: beside a writer at work, on a medium that cannot be written, and
// of files that say where they end.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVIntegracaoMarcada.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

class CXVVisaoTeste : public CXVCenarioLoja {
  protected:
    TLoja AbreVisor() const {
        auto pVisor = std::make_unique<CBaseMiddleware>();
        pVisor->SetSomenteLeitura(true);
        EXPECT_EQ(pVisor->Inicializa(&m_Dono), S_OK);
        return pVisor;
    }
};

// The writer works between any two file operations of the viewer.
TEST_F(CXVVisaoTeste, OperacaoInteiraNoMeioDaLeitura) {
    TLoja pEscritor = Abre();
    REG_XVDMC regDmc;
    ASSERT_EQ(XVIntegracaoMarcada::GravaNova(*pEscritor, 1, 1, &regDmc), S_OK);
    const TLoja pVisor = AbreVisor();
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    XVUInt64 uiVersao = 1;
    for (const bool bAberta : {true, false}) {  // the store stays open, or is opened and closed
        if (!bAberta) pEscritor.reset();
        bool bAcabou = false;
        for (unsigned uiOnde = 1; !bAcabou; ++uiOnde) {
            ASSERT_LT(uiOnde, 300U);
            unsigned uiOperacoes = 0;
            const CXVGanchoArquivos depois([&] {
                if (++uiOperacoes != uiOnde) return;
                if (!bAberta) pEscritor = Abre();
                EXPECT_EQ(XVIntegracaoMarcada::GravaAlterada(*pEscritor, regDmc, 1, ++uiVersao), S_OK);
                if (!bAberta) pEscritor.reset();
            });
            XVUInt64 uiLida = 0;
            EXPECT_EQ(XVIntegracaoMarcada::Confere(XVLe(*pVisor, regDmc), &uiLida), "")
                << "operation " << uiOnde;
            EXPECT_GE(uiLida + 1, uiVersao);
            bAcabou = uiOperacoes < uiOnde;
        }
    }
}

// No search finds a mixture: the index record from before an operation and the record from after it.
TEST_F(CXVVisaoTeste, OperacaoInteiraNoMeioDaBusca) {
    const auto integracao = [](bool bDepois) {
        CXVIntegracaoTeste nova(1, Mercos, bDepois ? eXVSMiddleware_Sucesso : eXVSMiddleware_Enviado);
        nova.reg.eTipoIntegracao = bDepois ? eXVSMiddleware_CadastroProduto : eXVSMiddleware_BuscaPedidos;
        return nova;
    };
    const TLoja pEscritor = Abre();
    REG_XVDMC regDmc = Grava(*pEscritor, integracao(false));
    const TLoja pVisor = AbreVisor();
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    bool bAcabou = false;
    for (unsigned uiOnde = 1; !bAcabou; ++uiOnde) {
        ASSERT_LT(uiOnde, 300U);
        ASSERT_EQ(pEscritor->GravaIntegracao(&regDmc, integracao(false).Ptr()), S_OK);
        unsigned uiOperacoes = 0;
        const CXVGanchoArquivos depois([&] {
            if (++uiOperacoes != uiOnde) return;
            EXPECT_EQ(pEscritor->GravaIntegracao(&regDmc, integracao(true).Ptr()), S_OK);
        });
        EXPECT_EQ(
            XVBusca(*pVisor, {.tipos = {eXVSMiddleware_CadastroProduto}, .status = {eXVSMiddleware_Enviado}}),
            TListaDmc())
            << "operation " << uiOnde;
        bAcabou = uiOperacoes < uiOnde;
    }
}

TEST_F(CXVVisaoTeste, NadaEhEscritoNemComErro) {
    REG_XVDMC regDmc;
    {
        const TLoja pLoja = Abre();
        regDmc = Grava(*pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
    }
    CXVSistemaArquivosMorte contador(m_Arquivos, EContagem::eAlteracoes);
    const CXVGuardaSistemaArquivos guarda(contador);
    contador.Nasce(0);
    const auto antes = m_Arquivos.Retrata();
    {
        const TLoja pVisor = AbreVisor();
        const TRetratoLoja retrato = XVRetrataLoja(*pVisor);
        EXPECT_EQ(XVLe(*pVisor, regDmc).sJSON, "{}");
        EXPECT_EQ(contador.GetQuantidade(), 0U) << "operations that can change something";
        const CXVCapturaTrace escreve(false);  // and to the log
        EXPECT_EQ(XVLe(*pVisor, {XVChaveDmc(k_uiHoje, 77)}).hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        EXPECT_FALSE(escreve.GetFalhas().empty());
    }
    bool bNosProgramas = false;
    for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata()) {
        const auto it = antes.find(sCaminho);
        if (it != antes.end() && it->second == rArquivo) continue;
        EXPECT_NE(sCaminho.find("XVProfilerErros_Pgms_"), std::string::npos) << sCaminho << " has changed";
        bNosProgramas = true;
    }
    EXPECT_TRUE(bNosProgramas);
}

TEST_F(CXVVisaoTeste, ArquivoAcabaOndeOCabecalhoDiz) {
    {
        const TLoja pLoja = Abre();
        Grava(*pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
    }
    const TRetratoLoja esperado = XVRetrataLoja(*AbreVisor());
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRINTEGMID20240315.dat", "CRINTEGMIDJSON20240315.dat",
                                "CRINTEGMIDMENS20240315.dat"}) {
        SCOPED_TRACE(pszNome);
        const std::string sAntes = Conteudo(pszNome);
        for (const std::size_t uiSobra : {std::size_t{1}, std::size_t{24}, std::size_t{100}}) {
            m_Arquivos.CriaArquivo(PastaDados(pszNome), sAntes + std::string(uiSobra, '\xFF'));
            EXPECT_EQ(XVDiferenca(esperado, XVRetrataLoja(*AbreVisor())), "");
        }
        m_Arquivos.CriaArquivo(PastaDados(pszNome), sAntes);
    }
}

TEST_F(CXVVisaoTeste, VisorAntigoVeODiaNovoEOQueEraDeOutroMomento) {
    const TLoja pVisor = AbreVisor();  // of a directory without a store
    EXPECT_TRUE(XVBusca(*pVisor).empty());
    REG_XVDMC regPrimeira;
    {
        const TLoja pEscritor = Abre();
        regPrimeira = Grava(*pEscritor, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
        EXPECT_EQ(XVLe(*pVisor, regPrimeira).sMensagem, "m");
    }
    EXPECT_EQ(XVBusca(*pVisor), (TListaDmc{regPrimeira.uiValor})) << "nobody has it open any more";
    {
        const TLoja pEscritor = Abre();
        SetDia(16);
        const REG_XVDMC regOutra = Grava(*pEscritor, CXVIntegracaoTeste(2).Textos("{\"b\":1}", "n", "{}"));
        EXPECT_EQ(XVLe(*pVisor, regOutra).sJSON, "{\"b\":1}") << "a day's first file";
        EXPECT_EQ(pEscritor->GravaChaveRegistroTelvoParaTerceiro(
                      {500, XVRegistroMapa(1), 0, k_eTipoMapa, Mercos, {}}),
                  S_OK);
        EXPECT_EQ(XVBusca(*pVisor, {.de = 2, .sistemas = {Mercos}}), (TListaDmc{regOutra.uiValor}));
        EXPECT_EQ(XVDiferenca(XVRetrataLoja(*pEscritor), XVRetrataLoja(*pVisor)), "");
        SetDia(15, 13);
        const std::string sGrande(300000, 'g');
        const REG_XVDMC regGrande = Grava(*pEscritor, CXVIntegracaoTeste(3).Textos(sGrande, "g", sGrande));
        EXPECT_EQ(XVLe(*pVisor, regGrande).sRetorno, sGrande) << "behind the texts in memory";
        EXPECT_EQ(XVLe(*pVisor, regPrimeira).sMensagem, "m");
    }
    EXPECT_EQ(XVDiferenca(XVRetrataLoja(*AbreVisor()), XVRetrataLoja(*pVisor)), "");
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "a viewer at rest holds no file";
}

TEST_F(CXVVisaoTeste, DiarioQueNaoExplicaOsArquivosNaoMudaOQueSeVe) {
    REG_XVDMC regDmc;
    std::string sDiario;
    {
        const TLoja pLoja = Abre();
        regDmc = Grava(*pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
        sDiario = Conteudo(k_pszNomeDiario);
        Grava(*pLoja, CXVIntegracaoTeste(2).Textos("{}", "n", "{}"));
        Grava(*pLoja, CXVIntegracaoTeste(3).Textos("{}", "o", "{}"));
    }
    const TRetratoLoja esperado = XVRetrataLoja(*AbreVisor());
    ASSERT_GT(sDiario.size(), k_uiTamanhoPaginaDiario);
    // Of an earlier time; cut short in every part of its head; of noise.
    std::vector<std::string> lista{sDiario, std::string(sDiario.size(), '\xA5')};
    for (const std::size_t ui : {std::size_t{0}, std::size_t{31}, std::size_t{519}, std::size_t{520},
                                 std::size_t{4095}, std::size_t{4096}, sDiario.size() - 1})
        lista.push_back(sDiario.substr(0, ui));
    for (const std::string& sConteudo : lista) {
        m_Arquivos.CriaArquivo(PastaDados(k_pszNomeDiario), sConteudo);
        EXPECT_EQ(XVDiferenca(esperado, XVRetrataLoja(*AbreVisor())), "") << sConteudo.size();
        EXPECT_EQ(Conteudo(k_pszNomeDiario), sConteudo);
    }
}

}  // namespace
