// Trace records and the error log: what every function of the system writes about itself.
//
// Records never fail outward: a file that cannot be opened, a missing log.ini or a missing messages
// library make a line poorer or drop it, never change what the traced function does. The thread's last
// system error is kept. Thread rule: any thread.
#pragma once

#include <atomic>
#include <initializer_list>
#include <string_view>

#include "platform/XVAmostraRelogio.h"
#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVFonteTrace.h"

// A named parameter of a scope: a text or an unsigned number, formatted only when a record is written.
// A text must live as long as the scope.
struct SParametroTrace {
    constexpr SParametroTrace() = default;
    constexpr SParametroTrace(const char* pszNomeParametro, std::string_view sValor)
        : pszNome(pszNomeParametro), sTexto(sValor) {}
    constexpr SParametroTrace(const char* pszNomeParametro, XVUInt64 uiValor)
        : pszNome(pszNomeParametro), uiNumero(uiValor), bNumero(true) {}

    const char* pszNome = nullptr;
    std::string_view sTexto;
    XVUInt64 uiNumero = 0;
    bool bNumero = false;
};

namespace XVProfiler {

namespace Interno {
extern std::atomic<bool> g_bRastreia;
// Reads log.ini again when its reload interval has passed.
void VerificaRecarga() noexcept;
}  // namespace Interno

// False when log.ini asks for neither entry, exit nor object-creation records: the only work of a scope
// then. The clock is read at each call where reading it is cheap, else at every 64th call of a thread, so
// a changed log.ini is noticed up to 63 scopes of each thread after its interval.
inline bool DeveLogar() {
    if (XVDeveConsultarRelogio()) [[unlikely]]
        Interno::VerificaRecarga();
    return Interno::g_bRastreia.load(std::memory_order_relaxed);
}

// Reads log.ini and the module directory now, whatever the interval.
void RecarregaConfiguracao() noexcept;

// Records of this process that were dropped because their file could not be opened or written.
XVUInt64 GetLinhasPerdidas();

// Writes one error record (always, whatever log.ini says): pszFuncao, fonte and iLinha as the trace
// spells them.
void RecordError(const IXVDF_Profiler* pDono, const char* pszFuncao, SFonteTrace fonte, int iLinha,
                 const char* pszFormato, ...) noexcept
#if defined(__clang__)
    __attribute__((format(printf, 5, 6)))
#elif defined(__GNUC__)
    __attribute__((format(gnu_printf, 5, 6)))
#endif
    ;

// Writes one object-creation record when log.ini asks for it: parameters "ProgID" and "Modulo", and
// "Resultado" with the HRESULT in hexadecimal.
void RecordCoCreate(const IXVDF_Profiler* pDono, const char* pszFuncao, std::string_view sProgID,
                    std::string_view sModulo, HRESULT hrResultado) noexcept;

}  // namespace XVProfiler

// Held by a function for its whole run; writes the entry record when built and the exit record when
// destroyed, where log.ini asks for them. pDono may be null and must outlive the scope.
class ProfilerScope {
  public:
    static constexpr std::size_t k_uiMaximoParametros = 9;

    ProfilerScope(const IXVDF_Profiler* pDono, const char* pszClasse, const char* pszFuncao,
                  std::initializer_list<SParametroTrace> listaParametros) {
        if (XVProfiler::DeveLogar()) [[unlikely]]
            Entra(pDono, pszClasse, pszFuncao, listaParametros);
    }
    ~ProfilerScope() {
        if (m_pEvento != nullptr) [[unlikely]]
            Sai();
    }
    ProfilerScope(const ProfilerScope&) = delete;
    ProfilerScope& operator=(const ProfilerScope&) = delete;

  private:
    struct SEventoEscopo;
    void Entra(const IXVDF_Profiler* pDono, const char* pszClasse, const char* pszFuncao,
               std::initializer_list<SParametroTrace> listaParametros) noexcept;
    void Sai() noexcept;
    SEventoEscopo* m_pEvento = nullptr;  // set only while an exit record is due
};

// Opens the scope of a member function of a class declared with XV_CLASSE; parameters as {"name", value}.
#define XV_ESCOPO(...) \
    const ProfilerScope escopoXV(this, XVNomeClasse(), static_cast<const char*>(__func__), {__VA_ARGS__})
#define XV_ESCOPO_DONO(dono, ...) \
    const ProfilerScope escopoXV((dono), XVNomeClasse(), static_cast<const char*>(__func__), {__VA_ARGS__})
