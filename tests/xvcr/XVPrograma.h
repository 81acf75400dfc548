// The real program on a store of its own, for tests of what its user sees.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/xvcr/XVExecutaAqui.h"

class XVPrograma : public testing::Test {
  protected:
    // Runs xvcr on the test's store.
    SExecucao Xvcr(const std::vector<std::string>& listaArgumentos, const std::string& sEntrada = {}) const;
    // The same with --json; the run must succeed. One value for each line of the output.
    std::vector<nlohmann::json> Json(std::vector<std::string> listaArgumentos,
                                     const std::string& sEntrada = {}) const;
    // Records a new integration with the options and returns the text form of its DMC.
    std::string Grava(std::vector<std::string> listaOpcoes) const;

    CXVDiretorioTeste m_Diretorio;
};
