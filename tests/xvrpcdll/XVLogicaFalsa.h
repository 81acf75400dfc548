// A logic object whose every operation runs what the test asks for, and that tells of its own life.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

#include "core/xvrpcdll/XVCR_Middleware.h"
#include "middleware/XVOperacoesGenericas.h"

// What the test decides; one at a time, installed for its life.
struct SControleLogica {
    SControleLogica();
    ~SControleLogica();

    std::function<HRESULT()> fnOperacao = [] { return S_OK; };
    std::function<void()> fnFinaliza = [] {};
    HRESULT hrInicializa = S_OK;
    bool bConstrucaoLanca = false;
    std::atomic<int> iVivas = 0;
    std::atomic<int> iOperacoes = 0;
    std::atomic<int> iFinalizacoes = 0;
    std::string sChamada;  // the last one
    std::mutex mutexChamada;

    static SControleLogica& Atual();
};

// An operation and what it was handed, byte for byte.
template <class... TArgumentos>
std::string XVChamada(const char* pszOperacao, const TArgumentos&... argumentos) {
    std::string s = pszOperacao;
    (s.append(reinterpret_cast<const char*>(&argumentos), sizeof(argumentos)), ...);
    return s;
}

class CLogicaFalsa : public CXVBaseParaRotinas, public CXVOperacoesGenericas {
  public:
    XV_CLASSE("CLogicaFalsa", "XVLogicaFalsa")

    CLogicaFalsa();
    ~CLogicaFalsa() override;

    HRESULT LeIntegracao(REG_XVDMC regDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg, XVUInt64 ullFlags);
    HRESULT LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rLista, XVUInt* pulQuantidade,
                          tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppReg, XVUInt64 ullFlags);
    HRESULT GravaIntegracao(REG_XVDMC* pDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) {
        return Opera("GravaIntegracao", *pDmc, *pReg);
    }
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg) {
        return Opera("GravaIntegracaoInstantanea", *pDmc, reg);
    }
    HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg) {
        return Opera("GravaPendenciaIntegracao", regDmc, reg);
    }
    HRESULT GravaStatusIntegracao(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg) {
        return Opera("GravaStatusIntegracao", reg);
    }
    HRESULT BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg,
                           _REG_DF_LISTA_XVDMCPS* pLista);
    HRESULT GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
        return Opera("GravaChaveRegistroTelvoParaTerceiro", reg);
    }
    HRESULT GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
        return Opera("GravaChaveRegistroTelvoParaTerceiroPendente", reg);
    }
    HRESULT BuscaChaveRegistroTelvoParaTerceiro(
        const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg,
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) {
        pReg->eTipoIntegracao = 4;
        return Opera("BuscaChaveRegistroTelvoParaTerceiro", reg);
    }
    HRESULT GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg) {
        return Opera("GravaDataHoraIntegracaoTerceiro", reg);
    }
    HRESULT BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS& reg,
                                            tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) {
        pReg->eTipoData = 5;
        return Opera("BuscaDataHoraIntegracaoTerceiro", reg);
    }
    HRESULT BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& reg,
                                      tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg);
    HRESULT OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                             std::vector<XVByte>& saida) override;
    HRESULT OnAlteracaoMultiplaCadastro(XVUInt ulPonteiro, std::span<const XVByte> lista) override {
        return Opera("AlteracaoMultiplaCadastro", ulPonteiro, lista);
    }

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    template <class... TArgumentos>
    static HRESULT Opera(const char* pszOperacao, const TArgumentos&... argumentos) {
        SControleLogica& rControle = SControleLogica::Atual();
        ++rControle.iOperacoes;
        {
            const std::lock_guard trava(rControle.mutexChamada);
            rControle.sChamada = XVChamada(pszOperacao, argumentos...);
        }
        return rControle.fnOperacao();
    }
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
