#include "tools/xvcr/XVFabricaOperacoes.h"

#include "tools/xvcr/XVOperacoesLocais.h"

std::unique_ptr<IXVOperacoes> XVCriaOperacoes(bool bServidor) {
    if (bServidor) return XVCriaOperacoesServidor();
    return std::make_unique<CXVOperacoesLocais>();
}
