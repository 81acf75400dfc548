#include "tests/platform/posix/XVSistemaFalso.h"

#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>

namespace {

const SSistemaFalso* g_pFalso = nullptr;

}  // namespace

SSistemaFalso::SSistemaFalso() {
    g_pFalso = this;
}
SSistemaFalso::~SSistemaFalso() {
    g_pFalso = nullptr;
}

extern "C" {

int gethostname(char* pszNome, size_t uiTamanho) noexcept {
    std::snprintf(pszNome, uiTamanho, "%s", g_pFalso != nullptr ? g_pFalso->sMaquina.c_str() : "");
    return 0;
}

int uname(utsname* pSistema) noexcept {
    std::snprintf(pSistema->release, sizeof(pSistema->release), "%s",
                  g_pFalso != nullptr ? g_pFalso->sNucleo.c_str() : "");
    return 0;
}

uid_t geteuid() noexcept {
    return g_pFalso != nullptr ? g_pFalso->ulUsuario : static_cast<uid_t>(syscall(SYS_geteuid));
}

time_t time(time_t* pAgora) noexcept {
    const time_t iAgora = g_pFalso != nullptr ? g_pFalso->iAgora : syscall(SYS_time, nullptr);
    if (pAgora != nullptr) *pAgora = iAgora;
    return iAgora;
}

int clock_gettime(clockid_t iRelogio, timespec* pInstante) noexcept {
    if (g_pFalso == nullptr) return static_cast<int>(syscall(SYS_clock_gettime, iRelogio, pInstante));
    *pInstante = iRelogio == CLOCK_MONOTONIC ? g_pFalso->monotonico : timespec{};
    return 0;
}

}  // extern "C"
