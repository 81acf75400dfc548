#include "server/XVInscricaoClasse.h"

#include <windows.h>

#include <algorithm>
#include <set>
#include <vector>

#include "server/XVChaveRegistry.h"
#include "server/XVContaServidor.h"
#include "server/XVValoresInscricao.h"
#include "support/trace/XVCheck.h"

namespace {

HKEY Escopo(EEscopoInscricao eEscopo) {
    return eEscopo == EEscopoInscricao::eMaquina ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// The deepest ones first: a key is empty only after those in it are gone. The keys of others in the view of
// 32 bits are the system's, empty or not: a registration found them there.
HRESULT ApagaChavesVazias(HKEY hEscopo, const std::vector<SValorInscricao>& listaValores) {
    std::set<std::pair<EVisaoRegistry, std::wstring>, std::greater<>> setChaves;
    for (const SValorInscricao& rValor : listaValores) setChaves.emplace(rValor.eVisao, rValor.sChave);
    for (const std::wstring& sComum : XVValoresInscricao::ChavesComuns())
        setChaves.emplace(EVisaoRegistry::e64, sComum);
    for (const auto& [eVisao, sChave] : setChaves)
        if (const HRESULT hr =
                CXVChaveRegistry::ApagaSeVazia(hEscopo, XVValoresInscricao::k_pszClasses + sChave, eVisao);
            FAILED(hr))
            return hr;
    return S_OK;
}

// The values that a registration is about to change, as they were.
class CXVValoresAnteriores {
  public:
    CXVValoresAnteriores(HKEY hEscopo, std::vector<SValorInscricao> listaValores)
        : m_hEscopo(hEscopo), m_listaValores(std::move(listaValores)) {
        for (SValorInscricao& rValor : m_listaValores) rValor.sTexto = rValor.Le(hEscopo);
    }
    // The failure that made it necessary is what is told, not one of putting back.
    void Repoe() const {
        for (const SValorInscricao& rValor : m_listaValores)
            XVIgnora(rValor.sTexto.has_value() ? rValor.Grava(m_hEscopo) : rValor.Apaga(m_hEscopo));
        XVIgnora(ApagaChavesVazias(m_hEscopo, m_listaValores));
    }

  private:
    HKEY m_hEscopo;
    std::vector<SValorInscricao> m_listaValores;
};

class CXVBibliotecaProxy {
  public:
    CXVBibliotecaProxy()
        : m_hModulo(::LoadLibraryExW(XVValoresInscricao::CaminhoProxy().c_str(), nullptr,
                                     LOAD_WITH_ALTERED_SEARCH_PATH)) {
        m_hr = m_hModulo != nullptr ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
    }
    ~CXVBibliotecaProxy() {
        if (m_hModulo != nullptr) ::FreeLibrary(m_hModulo);
    }
    CXVBibliotecaProxy(const CXVBibliotecaProxy&) = delete;
    CXVBibliotecaProxy& operator=(const CXVBibliotecaProxy&) = delete;

    HRESULT GetResultado() const { return m_hr; }

    // Runs the library's own registration with its writes led to the scope's classes.
    HRESULT Registra(HKEY hEscopo) const {
        using PRegistra = HRESULT(STDAPICALLTYPE*)();
        const auto pRegistra = reinterpret_cast<PRegistra>(
            reinterpret_cast<void (*)()>(::GetProcAddress(m_hModulo, "DllRegisterServer")));
        if (pRegistra == nullptr) return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
        CXVChaveRegistry classes;
        HRESULT hr = classes.Cria(hEscopo, L"Software\\Classes");
        if (SUCCEEDED(hr))
            hr = HRESULT_FROM_WIN32(
                static_cast<DWORD>(::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get())));
        if (FAILED(hr)) return hr;
        hr = pRegistra();
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        return hr;
    }

  private:
    HMODULE m_hModulo;
    HRESULT m_hr;
};

// Every value that has a text.
HRESULT GravaTextos(HKEY hEscopo, const std::vector<SValorInscricao>& listaValores) {
    for (const SValorInscricao& rValor : listaValores)
        if (rValor.sTexto.has_value())
            if (const HRESULT hr = rValor.Grava(hEscopo); FAILED(hr)) return hr;
    return S_OK;
}
bool ConferemTextos(HKEY hEscopo, const std::vector<SValorInscricao>& listaValores) {
    return std::all_of(listaValores.begin(), listaValores.end(), [hEscopo](const SValorInscricao& rValor) {
        return !rValor.sTexto.has_value() || rValor.Confere(hEscopo);
    });
}

// After the other library's, whose values it repeats. Where it is not there, that view is nobody's business.
SResultadoInscricao GravaProxy32(HKEY hEscopo) {
    if (!XVValoresInscricao::TemProxy32() || !XVValoresInscricao::VisoesSeparadas(hEscopo)) return {};
    const std::vector<SValorInscricao> listaValores = XVValoresInscricao::Proxy32(hEscopo);
    if (const HRESULT hr = GravaTextos(hEscopo, listaValores); FAILED(hr))
        return {hr, "registrar a biblioteca XVCR_MiddlewarePS32.dll"};
    if (!ConferemTextos(hEscopo, listaValores))
        return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA),
                "conferir o registro da biblioteca XVCR_MiddlewarePS32.dll"};
    return {};
}

