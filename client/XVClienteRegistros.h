// The generated records beside the client's values: making the one from the other and taking results over.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <XVCR_Middleware_idl.h>

#include "client/XVClienteValores.h"

namespace XVCliente {

// Records over a value's texts, valid while the value lives unchanged. False: a text of 4 GiB or more.
bool ParaRegistro(const std::string& sTexto, _REG_DF_TEXTOPS* pReg);
bool ParaRegistro(const SIntegracao& rDados, REG_CR_INTEGRACAO_MIDDLEWAREPS* pReg);
bool ParaRegistro(const SStatusIntegracao& rDados, REG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS* pReg);
bool ParaRegistro(const SFiltroIntegracao& rDados, REG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS* pReg);
bool ParaRegistro(const SConsultaTerceiro& rDados, REG_CR_CONSULTA_SISTEMA_TERCEIROPS* pReg);
REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaRegistro(const SChaveRegistro& rDados);
REG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaFiltro(const SChaveRegistro& rDados);
REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS ParaRegistro(const SDataHoraIntegracao& rDados);
REG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS ParaFiltro(const SDataHoraIntegracao& rDados);

SIntegracao DeRegistro(const REG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
SChaveRegistro DeRegistro(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg);
SDataHoraIntegracao DeRegistro(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg);
SRespostaConsulta DeRegistro(const REG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg);
SUltimoErro DeRegistro(const REG_DF_ULTIMO_ERROPS& reg);
std::string DeBytes(const byte* pBytes, ULONG ulQuantidade);

// Frees the buffers of a result.
void Libera(REG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
void Libera(REG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg);
inline void Libera(_REG_CR_LISTA_BYTESPS& reg) {
    ::CoTaskMemFree(reg.pListaBytes);
}
inline void Libera(_REG_DF_LISTA_XVDMCPS& reg) {
    ::CoTaskMemFree(reg.pLista);
}

// A result record whose buffers end with it, whatever happens on the way.
template <class TRegistro>
class TSaida {
  public:
    TSaida() = default;
    ~TSaida() { Libera(m_reg); }
    TSaida(const TSaida&) = delete;
    TSaida& operator=(const TSaida&) = delete;
    TRegistro* operator&() { return &m_reg; }
    TRegistro& Get() { return m_reg; }

  private:
    TRegistro m_reg{};
};

}  // namespace XVCliente
