// The server program's switches: registration round trips beside what others have registered, account and
// permissions, refusals, command line, security.
#include <gtest/gtest.h>

#include <objbase.h>
#include <sddl.h>

#include <fstream>
#include <map>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVChaveRegistry.h"
#include "server/XVLinhaComando.h"
#include "server/XVSegurancaCom.h"
#include "tests/com/XVAmbienteCom.h"
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

void ConfereRegistrado(
    HKEY hRaiz, const std::wstring& sServidor = std::filesystem::path(XVServidores::Programa()).wstring()) {
    const auto fnLe = [hRaiz](const std::wstring& sChave, const std::wstring& sValor = L"") {
        CXVChaveRegistry chave;
        std::wstring sTexto = L"(ausente)";
        if (SUCCEEDED(chave.Abre(hRaiz, L"Software\\Classes\\" + sChave))) chave.LeTexto(sValor, &sTexto);
        return sTexto;
    };
    EXPECT_EQ(Arvores(hRaiz).size(), 7U);
    EXPECT_EQ(fnLe(k_sClasse + L"\\LocalServer32"), L"\"" + sServidor + L"\"");
    EXPECT_EQ(fnLe(k_sClasse + L"\\ProgID"), L"XVCR.Middleware.1");
    EXPECT_EQ(fnLe(k_sClasse, L"AppID"), k_sAplicacao);
    EXPECT_EQ(fnLe(L"XVCR.Middleware\\CurVer"), L"XVCR.Middleware.1");
    const std::wstring sProxy = fnLe(L"Interface\\" + k_sInterface + L"\\ProxyStubClsid32");
    EXPECT_EQ(::lstrcmpiW(sProxy.c_str(), k_sInterface.c_str()), 0);
    EXPECT_NE(fnLe(L"CLSID\\" + k_sInterface + L"\\InProcServer32").find(L"XVCR_MiddlewarePS.dll"),
              std::wstring::npos);
}

// Every key and every value below a key.
void Retrata(HKEY hChave, const std::wstring& sCaminho, std::map<std::wstring, std::wstring>& rRetrato) {
    wchar_t szNome[512];
    std::vector<BYTE> aDados(65536);
    for (DWORD i = 0;; ++i) {
        DWORD ulNome = 512;
        auto ulDados = static_cast<DWORD>(aDados.size());
        if (::RegEnumValueW(hChave, i, szNome, &ulNome, nullptr, nullptr, aDados.data(), &ulDados) != 0)
            break;
        rRetrato[sCaminho + L"@" + szNome].assign(aDados.begin(), aDados.begin() + ulDados);
    }
    for (DWORD i = 0;; ++i) {
        DWORD ulNome = 512;
        if (::RegEnumKeyExW(hChave, i, szNome, &ulNome, nullptr, nullptr, nullptr, nullptr) != 0) break;
        CXVChaveRegistry filha;
        if (FAILED(filha.Abre(hChave, szNome))) continue;
        rRetrato[sCaminho + L"\\" + szNome];
        Retrata(filha.Get(), sCaminho + L"\\" + szNome, rRetrato);
    }
}
std::map<std::wstring, std::wstring> Retrata(HKEY hRaiz) {
    std::map<std::wstring, std::wstring> retrato;
    CXVChaveRegistry classes;
    if (SUCCEEDED(classes.Abre(hRaiz, L"Software\\Classes"))) Retrata(classes.Get(), L"", retrato);
    return retrato;
}
// What one of them has and the other has not, in order; a value that differs is in it twice.
std::string Diferenca(const std::map<std::wstring, std::wstring>& rUm,
                      const std::map<std::wstring, std::wstring>& rOutro) {
    std::vector<std::pair<std::wstring, std::wstring>> lista;
    std::set_symmetric_difference(rUm.begin(), rUm.end(), rOutro.begin(), rOutro.end(),
                                  std::back_inserter(lista));
    std::string sTexto;
    for (const auto& [sNome, sValor] : lista) sTexto += std::filesystem::path(sNome).string() + "\n";
    return sTexto;
}

