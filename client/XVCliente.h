// The way into the integration store, by two doors that lead to the same component:
//
//   - Conecta: the component in the server's process, for the store of the installation (Windows);
//   - ConectaLocal: the component made in this process, on a store directory (any system), also for viewing
//     only while another process records.
//
//     const XVCliente::CApartamento apartamento;            // COM, for this thread; only the server needs it
//     XVCliente::CXVCliente cliente;
//     HRESULT hr = cliente.Conecta({.sEmpresa = "EMPRESA", .usUsuario = 7});
//     REG_XVDMC regDmc;                                     // none: a new integration
//     hr = cliente.GravaIntegracao(&regDmc, integracao);    // its key comes back
//
// Values are the classes CXVDadosCR_... of contract/XVDadosCR.h, enumerations those of
// contract/XVCR_Enumeracoes.h with their names in contract/XVEnumeracoesTexto.h. Keys are REG_XVDMC,
// date-times REG_XVDMAHMSUTC, in UTC; both are made, read and written as text by their own members
// (support/values/XVDmc.h). Names and sentences of codes: client/XVClienteCodigos.h.
//
// Results are codes: negative is a failure, of the component, of the store below it or of COM. Nothing is
// thrown but std::bad_alloc. Outputs are changed on success only, unless said otherwise; output pointers must
// not be null. A failed operation has changed nothing in the store. Common to all operations: 0x81080A04, not
// connected, or the component is dead after a failure of its run time (connect again); 0x80070057, an
// impossible value or a text with a NUL byte or of 4 GiB and more; 0x80043Exx and 0x80043Fxx, a failed file
// operation; 0x80043ED1, a recording operation of a connection for viewing only.
//
// When the server goes away or cuts an idle client off, operations connect again by themselves and wait for a
// server that is ending or starting: 25 ms, then twice as long each time up to a second, with no attempt
// later than 40 s after the operation began (an attempt itself may take up to 30 s). Then they are repeated,
// where that can double nothing: writes when the code proves that the call was not executed, readings also
// when that is unknown, twice at most. An exchange with an external system and FuncaoGenerica are never
// repeated; whether the server is still there is asked before them. A write whose answer was lost answers the
// code (ServidorFoiEmbora): read or search before it is made again. client/XVAusenciaServidor.h has the
// codes.
//
// Thread rule: one object is used by one thread at a time, for the server inside an apartment; different
// objects may be used by different threads at the same time. Connections to the same local store share it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/XVClienteCodigos.h"
#include "contract/XVCR_Enumeracoes.h"
#include "contract/XVDadosCR.h"
#include "contract/XVEnumeracoesTexto.h"
#include "support/values/XVDmc.h"

namespace XVCliente {

// COM for the calling thread, for the life of the object. Systems without COM: nothing, and S_OK.
class CApartamento {
  public:
    CApartamento();
    ~CApartamento();
    CApartamento(const CApartamento&) = delete;
    CApartamento& operator=(const CApartamento&) = delete;
    HRESULT GetResultado() const { return m_hr; }

