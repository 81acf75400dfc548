// Life of objects: initialisation and its failures, who an object speaks for, registry settings.
#include <new>

#include "tests/suite/XVCenarioSuite.h"

namespace {

class CXVObjetoVigiado : public CXVBaseParaRotinas {
  public:
    HRESULT hrInicializa = S_OK;
    HRESULT hrFinaliza = S_OK;
    bool bLanca = false;
    int iInicializacoes = 0;
    int iFinalizacoes = 0;

  protected:
    HRESULT OnInicializa() override {
        ++iInicializacoes;
        if (bLanca) throw std::bad_alloc();
        return hrInicializa;
    }
    HRESULT OnFinaliza() override {
        ++iFinalizacoes;
        return hrFinaliza;
    }
};

using VidaTeste = CXVCenarioSuite;

TEST_F(VidaTeste, InicializarEFinalizarDeNovoNaoFazNadaEUmaFalhaSoltaOQueAbriu) {
    CXVObjetoVigiado objeto;
    EXPECT_EQ(objeto.Finaliza(), S_OK);
    EXPECT_EQ(objeto.Inicializa(nullptr), E_POINTER);
    objeto.hrInicializa = E_OUTOFMEMORY;
    objeto.hrFinaliza = E_FAIL;
    EXPECT_EQ(objeto.Inicializa(&m_Dono), E_OUTOFMEMORY) << "the first code";
    EXPECT_EQ(objeto.iFinalizacoes, 1);
    objeto.bLanca = true;
    EXPECT_THROW(XVIgnora(objeto.Inicializa(&m_Dono)), std::bad_alloc);
    EXPECT_EQ(objeto.iFinalizacoes, 2);
    EXPECT_FALSE(objeto.EstaInicializado());
    objeto.bLanca = false;
    objeto.hrInicializa = S_OK;
    EXPECT_EQ(objeto.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(objeto.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(objeto.iInicializacoes, 3);
    EXPECT_EQ(objeto.Finaliza(), E_FAIL);
    EXPECT_EQ(objeto.Finaliza(), S_OK);
    EXPECT_EQ(objeto.iFinalizacoes, 3);
    EXPECT_FALSE(objeto.EstaInicializado());
}

TEST_F(VidaTeste, ObjetosDaMesmaEmpresaFalamEmNomeDaChamadaEmCurso) {
    CXVBaseParaRotinas loja;
    CXVBaseParaRotinas chamada;
    CXVBaseParaRotinas outra;
    ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK);
    const CXVDonoFixo visitante("Matriz", 21, 500, true);  // its case does not count
    const CXVDonoFixo estranho("FILIAL", 3, 4);
    ASSERT_EQ(chamada.Inicializa(&visitante), S_OK);
    ASSERT_EQ(outra.Inicializa(&estranho), S_OK);
    {
        const CXVAcessoDefault acesso(&chamada);
        EXPECT_EQ(loja.GetUsuario(), 21);
        EXPECT_EQ(loja.GetNumeroSessao(), 500U);
        EXPECT_EQ(loja.GetUsuarioProprio(), 7);
        EXPECT_TRUE(chamada.EhConsulta() && !loja.EhConsulta());
        EXPECT_EQ(outra.GetUsuario(), 3) << "another company keeps its own";
        {
            const CXVAcessoDefault interno(&outra);
            EXPECT_EQ(loja.GetUsuario(), 7);
        }
        EXPECT_EQ(loja.GetUsuario(), 21) << "the inner scope put the outer one back";
        std::thread([&] { EXPECT_EQ(loja.GetUsuario(), 7); }).join();
    }
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoDefault(), nullptr);
}

TEST_F(VidaTeste, ObjetoQueAcabaSoltaOLogGeralEDeixaDeSerOAcessoDaThread) {
    {
        CXVBaseParaRotinas base;
        ASSERT_EQ(base.Inicializa(&m_Dono), S_OK);
        CXVBaseParaRotinas::SetAcessoDefault(&base);
        EXPECT_EQ(base.GetAcessoEmpresarial()->GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "x"), S_OK);
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 1U);
        EXPECT_EQ(base.Finaliza(), S_OK);
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoDefault(), nullptr);
}

TEST_F(VidaTeste, ConfiguracaoDosServidoresVemDoRegistro) {
    const CXVBaseParaRotinas base;
    const std::string sChave = CAmbienteXV::GetChaveRegistry(k_eModuloBase);
    for (const auto& [ulValor, bUsa] : {std::pair{0U, false}, {0xEFU, false}, {0x10U, true}}) {
        m_registry.SetNumero(sChave, "AcessoServidores_1", ulValor);
        EXPECT_EQ(base.UsaFilialComoBaseDadosTerceiro(), bUsa) << ulValor;
    }
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoServidoresDefault(), "");
    m_registry.SetTexto(sChave, "AcessoServidoresDefault", "SERVIDOR");
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoServidoresDefault(), "SERVIDOR");
}

}  // namespace
