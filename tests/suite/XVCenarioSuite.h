// A company whose data directory lies in memory, on a clock that stands still.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "suite/XVBaseParaRotinas.h"
#include "support/XVAmbiente.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

// Company, user and session without any life of their own.
class CXVDonoFixo final : public IXVDF_Profiler {
  public:
    explicit CXVDonoFixo(std::string sEmpresa, XVUShort usUsuario = 7, XVUInt ulSessao = 99,
                         bool bConsulta = false)
        : m_sEmpresa(std::move(sEmpresa)),
          m_usUsuario(usUsuario),
          m_ulSessao(ulSessao),
          m_bConsulta(bConsulta) {}
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return m_usUsuario; }
    XVUInt GetNumeroSessao() const override { return m_ulSessao; }
    bool EhConsulta() const override { return m_bConsulta; }

  private:
    std::string m_sEmpresa;
    XVUShort m_usUsuario;
    XVUInt m_ulSessao;
    bool m_bConsulta;
};

class CXVCenarioSuite : public ::testing::Test {
  protected:
    CXVCenarioSuite()
        : m_GuardaArquivos(m_Arquivos), m_GuardaRelogio(m_Relogio), m_guardaRegistry(m_registry) {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/telvo");
        EXPECT_TRUE(m_Arquivos.CriaDiretorio(PastaDados()).Ok());
    }

    // A path in the company's data directory, and in its simulation folder.
    std::string PastaDados(const std::string& sNome = "") const {
        std::string sDiretorio;
        EXPECT_EQ(CAmbienteXV::GetPathDados(XV_DF, "MATRIZ", &sDiretorio), S_OK);
        return sNome.empty() ? sDiretorio : m_Arquivos.Junta(sDiretorio, sNome);
    }
    void CriaSimulacao(const std::string& sNome, std::string sConteudo) {
        m_Arquivos.CriaArquivo(m_Arquivos.Junta(PastaDados("simulacao"), sNome), std::move(sConteudo));
    }
    std::string LeSimulacao(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(m_Arquivos.Junta(PastaDados("simulacao"), sNome)).value_or("<ausente>");
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVRelogioFalso m_Relogio;
    CXVRegistryFalso m_registry;
    CXVGuardaSistemaArquivos m_GuardaArquivos;
    CXVGuardaRelogio m_GuardaRelogio;
    CXVGuardaRegistry m_guardaRegistry;
    CXVDonoFixo m_Dono{"MATRIZ"};
};
