// xvcr on a store of its own, for tests of what its user sees: the program itself, or the same in the test's
// own process.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVExecucao.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/harness/XVRelogioFalso.h"

using TArgumentos = std::vector<std::string>;

SExecucao XVExecutaAqui(const TArgumentos& listaArgumentos);

// "NAME=value"; this process and those that it starts have it from now on.
void XVPoeVariavel(const std::string& sAtribuicao);
// Takes away what xvcr would find in the environment; also before the first test, for whoever runs it may
// have a store of his own there.
void XVLimpaAmbiente();

// A command line as it is written, its words parted by blanks.
TArgumentos XVPalavras(const std::string& sLinha);

// What an output with --json says: one value for each line.
std::vector<nlohmann::json> XVLinhasJson(const std::string& sTexto);

class XVPrograma : public testing::Test {
  protected:
    // bAqui: in this process, which has no input of its own.
    explicit XVPrograma(bool bAqui = false) : m_bAqui(bAqui) {}

    // Runs xvcr on the test's store with the words of a line, parted by blanks, and then with rMais.
    SExecucao Xvcr(const std::string& sPalavras, const TArgumentos& rMais = {},
                   const std::string& sEntrada = {}) const;
    // The same with --json; the run must succeed.
    std::vector<nlohmann::json> Json(const std::string& sPalavras, const TArgumentos& rMais = {},
                                     const std::string& sEntrada = {}) const;
    // The program at work with "carrega", its input and output pipes, its error output in the file "erro".
    CXVProcessoFilho Carrega(const std::string& sArquivo) const;
    // The text form of the DMC that a command answers that records.
    std::string Grava(const std::string& sPalavras, const TArgumentos& rMais = {},
                      const std::string& sEntrada = {}) const;
    // The integration with its texts.
    nlohmann::json Le(const std::string& sDmc) const { return Json("le --todos " + sDmc).at(0); }

    CXVDiretorioTeste m_Diretorio;

  private:
    const bool m_bAqui;
};

// In this process, with a clock that stands still.
class XVProgramaAqui : public XVPrograma {
  protected:
    XVProgramaAqui() : XVPrograma(true) {}

    CXVRelogioFalso m_Relogio;
    const CXVGuardaRelogio m_GuardaRelogio{m_Relogio};
};
