#include "suite/providers/XVProvedorAdaptador.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

#include "suite/providers/XVRespostaPerdida.h"

namespace {

constexpr XVUInt k_ulMaximoPendencias = 1'000'000;

XVProvedorTexto ComoTexto(std::string_view sTexto) {
    return {sTexto.data(), sTexto.size()};
}

XVProvedorDono ComoDono(const IXVDF_Profiler& rDono) {
    XVProvedorDono dono{};
    dono.ulTamanho = sizeof(dono);
    dono.ulNumeroSessao = rDono.GetNumeroSessao();
    dono.sEmpresa = ComoTexto(rDono.GetEmpresa());
    dono.ulUsuario = rDono.GetUsuario();
    return dono;
}

XVProvedorDados ComoDados(const CXVDadosCR_IntegracaoMiddleware& rDados) {
    XVProvedorDados reg{};
    reg.ulTamanho = sizeof(reg);
    reg.sRegistroJSON = ComoTexto(rDados.sRegistroJSON);
    reg.sMensagemIntegracao = ComoTexto(rDados.sMensagemIntegracao);
    reg.sJSONRetornoIntegracao = ComoTexto(rDados.sJSONRetornoIntegracao);
    reg.uiDmc = rDados.regDmc.uiValor;
    reg.uiDmcIntegracaoOrigem = rDados.regDmcIntegracaoOrigem.uiValor;
    reg.uiDmcMovimentoOrigem = rDados.regDmcMovimentoOrigem.uiValor;
    reg.uiDataHoraInclusao = rDados.regDataHoraInclusao.uiValor;
    reg.uiDataHoraAlteracaoStatus = rDados.regDataHoraAlteracaoStatus.uiValor;
    reg.uiChaveIntegracaoSistemaTerceiro = rDados.uiChaveIntegracaoSistemaTerceiro;
    reg.uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
    reg.uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eStatusIntegracao = rDados.eStatusIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    reg.eTipoTransacao = rDados.eTipoTransacao;
    reg.ulPonteiroFilial = rDados.ulPonteiroFilial;
    reg.ulPonteiroAuxiliar = rDados.ulPonteiroAuxiliar;
    reg.cReconsultarIdTerceiros = rDados.cReconsultarIdTerceiros;
    reg.ucTipoPonteiroAuxiliar = rDados.ucTipoPonteiroAuxiliar;
    return reg;
}

XVProvedorParametros ComoParametros(const CXVDadosCR_ParametrosIntegracao& rParametros) {
    XVProvedorParametros reg{};
    reg.ulTamanho = sizeof(reg);
    reg.eTipoIntegracao = rParametros.eTipoIntegracao;
    reg.uiDmcOrigem = rParametros.regDmcOrigem.uiValor;
    reg.uiDmcIntegracao = rParametros.regDmcIntegracao.uiValor;
    reg.uiChaveRegistroSistemaTerceiro = rParametros.uiChaveRegistroSistemaTerceiro;
    reg.uiBaseDadosTerceiro = rParametros.uiBaseDadosTerceiro;
    reg.eSistemaIntegracao = rParametros.eSistemaIntegracao;
    reg.eTipoTransacao = rParametros.eTipoTransacao;
    reg.ulPonteiroFilial = rParametros.ulPonteiroFilial;
    reg.ulPonteiroAuxiliar = rParametros.ulPonteiroAuxiliar;
    reg.ucTipoPonteiroAuxiliar = rParametros.ucTipoPonteiroAuxiliar;
    return reg;
}

// Gives a buffer of the library back when the scope ends.
class CXVBufferDoPlugin {
  public:
    CXVBufferDoPlugin(const XVProvedorTabela& rTabela, const XVProvedorBuffer& rBuffer)
        : m_rTabela(rTabela), m_rBuffer(rBuffer) {}
    ~CXVBufferDoPlugin() {
        if (m_rBuffer.pBytes != nullptr) m_rTabela.pfnLibera(m_rTabela.pContexto, m_rBuffer.pBytes);
    }
    CXVBufferDoPlugin(const CXVBufferDoPlugin&) = delete;
    CXVBufferDoPlugin& operator=(const CXVBufferDoPlugin&) = delete;

