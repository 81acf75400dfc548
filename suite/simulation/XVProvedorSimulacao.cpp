#include "suite/simulation/XVProvedorSimulacao.h"

#include <algorithm>
#include <charconv>

#include "contract/XVCR_Enumeracoes.h"
#include "support/codes/XVCodigos.h"

namespace {

constexpr const char* k_pszNaoEncontrado = "Documento não encontrado no sistema simulado.";

SChamadaSimulada Chamada(EOperacaoSimulada eOperacao, const CXVDadosCR_IntegracaoMiddleware& rDados) {
    SChamadaSimulada chamada;
    chamada.eOperacao = eOperacao;
    chamada.regOrigem = rDados.regDmcMovimentoOrigem;
    chamada.eTipo = rDados.eTipoIntegracao;
    chamada.eTransacao = rDados.eTipoTransacao;
    chamada.uiChave = rDados.uiChaveIntegracaoSistemaTerceiro;
    chamada.sJSON = rDados.sRegistroJSON;
    return chamada;
}

std::string Situacao(XVUInt64 uiChave, const char* pszSituacao) {
    return "{\"chave\":\"" + std::to_string(uiChave) + "\",\"situacao\":\"" + pszSituacao + "\"}";
}

// What the rule says goes before what the document says.
void Responde(const std::optional<SRegraSimulacao>& rRegra, const SDocumentoExterno& rDocumento,
              XVUInt64 uiChave, CXVDadosCR_IntegracaoMiddleware& rDados) {
    rDados.eStatusIntegracao = rDocumento.eStatus;
    rDados.sMensagemIntegracao = rDocumento.sMensagem;
    rDados.sJSONRetornoIntegracao = rDocumento.sRetorno;
    if (uiChave != 0) rDados.uiChaveIntegracaoSistemaTerceiro = uiChave;
    if (rDocumento.uiChaveRegistro != 0) rDados.uiChaveRegistroSistemaTerceiro = rDocumento.uiChaveRegistro;
    if (!rRegra) return;
    if (rRegra->eStatus) rDados.eStatusIntegracao = *rRegra->eStatus;
    if (rRegra->sMensagem) rDados.sMensagemIntegracao = *rRegra->sMensagem;
    if (!rRegra->sCorpo.empty()) rDados.sJSONRetornoIntegracao = rRegra->sCorpo;
    if (rRegra->uiNovaChaveRegistro) rDados.uiChaveRegistroSistemaTerceiro = *rRegra->uiNovaChaveRegistro;
}

SDocumentoExterno NaoEncontrado() {
    SDocumentoExterno documento;
    documento.eStatus = eXVSMiddleware_Erro;
    documento.sMensagem = k_pszNaoEncontrado;
    return documento;
}

SDocumentoExterno NovoDocumento(const std::optional<SRegraSimulacao>& rRegra, XVUInt64 uiChave,
                                const CXVDadosCR_IntegracaoMiddleware& rDados) {
    SDocumentoExterno documento;
    documento.regOrigem = rDados.regDmcMovimentoOrigem;
    documento.uiChaveRegistro =
        rDados.uiChaveRegistroSistemaTerceiro != 0 ? rDados.uiChaveRegistroSistemaTerceiro : uiChave;
    documento.uiBaseDados = rDados.uiBaseDadosTerceiro;
    documento.eStatus = eXVSMiddleware_Sucesso;
    documento.eTipo = rDados.eTipoIntegracao;
    documento.eTransacao = rDados.eTipoTransacao;
    documento.ulFilial = rDados.ulPonteiroFilial;
    documento.sMensagem = "Documento aceito pelo sistema simulado.";
    documento.sEnviado = rDados.sRegistroJSON;
    documento.sRetorno = Situacao(uiChave, "aceito");
    if (rRegra) {
        documento.eStatus = rRegra->eStatus.value_or(documento.eStatus);
        documento.sMensagem = rRegra->sMensagem.value_or(documento.sMensagem);
        documento.uiChaveRegistro = rRegra->uiNovaChaveRegistro.value_or(documento.uiChaveRegistro);
        if (!rRegra->sCorpo.empty()) documento.sRetorno = rRegra->sCorpo;
    }
    return documento;
}

HRESULT ValidaEnvio(const CXVDadosCR_IntegracaoMiddleware& rDados) {
    return rDados.sRegistroJSON.empty() ? E_INVALIDARG : S_OK;
}

XVUInt64 ChaveDoNome(std::string_view sNome) {
    XVUInt64 uiChave = 0;
    const auto resultado = std::from_chars(sNome.data(), sNome.data() + sNome.size(), uiChave);
    const bool bChave = resultado.ec == std::errc() && CXVPastaSimulacao::NomeDocumento(uiChave) == sNome;
    return bChave ? uiChave : 0;
}

}  // namespace

