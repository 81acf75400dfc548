// The forms in which a store leaves: lines that can be read back, and tables for those who analyse.
#pragma once

#include <memory>
#include <string>

#include "tools/xvcr/fields/XVLinhaExportacao.h"

// Turns what it is handed, in the order of the calls, into bytes behind *psPara.
class IXVFormatoExportacao {
  public:
    virtual ~IXVFormatoExportacao() = default;
    virtual void Comeca(const std::string& sEmpresa, std::string* psPara) = 0;
    virtual void Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) = 0;
    virtual void Inclui(const CXVDadosMapa& rDados, std::string* psPara) = 0;
    virtual void Inclui(const CXVDadosDataHora& rDados, std::string* psPara) = 0;
    virtual void Termina(std::string* psPara) = 0;
};

enum class EFormatoExportacao : std::uint8_t { eJsonLines, eCsv, eSql };

// bTextos: with the texts of the integrations; lines always have them.
std::unique_ptr<IXVFormatoExportacao> XVCriaFormato(EFormatoExportacao eFormato, bool bTextos);
