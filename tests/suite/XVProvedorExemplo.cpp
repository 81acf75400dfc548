// Sample provider library for system 16: a small but honest use of the interface, and, on request of the
// sent JSON, every kind of dishonest answer that the adapter must refuse.
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "suite/providers/XVProvedorPlugin.h"

namespace {

long g_lBuffersVivos = 0;

std::string_view Vista(const XVProvedorTexto& r) {
    return {r.pBytes, static_cast<std::size_t>(r.uiTamanho)};
}

void* Aloca(std::size_t uiTamanho) {
    ++g_lBuffersVivos;
    return std::calloc(1, uiTamanho);
}

void Preenche(XVProvedorBuffer* pBuffer, std::string_view s) {
    pBuffer->pBytes = Aloca(s.size());
    std::memcpy(pBuffer->pBytes, s.data(), s.size());
    pBuffer->uiTamanho = s.size();
    pBuffer->bPreenchido = 1;
}

void Libera(void*, void* pBuffer) {
    --g_lBuffersVivos;
    std::free(pBuffer);
}

std::int32_t Falha(std::uint32_t ulCodigo) {
    return static_cast<std::int32_t>(ulCodigo);
}

std::int32_t EnviaJson(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    const std::string_view sPedido = Vista(pDados->sRegistroJSON);
    Preenche(&pDados->bufMensagemIntegracao, Vista(pDono->sEmpresa));
    if (sPedido == "falha") return Falha(0x800705B4U);
    pDados->uiChaveIntegracaoSistemaTerceiro = 1000 + pDono->ulUsuario;
    pDados->eStatusIntegracao = 3;
    if (sPedido == "status") pDados->eStatusIntegracao = 6;
    if (sPedido == "nul") Preenche(&pDados->bufJSONRetornoIntegracao, std::string_view("a\0b", 3));
    if (sPedido == "ponteiro") pDados->bufJSONRetornoIntegracao = {nullptr, 5, 1, 0};
    if (sPedido == "tamanho") {
        Preenche(&pDados->bufJSONRetornoIntegracao, "abc");
        pDados->bufJSONRetornoIntegracao.uiTamanho = 0x1'0000'0000ULL;
    }
    if (sPedido == "marca") {
        Preenche(&pDados->bufJSONRetornoIntegracao, "abc");
        pDados->bufJSONRetornoIntegracao.bPreenchido = 0;
    }
    if (sPedido == "ok") Preenche(&pDados->bufJSONRetornoIntegracao, "{\"ok\":1}");
    return 0;
}

std::int32_t BuscaIntegracoes(void*, const XVProvedorDono*, const XVProvedorParametros* pParametros,
                              XVProvedorListaPendencias* pLista) {
    if (pParametros->ulPonteiroAuxiliar == 0) return 0;
    pLista->pLista = static_cast<XVProvedorPendencia*>(Aloca(2 * sizeof(XVProvedorPendencia)));
    pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
    pLista->ulQuantidade = 2;
    for (unsigned i = 0; i < 2; ++i) {
        Preenche(&pLista->pLista[i].bufJSON, i == 0 ? "{\"item\":0}" : "{\"item\":1}");
        pLista->pLista[i].uiDmcOrigem = pParametros->uiDmcOrigem;
        pLista->pLista[i].eSistemaIntegracao = 16;
    }
    if (pParametros->ulPonteiroAuxiliar == 2) pLista->pLista[1].uiDmcOrigem = 1U << 14 | 4;
    if (pParametros->ulPonteiroAuxiliar == 3) {
        for (unsigned i = 0; i < 2; ++i) Libera(nullptr, pLista->pLista[i].bufJSON.pBytes);
        pLista->ulTamanhoElemento = 1;
    }
    return 0;
}

}  // namespace

extern "C" {

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela);
long XVProvedorExemploBuffersVivos();

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela) {
    if (ulVersao != XVPROVEDOR_VERSAO || pTabela->ulTamanho < sizeof(XVProvedorTabela))
        return Falha(0x80070057U);
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = XVPROVEDOR_VERSAO;
    pTabela->eSistema = 16;
    pTabela->pfnLibera = Libera;
    pTabela->pfnEnviaJson = EnviaJson;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    return 0;
}

long XVProvedorExemploBuffersVivos() {
    return g_lBuffersVivos;
}
}
