// Hooks a handler to the C runtime's refusal of an invalid parameter, for the calling thread and as long
// as the object lives. Objects of one thread nest.
//
// Windows: the universal runtime (ucrtbase.dll), which libraries loaded into the process use, calls the
// handler and lets an exception leave it. The older msvcrt.dll has no such handler: what is linked with
// it is covered by the callers' own checks alone, as is every program of systems whose runtime has none.
#pragma once

// iErrno: the refusing runtime's errno. The texts may be null.
using PTratadorParametroInvalido = void (*)(int iErrno, const wchar_t* pszExpressao, const wchar_t* pszFuncao,
                                            const wchar_t* pszArquivo, unsigned uiLinha);

class CXVGanchoParametroInvalido {
  public:
    explicit CXVGanchoParametroInvalido(PTratadorParametroInvalido pTratador) noexcept;
    ~CXVGanchoParametroInvalido();
    CXVGanchoParametroInvalido(const CXVGanchoParametroInvalido&) = delete;
    CXVGanchoParametroInvalido& operator=(const CXVGanchoParametroInvalido&) = delete;

    // Whether the process has a runtime that calls the handler.
    static bool TemRuntime() noexcept;

  private:
    using PFuncaoGenerica = void (*)();
    // Systems without such a runtime keep nothing.
    [[maybe_unused]] PFuncaoGenerica m_pAnterior = nullptr;
    [[maybe_unused]] PTratadorParametroInvalido m_pTratadorAnterior = nullptr;
};
