// Life of the server process: how long it stays, how it ends and who takes over.
#include <filesystem>

#include "server/XVExclusividade.h"
#include "server/XVFabricaClasse.h"
#include "server/XVPedidoFim.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/harness/XVRelogioFalso.h"

namespace {

using namespace XVAmbienteCom;

// Connects, records and disconnects; the servers that run then.
std::vector<DWORD> Grava(const std::string& sEmpresa) {
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    REG_XVDMC regDmc;
    EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
    return XVServidores::Lista();
}

// The journal exists only while a store is open for writing.
bool LojaAberta(const std::string& sEmpresa) {
    for (const auto& rEntrada : std::filesystem::directory_iterator(DiretorioEmpresa(sEmpresa)))
        if (rEntrada.path().extension() == ".srk") return true;
    return false;
}

// Milliseconds from uiDesde to the last look that found the store open: on a busy machine it may have closed
// long before the next look.
ULONGLONG AbertaAte(const std::string& sEmpresa, ULONGLONG uiDesde) {
    ULONGLONG uiAte = 0;
    for (;;) {
        const ULONGLONG uiOlhada = ::GetTickCount64() - uiDesde;
        if (uiOlhada > 20000 || !LojaAberta(sEmpresa)) return uiAte;
        uiAte = uiOlhada;
        ::Sleep(10);
    }
}

}  // namespace

TEST(VidaServidor, FicaDepoisDoUltimoClienteComALojaFechadaEStopOEncerra) {
    ASSERT_TRUE(XVServidores::Espera(0));
    const CValorDaRegistry permanencia(L"PermanenciaServidor", 120);
    const std::string sEmpresa = NovaEmpresa();
    const std::vector<DWORD> listaServidor = Grava(sEmpresa);
    ASSERT_EQ(listaServidor.size(), 1U);
    EXPECT_TRUE(LojaAberta(sEmpresa));  // for a client that comes back at once
    EXPECT_EQ(Grava(sEmpresa), listaServidor);
    // Another program waits 5 s for the store at the most.
    EXPECT_LT(AbertaAte(sEmpresa, ::GetTickCount64()), 5000U);
    EXPECT_FALSE(LojaAberta(sEmpresa));
    EXPECT_EQ(XVServidores::Lista(), listaServidor);
    // A client that comes later is served by it, and the end closes what is still kept.
    EXPECT_EQ(Grava(sEmpresa), listaServidor);
    const SExecucao parada = XVServidores::Executa({"/STOP"});
    EXPECT_EQ(parada.iSaida, 0);
    EXPECT_NE(parada.sSaida.find("o servidor terminou"), std::string::npos) << parada.sSaida;
    EXPECT_EQ(XVServidores::Lista(), std::vector<DWORD>{});
    EXPECT_FALSE(LojaAberta(sEmpresa));
    const SExecucao semServidor = XVServidores::Executa({"-stop"});
    EXPECT_EQ(semServidor.iSaida, 0);
    EXPECT_NE(semServidor.sSaida.find("nenhum servidor"), std::string::npos) << semServidor.sSaida;
}

TEST(VidaServidor, SaiDepoisDoTempoQueARegistryDiz) {
    ASSERT_TRUE(XVServidores::Espera(0));
    const CValorDaRegistry permanencia(L"PermanenciaServidor", 2);
    const std::string sEmpresa = NovaEmpresa();
    EXPECT_EQ(Grava(sEmpresa).size(), 1U);
    EXPECT_TRUE(XVServidores::Espera(0));
    EXPECT_FALSE(LojaAberta(sEmpresa));
}

