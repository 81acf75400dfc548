// A logic object whose every operation runs what the test asks for, and that tells of its own life.
#pragma once

#include <atomic>
#include <functional>

#include "core/xvrpcdll/XVCR_Middleware.h"
#include "middleware/XVOperacoesGenericas.h"

// What the test decides; one at a time, installed for its life.
struct SControleLogica {
    SControleLogica();
    ~SControleLogica();

    std::function<HRESULT()> fnOperacao = [] { return S_OK; };
    HRESULT hrInicializa = S_OK;
    bool bConstrucaoLanca = false;
    std::atomic<int> iVivas = 0;
    std::atomic<int> iOperacoes = 0;
    std::atomic<int> iFinalizacoes = 0;

    static SControleLogica& Atual();
};

class CLogicaFalsa : public CXVBaseParaRotinas, public CXVOperacoesGenericas {
  public:
    XV_CLASSE("CLogicaFalsa", "XVLogicaFalsa")

    CLogicaFalsa();
    ~CLogicaFalsa() override;

    HRESULT LeIntegracao(REG_XVDMC, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg, XVUInt64);
    HRESULT LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rLista, XVUInt* pulQuantidade,
                          tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppReg, XVUInt64);
    HRESULT GravaIntegracao(REG_XVDMC*, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS*) { return Opera(); }
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC*, tagREG_CR_INTEGRACAO_MIDDLEWAREPS) { return Opera(); }
    HRESULT GravaPendenciaIntegracao(REG_XVDMC, tagREG_CR_INTEGRACAO_MIDDLEWAREPS) { return Opera(); }
    HRESULT GravaStatusIntegracao(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS) { return Opera(); }
    HRESULT BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS&, _REG_DF_LISTA_XVDMCPS* pLista);
    HRESULT GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS&) {
        return Opera();
    }
    HRESULT GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS&) {
        return Opera();
    }
    HRESULT BuscaChaveRegistroTelvoParaTerceiro(const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS&,
                                                tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS*) {
        return Opera();
    }
    HRESULT GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS&) {
        return Opera();
    }
    HRESULT BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS&,
                                            tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS*) {
        return Opera();
    }
    HRESULT BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS&,
                                      tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg);
    HRESULT OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                             std::vector<XVByte>& saida) override;
    HRESULT OnAlteracaoMultiplaCadastro(XVUInt, std::span<const XVByte>) override { return Opera(); }

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    static HRESULT Opera();
};

using CComponenteFalso = T_XVCR_Middleware<CLogicaFalsa>;

// Owns one reference of a component.
template <class TComponente>
class CReferencia {
  public:
    CReferencia() : m_p(new TComponente) {}
    ~CReferencia() { m_p->Release(); }
    CReferencia(const CReferencia&) = delete;
    CReferencia& operator=(const CReferencia&) = delete;
    TComponente* operator->() const { return m_p; }
    TComponente& operator*() const { return *m_p; }

  private:
    TComponente* m_p;
};

// A sealed record of company "EMPRESA", user 7, session 42.
REG_DF_INICIALIZAPS RegistroValido();
