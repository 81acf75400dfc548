// The component over the real store: one store for all components of a company, each call in the name of its
// caller, and nothing left open when the last one goes.
#include "support/trace/XVCapturaTrace.h"
#include "tests/client/XVPortaTeste.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

using XVPortaTeste::Conta;

class CComponenteReal : public CXVCenarioSuite {
  protected:
    static HRESULT Conecta(XVCliente::CXVCliente& r, const char* pszEmpresa, XVUShort usUsuario) {
        return r.ConectaLocal(
            {.sEmpresa = pszEmpresa, .usUsuario = usUsuario, .ulNumeroSessao = usUsuario + 500U}, {});
    }
    static void Grava(XVCliente::CXVCliente& r) {
        REG_XVDMC regDmc;
        EXPECT_EQ(r.GravaIntegracao(&regDmc, XVPortaTeste::IntegracaoPendente("")), S_OK);
    }
    // How many lines of the company's general log bear user and session.
    int Linhas(unsigned uiUsuario) const {
        const std::string sLog = m_Arquivos.LeConteudo(PastaDados("XVLogGeral_202403.log")).value_or("");
        const std::string sMarca =
            "\tMATRIZ\t" + std::to_string(uiUsuario) + "\t" + std::to_string(uiUsuario + 500) + "\t";
        int iLinhas = 0;
        for (std::size_t i = sLog.find(sMarca); i != std::string::npos; i = sLog.find(sMarca, i + 1))
            ++iLinhas;
        return iLinhas;
    }

    const CXVCapturaTrace m_Captura;
};

}  // namespace

// Run under the thread sanitizer: calls on several components of one store, while others come and go.
TEST_F(CComponenteReal, ChamadasAoMesmoTempoDeVariosComponentesCadaUmaEmSeuNome) {
    {
        XVCliente::CXVCliente cliente;
        XVCliente::CXVCliente outra;
        ASSERT_EQ(Conecta(cliente, "MATRIZ", 11), S_OK);
        ASSERT_EQ(Conecta(outra, "FILIAL", 12), S_OK);
        Grava(cliente);
        XVEmThreads(4, [](unsigned i) {
            for (int n = 0; n < 5; ++n) {
                XVCliente::CXVCliente passageiro;
                ASSERT_EQ(Conecta(passageiro, "MATRIZ", static_cast<XVUShort>(20 + i)), S_OK);
                Grava(passageiro);
                EXPECT_GT(Conta(passageiro), 1U);
            }
        });
        Grava(cliente);
        EXPECT_EQ(Conta(cliente), 22U) << "the store that the others left stays open";
        EXPECT_EQ(Conta(outra), 0U);
        EXPECT_EQ(Linhas(11), 2);
        for (unsigned i = 20; i < 24; ++i) EXPECT_EQ(Linhas(i), 5) << i;
        ASSERT_EQ(Conecta(outra, "MATRIZ", 12), S_OK) << "the other company's store closes";
        EXPECT_EQ(Conta(outra), 22U);
    }
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}
