// By which door the tests of the client's operations come to a component: each test program has one of its
// own.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "client/XVCliente.h"

namespace XVPortaTeste {

HRESULT Conecta(XVCliente::CXVCliente& rCliente, const XVCliente::SIdentificacao& rIdentificacao);

// Where the store of the company lies.
std::string DiretorioEmpresa(const std::string& sEmpresa);

// A company that no other test of this process uses.
inline std::string NovaEmpresa() {
    static int s_iNumero = 0;
    return "COM" + std::to_string(100 + s_iNumero++);
}

inline CXVDadosCR_IntegracaoMiddleware IntegracaoPendente(const std::string& sJSON) {
    return {.sRegistroJSON = sJSON,
            .eTipoIntegracao = eXVSMiddleware_BuscaPedidos,
            .eStatusIntegracao = eXVSMiddleware_Pendente,
            .eSistemaIntegracao = SimulacaoSistemaTerceiro,
            .eTipoTransacao = eXVSMiddleware_Inclusao};
}

// How many integrations the client finds.
inline std::size_t Conta(XVCliente::CXVCliente& rCliente) {
    std::vector<REG_XVDMC> lista;
    EXPECT_EQ(rCliente.BuscaPonteiros({}, &lista), S_OK);
    return lista.size();
}

}  // namespace XVPortaTeste
