#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <regex>
#include <set>
#include <thread>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVPlataforma.h"

TEST(CXVAmbienteSOTeste, FatosTemAFormaPrometida) {
    const std::regex versao("[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+");
    EXPECT_TRUE(std::regex_match(XVAmbienteSO::GetVersaoExecutavel(), versao));
    EXPECT_TRUE(std::regex_match(XVAmbienteSO::GetVersaoSistema(), versao))
        << XVAmbienteSO::GetVersaoSistema();
    EXPECT_LE(XVAmbienteSO::GetNomeComputador().size(), 15U);
    EXPECT_NE(XVAmbienteSO::GetNomeComputador(), "");
    EXPECT_NE(XVAmbienteSO::GetNomeUsuario(), "");
    EXPECT_EQ(XVPlataforma::SistemaArquivosNativo().Existe(XVAmbienteSO::GetCaminhoExecutavel()),
              EExistencia::eArquivo);
    const XVAmbienteSO::SMemoriaMaquina memoria = XVAmbienteSO::GetMemoriaMaquina();
    EXPECT_GT(memoria.uiDisponivel, 0U);
    EXPECT_GE(memoria.uiTotal, memoria.uiDisponivel);
    EXPECT_GT(XVAmbienteSO::GetMemoriaPrivadaProcesso(), 0U);
    EXPECT_EQ(XVAmbienteSO::GetVariavelAmbiente("XV_VARIAVEL_QUE_NAO_EXISTE"), std::nullopt);
    EXPECT_NE(XVAmbienteSO::GetVariavelAmbiente("PATH"), std::nullopt);
    EXPECT_EQ(XVAmbienteSO::AlocaSaida(0), nullptr);
    XVAmbienteSO::LiberaSaida(nullptr);
    void* pBuffer = XVAmbienteSO::AlocaSaida(1000);
    ASSERT_NE(pBuffer, nullptr);
    std::memset(pBuffer, 1, 1000);
    XVAmbienteSO::LiberaSaida(pBuffer);
}

TEST(CXVAmbienteSOTeste, FiosEGuidsDiferem) {
    const XVUInt ulPrincipal = XVAmbienteSO::GetIdThread();
    XVUInt ulOutra = 0;
    std::thread([&] { ulOutra = XVAmbienteSO::GetIdThread(); }).join();
    EXPECT_NE(ulOutra, 0U);
    EXPECT_NE(ulOutra, ulPrincipal);
    EXPECT_EQ(XVAmbienteSO::GetIdThread(), ulPrincipal);
    const std::regex guid("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> conjunto;
    for (int i = 0; i < 50; ++i) conjunto.insert(XVAmbienteSO::NovoGuid());
    EXPECT_EQ(conjunto.size(), 50U);
    for (const std::string& sGuid : conjunto) EXPECT_TRUE(std::regex_match(sGuid, guid)) << sGuid;
}

TEST(CXVRelogioTeste, RelogioNativoAndaComODoSistema) {
    using namespace std::chrono;
    IXVRelogio& rRelogio = XVPlataforma::RelogioNativo();
    // Whole seconds come from a coarser clock, which lags behind by up to one tick of the system.
    const auto antes = floor<seconds>(system_clock::now() - milliseconds(100));
    const SDataHora lida = rRelogio.AgoraUTC();
    const auto instante = sys_days(year(lida.usAno) / lida.ucMes / lida.ucDia) + hours(lida.ucHora) +
                          minutes(lida.ucMinuto) + seconds(lida.ucSegundo);
    EXPECT_TRUE(antes <= instante && instante <= system_clock::now());
    const XVUInt ulAntes = rRelogio.GetTicks();
    rRelogio.Dorme(40);
    EXPECT_GE(rRelogio.GetTicks() - ulAntes, 20U) << "one tick of the system may be 16 ms";
}

TEST(CXVBibliotecaDinamicaTeste, SoSeCarregaPeloNomeOQueEstaAoLadoDoPrograma) {
    for (const char* pszNome :
         {"", "..", "../x.dll", "/tmp/x.dll", "C:\\x.dll", "C:x.dll", "xv_nao_existe.dll"}) {
        const CXVBibliotecaDinamica biblioteca(pszNome);
        EXPECT_FALSE(biblioteca.EstaCarregada()) << pszNome;
        EXPECT_EQ(biblioteca.GetFuncao<void (*)()>("x"), nullptr);
    }
    const CXVBibliotecaDinamica biblioteca("xv_biblioteca_teste.dll");
    ASSERT_TRUE(biblioteca.EstaCarregada());
    const auto pfnSoma = biblioteca.GetFuncao<int (*)(int, int)>("XVSomaTeste");
    ASSERT_NE(pfnSoma, nullptr);
    EXPECT_EQ(pfnSoma(2, 3), 5);
    EXPECT_EQ(biblioteca.GetFuncao<void (*)()>("NaoExiste"), nullptr);
}
