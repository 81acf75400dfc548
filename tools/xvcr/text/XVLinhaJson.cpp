#include "tools/xvcr/text/XVLinhaJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

constexpr std::string_view k_sBom = "\xEF\xBB\xBF";

bool EhEspaco(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::size_t PulaEspacos(std::string_view s, std::size_t i) {
    while (i < s.size() && EhEspaco(s[i])) ++i;
    return i;
}

// Position after the string that begins at i. The text is known to be valid JSON.
std::size_t PulaTexto(std::string_view s, std::size_t i) {
    for (++i; s[i] != '"'; ++i)
        if (s[i] == '\\') ++i;
    return i + 1;
}

std::size_t PulaValor(std::string_view s, std::size_t i) {
    std::size_t uiNivel = 0;
    for (;;) {
        const char c = s[i];
        if (c == '"') {
            i = PulaTexto(s, i);
            if (uiNivel == 0) return i;
            continue;
        }
        if (uiNivel == 0 && (c == ',' || c == '}' || EhEspaco(c))) return i;
        ++i;
        if (c == '{' || c == '[') ++uiNivel;
        if ((c == '}' || c == ']') && --uiNivel == 0) return i;
    }
}

std::string DescreveErro(std::string_view sLinha) {
    try {
        const nlohmann::json json = nlohmann::json::parse(sLinha);
        return json.is_discarded() ? "JSON inválido" : "";
    } catch (const nlohmann::json::parse_error& rErro) {
        return "JSON inválido no byte " + std::to_string(rErro.byte);
    } catch (const nlohmann::json::exception&) {
        return "JSON com um número fora da faixa";
    }
}

}  // namespace

SMembroJson::ETipo SMembroJson::GetTipo() const {
    switch (sValor.front()) {
        case '"':
            return ETipo::eTexto;
        case '{':
        case '[':
            return ETipo::eComposto;
        case 't':
        case 'f':
            return ETipo::eLogico;
        case 'n':
            return ETipo::eNulo;
        default:
            return ETipo::eNumero;
    }
}

std::string SMembroJson::GetTexto() const {
    return nlohmann::json::parse(sValor).get<std::string>();
}

std::string SMembroJson::GetCompacto() const {
    std::string sCompacto;
    sCompacto.reserve(sValor.size());
    for (std::size_t i = 0; i < sValor.size();) {
        if (sValor[i] == '"') {
            const std::size_t uiFim = PulaTexto(sValor, i);
            sCompacto += sValor.substr(i, uiFim - i);
            i = uiFim;
            continue;
        }
        if (!EhEspaco(sValor[i])) sCompacto += sValor[i];
        ++i;
    }
    return sCompacto;
}

std::string XVSeparaMembros(std::string_view sLinha, std::vector<SMembroJson>* pLista) {
    pLista->clear();
    if (sLinha.starts_with(k_sBom)) sLinha.remove_prefix(k_sBom.size());
    if (!nlohmann::json::accept(sLinha)) return DescreveErro(sLinha);
    std::size_t i = PulaEspacos(sLinha, 0);
    if (sLinha[i] != '{') return "a linha não é um objeto JSON";
    i = PulaEspacos(sLinha, i + 1);
    while (sLinha[i] != '}') {
        const std::size_t uiFimNome = PulaTexto(sLinha, i);
        SMembroJson membro{nlohmann::json::parse(sLinha.substr(i, uiFimNome - i)).get<std::string>(), {}};
        i = PulaEspacos(sLinha, PulaEspacos(sLinha, uiFimNome) + 1);
        const std::size_t uiFimValor = PulaValor(sLinha, i);
        membro.sValor = sLinha.substr(i, uiFimValor - i);
        const auto bIgual = [&](const SMembroJson& rOutro) { return rOutro.sNome == membro.sNome; };
        if (std::any_of(pLista->begin(), pLista->end(), bIgual))
            return "campo \"" + membro.sNome + "\" repetido";
        pLista->push_back(std::move(membro));
        if (pLista->size() > 256) return "campos demais";
        i = PulaEspacos(sLinha, uiFimValor);
        if (sLinha[i] == ',') i = PulaEspacos(sLinha, i + 1);
    }
    return {};
}
