// The one-line error check: XV_CHECK(call) evaluates the call once; a failure is recorded with the text of
// the call as it stands in the source, the function's full name, its source unit and place, and returned
// unchanged from the enclosing function. A call that succeeds costs a test and a branch.
//
// A class that uses the macros declares, with XV_CLASSE, its name as traces spell it and its source
// unit; the owner of the record is the object itself (an IXVDF_Profiler). Static functions name the
// owner with the forms that end in DONO; the private parts of an operation name, with the forms that end in
// EM, the operation that its documentation and the people who read the log know. Recording never changes the
// thread's last system error.
#pragma once

#include <array>
#include <string_view>

#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVFonteTrace.h"

// One place where a call may fail; lives in constant data.
struct SPontoFalha {
    const char* pszExpressao;
    const char* pszClasse;  // without "::"
    const char* pszFuncao;
    SFonteTrace fonte;
    int iLinha;  // as the log's readers know the place; in most places that of the source
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
HRESULT CheckHr(HRESULT hr, const char* pszExpressao, const char* pszFuncao, SFonteTrace fonte, int iLinha,
                const IXVDF_Profiler* pDono) noexcept;

// Returns hr; a failure is first handed to fnRegistra, which returns it unchanged.
template <class TRegistra>
[[nodiscard]] inline HRESULT XVRegistraSeFalha(HRESULT hr, const TRegistra& fnRegistra) {
    return FAILED(hr) ? fnRegistra(hr) : hr;
}

// Inside a class: the name of the class in traces and its source unit.
#define XV_CLASSE(nome, fonte)                    \
    static constexpr const char* XVNomeClasse() { \
        return nome;                              \
    }                                             \
    static constexpr const char* XVNomeFonte() {  \
        return fonte;                             \
    }

// A text kept as it is written.
template <std::size_t N>
struct TXVLiteral {
    char m_sz[N]{};
    consteval TXVLiteral(const char (&sz)[N]) {  // NOLINT: a literal converts
        for (std::size_t i = 0; i < N; ++i) m_sz[i] = sz[i];
    }
};

// The text of an expression as traces show it: that of one line, however the formatter broke the expression.
// The preprocessor leaves one blank for each break; the blank goes where one line would have none. Blanks
// inside a quoted text stay.
template <std::size_t N>
struct TXVTextoDeCodigo {
    char m_sz[N]{};
    consteval explicit TXVTextoDeCodigo(const char (&sz)[N]) {
        bool bLiteral = false;
        std::size_t uiFim = 0;
        for (std::size_t i = 0; i + 1 < N; ++i) {
            if (sz[i] == '"' && (i == 0 || sz[i - 1] != '\\')) bLiteral = !bLiteral;
            if (!bLiteral && sz[i] == ' ' &&
                (uiFim == 0 || Abre(m_sz[uiFim - 1]) || Segue(sz[i + 1], sz[i + 2])))
                continue;
            m_sz[uiFim++] = sz[i];
        }
    }

  private:
    static consteval bool Abre(char c) { return c == '(' || c == '['; }
    static consteval bool Segue(char c, char cSeguinte) {
        return c == ')' || c == ']' || c == ',' || c == '.' || (c == '-' && cSeguinte == '>');
    }
};

#define XV_PONTO_FALHA(funcao, pszTexto)                          \
    SPontoFalha {                                                 \
        pszTexto, XVNomeClasse(), funcao, XVNomeFonte(), __LINE__ \
    }
#define XV_FUNCAO_ATUAL static_cast<const char*>(__func__)

// What the checks below are made of. texto: a TXVTextoDeCodigo or TXVLiteral.
#define XV_CHECK_COMPLETO(dono, funcao, chamada, texto)                                  \
    do {                                                                                 \
        const HRESULT hrXV = (chamada);                                                  \
        if (FAILED(hrXV)) [[unlikely]] {                                                 \
            static constexpr auto textoXV = texto;                                       \
            static constexpr SPontoFalha pontoXV = XV_PONTO_FALHA(funcao, textoXV.m_sz); \
            return XVRegistraFalha(hrXV, pontoXV, (dono));                               \
        }                                                                                \
    } while (false)

// The check proper.
#define XV_CHECK(chamada) XV_CHECK_COMPLETO(this, XV_FUNCAO_ATUAL, chamada, TXVTextoDeCodigo(#chamada))
// In a static function: the owner is given.
#define XV_CHECK_DONO(dono, chamada) \
    XV_CHECK_COMPLETO(dono, XV_FUNCAO_ATUAL, chamada, TXVTextoDeCodigo(#chamada))
// In a private part of an operation, or in a lambda: the operation's name is given.
#define XV_CHECK_EM(funcao, chamada) XV_CHECK_COMPLETO(this, funcao, chamada, TXVTextoDeCodigo(#chamada))
// A call of the base class's own version of a function.
#define XV_CHECK_SUPER(base, chamada) \
    XV_CHECK_COMPLETO(this, XV_FUNCAO_ATUAL, base::chamada, TXVTextoDeCodigo("__super::" #chamada))
// For texts that no formatted expression gives: they are known to those who read the log and stay as they
// are.
#define XV_CHECK_TEXTO(chamada, texto) XV_CHECK_COMPLETO(this, XV_FUNCAO_ATUAL, chamada, TXVLiteral(texto))

// Records a failure under the text of its own name and returns it.
#define XV_FALHA(hr) XV_CHECK_COMPLETO(this, XV_FUNCAO_ATUAL, hr, TXVTextoDeCodigo(#hr))
#define XV_FALHA_EM(funcao, hr) XV_CHECK_COMPLETO(this, funcao, hr, TXVTextoDeCodigo(#hr))

#define XV_REGISTRA_COMPLETO(dono, chamada, texto)                                                    \
    XVRegistraSeFalha((chamada), [pszFuncaoXV = XV_FUNCAO_ATUAL,                                      \
                                  pDonoXV = static_cast<const IXVDF_Profiler*>(dono)](HRESULT hrXV) { \
        constexpr TXVTextoDeCodigo textoXV(texto);                                                    \
        const char* pszTextoXV = textoXV.m_sz;                                                        \
        return XVRegistraFalha(hrXV, XV_PONTO_FALHA(pszFuncaoXV, pszTextoXV), pDonoXV);               \
    })
// An expression: evaluates the call, records its failure and is its result, for a function that has something
// to do before it returns it.
#define XV_REGISTRA(chamada) XV_REGISTRA_COMPLETO(this, chamada, #chamada)
#define XV_REGISTRA_DONO(dono, chamada) XV_REGISTRA_COMPLETO(dono, chamada, #chamada)
#define XV_REGISTRA_SUPER(base, chamada) XV_REGISTRA_COMPLETO(this, base::chamada, "__super::" #chamada)

// Of two steps that are both carried out: the first failure is the result.
constexpr HRESULT XVPrimeiraFalha(HRESULT hrPrimeira, HRESULT hrSegunda) {
    return FAILED(hrPrimeira) ? hrPrimeira : hrSegunda;
}

// A failure that is dropped on purpose.
constexpr void XVIgnora(HRESULT) {}

// Name of a record layout in traces; specialised beside each layout.
template <class T>
inline constexpr std::string_view k_sNomeRegistro = "";

// "Template<struct Record>" composed at compile time, for XV_CLASSE of class templates.
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
