// A provider library for system 8 of which the caller's auxiliary pointer says what it does when it sends:
// 1 a fault, 2 waits for the event, anything else is success under that key. One item is always pending.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "suite/providers/XVProvedorPlugin.h"

namespace {

std::int32_t XVPROVEDOR_CHAMADA EnviaJson(void*, const XVProvedorDono*, XVProvedorDados* pDados) {
    if (pDados->ulPonteiroAuxiliar == 1) *static_cast<volatile int*>(nullptr) = 1;
    if (pDados->ulPonteiroAuxiliar == 2) {
        const HANDLE hSolta = ::CreateEventW(nullptr, TRUE, FALSE, L"xv_provedor_dificil");
        ::WaitForSingleObject(hSolta, 60000);
        ::CloseHandle(hSolta);
    }
    pDados->uiChaveIntegracaoSistemaTerceiro = pDados->ulPonteiroAuxiliar;
    pDados->eStatusIntegracao = 3;
    return 0;
}

std::int32_t XVPROVEDOR_CHAMADA BuscaIntegracoes(void*, const XVProvedorDono*,
                                                 const XVProvedorParametros* pParametros,
                                                 XVProvedorListaPendencias* pLista) {
    pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
    pLista->pLista = static_cast<XVProvedorPendencia*>(std::calloc(1, sizeof(XVProvedorPendencia)));
    pLista->ulQuantidade = 1;
    pLista->pLista->uiDmcOrigem = pParametros->uiDmcOrigem;
    pLista->pLista->eSistemaIntegracao = 8;
    pLista->pLista->bufJSON = {std::malloc(2), 2, 1, 0};
    std::memcpy(pLista->pLista->bufJSON.pBytes, "{}", 2);
    return 0;
}

}  // namespace

extern "C" int32_t XVPROVEDOR_CHAMADA XVProvedorObtem(uint32_t ulVersao, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = ulVersao;
    pTabela->eSistema = 8;
    pTabela->pfnLibera = [](void*, void* pBuffer) { std::free(pBuffer); };
    pTabela->pfnEnviaJson = EnviaJson;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    return 0;
}
