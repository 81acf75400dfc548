// A provider library that offers nothing, for the system and with the answer that its build names.
#include <cstdint>

#include "suite/providers/XVProvedorPlugin.h"

extern "C" {

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = ulVersao;
    pTabela->eSistema = XV_SISTEMA;
    pTabela->pfnLibera = [](void*, void*) {};
    return static_cast<std::int32_t>(XV_RESULTADO);
}
}
