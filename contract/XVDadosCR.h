// Data classes of integrations, filters, parameters and queries, with their copies from and to the
// interface records: the values that everything besides the component's boundary works with, the client and
// its programs included. They own their texts, which are bytes (UTF-8 where they are texts at all) and never
// converted on the way. Keys and date-times that are none are 0, as is every field that was not set.
//
// ComoRegistro gives a record for a call: its texts and lists are views into the value, nothing is copied or
// allocated, and the record holds while the value lives unchanged. CopiarDe takes a record over, CopiarParaPS
// makes an output record whose buffers are new and belong to the caller.
#pragma once

#include <string>
#include <vector>

#include "contract/XVCR_Enumeracoes.h"
#include "contract/XVCR_RegistrosPS.h"

// One integration with its three texts.
class CXVDadosCR_IntegracaoMiddleware {
  public:
    std::string sRegistroJSON{};           // what was sent
    std::string sMensagemIntegracao{};     // what came of it, for a person
    std::string sJSONRetornoIntegracao{};  // what was returned
    REG_XVDMC regDmc{};                    // its own key
    REG_XVDMC regDmcIntegracaoOrigem{};    // the integration that it derives from
    REG_XVDMC regDmcMovimentoOrigem{};     // the suite's record that is exchanged
    REG_XVDMAHMSUTC regDataHoraInclusao{};
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus{};
    XVUInt64 uiChaveIntegracaoSistemaTerceiro = 0;  // the integration's key in the external system
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;    // the record's key in the external system
    XVUInt64 uiBaseDadosTerceiro = 0;               // the external system's database
    XVUInt eTipoIntegracao = 0;                     // XVSMiddleware_TipoIntegracao
    XVUInt eStatusIntegracao = 0;                   // XVSMiddleware_StatusIntegracao
    XVUInt eSistemaIntegracao = 0;                  // XVSMiddleware_SistemaIntegracao
    XVUInt eTipoTransacao = 0;                      // XVSMiddleware_TipoTransacao
    XVUInt ulPonteiroFilial = 0;                    // branch
    XVUInt ulPonteiroUsuarioInclusao = 0;
    XVUInt ulPonteiroUsuarioCancelamento = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte cReconsultarIdTerceiros = 0;  // 1: the external ids are to be asked for again
    XVByte ucTipoPonteiroAuxiliar = 0;

    // Copies fields and texts. E_INVALIDARG for a text record that is not valid; then nothing is changed.
    HRESULT CopiarDe(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
    // Fills an output record; its texts are new buffers owned by the caller. On failure *pReg holds no
    // buffer.
    HRESULT CopiarParaPS(tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) const;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS ComoRegistro() const;
    bool operator==(const CXVDadosCR_IntegracaoMiddleware&) const = default;
};

// A new status of an integration with what the external system answered.
class CXVDadosCR_StatusIntegracaoMiddleware {
  public:
    REG_XVDMC regDmc{};  // none: named by key and system
    std::string sMensagemIntegracao{};
    std::string sJSONRetornoIntegracao{};
    XVUInt64 uiChaveIntegracaoSistemaTerceiro = 0;
    XVUInt eStatusIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;

    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS ComoRegistro() const;
};

// One pending item that a provider reports for a record of the suite.
class CXVDadosCR_PendenciaIntegracaoSistema {
  public:
    std::string sJSON;       // empty: the item is skipped
    REG_XVDMC regDmcOrigem;  // the suite's record that the item carries
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    XVUInt eSistemaIntegracao = 0;  // 0: the item is skipped
    XVUInt ulPonteiroFilial = 0;    // 0: the caller's branch stays
    XVByte cReconsultarIdTerceiros = 0;
    bool operator==(const CXVDadosCR_PendenciaIntegracaoSistema&) const = default;
};

class CXVDadosCR_ParametrosIntegracao {
  public:
    REG_XVDMC regDmcOrigem;
    REG_XVDMC regDmcIntegracao;
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt eTipoIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    XVUInt eTipoTransacao = 0;
    XVUInt ulPonteiroFilial = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;
    bool operator==(const CXVDadosCR_ParametrosIntegracao&) const = default;
};

// What a search asks for. Bounds of 0 and empty lists restrict nothing.
class CXVDadosCR_FiltroIntegracaoMiddleware {
  public:
    XVUInt64 uiChaveIntegracaoSistemaTerceiroInicial = 0;
    XVUInt64 uiChaveIntegracaoSistemaTerceiroFinal = 0;
    // The date and the time of day of a bound are compared separately; seconds 0 compare the date alone.
    REG_XVDMAHMSUTC regDataHoraInicialInclusao{};
    REG_XVDMAHMSUTC regDataHoraFinalInclusao{};
    REG_XVDMAHMSUTC regDataHoraInicialAlteracaoStatus{};
    REG_XVDMAHMSUTC regDataHoraFinalAlteracaoStatus{};
    std::vector<XVUInt> listaTipoIntegracao{};
    std::vector<XVUInt> listaStatusIntegracao{};
    std::vector<XVUInt> listaSistemaIntegracao{};
    std::vector<XVUInt> listaTipoTransacao{};

