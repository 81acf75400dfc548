// What every fuzz target stands on: a file system in memory, a clock that does not sleep and a registry
// with one module directory.
#pragma once

#include <cstdio>

#include "suite/XVInicializador.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/middleware/XVMaquinaMorte.h"

class CXVBancadaFuzz : public CXVMaquinaMorte {
  public:
    static constexpr const char* k_pszPasta = "/dados/E1/DF/";

    CXVBancadaFuzz() : CXVMaquinaMorte("/dados") {
        m_perfil.SetProfiler("E1", 1, 2);
        m_disco.CriaDiretorio("/dados/E1/DF").Ignora();
    }

    CXVSistemaArquivosMemoria& GetDisco() { return m_disco; }
    const CXVSistemaArquivosMemoria& GetDisco() const { return m_disco; }
    const CXVProfilerEmpresa& GetPerfil() const { return m_perfil; }
    void PoeArquivo(const std::string& sNome, std::string sConteudo) {
        m_disco.CriaArquivo(k_pszPasta + sNome, std::move(sConteudo));
    }
    std::string LeArquivo(const std::string& sNome) const {
        return m_disco.LeConteudo(k_pszPasta + sNome).value_or(std::string{});
    }

  private:
    CXVSistemaArquivosMemoria m_disco;
    CXVGuardaSistemaArquivos m_guardaDisco{m_disco};
    CXVProfilerEmpresa m_perfil;
};

// A broken invariant says which and ends the run as a crash would.
#define XV_EXIGE(condicao)                                                      \
    do {                                                                        \
        if (!(condicao)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condicao); \
            __builtin_trap();                                                   \
        }                                                                       \
    } while (false)
