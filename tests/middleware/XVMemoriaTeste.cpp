// What the store keeps in memory, by the bytes that operator new has given out.
#include <atomic>
#include <cstdlib>
#include <new>

#include "middleware/ConversaoMiddleware.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {
std::atomic<std::size_t> g_uiVivos{0};
std::atomic<std::size_t> g_uiPico{0};
constexpr std::size_t k_uiPrefixo = 32;  // keeps the strictest alignment of operator new
}  // namespace

void* operator new(std::size_t uiTamanho) {
    auto* p = static_cast<char*>(std::malloc(uiTamanho + k_uiPrefixo));
    if (p == nullptr) throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(p) = uiTamanho;
    const std::size_t uiVivos = g_uiVivos += uiTamanho;
    std::size_t uiPico = g_uiPico;
    while (uiVivos > uiPico && !g_uiPico.compare_exchange_weak(uiPico, uiVivos)) {
    }
    return p + k_uiPrefixo;
}
void operator delete(void* p) noexcept {
    if (p == nullptr) return;
    char* pInicio = static_cast<char*>(p) - k_uiPrefixo;
    g_uiVivos -= *reinterpret_cast<std::size_t*>(pInicio);
    std::free(pInicio);
}
void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}

namespace {

class CXVMemoriaTeste : public testing::Test {
  protected:
    CXVMemoriaTeste() : m_guardaRegistry(m_registry), m_guardaRelogio(m_relogio) {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", m_diretorio.GetCaminho());
        EXPECT_TRUE(XVPlataforma::SistemaArquivosNativo().CriaDiretorio(m_diretorio.Junta("MATRIZ/DF")).Ok());
    }
    static std::size_t ZeraPico() { return g_uiPico = g_uiVivos.load(); }

    CXVDiretorioTeste m_diretorio;
    CXVRegistryFalso m_registry;
    CXVRelogioFalso m_relogio;
    CXVGuardaRegistry m_guardaRegistry;
    CXVGuardaRelogio m_guardaRelogio;
    CXVDonoFixo m_dono{"MATRIZ"};
};

TEST_F(CXVMemoriaTeste, ConversaoTemUmMembroPorVez) {
    constexpr unsigned k_uiRegistros = 8000;                                   // 640 KB a member
    const std::string sRegistros = XVBaseDourada(0, false).at(k_apszDias[0]);  // ten of them
    std::string sDia;
    while (sDia.size() < k_uiRegistros * 80) sDia += sRegistros;
    for (unsigned ui = 10; ui < 20; ++ui) {
        const std::string sNome = "CRINTEGMID202305" + std::to_string(ui) + ".dat";
        m_diretorio.CriaArquivo("MATRIZ/DF/" + sNome, XVArquivoDoTeste({sNome}, sDia));
    }
    const std::size_t uiAntes = ZeraPico();
    CXVConversaoMiddleware conversao(nullptr);
    ASSERT_EQ(conversao.Inicializa(&m_dono), S_OK);
    ASSERT_EQ(conversao.ExecutaConversao(), S_OK);
    EXPECT_LT(g_uiPico - uiAntes, std::size_t{2} * k_uiRegistros * 88 + (3U << 20));
}

TEST_F(CXVMemoriaTeste, GravarEmMuitosDiasGuardaOIndiceEDoisMembrosPorGrupo) {
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_dono), S_OK);
    const std::string sTexto(2000, 'x');
    constexpr unsigned k_uiPorDia = 100;
    const auto grava = [&](unsigned uiDia) {
        m_relogio.SetUTC(
            {2024, static_cast<XVByte>(1 + uiDia / 28), static_cast<XVByte>(1 + uiDia % 28), 1, 0, 0});
        for (unsigned i = 0; i < k_uiPorDia; ++i) {
            REG_XVDMC regDmc;
            CXVIntegracaoTeste integracao(uiDia * 1000 + i + 1);
            ASSERT_EQ(loja.GravaIntegracao(&regDmc, integracao.Textos(sTexto, "m", sTexto).Ptr()), S_OK);
        }
    };
    for (unsigned uiDia = 0; uiDia < 3; ++uiDia) grava(uiDia);
    const std::size_t uiTresDias = ZeraPico();
    for (unsigned uiDia = 3; uiDia < 23; ++uiDia) grava(uiDia);
    // 20 days hold 8 MB of texts; per integration the index may keep its record and its keys.
    EXPECT_LT(g_uiVivos.load(), uiTresDias + 20 * k_uiPorDia * 200U + (1U << 20));
}

}  // namespace
