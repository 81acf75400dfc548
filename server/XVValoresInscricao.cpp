#include "server/XVValoresInscricao.h"

#include <cwchar>

#include "contract/XVCR_MiddlewareGuids.h"

#define XV_GUID_LARGO(x) (L"{" XV_LARGO(XV_TEXTO_UUID(x)) L"}")

namespace {

constexpr const wchar_t* k_pszDescricao = L"XVCR_Middleware";
constexpr const wchar_t* k_pszProxy = L"XVCR_MiddlewarePS.dll";
constexpr const wchar_t* k_pszProxy32 = L"XVCR_MiddlewarePS32.dll";

const std::wstring k_sClasse = XV_GUID_LARGO(XV_UUID_CLASSE_MIDDLEWARE);
const std::wstring k_sChaveClasse = L"CLSID\\" + k_sClasse;
const std::wstring k_sAplicacao = XV_GUID_LARGO(XV_UUID_APLICACAO_MIDDLEWARE);
// The proxy/stub library registers its interface and itself under the interface's identifier.
const std::wstring k_sInterface = XV_GUID_LARGO(XV_UUID_IXVCR_MIDDLEWARE);
const std::wstring k_sChaveBiblioteca = L"CLSID\\" + k_sInterface + L"\\InProcServer32";
const std::wstring k_sProgId = XV_LARGO(XV_PROGID_MIDDLEWARE);
const std::wstring k_sProgIdSemVersao = XV_LARGO(XV_PROGID_MIDDLEWARE_SEM_VERSAO);

std::wstring CaminhoExecutavel() {
    std::wstring sCaminho(32768, L'\0');
    sCaminho.resize(::GetModuleFileNameW(nullptr, sCaminho.data(), static_cast<DWORD>(sCaminho.size())));
    return sCaminho;
}

std::wstring AoLado(const wchar_t* pszArquivo) {
    const std::wstring sExecutavel = CaminhoExecutavel();
    return sExecutavel.substr(0, sExecutavel.find_last_of(L"\\/") + 1) + pszArquivo;
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

bool TemVersaoPosterior(HKEY hEscopo) {
    const std::optional<std::wstring> sAtual =
        SValorInscricao{k_sProgIdSemVersao + L"\\CurVer", L"", {}}.Le(hEscopo);
    return sAtual.has_value() && VersaoDoProgId(*sAtual) > VersaoDoProgId(k_sProgId);
}

}  // namespace

std::optional<std::wstring> SValorInscricao::Le(HKEY hEscopo) const {
    CXVChaveRegistry chave(eVisao);
    std::wstring sLido;
    if (FAILED(chave.Abre(hEscopo, XVValoresInscricao::k_pszClasses + sChave)) ||
        FAILED(chave.LeTexto(sNome, &sLido)))
        return std::nullopt;
    return sLido;
}

bool SValorInscricao::Confere(HKEY hEscopo) const {
    const std::optional<std::wstring> sLido = Le(hEscopo);
    return sLido.has_value() && (!sTexto.has_value() || Iguais(*sLido, *sTexto));
}

HRESULT SValorInscricao::Grava(HKEY hEscopo) const {
    CXVChaveRegistry chave(eVisao);
    const HRESULT hr = chave.Cria(hEscopo, XVValoresInscricao::k_pszClasses + sChave);
    return FAILED(hr) ? hr : chave.GravaTexto(sNome, *sTexto);
}

HRESULT SValorInscricao::Apaga(HKEY hEscopo) const {
    CXVChaveRegistry chave(eVisao);
    const HRESULT hr = chave.AbreParaGravar(hEscopo, XVValoresInscricao::k_pszClasses + sChave);
    if (hr == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) return S_OK;
    return FAILED(hr) ? hr : chave.ApagaValor(sNome);
}

namespace XVValoresInscricao {

const std::wstring& ChaveAplicacao() {
    static const std::wstring s_sChave = L"AppID\\" + k_sAplicacao;
    return s_sChave;
}

std::wstring CaminhoProxy() {
    return AoLado(k_pszProxy);
}

// The path of the program is quoted, because the system would start another program for an unquoted path that
// has a blank in it.
std::vector<SValorInscricao> Classe(HKEY hEscopo) {
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
    if (!TemVersaoPosterior(hEscopo))
        lista.insert(lista.end(), {{k_sProgIdSemVersao, L"", k_pszDescricao},
                                   {k_sProgIdSemVersao + L"\\CLSID", L"", k_sClasse},
                                   {k_sProgIdSemVersao + L"\\CurVer", L"", k_sProgId}});
    return lista;
}

std::vector<SValorInscricao> Proxy() {
    const std::wstring sChaveInterface = L"Interface\\" + k_sInterface;
    return {{sChaveInterface, L"", {}},
            {sChaveInterface + L"\\NumMethods", L"", {}},
            {sChaveInterface + L"\\ProxyStubClsid32", L"", k_sInterface},
            {L"CLSID\\" + k_sInterface, L"", {}},
            {k_sChaveBiblioteca, L"", CaminhoProxy()},
            {k_sChaveBiblioteca, L"ThreadingModel", {}}};
}

std::vector<SValorInscricao> Proxy32(HKEY hEscopo) {
    std::vector<SValorInscricao> lista = Proxy();
    for (SValorInscricao& rValor : lista) {
        const bool bCaminho = rValor.sChave == k_sChaveBiblioteca && rValor.sNome.empty();
        rValor.sTexto = bCaminho ? AoLado(k_pszProxy32) : rValor.Le(hEscopo);
        rValor.eVisao = EVisaoRegistry::e32;
    }
    return lista;
}

bool TemProxy32() {
    return ::GetFileAttributesW(AoLado(k_pszProxy32).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool VisoesSeparadas(HKEY hEscopo) {
    return !SValorInscricao{k_sChaveBiblioteca, L"", CaminhoProxy(), EVisaoRegistry::e32}.Confere(hEscopo);
}

std::vector<std::wstring> ChavesComuns() {
    return {L"CLSID", L"AppID", L"Interface"};
}

bool ClasseEhDeOutro(HKEY hEscopo) {
    const std::optional<std::wstring> sComando =
        SValorInscricao{k_sChaveClasse + L"\\LocalServer32", L"", {}}.Le(hEscopo);
    return sComando.has_value() && !Iguais(Programa(*sComando), CaminhoExecutavel());
}

bool ProxyEhDeOutro(HKEY hEscopo) {
    const std::optional<std::wstring> sBiblioteca = SValorInscricao{k_sChaveBiblioteca, L"", {}}.Le(hEscopo);
    return sBiblioteca.has_value() && !Iguais(*sBiblioteca, CaminhoProxy());
}

bool Proxy32EhNosso(HKEY hEscopo) {
    return SValorInscricao{k_sChaveBiblioteca, L"", AoLado(k_pszProxy32), EVisaoRegistry::e32}.Confere(
        hEscopo);
}

}  // namespace XVValoresInscricao
