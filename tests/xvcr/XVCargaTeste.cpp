// Lines of a load against a store in memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tools/xvcr/commands/XVCarga.h"

namespace {

using testing::HasSubstr;

class Carga : public testing::Test {
  protected:
    Carga() {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/dados");
        EXPECT_EQ(m_Cliente.ConectaLocal({.sEmpresa = "001"}, {}), S_OK);
    }

    CXVDadosCR_IntegracaoMiddleware Le(REG_XVDMC regDmc) {
        CXVDadosCR_IntegracaoMiddleware dados;
        EXPECT_EQ(m_Cliente.LeIntegracao(regDmc, k_ullLeTextos, &dados), S_OK);
        return dados;
    }
    std::size_t Conta() {
        std::vector<REG_XVDMC> lista;
        EXPECT_EQ(m_Cliente.BuscaPonteiros({}, &lista), S_OK);
        return lista.size();
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVRegistryFalso m_registry;
    CXVGuardaSistemaArquivos m_GuardaSistema{m_Arquivos};
    CXVGuardaRegistry m_guardaRegistry{m_registry};
    XVCliente::CXVCliente m_Cliente;
    CXVCarga m_Carga{m_Cliente};
};

TEST_F(Carga, LinhaSemDmcIncluiELinhaComDmcAltera) {
    SResultadoLinha resultado = m_Carga.Executa(R"({"ulPonteiroFilial":3})");
    EXPECT_EQ(resultado.sErro, "");
    const REG_XVDMC regDmc = resultado.regDmc;
    EXPECT_EQ(Le(regDmc).ulPonteiroFilial, 3U);

    resultado = m_Carga.Executa(R"({"regDmc":")" + regDmc.ToString() +
                                R"(","operacao":"integracao","eStatusIntegracao":1,"ulPonteiroAuxiliar":4})");
    EXPECT_EQ(resultado.sErro, "");
    EXPECT_EQ(resultado.regDmc, regDmc);
    EXPECT_EQ(Le(regDmc).ulPonteiroFilial, 0U) << "the whole record is replaced";
    EXPECT_EQ(Le(regDmc).ulPonteiroAuxiliar, 4U);
    EXPECT_EQ(Conta(), 1U);
}

TEST_F(Carga, OperacaoStatusGravaSoOStatus) {
    const REG_XVDMC regDmc = m_Carga
                                 .Executa(R"({"uiChaveIntegracaoSistemaTerceiro":9,"eSistemaIntegracao":16,)"
                                          R"("eStatusIntegracao":"Pendente","ulPonteiroFilial":3})")
                                 .regDmc;
    const SResultadoLinha resultado = m_Carga.Executa(
        R"({"operacao":"status","uiChaveIntegracaoSistemaTerceiro":9,"eSistemaIntegracao":16,)"
        R"("eStatusIntegracao":"Sucesso","regMensagemIntegracao":"ok"})");
    EXPECT_EQ(resultado.sErro, "");
    EXPECT_EQ(resultado.eOperacao, SResultadoLinha::EOperacao::eStatus);
    const CXVDadosCR_IntegracaoMiddleware lida = Le(regDmc);
    EXPECT_EQ(lida.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(lida.sMensagemIntegracao, "ok");
    EXPECT_EQ(lida.ulPonteiroFilial, 3U);
}

TEST_F(Carga, LinhaErradaNaoChegaABase) {
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":"apaga"})").sCampo, "operacao");
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":1})").sCampo, "operacao");
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":"status","eTipoIntegracao":1})").sCampo, "eTipoIntegracao");
    EXPECT_NE(m_Carga.Executa("{").sErro, "");
    EXPECT_EQ(Conta(), 0U);
}

TEST_F(Carga, FalhaDaBaseTrazCodigoENome) {
    const SResultadoLinha resultado =
        m_Carga.Executa(R"({"regDmc":"20261121-15-1","eStatusIntegracao":"Pendente"})");
    EXPECT_EQ(resultado.hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_THAT(resultado.sErro, HasSubstr("0x81080AAA E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: "));
}

}  // namespace
