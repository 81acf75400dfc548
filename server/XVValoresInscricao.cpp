#include "server/XVValoresInscricao.h"

#include <cwchar>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVChaveRegistry.h"

#define XV_GUID_LARGO(x) (L"{" XV_LARGO(XV_TEXTO_UUID(x)) L"}")

namespace {

constexpr const wchar_t* k_pszDescricao = L"XVCR_Middleware";
constexpr const wchar_t* k_pszProxy = L"XVCR_MiddlewarePS.dll";

const std::wstring k_sClasse = XV_GUID_LARGO(XV_UUID_CLASSE_MIDDLEWARE);
const std::wstring k_sChaveClasse = L"CLSID\\" + k_sClasse;
const std::wstring k_sAplicacao = XV_GUID_LARGO(XV_UUID_APLICACAO_MIDDLEWARE);
// The proxy/stub library registers its interface and itself under the interface's identifier.
const std::wstring k_sInterface = XV_GUID_LARGO(XV_UUID_IXVCR_MIDDLEWARE);
const std::wstring k_sProgId = XV_LARGO(XV_PROGID_MIDDLEWARE);
const std::wstring k_sProgIdSemVersao = XV_LARGO(XV_PROGID_MIDDLEWARE_SEM_VERSAO);

std::wstring CaminhoExecutavel() {
    std::wstring sCaminho(32768, L'\0');
    sCaminho.resize(::GetModuleFileNameW(nullptr, sCaminho.data(), static_cast<DWORD>(sCaminho.size())));
    return sCaminho;
}

bool Iguais(const std::wstring& sUm, const std::wstring& sOutro) {
    return ::lstrcmpiW(sUm.c_str(), sOutro.c_str()) == 0;
}

// The program of a command line that a registration holds.
std::wstring Programa(const std::wstring& sComando) {
    if (sComando.empty() || sComando[0] != L'"') return sComando;
    return sComando.substr(1, sComando.find(L'"', 1) - 1);
}

// "XVCR.Middleware.2": 2; what is no version of this component: 0.
unsigned long VersaoDoProgId(const std::wstring& sProgId) {
    const std::wstring sInicio = k_sProgIdSemVersao + L".";
    if (!Iguais(sProgId.substr(0, sInicio.size()), sInicio)) return 0;
    return std::wcstoul(sProgId.c_str() + sInicio.size(), nullptr, 10);
}

bool TemVersaoPosterior(HKEY hClasses) {
    const std::optional<std::wstring> sAtual =
        SValorInscricao{k_sProgIdSemVersao + L"\\CurVer", L"", {}}.Le(hClasses);
    return sAtual.has_value() && VersaoDoProgId(*sAtual) > VersaoDoProgId(k_sProgId);
}

}  // namespace

std::optional<std::wstring> SValorInscricao::Le(HKEY hClasses) const {
    CXVChaveRegistry chave;
    std::wstring sLido;
    if (FAILED(chave.Abre(hClasses, sChave)) || FAILED(chave.LeTexto(sNome, &sLido))) return std::nullopt;
    return sLido;
}

namespace XVValoresInscricao {

const std::wstring& ChaveAplicacao() {
    static const std::wstring s_sChave = L"AppID\\" + k_sAplicacao;
    return s_sChave;
}

std::wstring CaminhoProxy() {
    const std::wstring sExecutavel = CaminhoExecutavel();
    return sExecutavel.substr(0, sExecutavel.find_last_of(L"\\/") + 1) + k_pszProxy;
}

// The path of the program is quoted, because the system would start another program for an unquoted path that
// has a blank in it.
std::vector<SValorInscricao> Classe(HKEY hClasses) {
    const std::wstring sExecutavel = CaminhoExecutavel();
    const std::wstring sNomeExecutavel = sExecutavel.substr(sExecutavel.find_last_of(L"\\/") + 1);
    std::vector<SValorInscricao> lista = {
        {k_sChaveClasse, L"", k_pszDescricao},
        {k_sChaveClasse, L"AppID", k_sAplicacao},
        {k_sChaveClasse + L"\\LocalServer32", L"", L"\"" + sExecutavel + L"\""},
        {k_sChaveClasse + L"\\LocalServer32", L"ServerExecutable", sExecutavel},
        {k_sChaveClasse + L"\\ProgID", L"", k_sProgId},
        {k_sChaveClasse + L"\\VersionIndependentProgID", L"", k_sProgIdSemVersao},
        {ChaveAplicacao(), L"", k_pszDescricao},
        {L"AppID\\" + sNomeExecutavel, L"AppID", k_sAplicacao},
        {k_sProgId, L"", k_pszDescricao},
        {k_sProgId + L"\\CLSID", L"", k_sClasse},
    };
    if (!TemVersaoPosterior(hClasses))
        lista.insert(lista.end(), {{k_sProgIdSemVersao, L"", k_pszDescricao},
                                   {k_sProgIdSemVersao + L"\\CLSID", L"", k_sClasse},
                                   {k_sProgIdSemVersao + L"\\CurVer", L"", k_sProgId}});
    return lista;
}

std::vector<SValorInscricao> Proxy() {
    const std::wstring sChaveInterface = L"Interface\\" + k_sInterface;
    const std::wstring sChaveFabrica = L"CLSID\\" + k_sInterface;
    return {{sChaveInterface, L"", {}},
            {sChaveInterface + L"\\NumMethods", L"", {}},
            {sChaveInterface + L"\\ProxyStubClsid32", L"", k_sInterface},
            {sChaveFabrica, L"", {}},
            {sChaveFabrica + L"\\InProcServer32", L"", CaminhoProxy()},
            {sChaveFabrica + L"\\InProcServer32", L"ThreadingModel", {}}};
}

std::vector<std::wstring> ChavesComuns() {
    return {L"CLSID", L"AppID", L"Interface"};
}

bool ClasseEhDeOutro(HKEY hClasses) {
    const std::optional<std::wstring> sComando =
        SValorInscricao{k_sChaveClasse + L"\\LocalServer32", L"", {}}.Le(hClasses);
    return sComando.has_value() && !Iguais(Programa(*sComando), CaminhoExecutavel());
}

bool ProxyEhDeOutro(HKEY hClasses) {
    const std::optional<std::wstring> sBiblioteca =
        SValorInscricao{L"CLSID\\" + k_sInterface + L"\\InProcServer32", L"", {}}.Le(hClasses);
    return sBiblioteca.has_value() && !Iguais(*sBiblioteca, CaminhoProxy());
}

}  // namespace XVValoresInscricao