void PoeTexto(HKEY hRaiz, const std::wstring& sChave, const std::wstring& sValor,
              const std::wstring& sTexto) {
    CXVChaveRegistry chave;
    EXPECT_EQ(chave.Cria(hRaiz, L"Software\\Classes\\" + sChave), S_OK);
    EXPECT_EQ(chave.GravaTexto(sValor, sTexto), S_OK);
}
std::wstring LeAplicacao(const wchar_t* pszValor) {
    CXVChaveRegistry chave;
    std::wstring sTexto = L"(ausente)";
    if (SUCCEEDED(chave.Abre(HKEY_LOCAL_MACHINE, L"Software\\Classes\\AppID\\" + k_sAplicacao)))
        if (FAILED(chave.LeTexto(pszValor, &sTexto))) sTexto = L"(ausente)";
    return sTexto;
}
std::wstring TextoDoDescritor(std::vector<BYTE> descritor) {
    wchar_t* pszTexto = nullptr;
    if (descritor.empty()) return L"(ausente)";
    if (::ConvertSecurityDescriptorToStringSecurityDescriptorW(
            descritor.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &pszTexto, nullptr) == 0)
        return L"(nenhum)";
    const std::wstring sTexto = pszTexto;
    ::LocalFree(pszTexto);
    return sTexto;
}
std::wstring Permissao(const wchar_t* pszValor) {
    CXVChaveRegistry chave;
    std::vector<BYTE> descritor;
    if (SUCCEEDED(chave.Abre(HKEY_LOCAL_MACHINE, L"Software\\Classes\\AppID\\" + k_sAplicacao)))
        chave.LeBinario(pszValor, &descritor);
    return TextoDoDescritor(descritor);
}

// A copy of the program in a path with blanks, and one that fails.
std::pair<std::string, std::string> FazCopias(const CXVDiretorioTeste& pasta) {
    const std::string sCopia = pasta.Junta("Arquivos de programas/XVCR_Middleware.exe");
    std::filesystem::create_directories(std::filesystem::path(sCopia).parent_path());
    for (const auto& rArquivo :
         std::filesystem::directory_iterator(std::filesystem::path(XVServidores::Programa()).parent_path()))
        if (rArquivo.is_regular_file() && rArquivo.path().stem().string().starts_with("XVCR_Middleware"))
            std::filesystem::copy(rArquivo.path(),
                                  std::filesystem::path(sCopia).replace_filename(rArquivo.path().filename()));
    // Another one, whose proxy library is none: it fails after its values have been written.
    const std::string sQuebrada = pasta.Junta("quebrada/XVCR_Middleware.exe");
    std::filesystem::create_directories(std::filesystem::path(sQuebrada).parent_path());
    for (const char* pszNome : {"XVCR_Middleware.exe", "XVCR_MiddlewarePS.dll"})
        std::filesystem::copy(XVServidores::Programa(),
                              std::filesystem::path(sQuebrada).replace_filename(pszNome));
    return {sCopia, sQuebrada};
}

// What callers of 32 bits see below the scope's classes of the interface.
std::map<std::wstring, std::wstring> RetrataProxy32(HKEY hRaiz) {
    std::map<std::wstring, std::wstring> retrato;
    for (const wchar_t* pszOnde : {L"CLSID\\", L"Interface\\"}) {
        const std::wstring sInicio = pszOnde + k_sInterface;
        for (const wchar_t* pszFilha : {L"", L"\\InProcServer32", L"\\NumMethods", L"\\ProxyStubClsid32"})
            for (const wchar_t* pszValor : {L"", L"ThreadingModel", L"Alheio"}) {
                CXVChaveRegistry chave(EVisaoRegistry::e32);
                std::wstring sTexto;
                if (SUCCEEDED(chave.Abre(hRaiz, L"Software\\Classes\\" + sInicio + pszFilha)) &&
                    SUCCEEDED(chave.LeTexto(pszValor, &sTexto)))
                    retrato[pszOnde + std::wstring(pszFilha) + L"@" + pszValor] = sTexto;
            }
    }
    return retrato;
}

