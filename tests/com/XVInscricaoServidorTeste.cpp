// The server program's switches: registration round trips, refusals, version, command line, security levels.
#include <gtest/gtest.h>

#include <objbase.h>

#include <filesystem>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVChaveRegistry.h"
#include "server/XVLinhaComando.h"
#include "server/XVSegurancaCom.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVProcesso.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"

namespace {

const std::wstring k_sClasse = L"CLSID\\{78415b84-1d9e-4939-b37a-87f6aa9d6516}";
const std::wstring k_sInterface = L"{c2141cb5-b40b-41f8-a6aa-c8c9c30aad48}";

std::wstring Le(HKEY hRaiz, const std::wstring& sChave, const std::wstring& sValor = L"") {
    CXVChaveRegistry chave;
    std::wstring sTexto;
    if (FAILED(chave.Abre(hRaiz, L"Software\\Classes\\" + sChave)) || FAILED(chave.LeTexto(sValor, &sTexto)))
        return L"(ausente)";
    return sTexto;
}

// What is left of the component in a scope's classes.
std::vector<std::wstring> Restos(HKEY hRaiz) {
    std::vector<std::wstring> lista;
    for (const std::wstring& sChave : {k_sClasse, L"CLSID\\" + k_sInterface, L"Interface\\" + k_sInterface,
                                       std::wstring(L"AppID\\{c99599a3-c061-4377-822d-8863ccb0fc7a}"),
                                       std::wstring(L"AppID\\XVCR_Middleware.exe"),
                                       std::wstring(L"XVCR.Middleware"), std::wstring(L"XVCR.Middleware.1")})
        if (CXVChaveRegistry::Existe(hRaiz, L"Software\\Classes\\" + sChave)) lista.push_back(sChave);
    return lista;
}

void ConfereRegistrado(HKEY hRaiz) {
    const std::wstring sServidor = XVProcessos::ProgramaServidor();
    EXPECT_EQ(Le(hRaiz, k_sClasse + L"\\LocalServer32"), L"\"" + sServidor + L"\"");
    EXPECT_EQ(Le(hRaiz, k_sClasse + L"\\ProgID"), L"XVCR.Middleware.1");
    EXPECT_EQ(Le(hRaiz, k_sClasse, L"AppID"), L"{c99599a3-c061-4377-822d-8863ccb0fc7a}");
    EXPECT_EQ(Le(hRaiz, L"XVCR.Middleware\\CurVer"), L"XVCR.Middleware.1");
    EXPECT_EQ(::lstrcmpiW(Le(hRaiz, L"Interface\\" + k_sInterface + L"\\ProxyStubClsid32").c_str(),
                          k_sInterface.c_str()),
              0);
    EXPECT_NE(Le(hRaiz, L"CLSID\\" + k_sInterface + L"\\InProcServer32").find(L"XVCR_MiddlewarePS.dll"),
              std::wstring::npos);
}

}  // namespace

