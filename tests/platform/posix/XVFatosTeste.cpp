// What the seam makes of what the system says of itself. A program of its own: it stands in front of the
// system's calls.
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <optional>
#include <string>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "platform/XVUltimoErroSistema.h"

namespace {

// What the system says of itself while one lives: name of the machine, kernel, user, clocks.
struct SSistemaFalso {
    std::string sMaquina;
    std::string sNucleo;
    unsigned ulUsuario = 0;
    time_t iAgora = 0;
    timespec monotonico{};  // every other clock stands at 0
};
std::optional<SSistemaFalso> g_sistema;

// While a test lives the system is a false one.
class CXVFatosTeste : public testing::Test {
  protected:
    void SetUp() override { g_sistema.emplace(); }
    void TearDown() override { g_sistema.reset(); }
};

XVUInt64 KiBDe(const char* pszLinha) {
    std::ifstream arquivo("/proc/meminfo");
    for (std::string sLinha; arquivo >> sLinha;)
        if (sLinha == pszLinha) break;
    XVUInt64 uiKiB = 0;
    arquivo >> uiKiB;
    return uiKiB;
}

}  // namespace

extern "C" {

int gethostname(char* pszNome, size_t uiTamanho) noexcept {
    std::snprintf(pszNome, uiTamanho, "%s", g_sistema ? g_sistema->sMaquina.c_str() : "");
    return 0;
}

int uname(utsname* pSistema) noexcept {
    std::snprintf(pSistema->release, sizeof(pSistema->release), "%s",
                  g_sistema ? g_sistema->sNucleo.c_str() : "");
    return 0;
}

uid_t geteuid() noexcept {
    return g_sistema ? g_sistema->ulUsuario : static_cast<uid_t>(syscall(SYS_geteuid));
}

int clock_gettime(clockid_t iRelogio, timespec* pInstante) noexcept {
    if (!g_sistema) return static_cast<int>(syscall(SYS_clock_gettime, iRelogio, pInstante));
    *pInstante = iRelogio == CLOCK_MONOTONIC ? g_sistema->monotonico : timespec{};
    return 0;
}

time_t time(time_t* pAgora) noexcept {
    timespec instante{};
    clock_gettime(CLOCK_REALTIME, &instante);
    const time_t iAgora = g_sistema ? g_sistema->iAgora : instante.tv_sec;
    if (pAgora != nullptr) *pAgora = iAgora;
    return iAgora;
}

}  // extern "C"

TEST_F(CXVFatosTeste, HoraLocalEUTCDeUmInstante) {
    IXVRelogio& rRelogio = XVPlataforma::RelogioNativo();
    g_sistema->iAgora = 1735689598;  // 2024-12-31 23:59:58 UTC
    const struct {
        const char* pszFuso;
        SDataHora local;
    } aCasos[] = {{"<-03>3", {2024, 12, 31, 20, 59, 58}}, {"<+0545>-5:45", {2025, 1, 1, 5, 44, 59}}};
    for (const auto& [pszFuso, local] : aCasos) {
        setenv("TZ", pszFuso, 1);
        tzset();
        EXPECT_TRUE(rRelogio.AgoraLocal() == local) << pszFuso;
        const auto ucSegundo = static_cast<XVByte>(g_sistema->iAgora % 60);
        EXPECT_TRUE(rRelogio.AgoraUTC() == (SDataHora{2024, 12, 31, 23, 59, ucSegundo})) << pszFuso;
        ++g_sistema->iAgora;  // a thread asks for the zone's rules once a second
    }
    g_sistema->monotonico = {4294967, 305999999};  // 2^32 ms are 4294967.296 s
    EXPECT_EQ(rRelogio.GetTicks(), 9U);
    g_sistema->monotonico = {1234, 567000000};
    EXPECT_EQ(rRelogio.GetTicks(), 1234567U);
}