std::filesystem::path Proxy32AoLado(const std::string& sPrograma) {
    return std::filesystem::path(sPrograma).replace_filename("XVCR_MiddlewarePS32.dll").make_preferred();
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

// Another copy of the program, in a path with blanks, beside values of others in the same keys.
TEST(InscricaoServidor, RemoveSoOQueESeuENaoDeixaChaveVazia) {
    const CXVDiretorioTeste pasta;
    const auto [sCopia, sQuebrada] = FazCopias(pasta);
    for (const auto& [hRaiz, sSufixo] : {std::pair<HKEY, std::string>{HKEY_LOCAL_MACHINE, ""},
                                         std::pair<HKEY, std::string>{HKEY_CURRENT_USER, "PerUser"}}) {
        EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer" + sSufixo})), 0U);
        const auto vazio = Retrata(hRaiz);
        EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServer" + sSufixo})), 0U);
        const auto registrado = Retrata(hRaiz);
        const std::wstring sPrograma = std::filesystem::path(sCopia).make_preferred().wstring();
        CXVChaveRegistry servidor;
        std::wstring sComando;
        EXPECT_EQ(servidor.Abre(hRaiz, L"Software\\Classes\\" + k_sClasse + L"\\LocalServer32"), S_OK);
        EXPECT_EQ(servidor.LeTexto(L"", &sComando), S_OK);
        EXPECT_EQ(::lstrcmpiW(sComando.c_str(), (L"\"" + sPrograma + L"\"").c_str()), 0);
        EXPECT_EQ(Saida(XVExecuta(sQuebrada, {"/RegServer" + sSufixo})), 0x8007007FU);
        EXPECT_EQ(Diferenca(registrado, Retrata(hRaiz)), "") << "as before the failure";
        EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer" + sSufixo})), 0U);
        EXPECT_EQ(Diferenca(registrado, Retrata(hRaiz)), "") << "what the other copy registered";
        EXPECT_EQ(Saida(XVExecuta(sCopia, {"/UnregServer" + sSufixo})), 0U);
        EXPECT_EQ(Diferenca(vazio, Retrata(hRaiz)), "") << "all of it, and no empty key";

        PoeTexto(hRaiz, k_sClasse, L"Alheio", L"1");
        PoeTexto(hRaiz, k_sClasse + L"\\Implemented Categories", L"", L"2");
        PoeTexto(hRaiz, L"Interface\\" + k_sInterface + L"\\TypeLib", L"", L"3");
        PoeTexto(hRaiz, L"XVCR.Middleware.1\\shell", L"", L"4");
        PoeTexto(hRaiz, L"XVCR.Middleware\\CLSID", L"", L"{00000000-0000-0000-0000-000000000002}");
        PoeTexto(hRaiz, L"XVCR.Middleware\\CurVer", L"", L"XVCR.Middleware.12");
        const auto alheios = Retrata(hRaiz);
        EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServer" + sSufixo})), 0U);
        EXPECT_EQ(Saida(XVExecuta(sCopia, {"/UnregServer" + sSufixo})), 0U);
        EXPECT_EQ(Diferenca(alheios, Retrata(hRaiz)), "") << "values of others and of a later version";
        for (const std::wstring& sChave :
             {k_sClasse, L"Interface\\" + k_sInterface, std::wstring(L"XVCR.Middleware.1"),
              std::wstring(L"XVCR.Middleware")})
            ::RegDeleteTreeW(hRaiz, (L"Software\\Classes\\" + sChave).c_str());
    }
    XVCliente::CXVCliente cliente;
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = "SEMSERVIDOR"}), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, REGDB_E_CLASSNOTREG) << "an opening that made no component tells why";
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer"})), 0U);
}

