// A library whose call does not return in time: who asked goes on, the library is left alone until it has
// returned, and what it said too late is found in the error log.
#include <future>
#include <thread>

#include "middleware/XVTrocaEmCurso.h"
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/exchange/XVCenarioTroca.h"

namespace {

class CXVProvedorPresoTeste : public CXVCenarioTroca {
  protected:
    void SetEspera(XVUInt ulSegundos) {
        m_registry.SetNumero(k_sChaveRegistrySuite, "EsperaProvedor", ulSegundos);
    }
    // The library's code, on the thread that it runs on.
    void AoEnviar(std::function<void()> fnFaz) {
        m_rGravador.mapDados["EnviaJson"] = Resposta(400, eXVSMiddleware_Sucesso);
        m_rGravador.mapDados["EnviaJson"].fnDepois = std::move(fnFaz);
    }
    void EsperaQueVolte() const {
        const auto suspenso = [this] {
            return XVProvedores::Busca(Mercos)->RealizaOperacaoPosterior(m_Dono, {}) ==
                   E_XVCR_PROVEDOR_SUSPENSO;
        };
        const auto limite = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (suspenso() && std::chrono::steady_clock::now() < limite)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::string LogDeErros() {
        std::vector<std::string> listaNomes;
        EXPECT_TRUE(m_Arquivos.Lista(PastaDados(), "XVProfilerErros_Base_*.log", listaNomes).Ok());
        return listaNomes.empty() ? "" : Conteudo(listaNomes[0]);
    }
};

TEST_F(CXVProvedorPresoTeste, ChamadaPresaEAbandonadaEOProvedorFicaSuspensoAteQueElaVolte) {
    SetEspera(1);
    m_rGravador.listaItens = {Item("1"), Item("2")};
    std::promise<void> presa;
    std::promise<void> solta;
    AoEnviar([&] {
        presa.set_value();
        solta.get_future().wait();
    });
    REG_XVDMC regDmc;
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), E_XVCR_PROVEDOR_SEM_RESPOSTA);
    presa.get_future().wait();  // what the library has noted by then may be read
    EXPECT_TRUE(regDmc.EhNulo());
    EXPECT_TRUE(XVTextoNoLog(m_Captura,
                             "Provedor do sistema 16 não respondeu em 1 s: pfnEnviaJson foi abandonada, e o "
                             "provedor fica suspenso até que ela volte"));
    EXPECT_FALSE(XVTextoNoLog(m_Captura, "Resposta do provedor")) << "there is none to be judged";
    const std::vector<std::string> listaPerdidas = LinhasPerdidas();
    EXPECT_EQ(listaPerdidas,
              (std::vector<std::string>{
                  "Troca com o sistema externo talvez feita e não gravada: sistema 16, chave 0, "
                  "origem 20240301-16-2, integração 0, transação 1, situação 0, resultado "
                  "0x81080D20"}));

    const std::vector<std::string> listaChamadas = m_rGravador.listaChamadas;
    SetEspera(0);  // suspended for those as well who would wait for ever
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), E_XVCR_PROVEDOR_SUSPENSO);
    SetEspera(60);
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), E_XVCR_PROVEDOR_SUSPENSO);
    EXPECT_EQ(m_rGravador.listaChamadas, listaChamadas);
    EXPECT_EQ(LinhasPerdidas(), listaPerdidas) << "nothing was sent";
    EXPECT_TRUE(XVBusca(*m_pLoja).empty());

    solta.set_value();
    EsperaQueVolte();
    EXPECT_NE(LogDeErros().find("Provedor do sistema 16 voltou depois do prazo: pfnEnviaJson, resultado "
                                "0x00000000, chave 401, origem 20240301-16-2, situação 3"),
              std::string::npos);
    AoEnviar({});
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), S_OK);
    EXPECT_EQ(XVBusca(*m_pLoja), (TListaDmc{XVChaveDmc(k_uiHoje, 1), XVChaveDmc(k_uiHoje, 2)}));
}

TEST_F(CXVProvedorPresoTeste, SemPrazoAChamadaCorreNoFioDeQuemPediu) {
    m_rGravador.listaItens = {Item()};
    std::thread::id idDaChamada;
    AoEnviar([&idDaChamada] { idDaChamada = std::this_thread::get_id(); });
    REG_XVDMC regDmc;
    SetEspera(0);
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), S_OK);
    EXPECT_EQ(idDaChamada, std::this_thread::get_id());
    SetEspera(60);
    regDmc = {};
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), S_OK);
    EXPECT_NE(idDaChamada, std::this_thread::get_id());
}

// The library has no right to the codes that say that nothing was sent, or that it was not heard.
TEST_F(CXVProvedorPresoTeste, CodigosDoVigiaNaoSaoDoProvedor) {
    m_rGravador.listaItens = {Item()};
    AoEnviar({});
    for (const HRESULT hr : {E_XVCR_PROVEDOR_SUSPENSO, E_XVCR_PROVEDOR_SEM_RESPOSTA}) {
        m_rGravador.mapDados["EnviaJson"].iResultado = hr;
        REG_XVDMC regDmc;
        EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), XVHResult(0x8000FFFFU));
    }
    EXPECT_EQ(LinhasPerdidas().size(), 2U);
}

// Between the list of pending items and its exchange the library may have been suspended by another call.
TEST_F(CXVProvedorPresoTeste, TrocaQueNaoComecouNaoEPerdida) {
    const CXVDadosCR_IntegracaoMiddleware dados;
    std::size_t uiLinhas = 0;
    for (const HRESULT hr : {E_NOTIMPL, E_XVCR_PROVEDOR_SUSPENSO, E_XVCR_PROVEDOR_SEM_RESPOSTA}) {
        EXPECT_EQ(CXVTrocaEmCurso(&m_Dono, dados, {}).Responde(hr), hr);
        uiLinhas += hr == E_XVCR_PROVEDOR_SEM_RESPOSTA ? 1 : 0;
        EXPECT_EQ(LinhasPerdidas().size(), uiLinhas);
    }
}

#ifndef _WIN32
// Windows: by the server, with its report.
TEST_F(CXVProvedorPresoTeste, FaltaDentroDoProvedorEncerraOProcesso) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    m_rGravador.listaItens = {Item()};
    AoEnviar([] { *static_cast<volatile int*>(nullptr) = 1; });
    REG_XVDMC regDmc;
    EXPECT_DEATH(Troca(eXVSMiddleware_Inclusao, &regDmc), "");
}
#endif

}  // namespace