TEST_F(CXVFatosTeste, NomesEVersoes) {
    const struct {
        std::string SSistemaFalso::*psDito;
        const char* pszDito;
        std::string (*pfnFato)();
        const char* pszFato;
    } aCasos[] = {{&SSistemaFalso::sMaquina, "maquina-de-nome-longo.exemplo.com",
                   XVAmbienteSO::GetNomeComputador, "MAQUINA-DE-NOME"},
                  {&SSistemaFalso::sMaquina, "pc7.exemplo.com", XVAmbienteSO::GetNomeComputador, "PC7"},
                  {&SSistemaFalso::sNucleo, "6.1.0-13-amd64", XVAmbienteSO::GetVersaoSistema, "6.1.0.0"},
                  {&SSistemaFalso::sNucleo, "5.15.167.4-microsoft-standard", XVAmbienteSO::GetVersaoSistema,
                   "5.15.167.4"},
                  {&SSistemaFalso::sNucleo, "6.2.7.8.9", XVAmbienteSO::GetVersaoSistema, "6.2.7.8"}};
    for (const auto& [psDito, pszDito, pfnFato, pszFato] : aCasos) {
        (*g_sistema).*psDito = pszDito;
        EXPECT_EQ(pfnFato(), pszFato);
    }
    for (const unsigned ulUsuario : {0U, 1U, 65534U}) {
        g_sistema->ulUsuario = ulUsuario;
        const passwd* pUsuario = getpwuid(ulUsuario);
        EXPECT_EQ(XVAmbienteSO::GetNomeUsuario(), pUsuario != nullptr ? pUsuario->pw_name : "");
    }
    for (const bool bRemota : {true, false}) {
        bRemota ? setenv("SSH_CONNECTION", "10.0.0.1 1 10.0.0.2 22", 1) : unsetenv("SSH_CONNECTION");
        EXPECT_EQ(XVAmbienteSO::EhSessaoRemota(), bRemota);
    }
}

TEST_F(CXVFatosTeste, MemoriaDaMaquinaEDoProcesso) {
    EXPECT_EQ(XVAmbienteSO::GetMemoriaMaquina().uiTotal, KiBDe("MemTotal:") * 1024);
    // Other processes take memory meanwhile: some look lies between those before and behind it.
    bool bConfere = false;
    for (int i = 0; i < 1000 && !bConfere; ++i) {
        const XVUInt64 uiAntes = KiBDe("MemAvailable:") * 1024;
        const XVUInt64 uiDisponivel = XVAmbienteSO::GetMemoriaMaquina().uiDisponivel;
        const XVUInt64 uiDepois = KiBDe("MemAvailable:") * 1024;
        bConfere = std::min(uiAntes, uiDepois) <= uiDisponivel && uiDisponivel <= std::max(uiAntes, uiDepois);
    }
    EXPECT_TRUE(bConfere);
    // What is shared with others is not the process's own.
    constexpr std::size_t k_uiMiB32 = std::size_t{32} << 20;
    constexpr double k_fFolga = 4 << 20;
    for (const bool bPropria : {true, false}) {
        const double fAntes = static_cast<double>(XVAmbienteSO::GetMemoriaPrivadaProcesso());
        void* pMemoria = mmap(nullptr, k_uiMiB32, PROT_READ | PROT_WRITE,
                              MAP_ANONYMOUS | (bPropria ? MAP_PRIVATE : MAP_SHARED), -1, 0);
        ASSERT_NE(pMemoria, MAP_FAILED);
        std::memset(pMemoria, 1, k_uiMiB32);
        const double fDepois = static_cast<double>(XVAmbienteSO::GetMemoriaPrivadaProcesso());
        munmap(pMemoria, k_uiMiB32);
        EXPECT_NEAR(fDepois - fAntes, bPropria ? static_cast<double>(k_uiMiB32) : 0, k_fFolga);
    }
}

TEST_F(CXVFatosTeste, UltimoErroSobreviveAoQueCorreNoMeio) {
    errno = ENOSPC;
    {
        const CXVPreservaUltimoErro preserva;
        errno = EINTR;
    }
    EXPECT_EQ(errno, ENOSPC);
}
