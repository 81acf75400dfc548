#include "support/XVTrapParametroInvalido.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "support/XVCodigos.h"
#include "support/XVErrno.h"
#include "support/XVMens.h"
#include "support/XVProfiler.h"
#include "support/XVTextoLargo.h"

namespace {

thread_local XVTrapParametroInvalido* g_pTrapAtual = nullptr;

struct SParametroInvalido {
    std::string sExpressao;
    std::string sFuncao;
    std::string sArquivo;
    unsigned uiLinha;
};

std::string Texto(const SParametroInvalido& r) {
    return "Expression = " + r.sExpressao + "\tFunction = " + r.sFuncao + "\tFile = " + r.sArquivo +
           "\tLine = " + std::to_string(r.uiLinha);
}

void ChamaTratamento(const SMetodoTrap& rMetodo, HRESULT hr, const std::string& sTexto) {
    const CXVBibliotecaDinamica biblioteca(k_pszBibliotecaTratamento);
    if (!biblioteca.EstaCarregada()) return;
    const auto pTrata = biblioteca.GetFuncao<PFuncaoXVTrataErro>(k_pszXVTrataErroExported);
    if (pTrata == nullptr) return;
    const std::string sServidor = rMetodo.pGetServidor != nullptr ? rMetodo.pGetServidor() : std::string();
    pTrata(E_XVCR_PARAMETRO_INVALIDO_RUNTIME, hr, 0x7FFFFFFF, sServidor.c_str(), rMetodo.pszFonte,
           rMetodo.iLinha, 1, 0, XVAmbienteSO::GetCaminhoExecutavel().c_str(), sTexto.c_str());
}

[[noreturn]] void Dispara(HRESULT hr, const SParametroInvalido& rParametro) {
    if (g_pTrapAtual != nullptr) {
        const SMetodoTrap& rMetodo = g_pTrapAtual->GetMetodo();
        const std::string sTexto = Texto(rParametro);
        ChamaTratamento(rMetodo, hr, sTexto);
        XVProfiler::RecordError(rMetodo.pDono, rMetodo.pszFuncao, rMetodo.pszFonte, rMetodo.iLinha, "%s",
                                sTexto.c_str());
    }
    throw static_cast<long>(hr);
}

void TrataRuntime(int iErrno, const wchar_t* pszExpressao, const wchar_t* pszFuncao,
                  const wchar_t* pszArquivo, unsigned uiLinha) {
    Dispara(XVHResultDeErrno(iErrno),
            {XVTextoDeLargo(pszExpressao), XVTextoDeLargo(pszFuncao), XVTextoDeLargo(pszArquivo), uiLinha});
}

std::string OuVazio(const char* psz) {
    return psz != nullptr ? psz : "";
}

}  // namespace

XVTrapParametroInvalido::XVTrapParametroInvalido(const SMetodoTrap& rMetodo) noexcept
    : m_metodo(rMetodo), m_pAnterior(g_pTrapAtual), m_gancho(&TrataRuntime) {
    g_pTrapAtual = this;
}

XVTrapParametroInvalido::~XVTrapParametroInvalido() {
    g_pTrapAtual = m_pAnterior;
}

void XVParametroInvalido(const wchar_t* pszExpressao, const wchar_t* pszFuncao, const wchar_t* pszArquivo,
                         unsigned uiLinha) {
    Dispara(XVHResultDoErrnoAtual(),
            {XVTextoDeLargo(pszExpressao), XVTextoDeLargo(pszFuncao), XVTextoDeLargo(pszArquivo), uiLinha});
}

void XVParametroInvalido(const char* pszExpressao, const char* pszFuncao, const char* pszArquivo,
                         unsigned uiLinha) {
    Dispara(XVHResultDoErrnoAtual(),
            {OuVazio(pszExpressao), OuVazio(pszFuncao), OuVazio(pszArquivo), uiLinha});
}
