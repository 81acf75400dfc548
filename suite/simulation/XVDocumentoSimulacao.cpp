#include "suite/simulation/XVDocumentoSimulacao.h"

#include <algorithm>

#include "support/values/XVTextoAscii.h"

namespace {

constexpr std::size_t k_uiMaximoNome = 32;
constexpr std::string_view k_sMarcaUTF8 = "\xEF\xBB\xBF";  // some editors put it before the first line

std::string_view SemEspacos(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

bool EhControle(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t';
}

bool EhNomeValido(std::string_view sNome) {
    return !sNome.empty() && sNome.size() <= k_uiMaximoNome &&
           std::all_of(sNome.begin(), sNome.end(),
                       [](char c) { return XVMinuscula(c) >= 'a' && XVMinuscula(c) <= 'z'; });
}

// The next line without its end (LF or CRLF); false when the text has no further line end.
bool TomaLinha(std::string_view& sResto, std::string_view& sLinha) {
    const std::size_t uiFim = sResto.find('\n');
    const bool bCompleta = uiFim != std::string_view::npos;
    sLinha = sResto.substr(0, uiFim);
    sResto.remove_prefix(bCompleta ? uiFim + 1 : sResto.size());
    if (sLinha.ends_with('\r')) sLinha.remove_suffix(1);
    return bCompleta;
}

}  // namespace

bool CXVDocumentoSimulacao::Interpreta(std::string_view sBytes, std::string* psErro) {
    m_listaCampos.clear();
    m_sCorpo.clear();
    if (sBytes.starts_with(k_sMarcaUTF8)) sBytes.remove_prefix(k_sMarcaUTF8.size());
    std::string_view sResto = sBytes;
    std::string_view sLinha;
    for (unsigned uiLinha = 1; !sResto.empty(); ++uiLinha) {
        TomaLinha(sResto, sLinha);
        std::string sErro;
        if (sBytes.size() - sResto.size() > k_uiMaximoCabecalho) sErro = "cabeçalho com mais de 65536 bytes";
        if (sErro.empty() && sLinha.empty()) {
            m_sCorpo.assign(sResto);
            return true;
        }
        if (!sErro.empty() || !InterpretaLinha(sLinha, &sErro)) {
            *psErro = "linha " + std::to_string(uiLinha) + ": " + sErro;
            return false;
        }
    }
    return true;
}

bool CXVDocumentoSimulacao::InterpretaLinha(std::string_view sLinha, std::string* psErro) {
    if (std::any_of(sLinha.begin(), sLinha.end(), EhControle)) {
        *psErro = "caractere de controle no cabeçalho";
        return false;
    }
    if (sLinha.starts_with('#')) return true;
    const std::size_t uiSeparador = sLinha.find(':');
    const std::string_view sNome = SemEspacos(sLinha.substr(0, uiSeparador));
    if (uiSeparador == std::string_view::npos || !EhNomeValido(sNome)) {
        *psErro = "esperado \"Campo: valor\"";
        return false;
    }
    if (Busca(sNome) != nullptr) {
        *psErro = "campo repetido";
        return false;
    }
    if (m_listaCampos.size() == k_uiMaximoCampos) {
        *psErro = "mais de 64 campos";
        return false;
    }
    m_listaCampos.push_back({std::string(sNome), std::string(SemEspacos(sLinha.substr(uiSeparador + 1)))});
    return true;
}

std::string CXVDocumentoSimulacao::Monta() const {
    std::string sBytes;
    sBytes.reserve(256 + m_sCorpo.size());
    for (const SCampo& rCampo : m_listaCampos) {
        sBytes += rCampo.sNome;
        sBytes += ": ";
        sBytes += rCampo.sValor;
        sBytes += '\n';
    }
    sBytes += '\n';
    sBytes += m_sCorpo;
    return sBytes;
}

void CXVDocumentoSimulacao::Inclui(std::string_view sNome, std::string_view sValor) {
    std::string sLinha(sValor);
    std::replace_if(sLinha.begin(), sLinha.end(), EhControle, ' ');
    m_listaCampos.push_back({std::string(sNome), std::move(sLinha)});
}

void CXVDocumentoSimulacao::Inclui(std::string_view sNome, XVUInt64 uiValor) {
    Inclui(sNome, std::to_string(uiValor));
}

const CXVDocumentoSimulacao::SCampo* CXVDocumentoSimulacao::Busca(std::string_view sNome) const {
    const auto it = std::find_if(m_listaCampos.begin(), m_listaCampos.end(),
                                 [sNome](const SCampo& r) { return XVIgualSemCaixa(r.sNome, sNome); });
    return it != m_listaCampos.end() ? &*it : nullptr;
}

std::string CXVDocumentoSimulacao::GetCorpoEscrito() const {
    std::string_view sCorpo = m_sCorpo;
    if (sCorpo.ends_with('\n')) {
        sCorpo.remove_suffix(1);
        if (sCorpo.ends_with('\r')) sCorpo.remove_suffix(1);
    }
    return std::string(sCorpo);
}