SResultadoInscricao GravaTudo(HKEY hEscopo, const std::vector<SValorInscricao>& listaValores,
                              const CXVBibliotecaProxy& rProxy, const CXVContaServidor& rConta) {
    if (const HRESULT hr = GravaTextos(hEscopo, listaValores); FAILED(hr))
        return {hr, "gravar as chaves da classe no registro"};
    if (const HRESULT hr = rProxy.Registra(hEscopo); FAILED(hr))
        return {hr, "registrar a biblioteca XVCR_MiddlewarePS.dll"};
    if (SResultadoInscricao resultado = GravaProxy32(hEscopo); FAILED(resultado.hr)) return resultado;
    if (!ConferemTextos(hEscopo, listaValores))
        return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA), "conferir as chaves da classe no registro"};
    if (!ConferemTextos(hEscopo, XVValoresInscricao::Proxy()))
        return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA),
                "conferir o registro da biblioteca XVCR_MiddlewarePS.dll"};
    if (const HRESULT hr = rConta.Grava(hEscopo); FAILED(hr))
        return {hr, "gravar a conta e as permissões do servidor no registro"};
    return {};
}

std::vector<SValorInscricao> NossosValores(HKEY hEscopo) {
    std::vector<SValorInscricao> lista;
    const auto junta = [&lista](const std::vector<SValorInscricao>& listaMais) {
        lista.insert(lista.end(), listaMais.begin(), listaMais.end());
    };
    if (!XVValoresInscricao::ProxyEhDeOutro(hEscopo)) junta(XVValoresInscricao::Proxy());
    if (XVValoresInscricao::Proxy32EhNosso(hEscopo)) junta(XVValoresInscricao::Proxy32(hEscopo));
    if (!XVValoresInscricao::ClasseEhDeOutro(hEscopo))
        for (const SValorInscricao& rValor : XVValoresInscricao::Classe(hEscopo))
            if (rValor.Confere(hEscopo)) lista.push_back(rValor);
    return lista;
}

}  // namespace

SResultadoInscricao XVInscreveClasse(EEscopoInscricao eEscopo, const SOpcoesInscricao& rOpcoes) {
    // The library is loaded before anything is written: where it cannot be loaded the registration cannot
    // succeed, and one that already stands is not given up for it. So is the account looked for.
    const CXVBibliotecaProxy proxy;
    if (FAILED(proxy.GetResultado()))
        return {proxy.GetResultado(), "carregar a biblioteca XVCR_MiddlewarePS.dll"};
    CXVContaServidor conta;
    if (SResultadoInscricao resultado = conta.Prepara(rOpcoes); FAILED(resultado.hr)) return resultado;
    const HKEY hEscopo = Escopo(eEscopo);
    const std::vector<SValorInscricao> listaValores = XVValoresInscricao::Classe(hEscopo);
    std::vector<SValorInscricao> listaTodos = XVValoresInscricao::Proxy();
    listaTodos.insert(listaTodos.end(), listaValores.begin(), listaValores.end());
    if (XVValoresInscricao::TemProxy32())
        for (SValorInscricao& rValor : XVValoresInscricao::Proxy32(hEscopo)) listaTodos.push_back(rValor);
    const CXVValoresAnteriores anteriores(hEscopo, listaTodos);
    SResultadoInscricao resultado = GravaTudo(hEscopo, listaValores, proxy, conta);
    if (FAILED(resultado.hr)) anteriores.Repoe();
    return resultado;
}

SResultadoInscricao XVRemoveClasse(EEscopoInscricao eEscopo) {
    const HKEY hEscopo = Escopo(eEscopo);
    const std::vector<SValorInscricao> listaNossos = NossosValores(hEscopo);
    for (const SValorInscricao& rValor : listaNossos)
        if (const HRESULT hr = rValor.Apaga(hEscopo); FAILED(hr))
            return {hr, "apagar as chaves da classe do registro"};
    if (std::any_of(listaNossos.begin(), listaNossos.end(),
                    [hEscopo](const SValorInscricao& rValor) { return rValor.Le(hEscopo).has_value(); }))
        return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA), "conferir a remoção das chaves do registro"};
    if (const HRESULT hr = ApagaChavesVazias(hEscopo, listaNossos); FAILED(hr))
        return {hr, "apagar as chaves da classe do registro"};
    return {};
}
