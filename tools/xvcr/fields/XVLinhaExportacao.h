// The lines of an exported store: JSON objects whose first member, "linha", says what they are. The fields
// are those of XVCampos.h, in the forms of XVRegistroJson.h, but a DMC stands in its text form; fields that
// are zero, none or empty are left out.
//
//   inicio        the form, its version and the company; the first line
//   integracao    with its place in the index
//   substituida   an integration that no index record leads to any more
//   vaga          a key whose integration cannot be told
//   mapa          an entry of the key map
//   dataHora      a date-time
//   fim           how many lines of each kind, and the CRC-64 of all bytes before it
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "middleware/XVTransporte.h"
#include "tools/xvcr/fields/XVRegistroJson.h"

struct SInicioExportacao {
    static constexpr XVUInt k_ulVersao = 1;

    XVUInt ulVersao = 0;
    std::string sEmpresa{};
};

struct SContagemExportacao {
    XVUInt ulIntegracoes = 0;
    XVUInt ulSubstituidas = 0;
    XVUInt ulVagas = 0;
    XVUInt ulMapa = 0;
    XVUInt ulDatasHoras = 0;
    bool operator==(const SContagemExportacao&) const = default;

    void Conta(SIntegracaoTransportada::ETipo eTipo);
};

struct SFimExportacao : SContagemExportacao {
    XVUInt64 uiSoma = 0;
};

using CXVDadosMapa = CXVDadosCR_ChaveRegistroTelvoParaTerceiro;
using CXVDadosDataHora = CXVDadosCR_DataHoraIntegracaoTerceiro;
using TLinhaExportacao = std::variant<std::monostate, SInicioExportacao, SIntegracaoTransportada,
                                      CXVDadosMapa, CXVDadosDataHora, SFimExportacao>;

namespace XVLinhaExportacao {

// The line without its line feed, behind rPara.
void Anexa(std::string& rPara, const SInicioExportacao& rInicio);
void Anexa(std::string& rPara, const SIntegracaoTransportada& rIntegracao);
void Anexa(std::string& rPara, const CXVDadosMapa& rDados);
void Anexa(std::string& rPara, const CXVDadosDataHora& rDados);
void Anexa(std::string& rPara, const SFimExportacao& rFim);

// The field at fault, where it is one, and the explanation; an empty explanation: *pLinha is what it says.
[[nodiscard]] SErroCampo Le(std::string_view sLinha, TLinhaExportacao* pLinha);
// By its first characters, as they are written here, without reading the line.
bool EhInicio(std::string_view sLinha);
bool EhFim(std::string_view sLinha);

}  // namespace XVLinhaExportacao
