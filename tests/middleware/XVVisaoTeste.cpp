// Viewing: in the middle of a writer's work, without writing anything, and of files that say where they end.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVConteudoComDono.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

class CXVVisaoTeste : public CXVCenarioLoja {
  protected:
    TLoja AbreVisor() const {
        auto pVisor = std::make_unique<CBaseMiddleware>();
        EXPECT_EQ(XVInicializa(*pVisor, true), S_OK);
        return pVisor;
    }
    // What is listed is, byte for byte, what the files hold.
    void ConfereListas(CBaseMiddleware& rLoja) const {
        ConfereLista(rLoja, &CBaseMiddleware::ListaIndice, "CRINDEXINTEG.dat");
        ConfereLista(rLoja, &CBaseMiddleware::ListaChavesRegistro, "CRCHAVEREGTER.dat");
        ConfereLista(rLoja, &CBaseMiddleware::ListaDatasHoras, "CRDTHRINTEG.dat");
    }

  private:
    template <class T>
    void ConfereLista(CBaseMiddleware& rLoja, HRESULT (CBaseMiddleware::*pLista)(std::vector<T>*),
                      const std::string& sNome) const {
        std::vector<T> lista(3);
        EXPECT_EQ((rLoja.*pLista)(&lista), S_OK);
        const std::string_view sBytes(reinterpret_cast<const char*>(lista.data()), lista.size() * sizeof(T));
        EXPECT_TRUE(sBytes == Dados(Conteudo(sNome))) << sNome << ": " << lista.size();
    }
};

