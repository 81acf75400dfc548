// A trace in memory: module directory "/xv" with the company "ACME", a clock that stands still, and a
// log.ini that each test writes.
#pragma once

#include <string>
#include <vector>

#include "support/XVAmbiente.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVProfiler.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

class CDonoTeste : public IXVDF_Profiler {
  public:
    explicit CDonoTeste(std::string sEmpresa = "ACME", bool bConsulta = false)
        : m_sEmpresa(std::move(sEmpresa)), m_bConsulta(bConsulta) {}
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return 7; }
    XVUInt GetNumeroSessao() const override { return 42; }
    bool EhConsulta() const override { return m_bConsulta; }

  private:
    std::string m_sEmpresa;
    bool m_bConsulta;
};

class CXVBancadaTrace {
  public:
    CXVBancadaTrace() {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/xv/");
        m_sistema.CriaDiretorio("/xv/ACME/DF").Ignora();
        m_relogio.SetUTC({2023, 7, 4, 15, 30, 9});
        XVProfiler::RecarregaConfiguracao();
    }
    ~CXVBancadaTrace() {  // the next test finds tracing off
        m_sistema.CriaArquivo("/xv/log.ini", "");
        XVProfiler::RecarregaConfiguracao();
    }

    void EscreveLogIni(const std::string& sValores) {
        m_sistema.CriaArquivo("/xv/log.ini", "[Log]\n" + sValores);
        XVProfiler::RecarregaConfiguracao();
    }

    // Lines of a log as columns; none when the file is absent.
    std::vector<std::vector<std::string>> LeLog(const std::string& sCaminho) const {
        return SeparaColunas(m_sistema.LeConteudo(sCaminho).value_or(""));
    }

    static std::vector<std::vector<std::string>> SeparaColunas(const std::string& sConteudo) {
        std::vector<std::vector<std::string>> listaLinhas;
        if (!sConteudo.empty()) listaLinhas.push_back({""});
        for (std::size_t i = 0; i < sConteudo.size(); ++i) {
            if (sConteudo[i] == '\n') {
                if (i + 1 < sConteudo.size()) listaLinhas.push_back({""});
            } else if (sConteudo[i] == '\t') {
                listaLinhas.back().emplace_back();
            } else {
                listaLinhas.back().back() += sConteudo[i];
            }
        }
        return listaLinhas;
    }

    CXVSistemaArquivosMemoria m_sistema;
    CXVRelogioFalso m_relogio;
    CXVRegistryFalso m_registry;

  private:
    CXVGuardaSistemaArquivos m_guardaSistema{m_sistema};
    CXVGuardaRelogio m_guardaRelogio{m_relogio};
    CXVGuardaRegistry m_guardaRegistry{m_registry};
};

inline constexpr const char* k_pszLogBase = "/xv/ACME/DF/XVProfilerErros_Base_202307.log";
inline constexpr const char* k_pszLogPgms = "/xv/XVProfilerErros_Pgms_202307.log";
inline constexpr const char* k_pszLogProfiler = "/xv/XVProfiler.log";
