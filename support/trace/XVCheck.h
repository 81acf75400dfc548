// The one-line error check: XV_CHECK(call) evaluates the call once; a failure is recorded with the
// literal text of the call, the function's full name, its source unit and line, and returned unchanged
// from the enclosing function. A call that succeeds costs a test and a branch.
//
// A class that uses the macros declares, with XV_CLASSE, its name as traces spell it and its source
// unit; the owner of the record is the object itself (an IXVDF_Profiler). Static functions name the
// owner with XV_CHECK_DONO. Recording never changes the thread's last system error.
#pragma once

#include <array>
#include <string_view>

#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"

// One place where a call may fail; lives in constant data.
struct SPontoFalha {
    const char* pszExpressao;
    const char* pszClasse;  // without "::"
    const char* pszFuncao;
    const char* pszFonte;  // source unit, path without drive and extension
    int iLinha;
};

#if defined(__GNUC__)
#define XV_CAMINHO_FRIO __attribute__((cold, noinline))
#else
#define XV_CAMINHO_FRIO
#endif

// Records hr when it is a failure (one line of the error log) and returns it unchanged.
// pDono may be null. Thread rule: any thread.
XV_CAMINHO_FRIO HRESULT XVRegistraFalha(HRESULT hr, const SPontoFalha& rPonto,
                                        const IXVDF_Profiler* pDono) noexcept;

// The same check for callers that build their own texts: records and returns hr.
HRESULT CheckHr(HRESULT hr, const char* pszExpressao, const char* pszFuncao, const char* pszFonte, int iLinha,
                const IXVDF_Profiler* pDono) noexcept;

// Inside a class: the name of the class in traces and its source unit.
#define XV_CLASSE(nome, fonte)                    \
    static constexpr const char* XVNomeClasse() { \
        return nome;                              \
    }                                             \
    static constexpr const char* XVNomeFonte() {  \
        return fonte;                             \
    }

#define XV_PONTO_FALHA(texto)                                                              \
    SPontoFalha {                                                                          \
        texto, XVNomeClasse(), static_cast<const char*>(__func__), XVNomeFonte(), __LINE__ \
    }

#define XV_CHECK_TEXTO_DONO(dono, chamada, texto)                         \
    do {                                                                  \
        const HRESULT hrXV = (chamada);                                   \
        if (FAILED(hrXV)) [[unlikely]] {                                  \
            static constexpr SPontoFalha pontoXV = XV_PONTO_FALHA(texto); \
            return XVRegistraFalha(hrXV, pontoXV, (dono));                \
        }                                                                 \
    } while (false)

// The check proper.
#define XV_CHECK(chamada) XV_CHECK_TEXTO_DONO(this, chamada, #chamada)
// The call is written differently from the text that the trace must show.
#define XV_CHECK_TEXTO(chamada, texto) XV_CHECK_TEXTO_DONO(this, chamada, texto)
// In a static function: the owner is given.
#define XV_CHECK_DONO(dono, chamada) XV_CHECK_TEXTO_DONO(dono, chamada, #chamada)

// Records a failure under a text and goes on; hr must be a failure.
#define XV_REGISTRA_TEXTO_DONO(dono, hr, texto)                       \
    do {                                                              \
        static constexpr SPontoFalha pontoXV = XV_PONTO_FALHA(texto); \
        XVIgnora(XVRegistraFalha((hr), pontoXV, (dono)));             \
    } while (false)
#define XV_REGISTRA(hr, texto) XV_REGISTRA_TEXTO_DONO(this, hr, texto)

// Records a failure under the text of its own name and returns it.
#define XV_FALHA(hr) XV_CHECK_TEXTO_DONO(this, hr, #hr)

// A failure that is dropped on purpose.
constexpr void XVIgnora(HRESULT) {}

// "Template<struct Record>" composed at compile time, for XV_CLASSE of class templates.
template <std::size_t N>
struct TXVLiteral {
    char m_sz[N]{};
    consteval TXVLiteral(const char (&sz)[N]) {  // NOLINT: a literal converts
        for (std::size_t i = 0; i < N; ++i) m_sz[i] = sz[i];
    }
};

// Name of a record layout in traces; specialised beside each layout.
template <class T>
inline constexpr std::string_view k_sNomeRegistro = "";

template <TXVLiteral modelo, class T>
struct TXVNomeDeTemplate {
    static constexpr auto Compoe() {
        constexpr std::string_view sRegistro = k_sNomeRegistro<T>;
        static_assert(!sRegistro.empty(), "name the record layout with k_sNomeRegistro");
        std::array<char, sizeof(modelo.m_sz) + sRegistro.size() + sizeof("<struct >") - 1> aTexto{};
        std::size_t i = 0;
        const auto copia = [&](std::string_view s) {
            for (const char c : s) aTexto[i++] = c;
        };
        copia(std::string_view(modelo.m_sz, sizeof(modelo.m_sz) - 1));
        copia("<struct ");
        copia(sRegistro);
        copia(">");
        return aTexto;
    }
    static constexpr auto k_aTexto = Compoe();
};
