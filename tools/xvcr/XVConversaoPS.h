// Values of the command line to the store's interface records and back. Input records hold views into the
// values: they are valid while the value lives unchanged.
#pragma once

#include <vector>

#include "contract/XVCR_RegistrosPS.h"
#include "tools/xvcr/XVValores.h"

namespace XVConversaoPS {

tagREG_CR_INTEGRACAO_MIDDLEWAREPS ParaPS(const SIntegracao& rDados);
tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS ParaPS(const SStatusIntegracao& rDados);
tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS ParaPS(const SFiltroIntegracao& rFiltro);
_REG_DF_LISTA_XVDMCPS ParaPS(const std::vector<REG_XVDMC>& lista);
tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaPS(const SChaveRegistro& rDados);
tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaFiltroPS(const SChaveRegistro& rFiltro);
tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS ParaPS(const SDataHoraIntegracao& rDados);
tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS ParaFiltroPS(const SDataHoraIntegracao& rFiltro);
tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS ParaPS(const SConsultaTerceiro& rConsulta);

SIntegracao DePS(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
SChaveRegistro DePS(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg);
SDataHoraIntegracao DePS(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg);
SRespostaConsulta DePS(const tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg);

}  // namespace XVConversaoPS
