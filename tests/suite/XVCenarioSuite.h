// A company whose data directory lies in memory, on a clock that stands still.
#pragma once

#include <gtest/gtest.h>

#include "suite/XVBaseParaRotinas.h"
#include "support/XVAmbiente.h"
#include "tests/harness/XVDonoFixo.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

class CXVCenarioSuite : public ::testing::Test {
  protected:
    CXVCenarioSuite() {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/telvo");
        EXPECT_TRUE(m_Arquivos.CriaDiretorio(PastaDados()).Ok());
    }

    // A path in the company's data directory.
    std::string PastaDados(const std::string& sNome = "") const {
        std::string sDiretorio;
        EXPECT_EQ(CAmbienteXV::GetPathDados(XV_DF, "MATRIZ", &sDiretorio), S_OK);
        return sNome.empty() ? sDiretorio : m_Arquivos.Junta(sDiretorio, sNome);
    }
    // A file as another process holds it that writes to it.
    std::unique_ptr<IXVArquivo> Segura(const std::string& sNome) {
        constexpr SAberturaArquivo k_escrita{EAcessoArquivo::eLeituraEscrita,
                                             ECompartilhamentoArquivo::eNegaEscrita,
                                             ECriacaoArquivo::eSomenteExistente};
        std::unique_ptr<IXVArquivo> pArquivo;
        EXPECT_TRUE(m_Arquivos.Abre(PastaDados(sNome), k_escrita, pArquivo).Ok());
        return pArquivo;
    }
    void CriaSimulacao(const std::string& sNome, std::string sConteudo) {
        m_Arquivos.CriaArquivo(m_Arquivos.Junta(PastaDados("simulacao"), sNome), std::move(sConteudo));
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVRelogioFalso m_Relogio;
    CXVRegistryFalso m_registry;
    CXVGuardaSistemaArquivos m_GuardaArquivos{m_Arquivos};
    CXVGuardaRelogio m_GuardaRelogio{m_Relogio};
    CXVGuardaRegistry m_guardaRegistry{m_registry};
    CXVDonoFixo m_Dono{"MATRIZ"};
};