XVUInt CXVProvedorSimulacao::GetSistema() const {
    return SimulacaoSistemaTerceiro;
}

HRESULT CXVProvedorSimulacao::Prepara(const IXVDF_Profiler& rDono, const SChamadaSimulada& rChamada,
                                      CXVPastaSimulacao* pPasta, std::optional<SRegraSimulacao>* pRegra) {
    XV_CHECK_DONO(&rDono, pPasta->Abre());
    XV_CHECK_DONO(&rDono, CXVRegrasSimulacao(*pPasta, rDono).Busca(rChamada, pRegra, nullptr));
    if (*pRegra) XV_CHECK_DONO(&rDono, (*pRegra)->desfecho.Cumpre());
    return S_OK;
}

HRESULT CXVProvedorSimulacao::RealizaOperacaoAnterior(const IXVDF_Profiler& rDono,
                                                      CXVDadosCR_IntegracaoMiddleware& rDados) {
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(
        &rDono, Prepara(rDono, Chamada(EOperacaoSimulada::eRealizaOperacaoAnterior, rDados), &pasta, &regra));
    if (!regra) return S_OK;
    if (!regra->sCorpo.empty()) rDados.sRegistroJSON = std::move(regra->sCorpo);
    rDados.ulPonteiroFilial = regra->ulNovaFilial.value_or(rDados.ulPonteiroFilial);
    rDados.uiBaseDadosTerceiro = regra->uiNovaBaseDados.value_or(rDados.uiBaseDadosTerceiro);
    rDados.uiChaveRegistroSistemaTerceiro =
        regra->uiNovaChaveRegistro.value_or(rDados.uiChaveRegistroSistemaTerceiro);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::RealizaOperacaoPosterior(const IXVDF_Profiler& rDono,
                                                       const CXVDadosCR_ParametrosIntegracao& rParametros) {
    SChamadaSimulada chamada;
    chamada.eOperacao = EOperacaoSimulada::eRealizaOperacaoPosterior;
    chamada.regOrigem = rParametros.regDmcOrigem;
    chamada.eTipo = rParametros.eTipoIntegracao;
    chamada.eTransacao = rParametros.eTipoTransacao;
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, chamada, &pasta, &regra));
    return S_OK;
}

HRESULT CXVProvedorSimulacao::AtualizaParametrosIntegracao(const IXVDF_Profiler& rDono,
                                                           CXVDadosCR_ParametrosIntegracao& rParametros) {
    SChamadaSimulada chamada;
    chamada.eOperacao = EOperacaoSimulada::eAtualizaParametrosIntegracao;
    chamada.regOrigem = rParametros.regDmcOrigem;
    chamada.eTipo = rParametros.eTipoIntegracao;
    chamada.eTransacao = rParametros.eTipoTransacao;
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, chamada, &pasta, &regra));
    if (!regra) return S_OK;
    rParametros.eTipoIntegracao = regra->eNovoTipo.value_or(rParametros.eTipoIntegracao);
    rParametros.eTipoTransacao = regra->eNovaTransacao.value_or(rParametros.eTipoTransacao);
    rParametros.ulPonteiroFilial = regra->ulNovaFilial.value_or(rParametros.ulPonteiroFilial);
    rParametros.regDmcOrigem = regra->regNovaOrigem.value_or(rParametros.regDmcOrigem);
    rParametros.uiChaveRegistroSistemaTerceiro =
        regra->uiNovaChaveRegistro.value_or(rParametros.uiChaveRegistroSistemaTerceiro);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::BuscaIntegracoes(
    const IXVDF_Profiler& rDono, const CXVDadosCR_ParametrosIntegracao& rParametros,
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) {
    SChamadaSimulada chamada;
    chamada.eOperacao = EOperacaoSimulada::eBuscaIntegracoes;
    chamada.regOrigem = rParametros.regDmcOrigem;
    chamada.eTipo = rParametros.eTipoIntegracao;
    chamada.eTransacao = rParametros.eTipoTransacao;
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, chamada, &pasta, &regra));
    std::vector<std::string> listaNomes;
    XV_CHECK_DONO(&rDono, pasta.Lista("pendentes", "pend", &listaNomes));
    for (const std::string& sNome : listaNomes)
        XV_CHECK_DONO(&rDono, LePendencia(rDono, pasta, sNome, rParametros, listaDados));
    return S_OK;
}

