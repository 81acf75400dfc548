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
    SExecucao Xvcr(const std::string& sLinha) const { return Xvcr(XVPalavras(sLinha)); }
    // The same with --json; the run must succeed. One value for each line of the output.
    std::vector<nlohmann::json> Json(std::vector<std::string> listaArgumentos,
                                     const std::string& sEntrada = {}) const;
    std::vector<nlohmann::json> Json(const std::string& sLinha) const { return Json(XVPalavras(sLinha)); }
    // Records a new integration with the options and returns the text form of its DMC.
    std::string Grava(std::vector<std::string> listaOpcoes) const;
    std::string Grava(const std::string& sOpcoes) const { return Grava(XVPalavras(sOpcoes)); }

    CXVDiretorioTeste m_Diretorio;
};
