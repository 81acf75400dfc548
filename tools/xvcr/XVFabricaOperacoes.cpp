#include "tools/xvcr/XVFabricaOperacoes.h"

#include "tools/xvcr/XVErros.h"
#include "tools/xvcr/XVOperacoesLocais.h"

std::unique_ptr<IXVOperacoes> XVCriaOperacoes(bool bServidor) {
    if (bServidor) XVErroDeUso("--servidor: este programa foi feito sem o cliente do servidor");
    return std::make_unique<CXVOperacoesLocais>();
}
