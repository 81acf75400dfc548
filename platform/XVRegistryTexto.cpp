#include "platform/XVRegistryTexto.h"

#include <algorithm>
#include <charconv>

#include "platform/XVMascara.h"

namespace {

constexpr std::string_view k_sBrancos = " \t\r";

std::string_view Apara(std::string_view sTexto) {
    const std::size_t uiInicio = sTexto.find_first_not_of(k_sBrancos);
    if (uiInicio == std::string_view::npos) {
        return {};
    }
    return sTexto.substr(uiInicio, sTexto.find_last_not_of(k_sBrancos) - uiInicio + 1);
}

bool EhComentario(std::string_view sTexto) {
    return sTexto.front() == '#' || sTexto.front() == ';';
}
bool EhVazioOuComentario(std::string_view sTexto) {
    return sTexto.empty() || EhComentario(sTexto);
}

// Takes a text in quotes from the front of sResto; nothing when the closing quote is missing.
std::optional<std::string_view> TomaEntreAspas(std::string_view& sResto) {
    const std::size_t uiFim = sResto.find('"', 1);
    if (uiFim == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view sTexto = sResto.substr(1, uiFim - 1);
    sResto = Apara(sResto.substr(uiFim + 1));
    return sTexto;
}

std::optional<std::string_view> TomaNome(std::string_view& sResto) {
    if (sResto.front() == '"') {
        return TomaEntreAspas(sResto);
    }
    const std::size_t uiIgual = sResto.find('=');
    if (uiIgual == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view sNome = Apara(sResto.substr(0, uiIgual));
    sResto = sResto.substr(uiIgual);
    return sNome;
}

std::string Identificador(std::string_view sChave, std::string_view sValor) {
    std::string sIdentificador;
    sIdentificador.reserve(sChave.size() + 1 + sValor.size());
    sIdentificador.append(sChave).append(1, '\n').append(sValor);
    std::transform(sIdentificador.begin(), sIdentificador.end(), sIdentificador.begin(),
                   XVMascara::Minuscula);
    return sIdentificador;
}

}  // namespace

void CXVRegistryTexto::Carrega(std::string_view sTexto) {
    m_mapaValores.clear();
    std::string sChaveAtual;
    while (!sTexto.empty()) {
        const std::size_t uiFim = std::min(sTexto.find('\n'), sTexto.size());
        CarregaLinha(Apara(sTexto.substr(0, uiFim)), sChaveAtual);
        sTexto.remove_prefix(std::min(uiFim + 1, sTexto.size()));
    }
}

void CXVRegistryTexto::CarregaLinha(std::string_view sLinha, std::string& sChaveAtual) {
    if (EhVazioOuComentario(sLinha)) {
        return;
    }
    if (sLinha.front() == '[') {
        // The values after a malformed key belong to no key rather than to the one before.
        sChaveAtual = sLinha.back() == ']' ? Apara(sLinha.substr(1, sLinha.size() - 2)) : std::string_view();
        return;
    }
    const std::optional<std::string_view> sNome = TomaNome(sLinha);
    if (!sNome || sNome->empty() || sChaveAtual.empty() || sLinha.empty() || sLinha.front() != '=') {
        return;
    }
    std::string_view sValor = Apara(sLinha.substr(1));
    if (sValor.empty()) {
        return;
    }
    if (sValor.front() == '"') {
        const std::optional<std::string_view> sTexto = TomaEntreAspas(sValor);
        if (sTexto && EhVazioOuComentario(sValor)) {
            m_mapaValores.insert_or_assign(Identificador(sChaveAtual, *sNome), std::string(*sTexto));
        }
        return;
    }
    const std::optional<XVUInt> ulNumero =
        ConverteNumero(Apara(sValor.substr(0, std::min(sValor.find_first_of("#;"), sValor.size()))));
    if (ulNumero) {
        m_mapaValores.insert_or_assign(Identificador(sChaveAtual, *sNome), *ulNumero);
    }
}

const CXVRegistryTexto::TValor* CXVRegistryTexto::Busca(std::string_view sChave,
                                                        std::string_view sValor) const {
    const auto it = m_mapaValores.find(Identificador(sChave, sValor));
    return it == m_mapaValores.end() ? nullptr : &it->second;
}

std::optional<std::string> CXVRegistryTexto::LeTexto(std::string_view sChave, std::string_view sValor) const {
    const TValor* pValor = Busca(sChave, sValor);
    if (pValor == nullptr || !std::holds_alternative<std::string>(*pValor)) {
        return std::nullopt;
    }
    return std::get<std::string>(*pValor);
}

std::optional<XVUInt> CXVRegistryTexto::LeNumero(std::string_view sChave, std::string_view sValor) const {
    const TValor* pValor = Busca(sChave, sValor);
    if (pValor == nullptr) {
        return std::nullopt;
    }
    if (const XVUInt* pulNumero = std::get_if<XVUInt>(pValor)) {
        return *pulNumero;
    }
    return ConverteNumero(std::get<std::string>(*pValor));
}

std::optional<XVUInt> CXVRegistryTexto::ConverteNumero(std::string_view sTexto) {
    XVUInt ulNumero = 0;
    const char* pFim = sTexto.data() + sTexto.size();
    const auto [pParada, eErro] = std::from_chars(sTexto.data(), pFim, ulNumero);
    if (sTexto.empty() || eErro != std::errc() || pParada != pFim) {
        return std::nullopt;
    }
    return ulNumero;
}
