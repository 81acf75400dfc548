// The invalid-parameter trap of an interface method: while it lives, a parameter refused by the C runtime
// (where the runtime offers the hook) or by XVParametroInvalido ends the method with the HRESULT of errno.
//
// The trap calls the treatment library "XVMens" when there is one, leaves an error record and throws the
// HRESULT as a long, which XVTranslateThrownExceptionToHresult turns back. Traps of one thread nest.
#pragma once

#include <string>

#include "platform/XVGanchoParametroInvalido.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVFonteTrace.h"

// The method that installs the trap. The texts live as long as it.
struct SMetodoTrap {
    const IXVDF_Profiler* pDono = nullptr;  // of the error record, may be null
    const char* pszFuncao = "";             // full name of the method
    SFonteTrace fonte = "";                 // its source unit
    int iLinha = 0;
    std::string (*pGetServidor)() = nullptr;  // name of the default server; null: none
};

class XVTrapParametroInvalido {
  public:
    explicit XVTrapParametroInvalido(const SMetodoTrap& rMetodo) noexcept;
    ~XVTrapParametroInvalido();
    XVTrapParametroInvalido(const XVTrapParametroInvalido&) = delete;
    XVTrapParametroInvalido& operator=(const XVTrapParametroInvalido&) = delete;

    const SMetodoTrap& GetMetodo() const { return m_metodo; }

  private:
    SMetodoTrap m_metodo;
    XVTrapParametroInvalido* m_pAnterior;
    CXVGanchoParametroInvalido m_gancho;
};

// Springs the innermost trap of this thread with the current errno; without a trap only throws. The texts
// may be null.
[[noreturn]] void XVParametroInvalido(const wchar_t* pszExpressao, const wchar_t* pszFuncao,
                                      const wchar_t* pszArquivo, unsigned uiLinha);
