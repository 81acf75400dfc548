// Data classes of integrations, filters, parameters and queries, with their copies from and to the
// interface records. They own their texts.
#pragma once

#include <string>
#include <vector>

#include "contract/XVCR_Enumeracoes.h"
#include "contract/XVCR_RegistrosPS.h"

// One integration with its three texts.
class CXVDadosCR_IntegracaoMiddleware {
  public:
    std::string sRegistroJSON;
    std::string sMensagemIntegracao;
    std::string sJSONRetornoIntegracao;
    REG_XVDMC regDmc;
    REG_XVDMC regDmcIntegracaoOrigem;
    REG_XVDMC regDmcMovimentoOrigem;
    REG_XVDMAHMSUTC regDataHoraInclusao;
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus;
    XVUInt64 uiChaveIntegracaoSistemaTerceiro = 0;
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt eTipoIntegracao = 0;
    XVUInt eStatusIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    XVUInt eTipoTransacao = 0;
    XVUInt ulPonteiroFilial = 0;
    XVUInt ulPonteiroUsuarioInclusao = 0;
    XVUInt ulPonteiroUsuarioCancelamento = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte cReconsultarIdTerceiros = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;

    // Copies fields and texts. E_INVALIDARG for a text record that is not valid; then nothing is changed.
    HRESULT CopiarDe(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
    // Fills an output record; its texts are new buffers owned by the caller. On failure *pReg holds no
    // buffer.
    HRESULT CopiarParaPS(tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) const;
    // The same fields with the texts as views into this object (no buffer is allocated); valid while this
    // object lives unchanged.
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS ComoRegistro();
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
};

class CXVDadosCR_FiltroIntegracaoMiddleware {
  public:
    // E_INVALIDARG: a count above 0 with a null pointer, or a date-time that is none.
    HRESULT CopiarDe(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg);

    XVUInt64 GetChaveIntegracaoSistemaTerceiroInicial() const { return m_uiChaveInicial; }
    XVUInt64 GetChaveIntegracaoSistemaTerceiroFinal() const { return m_uiChaveFinal; }
    REG_XVDMAHMSUTC GetDataHoraInicialInclusao() const { return m_regInicialInclusao; }
    REG_XVDMAHMSUTC GetDataHoraFinalInclusao() const { return m_regFinalInclusao; }
    REG_XVDMAHMSUTC GetDataHoraInicialAlteracaoStatus() const { return m_regInicialAlteracao; }
    REG_XVDMAHMSUTC GetDataHoraFinalAlteracaoStatus() const { return m_regFinalAlteracao; }
    std::size_t GetQuantidadeTipoIntegracao() const { return m_listaTipo.size(); }
    std::size_t GetQuantidadeStatusIntegracao() const { return m_listaStatus.size(); }
    std::size_t GetQuantidadeSistemaIntegracao() const { return m_listaSistema.size(); }
    std::size_t GetQuantidadeTipoTransacao() const { return m_listaTransacao.size(); }
    bool FindTipoIntegracao(XVUInt e) const { return Find(m_listaTipo, e); }
    bool FindStatusIntegracao(XVUInt e) const { return Find(m_listaStatus, e); }
    bool FindSistemaIntegracao(XVUInt e) const { return Find(m_listaSistema, e); }
    bool FindTipoTransacao(XVUInt e) const { return Find(m_listaTransacao, e); }
    const std::vector<XVUInt>& GetListaSistemaIntegracao() const { return m_listaSistema; }

  private:
    static bool Find(const std::vector<XVUInt>& lista, XVUInt e);

    XVUInt64 m_uiChaveInicial = 0;
    XVUInt64 m_uiChaveFinal = 0;
    REG_XVDMAHMSUTC m_regInicialInclusao;
    REG_XVDMAHMSUTC m_regFinalInclusao;
    REG_XVDMAHMSUTC m_regInicialAlteracao;
    REG_XVDMAHMSUTC m_regFinalAlteracao;
    std::vector<XVUInt> m_listaTipo;
    std::vector<XVUInt> m_listaStatus;
    std::vector<XVUInt> m_listaSistema;
    std::vector<XVUInt> m_listaTransacao;
};

class CXVDadosCR_ConsultaSistemaTerceiro {
  public:
    std::string sChaveConsulta;
    XVUInt eTipoConsulta = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;

    HRESULT CopiarDe(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& reg);
};

class CXVDadosCR_StatusConsultaSistemaTerceiro {
  public:
    std::string sMensagemRetorno;
    std::string sJSONRetorno;
    std::string sDocumentoRetorno;  // raw bytes
    XVUInt eStatusConsulta = 0;

    HRESULT CopiarParaPS(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) const;
};