// The writer works between any two file operations of the viewer. What is read is of one moment, and no
// search finds a mixture: the index record from before an operation and the record from after it.
TEST_F(CXVVisaoTeste, OperacaoInteiraNoMeioDaLeituraOuDaBusca) {
    CXVSorteio sorteio(1);
    unsigned uiVersao = 0;
    TLoja pEscritor = Abre();
    REG_XVDMC regDmc;
    std::string sAntes, sDepois;
    // Type and status change together: products are failures.
    const auto grava = [&] {
        const bool bProduto = ++uiVersao % 2 == 0;
        CXVIntegracaoTeste integracao = XVIntegracaoComDono(
            uiVersao, Mercos, bProduto ? eXVSMiddleware_Erro : eXVSMiddleware_Enviado, sorteio, 70000);
        if (bProduto) integracao.reg.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
        EXPECT_EQ(pEscritor->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
        sAntes = std::exchange(sDepois, XVRetrataIntegracao(*pEscritor, regDmc));
    };
    grava();
    const TLoja pVisor = AbreVisor();
    const std::function<void()> aPerguntas[] = {
        [&] {
            const std::string sLida = XVRetrataIntegracao(*pVisor, regDmc);
            EXPECT_TRUE(sLida == sAntes || sLida == sDepois) << sLida;
        },
        [&] {
            const SFiltroTeste filtro{.tipos = {eXVSMiddleware_CadastroProduto},
                                      .status = {eXVSMiddleware_Enviado}};
            EXPECT_EQ(XVBusca(*pVisor, filtro), TListaDmc());
        }};
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    for (const bool bAberta : {true, false}) {  // the store stays open, or is opened and closed
        if (!bAberta) pEscritor.reset();
        for (const auto& fnPergunta : aPerguntas) {
            unsigned uiOperacoes = 0;
            for (unsigned uiOnde = 1; uiOperacoes + 1 >= uiOnde && !HasFailure(); ++uiOnde) {
                SCOPED_TRACE(uiOnde);
                ASSERT_LT(uiOnde, 300U);
                uiOperacoes = 0;
                const CXVGanchoArquivos depois([&] {
                    if (++uiOperacoes != uiOnde) return;
                    if (!bAberta) pEscritor = Abre();
                    grava();
                    if (!bAberta) pEscritor.reset();
                });
                fnPergunta();
            }
        }
    }
}

// What a search found is read again in one moment, in smaller parts each time that somebody wrote meanwhile.
TEST_F(CXVVisaoTeste, BuscaRepetidaEmPartesMenoresAchaCadaUmaUmaVez) {
    TListaDmc esperada;
    {
        const TLoja pEscritor = Abre();
        for (unsigned i = 1; i <= 130; ++i)  // more than the second attempt reads
            esperada.push_back(Grava(*pEscritor, CXVIntegracaoTeste(i)).uiValor);
    }
    const TLoja pVisor = AbreVisor();
    const SFiltroTeste filtro{.transacoes = {CXVIntegracaoTeste().reg.eTipoTransacao}};
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    CXVIntegracaoTeste outra(131);
    outra.reg.eTipoTransacao = eXVSMiddleware_Exclusao;
    unsigned uiOperacoes = 0;
    unsigned uiOnde = 0;
    const CXVGanchoArquivos depois([&] {
        if (++uiOperacoes == uiOnde) Grava(*Abre(), outra);
    });
    EXPECT_EQ(XVBusca(*pVisor, filtro), esperada);
    const unsigned uiTodas = uiOperacoes;
    for (unsigned i = 1; i < 8; ++i) {
        uiOperacoes = 0;
        uiOnde = uiTodas * i / 8;
        EXPECT_EQ(XVBusca(*pVisor, filtro), esperada) << i;
    }
}

// Neither by reading nor by an error, nor when it is asked to record.
TEST_F(CXVVisaoTeste, NadaEhEscritoNemComErro) {
    REG_XVDMC regDmc = Grava(*Abre(), CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
    CXVSistemaArquivosMorte contador(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(contador);
    contador.Nasce(0);
    const auto antes = m_Arquivos.Retrata();
    {
        const TLoja pVisor = AbreVisor();
        const TRetratoLoja retrato = XVRetrataLoja(*pVisor);
        EXPECT_EQ(XVLe(*pVisor, regDmc).sJSON, "{}");
        EXPECT_EQ(pVisor->GravaIntegracao(&regDmc, CXVIntegracaoTeste().Ptr()), eXVReadOnly);
        EXPECT_EQ(pVisor->GravaChaveRegistroTelvoParaTerceiro({1, regDmc, 0, 6, 16, {}}), eXVReadOnly);
        EXPECT_EQ(pVisor->GravaDataHoraIntegracaoTerceiro({{}, 9, 2, 1, {}}), eXVReadOnly);
        const CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = regDmc};
        EXPECT_EQ(pVisor->GravaStatusIntegracao(status.ComoRegistro()), eXVReadOnly);
        EXPECT_EQ(pVisor->GravaIntegracaoInstantanea(&regDmc, {}), eXVReadOnly);
        EXPECT_EQ(pVisor->GravaPendenciaIntegracao(regDmc, {}), eXVReadOnly);
        EXPECT_EQ(contador.GetQuantidade(), 0U) << "operations that can change something";
        const CXVCapturaTrace escreve(false);  // and to the log
        EXPECT_EQ(XVLe(*pVisor, {XVChaveDmc(k_uiHoje, 77)}).hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        EXPECT_FALSE(escreve.GetFalhas().empty());
    }
    auto depois = m_Arquivos.Retrata();
    EXPECT_EQ(
        std::erase_if(depois, [](const auto& it) { return it.first.find("_Pgms_") != std::string::npos; }),
        1U);
    EXPECT_EQ(m_Arquivos.Diferenca(antes, depois), "");
}

// Longer than a viewer reads at a time, and, of a store that is written to, in memory in more than one piece.
TEST_F(CXVVisaoTeste, ListasEBuscaDeVariosPedacosSaoInteiras) {
    constexpr XVUInt64 k_uiTodas = 20000;
    const CXVIntegracaoTeste integracao(1);
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS regDataHora{
        {XVDataHora(k_uiHoje, 8)}, 9, Mercos, eXVSMiddleware_DataUltimaBusca, {}};
    {
        const TLoja pLoja = Abre();
        const REG_XVDMC regDmc = Grava(*pLoja, integracao);
        EXPECT_EQ(pLoja->GravaChaveRegistroTelvoParaTerceiro({1, regDmc, 0, 6, Mercos, regDmc}), S_OK);
        EXPECT_EQ(pLoja->GravaDataHoraIntegracaoTerceiro(regDataHora), S_OK);
    }
    // The one record again and again; in its first field, and in the key of an index record, the number.
    const auto repete = [&](const std::string& sNome, bool bNumera) {
        const std::string sUm = Dados(Conteudo(sNome));
        ASSERT_GT(sUm.size(), 8U) << sNome;
        std::string sTodos;
        for (XVUInt64 ui = 1; ui <= k_uiTodas; ++ui) {
            const std::string sChave = CXVBytes().U64(XVChaveDmc(k_uiHoje, ui));
            sTodos += bNumera ? CXVBytes().U64(ui).Str() + sUm.substr(8) : sUm;
            if (sNome == "CRINDEXINTEG.dat") sTodos.replace(sTodos.size() - 16, 8, sChave);
        }
        m_Arquivos.CriaArquivo(PastaDados(sNome), XVArquivoDoTeste({.sNome = sNome}, sTodos));
    };
    repete("CRINDEXINTEG.dat", true);
    repete("CRCHAVEREGTER.dat", true);
    repete("CRDTHRINTEG.dat", false);
    repete("CRINTEGMID20240315.dat", false);
    const TLoja pVisor = AbreVisor();
    ConfereListas(*pVisor);
    TListaDmc esperada;
    for (XVUInt64 ui = 1; ui <= k_uiTodas; ++ui) esperada.push_back(XVChaveDmc(k_uiHoje, ui));
    EXPECT_TRUE(XVBusca(*pVisor) == esperada);
    const TLoja pEscritor = Abre();
    esperada.push_back(Grava(*pEscritor, integracao).uiValor);
    EXPECT_EQ(pEscritor->GravaChaveRegistroTelvoParaTerceiro({2, {esperada[1]}, 0, 6, Mercos, {esperada[0]}}),
              S_OK);
    regDataHora.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
    EXPECT_EQ(pEscritor->GravaDataHoraIntegracaoTerceiro(regDataHora), S_OK);
    ConfereListas(*pEscritor);
    EXPECT_TRUE(XVBusca(*pEscritor) == esperada);
    EXPECT_TRUE(XVBusca(*pVisor) == esperada);
}

// Files end where their headers say, and a journal that does not explain them means nothing.
TEST_F(CXVVisaoTeste, SobrasEDiarioAlheioNaoMudamOQueSeVe) {
    std::string sDiario;
    {
        const TLoja pLoja = Abre();
        Grava(*pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
        sDiario = Conteudo(k_pszNomeDiario);
        Grava(*pLoja, CXVIntegracaoTeste(2).Textos("{}", "n", "{}"));
    }
    const TRetratoLoja esperado = XVRetrataLoja(*AbreVisor());
    std::vector<std::pair<std::string, std::string>> mudancas;
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRINTEGMID20240315.dat", "CRINTEGMIDJSON20240315.dat",
                                "CRINTEGMIDMENS20240315.dat"})
        for (const std::size_t uiSobra : {1U, 24U, 100U})
            mudancas.emplace_back(pszNome, Conteudo(pszNome) + std::string(uiSobra, '\xFF'));
    // Of an earlier time; of noise; cut short in every part of its head.
    ASSERT_GT(sDiario.size(), k_uiTamanhoPaginaDiario);
    mudancas.emplace_back(k_pszNomeDiario, sDiario);
    mudancas.emplace_back(k_pszNomeDiario, std::string(sDiario.size(), '\xA5'));
    for (const std::size_t ui : {std::size_t{0}, std::size_t{31}, std::size_t{519}, std::size_t{520},
                                 std::size_t{4095}, std::size_t{4096}, sDiario.size() - 1})
        mudancas.emplace_back(k_pszNomeDiario, sDiario.substr(0, ui));
    const auto inteira = m_Arquivos.Retrata();
    for (const auto& [sNome, sBytes] : mudancas) {
        m_Arquivos.Restaura(inteira);
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
        EXPECT_EQ(XVDiferenca(esperado, XVRetrataLoja(*AbreVisor())), "") << sNome << sBytes.size();
        EXPECT_EQ(Conteudo(sNome), sBytes);
    }
}

}  // namespace
