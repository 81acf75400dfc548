// A client of the integration store's component.
//
//     XVCliente::CApartamento apartamento;               // COM, for this thread
//     XVCliente::CXVCliente cliente;
//     HResult hr = cliente.Conecta({.sEmpresa = "EMPRESA", .usUsuario = 7});
//     std::uint64_t uiDmc = 0;                           // 0: a new integration
//     hr = cliente.GravaIntegracao(&uiDmc, integracao);  // its key comes back
//
// Every result is a code: negative is a failure, of COM or of the component. Outputs are defined on success
// only. Nothing is thrown but std::bad_alloc.
//
// When the server goes away (ServidorFoiEmbora), the operation in progress answers the code and the next
// one connects again by itself. Operations that only read are repeated once in that case, so that they see
// the loss only when no new server comes up. A write is not repeated: whether it took place is unknown.
//
// Thread rule: one object is used by one thread at a time, inside an apartment; different objects are
// independent of each other.
#pragma once

#include <memory>

#include "client/XVClienteValores.h"

namespace XVCliente {

// COM for the calling thread, for the life of the object.
class CApartamento {
  public:
    CApartamento();
    ~CApartamento();
    CApartamento(const CApartamento&) = delete;
    CApartamento& operator=(const CApartamento&) = delete;
    HResult GetResultado() const { return m_hr; }

  private:
    HResult m_hr;
};

// Whether a code says that the server process is gone or has cut this client off, and a new component is
// needed.
bool ServidorFoiEmbora(HResult hr);

class CXVCliente {
  public:
    CXVCliente();
    ~CXVCliente();  // disconnects
    CXVCliente(const CXVCliente&) = delete;
    CXVCliente& operator=(const CXVCliente&) = delete;

    // Creates a component and initialises it. A server that is just ending is waited for: the creation is
    // tried again, 150 ms x n after the nth attempt. A text that does not fit its field: E_INVALIDARG.
    HResult Conecta(const SIdentificacao& rIdentificacao);
    // The same again, as whom Conecta was given.
    HResult Reconecta();
    void Desconecta();
    bool EstaConectado() const;

    // *puiDmc 0: a new integration, whose key comes back; otherwise that one is updated.
    HResult GravaIntegracao(std::uint64_t* puiDmc, const SIntegracao& rDados);
    HResult GravaIntegracaoInstantanea(std::uint64_t* puiDmc, const SIntegracao& rDados);
    HResult GravaPendenciaIntegracao(std::uint64_t uiDmcOrigem, const SIntegracao& rDados);
    HResult GravaStatusIntegracao(const SStatusIntegracao& rDados);

    // uiFlags: 1 the JSON sent, 2 the message, 4 the JSON returned, 8 query the external system, 16 (with 8)
    // its closing operation.
    HResult LeIntegracao(std::uint64_t uiDmc, std::uint64_t uiFlags, SIntegracao* pDados);
    HResult LeIntegracoes(const std::vector<std::uint64_t>& listaDmc, std::uint64_t uiFlags,
                          std::vector<SIntegracao>* pLista);
    HResult BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<std::uint64_t>* pLista);

    HResult GravaChaveRegistro(const SChaveRegistro& rDados);
    HResult GravaChaveRegistroPendente(const SChaveRegistro& rDados);
    // Nothing found: success and uiDmcRegistroTelvo 0.
    HResult BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados);

    HResult GravaDataHora(const SDataHoraIntegracao& rDados);
    // Nothing found: success and uiDataHora 0.
    HResult BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados);

    HResult BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta, SRespostaConsulta* pResposta);

    HResult FuncaoGenerica(std::uint32_t ulFuncao, const std::string& sEntrada, std::string* psSaida);
    // Of the component in hand or, after a Conecta or Reconecta that failed, of the one that refused to
    // initialise.
    HResult GetUltimoErro(SUltimoErro* pErro);

  private:
    class CConexao;
    std::unique_ptr<CConexao> m_pConexao;
};

}  // namespace XVCliente
