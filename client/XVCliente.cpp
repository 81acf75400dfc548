#include "client/XVCliente.h"

#include <cstring>

#include "client/XVConexao.h"
#include "contract/XVCR_BuffersPS.h"
#include "core/xvrpcdll/XVListasPS.h"
#include "middleware/XVOperacoesGenericas.h"
#include "support/codes/XVCodigos.h"

namespace XVCliente {

namespace {

// A result record whose buffers end with it, whatever happens on the way.
template <class TRegistro>
struct TSaida {
    TSaida() = default;
    ~TSaida() { XVLiberaBuffers(&reg); }
    TSaida(const TSaida&) = delete;
    TSaida& operator=(const TSaida&) = delete;

    TRegistro reg{};
};

// The same of an array of integrations.
struct SSaidaIntegracoes {
    SSaidaIntegracoes() = default;
    ~SSaidaIntegracoes() { XVLiberaIntegracoes(&ulQuantidade, &pLista); }
    SSaidaIntegracoes(const SSaidaIntegracoes&) = delete;
    SSaidaIntegracoes& operator=(const SSaidaIntegracoes&) = delete;

    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pLista = nullptr;
};

using enum CXVCliente::EOperacao;

// A reading that asks the external system again comes to a provider.
CXVCliente::EOperacao TipoDaLeitura(XVUInt64 ullFlags) {
    return (ullFlags & k_ullConsultaSistemaTerceiro) == 0 ? eLeitura : eTroca;
}

}  // namespace

CXVCliente::CXVCliente() = default;
CXVCliente::CXVCliente(std::unique_ptr<CConexao> pConexao) : m_pConexao(std::move(pConexao)) {}
CXVCliente::~CXVCliente() = default;

HRESULT CXVCliente::Reconecta() {
    return m_pConexao == nullptr ? E_XVCR_COMPONENTE_NAO_INICIALIZADO : m_pConexao->Abre();
}

HRESULT CXVCliente::Desconecta() {
    if (m_pConexao == nullptr) return S_OK;
    const HRESULT hr = m_pConexao->Fecha();
    m_pConexao.reset();
    return hr;
}

bool CXVCliente::EstaConectado() const {
    return m_pConexao != nullptr && m_pConexao->EstaAberta();
}

template <class TChamada>
HRESULT CXVCliente::Executa(EOperacao eOperacao, TChamada&& fnChamada) {
    if (m_pConexao == nullptr) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    return m_pConexao->Executa(eOperacao, fnChamada);
}

HRESULT CXVCliente::GravaIntegracao(REG_XVDMC* pDmc, const CXVDadosCR_IntegracaoMiddleware& rDados) {
    const auto reg = rDados.ComoRegistro();
    if (pDmc == nullptr) return E_POINTER;
    return Executa(eGravacao, [&, regAntes = *pDmc](IXVCR_Middleware& r) {
        *pDmc = regAntes;  // a call that failed may have left anything there
        return r.GravaIntegracao(pDmc, &reg);
    });
}

HRESULT CXVCliente::GravaIntegracaoInstantanea(REG_XVDMC* pDmc,
                                               const CXVDadosCR_IntegracaoMiddleware& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(eTroca, [&](IXVCR_Middleware& r) { return r.GravaIntegracaoInstantanea(pDmc, &reg); });
}

HRESULT CXVCliente::GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem,
                                             const CXVDadosCR_IntegracaoMiddleware& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(
        eTroca, [&](IXVCR_Middleware& r) { return r.GravaPendenciaIntegracao(regDmcOrigem.uiValor, &reg); });
}

HRESULT CXVCliente::GravaStatusIntegracao(const CXVDadosCR_StatusIntegracaoMiddleware& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(eGravacao, [&](IXVCR_Middleware& r) { return r.GravaStatusIntegracao(&reg); });
}

HRESULT CXVCliente::LeIntegracao(REG_XVDMC regDmc, XVUInt64 ullFlags,
                                 CXVDadosCR_IntegracaoMiddleware* pDados) {
    TSaida<tagREG_CR_INTEGRACAO_MIDDLEWAREPS> saida;
    const HRESULT hr = Executa(TipoDaLeitura(ullFlags), [&](IXVCR_Middleware& r) {
        return r.LeIntegracao(regDmc.uiValor, &saida.reg, ullFlags);
    });
    return FAILED(hr) ? hr : pDados->CopiarDe(saida.reg);
}

HRESULT CXVCliente::LeIntegracoes(const std::vector<REG_XVDMC>& listaDmc, XVUInt64 ullFlags,
                                  std::vector<CXVDadosCR_IntegracaoMiddleware>* pLista) {
    const _REG_DF_LISTA_XVDMCPS regLista = XVVista(listaDmc);
    SSaidaIntegracoes saida;
    HRESULT hr = Executa(TipoDaLeitura(ullFlags), [&](IXVCR_Middleware& r) {
        return r.LeIntegracoes(&regLista, &saida.ulQuantidade, &saida.pLista, ullFlags);
    });
    if (FAILED(hr)) return hr;
    std::vector<CXVDadosCR_IntegracaoMiddleware> lista(saida.ulQuantidade);
    for (XVUInt i = 0; SUCCEEDED(hr) && i < saida.ulQuantidade; ++i) hr = lista[i].CopiarDe(saida.pLista[i]);
    if (SUCCEEDED(hr)) *pLista = std::move(lista);
    return hr;
}