TEST(InscricaoServidor, IdaEVoltaNaMaquinaENoUsuarioEmQualquerGrafia) {
    for (const wchar_t* pszSwitch : {L"/UnregServer", L"-unregserver"}) {
        EXPECT_EQ(XVProcessos::ExecutaServidor(pszSwitch), 0U);
        EXPECT_EQ(Restos(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{});
    }
    EXPECT_EQ(XVProcessos::ExecutaServidor(L"-REGSERVERPERUSER"), 0U);
    ConfereRegistrado(HKEY_CURRENT_USER);
    EXPECT_EQ(Restos(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{});
    EXPECT_EQ(XVProcessos::ExecutaServidor(L"/UnregServerPerUser"), 0U);
    EXPECT_EQ(Restos(HKEY_CURRENT_USER), std::vector<std::wstring>{});
    EXPECT_EQ(XVProcessos::ExecutaServidor(L"-RegServer"), 0U);
    EXPECT_EQ(XVProcessos::ExecutaServidor(L"/regserver"), 0U);
    ConfereRegistrado(HKEY_LOCAL_MACHINE);
    CLSID clsid;
    EXPECT_EQ(::CLSIDFromProgID(L"XVCR.Middleware", &clsid), S_OK);
}

// A server without its proxy library: the code says so, one line explains, and the registration that was
// there before still stands.
TEST(InscricaoServidor, PassoQueFalhaDaCodigoELinhaENaoEstragaAInscricaoAnterior) {
    namespace fs = std::filesystem;
    const fs::path pasta = fs::path(XVAmbienteCom::DiretorioModulo()) / "servidor sem proxy";
    fs::create_directories(pasta);
    const fs::path copia = pasta / "XVCR_Middleware.exe";
    fs::copy_file(XVProcessos::ProgramaServidor(), copia);
    const CXVProcesso processo(copia.wstring(), L"/RegServer");
    EXPECT_EQ(processo.GetCodigo(), 0x8007007EU);
    const std::string sErros = processo.GetErros();
    EXPECT_NE(sErros.find("XVCR_MiddlewarePS.dll"), std::string::npos) << sErros;
    EXPECT_NE(sErros.find("0x8007007E"), std::string::npos) << sErros;
    EXPECT_EQ(std::count(sErros.begin(), sErros.end(), '\n'), 1);
    ConfereRegistrado(HKEY_LOCAL_MACHINE);
}

TEST(InscricaoServidor, ArgumentoDesconhecidoNaoServeNemRegistra) {
    for (const wchar_t* pszArgumentos : {L"/RegServe", L"RegServer", L"/RegServer /RegServer", L"/"}) {
        std::string sErros;
        EXPECT_EQ(XVProcessos::ExecutaServidor(pszArgumentos, &sErros), 0x80070057U);
        EXPECT_NE(sErros.find("/UnregServerPerUser"), std::string::npos);
    }
    EXPECT_EQ(XVLeLinhaComando({}), EComandoServidor::eServe);
    EXPECT_EQ(XVLeLinhaComando({L"-Embedding"}), EComandoServidor::eServeAtivado);
    EXPECT_EQ(XVLeLinhaComando({L"/embedding"}), EComandoServidor::eServeAtivado);
}

TEST(InscricaoServidor, RecursoDeVersao) {
    DWORD ulNada = 0;
    const std::wstring sServidor = XVProcessos::ProgramaServidor();
    std::vector<BYTE> dados(::GetFileVersionInfoSizeW(sServidor.c_str(), &ulNada));
    ASSERT_FALSE(dados.empty());
    ASSERT_NE(::GetFileVersionInfoW(sServidor.c_str(), 0, static_cast<DWORD>(dados.size()), dados.data()), 0);
    wchar_t* pszTexto = nullptr;
    UINT uiTamanho = 0;
    ASSERT_NE(::VerQueryValueW(dados.data(), L"\\StringFileInfo\\041604B0\\FileDescription",
                               reinterpret_cast<void**>(&pszTexto), &uiTamanho),
              0);
    EXPECT_STREQ(pszTexto, L"Componente de integrações");
}

TEST(SegurancaCom, NivelPelosDoisValoresDaRegistry) {
    CXVRegistryFalso registry;
    const CXVGuardaRegistry guarda(registry);
    EXPECT_EQ(XVNivelAutenticacaoDCOM(), static_cast<XVUInt>(RPC_C_AUTHN_LEVEL_PKT_PRIVACY));
    registry.SetNumero(k_sChaveRegistrySuite, "DesabilitaEncriptacaoDCOM", 1);
    EXPECT_EQ(XVNivelAutenticacaoDCOM(), static_cast<XVUInt>(RPC_C_AUTHN_LEVEL_PKT_INTEGRITY));
    registry.SetNumero(k_sChaveRegistrySuite, "DesabilitaAutenticacaoDCOM", 1);
    EXPECT_EQ(XVNivelAutenticacaoDCOM(), static_cast<XVUInt>(RPC_C_AUTHN_LEVEL_NONE));
}