  private:
    HRESULT m_hr;
};

// Whether this program can reach a server at all. Thread rule: any thread.
bool TemServidor();

// Whether a code says that the server process is gone, has cut this client off or did not start, and a new
// component is needed. Thread rule: any thread.
bool ServidorFoiEmbora(HRESULT hr);

// Who calls, for which company. Texts left empty are filled in with the name of the running program.
struct SIdentificacao {
    std::string sEmpresa{};        // 1 to 47 characters of A-Z a-z 0-9 _ -, no name of a device
    XVUShort usUsuario = 0;        // not 65535
    XVUInt ulNumeroSessao = 0;     // the caller's own numbering; it stands in headers and logs
    XVUInt ulNumeroChamador = 1;   // any number but 0
    std::string sExecutavel{};     // at most 47 bytes
    std::string sModulo{};         // at most 47 bytes
    std::string sIdentificacao{};  // at most 63 bytes
};

// Which files ConectaLocal works on.
struct SLojaLocal {
    // The module directory, which holds the companies' directories; empty: the one of the machine's
    // configuration. One module directory at a time is in force in a process, until the last client that
    // named it disconnects, a client whose connection failed included.
    std::string sDiretorio{};
    // For viewing, without locking: nothing is recorded, converted, created or logged, and every operation
    // that would is refused.
    bool bSomenteLeitura = false;
};

// The last failure of a component.
struct SUltimoErro {
    HRESULT hrErro = 0;  // 0: the component has had no failure
    XVUInt ulLinha = 0;
    REG_XVDMAHMSUTC regDataHora{};
    std::string sNome{};    // of the code
    std::string sFuncao{};  // that failed
    std::string sFonte{};
    std::string sMensagem{};  // a sentence for a person, in Portuguese, with the refused file if there is one
};

class CXVCliente {
  public:
    class CConexao;  // one of the doors: client/XVConexao.h
    // What an operation does to the world, which decides about repeating it.
    enum class EOperacao {
        eLeitura,   // nothing
        eGravacao,  // changes the store, which itself answers none of the codes of a server that is gone
        eTroca,     // comes to a provider or another component, which may answer anything
    };

    CXVCliente();
    // By a door of the caller's own, which opens with Reconecta or the first operation.
    explicit CXVCliente(std::unique_ptr<CConexao> pConexao);
    ~CXVCliente();  // disconnects
    CXVCliente(const CXVCliente&) = delete;
    CXVCliente& operator=(const CXVCliente&) = delete;

    // Creates a component in the server and initialises it; a connection in hand is given up first. A server
    // that is ending or starting is waited for, as said above; a server that cannot be started at all is
    // known after that time only. E_INVALIDARG: a text does not fit its field, or user or company are
    // impossible.
    // E_NOTIMPL: this system has no server. 0x80040154: none is registered. Otherwise the codes of opening a
    // store, as below.
    HRESULT Conecta(const SIdentificacao& rIdentificacao);
    // The same with the component in this process. Opening for writing converts a store of an earlier version
    // and makes one where there is none.
    // E_NOTIMPL: a program of 32 bits, which reaches a store by the server only. E_INVALIDARG: as above, or
    // another module directory is in force in this process. 0x80043EBF (eBadPath): no module directory is
    // configured, or there is nothing to view. 0x80043EEE: another process has the store open for writing.
    // 0x810809C7: the store is of a later version. Codes of a file that is refused: GetUltimoErro names it.
    HRESULT ConectaLocal(const SIdentificacao& rIdentificacao, const SLojaLocal& rLoja);
    // The same again, by the same door and as whom it was given.
    HRESULT Reconecta();
    // Gives the component up; the last connection to a local store closes it. The result is how that
    // ended, S_OK where there was nothing to give up; the object is disconnected in any case.
    HRESULT Desconecta();
    bool EstaConectado() const;