    bool EhValido(bool bTexto) const {
        if (m_rBuffer.bPreenchido == 0) return m_rBuffer.pBytes == nullptr && m_rBuffer.uiTamanho == 0;
        if (m_rBuffer.uiTamanho == 0) return true;
        if (m_rBuffer.pBytes == nullptr || m_rBuffer.uiTamanho > std::numeric_limits<XVUInt>::max())
            return false;
        return !bTexto ||
               std::memchr(m_rBuffer.pBytes, 0, static_cast<std::size_t>(m_rBuffer.uiTamanho)) == nullptr;
    }
    // Only for a valid buffer; one that was not filled leaves the text as it is.
    void Aplica(std::string& sTexto) const {
        if (m_rBuffer.bPreenchido == 0) return;
        if (m_rBuffer.uiTamanho == 0)
            sTexto.clear();
        else
            sTexto.assign(static_cast<const char*>(m_rBuffer.pBytes),
                          static_cast<std::size_t>(m_rBuffer.uiTamanho));
    }

  private:
    const XVProvedorTabela& m_rTabela;
    const XVProvedorBuffer& m_rBuffer;
};

// What keeps a library from being used; empty: nothing.
std::string MotivoDaRecusa(const XVProvedorTabela& rTabela, XVUInt eSistema) {
    if (rTabela.ulTamanho != sizeof(XVProvedorTabela))
        return "tabela de " + std::to_string(rTabela.ulTamanho) + " bytes em vez de " +
               std::to_string(sizeof(XVProvedorTabela));
    if (rTabela.ulVersao != XVPROVEDOR_VERSAO)
        return "tabela da versão " + std::to_string(rTabela.ulVersao) + " em vez de " +
               std::to_string(XVPROVEDOR_VERSAO);
    if (rTabela.eSistema != eSistema) return "serve o sistema " + std::to_string(rTabela.eSistema);
    return rTabela.pfnLibera == nullptr ? "tabela sem pfnLibera" : std::string();
}

// What a library may answer: a success counts as S_OK.
HRESULT Codigo(std::int32_t iResultado) {
    return iResultado < 0 ? static_cast<HRESULT>(iResultado) : S_OK;
}

HRESULT CopiaPendencia(const XVProvedorTabela& rTabela, const XVProvedorPendencia& rItem,
                       CXVDadosCR_PendenciaIntegracaoSistema* pDados) {
    const CXVBufferDoPlugin json(rTabela, rItem.bufJSON);
    const REG_XVDMC regDmcOrigem{rItem.uiDmcOrigem};
    if (!json.EhValido(true) || !regDmcOrigem.EhValido()) return CXVProvedorAdaptador::k_hrRespostaInvalida;
    json.Aplica(pDados->sJSON);
    pDados->regDmcOrigem = regDmcOrigem;
    pDados->uiBaseDadosTerceiro = rItem.uiBaseDadosTerceiro;
    pDados->uiChaveRegistroSistemaTerceiro = rItem.uiChaveRegistroSistemaTerceiro;
    pDados->eSistemaIntegracao = rItem.eSistemaIntegracao;
    pDados->ulPonteiroFilial = rItem.ulPonteiroFilial;
    pDados->cReconsultarIdTerceiros = rItem.cReconsultarIdTerceiros;
    return S_OK;
}

}  // namespace

std::unique_ptr<IXVProvedorIntegracao> CXVProvedorAdaptador::Cria(PFXVProvedorObtem pfnObtem, XVUInt eSistema,
                                                                  std::string* psMotivo) {
    *psMotivo = "não exporta " XVPROVEDOR_FUNCAO;
    if (pfnObtem == nullptr) return nullptr;
    XVProvedorTabela tabela{};
    tabela.ulTamanho = sizeof(tabela);
    tabela.ulVersao = XVPROVEDOR_VERSAO;
    if (const std::int32_t iResultado = pfnObtem(XVPROVEDOR_VERSAO, &tabela); iResultado < 0) {
        char szMotivo[64];
        std::snprintf(szMotivo, sizeof(szMotivo), XVPROVEDOR_FUNCAO " respondeu 0x%08X",
                      static_cast<unsigned>(iResultado));
        *psMotivo = szMotivo;
        return nullptr;
    }
    *psMotivo = MotivoDaRecusa(tabela, eSistema);
    if (!psMotivo->empty()) return nullptr;
    return std::unique_ptr<IXVProvedorIntegracao>(new CXVProvedorAdaptador(tabela));
}

