// Names that the simulated system's documents use for the enumerations of the interface.
#pragma once

#include <vector>

#include "suite/simulation/XVDocumentoSimulacao.h"

namespace XVNomesSimulacao {

const std::vector<SNomeValor>& TipoIntegracao();
const std::vector<SNomeValor>& TipoTransacao();
const std::vector<SNomeValor>& StatusIntegracao();
const std::vector<SNomeValor>& TipoConsulta();
const std::vector<SNomeValor>& StatusConsulta();

}  // namespace XVNomesSimulacao
