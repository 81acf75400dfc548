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

HRESULT AbreClasses(EEscopoInscricao eEscopo, CXVChaveRegistry* pClasses) {
    return pClasses->Cria(eEscopo == EEscopoInscricao::eMaquina ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER,
                          L"Software\\Classes");
}

HRESULT Grava(HKEY hClasses, const SValorInscricao& rValor) {
    CXVChaveRegistry chave;
    const HRESULT hr = chave.Cria(hClasses, rValor.sChave);
    return FAILED(hr) ? hr : chave.GravaTexto(rValor.sNome, *rValor.sTexto);
}

bool Confere(HKEY hClasses, const SValorInscricao& rValor) {
    const std::optional<std::wstring> sLido = rValor.Le(hClasses);
    return sLido.has_value() &&
           (!rValor.sTexto.has_value() || ::lstrcmpiW(sLido->c_str(), rValor.sTexto->c_str()) == 0);
}

HRESULT Apaga(HKEY hClasses, const SValorInscricao& rValor) {
    CXVChaveRegistry chave;
    const HRESULT hr = chave.AbreParaGravar(hClasses, rValor.sChave);
    if (hr == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) return S_OK;
    return FAILED(hr) ? hr : chave.ApagaValor(rValor.sNome);
}

// The deepest ones first: a key is empty only after those in it are gone.
HRESULT ApagaChavesVazias(HKEY hClasses, const std::vector<SValorInscricao>& listaValores) {
    std::set<std::wstring, std::greater<>> setChaves;
    for (const SValorInscricao& rValor : listaValores) setChaves.insert(rValor.sChave);
    for (const std::wstring& sComum : XVValoresInscricao::ChavesComuns()) setChaves.insert(sComum);
    for (const std::wstring& sChave : setChaves)
        if (const HRESULT hr = CXVChaveRegistry::ApagaSeVazia(hClasses, sChave); FAILED(hr)) return hr;
    return S_OK;
}

// The values that a registration is about to change, as they were.
class CXVValoresAnteriores {
  public:
    CXVValoresAnteriores(HKEY hClasses, std::vector<SValorInscricao> listaValores)
        : m_hClasses(hClasses), m_listaValores(std::move(listaValores)) {
        for (SValorInscricao& rValor : m_listaValores) rValor.sTexto = rValor.Le(hClasses);
    }
    // The failure that made it necessary is what is told, not one of putting back.
    void Repoe() const {
        for (const SValorInscricao& rValor : m_listaValores)
            XVIgnora(rValor.sTexto.has_value() ? Grava(m_hClasses, rValor) : Apaga(m_hClasses, rValor));
        XVIgnora(ApagaChavesVazias(m_hClasses, m_listaValores));
    }

  private:
    HKEY m_hClasses;
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
    HRESULT Registra(HKEY hClasses) const {
        using PRegistra = HRESULT(STDAPICALLTYPE*)();
        const auto pRegistra = reinterpret_cast<PRegistra>(
            reinterpret_cast<void (*)()>(::GetProcAddress(m_hModulo, "DllRegisterServer")));
        if (pRegistra == nullptr) return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
        HRESULT hr =
            HRESULT_FROM_WIN32(static_cast<DWORD>(::RegOverridePredefKey(HKEY_CLASSES_ROOT, hClasses)));
        if (FAILED(hr)) return hr;
        hr = pRegistra();
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        return hr;
    }

  private:
    HMODULE m_hModulo;
    HRESULT m_hr;
};

SResultadoInscricao GravaTudo(HKEY hClasses, const std::vector<SValorInscricao>& listaValores,
                              const CXVBibliotecaProxy& rProxy, const CXVContaServidor& rConta) {
    for (const SValorInscricao& rValor : listaValores)
        if (const HRESULT hr = Grava(hClasses, rValor); FAILED(hr))
            return {hr, "gravar as chaves da classe no registro"};
    if (const HRESULT hr = rProxy.Registra(hClasses); FAILED(hr))
        return {hr, "registrar a biblioteca XVCR_MiddlewarePS.dll"};
    for (const SValorInscricao& rValor : listaValores)
        if (!Confere(hClasses, rValor))
            return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA), "conferir as chaves da classe no registro"};
    for (const SValorInscricao& rValor : XVValoresInscricao::Proxy())
        if (rValor.sTexto.has_value() && !Confere(hClasses, rValor))
            return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA),
                    "conferir o registro da biblioteca XVCR_MiddlewarePS.dll"};
    if (const HRESULT hr = rConta.Grava(hClasses); FAILED(hr))
        return {hr, "gravar a conta e as permissões do servidor no registro"};
    return {};
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
    CXVChaveRegistry classes;
    if (const HRESULT hr = AbreClasses(eEscopo, &classes); FAILED(hr))
        return {hr, "abrir as classes do registro"};
    const std::vector<SValorInscricao> listaValores = XVValoresInscricao::Classe(classes.Get());
    std::vector<SValorInscricao> listaTodos = XVValoresInscricao::Proxy();
    listaTodos.insert(listaTodos.end(), listaValores.begin(), listaValores.end());
    const CXVValoresAnteriores anteriores(classes.Get(), listaTodos);
    SResultadoInscricao resultado = GravaTudo(classes.Get(), listaValores, proxy, conta);
    if (FAILED(resultado.hr)) anteriores.Repoe();
    return resultado;
}

SResultadoInscricao XVRemoveClasse(EEscopoInscricao eEscopo) {
    CXVChaveRegistry classes;
    if (const HRESULT hr = AbreClasses(eEscopo, &classes); FAILED(hr))
        return {hr, "abrir as classes do registro"};
    const HKEY hClasses = classes.Get();
    std::vector<SValorInscricao> listaNossos;
    if (!XVValoresInscricao::ProxyEhDeOutro(hClasses)) listaNossos = XVValoresInscricao::Proxy();
    if (!XVValoresInscricao::ClasseEhDeOutro(hClasses))
        for (const SValorInscricao& rValor : XVValoresInscricao::Classe(hClasses))
            if (Confere(hClasses, rValor)) listaNossos.push_back(rValor);
    for (const SValorInscricao& rValor : listaNossos)
        if (const HRESULT hr = Apaga(hClasses, rValor); FAILED(hr))
            return {hr, "apagar as chaves da classe do registro"};
    if (std::any_of(listaNossos.begin(), listaNossos.end(),
                    [hClasses](const SValorInscricao& rValor) { return rValor.Le(hClasses).has_value(); }))
        return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA), "conferir a remoção das chaves do registro"};
    if (const HRESULT hr = ApagaChavesVazias(hClasses, listaNossos); FAILED(hr))
        return {hr, "apagar as chaves da classe do registro"};
    return {};
}
