// A store written from front to back, when the machine fails or dies in the middle of it.
#include "middleware/verificacao/XVLojaNova.h"

#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class LojaNova : public CXVCenarioLoja {
  protected:
    HRESULT Faz() const {
        const CXVDonoFixo dono("MATRIZ");
        CXVLojaNova nova(PastaDados(""), dono);
        HRESULT hr = nova.Comeca();
        for (const XVUInt64 uiDmc : {XVChaveDmc(XVDma(2024, 3, 14), 1, 1),
                                     XVChaveDmc(XVDma(2024, 3, 14), 2, 1), XVChaveDmc(k_uiHoje, 1, 1)}) {
            SIntegracaoTransportada integracao;
            integracao.dados.regDmc = {uiDmc};
            integracao.dados.regDataHoraInclusao = {k_uiHoje << 32};
            integracao.dados.sRegistroJSON = "{}";
            if (hr == S_OK) hr = nova.Inclui(integracao);
        }
        return hr == S_OK ? nova.Conclui() : hr;
    }
    std::size_t Arquivos(const std::string& sParte = {}) {
        std::size_t uiArquivos = 0;
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata())
            if (sCaminho.starts_with(PastaDados("")) &&
                (sCaminho.ends_with(".dat") || sCaminho.ends_with(".tra")) &&
                sCaminho.find(sParte) != std::string::npos)
                ++uiArquivos;
        return uiArquivos;
    }
    // Integrations that a store opened for writing finds; nothing: it does not open.
    static std::optional<std::size_t> Conta() {
        const CXVCapturaTrace captura;
        CBaseMiddleware loja;
        if (FAILED(XVInicializa(loja))) return std::nullopt;
        return XVBusca(loja).size();
    }
};

TEST_F(LojaNova, FalhaEmCadaOperacaoNaoDeixaNada) {
    const auto inicio = m_Arquivos.Retrata();
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    XVUInt64 uiOperacao = 0;
    for (bool bFalhou = true; bFalhou && !HasFailure();) {
        m_Arquivos.Restaura(inicio);
        falhas.Programa(SFalhaArquivo{.uiNumero = ++uiOperacao, .bGravaMetade = true});
        const HRESULT hr = Faz();
        bFalhou = falhas.GetFalhasOcorridas() != 0;
        falhas.Limpa();
        EXPECT_EQ(FAILED(hr), bFalhou) << uiOperacao;
        if (bFalhou) {
            EXPECT_EQ(Arquivos(), 0U) << uiOperacao;
        }
        EXPECT_EQ(Conta(), bFalhou ? 0U : 3U) << uiOperacao;
    }
    EXPECT_GT(uiOperacao, 20U);
}

TEST_F(LojaNova, MorteEmCadaAlteracaoNaoDeixaBaseComUmaParte) {
    const auto inicio = m_Arquivos.Retrata();
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    XVUInt64 uiAlteracao = 0;
    for (bool bMorreu = true; bMorreu && !HasFailure();) {
        m_Arquivos.Restaura(inicio);
        ++uiAlteracao;
        morte.Nasce(uiAlteracao, uiAlteracao % 2 != 0);
        static_cast<void>(Faz());
        bMorreu = morte.EstaMorto();
        morte.Nasce(0);
        const bool bTemDias = Arquivos("CRINTEGMID") != 0;
        const std::optional<std::size_t> uiAchadas = Conta();
        EXPECT_TRUE(uiAchadas == 3U || (bMorreu && (!uiAchadas || !bTemDias))) << uiAlteracao;
    }
    EXPECT_GT(uiAlteracao, 20U);
}

TEST_F(LojaNova, ProntaEstaNoDispositivo) {
    CXVSistemaArquivosQueda queda(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(queda);
    EXPECT_EQ(Faz(), S_OK);
    EXPECT_EQ(queda.NaoGarantido(), "");
}

// A second one that begins at any moment of the first: one of them makes the store, and it is whole.
TEST_F(LojaNova, DeDuasAoMesmoTempoUmaFazABase) {
    const auto inicio = m_Arquivos.Retrata();
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    unsigned uiMomentos = 0;
    for (unsigned uiOutra = 1; uiOutra <= uiMomentos + 1 && !HasFailure(); ++uiOutra) {
        m_Arquivos.Restaura(inicio);
        HRESULT hrOutra = S_FALSE;
        HRESULT hr = S_FALSE;
        {
            unsigned ui = 0;
            const CXVGanchoArquivos aCada([&] {
                if (++ui == uiOutra) hrOutra = Faz();
            });
            hr = Faz();
            uiMomentos = ui;
        }
        EXPECT_NE(hr == S_OK, hrOutra == S_OK) << uiOutra;
        EXPECT_EQ(Conta(), 3U) << uiOutra;
    }
    EXPECT_GT(uiMomentos, 20U);
}

}  // namespace
