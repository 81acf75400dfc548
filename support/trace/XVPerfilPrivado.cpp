#include "support/trace/XVPerfilPrivado.h"

#include <limits>

#include "support/values/XVTextoAscii.h"

namespace {

std::string_view Apara(std::string_view s) {
    while (!s.empty() && static_cast<unsigned char>(s.front()) <= ' ') s.remove_prefix(1);
    while (!s.empty() && static_cast<unsigned char>(s.back()) <= ' ') s.remove_suffix(1);
    return s;
}

std::string_view TiraLinha(std::string_view& sResto) {
    const std::size_t uiFim = sResto.find('\n');
    const std::string_view sLinha = sResto.substr(0, uiFim);
    sResto.remove_prefix(uiFim == std::string_view::npos ? sResto.size() : uiFim + 1);
    return Apara(sLinha);
}

std::string_view SemAspas(std::string_view s) {
    if (s.size() >= 2 && s.front() == s.back() && (s.front() == '"' || s.front() == '\''))
        return s.substr(1, s.size() - 2);
    return s;
}

unsigned ValorDigito(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10U;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10U;
    return std::numeric_limits<unsigned>::max();
}

unsigned TiraBase(std::string_view& s) {
    if (s.size() < 2 || s[0] != '0') return 10;
    const unsigned uiBase = s[1] == 'x' ? 16U : s[1] == 'o' ? 8U : s[1] == 'b' ? 2U : 10U;
    if (uiBase != 10) s.remove_prefix(2);
    return uiBase;
}

}  // namespace

CXVPerfilPrivado::CXVPerfilPrivado(std::string_view sConteudo) : m_sConteudo(sConteudo) {
    constexpr std::string_view k_sMarcaUtf8 = "\xEF\xBB\xBF";
    if (m_sConteudo.starts_with(k_sMarcaUtf8)) m_sConteudo.remove_prefix(k_sMarcaUtf8.size());
}

std::optional<std::string_view> CXVPerfilPrivado::LeTexto(std::string_view sSecao,
                                                          std::string_view sChave) const {
    bool bNaSecao = false;
    std::string_view sResto = m_sConteudo;
    while (!sResto.empty()) {
        const std::string_view sLinha = TiraLinha(sResto);
        if (sLinha.empty() || sLinha.front() == ';') continue;
        if (sLinha.front() == '[') {
            if (bNaSecao) return std::nullopt;
            bNaSecao = XVIgualSemCaixa(Apara(sLinha.substr(1, sLinha.find(']') - 1)), sSecao);
            continue;
        }
        const std::size_t uiIgual = sLinha.find('=');
        if (!bNaSecao || uiIgual == std::string_view::npos) continue;
        if (XVIgualSemCaixa(Apara(sLinha.substr(0, uiIgual)), sChave))
            return SemAspas(Apara(sLinha.substr(uiIgual + 1)));
    }
    return std::nullopt;
}

std::int64_t CXVPerfilPrivado::LeInteiro(std::string_view sSecao, std::string_view sChave,
                                         std::int64_t iPadrao) const {
    constexpr std::int64_t k_iMaximo = std::numeric_limits<std::int64_t>::max();
    std::string_view s = Apara(LeTexto(sSecao, sChave).value_or(std::string_view()));
    if (s.empty()) return iPadrao;
    const bool bNegativo = s.front() == '-';
    if (bNegativo || s.front() == '+') s.remove_prefix(1);
    const unsigned uiBase = TiraBase(s);
    std::int64_t iNumero = 0;
    for (const char c : s) {
        const unsigned uiDigito = ValorDigito(c);
        if (uiDigito >= uiBase) break;
        iNumero = iNumero > (k_iMaximo - uiDigito) / uiBase ? k_iMaximo : iNumero * uiBase + uiDigito;
    }
    return bNegativo ? -iNumero : iNumero;
}