    // E_INVALIDARG: a count above 0 with a null pointer, or a date-time that is none.
    static HRESULT Valida(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg);
    // Of a record that is not valid nothing is taken.
    HRESULT CopiarDe(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg);
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS ComoRegistro() const;

    XVUInt64 GetChaveIntegracaoSistemaTerceiroInicial() const {
        return uiChaveIntegracaoSistemaTerceiroInicial;
    }
    XVUInt64 GetChaveIntegracaoSistemaTerceiroFinal() const { return uiChaveIntegracaoSistemaTerceiroFinal; }
    REG_XVDMAHMSUTC GetDataHoraInicialInclusao() const { return regDataHoraInicialInclusao; }
    REG_XVDMAHMSUTC GetDataHoraFinalInclusao() const { return regDataHoraFinalInclusao; }
    REG_XVDMAHMSUTC GetDataHoraInicialAlteracaoStatus() const { return regDataHoraInicialAlteracaoStatus; }
    REG_XVDMAHMSUTC GetDataHoraFinalAlteracaoStatus() const { return regDataHoraFinalAlteracaoStatus; }
    std::size_t GetQuantidadeTipoIntegracao() const { return listaTipoIntegracao.size(); }
    std::size_t GetQuantidadeStatusIntegracao() const { return listaStatusIntegracao.size(); }
    std::size_t GetQuantidadeSistemaIntegracao() const { return listaSistemaIntegracao.size(); }
    std::size_t GetQuantidadeTipoTransacao() const { return listaTipoTransacao.size(); }
    bool FindTipoIntegracao(XVUInt e) const { return Find(listaTipoIntegracao, e); }
    bool FindStatusIntegracao(XVUInt e) const { return Find(listaStatusIntegracao, e); }
    bool FindSistemaIntegracao(XVUInt e) const { return Find(listaSistemaIntegracao, e); }
    bool FindTipoTransacao(XVUInt e) const { return Find(listaTipoTransacao, e); }
    const std::vector<XVUInt>& GetListaSistemaIntegracao() const { return listaSistemaIntegracao; }
    bool operator==(const CXVDadosCR_FiltroIntegracaoMiddleware&) const = default;

  private:
    static bool Find(const std::vector<XVUInt>& lista, XVUInt e);
};

// Which id an external system gave to a record of the suite. Also what the key map is searched by: then the
// origin is not looked at.
class CXVDadosCR_ChaveRegistroTelvoParaTerceiro {
  public:
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    REG_XVDMC regDmcRegistroTelvo{};
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt eTipoIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    REG_XVDMC regDmcOrigemIntegracao{};  // the integration that produced the link

    void CopiarDe(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg);
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ComoRegistro() const;
    tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ComoFiltro() const;
    bool operator==(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro&) const = default;
};

// A date-time of a system, type of integration and kind. Also what it is searched by: then the date-time is
// not looked at.
class CXVDadosCR_DataHoraIntegracaoTerceiro {
  public:
    REG_XVDMAHMSUTC regDataHora{};
    XVUInt eTipoIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    XVUInt eTipoData = 0;  // XVSMiddleware_TipoData

    void CopiarDe(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg);
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS ComoRegistro() const;
    tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS ComoFiltro() const;
    bool operator==(const CXVDadosCR_DataHoraIntegracaoTerceiro&) const = default;
};

// A query of an external system that leaves nothing in the store.
class CXVDadosCR_ConsultaSistemaTerceiro {
  public:
    std::string sChaveConsulta{};
    XVUInt eTipoConsulta = 0;  // XVSMiddleware_TipoConsulta
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;

    // E_INVALIDARG for a text record that is not valid; then nothing is changed.
    HRESULT CopiarDe(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& reg);
    tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS ComoRegistro() const;
    bool operator==(const CXVDadosCR_ConsultaSistemaTerceiro&) const = default;
};

// Its answer.
class CXVDadosCR_StatusConsultaSistemaTerceiro {
  public:
    std::string sMensagemRetorno{};
    std::string sJSONRetorno{};
    std::string sDocumentoRetorno{};  // bytes of any kind
    XVUInt eStatusConsulta = 0;       // XVSMiddleware_StatusConsulta

    // E_INVALIDARG for a text or document that is not valid; then nothing is changed.
    HRESULT CopiarDe(const tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg);
    // As that of the integration.
    HRESULT CopiarParaPS(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) const;
    bool operator==(const CXVDadosCR_StatusConsultaSistemaTerceiro&) const = default;
};
