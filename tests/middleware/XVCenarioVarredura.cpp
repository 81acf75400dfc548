#include "tests/middleware/XVCenarioVarredura.h"

#include <algorithm>
#include <cstdlib>

#ifdef XV_EXECUCAO_LENTA
constexpr bool k_bExecucaoLenta = true;
#else
constexpr bool k_bExecucaoLenta = false;
#endif

bool XVVarreduraCompleta() {
    const char* psz = std::getenv("XV_VARREDURA");
    return psz != nullptr && std::string_view(psz) == "completa";
}

unsigned XVSaltoVarredura(unsigned uiBreve, unsigned uiLento) {
    if (XVVarreduraCompleta()) return 1;
    return k_bExecucaoLenta ? uiLento : uiBreve;
}

void CXVCenarioVarredura::SetUp() {
    CriaInicial();
    m_inicial = m_Arquivos.Retrata();
    m_esperado.antes = Executa(false, false);
    m_esperado.depois = Executa(true, false);
    m_esperado.antesEProxima = Executa(false, true);
    m_esperado.depoisEProxima = Executa(true, true);
    ASSERT_FALSE(m_esperado.antesEProxima == m_esperado.antes);
}

void CXVCenarioVarredura::CriaInicial() {
    if (GetParam().eInicial == ELojaInicial::eAusente) return;
    const TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    ASSERT_TRUE(XVPovoaLoja(*pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
    ASSERT_EQ(pLoja->Finaliza(), S_OK);
    if (GetParam().eInicial == ELojaInicial::eSemCabecalho) TiraCabecalhos();
}

void CXVCenarioVarredura::TiraCabecalhos() {
    for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata())
        if (sCaminho.ends_with(".dat") && !sCaminho.ends_with("XVDATABASE_FILE_CTRL.dat"))
            m_Arquivos.CriaArquivo(sCaminho, rArquivo.sConteudo.substr(240));
}

TRetratoLoja CXVCenarioVarredura::Executa(bool bOperacao, bool bProxima) {
    Prepara();
    const TLoja pLoja = Abre();
    if (pLoja == nullptr) return {};
    if (bOperacao) {
        EXPECT_EQ(Opera(*pLoja), S_OK);
    }
    if (bProxima) {
        EXPECT_EQ(GravaProxima(*pLoja), S_OK);
    }
    TRetratoLoja retrato = XVRetrataLoja(*pLoja);
    EXPECT_EQ(pLoja->Finaliza(), S_OK);
    for (const auto& [sCaminho, rArquivo] : RetratoSemLogs()) m_nomesEmRepouso.insert(sCaminho);
    return retrato;
}

void CXVCenarioVarredura::Prepara() {
    m_Arquivos.Restaura(m_inicial);
    SetDia(GetParam().uiDia);
}

HRESULT CXVCenarioVarredura::GravaProxima(CBaseMiddleware& rLoja) {
    SetDia(GetParam().uiDia, 13);
    CXVIntegracaoTeste integracao(9000, Mercos, eXVSMiddleware_Enviado);
    integracao.Textos("{\"proxima\":1}", "proxima", "{}");
    REG_XVDMC regDmc;
    return rLoja.GravaIntegracao(&regDmc, integracao.Ptr());
}

TRetratoLoja CXVCenarioVarredura::RetrataOutra(bool bSomenteLeitura) {
    CBaseMiddleware loja;
    loja.SetSomenteLeitura(bSomenteLeitura);
    const HRESULT hr = loja.Inicializa(&m_Dono);
    if (FAILED(hr)) return XVRetratoRecusado(hr);
    TRetratoLoja retrato = XVRetrataLoja(loja);
    EXPECT_EQ(loja.Finaliza(), S_OK);
    return retrato;
}

TRetratoLoja CXVCenarioVarredura::RetrataReaberta() {
    TRetratoLoja retrato = RetrataOutra(false);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    ConfereArquivosEmRepouso();
    return retrato;
}

void CXVCenarioVarredura::ConfereArquivosEmRepouso() {
    for (const auto& [sCaminho, rArquivo] : RetratoSemLogs())
        EXPECT_TRUE(m_nomesEmRepouso.contains(sCaminho)) << sCaminho << " is a leftover";
}

void CXVCenarioVarredura::ConfereContinuacao(CBaseMiddleware& rLoja, bool bFeita) {
    const TRetratoLoja vivo = XVRetrataLoja(rLoja);
    ASSERT_TRUE(Igual(bFeita ? m_esperado.depois : m_esperado.antes, vivo)) << "the same object";
    ASSERT_TRUE(Igual(vivo, RetrataParaConsulta())) << "a viewer";
    ASSERT_EQ(GravaProxima(rLoja), S_OK) << "the next operation";
    const TRetratoLoja& rProximo = bFeita ? m_esperado.depoisEProxima : m_esperado.antesEProxima;
    ASSERT_TRUE(Igual(rProximo, XVRetrataLoja(rLoja))) << "after the next operation";
    ASSERT_EQ(rLoja.Finaliza(), S_OK);
    ASSERT_TRUE(Igual(rProximo, RetrataParaConsulta())) << "a viewer of the closed store";
    ASSERT_TRUE(Igual(rProximo, RetrataReaberta())) << "reopened";
}

testing::AssertionResult CXVCenarioVarredura::Igual(const TRetratoLoja& rEsperado,
                                                    const TRetratoLoja& rObtido) {
    if (rEsperado == rObtido) return testing::AssertionSuccess();
    return testing::AssertionFailure() << XVDiferenca(rEsperado, rObtido);
}

bool CXVCenarioVarredura::Confere(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido,
                                  ERecusa eRecusa) {
    if (eRecusa == ERecusa::eFalha) return rEsperado == rObtido;
    return std::all_of(rObtido.begin(), rObtido.end(), [&](const auto& it) {
        const auto itEsperado = rEsperado.find(it.first);
        return it.second.starts_with(k_pszRecusa) ||
               (itEsperado != rEsperado.end() && itEsperado->second == it.second);
    });
}

testing::AssertionResult CXVCenarioVarredura::AntesOuDepois(const TRetratoLoja& rAntes,
                                                            const TRetratoLoja& rDepois, bool bDepois,
                                                            const TRetratoLoja& rObtido, ERecusa eRecusa) {
    if (Confere(rDepois, rObtido, eRecusa) || (!bDepois && Confere(rAntes, rObtido, eRecusa)))
        return testing::AssertionSuccess();
    if (bDepois) return testing::AssertionFailure() << "was acknowledged\n" << XVDiferenca(rDepois, rObtido);
    return testing::AssertionFailure() << "neither before\n"
                                       << XVDiferenca(rAntes, rObtido) << "nor after\n"
                                       << XVDiferenca(rDepois, rObtido);
}
