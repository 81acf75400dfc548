#include <pwd.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <vector>

#include "platform/XVAmbienteSO.h"
#include "platform/XVCaminho.h"
#include "platform/posix/XVDescritorPosix.h"

namespace XVAmbienteSO {

std::string GetNomeComputador() {
    constexpr std::size_t k_uiTamanhoMaximo = 15;
    std::array<char, 256> aNome{};
    if (gethostname(aNome.data(), aNome.size() - 1) != 0) {
        return {};
    }
    std::string sNome(aNome.data());
    sNome.resize(std::min({sNome.size(), sNome.find('.'), k_uiTamanhoMaximo}));
    for (char& c : sNome) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return sNome;
}

std::string GetNomeUsuario() {
    std::vector<char> aMemoria(16384);
    passwd entrada{};
    passwd* pEntrada = nullptr;
    if (getpwuid_r(geteuid(), &entrada, aMemoria.data(), aMemoria.size(), &pEntrada) != 0 ||
        pEntrada == nullptr) {
        return {};
    }
    return pEntrada->pw_name;
}

std::string GetCaminhoExecutavel() {
    std::string sCaminho(4096, '\0');
    const ssize_t iTamanho = readlink("/proc/self/exe", sCaminho.data(), sCaminho.size());
    sCaminho.resize(iTamanho > 0 ? static_cast<std::size_t>(iTamanho) : 0);
    return sCaminho;
}

std::string GetDiretorioExecutavel() {
    const std::string sCaminho = GetCaminhoExecutavel();
    return sCaminho.empty() ? sCaminho : XVCaminho::Separa(sCaminho, "/").sDiretorio;
}

XVUInt GetIdProcesso() {
    return static_cast<XVUInt>(getpid());
}

std::size_t GetMaximoArquivosAbertos() {
    constexpr std::size_t k_uiSemLimite = 65536;
    struct rlimit limite;
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0) {
        return 0;
    }
    return static_cast<std::size_t>(std::min<rlim_t>(limite.rlim_cur, k_uiSemLimite));
}

XVUInt GetIdThread() {
    thread_local const XVUInt s_ulId = static_cast<XVUInt>(syscall(SYS_gettid));
    return s_ulId;
}

bool EhSessaoRemota() {
    return getenv("SSH_CONNECTION") != nullptr;
}

SMemoriaMaquina GetMemoriaMaquina() {
    SMemoriaMaquina memoria;
    std::ifstream arquivo("/proc/meminfo");
    std::string sNome;
    XVUInt64 uiKiB = 0;
    std::string sUnidade;
    while (arquivo >> sNome >> uiKiB && std::getline(arquivo, sUnidade)) {
        if (sNome == "MemTotal:") {
            memoria.uiTotal = uiKiB * 1024U;
        }
        if (sNome == "MemAvailable:") {
            memoria.uiDisponivel = uiKiB * 1024U;
        }
    }
    return memoria;
}

XVUInt64 GetMemoriaPrivadaProcesso() {
    std::ifstream arquivo("/proc/self/statm");
    XVUInt64 uiTotal = 0;
    XVUInt64 uiResidente = 0;
    XVUInt64 uiCompartilhada = 0;
    if (!(arquivo >> uiTotal >> uiResidente >> uiCompartilhada) || uiCompartilhada > uiResidente) {
        return 0;
    }
    return (uiResidente - uiCompartilhada) * static_cast<XVUInt64>(sysconf(_SC_PAGESIZE));
}

std::string GetVersaoExecutavel() {
    return XV_VERSAO_PROJETO;
}

std::string GetVersaoSistema() {
    utsname sistema{};
    if (uname(&sistema) != 0) {
        return {};
    }
    // "6.1.0-13-amd64" is 6.1.0.0: what is no number ends the version.
    std::string sVersao;
    const char* pszAtual = sistema.release;
    const char* pszFim = pszAtual + std::strlen(pszAtual);
    for (int i = 0; i < 4; ++i) {
        XVUInt ulParte = 0;
        const std::from_chars_result resultado = std::from_chars(pszAtual, pszFim, ulParte);
        const bool bContinua =
            resultado.ec == std::errc() && resultado.ptr != pszFim && *resultado.ptr == '.';
        pszAtual = bContinua ? resultado.ptr + 1 : pszFim;
        sVersao.append(i == 0 ? "" : ".").append(std::to_string(ulParte));
    }
    return sVersao;
}

std::string NovoGuid() {
    std::array<unsigned char, 16> a{};
    if (XVRepeteInterrompida([&] { return getrandom(a.data(), a.size(), 0); }) !=
        static_cast<ssize_t>(a.size())) {
        return {};
    }
    a[6] = static_cast<unsigned char>((a[6] & 0x0FU) | 0x40U);  // random (version 4) identifier
    a[8] = static_cast<unsigned char>((a[8] & 0x3FU) | 0x80U);
    std::array<char, 37> aTexto{};
    std::snprintf(aTexto.data(), aTexto.size(),
                  "%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X", a[0], a[1], a[2],
                  a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12], a[13], a[14], a[15]);
    return aTexto.data();
}

std::optional<std::string> GetVariavelAmbiente(const char* pszNome) {
    const char* pszValor = getenv(pszNome);
    return pszValor == nullptr ? std::nullopt : std::optional<std::string>(pszValor);
}

void* AlocaSaida(std::size_t uiTamanho) {
    return uiTamanho == 0 ? nullptr : std::malloc(uiTamanho);
}
void LiberaSaida(void* pBuffer) {
    std::free(pBuffer);
}

}  // namespace XVAmbienteSO
