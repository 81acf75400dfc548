// The library of tests/middleware/exchange/XVGravador.h.
#include <cstdlib>
#include <cstring>

#include "tests/middleware/exchange/XVGravador.h"

namespace {

SGravador& Gravador() {
    static SGravador& s_rGravador = *new SGravador;
    return s_rGravador;
}

void* Aloca(std::size_t uiTamanho) {
    ++Gravador().lBuffersVivos;
    return std::calloc(1, uiTamanho + 1);
}

void Libera(void*, void* pBuffer) {
    --Gravador().lBuffersVivos;
    std::free(pBuffer);
}

void Preenche(XVProvedorBuffer* pBuffer, const std::string& sBytes) {
    pBuffer->pBytes = Aloca(sBytes.size());
    std::memcpy(pBuffer->pBytes, sBytes.data(), sBytes.size());
    pBuffer->uiTamanho = sBytes.size();
    pBuffer->bPreenchido = 1;
}

template <class TRegistro>
void Anota(const char* pszOperacao, const XVProvedorDono& rDono, const TRegistro& rRegistro) {
    std::ostringstream s;
    s << pszOperacao << ' ' << XVVista(rDono.sEmpresa) << '/' << rDono.ulUsuario << '/'
      << rDono.ulNumeroSessao << ' ' << XVDescreve(rRegistro);
    Gravador().listaChamadas.push_back(s.str());
}

std::int32_t Responde(const char* pszOperacao, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    Anota(pszOperacao, *pDono, *pDados);
    const SRespostaDados& rResposta = Gravador().mapDados[pszOperacao];
    if (!rResposta.bMuda) return rResposta.iResultado;
    Preenche(&pDados->bufRegistroJSON, rResposta.sJSON);
    Preenche(&pDados->bufMensagemIntegracao, rResposta.sMensagem);
    Preenche(&pDados->bufJSONRetornoIntegracao, rResposta.sRetorno);
    pDados->uiChaveIntegracaoSistemaTerceiro = rResposta.uiChave;
    pDados->uiChaveRegistroSistemaTerceiro = rResposta.uiChaveRegistro;
    pDados->uiBaseDadosTerceiro = rResposta.uiBase;
    pDados->eStatusIntegracao = rResposta.eStatus;
    pDados->ulPonteiroFilial = rResposta.ulFilial;
    pDados->cReconsultarIdTerceiros = rResposta.cReconsultar;
    // Not its to change.
    pDados->uiDmc = pDados->uiDmcIntegracaoOrigem = pDados->uiDmcMovimentoOrigem = 1U << 14;
    pDados->uiDataHoraInclusao = pDados->uiDataHoraAlteracaoStatus = 1;
    pDados->eTipoIntegracao = pDados->eSistemaIntegracao = pDados->eTipoTransacao = 2;
    pDados->ulPonteiroAuxiliar = pDados->ucTipoPonteiroAuxiliar = 99;
    return rResposta.iResultado;
}

std::int32_t Troca(const char* pszOperacao, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    const std::int32_t iResultado = Responde(pszOperacao, pDono, pDados);
    if (Gravador().fnDepoisDaTroca) Gravador().fnDepoisDaTroca();
    return iResultado;
}

std::int32_t Anterior(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    return Responde("Anterior", pDono, pDados);
}
std::int32_t EnviaJson(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    return Troca("EnviaJson", pDono, pDados);
}
std::int32_t BuscaDados(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    return Troca("BuscaDados", pDono, pDados);
}
std::int32_t ExcluiDados(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    return Troca("ExcluiDados", pDono, pDados);
}

std::int32_t Posterior(void*, const XVProvedorDono* pDono, const XVProvedorParametros* pParametros) {
    Anota("Posterior", *pDono, *pParametros);
    return Gravador().mapParametros["Posterior"].iResultado;
}

std::int32_t Atualiza(void*, const XVProvedorDono* pDono, XVProvedorParametros* pParametros) {
    Anota("Atualiza", *pDono, *pParametros);
    const SRespostaParametros& rResposta = Gravador().mapParametros["Atualiza"];
    if (!rResposta.bMuda) return rResposta.iResultado;
    pParametros->eTipoIntegracao = rResposta.eTipo;
    pParametros->eTipoTransacao = rResposta.eTransacao;
    pParametros->ulPonteiroFilial = rResposta.ulFilial;
    pParametros->uiDmcOrigem = rResposta.uiOrigem;
    pParametros->uiChaveRegistroSistemaTerceiro = rResposta.uiChaveRegistro;
    pParametros->uiDmcIntegracao = 1U << 14;  // not its to change, nor what follows
    pParametros->uiBaseDadosTerceiro = 99;
    pParametros->eSistemaIntegracao = 2;
    pParametros->ulPonteiroAuxiliar = pParametros->ucTipoPonteiroAuxiliar = 99;
    return rResposta.iResultado;
}

std::int32_t BuscaIntegracoes(void*, const XVProvedorDono* pDono, const XVProvedorParametros* pParametros,
                              XVProvedorListaPendencias* pLista) {
    Anota("BuscaIntegracoes", *pDono, *pParametros);
    const std::vector<SItemGravador>& rItens = Gravador().listaItens;
    if (rItens.empty()) return Gravador().iResultadoLista;
    pLista->pLista = static_cast<XVProvedorPendencia*>(Aloca(rItens.size() * sizeof(XVProvedorPendencia)));
    pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
    pLista->ulQuantidade = static_cast<std::uint32_t>(rItens.size());
    for (std::size_t i = 0; i < rItens.size(); ++i) {
        XVProvedorPendencia& rPendencia = pLista->pLista[i];
        Preenche(&rPendencia.bufJSON, rItens[i].sJSON);
        rPendencia.uiDmcOrigem = rItens[i].uiOrigem;
        rPendencia.uiBaseDadosTerceiro = rItens[i].uiBase;
        rPendencia.uiChaveRegistroSistemaTerceiro = rItens[i].uiChaveRegistro;
        rPendencia.eSistemaIntegracao = rItens[i].eSistema;
        rPendencia.ulPonteiroFilial = rItens[i].ulFilial;
        rPendencia.cReconsultarIdTerceiros = rItens[i].cReconsultar;
    }
    return Gravador().iResultadoLista;
}

std::int32_t Consulta(void*, const XVProvedorDono* pDono, const XVProvedorConsulta* pConsulta,
                      XVProvedorStatusConsulta* pStatus) {
    Anota("Consulta", *pDono, *pConsulta);
    const SRespostaConsulta& rResposta = Gravador().consulta;
    pStatus->eStatusConsulta = rResposta.eStatus;
    Preenche(&pStatus->bufMensagemRetorno, rResposta.sMensagem);
    Preenche(&pStatus->bufJSONRetorno, rResposta.sJSON);
    Preenche(&pStatus->bufDocumentoRetorno, rResposta.sDocumento);
    return rResposta.iResultado;
}

}  // namespace

extern "C" {

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela);
SGravador* XVProvedorGravador();

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = ulVersao;
    pTabela->eSistema = XV_SISTEMA;
    pTabela->pfnLibera = Libera;
    pTabela->pfnRealizaOperacaoAnterior = Anterior;
    pTabela->pfnEnviaJson = EnviaJson;
    pTabela->pfnBuscaDados = BuscaDados;
    pTabela->pfnExcluiDados = ExcluiDados;
    pTabela->pfnRealizaOperacaoPosterior = Posterior;
    pTabela->pfnAtualizaParametrosIntegracao = Atualiza;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    pTabela->pfnBuscaDadosSistemaTerceiro = Consulta;
    return 0;
}

SGravador* XVProvedorGravador() {
    return &Gravador();
}
}
