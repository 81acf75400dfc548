// Several processes: clients side by side, clients and servers that die, and the life of the server process.
#include <filesystem>
#include <fstream>
#include <list>

#include "server/XVExclusividade.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

using namespace XVAmbienteCom;

CXVProcessoFilho Filho(const std::vector<std::string>& listaArgumentos) {
    std::vector<std::string> lista{"--filho"};
    lista.insert(lista.end(), listaArgumentos.begin(), listaArgumentos.end());
    return {XVProgramaVizinho("xv_teste_com"), lista};
}

// How many integrations the company has by a client of its own.
std::size_t Conta(const std::string& sEmpresa) {
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    return XVPortaTeste::Conta(cliente);
}

// The lines of the company's general log that a user left.
int LinhasDoUsuario(const std::string& sEmpresa, const std::string& sUsuario) {
    int iLinhas = 0;
    for (const auto& rEntrada : std::filesystem::directory_iterator(DiretorioEmpresa(sEmpresa))) {
        if (rEntrada.path().filename().string().rfind("XVLogGeral_", 0) != 0) continue;
        std::ifstream arquivo{rEntrada.path(), std::ios::binary};
        for (std::string sLinha; std::getline(arquivo, sLinha);)
            if (sLinha.find("\t" + sEmpresa + "\t" + sUsuario + "\t") != std::string::npos) ++iLinhas;
    }
    return iLinhas;
}

}  // namespace

TEST(Processos, QuatroClientesNumaEmpresaEEmDuas) {
    const std::string asEmpresas[] = {NovaEmpresa(), NovaEmpresa()};
    for (const bool bDuas : {false, true}) {
        std::list<std::unique_ptr<CXVProcessoFilho>> lista;
        for (int i = 0; i < 4; ++i)
            lista.emplace_back(new CXVProcessoFilho(
                Filho({"grava", asEmpresas[bDuas ? i % 2 : 0], "25", std::to_string(11 + i)})));
        for (const auto& rpFilho : lista) EXPECT_EQ(rpFilho->EsperaFim(), 0);
    }
    // Servers that were started beside the first one wait for a moment and leave.
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = asEmpresas[0]}), S_OK);
    EXPECT_TRUE(XVServidores::Espera(1));
    EXPECT_EQ(Conta(asEmpresas[0]), 150U);
    EXPECT_EQ(Conta(asEmpresas[1]), 50U);
    // One store, four callers: each line of the log bears the one who called.
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[0], "11"), 50);
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[0], "12"), 25);
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[1], "14"), 25);
}

TEST(Processos, ClienteDeExemplo) {
    const auto construcao = std::filesystem::path(XVServidores::Programa()).parent_path() / "..";
    const auto exemplo = (construcao / "examples" / "client" / "xv_exemplo_cliente.exe").lexically_normal();
    const std::string sEmpresa = NovaEmpresa();
    const SExecucao execucao = XVExecuta(exemplo.string(), {sEmpresa});
    EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
    EXPECT_EQ(LinhasDoUsuario(sEmpresa, "7"), 2);
}

TEST(Processos, ServidorSaiComOUltimoClienteEVoltaComOProximo) {
    const std::string sEmpresa = NovaEmpresa();
    for (int i = 0; i < 3; ++i) {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
        REG_XVDMC regDmc;
        EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
        EXPECT_EQ(Conta(sEmpresa), static_cast<std::size_t>(i + 1));
        cliente.Desconecta();
        // The second time round without waiting: a creation beside a server that is ending.
        if (i != 1) {
            EXPECT_TRUE(XVServidores::Espera(0));
        }
    }
}

TEST(Processos, AtivadoSemClienteSaiEPelaMaoSoHaUm) {
    ASSERT_TRUE(XVServidores::Espera(0));
    {
        const CValorDaRegistry espera(L"EsperaPrimeiroCliente", 1);
        EXPECT_EQ(XVServidores::Executa({"-Embedding"}).iSaida, 0);
    }
    CXVProcessoFilho primeiro(XVServidores::Programa(), {});
    // Until it is the one, which the next finds.
    for (int i = 0; i < 1000 && CXVExclusividade().Toma(0); ++i) ::Sleep(20);
    const SExecucao segundo = XVServidores::Executa();
    EXPECT_EQ(static_cast<unsigned>(segundo.iSaida), 0x800700B7U);
    EXPECT_NE(segundo.sErro.find("já há outro"), std::string::npos) << segundo.sErro;
    // It serves, and leaves with its only client.
    EXPECT_EQ(Conta(NovaEmpresa()), 0U);
    EXPECT_EQ(primeiro.EsperaFim(), 0);
}

// The clients' processes are gone without a word: their components are cut off after the idle time, the
// others work on, and the server leaves when only the dead were left.
TEST(Processos, ClientesMortosEntreChamadasENoMeioDeUma) {
    ASSERT_TRUE(XVServidores::Espera(0));
    const CValorDaRegistry inatividade(L"InatividadeMaximaComponente", 6);
    const std::string sEmpresa = NovaEmpresa();
    std::size_t uiAntes = 0;
    {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
        for (const char* pszModo : {"espera", "chama"}) {
            CXVProcessoFilho preso = Filho({pszModo, sEmpresa});
            ASSERT_EQ(preso.LeLinha(), "dentro");
            preso.Mata();
            REG_XVDMC regDmc;
            EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{\"vivo\":1}")), S_OK);
            CXVDadosCR_IntegracaoMiddleware lida;
            EXPECT_EQ(cliente.LeIntegracao(regDmc, 7, &lida), S_OK);
            EXPECT_EQ(lida.sRegistroJSON, "{\"vivo\":1}");
        }
        uiAntes = Conta(sEmpresa);
    }
    EXPECT_TRUE(XVServidores::Espera(0));
    EXPECT_EQ(Conta(sEmpresa), uiAntes);
}

// A server that is gone, killed or by the system's request, which closes its stores: what changes is answered
// with a code that says so, what reads connects again by itself, and the store opens.
TEST(Processos, ServidorQueSeFoiDaCodigoClaroEOProximoAbreALoja) {
    const std::string sEmpresa = NovaEmpresa();
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    for (const bool bMata : {false, true}) {
        REG_XVDMC regDmc;
        ASSERT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{\"antes\":1}")), S_OK);
        bMata ? XVServidores::Mata() : XVServidores::PedeFim();
        EXPECT_TRUE(XVServidores::Espera(0));
        REG_XVDMC regPerdida;
        const HRESULT hr = cliente.GravaIntegracao(&regPerdida, IntegracaoPendente("{}"));
        EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
        EXPECT_FALSE(cliente.EstaConectado());
        if (bMata) EsqueceServidorMorto();
        CXVDadosCR_IntegracaoMiddleware lida;
        EXPECT_EQ(cliente.LeIntegracao(regDmc, 7, &lida), S_OK);
        EXPECT_EQ(lida.sRegistroJSON, "{\"antes\":1}");
    }
}
