// The example library through the whole store: what reaches the external system, what comes back, and what is
// recorded.
#include <cstdlib>
#include <filesystem>

#include "middleware/XVOperacoesGenericas.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

constexpr XVUInt64 k_uiOrigem = XVChaveDmc(XVDma(2024, 3, 1), 15, 2);

class CXVProvedorExemploTeste : public CXVCenarioLoja {
  protected:
    CXVProvedorExemploTeste() : m_pLoja(Abre()) {
#ifdef _WIN32
        _putenv_s("XVPROVEDOR_PASTA", m_Sistema.GetCaminho().c_str());
#else
        setenv("XVPROVEDOR_PASTA", m_Sistema.GetCaminho().c_str(), 1);
#endif
        std::filesystem::create_directories(m_Sistema.Junta("recebidos"));
        std::filesystem::create_directories(m_Sistema.Junta(k_sPendentes));
    }

    void TemPendente(const std::string& sNome, const std::string& sJSON) {
        m_Sistema.CriaArquivo(k_sPendentes + '/' + sNome, sJSON);
    }
    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS Pedido(XVUInt eTransacao) {
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.regDmcIntegracaoOrigem = {k_uiOrigem};
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.eTipoTransacao = eTransacao;
        reg.eSistemaIntegracao = Mercos;
        return reg;
    }
    HRESULT Troca(XVUInt eTransacao, REG_XVDMC* pDmc) {
        return m_pLoja->GravaIntegracaoInstantanea(pDmc, Pedido(eTransacao));
    }
    std::string Le(XVUInt64 uiDmc) {
        const SIntegracaoLida lida = XVLe(*m_pLoja, {uiDmc});
        return std::to_string(lida.reg.uiChaveIntegracaoSistemaTerceiro) + '/' +
               std::to_string(lida.reg.eStatusIntegracao) + '/' + std::to_string(lida.reg.ulPonteiroFilial) +
               '/' + std::to_string(lida.reg.regDmcMovimentoOrigem.uiValor == k_uiOrigem) + ' ' + lida.sJSON +
               ' ' + lida.sMensagem + ' ' + lida.sRetorno;
    }
    TListaDmc Gravadas() {
        std::vector<XVByte> saida;
        EXPECT_EQ(m_pLoja->OnFuncaoGenerica(k_ulFuncaoUltimasGravadas, {}, saida), S_OK);
        TListaDmc lista(saida.size() / sizeof(XVUInt64));
        if (!lista.empty()) std::memcpy(lista.data(), saida.data(), saida.size());
        return lista;
    }

    static inline const std::string k_sPendentes = "pendentes/" + std::to_string(k_uiOrigem);
    static constexpr XVUInt64 k_uiUm = XVChaveDmc(k_uiHoje, 1), k_uiDois = XVChaveDmc(k_uiHoje, 2);
    CXVDiretorioTeste m_Sistema;
    TLoja m_pLoja;
};

