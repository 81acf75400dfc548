// Provider library for system 8 that answers with what it was asked: all of it, as text, in the JSON of the
// one pending item of a record, in the message of an exchange, in the answer of a query.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "suite/providers/XVProvedorPlugin.h"

namespace {

constexpr std::uint32_t k_ulSistema = 8;
constexpr std::string_view k_sDocumento("%PDF\0\xff", 6);

std::string Texto(const XVProvedorTexto& r) {
    return {r.pBytes, static_cast<std::size_t>(r.uiTamanho)};
}

void Preenche(XVProvedorBuffer* pBuffer, std::string_view s) {
    pBuffer->pBytes = std::calloc(1, s.size() + 1);
    std::memcpy(pBuffer->pBytes, s.data(), s.size());
    pBuffer->uiTamanho = s.size();
    pBuffer->bPreenchido = 1;
}

template <class... TNumeros>
std::string Junta(TNumeros... numeros) {
    std::string sTexto;
    ((sTexto += (sTexto.empty() ? "" : " ") + std::to_string(numeros)), ...);
    return sTexto;
}

std::int32_t BuscaIntegracoes(void*, const XVProvedorDono* pDono, const XVProvedorParametros* p,
                              XVProvedorListaPendencias* pLista) {
    pLista->pLista = static_cast<XVProvedorPendencia*>(std::calloc(1, sizeof(XVProvedorPendencia)));
    pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
    pLista->ulQuantidade = 1;
    XVProvedorPendencia& rItem = *pLista->pLista;
    Preenche(&rItem.bufJSON,
             Texto(pDono->sEmpresa) + ' ' +
                 Junta(pDono->ulUsuario, pDono->ulNumeroSessao, p->eTipoIntegracao, p->uiDmcOrigem,
                       p->uiDmcIntegracao, p->uiChaveRegistroSistemaTerceiro, p->uiBaseDadosTerceiro,
                       p->eSistemaIntegracao, p->eTipoTransacao, p->ulPonteiroFilial, p->ulPonteiroAuxiliar,
                       p->ucTipoPonteiroAuxiliar));
    rItem.uiDmcOrigem = p->uiDmcOrigem;
    rItem.uiBaseDadosTerceiro = 31;
    rItem.eSistemaIntegracao = k_ulSistema;
    return 0;
}

// The first exchange is accepted under the key 77; the one of an integration that is known deletes it.
std::int32_t Troca(void*, const XVProvedorDono*, XVProvedorDados* p) {
    Preenche(&p->bufMensagemIntegracao, Junta(p->uiDmc, p->uiChaveIntegracaoSistemaTerceiro));
    p->eStatusIntegracao = p->uiDmc == 0 ? 3 : 5;
    p->uiChaveIntegracaoSistemaTerceiro = 77;
    return 0;
}

std::int32_t Consulta(void*, const XVProvedorDono*, const XVProvedorConsulta* p,
                      XVProvedorStatusConsulta* pStatus) {
    pStatus->eStatusConsulta = 3;
    Preenche(&pStatus->bufMensagemRetorno,
             Texto(p->sChaveConsulta) + ' ' +
                 Junta(p->eTipoConsulta, p->ulPonteiroAuxiliar, p->ucTipoPonteiroAuxiliar));
    Preenche(&pStatus->bufJSONRetorno, "{\"eco\":1}");
    Preenche(&pStatus->bufDocumentoRetorno, k_sDocumento);
    return 0;
}

}  // namespace

extern "C" {

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela);

std::int32_t XVProvedorObtem(std::uint32_t, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = XVPROVEDOR_VERSAO;
    pTabela->eSistema = k_ulSistema;
    pTabela->pfnLibera = [](void*, void* pBuffer) { std::free(pBuffer); };
    pTabela->pfnEnviaJson = Troca;
    pTabela->pfnExcluiDados = Troca;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    pTabela->pfnBuscaDadosSistemaTerceiro = Consulta;
    return 0;
}
}
