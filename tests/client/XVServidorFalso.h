// A server that answers as it is told, behind a door of its own: what its creations, its initialisations and
// its calls answer, one after the other, and S_OK from then on.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "client/XVConexao.h"

struct SServidorFalso {
    std::deque<HRESULT> criacoes{};
    std::deque<HRESULT> inicializacoes{};
    std::deque<HRESULT> chamadas{};
    // Whether a component that has answered a failure still answers questions afterwards.
    bool bSegueVivo = false;
    bool bCaido = false;  // the component in hand is gone

    std::size_t uiCriacoes = 0;
    std::vector<std::string>
        executadas{};                // the calls that arrived, by component and method: "1 LeIntegracao"
    std::vector<XVUInt64> chaves{};  // that recordings were given

    static HRESULT Proximo(std::deque<HRESULT>& rLista) {
        if (rLista.empty()) return S_OK;
        const HRESULT hr = rLista.front();
        rLista.pop_front();
        return hr;
    }
    HRESULT Responde(std::deque<HRESULT>& rLista) {
        const HRESULT hr = Proximo(rLista);
        bCaido = bCaido || (FAILED(hr) && !bSegueVivo);
        return hr;
    }
};

class CComponenteFalso final : public IXVCR_Middleware {
  public:
    explicit CComponenteFalso(SServidorFalso& rServidor)
        : m_rServidor(rServidor), m_sNumero(std::to_string(rServidor.uiCriacoes)) {
        rServidor.bCaido = false;
    }
    virtual ~CComponenteFalso() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_ulReferencias; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG ulRestantes = --m_ulReferencias;
        if (ulRestantes == 0) delete this;
        return ulRestantes;
    }

    HRESULT STDMETHODCALLTYPE Inicializa(const REG_DF_INICIALIZAPS*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Inicializa_Padrao(const REG_DF_INICIALIZAPS*) override {
        return m_rServidor.Responde(m_rServidor.inicializacoes);
    }
    HRESULT STDMETHODCALLTYPE EstaInicializado(XVLongPS* plInicializado) override {
        *plInicializado = 1;
        return Vida();
    }
    HRESULT STDMETHODCALLTYPE GetUltimoErro(REG_DF_ULTIMO_ERROPS*) override { return Vida(); }

    HRESULT STDMETHODCALLTYPE FuncaoGenerica(XVUInt, const _REG_CR_LISTA_BYTESPS*,
                                             _REG_CR_LISTA_BYTESPS*) override {
        return Chama("FuncaoGenerica");
    }
    HRESULT STDMETHODCALLTYPE AlteracaoMultiplaCadastro(XVUInt, const _REG_CR_LISTA_BYTESPS*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE AlteracaoMultiplaMovimento(XVUInt64, const _REG_CR_LISTA_BYTESPS*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE LeIntegracao(XVUInt64, tagREG_CR_INTEGRACAO_MIDDLEWAREPS*, XVUInt64) override {
        return Chama("LeIntegracao");
    }
    HRESULT STDMETHODCALLTYPE LeIntegracoes(const _REG_DF_LISTA_XVDMCPS*, XVUInt*,
                                            tagREG_CR_INTEGRACAO_MIDDLEWAREPS**, XVUInt64) override {
        return Chama("LeIntegracoes");
    }
    HRESULT STDMETHODCALLTYPE GravaIntegracaoInstantanea(REG_XVDMC*,
                                                         const tagREG_CR_INTEGRACAO_MIDDLEWAREPS*) override {
        return Chama("GravaIntegracaoInstantanea");
    }
    HRESULT STDMETHODCALLTYPE GravaIntegracao(REG_XVDMC* pRegDmc,
                                              const tagREG_CR_INTEGRACAO_MIDDLEWAREPS*) override {
        m_rServidor.chaves.push_back(pRegDmc->uiValor);
        *pRegDmc = {99};
        return Chama("GravaIntegracao");
    }
    HRESULT STDMETHODCALLTYPE GravaPendenciaIntegracao(XVUInt64,
                                                       const tagREG_CR_INTEGRACAO_MIDDLEWAREPS*) override {
        return Chama("GravaPendenciaIntegracao");
    }
    HRESULT STDMETHODCALLTYPE
    GravaStatusIntegracao(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS*) override {
        return Chama("GravaStatusIntegracao");
    }
    HRESULT STDMETHODCALLTYPE BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS*,
                                             _REG_DF_LISTA_XVDMCPS*) override {
        return Chama("BuscaPonteiros");
    }
    HRESULT STDMETHODCALLTYPE
    GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS*) override {
        return Chama("GravaChaveRegistro");
    }
    HRESULT STDMETHODCALLTYPE
    BuscaChaveRegistroTelvoParaTerceiro(const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS*,
                                        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS*) override {
        return Chama("BuscaChaveRegistro");
    }
    HRESULT STDMETHODCALLTYPE GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS*) override {
        return Chama("GravaChaveRegistroPendente");
    }
    HRESULT STDMETHODCALLTYPE
    GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS*) override {
        return Chama("GravaDataHora");
    }
    HRESULT STDMETHODCALLTYPE
    BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS*,
                                    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS*) override {
        return Chama("BuscaDataHora");
    }
    HRESULT STDMETHODCALLTYPE
    BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS*,
                              tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS*) override {
        return Chama("BuscaDadosSistemaTerceiro");
    }

  private:
    HRESULT Vida() const { return m_rServidor.bCaido ? XVHResult(0x800706BAU) : S_OK; }
    HRESULT Chama(const char* pszMetodo) {
        m_rServidor.executadas.push_back(m_sNumero + " " + pszMetodo);
        return m_rServidor.Responde(m_rServidor.chamadas);
    }

    SServidorFalso& m_rServidor;
    const std::string m_sNumero;
    ULONG m_ulReferencias = 1;
};

class CConexaoFalsa final : public XVCliente::CXVCliente::CConexao {
  public:
    explicit CConexaoFalsa(SServidorFalso& rServidor) : CConexao({}), m_rServidor(rServidor) {}

  protected:
    HRESULT Cria(IXVCR_Middleware** ppComponente) override {
        ++m_rServidor.uiCriacoes;
        const HRESULT hr = SServidorFalso::Proximo(m_rServidor.criacoes);
        if (SUCCEEDED(hr)) *ppComponente = new CComponenteFalso(m_rServidor);
        return hr;
    }

  private:
    SServidorFalso& m_rServidor;
};
