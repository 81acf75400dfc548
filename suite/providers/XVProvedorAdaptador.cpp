#include "suite/providers/XVProvedorAdaptador.h"

#include <cstdio>
#include <utility>

#include "suite/providers/XVBufferDoPlugin.h"
#include "suite/providers/XVChamadasPlugin.h"
#include "suite/providers/XVRespostaPerdida.h"
#include "support/codes/XVCodigos.h"

namespace {

// hr: what the watch said of the entry, which may still run when it did not answer.
std::string MotivoDaFalha(const CXVChamadaObtem& rChamada, HRESULT hr) {
    if (hr == E_XVCR_PROVEDOR_SEM_RESPOSTA) return XVPROVEDOR_FUNCAO " não respondeu no prazo";
    if (hr == E_XVCR_PROVEDOR_SUSPENSO) return XVPROVEDOR_FUNCAO " não foi chamada";
    if (rChamada.bExcecao) return XVPROVEDOR_FUNCAO " deixou sair uma exceção";
    char szMotivo[64];
    std::snprintf(szMotivo, sizeof(szMotivo), XVPROVEDOR_FUNCAO " respondeu 0x%08X",
                  static_cast<unsigned>(hr));
    return szMotivo;
}

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

}  // namespace

std::unique_ptr<IXVProvedorIntegracao> CXVProvedorAdaptador::Cria(PFXVProvedorObtem pfnObtem, XVUInt eSistema,
                                                                  std::string* psMotivo) {
    *psMotivo = "não exporta " XVPROVEDOR_FUNCAO;
    if (pfnObtem == nullptr) return nullptr;
    const auto pChamada = std::make_shared<CXVChamadaObtem>(CXVDonoCopiado(), pfnObtem);
    if (const HRESULT hr = CXVVigiaProvedor(eSistema).Chama(pChamada); FAILED(hr)) {
        *psMotivo = MotivoDaFalha(*pChamada, hr);
        return nullptr;
    }
    *psMotivo = MotivoDaRecusa(pChamada->tabela, eSistema);
    if (!psMotivo->empty()) return nullptr;
    return std::unique_ptr<IXVProvedorIntegracao>(new CXVProvedorAdaptador(pChamada->tabela));
}

HRESULT CXVProvedorAdaptador::Executa(const char* pszFuncao, PFXVProvedorDados pfnOperacao,
                                      const IXVDF_Profiler& rDono,
                                      CXVDadosCR_IntegracaoMiddleware& rDados) const {
    if (pfnOperacao == nullptr) return E_NOTIMPL;
    const auto pChamada = std::make_shared<CXVChamadaDados>(pszFuncao, rDono, m_Tabela, pfnOperacao, rDados);
    const XVProvedorDados& reg = pChamada->reg;
    CXVRespostaPerdida perdida(rDono, rDados, reg);
    const HRESULT hr = m_vigia.Chama(pChamada);
    if (!CXVVigiaProvedor::Respondeu(hr)) return perdida.SemResposta(hr);
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
    return Executa("pfnRealizaOperacaoAnterior", m_Tabela.pfnRealizaOperacaoAnterior, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::EnviaJson(const IXVDF_Profiler& rDono,
                                        CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa("pfnEnviaJson", m_Tabela.pfnEnviaJson, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::BuscaDados(const IXVDF_Profiler& rDono,
                                         CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa("pfnBuscaDados", m_Tabela.pfnBuscaDados, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::ExcluiDados(const IXVDF_Profiler& rDono,
                                          CXVDadosCR_IntegracaoMiddleware& rDados) {
    return Executa("pfnExcluiDados", m_Tabela.pfnExcluiDados, rDono, rDados);
}

HRESULT CXVProvedorAdaptador::RealizaOperacaoPosterior(const IXVDF_Profiler& rDono,
                                                       const CXVDadosCR_ParametrosIntegracao& rParametros) {
    if (m_Tabela.pfnRealizaOperacaoPosterior == nullptr) return E_NOTIMPL;
    return m_vigia.Chama(std::make_shared<TXVChamadaParametros<const XVProvedorParametros>>(
        "pfnRealizaOperacaoPosterior", rDono, m_Tabela, m_Tabela.pfnRealizaOperacaoPosterior, rParametros));
}

HRESULT CXVProvedorAdaptador::AtualizaParametrosIntegracao(const IXVDF_Profiler& rDono,
                                                           CXVDadosCR_ParametrosIntegracao& rParametros) {
    if (m_Tabela.pfnAtualizaParametrosIntegracao == nullptr) return E_NOTIMPL;
    const auto pChamada = std::make_shared<TXVChamadaParametros<XVProvedorParametros>>(
        "pfnAtualizaParametrosIntegracao", rDono, m_Tabela, m_Tabela.pfnAtualizaParametrosIntegracao,
        rParametros);
    const HRESULT hr = m_vigia.Chama(pChamada);
    if (FAILED(hr)) return hr;
    const XVProvedorParametros& reg = pChamada->reg;
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
    const auto pChamada = std::make_shared<CXVChamadaLista>(rDono, m_Tabela, rParametros);
    HRESULT hr = m_vigia.Chama(pChamada);
    if (!CXVVigiaProvedor::Respondeu(hr)) return hr;
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> listaNova;
    hr = pChamada->Toma(hr, &listaNova);
    if (FAILED(hr)) return hr;
    listaDados.insert(listaDados.end(), std::make_move_iterator(listaNova.begin()),
                      std::make_move_iterator(listaNova.end()));
    return S_OK;
}

HRESULT CXVProvedorAdaptador::BuscaDadosSistemaTerceiro(const IXVDF_Profiler& rDono,
                                                        const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                                        CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) {
    if (m_Tabela.pfnBuscaDadosSistemaTerceiro == nullptr) return E_NOTIMPL;
    const auto pChamada = std::make_shared<CXVChamadaConsulta>(rDono, m_Tabela, rConsulta);
    const HRESULT hr = m_vigia.Chama(pChamada);
    if (!CXVVigiaProvedor::Respondeu(hr)) return hr;
    const XVProvedorStatusConsulta& status = pChamada->status;
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
