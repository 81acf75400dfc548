#include "tools/xvcr/XVOperacoesLocais.h"

#include "contract/XVCR_BuffersPS.h"
#include "platform/XVAmbienteSO.h"
#include "tools/xvcr/XVConversaoPS.h"
#include "tools/xvcr/commands/XVChamador.h"

namespace {

// An output record of the store, whose buffers are freed with it.
template <class T>
struct TSaidaPS {
    T reg{};
    TSaidaPS() = default;
    ~TSaidaPS() { XVLiberaBuffers(&reg); }
    TSaidaPS(const TSaidaPS&) = delete;
    TSaidaPS& operator=(const TSaidaPS&) = delete;
};

}  // namespace

CXVOperacoesLocais::~CXVOperacoesLocais() {
    XVIgnora(m_Base.Finaliza());
}

HRESULT CXVOperacoesLocais::Inicializa(const SAcesso& rAcesso) {
    m_pRegistro = XVRegistroDoAcesso(rAcesso);
    m_Base.SetSomenteLeitura(rAcesso.bSomenteLeitura);
    const CXVChamador chamador(rAcesso);
    return m_Base.Inicializa(&chamador);
}

HRESULT CXVOperacoesLocais::Finaliza() {
    return m_Base.Finaliza();
}

HRESULT CXVOperacoesLocais::GravaIntegracao(REG_XVDMC* pDmc, const SIntegracao& rDados) {
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg = XVConversaoPS::ParaPS(rDados);
    return m_Base.GravaIntegracao(pDmc, &reg);
}

HRESULT CXVOperacoesLocais::GravaIntegracaoInstantanea(REG_XVDMC* pDmc, const SIntegracao& rDados) {
    return m_Base.GravaIntegracaoInstantanea(pDmc, XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem, const SIntegracao& rDados) {
    return m_Base.GravaPendenciaIntegracao(regDmcOrigem, XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::GravaStatusIntegracao(const SStatusIntegracao& rDados) {
    return m_Base.GravaStatusIntegracao(XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::LeIntegracao(REG_XVDMC regDmc, XVUInt64 uiFlags, SIntegracao* pDados) {
    TSaidaPS<tagREG_CR_INTEGRACAO_MIDDLEWAREPS> saida;
    const HRESULT hr = m_Base.LeIntegracao(regDmc, &saida.reg, uiFlags);
    if (SUCCEEDED(hr)) *pDados = XVConversaoPS::DePS(saida.reg);
    return hr;
}

HRESULT CXVOperacoesLocais::LeIntegracoes(const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                                          std::vector<SIntegracao>* pLista) {
    const _REG_DF_LISTA_XVDMCPS regLista = XVConversaoPS::ParaPS(lista);
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegistros = nullptr;
    const HRESULT hr = m_Base.LeIntegracoes(regLista, &ulQuantidade, &pRegistros, uiFlags);
    if (SUCCEEDED(hr)) {
        pLista->clear();
        pLista->reserve(ulQuantidade);
    }
    for (XVUInt i = 0; i < ulQuantidade; ++i) {
        if (SUCCEEDED(hr)) pLista->push_back(XVConversaoPS::DePS(pRegistros[i]));
        XVLiberaBuffers(&pRegistros[i]);
    }
    XVAmbienteSO::LiberaSaida(pRegistros);
    return hr;
}

HRESULT CXVOperacoesLocais::BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<REG_XVDMC>* pLista) {
    TSaidaPS<_REG_DF_LISTA_XVDMCPS> saida;
    const HRESULT hr = m_Base.BuscaPonteiros(XVConversaoPS::ParaPS(rFiltro), &saida.reg);
    if (SUCCEEDED(hr)) pLista->assign(saida.reg.pLista, saida.reg.pLista + saida.reg.ulQuantidade);
    return hr;
}

HRESULT CXVOperacoesLocais::GravaChaveRegistro(const SChaveRegistro& rDados) {
    return m_Base.GravaChaveRegistroTelvoParaTerceiro(XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::GravaChaveRegistroPendente(const SChaveRegistro& rDados) {
    return m_Base.GravaChaveRegistroTelvoParaTerceiroPendente(XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados) {
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
    const HRESULT hr = m_Base.BuscaChaveRegistroTelvoParaTerceiro(XVConversaoPS::ParaFiltroPS(rFiltro), &reg);
    if (SUCCEEDED(hr)) *pDados = XVConversaoPS::DePS(reg);
    return hr;
}

HRESULT CXVOperacoesLocais::GravaDataHora(const SDataHoraIntegracao& rDados) {
    return m_Base.GravaDataHoraIntegracaoTerceiro(XVConversaoPS::ParaPS(rDados));
}

HRESULT CXVOperacoesLocais::BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados) {
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
    const HRESULT hr = m_Base.BuscaDataHoraIntegracaoTerceiro(XVConversaoPS::ParaFiltroPS(rFiltro), &reg);
    if (SUCCEEDED(hr)) *pDados = XVConversaoPS::DePS(reg);
    return hr;
}

HRESULT CXVOperacoesLocais::BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta,
                                                      SRespostaConsulta* pResposta) {
    TSaidaPS<tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS> saida;
    const HRESULT hr = m_Base.BuscaDadosSistemaTerceiro(XVConversaoPS::ParaPS(rConsulta), &saida.reg);
    if (SUCCEEDED(hr)) *pResposta = XVConversaoPS::DePS(saida.reg);
    return hr;
}
