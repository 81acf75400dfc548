#include "support/XVAmbiente.h"

#include <array>

#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/values/XVTextoAscii.h"

namespace {

struct SModulo {
    EModulo eModulo;
    std::string_view sSigla;
};

// Modules that have a directory and a registry key of their own.
constexpr std::array k_aModulos{SModulo{XV_DF, "DF"}};
constexpr std::string_view k_sSiglaModuloBase = k_aModulos[0].sSigla;

constexpr std::size_t k_uiMaximoEmpresa = 47;

bool EhCaractereEmpresa(char c) {
    const char cMinuscula = XVMinuscula(c);
    return (cMinuscula >= 'a' && cMinuscula <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

// Names that the file system of Windows takes for devices, in any directory and case.
bool EhNomeDispositivo(std::string_view sNome) {
    const std::string s = XVEmMinusculas(sNome);
    if (s == "con" || s == "prn" || s == "aux" || s == "nul") return true;
    return s.size() == 4 && (s.starts_with("com") || s.starts_with("lpt")) && s[3] >= '1' && s[3] <= '9';
}

// "Path" names the directory; an installation for 64-bit programs alone may have set "Path_x64" only.
std::string LeDiretorio(const std::string& sChave) {
    IXVRegistry& rRegistry = XVPlataforma::Registry();
    if (auto sDiretorio = rRegistry.LeTexto(sChave, "Path"); sDiretorio && !sDiretorio->empty())
        return *std::move(sDiretorio);
    return rRegistry.LeTexto(sChave, "Path_x64").value_or(std::string());
}

}  // namespace

namespace CAmbienteXV {

std::string_view GetSiglaModulo(EModulo eModulo) {
    for (const SModulo& rModulo : k_aModulos)
        if (rModulo.eModulo == eModulo) return rModulo.sSigla;
    return k_sSiglaModuloBase;
}

std::string GetChaveRegistry(EModulo eModulo) {
    std::string sChave(k_sChaveRegistrySuite);
    sChave += '\\';
    sChave += GetSiglaModulo(eModulo);
    return sChave;
}

HRESULT GetDiretorioModulo(EModulo eModulo, std::string* psDiretorio) {
    *psDiretorio = LeDiretorio(GetChaveRegistry(eModulo));
    // A root directory keeps its separator.
    while (psDiretorio->size() > 1 && (psDiretorio->back() == '\\' || psDiretorio->back() == '/'))
        psDiretorio->pop_back();
    return psDiretorio->empty() ? eBadPath : S_OK;
}

std::string MontaPathDados(EModulo eModulo, std::string_view sDiretorioModulo, std::string_view sEmpresa) {
    const IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    return rSistema.Junta(rSistema.Junta(sDiretorioModulo, sEmpresa), GetSiglaModulo(eModulo));
}

HRESULT GetPathDados(EModulo eModulo, std::string_view sEmpresa, std::string* psDiretorio) {
    psDiretorio->clear();
    if (!EhEmpresaValida(sEmpresa)) return E_INVALIDARG;
    std::string sDiretorioModulo;
    const HRESULT hr = GetDiretorioModulo(eModulo, &sDiretorioModulo);
    if (FAILED(hr)) return hr;
    *psDiretorio = MontaPathDados(eModulo, sDiretorioModulo, sEmpresa);
    return S_OK;
}

bool EhEmpresaValida(std::string_view sEmpresa) {
    if (sEmpresa.empty() || sEmpresa.size() > k_uiMaximoEmpresa) return false;
    for (const char c : sEmpresa)
        if (!EhCaractereEmpresa(c)) return false;
    return !EhNomeDispositivo(sEmpresa);
}

}  // namespace CAmbienteXV