// The mark of this process stands for that of a server.
TEST(VidaServidor, QuemTerminaEEsperadoEQuemAtendeNao) {
    ASSERT_TRUE(XVServidores::Espera(0));
    auto pMarca = std::make_unique<CXVExclusividade>();
    ASSERT_TRUE(pMarca->Toma(0));
    const ULONGLONG uiInicio = ::GetTickCount64();
    EXPECT_EQ(static_cast<unsigned>(XVServidores::Executa().iSaida), 0x800700B7U);
    const ULONGLONG uiRecusa = ::GetTickCount64() - uiInicio;
    pMarca->AnunciaFim(true);
    CXVProcessoFilho sucessor(XVServidores::Programa(), {});
    // Longer than it took to be refused, so that it is there and waits.
    ::Sleep(static_cast<DWORD>(uiRecusa) + 1000);
    pMarca.reset();
    // It serves: it has the mark, and ends when it is asked to.
    for (int i = 0; i < 500 && CXVExclusividade().Toma(0); ++i) ::Sleep(20);
    EXPECT_EQ(XVServidores::Executa({"/Stop"}).iSaida, 0);
    EXPECT_EQ(sucessor.EsperaFim(), 0);
}

// One that waits for its turn serves nobody yet, and would serve the moment after.
TEST(VidaServidor, StopEncerraTambemQuemEsperaAVez) {
    ASSERT_TRUE(XVServidores::Espera(0));
    CXVExclusividade marca;
    ASSERT_TRUE(marca.Toma(0));
    marca.AnunciaFim(true);
    CXVProcessoFilho sucessor(XVServidores::Programa(), {});
    ::Sleep(2000);  // until it waits
    const ULONGLONG uiInicio = ::GetTickCount64();
    const SExecucao parada = XVServidores::Executa({"/Stop"});
    EXPECT_LT(::GetTickCount64() - uiInicio, 15000U) << "not when its waiting is over by itself";
    EXPECT_EQ(parada.iSaida, 0);
    EXPECT_NE(parada.sSaida.find("o servidor terminou"), std::string::npos) << parada.sSaida;
    EXPECT_EQ(XVServidores::Lista(), std::vector<DWORD>{});
    EXPECT_EQ(sucessor.EsperaFim(), 0);
}

TEST(VidaServidor, StopNaoNegaOServidorQueNaoPodeEncerrar) {
    const std::string sOutro = " O servidor de outro usuário continua em execução.";
    EXPECT_EQ(XVTextoDaParada({}), "nenhum servidor em execução.");
    EXPECT_EQ(XVTextoDaParada({.uiTerminados = 2}), "o servidor terminou.");
    EXPECT_EQ(XVTextoDaParada({.uiTerminados = 1, .uiDeOutrosUsuarios = 1}), "o servidor terminou." + sOutro);
    EXPECT_EQ(XVTextoDaParada({.uiDeOutrosUsuarios = 1}),
              "nenhum servidor que este usuário possa encerrar." + sOutro);
}

TEST(VidaServidor, PrazoCumpridoDeixaOProcessoEPassadoOEncerra) {
    const SExecucao execucao = XVExecuta(XVProgramaVizinho("xv_teste_com"), {"--filho", "prazo", "300"});
    EXPECT_EQ(execucao.iSaida, 0);
    EXPECT_TRUE(execucao.sSaida.starts_with("cumprido")) << execucao.sSaida << execucao.sErro;
}

// In this process: not every system brings a client's lock to the server.
TEST(VidaServidor, TravaQueNinguemTiraValeComoUmComponenteAbandonado) {
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    CXVVidaServidor& rVida = CXVVidaServidor::Get();
    CXVFabricaClasse fabrica;
    rVida.SetInatividade(5000);
    EXPECT_EQ(fabrica.LockServer(FALSE), E_UNEXPECTED);
    EXPECT_EQ(fabrica.LockServer(TRUE), S_OK);
    relogio.Avanca(4999);
    EXPECT_TRUE(rVida.TemClientes());
    relogio.Avanca(1);
    EXPECT_FALSE(rVida.TemClientes());
    EXPECT_EQ(fabrica.LockServer(TRUE), S_OK);
    EXPECT_TRUE(rVida.TemClientes());
    rVida.SetInatividade(0);
    relogio.Avanca(1000000);
    EXPECT_TRUE(rVida.TemClientes());
    EXPECT_EQ(fabrica.LockServer(FALSE), S_OK);
    EXPECT_EQ(fabrica.LockServer(FALSE), S_OK);
    EXPECT_FALSE(rVida.TemClientes());
}
