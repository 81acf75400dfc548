#include "support/faults/XVTrapParametroInvalido.h"

#include <utility>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVErrno.h"
#include "support/faults/XVMens.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVTextoLargo.h"

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
    pTrata(E_XVCR_PARAMETRO_INVALIDO_RUNTIME, hr, 0x7FFFFFFF, sServidor.c_str(), rMetodo.fonte.pszUnidade,
           rMetodo.iLinha, 1, 0, XVAmbienteSO::GetCaminhoExecutavel().c_str(), sTexto.c_str());
}

void RegistraETrata(const SMetodoTrap& rMetodo, HRESULT hr, const SParametroInvalido& rParametro) {
    const std::string sTexto = Texto(rParametro);
    XVProfiler::RecordError(rMetodo.pDono, rMetodo.pszFuncao, rMetodo.fonte, rMetodo.iLinha, "%s",
                            sTexto.c_str());
    ChamaTratamento(rMetodo, hr, sTexto);
}

// Whatever the treatment does, the method ends with hr. The trap is disarmed meanwhile: a parameter that
// the treatment itself passes wrongly ends the treatment instead of starting another.
[[noreturn]] void Dispara(HRESULT hr, const wchar_t* pszExpressao, const wchar_t* pszFuncao,
                          const wchar_t* pszArquivo, unsigned uiLinha) {
    if (XVTrapParametroInvalido* const pTrap = std::exchange(g_pTrapAtual, nullptr)) {
        try {
            RegistraETrata(pTrap->GetMetodo(), hr,
                           {XVTextoDeLargo(pszExpressao), XVTextoDeLargo(pszFuncao),
                            XVTextoDeLargo(pszArquivo), uiLinha});
        } catch (...) {  // the method's result is not the treatment's
        }
        g_pTrapAtual = pTrap;
    }
    throw static_cast<long>(hr);
}

void TrataRuntime(int iErrno, const wchar_t* pszExpressao, const wchar_t* pszFuncao,
                  const wchar_t* pszArquivo, unsigned uiLinha) {
    Dispara(XVHResultDeErrno(iErrno), pszExpressao, pszFuncao, pszArquivo, uiLinha);
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
    Dispara(XVHResultDoErrnoAtual(), pszExpressao, pszFuncao, pszArquivo, uiLinha);
}
