#include "server/XVContaServidor.h"

#include <sddl.h>

#include "server/XVChaveRegistry.h"
#include "server/XVSegurancaCom.h"
#include "server/XVSenhaConta.h"
#include "server/XVValoresInscricao.h"

namespace {

struct SContaAchada {
    std::vector<BYTE> aSid;
    std::wstring sDominio;
    std::wstring sNome;
};

bool Iguais(const std::wstring& sUm, const wchar_t* pszOutro) {
    return ::lstrcmpiW(sUm.c_str(), pszOutro) == 0;
}

// ".\user" is an account of this machine.
std::wstring NomeCompleto(const std::wstring& sConta) {
    if (!sConta.starts_with(L".\\")) return sConta;
    wchar_t szMaquina[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD ulTamanho = MAX_COMPUTERNAME_LENGTH + 1;
    return ::GetComputerNameW(szMaquina, &ulTamanho) != 0 ? szMaquina + sConta.substr(1) : sConta;
}

HRESULT AchaPorNome(const std::wstring& sConta, SContaAchada* pConta) {
    const std::wstring sNome = NomeCompleto(sConta);
    pConta->aSid.resize(SECURITY_MAX_SID_SIZE);
    auto ulSid = static_cast<DWORD>(pConta->aSid.size());
    wchar_t szDominio[256];
    DWORD ulDominio = 256;
    SID_NAME_USE eUso;
    if (::LookupAccountNameW(nullptr, sNome.c_str(), pConta->aSid.data(), &ulSid, szDominio, &ulDominio,
                             &eUso) == 0)
        return HRESULT_FROM_WIN32(::GetLastError());
    // An account has more names than one (user@domain): the one that belongs behind its domain is asked for.
    wchar_t szConta[256];
    DWORD ulConta = 256;
    ulDominio = 256;
    if (::LookupAccountSidW(nullptr, pConta->aSid.data(), szConta, &ulConta, szDominio, &ulDominio, &eUso) ==
        0)
        return HRESULT_FROM_WIN32(::GetLastError());
    pConta->sDominio = szDominio;
    pConta->sNome = szConta;
    if (eUso == SidTypeDomain || eUso == SidTypeComputer) return HRESULT_FROM_WIN32(ERROR_NONE_MAPPED);
    return S_OK;
}

// The text of the identifier of a group or user that is named, or given by its identifier. The system knows
// abbreviations of two letters as well ("WD": everybody), which are names here: a group may bear one.
HRESULT TextoDoSid(const std::wstring& sQuem, std::wstring* psSid) {
    PSID pSid = nullptr;
    if (Iguais(sQuem.substr(0, 4), L"S-1-") && ::ConvertStringSidToSidW(sQuem.c_str(), &pSid) != 0) {
        ::LocalFree(pSid);
        *psSid = sQuem;
        return S_OK;
    }
    SContaAchada conta;
    const HRESULT hr = AchaPorNome(sQuem, &conta);
    if (FAILED(hr)) return hr;
    wchar_t* pszSid = nullptr;
    if (::ConvertSidToStringSidW(conta.aSid.data(), &pszSid) == 0)
        return HRESULT_FROM_WIN32(::GetLastError());
    *psSid = pszSid;
    ::LocalFree(pszSid);
    return S_OK;
}

// Nothing changes what stands there, and an empty value removes it.
template <class T, class TGrava>
HRESULT GravaSePedido(CXVChaveRegistry& rChave, const wchar_t* pszNome, const std::optional<T>& rValor,
                      TGrava fnGrava) {
    if (!rValor.has_value()) return S_OK;
    return rValor->empty() ? rChave.ApagaValor(pszNome) : fnGrava(pszNome, *rValor);
}

}  // namespace

SResultadoInscricao CXVContaServidor::Prepara(const SOpcoesInscricao& rOpcoes) {
    // Permissions come first: they change nothing outside of this object.
    if (rOpcoes.sAcesso.has_value())
        if (SResultadoInscricao resultado = PreparaAcesso(*rOpcoes.sAcesso); FAILED(resultado.hr))
            return resultado;
    return rOpcoes.sConta.has_value() ? PreparaConta(*rOpcoes.sConta) : SResultadoInscricao{};
}

SResultadoInscricao CXVContaServidor::PreparaConta(const std::wstring& sConta) {
    constexpr const wchar_t* k_aContas[][2] = {
        {L"QuemChama", L""},
        {L"Interativo", L"Interactive User"},
        {L"LocalService", L"NT AUTHORITY\\LocalService"},
        {L"NT AUTHORITY\\LocalService", L"NT AUTHORITY\\LocalService"},
        {L"NetworkService", L"NT AUTHORITY\\NetworkService"},
        {L"NT AUTHORITY\\NetworkService", L"NT AUTHORITY\\NetworkService"}};
    for (const auto& rSemSenha : k_aContas)
        if (Iguais(sConta, rSemSenha[0])) {
            m_sIdentidade = rSemSenha[1];
            return {};
        }
    SContaAchada conta;
    if (const HRESULT hr = AchaPorNome(sConta, &conta); FAILED(hr))
        return {hr, "encontrar a conta do servidor"};
    CXVSenha senha;
    if (const HRESULT hr = senha.LeDaEntrada(); FAILED(hr))
        return {hr, "ler a senha da conta: informe-a em uma linha da entrada padrão"};
    if (const HRESULT hr = XVGuardaSenhaDaConta(conta.aSid, conta.sDominio, conta.sNome, senha); FAILED(hr))
        return {hr, "conferir e guardar a senha da conta do servidor"};
    m_sIdentidade = conta.sDominio + L"\\" + conta.sNome;
    return {};
}

// The rights: 1 and 2 to run calls from this machine, 8 to start the server from it. A descriptor without
// owner and group would not be accepted.
SResultadoInscricao CXVContaServidor::PreparaAcesso(const std::wstring& sAcesso) {
    m_InicioPermitido.emplace();
    m_AcessoPermitido.emplace();
    if (Iguais(sAcesso, L"Padrao")) return {};
    std::wstring sSid;
    HRESULT hr = TextoDoSid(sAcesso, &sSid);
    if (FAILED(hr)) return {hr, "encontrar o grupo que pode usar o servidor"};
    hr = XVDescritorDeTexto(L"O:BAG:BAD:(A;;0xb;;;SY)(A;;0xb;;;BA)(A;;0xb;;;" + sSid + L")",
                            &*m_InicioPermitido);
    if (SUCCEEDED(hr))
        hr = XVDescritorDeTexto(L"O:BAG:BAD:(A;;0x3;;;PS)(A;;0x3;;;SY)(A;;0x3;;;BA)(A;;0x3;;;" + sSid + L")",
                                &*m_AcessoPermitido);
    return {hr, FAILED(hr) ? "montar as permissões do servidor" : ""};
}

HRESULT CXVContaServidor::Grava(HKEY hEscopo) const {
    if (!m_sIdentidade.has_value() && !m_AcessoPermitido.has_value()) return S_OK;
    CXVChaveRegistry chave;
    HRESULT hr = chave.Cria(hEscopo, XVValoresInscricao::k_pszClasses + XVValoresInscricao::ChaveAplicacao());
    const auto gravaTexto = [&](const wchar_t* pszNome, const std::wstring& s) {
        return chave.GravaTexto(pszNome, s);
    };
    const auto gravaBytes = [&](const wchar_t* pszNome, const std::vector<BYTE>& a) {
        return chave.GravaBinario(pszNome, a);
    };
    if (SUCCEEDED(hr)) hr = GravaSePedido(chave, L"LaunchPermission", m_InicioPermitido, gravaBytes);
    if (SUCCEEDED(hr)) hr = GravaSePedido(chave, L"AccessPermission", m_AcessoPermitido, gravaBytes);
    if (SUCCEEDED(hr)) hr = GravaSePedido(chave, L"RunAs", m_sIdentidade, gravaTexto);
    return hr;
}
