// The component over the real store: one store for all components of a company, each call in the name of its
// caller, and nothing left open when the last one goes.
#include <gtest/gtest.h>

#include "core/xvrpcdll/XVComponenteMiddleware.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

class CComponenteReal : public ::testing::Test {
  protected:
    CComponenteReal() { m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/dados"); }

    static HRESULT Inicializa(IXVCR_Middleware& rComponente, const char* pszEmpresa, XVUInt ulUsuario) {
        REG_DF_INICIALIZAPS reg = RegistroValido();
        std::memset(reg.szEmpresa, 0, sizeof(reg.szEmpresa));
        std::memcpy(reg.szEmpresa, pszEmpresa, std::strlen(pszEmpresa));
        reg.ulUsuario = ulUsuario;
        XVRegistroInicializacao::Sela(&reg);
        return rComponente.Inicializa_Padrao(&reg);
    }
    static REG_XVDMC Grava(IXVCR_Middleware& rComponente) {
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.eStatusIntegracao = eXVSMiddleware_Pendente;
        reg.eSistemaIntegracao = SimulacaoSistemaTerceiro;
        reg.eTipoTransacao = eXVSMiddleware_Inclusao;
        REG_XVDMC dmc;
        EXPECT_EQ(rComponente.GravaIntegracao(&dmc, &reg), S_OK);
        return dmc;
    }
    static XVUInt Conta(IXVCR_Middleware& rComponente) {
        const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
        _REG_DF_LISTA_XVDMCPS lista{};
        EXPECT_EQ(rComponente.BuscaPonteiros(&filtro, &lista), S_OK);
        const XVUInt ulQuantidade = lista.ulQuantidade;
        XVLiberaBuffers(&lista);
        return ulQuantidade;
    }
    // How many lines of the company's general log bear the user.
    std::size_t LinhasDoUsuario(const std::string& sEmpresa, const std::string& sUsuario) const {
        const std::string sMarca = "\t" + sEmpresa + "\t" + sUsuario + "\t";
        std::size_t uiLinhas = 0;
        for (const auto& [sCaminho, rArquivo] : m_sistema.Retrata())
            if (sCaminho.find("XVLogGeral_") != std::string::npos)
                for (std::size_t i = rArquivo.sConteudo.find(sMarca); i != std::string::npos;
                     i = rArquivo.sConteudo.find(sMarca, i + 1))
                    ++uiLinhas;
        return uiLinhas;
    }

    CXVSistemaArquivosMemoria m_sistema;
    CXVRegistryFalso m_registry;
    CXVGuardaSistemaArquivos m_guardaSistema{m_sistema};
    CXVGuardaRegistry m_guardaRegistry{m_registry};
    CXVCapturaTrace m_captura;

    void TearDown() override {
        if (!HasFailure()) return;
        for (const SFalhaCapturada& r : m_captura.GetFalhas())
            ADD_FAILURE() << r.sFuncao << ": " << r.sExpressao << " = " << std::hex << r.hr;
    }
};

}  // namespace

TEST_F(CComponenteReal, ComponentesDeUmaEmpresaPartilhamALojaCadaUmEmSeuNome) {
    {
        const CReferencia<CXVCR_Middleware> a;
        const CReferencia<CXVCR_Middleware> outra;
        ASSERT_EQ(Inicializa(*a, "UM", 11), S_OK);
        ASSERT_EQ(Inicializa(*outra, "DOIS", 12), S_OK);
        {
            const CReferencia<CXVCR_Middleware> b;
            ASSERT_EQ(Inicializa(*b, "UM", 13), S_OK);
            Grava(*a);
            Grava(*b);
            Grava(*b);
            EXPECT_EQ(Conta(*a), 3U);
            EXPECT_EQ(Conta(*outra), 0U);
        }
        // The store that b leaves stays open for a.
        Grava(*a);
        EXPECT_EQ(Conta(*a), 4U);
        EXPECT_EQ(LinhasDoUsuario("UM", "11"), 2U);
        EXPECT_EQ(LinhasDoUsuario("UM", "13"), 2U);
    }
    EXPECT_EQ(m_sistema.GetQuantidadeAberta(), 0U);
}

TEST_F(CComponenteReal, InicializarDeNovoTrocaDeEmpresaEFechaAAnterior) {
    {
        const CReferencia<CXVCR_Middleware> p;
        ASSERT_EQ(Inicializa(*p, "UM", 11), S_OK);
        const REG_XVDMC dmc = Grava(*p);
        ASSERT_EQ(Inicializa(*p, "DOIS", 11), S_OK);
        EXPECT_EQ(Conta(*p), 0U);
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        EXPECT_EQ(p->LeIntegracao(dmc.uiValor, &reg, 0), E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        ASSERT_EQ(Inicializa(*p, "UM", 12), S_OK);
        EXPECT_EQ(Conta(*p), 1U);
    }
    EXPECT_EQ(m_sistema.GetQuantidadeAberta(), 0U);
}

TEST_F(CComponenteReal, DiretorioQueFaltaNaoDeixaNadaAberto) {
    m_registry.Remove(CAmbienteXV::GetChaveRegistry(XV_DF), "Path");
    const CReferencia<CXVCR_Middleware> p;
    EXPECT_EQ(Inicializa(*p, "UM", 11), eBadPath);
    EXPECT_EQ(m_sistema.GetQuantidadeAberta(), 0U);
}

// Run under the thread sanitizer: calls on several components of one store, while others come and go.
TEST_F(CComponenteReal, ChamadasAoMesmoTempoDeVariosComponentes) {
    const CReferencia<CXVCR_Middleware> p;
    ASSERT_EQ(Inicializa(*p, "UM", 1), S_OK);
    XVEmThreads(4, [](XVUInt i) {
        for (int n = 0; n < 5; ++n) {
            const CReferencia<CXVCR_Middleware> q;
            ASSERT_EQ(Inicializa(*q, "UM", 20 + i), S_OK);
            Grava(*q);
            Conta(*q);
        }
    });
    EXPECT_EQ(Conta(*p), 20U);
    for (const char* pszUsuario : {"20", "21", "22", "23"}) EXPECT_EQ(LinhasDoUsuario("UM", pszUsuario), 5U);
}
