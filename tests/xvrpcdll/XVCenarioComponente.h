// A component over the fake logic object, on a registry of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

class CCenarioComponente : public ::testing::Test {
  protected:
    static HRESULT Inicializa(CComponenteFalso& r) {
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        return r.Inicializa_Padrao(&reg);
    }
    HRESULT Chama(CComponenteFalso& r) const { return r.GravaChaveRegistroTelvoParaTerceiro(&m_regChave); }

    CXVRegistryFalso m_registry;
    CXVGuardaRegistry m_guarda{m_registry};
    SControleLogica m_controle;
    CXVCapturaTrace m_captura;
    CReferencia m_p;
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS m_regChave{};
};
