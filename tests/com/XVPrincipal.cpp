// The program of these tests, and what it is as a client process of one of them.
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "client/XVCliente.h"
#include "server/XVPrazoProcesso.h"
#include "server/XVTratamentoCrash.h"
#include "tests/com/XVAmbienteCom.h"

namespace {

void Exige(const char* pszPasso, HRESULT hr) {
    if (hr >= 0) return;
    std::fprintf(stderr, "%s: 0x%08lX\n", pszPasso, static_cast<unsigned long>(hr));
    std::exit(1);
}

int Grava(const std::string& sEmpresa, int iQuantidade, int iUsuario) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    const auto usUsuario = static_cast<std::uint16_t>(iUsuario);
    Exige("Conecta", cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = usUsuario, .ulNumeroSessao = 1}));
    for (int i = 0; i < iQuantidade; ++i) {
        const auto dados = XVAmbienteCom::IntegracaoPendente("{\"usuario\":" + std::to_string(iUsuario) +
                                                             ",\"n\":" + std::to_string(i) + "}");
        REG_XVDMC regDmc;
        Exige("GravaIntegracao", cliente.GravaIntegracao(&regDmc, dados));
        CXVDadosCR_IntegracaoMiddleware lida;
        Exige("LeIntegracao", cliente.LeIntegracao(regDmc, 7, &lida));
        Exige("texto lido", lida.sRegistroJSON == dados.sRegistroJSON ? S_OK : E_FAIL);
    }
    return 0;
}

int Prende(const std::string& sEmpresa, bool bChama) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    Exige("Conecta", cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 9}));
    const auto dados = XVAmbienteCom::IntegracaoPendente(std::string(4 << 20, 'x'));
    for (;;) {
        REG_XVDMC regDmc;
        if (bChama) Exige("GravaIntegracao", cliente.GravaIntegracao(&regDmc, dados));
        std::cout << "dentro" << std::endl;
        if (!bChama) ::Sleep(INFINITE);
    }
}

int Quebra(const std::wstring& sDiretorio, bool bComMinidump) {
    XVTratamentoCrash::Instala(sDiretorio, bComMinidump);
    volatile int* volatile piNulo = nullptr;
    *piNulo = 1;
    return 0;
}

int Termina(const std::wstring& sDiretorio) {
    XVTratamentoCrash::Instala(sDiretorio, false);
    throw std::runtime_error("ninguém trata");
}

// One limit that is kept, and one that is not.
int Atrasa(DWORD ulTempo) {
    { const CXVPrazoProcesso prazo(ulTempo); }
    ::Sleep(2 * ulTempo);
    std::cout << "cumprido" << std::endl;
    CXVPrazoProcesso::LimitaFim(ulTempo);
    ::Sleep(20 * ulTempo);
    return 1;
}

// What this program does when a test starts it again as a client process ("--filho <mode> ..."): "grava
// <company> <n> <user>" records and reads back n integrations; "espera <company>" initialises, says so in one
// line and sleeps; "chama <company>" initialises and records large texts for ever, one line
// after each; "crash <directory> <0|1>" faults under the crash handler, with or without minidump; "termina
// <directory>" ends by an exception that nobody catches; "prazo <ms>" is late.
// The exit code is 0 on success.
int ExecutaFilho(const std::vector<std::string>& a) {
    const std::string& sModo = a.at(0);
    if (sModo == "crash") return Quebra(std::filesystem::path(a.at(1)).wstring(), a.at(2) == "1");
    if (sModo == "termina") return Termina(std::filesystem::path(a.at(1)).wstring());
    if (sModo == "prazo") return Atrasa(std::stoul(a.at(1)));
    if (sModo == "grava") return Grava(a.at(1), std::stoi(a.at(2)), std::stoi(a.at(3)));
    if (sModo == "espera" || sModo == "chama") return Prende(a.at(1), sModo == "chama");
    return 2;
}

class CMaquina final : public ::testing::Environment {
  public:
    void SetUp() override { ASSERT_TRUE(XVAmbienteCom::Prepara()); }
    void TearDown() override { XVAmbienteCom::Desfaz(); }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::string(argv[1]) == "--filho") return ExecutaFilho({argv + 2, argv + argc});
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new CMaquina);
    const XVCliente::CApartamento apartamento;
    return RUN_ALL_TESTS();
}
