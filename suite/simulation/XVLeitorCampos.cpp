#include <algorithm>
#include <charconv>

#include "suite/simulation/XVDocumentoSimulacao.h"

namespace {

// The whole text as a number of the base, or nothing.
std::optional<XVUInt64> Converte(std::string_view sValor, int iBase) {
    XVUInt64 uiValor = 0;
    const char* pFim = sValor.data() + sValor.size();
    const auto resultado = std::from_chars(sValor.data(), pFim, uiValor, iBase);
    if (sValor.empty() || resultado.ec != std::errc() || resultado.ptr != pFim) return std::nullopt;
    return uiValor;
}

}  // namespace

CXVLeitorCampos::CXVLeitorCampos(const CXVDocumentoSimulacao& rDocumento)
    : m_rDocumento(rDocumento), m_aTomado(rDocumento.GetCampos().size(), false) {}

const std::string* CXVLeitorCampos::Toma(std::string_view sNome) {
    const CXVDocumentoSimulacao::SCampo* pCampo = m_rDocumento.Busca(sNome);
    if (pCampo == nullptr) return nullptr;
    m_aTomado[static_cast<std::size_t>(pCampo - m_rDocumento.GetCampos().data())] = true;
    return &pCampo->sValor;
}

void CXVLeitorCampos::Recusa(std::string_view sNome, std::string_view sMotivo) {
    if (!m_sErro.empty()) return;
    m_sErro.assign("campo \"").append(sNome).append("\": ").append(sMotivo);
}

std::optional<XVUInt64> CXVLeitorCampos::Numero(std::string_view sNome, XVUInt64 uiMaximo) {
    const std::string* psValor = Toma(sNome);
    if (psValor == nullptr) return std::nullopt;
    const auto uiValor = Converte(*psValor, 10);
    if (uiValor && *uiValor <= uiMaximo) return uiValor;
    Recusa(sNome, "esperado um número de 0 a " + std::to_string(uiMaximo));
    return std::nullopt;
}

std::optional<XVUInt> CXVLeitorCampos::Numero32(std::string_view sNome, XVUInt ulMaximo) {
    const auto uiValor = Numero(sNome, ulMaximo);
    if (!uiValor) return std::nullopt;
    return static_cast<XVUInt>(*uiValor);
}

std::optional<XVUInt> CXVLeitorCampos::Enumeracao(std::string_view sNome,
                                                  const std::vector<SNomeValor>& listaNomes) {
    const std::string* psValor = Toma(sNome);
    if (psValor == nullptr) return std::nullopt;
    const auto uiNumero = Converte(*psValor, 10);
    const auto it = std::find_if(listaNomes.begin(), listaNomes.end(), [&](const SNomeValor& r) {
        return r.sNome == *psValor || (uiNumero && r.ulValor == *uiNumero);
    });
    if (it != listaNomes.end()) return it->ulValor;
    Recusa(sNome, "valor desconhecido");
    return std::nullopt;
}

std::optional<REG_XVDMC> CXVLeitorCampos::Dmc(std::string_view sNome) {
    const std::string* psValor = Toma(sNome);
    if (psValor == nullptr) return std::nullopt;
    REG_XVDMC regDmc;
    if (REG_XVDMC::DeString(*psValor, &regDmc) && !regDmc.EhNulo() && regDmc.EhValido()) return regDmc;
    Recusa(sNome, "esperado um DMC, por exemplo 20261121-15-1");
    return std::nullopt;
}

std::optional<std::string> CXVLeitorCampos::Texto(std::string_view sNome) {
    const std::string* psValor = Toma(sNome);
    if (psValor == nullptr) return std::nullopt;
    return *psValor;
}

std::optional<HRESULT> CXVLeitorCampos::Codigo(std::string_view sNome) {
    const std::string* psValor = Toma(sNome);
    if (psValor == nullptr) return std::nullopt;
    if (psValor->starts_with("0x") || psValor->starts_with("0X")) {
        const auto uiValor = Converte(std::string_view(*psValor).substr(2), 16);
        if (uiValor && *uiValor >= 0x80000000U && *uiValor <= 0xFFFFFFFFU)
            return XVHResult(static_cast<std::uint32_t>(*uiValor));
    }
    Recusa(sNome, "esperado um código de falha, por exemplo 0x80004005");
    return std::nullopt;
}

bool CXVLeitorCampos::Termina(std::string* psErro) {
    const auto it = std::find(m_aTomado.begin(), m_aTomado.end(), false);
    if (it != m_aTomado.end())
        Recusa(m_rDocumento.GetCampos()[static_cast<std::size_t>(it - m_aTomado.begin())].sNome,
               "desconhecido neste documento");
    *psErro = m_sErro;
    return m_sErro.empty();
}
