// A trace in memory: module directory "/xv" with the company "ACME", a clock that stands still, and a
// log.ini that each test writes.
#pragma once

#include <sstream>
#include <vector>

#include "support/XVAmbiente.h"
#include "support/trace/XVProfiler.h"
#include "tests/harness/XVDonoFixo.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

using TLinhas = std::vector<std::vector<std::string>>;

class CXVBancadaTrace {
  public:
    CXVBancadaTrace() {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/xv/");
        m_sistema.CriaDiretorio("/xv/ACME/DF").Ignora();
        m_relogio.SetUTC({2023, 7, 4, 15, 30, 9});
        XVProfiler::RecarregaConfiguracao();
        // What an earlier test lost is told here, and not by the first record of the test.
        XVProfiler::RecordError(nullptr, "F", "f", 1, "%s", "");
        m_sistema.Apaga("/xv/XVProfilerErros_Pgms_202307.log").Ignora();
    }
    ~CXVBancadaTrace() {  // the next test finds tracing off
        EscreveLogIni("");
    }

    void EscreveLogIni(const std::string& sValores) {
        m_sistema.CriaArquivo("/xv/log.ini", "[Log]\n" + sValores);
        XVProfiler::RecarregaConfiguracao();
    }

    // Lines of a log as columns; none when the file is absent.
    TLinhas LeLog(const std::string& sCaminho) const {
        return SeparaColunas(m_sistema.LeConteudo(sCaminho).value_or(""));
    }

    static TLinhas SeparaColunas(const std::string& sConteudo) {
        TLinhas linhas;
        std::istringstream conteudo(sConteudo);
        for (std::string sLinha; std::getline(conteudo, sLinha);) {
            std::istringstream linha(sLinha + "\t");
            linhas.emplace_back();
            for (std::string s; std::getline(linha, s, '\t');) linhas.back().push_back(s);
        }
        return linhas;
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