HRESULT CXVCliente::BuscaPonteiros(const CXVDadosCR_FiltroIntegracaoMiddleware& rFiltro,
                                   std::vector<REG_XVDMC>* pLista) {
    const auto reg = rFiltro.ComoRegistro();
    TSaida<_REG_DF_LISTA_XVDMCPS> saida;
    const HRESULT hr =
        Executa(eLeitura, [&](IXVCR_Middleware& r) { return r.BuscaPonteiros(&reg, &saida.reg); });
    if (SUCCEEDED(hr)) pLista->assign(saida.reg.pLista, saida.reg.pLista + saida.reg.ulQuantidade);
    return hr;
}

HRESULT CXVCliente::GravaChaveRegistro(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(eGravacao,
                   [&](IXVCR_Middleware& r) { return r.GravaChaveRegistroTelvoParaTerceiro(&reg); });
}

HRESULT CXVCliente::GravaChaveRegistroPendente(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(eGravacao,
                   [&](IXVCR_Middleware& r) { return r.GravaChaveRegistroTelvoParaTerceiroPendente(&reg); });
}

HRESULT CXVCliente::BuscaChaveRegistro(const CXVDadosCR_ChaveRegistroTelvoParaTerceiro& rFiltro,
                                       CXVDadosCR_ChaveRegistroTelvoParaTerceiro* pDados) {
    const auto regFiltro = rFiltro.ComoFiltro();
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
    const HRESULT hr = Executa(eLeitura, [&](IXVCR_Middleware& r) {
        return r.BuscaChaveRegistroTelvoParaTerceiro(&regFiltro, &reg);
    });
    if (SUCCEEDED(hr)) pDados->CopiarDe(reg);
    return hr;
}

HRESULT CXVCliente::GravaDataHora(const CXVDadosCR_DataHoraIntegracaoTerceiro& rDados) {
    const auto reg = rDados.ComoRegistro();
    return Executa(eGravacao, [&](IXVCR_Middleware& r) { return r.GravaDataHoraIntegracaoTerceiro(&reg); });
}

HRESULT CXVCliente::BuscaDataHora(const CXVDadosCR_DataHoraIntegracaoTerceiro& rFiltro,
                                  CXVDadosCR_DataHoraIntegracaoTerceiro* pDados) {
    const auto regFiltro = rFiltro.ComoFiltro();
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
    const HRESULT hr = Executa(
        eLeitura, [&](IXVCR_Middleware& r) { return r.BuscaDataHoraIntegracaoTerceiro(&regFiltro, &reg); });
    if (SUCCEEDED(hr)) pDados->CopiarDe(reg);
    return hr;
}

HRESULT CXVCliente::BuscaDadosSistemaTerceiro(const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                              CXVDadosCR_StatusConsultaSistemaTerceiro* pResposta) {
    const auto reg = rConsulta.ComoRegistro();
    TSaida<tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS> saida;
    const HRESULT hr =
        Executa(eTroca, [&](IXVCR_Middleware& r) { return r.BuscaDadosSistemaTerceiro(&reg, &saida.reg); });
    return FAILED(hr) ? hr : pResposta->CopiarDe(saida.reg);
}

HRESULT CXVCliente::FuncaoGenerica(XVUInt ulFuncao, const std::string& sEntrada, std::string* psSaida) {
    const _REG_DF_TEXTOPS texto = CXVStringPS::Vista(sEntrada);
    const _REG_CR_LISTA_BYTESPS entrada{texto.ulQtdBytes, 0, texto.pTexto, 0};
    TSaida<_REG_CR_LISTA_BYTESPS> saida;
    const HRESULT hr = Executa(
        eTroca, [&](IXVCR_Middleware& r) { return r.FuncaoGenerica(ulFuncao, &entrada, &saida.reg); });
    if (FAILED(hr)) return hr;
    psSaida->clear();
    if (saida.reg.ulQtdBytes != 0)
        psSaida->assign(reinterpret_cast<const char*>(saida.reg.pListaBytes), saida.reg.ulQtdBytes);
    return hr;
}

HRESULT CXVCliente::UltimasGravadas(std::vector<REG_XVDMC>* pLista) {
    if (!EstaConectado()) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    const _REG_CR_LISTA_BYTESPS entrada{};
    TSaida<_REG_CR_LISTA_BYTESPS> saida;
    const HRESULT hr = m_pConexao->ExecutaNoMesmo([&](IXVCR_Middleware& r) {
        return r.FuncaoGenerica(k_ulFuncaoUltimasGravadas, &entrada, &saida.reg);
    });
    if (FAILED(hr)) return hr;
    pLista->resize(saida.reg.ulQtdBytes / sizeof(REG_XVDMC));
    if (!pLista->empty())
        std::memcpy(pLista->data(), saida.reg.pListaBytes, pLista->size() * sizeof(REG_XVDMC));
    return hr;
}

HRESULT CXVCliente::GetUltimoErro(SUltimoErro* pErro) {
    REG_DF_ULTIMO_ERROPS reg{};
    if (m_pConexao == nullptr) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    const HRESULT hr = m_pConexao->GetUltimoErro(&reg);
    if (FAILED(hr)) return hr;
    if (!EstaConectado() && reg.hrErro == 0) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    *pErro = {.hrErro = reg.hrErro,
              .ulLinha = reg.ulLinha,
              .regDataHora = {reg.regDataHora},
              .sNome = std::string(TextoDoCampo(reg.szNome)),
              .sFuncao = std::string(TextoDoCampo(reg.szFuncao)),
              .sFonte = std::string(TextoDoCampo(reg.szFonte)),
              .sMensagem = std::string(TextoDoCampo(reg.szMensagem))};
    return hr;
}

}  // namespace XVCliente
