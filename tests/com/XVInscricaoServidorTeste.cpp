// The server program's switches: registration round trips, refusals, command line, security levels.
#include <gtest/gtest.h>

#include <objbase.h>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVChaveRegistry.h"
#include "server/XVLinhaComando.h"
#include "server/XVSegurancaCom.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"

namespace {

const std::wstring k_sClasse = L"CLSID\\{78415b84-1d9e-4939-b37a-87f6aa9d6516}";
const std::wstring k_sAplicacao = L"{c99599a3-c061-4377-822d-8863ccb0fc7a}";
const std::wstring k_sInterface = L"{c2141cb5-b40b-41f8-a6aa-c8c9c30aad48}";

// The component's trees that a scope's classes hold.
std::vector<std::wstring> Arvores(HKEY hRaiz) {
    std::vector<std::wstring> lista;
    for (const std::wstring& sChave : {k_sClasse, L"CLSID\\" + k_sInterface, L"Interface\\" + k_sInterface,
                                       L"AppID\\" + k_sAplicacao, std::wstring(L"AppID\\XVCR_Middleware.exe"),
                                       std::wstring(L"XVCR.Middleware"), std::wstring(L"XVCR.Middleware.1")})
        if (CXVChaveRegistry::Existe(hRaiz, L"Software\\Classes\\" + sChave)) lista.push_back(sChave);
    return lista;
}

void ConfereRegistrado(HKEY hRaiz) {
    const auto fnLe = [hRaiz](const std::wstring& sChave, const std::wstring& sValor = L"") {
        CXVChaveRegistry chave;
        std::wstring sTexto = L"(ausente)";
        if (SUCCEEDED(chave.Abre(hRaiz, L"Software\\Classes\\" + sChave))) chave.LeTexto(sValor, &sTexto);
        return sTexto;
    };
    EXPECT_EQ(Arvores(hRaiz).size(), 7U);
    const std::wstring sServidor = std::filesystem::path(XVServidores::Programa()).wstring();
    EXPECT_EQ(fnLe(k_sClasse + L"\\LocalServer32"), L"\"" + sServidor + L"\"");
    EXPECT_EQ(fnLe(k_sClasse + L"\\ProgID"), L"XVCR.Middleware.1");
    EXPECT_EQ(fnLe(k_sClasse, L"AppID"), k_sAplicacao);
    EXPECT_EQ(fnLe(L"XVCR.Middleware\\CurVer"), L"XVCR.Middleware.1");
    const std::wstring sProxy = fnLe(L"Interface\\" + k_sInterface + L"\\ProxyStubClsid32");
    EXPECT_EQ(::lstrcmpiW(sProxy.c_str(), k_sInterface.c_str()), 0);
    EXPECT_NE(fnLe(L"CLSID\\" + k_sInterface + L"\\InProcServer32").find(L"XVCR_MiddlewarePS.dll"),
              std::wstring::npos);
}

// An exit code is a result code, and the same word as a number.
unsigned Saida(const SExecucao& rExecucao) {
    return static_cast<unsigned>(rExecucao.iSaida);
}

}  // namespace

TEST(InscricaoServidor, IdaEVoltaNaMaquinaENoUsuarioEmQualquerGrafia) {
    for (const char* pszSwitch : {"/UnregServer", "-unregserver"}) {
        EXPECT_EQ(Saida(XVServidores::Executa({pszSwitch})), 0U);
        EXPECT_EQ(Arvores(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{});
    }
    EXPECT_EQ(Saida(XVServidores::Executa({"-REGSERVERPERUSER"})), 0U);
    ConfereRegistrado(HKEY_CURRENT_USER);
    EXPECT_EQ(Arvores(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{});
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServerPerUser"})), 0U);
    EXPECT_EQ(Arvores(HKEY_CURRENT_USER), std::vector<std::wstring>{});
    EXPECT_EQ(Saida(XVServidores::Executa({"-RegServer"})), 0U);
    EXPECT_EQ(Saida(XVServidores::Executa({"/regserver"})), 0U);
    CLSID clsid;
    EXPECT_EQ(::CLSIDFromProgID(L"XVCR.Middleware", &clsid), S_OK);
    // A server without its proxy library: the code says so, one line explains, and the registration that was
    // there before still stands.
    const CXVDiretorioTeste pasta;
    std::filesystem::copy_file(XVServidores::Programa(), pasta.Junta("XVCR_Middleware.exe"));
    const SExecucao execucao = XVExecuta(pasta.Junta("XVCR_Middleware.exe"), {"/RegServer"});
    EXPECT_EQ(Saida(execucao), 0x8007007EU);
    EXPECT_NE(execucao.sErro.find("XVCR_MiddlewarePS.dll"), std::string::npos) << execucao.sErro;
    EXPECT_NE(execucao.sErro.find("0x8007007E"), std::string::npos) << execucao.sErro;
    EXPECT_EQ(std::count(execucao.sErro.begin(), execucao.sErro.end(), '\n'), 1);
    ConfereRegistrado(HKEY_LOCAL_MACHINE);
}

TEST(InscricaoServidor, ArgumentoDesconhecidoNaoServeNemRegistra) {
    for (const std::vector<std::string>& rArgumentos :
         std::vector<std::vector<std::string>>{{"/RegServe"}, {"RegServer"}, {"/RegServer", "/RegServer"}}) {
        const SExecucao execucao = XVServidores::Executa(rArgumentos);
        EXPECT_EQ(Saida(execucao), 0x80070057U);
        EXPECT_NE(execucao.sErro.find("/UnregServerPerUser"), std::string::npos);
    }
    EXPECT_EQ(XVLeLinhaComando({}), EComandoServidor::eServe);
    EXPECT_EQ(XVLeLinhaComando({L"-Embedding"}), EComandoServidor::eServeAtivado);
    EXPECT_EQ(XVLeLinhaComando({L"/embedding"}), EComandoServidor::eServeAtivado);
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