// The library cannot be loaded by a program of 64 bits, so any file of its name will do.
TEST(InscricaoServidor, ProxyDe32BitsERegistradoOndeEstaAoLado) {
    const CXVDiretorioTeste pasta;
    const auto [sCopia, sQuebrada] = FazCopias(pasta);
    const HKEY hRaiz = HKEY_LOCAL_MACHINE;
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer"})), 0U);
    const auto vazio = Retrata(hRaiz);
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServer"})), 0U);
    EXPECT_EQ(RetrataProxy32(hRaiz), (std::map<std::wstring, std::wstring>{})) << "no such file";
    for (const std::string& sPrograma : {sCopia, sQuebrada}) std::ofstream(Proxy32AoLado(sPrograma)) << "32";
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServer"})), 0U);
    const auto registrado = Retrata(hRaiz);
    const std::wstring sIdentificador = RetrataProxy32(hRaiz)[L"Interface\\\\ProxyStubClsid32@"];
    EXPECT_EQ(::lstrcmpiW(sIdentificador.c_str(), k_sInterface.c_str()), 0);
    EXPECT_EQ(RetrataProxy32(hRaiz), (std::map<std::wstring, std::wstring>{
                                         {L"CLSID\\@", L"PSFactoryBuffer"},
                                         {L"CLSID\\\\InProcServer32@", Proxy32AoLado(sCopia).wstring()},
                                         {L"CLSID\\\\InProcServer32@ThreadingModel", L"Both"},
                                         {L"Interface\\@", L"IXVCR_Middleware"},
                                         {L"Interface\\\\NumMethods@", L"23"},
                                         {L"Interface\\\\ProxyStubClsid32@", sIdentificador}}));
    EXPECT_EQ(Saida(XVExecuta(sQuebrada, {"/RegServer"})), 0x8007007FU);
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer"})), 0U);
    EXPECT_EQ(Diferenca(registrado, Retrata(hRaiz)), "") << "a failure and another copy change nothing";
    std::filesystem::remove(Proxy32AoLado(sCopia));
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/UnregServer"})), 0U);
    EXPECT_EQ(Diferenca(vazio, Retrata(hRaiz)), "") << "all of it, in both views";

    // Another program's library of this interface stays, and gets no values beside its own.
    const std::wstring sAlheia = L"Software\\Classes\\CLSID\\" + k_sInterface;
    CXVChaveRegistry alheia(EVisaoRegistry::e32);
    EXPECT_EQ(alheia.Cria(hRaiz, sAlheia + L"\\InProcServer32"), S_OK);
    EXPECT_EQ(alheia.GravaTexto(L"", L"C:\\outra.dll"), S_OK);
    const auto comAlheia = Retrata(hRaiz);
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServer"})), 0U);
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/UnregServer"})), 0U);
    EXPECT_EQ(Diferenca(comAlheia, Retrata(hRaiz)), "");
    for (const std::wstring& sChave : {sAlheia + L"\\InProcServer32", sAlheia})
        EXPECT_EQ(::RegDeleteKeyExW(hRaiz, sChave.c_str(), KEY_WOW64_32KEY, 0), 0);
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer"})), 0U);
}

// A user's classes may have one view for both: the library of this program's size keeps its place there.
TEST(InscricaoServidor, ProxyDe32BitsNaoTomaOLugarDoOutroNoUsuario) {
    const CXVDiretorioTeste pasta;
    const auto [sCopia, sQuebrada] = FazCopias(pasta);
    for (const std::string& sPrograma : {sCopia, sQuebrada}) std::ofstream(Proxy32AoLado(sPrograma)) << "32";
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServerPerUser"})), 0U);
    const auto usuario = Retrata(HKEY_CURRENT_USER);
    EXPECT_EQ(Saida(XVExecuta(sQuebrada, {"/RegServerPerUser"})), 0x8007007FU);
    EXPECT_EQ(Diferenca(usuario, Retrata(HKEY_CURRENT_USER)), "");
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/RegServerPerUser"})), 0U);
    ConfereRegistrado(HKEY_CURRENT_USER, std::filesystem::path(sCopia).make_preferred().wstring());
    EXPECT_EQ(Saida(XVExecuta(sCopia, {"/UnregServerPerUser"})), 0U);
    EXPECT_EQ(Diferenca(usuario, Retrata(HKEY_CURRENT_USER)), "");
}

TEST(InscricaoServidor, ContaEPermissoesFicamAteQueSePecaOutras) {
    const std::wstring sInicio = L"D:(A;;CCDCSW;;;SY)(A;;CCDCSW;;;BA)(A;;CCDCSW;;;BU)";
    const std::wstring sAcesso = L"D:(A;;CCDC;;;PS)(A;;CCDC;;;SY)(A;;CCDC;;;BA)(A;;CCDC;;;BU)";
    const auto emVigor = [] {
        std::vector<BYTE> descritor;
        EXPECT_EQ(XVEscolheAcesso(&descritor), S_OK);
        return TextoDoDescritor(descritor);
    };
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer", "/conta:QuemChama", "-ACESSO:padrao"})), 0U);
    const std::wstring sDoServidor = emVigor();
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer", "/Conta:localservice", "/Acesso:S-1-5-32-545"})),
              0U);
    const auto comConta = Retrata(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(LeAplicacao(L"RunAs"), L"NT AUTHORITY\\LocalService");
    EXPECT_EQ(Permissao(L"LaunchPermission"), sInicio);
    EXPECT_EQ(Permissao(L"AccessPermission"), sAcesso);
    EXPECT_EQ(emVigor(), sAcesso) << "the server takes what stands there";
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer"})), 0U);
    EXPECT_EQ(LeAplicacao(L"RunAs"), L"NT AUTHORITY\\LocalService");
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer"})), 0U);
    EXPECT_EQ(Diferenca(comConta, Retrata(HKEY_LOCAL_MACHINE)), "")
        << "an update keeps account and permissions";

    // What the system's own tool wrote, and what nobody can read: no server for everybody instead.
    CXVChaveRegistry chave;
    EXPECT_EQ(chave.Cria(HKEY_LOCAL_MACHINE, L"Software\\Classes\\AppID\\" + k_sAplicacao), S_OK);
    std::vector<BYTE> descritor;
    EXPECT_EQ(chave.LeBinario(L"LaunchPermission", &descritor), S_OK);
    EXPECT_EQ(chave.GravaBinario(L"AccessPermission", descritor), S_OK);
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer", "/Conta:Interativo"})), 0U);
    EXPECT_EQ(LeAplicacao(L"RunAs"), L"Interactive User");
    EXPECT_EQ(emVigor(), sInicio);
    EXPECT_EQ(chave.GravaBinario(L"AccessPermission", std::span(descritor).first(12)), S_OK);
    EXPECT_EQ(XVEscolheAcesso(&descritor), HRESULT_FROM_WIN32(ERROR_INVALID_SECURITY_DESCR));

    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer", "/conta:QuemChama", "-ACESSO:padrao"})), 0U);
    EXPECT_EQ(LeAplicacao(L"RunAs"), L"(ausente)");
    EXPECT_EQ(emVigor(), sDoServidor);
    EXPECT_EQ(Saida(XVServidores::Executa({"/UnregServer"})), 0U);
    EXPECT_EQ(Arvores(HKEY_LOCAL_MACHINE), std::vector<std::wstring>{});
    EXPECT_EQ(Saida(XVServidores::Executa({"/RegServer"})), 0U);
}

