#include "suite/providers/XVChamadasPlugin.h"

#include <cinttypes>
#include <cstdio>

#include "suite/providers/XVBufferDoPlugin.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "support/trace/XVCheck.h"

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

CXVChamadaObtem::CXVChamadaObtem(const IXVDF_Profiler& rDono, PFXVProvedorObtem pfnObtem)
    : CXVChamadaProvedor(XVPROVEDOR_FUNCAO, rDono), m_pfnObtem(pfnObtem) {
    tabela.ulTamanho = sizeof(tabela);
    tabela.ulVersao = XVPROVEDOR_VERSAO;
}

// All libraries are looked for at one time: an exception of one would keep the others from being used.
std::int32_t CXVChamadaObtem::Executa() {
    try {
        return m_pfnObtem(XVPROVEDOR_VERSAO, &tabela);
    } catch (...) {
        bExcecao = true;
        return CXVProvedorAdaptador::k_hrRespostaInvalida;
    }
}

CXVChamadaDados::CXVChamadaDados(const char* pszFuncao, const IXVDF_Profiler& rDono,
                                 const XVProvedorTabela& rTabela, PFXVProvedorDados pfnOperacao,
                                 const CXVDadosCR_IntegracaoMiddleware& rDados)
    : CXVChamadaProvedor(pszFuncao, rDono), m_Tabela(rTabela), m_pfnOperacao(pfnOperacao), m_dados(rDados) {
    reg = ComoDados(m_dados);
}

std::int32_t CXVChamadaDados::Executa() {
    const XVProvedorDono dono = ComoDono(GetDono());
    return m_pfnOperacao(m_Tabela.pContexto, &dono, &reg);
}

void CXVChamadaDados::Descarta(HRESULT hr) {
    const CXVBufferDoPlugin json(m_Tabela, reg.bufRegistroJSON);
    const CXVBufferDoPlugin mensagem(m_Tabela, reg.bufMensagemIntegracao);
    const CXVBufferDoPlugin jsonRetorno(m_Tabela, reg.bufJSONRetornoIntegracao);
    char szDetalhe[160];
    std::snprintf(szDetalhe, sizeof(szDetalhe), "chave %" PRIu64 ", origem %s, situação %u",
                  reg.uiChaveIntegracaoSistemaTerceiro, m_dados.regDmcMovimentoOrigem.ToString().c_str(),
                  static_cast<unsigned>(reg.eStatusIntegracao));
    RegistraAtraso(hr, szDetalhe);
}

template <class TParametros>
TXVChamadaParametros<TParametros>::TXVChamadaParametros(const char* pszFuncao, const IXVDF_Profiler& rDono,
                                                        const XVProvedorTabela& rTabela, PFuncao pfnOperacao,
                                                        const CXVDadosCR_ParametrosIntegracao& rParametros)
    : CXVChamadaProvedor(pszFuncao, rDono),
      reg(ComoParametros(rParametros)),
      m_pContexto(rTabela.pContexto),
      m_pfnOperacao(pfnOperacao) {}

template <class TParametros>
std::int32_t TXVChamadaParametros<TParametros>::Executa() {
    const XVProvedorDono dono = ComoDono(GetDono());
    return m_pfnOperacao(m_pContexto, &dono, &reg);
}

template class TXVChamadaParametros<XVProvedorParametros>;
template class TXVChamadaParametros<const XVProvedorParametros>;

CXVChamadaLista::CXVChamadaLista(const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                                 const CXVDadosCR_ParametrosIntegracao& rParametros)
    : CXVChamadaProvedor("pfnBuscaIntegracoes", rDono),
      m_Tabela(rTabela),
      m_reg(ComoParametros(rParametros)) {
    m_lista.ulTamanho = sizeof(m_lista);
}

std::int32_t CXVChamadaLista::Executa() {
    const XVProvedorDono dono = ComoDono(GetDono());
    return m_Tabela.pfnBuscaIntegracoes(m_Tabela.pContexto, &dono, &m_reg, &m_lista);
}

HRESULT CXVChamadaLista::Toma(HRESULT hr, std::vector<CXVDadosCR_PendenciaIntegracaoSistema>* pLista) {
    const XVProvedorBuffer bloco{m_lista.pLista, 0, 0, 0};
    const CXVBufferDoPlugin devolucao(m_Tabela, bloco);
    pLista->clear();
    if (m_lista.ulQuantidade == 0) return hr;
    // Elements of an unknown size cannot be walked: their buffers are lost with the faulty library.
    if (m_lista.pLista == nullptr || m_lista.ulTamanhoElemento != sizeof(XVProvedorPendencia) ||
        m_lista.ulQuantidade > k_ulMaximoPendencias)
        return FAILED(hr) ? hr : CXVProvedorAdaptador::k_hrRespostaInvalida;
    pLista->resize(m_lista.ulQuantidade);
    // Every element is visited, so that every buffer goes back; the first fault decides.
    for (XVUInt i = 0; i < m_lista.ulQuantidade; ++i) {
        const HRESULT hrItem = CopiaPendencia(m_Tabela, m_lista.pLista[i], &(*pLista)[i]);
        if (SUCCEEDED(hr)) hr = hrItem;
    }
    return hr;
}

void CXVChamadaLista::Descarta(HRESULT hr) {
    RegistraAtraso(hr, "");
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista;
    XVIgnora(Toma(hr, &lista));
}

CXVChamadaConsulta::CXVChamadaConsulta(const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                                       const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta)
    : CXVChamadaProvedor("pfnBuscaDadosSistemaTerceiro", rDono), m_Tabela(rTabela), m_consulta(rConsulta) {
    status.ulTamanho = sizeof(status);
}

std::int32_t CXVChamadaConsulta::Executa() {
    const XVProvedorDono dono = ComoDono(GetDono());
    XVProvedorConsulta reg{};
    reg.ulTamanho = sizeof(reg);
    reg.eTipoConsulta = m_consulta.eTipoConsulta;
    reg.sChaveConsulta = ComoTexto(m_consulta.sChaveConsulta);
    reg.ulPonteiroAuxiliar = m_consulta.ulPonteiroAuxiliar;
    reg.ucTipoPonteiroAuxiliar = m_consulta.ucTipoPonteiroAuxiliar;
    return m_Tabela.pfnBuscaDadosSistemaTerceiro(m_Tabela.pContexto, &dono, &reg, &status);
}

void CXVChamadaConsulta::Descarta(HRESULT hr) {
    const CXVBufferDoPlugin mensagem(m_Tabela, status.bufMensagemRetorno);
    const CXVBufferDoPlugin json(m_Tabela, status.bufJSONRetorno);
    const CXVBufferDoPlugin documento(m_Tabela, status.bufDocumentoRetorno);
    RegistraAtraso(hr, "");
}