    // Records an integration. *pDmc none: a new one, whose key comes back, and whose inclusion is now unless
    // rDados says when. Otherwise the integration of that key is replaced, fields and texts, and *pDmc stays.
    // 0x81080AAA: no such integration. 0x81080C67: an update without external key in a status other than
    // pending, error or cancelled.
    HRESULT GravaIntegracao(REG_XVDMC* pDmc, const CXVDadosCR_IntegracaoMiddleware& rDados);
    // Makes the exchange with the external system at once for every pending item of the record in rDados, and
    // records what comes of it. *pDmc in: the integration to change or delete, none for inclusions; out: the
    // last one recorded, none where there was nothing to exchange. A system in rDados restricts the exchange
    // to it. E_NOTIMPL: a system without provider. Codes of the provider. The first item that fails ends the
    // operation; what was recorded before it stays.
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmc, const CXVDadosCR_IntegracaoMiddleware& rDados);
    // Records every pending item of the origin as a pending integration, without an exchange. E_NOTIMPL: a
    // system without provider.
    HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem, const CXVDadosCR_IntegracaoMiddleware& rDados);
    // Records status, message and returned JSON of one integration; an empty JSON leaves the stored one.
    // 0x810809D9: no integration of that key. 0x81080AAA: none of that external key and system. 0x81080C69:
    // neither its key nor external key and system are given.
    HRESULT GravaStatusIntegracao(const CXVDadosCR_StatusIntegracaoMiddleware& rDados);

    // Reads one integration. ullFlags: bits k_ullLe... of contract/XVCR_Enumeracoes.h; texts that are not
    // asked for are empty. 0x81080AAA: no such integration.
    HRESULT LeIntegracao(REG_XVDMC regDmc, XVUInt64 ullFlags, CXVDadosCR_IntegracaoMiddleware* pDados);
    // Reads each integration of the list, in its order; one that fails fails the whole. All results are in
    // memory together. A query of the external system is made once for the whole list. 0x80070057: of more
    // than a million keys, more than the store has integrations.
    HRESULT LeIntegracoes(const std::vector<REG_XVDMC>& listaDmc, XVUInt64 ullFlags,
                          std::vector<CXVDadosCR_IntegracaoMiddleware>* pLista);
    // Keys of the integrations that meet all conditions, grouped by their dates. Nothing found: success and
    // an empty list.
    HRESULT BuscaPonteiros(const CXVDadosCR_FiltroIntegracaoMiddleware& rFiltro,
                           std::vector<REG_XVDMC>* pLista);

    // Adds or changes the external id of a record; an origin that is not given stays. 0x81080CEB: no key of
    // the record.
    HRESULT GravaChaveRegistro(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados);
    // Adds a link without external id unless the record has one. 0x81080CEB: no key of the record.
    HRESULT GravaChaveRegistroPendente(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados);
    // Finds the link of a record, of an external id, or of both; database, type and system must be those of
    // the link. Nothing found: success and regDmcRegistroTelvo none.
    HRESULT BuscaChaveRegistro(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rFiltro,
                               CXVDadosCR_ChaveRegistroTelvoParaTerceiro* pDados);

    // Adds or changes the date-time of a system, type of integration and kind.
    HRESULT GravaDataHora(const CXVDadosCR_DataHoraIntegracaoTerceiro& rDados);
    // Nothing found: success and regDataHora none.
    HRESULT BuscaDataHora(const CXVDadosCR_DataHoraIntegracaoTerceiro& rFiltro,
                          CXVDadosCR_DataHoraIntegracaoTerceiro* pDados);

    // Asks an external system and stores nothing. E_NOTIMPL: nobody answers this kind of query. What the
    // system makes of it is eStatusConsulta.
    HRESULT BuscaDadosSistemaTerceiro(const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                      CXVDadosCR_StatusConsultaSistemaTerceiro* pResposta);

    // An operation that the suite's components share under a number: bytes in, bytes out. E_NOTIMPL: this
    // component has none.
    HRESULT FuncaoGenerica(XVUInt ulFuncao, const std::string& sEntrada, std::string* psSaida);
    // Which integrations the exchange operations recorded since the last of them began, in their order, also
    // where it failed; one that several items changed stands as often. It never connects again: a new
    // component knows nothing of them. 0x81080A04: the component in hand is gone; what it recorded must be
    // searched for. Any failure of a call: the same.
    HRESULT UltimasGravadas(std::vector<REG_XVDMC>* pLista);
    // The last failure of the component in hand or, after a connection that failed, of the one that refused
    // to initialise, or why none could be made. It never connects again: a new component has no last error.
    HRESULT GetUltimoErro(SUltimoErro* pErro);

  private:
    class CConexaoServidor;
    class CConexaoLocal;

    template <class TChamada>
    HRESULT Executa(EOperacao eOperacao, TChamada&& fnChamada);

    std::unique_ptr<CConexao> m_pConexao;
};

}  // namespace XVCliente
