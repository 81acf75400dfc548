#include <windows.h>

#include <cstdint>

#include "platform/XVGanchoParametroInvalido.h"

namespace {

using PTratadorRuntime = void(__cdecl*)(const wchar_t*, const wchar_t*, const wchar_t*, unsigned,
                                        std::uintptr_t);
using PTrocaTratador = PTratadorRuntime(__cdecl*)(PTratadorRuntime);
using PEnderecoErrno = int*(__cdecl*)();

thread_local PTratadorParametroInvalido g_pTratador = nullptr;

struct SRuntimeUniversal {
    PTrocaTratador pTroca = nullptr;
    PEnderecoErrno pErrno = nullptr;

    SRuntimeUniversal() {
        // Kept for the life of the process: libraries that use it may come later.
        const HMODULE hModulo = ::LoadLibraryExW(L"ucrtbase.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        if (hModulo == nullptr) return;
        pTroca = Funcao<PTrocaTratador>(hModulo, "_set_thread_local_invalid_parameter_handler");
        pErrno = Funcao<PEnderecoErrno>(hModulo, "_errno");
    }
    bool Completo() const { return pTroca != nullptr && pErrno != nullptr; }

  private:
    template <class TFuncao>
    static TFuncao Funcao(HMODULE hModulo, const char* pszNome) {
        return reinterpret_cast<TFuncao>(reinterpret_cast<void (*)()>(::GetProcAddress(hModulo, pszNome)));
    }
};

const SRuntimeUniversal& Runtime() {
    static const SRuntimeUniversal s_runtime;
    return s_runtime;
}

void __cdecl Desvia(const wchar_t* pszExpressao, const wchar_t* pszFuncao, const wchar_t* pszArquivo,
                    unsigned uiLinha, std::uintptr_t) {
    if (g_pTratador != nullptr)
        g_pTratador(*Runtime().pErrno(), pszExpressao, pszFuncao, pszArquivo, uiLinha);
}

}  // namespace

CXVGanchoParametroInvalido::CXVGanchoParametroInvalido(PTratadorParametroInvalido pTratador) noexcept
    : m_pTratadorAnterior(g_pTratador) {
    if (!Runtime().Completo()) return;
    g_pTratador = pTratador;
    m_pAnterior = reinterpret_cast<PFuncaoGenerica>(Runtime().pTroca(&Desvia));
}

CXVGanchoParametroInvalido::~CXVGanchoParametroInvalido() {
    if (!Runtime().Completo()) return;
    Runtime().pTroca(reinterpret_cast<PTratadorRuntime>(m_pAnterior));
    g_pTratador = m_pTratadorAnterior;
}

bool CXVGanchoParametroInvalido::TemRuntime() noexcept {
    return Runtime().Completo();
}