HRESULT CXVProvedorSimulacao::EnviaJson(const IXVDF_Profiler& rDono,
                                        CXVDadosCR_IntegracaoMiddleware& rDados) {
    XV_CHECK_DONO(&rDono, ValidaEnvio(rDados));
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, Chamada(EOperacaoSimulada::eEnviaJson, rDados), &pasta, &regra));
    if (regra && regra->eStatus == eXVSMiddleware_Erro) {  // refused: nothing is kept, no key is issued
        SDocumentoExterno recusa;
        recusa.eStatus = eXVSMiddleware_Erro;
        recusa.sMensagem = "Documento recusado pelo sistema simulado.";
        Responde(regra, recusa, 0, rDados);
        return S_OK;
    }
    XV_CHECK_DONO(&rDono, pasta.Cria());
    XVUInt64 uiChave = regra ? regra->uiNovaChave.value_or(0) : 0;
    if (uiChave == 0) XV_CHECK_DONO(&rDono, pasta.EmiteChave(&uiChave));
    const SDocumentoExterno documento = NovoDocumento(regra, uiChave, rDados);
    XV_CHECK_DONO(&rDono, pasta.Grava(CXVPastaSimulacao::NomeDocumento(uiChave), documento.ComoDocumento()));
    Responde(std::nullopt, documento, uiChave, rDados);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::BuscaDados(const IXVDF_Profiler& rDono,
                                         CXVDadosCR_IntegracaoMiddleware& rDados) {
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, Chamada(EOperacaoSimulada::eBuscaDados, rDados), &pasta, &regra));
    XVUInt64 uiChave = 0;
    SDocumentoExterno documento;
    XV_CHECK_DONO(&rDono, Localiza(rDono, pasta, rDados, &uiChave, &documento));
    XV_CHECK_DONO(&rDono, documento.desfecho.Cumpre());
    Responde(regra, uiChave != 0 ? documento : NaoEncontrado(), uiChave, rDados);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::ExcluiDados(const IXVDF_Profiler& rDono,
                                          CXVDadosCR_IntegracaoMiddleware& rDados) {
    CXVPastaSimulacao pasta(rDono);
    std::optional<SRegraSimulacao> regra;
    XV_CHECK_DONO(&rDono, Prepara(rDono, Chamada(EOperacaoSimulada::eExcluiDados, rDados), &pasta, &regra));
    XVUInt64 uiChave = 0;
    SDocumentoExterno documento;
    XV_CHECK_DONO(&rDono, Localiza(rDono, pasta, rDados, &uiChave, &documento));
    XV_CHECK_DONO(&rDono, documento.desfecho.Cumpre());
    const bool bCancela =
        !regra || regra->eStatus.value_or(eXVSMiddleware_Cancelado) == eXVSMiddleware_Cancelado;
    if (uiChave != 0 && bCancela) {
        documento.eStatus = eXVSMiddleware_Cancelado;
        documento.sMensagem = "Documento cancelado no sistema simulado.";
        documento.sRetorno = Situacao(uiChave, "cancelado");
        XV_CHECK_DONO(&rDono,
                      pasta.Grava(CXVPastaSimulacao::NomeDocumento(uiChave), documento.ComoDocumento()));
    }
    Responde(regra, uiChave != 0 ? documento : NaoEncontrado(), uiChave, rDados);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::BuscaDadosSistemaTerceiro(const IXVDF_Profiler& rDono,
                                                        const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                                        CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) {
    SChamadaSimulada chamada;
    chamada.eOperacao = EOperacaoSimulada::eBuscaDadosSistemaTerceiro;
    chamada.eConsulta = rConsulta.eTipoConsulta;
    chamada.sChaveConsulta = rConsulta.sChaveConsulta;
    CXVPastaSimulacao pasta(rDono);
    XV_CHECK_DONO(&rDono, pasta.Abre());
    std::optional<SRegraSimulacao> regra;
    bool bExiste = false;
    XV_CHECK_DONO(&rDono, CXVRegrasSimulacao(pasta, rDono).Busca(chamada, &regra, &bExiste));
    if (!bExiste) return E_NOTIMPL;  // another provider may know the kind
    rStatus = {};
    if (!regra) {
        rStatus.eStatusConsulta = eXVSMiddleware_ConsultaDadosNaoEncontrados;
        rStatus.sMensagemRetorno = k_pszNaoEncontrado;
        return S_OK;
    }
    XV_CHECK_DONO(&rDono, regra->desfecho.Cumpre());
    if (!regra->sDocumento.empty())
        XV_CHECK_DONO(&rDono,
                      pasta.LeBytes("documentos", regra->sDocumento, CXVPastaSimulacao::k_uiMaximoArquivo,
                                    &rStatus.sDocumentoRetorno));
    rStatus.eStatusConsulta = regra->eStatus.value_or(eXVSMiddleware_ConsultaSucesso);
    rStatus.sMensagemRetorno = regra->sMensagem.value_or(std::string());
    rStatus.sJSONRetorno = std::move(regra->sCorpo);
    return S_OK;
}

HRESULT CXVProvedorSimulacao::Localiza(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                                       const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64* puiChave,
                                       SDocumentoExterno* pDocumento) {
    XVUInt64 uiChave = rDados.uiChaveIntegracaoSistemaTerceiro;
    *puiChave = 0;
    if (uiChave == 0) XV_CHECK_DONO(&rDono, ProcuraOrigem(rDono, rPasta, rDados, &uiChave));
    if (uiChave == 0) return S_OK;
    const std::string sNome = CXVPastaSimulacao::NomeDocumento(uiChave);
    CXVDocumentoSimulacao documento;
    const HRESULT hrLeDocumento = rPasta.Le("", sNome, &documento);
    if (hrLeDocumento == eFileNotFound || hrLeDocumento == eBadPath) return S_OK;
    XV_CHECK_DONO(&rDono, hrLeDocumento);
    std::string sErro;
    if (!pDocumento->Interpreta(documento, true, &sErro)) return rPasta.Recusa(sNome, sErro);
    *puiChave = uiChave;
    return S_OK;
}

HRESULT CXVProvedorSimulacao::ProcuraOrigem(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                                            const CXVDadosCR_IntegracaoMiddleware& rDados,
                                            XVUInt64* puiChave) {
    if (rDados.regDmcMovimentoOrigem.EhNulo()) return S_OK;
    std::vector<std::string> listaNomes;
    XV_CHECK_DONO(&rDono, rPasta.Lista("", "doc", &listaNomes));
    for (const std::string& sNome : listaNomes) {
        const XVUInt64 uiChave = ChaveDoNome(sNome);
        if (uiChave <= *puiChave) continue;
        CXVDocumentoSimulacao documento;
        SDocumentoExterno externo;
        std::string sErro;
        XV_CHECK_DONO(&rDono, rPasta.LeCampos(sNome, &documento));
        if (!externo.Interpreta(documento, false, &sErro)) return rPasta.Recusa(sNome, sErro);
        const bool bTipo = rDados.eTipoIntegracao == 0 || externo.eTipo == rDados.eTipoIntegracao;
        if (bTipo && externo.regOrigem == rDados.regDmcMovimentoOrigem &&
            externo.eStatus != eXVSMiddleware_Cancelado)
            *puiChave = uiChave;
    }
    return S_OK;
}
