// A component over a logic object whose every operation runs what the test asks for, and that tells of its
// own life.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>

#include "client/XVConexao.h"
#include "contract/XVListaAchadas.h"
#include "core/xvrpcdll/XVCR_Middleware.h"
#include "middleware/XVOperacoesGenericas.h"

// What the test decides; one at a time, installed for its life.
struct SControleLogica {
    SControleLogica() { s_pAtual = this; }
    ~SControleLogica() { s_pAtual = nullptr; }

    std::function<HRESULT()> fnOperacao = [] { return S_OK; };
    std::function<void()> fnFinaliza = [] {};
    HRESULT hrInicializa = S_OK;
    bool bConstrucaoLanca = false;
    std::atomic<int> iVivas = 0;
    std::atomic<int> iOperacoes = 0;
    std::atomic<int> iFinalizacoes = 0;

    static inline SControleLogica* s_pAtual = nullptr;
};

// The operations that answer something fill their outputs first, success or not: nothing of a failure may
// reach the caller.
class CLogicaFalsa : public CXVBaseParaRotinas, public CXVOperacoesGenericas {
  public:
    XV_CLASSE("CLogicaFalsa", "XVLogicaFalsa")

    CLogicaFalsa() {
        if (m_rControle.bConstrucaoLanca) throw std::bad_alloc();
        ++m_rControle.iVivas;
    }
    ~CLogicaFalsa() override {
        XVIgnora(Finaliza());
        --m_rControle.iVivas;
    }

    HRESULT LeIntegracao(REG_XVDMC, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg, XVUInt64) {
        XVIgnora(CXVStringPS::StringToReg("{\"n\":1}", &pReg->regRegistroJSON));
        pReg->ulPonteiroFilial = 9;
        return Opera();
    }
    HRESULT LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rLista, XVUInt* pulQuantidade,
                          tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppReg, XVUInt64) {
        *ppReg = static_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(
            XVAmbienteSO::AlocaSaida(rLista.ulQuantidade * sizeof(**ppReg)));
        for (XVUInt& i = *pulQuantidade = 0; i < rLista.ulQuantidade; ++i) {
            (*ppReg)[i] = {};
            XVIgnora(CXVStringPS::StringToReg("mensagem", &(*ppReg)[i].regMensagemIntegracao));
        }
        return Opera();
    }
    HRESULT BuscaPonteiros(const auto&, _REG_DF_LISTA_XVDMCPS* pLista) {
        CXVListaAchadas achadas;
        achadas.Inclui({1});
        achadas.Inclui({2});
        XVIgnora(achadas.Entrega(pLista));
        return Opera();
    }
    HRESULT BuscaDadosSistemaTerceiro(const auto&, tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) {
        XVIgnora(CXVStringPS::StringToReg("resposta", &pReg->regJSONRetorno));
        pReg->eStatusConsulta = 2;
        return Opera();
    }
    HRESULT OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                             std::vector<XVByte>& saida) override {
        saida.assign(entrada.rbegin(), entrada.rend());
        saida.push_back(static_cast<XVByte>(ulFuncao));
        return Opera();
    }
    HRESULT GravaIntegracao(auto&&...) { return Opera(); }
    HRESULT GravaIntegracaoInstantanea(auto&&...) { return Opera(); }
    HRESULT GravaPendenciaIntegracao(auto&&...) { return Opera(); }
    HRESULT GravaStatusIntegracao(auto&&...) { return Opera(); }
    HRESULT GravaChaveRegistroTelvoParaTerceiro(auto&&...) { return Opera(); }
    HRESULT GravaChaveRegistroTelvoParaTerceiroPendente(auto&&...) { return Opera(); }
    HRESULT BuscaChaveRegistroTelvoParaTerceiro(auto&&...) { return Opera(); }
    HRESULT GravaDataHoraIntegracaoTerceiro(auto&&...) { return Opera(); }
    HRESULT BuscaDataHoraIntegracaoTerceiro(auto&&...) { return Opera(); }

  protected:
    HRESULT OnInicializa() override { return m_rControle.hrInicializa; }
    HRESULT OnFinaliza() override {
        ++m_rControle.iFinalizacoes;
        m_rControle.fnFinaliza();
        return S_OK;
    }

  private:
    HRESULT Opera() {
        ++m_rControle.iOperacoes;
        return m_rControle.fnOperacao();
    }

    SControleLogica& m_rControle = *SControleLogica::s_pAtual;
};

using CComponenteFalso = T_XVCR_Middleware<CLogicaFalsa>;

// Owns one reference of a component.
struct SSolta {
    void operator()(CComponenteFalso* p) const { p->Release(); }
};
struct CReferencia : std::unique_ptr<CComponenteFalso, SSolta> {
    CReferencia() : unique_ptr(new CComponenteFalso) {}
};

// A sealed record of company "EMPRESA", user 7, session 42.
inline REG_DF_INICIALIZAPS RegistroValido() {
    REG_DF_INICIALIZAPS reg;
    const XVCliente::SIdentificacao identificacao{
        .sEmpresa = "EMPRESA", .usUsuario = 7, .ulNumeroSessao = 42};
    if (!XVCliente::MontaRegistroInicializacao(identificacao, &reg)) throw std::logic_error("identification");
    return reg;
}