TEST_F(CXVProvedorExemploTeste, DocumentoVaiVoltaESai) {
    TemPendente("1.json", "{\"p\":1}");
    TemPendente("2.json", "{\"p\":\"recusar\"}");
    REG_XVDMC regDmc;
    ASSERT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), S_OK) << "a positive result at the end is a success";
    EXPECT_EQ(Gravadas(), (TListaDmc{k_uiUm, k_uiDois}));
    EXPECT_EQ(Le(k_uiUm), "1/3/0/1 {\"p\":1} documento aceito {\"aceito\":true}");
    EXPECT_EQ(Le(k_uiDois), "0/4/0/1 {\"p\":\"recusar\"} documento recusado {\"aceito\":false}");
    EXPECT_EQ(m_Sistema.LeConteudo("recebidos/1.json"), "{\"p\":1}");
    EXPECT_EQ(m_Sistema.LeConteudo("encerradas.txt"),
              std::to_string(k_uiUm) + '\n' + std::to_string(k_uiDois) + '\n');

    std::filesystem::remove(m_Sistema.Junta(k_sPendentes + "/2.json"));
    m_Sistema.CriaArquivo("recebidos/1.json", "{\"p\":1,\"pago\":true}");
    regDmc = {k_uiUm};
    ASSERT_EQ(Troca(eXVSMiddleware_Alteracao, &regDmc), S_OK);
    EXPECT_EQ(Le(k_uiUm), "1/3/0/1 {\"p\":1} documento encontrado {\"p\":1,\"pago\":true}");
    ASSERT_EQ(Troca(eXVSMiddleware_Exclusao, &regDmc), S_OK);
    EXPECT_EQ(Le(k_uiUm), "1/5/0/1 {\"p\":1} documento excluído {}");
    EXPECT_EQ(m_Sistema.LeConteudo("recebidos/1.json"), std::nullopt);
    EXPECT_EQ(Gravadas(), TListaDmc{k_uiUm});
    ASSERT_EQ(Troca(eXVSMiddleware_Exclusao, &regDmc), S_OK) << "the system does not confirm";
    EXPECT_EQ(Gravadas(), TListaDmc{});
}

TEST_F(CXVProvedorExemploTeste, TerceiroDeTresFalhaEOsOutrosFicam) {
    TemPendente("1.json", "{\"p\":1}");
    TemPendente("2.json", "{\"p\":2}");
    TemPendente("3.json", "não é JSON");
    TemPendente("4.json", "{\"p\":4}");
    m_Sistema.CriaArquivo("recebidos/1.json", "de outro");
    REG_XVDMC regDmc;
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), XVHResult(0x8007000DU)) << "the provider's own code";
    EXPECT_EQ(regDmc.uiValor, k_uiDois);
    EXPECT_EQ(Gravadas(), (TListaDmc{k_uiUm, k_uiDois}));
    EXPECT_EQ(Le(k_uiUm), "2/3/0/1 {\"p\":1} documento aceito {\"aceito\":true}");
    EXPECT_EQ(Le(k_uiDois), "3/3/0/1 {\"p\":2} documento aceito {\"aceito\":true}");
    EXPECT_EQ(XVBusca(*m_pLoja), (TListaDmc{k_uiUm, k_uiDois}));
    EXPECT_EQ(m_Sistema.LeConteudo("recebidos/4.json"), std::nullopt) << "what follows is not sent";
    EXPECT_EQ(Troca(99, &regDmc), E_INVALIDARG);
    EXPECT_EQ(Gravadas(), TListaDmc{}) << "an operation that was refused recorded nothing";
}

TEST_F(CXVProvedorExemploTeste, PendenciaLevaOQueOProvedorMudaEOAusenteNaoEOferecido) {
    TemPendente("1.json", "{\"p\":1}");
    ASSERT_EQ(m_pLoja->GravaPendenciaIntegracao({k_uiOrigem}, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    EXPECT_EQ(Gravadas(), TListaDmc{k_uiUm});
    EXPECT_EQ(Le(k_uiUm), "0/1/1/1 {\"p\":1}  ") << "the branch is the provider's";
    EXPECT_EQ(m_Sistema.LeConteudo("encerradas.txt"), std::nullopt);
    EXPECT_EQ(m_pLoja->GravaPendenciaIntegracao({k_uiOrigem}, Pedido(99)), E_INVALIDARG);
    EXPECT_EQ(Gravadas(), TListaDmc{});

    tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
    consulta.eTipoConsulta = eXVSMiddleware_ConsultaCnpj;
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS status{};
    EXPECT_EQ(m_pLoja->BuscaDadosSistemaTerceiro(consulta, &status), E_NOTIMPL);
    std::vector<XVByte> saida;
    const XVByte entrada[1]{};
    EXPECT_EQ(m_pLoja->OnFuncaoGenerica(k_ulFuncaoUltimasGravadas, entrada, saida), E_INVALIDARG);
}

}  // namespace