HRESULT CXVProvedorAdaptador::Executa(PFXVProvedorDados pfnOperacao, const IXVDF_Profiler& rDono,
                                      CXVDadosCR_IntegracaoMiddleware& rDados) const {
    if (pfnOperacao == nullptr) return E_NOTIMPL;
    const XVProvedorDono dono = ComoDono(rDono);
    XVProvedorDados reg = ComoDados(rDados);
    CXVRespostaPerdida perdida(rDono, rDados, reg);
    const HRESULT hr = Codigo(pfnOperacao(m_Tabela.pContexto, &dono, &reg));
    const CXVBufferDoPlugin json(m_Tabela, reg.bufRegistroJSON);
    const CXVBufferDoPlugin mensagem(m_Tabela, reg.bufMensagemIntegracao);
    const CXVBufferDoPlugin jsonRetorno(m_Tabela, reg.bufJSONRetornoIntegracao);
    if (FAILED(hr)) return perdida.Falhou(hr);
    if (!json.EhValido(true) || !mensagem.EhValido(true) || !jsonRetorno.EhValido(true))
        return perdida.Recusada("texto inválido", k_hrRespostaInvalida);
    if (reg.eStatusIntegracao >= eXVSMiddleware_QuantidadeStatusIntegracao)
        return perdida.Recusada("situação inválida", k_hrRespostaInvalida);
    std::string sJSON = rDados.sRegistroJSON;
    std::string sMensagem = rDados.sMensagemIntegracao;
    std::string sJSONRetorno = rDados.sJSONRetornoIntegracao;
    json.Aplica(sJSON);
    mensagem.Aplica(sMensagem);
    jsonRetorno.Aplica(sJSONRetorno);
    perdida.Aproveitada();
    rDados.sRegistroJSON = std::move(sJSON);
    rDados.sMensagemIntegracao = std::move(sMensagem);
    rDados.sJSONRetornoIntegracao = std::move(sJSONRetorno);
    rDados.uiChaveIntegracaoSistemaTerceiro = reg.uiChaveIntegracaoSistemaTerceiro;
    rDados.uiChaveRegistroSistemaTerceiro = reg.uiChaveRegistroSistemaTerceiro;
    rDados.uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro;
    rDados.eStatusIntegracao = reg.eStatusIntegracao;
    rDados.ulPonteiroFilial = reg.ulPonteiroFilial;
    rDados.cReconsultarIdTerceiros = reg.cReconsultarIdTerceiros;
    return S_OK;
}

