// What the store keeps in memory, by the bytes that operator new has given out.
#include "middleware/ConversaoMiddleware.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/middleware/XVAlocacoes.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/middleware/XVMaquinaMorte.h"

namespace {

class CXVMemoriaTeste : public testing::Test {
  protected:
    CXVMemoriaTeste() {
        EXPECT_TRUE(XVPlataforma::SistemaArquivosNativo().CriaDiretorio(m_diretorio.Junta("MATRIZ/DF")).Ok());
    }

    CXVDiretorioTeste m_diretorio;
    CXVMaquinaMorte m_maquina{m_diretorio.GetCaminho()};
    CXVDonoFixo m_dono{"MATRIZ"};
};

TEST_F(CXVMemoriaTeste, ConversaoTemUmMembroPorVez) {
    constexpr unsigned k_uiRegistros = 8000;                                   // 640 KB a member
    const std::string sRegistros = XVBaseDourada(0, false).at(k_apszDias[0]);  // ten of them
    std::string sDia;
    while (sDia.size() < k_uiRegistros * 80) sDia += sRegistros;
    for (unsigned ui = 10; ui < 20; ++ui) {
        const std::string sNome = "CRINTEGMID202305" + std::to_string(ui) + ".dat";
        m_diretorio.CriaArquivo("MATRIZ/DF/" + sNome, XVArquivoDoTeste({sNome}, sDia));
    }
    const std::size_t uiAntes = XVAlocacoes::ZeraPico();
    CXVConversaoMiddleware conversao(nullptr);
    ASSERT_EQ(conversao.Inicializa(&m_dono), S_OK);
    ASSERT_EQ(conversao.ExecutaConversao(), S_OK);
    EXPECT_LT(XVAlocacoes::GetPico() - uiAntes, std::size_t{2} * k_uiRegistros * 88 + (3U << 20));
}

TEST_F(CXVMemoriaTeste, GravarEmMuitosDiasGuardaOIndiceEMembrosNoOrcamento) {
    m_maquina.GetRegistry().SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "MemoriaMembros", 1);
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_dono), S_OK);
    const std::string sTexto(2000, 'x');
    constexpr unsigned k_uiPorDia = 100;
    const auto grava = [&](unsigned uiDia) {
        m_maquina.GetRelogio().SetUTC(
            {2024, static_cast<XVByte>(1 + uiDia / 28), static_cast<XVByte>(1 + uiDia % 28), 1, 0, 0});
        for (unsigned i = 0; i < k_uiPorDia; ++i) {
            REG_XVDMC regDmc;
            CXVIntegracaoTeste integracao(uiDia * 1000 + i + 1);
            ASSERT_EQ(loja.GravaIntegracao(&regDmc, integracao.Textos(sTexto, "m", sTexto).Ptr()), S_OK);
        }
    };
    for (unsigned uiDia = 0; uiDia < 3; ++uiDia) grava(uiDia);
    const std::size_t uiTresDias = XVAlocacoes::ZeraPico();
    for (unsigned uiDia = 3; uiDia < 23; ++uiDia) grava(uiDia);
    // 20 days hold 8 MB of texts, and their files would take 2 MB; per integration the index may keep its
    // record and its keys.
    EXPECT_LT(XVAlocacoes::GetBytesVivos(), uiTresDias + 20 * k_uiPorDia * 200U + (1U << 20));
}

// What a list costs before its last key has been found is nothing, and that is seen before it is read.
TEST_F(CXVMemoriaTeste, ListaDeChavesQueNaoHaNaoTomaMemoria) {
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_dono), S_OK);
    REG_XVDMC regDmc;
    ASSERT_EQ(loja.GravaIntegracao(&regDmc, CXVIntegracaoTeste(1).Textos("{}", "m", "{}").Ptr()), S_OK);
    const auto le = [&](std::vector<REG_XVDMC> dmcs, REG_XVDMC regUltimo, HRESULT hrEsperado) {
        dmcs.back() = regUltimo;
        const _REG_DF_LISTA_XVDMCPS lista{static_cast<XVUInt>(dmcs.size()), 0, dmcs.data(), 0};
        XVUInt ulQuantidade = 9;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
        const std::size_t uiAntes = XVAlocacoes::ZeraPico();
        const XVUInt64 uiPrivadaAntes = XVAmbienteSO::GetMemoriaPrivadaProcesso();
        EXPECT_EQ(loja.LeIntegracoes(lista, &ulQuantidade, &pReg, 7), hrEsperado);
        const std::size_t uiTomada = XVAlocacoes::GetPico() - uiAntes;
        EXPECT_EQ(ulQuantidade, SUCCEEDED(hrEsperado) ? lista.ulQuantidade : 0U);
        EXPECT_LT(XVAmbienteSO::GetMemoriaPrivadaProcesso(), uiPrivadaAntes + (8U << 20));
        for (XVUInt i = 0; i < ulQuantidade; ++i) XVLiberaBuffers(&pReg[i]);
        XVAmbienteSO::LiberaSaida(pReg);
        return uiTomada;
    };
    const REG_XVDMC regAusente{regDmc.uiValor + (XVUInt64{1} << 14)};
    constexpr std::size_t k_uiPequena = 64U << 10;
    for (const REG_XVDMC regPrimeiras : {regAusente, regDmc}) {
        EXPECT_LT(le(std::vector(4000000, regPrimeiras), regAusente, E_INVALIDARG), k_uiPequena)
            << "more keys than the store has integrations";
        EXPECT_LT(le(std::vector(1000000, regPrimeiras), regAusente, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA),
                  k_uiPequena);
    }
    EXPECT_GT(le(std::vector(1000, regDmc), regDmc, S_OK), k_uiPequena);
}

}  // namespace
