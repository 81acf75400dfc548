// A summary in its three forms: for a person, within 80 columns; as one JSON object; for a collector of
// numbers.
#pragma once

#include <map>
#include <string>

#include "middleware/resumo/XVResumoLoja.h"
#include "tools/xvcr/output/XVSaida.h"

// A blank line stands before all but the first.
void XVMostraResumo(CXVSaida& rSaida, const std::string& sEmpresa, const SResumoLoja& rResumo,
                    bool bPrimeira);
XVJson XVResumoEmJson(const std::string& sEmpresa, const SResumoLoja& rResumo);

// The text format of the exposition: all samples of a name stand together, below its HELP and TYPE.
class CXVPrometheus {
  public:
    void Inclui(const std::string& sEmpresa, const SResumoLoja& rResumo);
    std::string Monta() const;

  private:
    std::map<std::string, std::string> m_mapaAmostras;  // lines by name
};