HRESULT CXVProvedorAdaptador::RealizaOperacaoAnterior(const IXVDF_Profiler& rDono,
                                                      CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa(m_Tabela.pfnRealizaOperacaoAnterior, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::EnviaJson(const IXVDF_Profiler& rDono,
                                        CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa(m_Tabela.pfnEnviaJson, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::BuscaDados(const IXVDF_Profiler& rDono,
                                         CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa(m_Tabela.pfnBuscaDados, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::ExcluiDados(const IXVDF_Profiler& rDono,
                                          CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa(m_Tabela.pfnExcluiDados, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::RealizaOperacaoPosterior(const IXVDF_Profiler& rDono,
                                                       const CXVDadosCR_ParametrosIntegracao& rParametros) {
    if (m_Tabela.pfnRealizaOperacaoPosterior == nullptr) return E_NOTIMPL;
    const XVProvedorDono dono = ComoDono(rDono);
    const XVProvedorParametros reg = ComoParametros(rParametros);
    return Codigo(m_Tabela.pfnRealizaOperacaoPosterior(m_Tabela.pContexto, &dono, &reg));
}

HRESULT CXVProvedorAdaptador::AtualizaParametrosIntegracao(const IXVDF_Profiler& rDono,
                                                           CXVDadosCR_ParametrosIntegracao& rParametros) {
    if (m_Tabela.pfnAtualizaParametrosIntegracao == nullptr) return E_NOTIMPL;
    const XVProvedorDono dono = ComoDono(rDono);
    XVProvedorParametros reg = ComoParametros(rParametros);
    const HRESULT hr = Codigo(m_Tabela.pfnAtualizaParametrosIntegracao(m_Tabela.pContexto, &dono, &reg));
    if (FAILED(hr)) return hr;
    const REG_XVDMC regDmcOrigem{reg.uiDmcOrigem};
    if (reg.eTipoIntegracao >= eXVSMiddleware_QuantidadeTipoIntegracao ||
        reg.eTipoTransacao >= eXVSMiddleware_QuantidadeTipoTransacao || !regDmcOrigem.EhValido())
        return k_hrRespostaInvalida;
    rParametros.eTipoIntegracao = reg.eTipoIntegracao;
    rParametros.eTipoTransacao = reg.eTipoTransacao;
    rParametros.ulPonteiroFilial = reg.ulPonteiroFilial;
    rParametros.regDmcOrigem = regDmcOrigem;
    rParametros.uiChaveRegistroSistemaTerceiro = reg.uiChaveRegistroSistemaTerceiro;
    return S_OK;
}

HRESULT CXVProvedorAdaptador::BuscaIntegracoes(
    const IXVDF_Profiler& rDono, const CXVDadosCR_ParametrosIntegracao& rParametros,
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) {
    if (m_Tabela.pfnBuscaIntegracoes == nullptr) return E_NOTIMPL;
    const XVProvedorDono dono = ComoDono(rDono);
    const XVProvedorParametros reg = ComoParametros(rParametros);
    XVProvedorListaPendencias lista{};
    lista.ulTamanho = sizeof(lista);
    HRESULT hr = Codigo(m_Tabela.pfnBuscaIntegracoes(m_Tabela.pContexto, &dono, &reg, &lista));
    const XVProvedorBuffer bloco{lista.pLista, 0, 0, 0};
    const CXVBufferDoPlugin devolucao(m_Tabela, bloco);
    if (lista.ulQuantidade == 0) return hr;
    // Elements of an unknown size cannot be walked: their buffers are lost with the faulty library.
    if (lista.pLista == nullptr || lista.ulTamanhoElemento != sizeof(XVProvedorPendencia) ||
        lista.ulQuantidade > k_ulMaximoPendencias)
        return FAILED(hr) ? hr : k_hrRespostaInvalida;
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> listaNova(lista.ulQuantidade);
    // Every element is visited, so that every buffer goes back; the first fault decides.
    for (XVUInt i = 0; i < lista.ulQuantidade; ++i) {
        const HRESULT hrItem = CopiaPendencia(m_Tabela, lista.pLista[i], &listaNova[i]);
        if (SUCCEEDED(hr)) hr = hrItem;
    }
    if (FAILED(hr)) return hr;
    listaDados.insert(listaDados.end(), std::make_move_iterator(listaNova.begin()),
                      std::make_move_iterator(listaNova.end()));
    return S_OK;
}

HRESULT CXVProvedorAdaptador::BuscaDadosSistemaTerceiro(const IXVDF_Profiler& rDono,
                                                        const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                                        CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) {
    if (m_Tabela.pfnBuscaDadosSistemaTerceiro == nullptr) return E_NOTIMPL;
    const XVProvedorDono dono = ComoDono(rDono);
    XVProvedorConsulta reg{};
    reg.ulTamanho = sizeof(reg);
    reg.eTipoConsulta = rConsulta.eTipoConsulta;
    reg.sChaveConsulta = ComoTexto(rConsulta.sChaveConsulta);
    reg.ulPonteiroAuxiliar = rConsulta.ulPonteiroAuxiliar;
    reg.ucTipoPonteiroAuxiliar = rConsulta.ucTipoPonteiroAuxiliar;
    XVProvedorStatusConsulta status{};
    status.ulTamanho = sizeof(status);
    const HRESULT hr =
        Codigo(m_Tabela.pfnBuscaDadosSistemaTerceiro(m_Tabela.pContexto, &dono, &reg, &status));
    const CXVBufferDoPlugin mensagem(m_Tabela, status.bufMensagemRetorno);
    const CXVBufferDoPlugin json(m_Tabela, status.bufJSONRetorno);
    const CXVBufferDoPlugin documento(m_Tabela, status.bufDocumentoRetorno);
    if (FAILED(hr)) return hr;
    if (!mensagem.EhValido(true) || !json.EhValido(true) || !documento.EhValido(false) ||
        status.eStatusConsulta >= eXVSMiddleware_QuantidadeStatusConsulta)
        return k_hrRespostaInvalida;
    CXVDadosCR_StatusConsultaSistemaTerceiro nova;
    mensagem.Aplica(nova.sMensagemRetorno);
    json.Aplica(nova.sJSONRetorno);
    documento.Aplica(nova.sDocumentoRetorno);
    nova.eStatusConsulta = status.eStatusConsulta;
    rStatus = std::move(nova);
    return S_OK;
}
