#include "tools/xvcr/text/XVLinhaJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/xvcr/text/XVVarreduraJson.h"

namespace {

constexpr std::string_view k_sBom = "\xEF\xBB\xBF";
constexpr std::size_t k_uiMembros = 256;  // no record has as many

// Position after the string that begins at i, which is known to be one.
std::size_t PulaTexto(std::string_view s, std::size_t i) {
    for (++i; s[i] != '"'; ++i)
        if (s[i] == '\\') ++i;
    return i + 1;
}

// What a string means, which stands in sTexto with its quotation marks.
std::string Decodifica(std::string_view sTexto) {
    if (sTexto.find('\\') != std::string_view::npos) return nlohmann::json::parse(sTexto).get<std::string>();
    return std::string(sTexto.substr(1, sTexto.size() - 2));
}

// What is wrong with a line that is no JSON.
std::string DescreveErro(std::string_view sLinha) {
    try {
        const nlohmann::json json = nlohmann::json::parse(sLinha);
        return "JSON inválido";
    } catch (const nlohmann::json::parse_error& rErro) {
        return "JSON inválido no byte " + std::to_string(rErro.byte);
    } catch (const nlohmann::json::exception&) {
        return "JSON com um número fora da faixa";
    }
}

std::string Inclui(std::string_view sNome, std::string_view sValor, std::vector<SMembroJson>& rLista) {
    SMembroJson membro{Decodifica(sNome), sValor};
    const auto bIgual = [&](const SMembroJson& rOutro) { return rOutro.sNome == membro.sNome; };
    if (std::any_of(rLista.begin(), rLista.end(), bIgual)) return "campo \"" + membro.sNome + "\" repetido";
    if (rLista.size() == k_uiMembros) return "campos demais";
    rLista.push_back(std::move(membro));
    return {};
}

// False where the text is no JSON; that counts more than *psErro, so the text is read to its end.
bool LeMembros(CXVVarreduraJson& rVarredura, std::vector<SMembroJson>& rLista, std::string* psErro) {
    std::string_view sNome;
    std::string_view sValor;
    if (!rVarredura.Consome('{')) {
        *psErro = "a linha não é um objeto JSON";
        return rVarredura.LeValor(&sValor);
    }
    if (rVarredura.Consome('}')) return true;
    do {
        if (!rVarredura.LeTexto(&sNome) || !rVarredura.Consome(':') || !rVarredura.LeValor(&sValor))
            return false;
        if (psErro->empty()) *psErro = Inclui(sNome, sValor, rLista);
    } while (rVarredura.Consome(','));
    return rVarredura.Consome('}');
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
    return Decodifica(sValor);
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
        if (static_cast<unsigned char>(sValor[i]) > ' ') sCompacto += sValor[i];
        ++i;
    }
    return sCompacto;
}

std::string XVSeparaMembros(std::string_view sLinha, std::vector<SMembroJson>* pLista) {
    pLista->clear();
    if (sLinha.starts_with(k_sBom)) sLinha.remove_prefix(k_sBom.size());
    CXVVarreduraJson varredura(sLinha);
    std::string sErro;
    if (LeMembros(varredura, *pLista, &sErro) && varredura.EstaNoFim()) return sErro;
    pLista->clear();
    return DescreveErro(sLinha);
}