// Accounts that are not there, or whose password nobody gives, change nothing.
TEST(InscricaoServidor, ContaDesconhecidaOuSemSenhaNaoMudaNada) {
    const auto antes = Retrata(HKEY_LOCAL_MACHINE);
    wchar_t szUsuario[256];
    DWORD ulTamanho = 256;
    ::GetUserNameW(szUsuario, &ulTamanho);
    const std::string sUsuario = std::filesystem::path(szUsuario).string();
    for (const auto& [sOpcao, ulCodigo, pszPasso] :
         {std::tuple<std::string, unsigned, const char*>{"/Conta:NAOHA", 0x80070534U, "encontrar a conta"},
          {"/Acesso:NAOHA", 0x80070534U, "encontrar o grupo"},
          {"/Acesso:WD", 0x80070534U, "encontrar o grupo"},
          {"/Conta:" + sUsuario, 0x80070057U, "ler a senha"}}) {
        const SExecucao execucao = XVServidores::Executa({"/RegServer", sOpcao});
        EXPECT_EQ(Saida(execucao), ulCodigo) << sOpcao;
        EXPECT_NE(execucao.sErro.find(pszPasso), std::string::npos) << execucao.sErro;
    }
    EXPECT_EQ(Diferenca(antes, Retrata(HKEY_LOCAL_MACHINE)), "");
}

// The values of the machine are the administrator's, the environment that of whoever starts the server.
TEST(InscricaoServidor, ServidorNaoLeOArquivoDeTextoNoLugarDoRegistro) {
    const CXVDiretorioTeste pasta;
    pasta.CriaArquivo("registro",
                      "[SOFTWARE\\Wow6432Node\\Velmora\\DF]\n\"Path\" = \"" + pasta.GetCaminho() + "\"\n");
    XVServidores::Mata();
    XVAmbienteCom::EsqueceServidorMorto();
    ::SetEnvironmentVariableA("XV_REGISTRO", pasta.Junta("registro").c_str());
    const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    ::SetEnvironmentVariableA("XV_REGISTRO", nullptr);
    EXPECT_TRUE(std::filesystem::exists(XVAmbienteCom::DiretorioEmpresa(sEmpresa)));
    EXPECT_FALSE(std::filesystem::exists(pasta.Junta(sEmpresa)));
}

TEST(InscricaoServidor, ArgumentoDesconhecidoNaoServeNemRegistra) {
    for (const std::vector<std::string>& rArgumentos :
         std::vector<std::vector<std::string>>{{"/RegServe"},
                                               {"RegServer"},
                                               {"/RegServer", "/RegServer"},
                                               {"/RegServer", "/Conta:"},
                                               {"/RegServer", "/Conta:a", "/Conta:b"},
                                               {"/RegServerPerUser", "/Conta:LocalService"},
                                               {"/UnregServer", "/Acesso:Padrao"}}) {
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
