#include "tools/xvcr/text/XVLinhaJson.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "tools/xvcr/text/XVVarreduraJson.h"

namespace {

constexpr std::string_view k_sBom = "\xEF\xBB\xBF";
constexpr std::size_t k_uiMembros = 256;  // no record has as many

void AnexaUtf8(std::string& rTexto, unsigned uiCaractere) {
    const auto anexa = [&](unsigned uiByte) { rTexto += static_cast<char>(uiByte); };
    const auto continua = [&](unsigned uiDesloca) { anexa(0x80U | (uiCaractere >> uiDesloca & 0x3FU)); };
    if (uiCaractere < 0x80) return anexa(uiCaractere);
    if (uiCaractere < 0x800) {
        anexa(0xC0U | uiCaractere >> 6);
        return continua(0);
    }
    if (uiCaractere < 0x10000) {
        anexa(0xE0U | uiCaractere >> 12);
    } else {
        anexa(0xF0U | uiCaractere >> 18);
        continua(12);
    }
    continua(6);
    continua(0);
}

unsigned Hexadecimal(std::string_view sDigitos) {
    unsigned uiValor = 0;
    std::from_chars(sDigitos.data(), sDigitos.data() + sDigitos.size(), uiValor, 16);
    return uiValor;
}

// The character of the escape whose backslash stands at i; i is then behind it. The halves of a pair are
// known to stand together.
void AnexaEscape(std::string& rTexto, std::string_view s, std::size_t& i) {
    constexpr std::string_view k_sLetras = "bfnrt";
    constexpr std::string_view k_sSentidos = "\b\f\n\r\t";
    const char c = s[i + 1];
    i += 2;
    if (c != 'u') {
        const std::size_t uiLetra = k_sLetras.find(c);
        rTexto += uiLetra == std::string_view::npos ? c : k_sSentidos[uiLetra];
        return;
    }
    unsigned uiCaractere = Hexadecimal(s.substr(i, 4));
    i += 4;
    if ((uiCaractere & 0xFC00U) == 0xD800U) {
        uiCaractere = 0x10000U + ((uiCaractere & 0x3FFU) << 10) + (Hexadecimal(s.substr(i + 2, 4)) & 0x3FFU);
        i += 6;
    }
    AnexaUtf8(rTexto, uiCaractere);
}

// What a string means, which stands in sTexto with its quotation marks and was gone over before.
std::string Decodifica(std::string_view sTexto) {
    const std::string_view s = sTexto.substr(1, sTexto.size() - 2);
    std::string sDecodificado;
    sDecodificado.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        const std::size_t uiBarra = std::min(s.find('\\', i), s.size());
        sDecodificado += s.substr(i, uiBarra - i);
        i = uiBarra;
        if (i < s.size()) AnexaEscape(sDecodificado, s, i);
    }
    return sDecodificado;
}

// Behind the closing quotation mark of the string that begins at i. The next mark is looked for once and not
// at every escape before it: a string may be all escapes and as long as a line.
std::size_t FimDoTexto(std::string_view s, std::size_t i) {
    std::size_t uiAspas = s.find('"', ++i);
    for (;;) {
        const std::size_t uiBarra = s.substr(i, uiAspas - i).find('\\');
        if (uiBarra == std::string_view::npos) return uiAspas + 1;
        i += uiBarra + 2;
        if (i > uiAspas) uiAspas = s.find('"', i);
    }
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

// Whitespace means something in strings only. The value was gone over before: every string in it ends.
std::string SMembroJson::GetCompacto() const {
    std::string sCompacto;
    sCompacto.reserve(sValor.size());
    for (std::size_t i = 0; i < sValor.size();) {
        const std::size_t uiInicio = i;
        if (static_cast<unsigned char>(sValor[i]) > ' ') {
            i = sValor[i] == '"' ? FimDoTexto(sValor, i) : i + 1;
            sCompacto += sValor.substr(uiInicio, i - uiInicio);
        } else {
            ++i;
        }
    }
    return sCompacto;
}

std::string XVSeparaMembros(std::string_view sLinha, std::vector<SMembroJson>* pLista) {
    constexpr std::size_t k_uiQuaseSempre = 24;  // the fields of an integration
    pLista->clear();
    pLista->reserve(k_uiQuaseSempre);
    if (sLinha.starts_with(k_sBom)) sLinha.remove_prefix(k_sBom.size());
    CXVVarreduraJson varredura(sLinha);
    std::string sErro;
    if (LeMembros(varredura, *pLista, &sErro) && varredura.EstaNoFim()) return sErro;
    pLista->clear();
    return DescreveErro(sLinha);
}
