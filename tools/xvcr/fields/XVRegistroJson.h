// Records to JSON and back, under the field names of the store's records.
//
// Written: keys, DMCs and external ids as decimal texts; date-times as ISO 8601, empty for none; enumerations
// by name, by number where the value has none; texts as strings, and those that are not valid UTF-8 in base64
// under "<field>_base64". The text form of "regDmc" stands beside it as "sDmc".
// Read: the same forms, numbers for numbers, and an object or array for a text, which is kept without white
// space but otherwise as it stands.
#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/xvcr/fields/XVCampos.h"
#include "tools/xvcr/text/XVLinhaJson.h"

using XVJson = nlohmann::ordered_json;

struct SErroCampo {
    std::string sCampo;
    std::string sMensagem;
};

namespace XVRegistroJson {

void Inclui(XVJson& rJson, std::string_view sCampo, const std::string& sTexto);
void Inclui(XVJson& rJson, std::string_view sCampo, REG_XVDMC regDmc);
// An object of nothing but its DMC, as text: a search of a million writes a million of them.
void AnexaObjeto(std::string& rTexto, REG_XVDMC regDmc);
void Inclui(XVJson& rJson, std::string_view sCampo, REG_XVDMAHMSUTC regDataHora);
void Inclui(XVJson& rJson, std::string_view sCampo, XVUInt64 uiValor);
void Inclui(XVJson& rJson, std::string_view sCampo, EEnumeracao eEnumeracao, XVUInt ulValor);

// The value of one field as a person reads it.
std::string ParaPessoa(const std::string& sTexto);
std::string ParaPessoa(REG_XVDMC regDmc);
std::string ParaPessoa(REG_XVDMAHMSUTC regDataHora);
std::string ParaPessoa(XVUInt64 uiValor);
std::string ParaPessoa(EEnumeracao eEnumeracao, XVUInt ulValor);

// A member of a JSON object into one field; the explanation of what is wrong, or an empty text.
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, std::string* psTexto);
[[nodiscard]] std::string LeMembroBase64(const SMembroJson& rMembro, std::string* psTexto);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, REG_XVDMC* pDmc);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, REG_XVDMAHMSUTC* pDataHora);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, XVUInt64* puiValor);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, XVUInt* pulValor);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, XVByte* pucValor);
[[nodiscard]] std::string LeMembro(const SMembroJson& rMembro, EEnumeracao eEnumeracao, XVUInt* pulValor);

inline constexpr std::string_view k_sSufixoBase64 = "_base64";

// Calls fVisita(field, value) for each field; texts only where bTextos.
template <class T, class FVisita>
void Visita(const T& rDados, bool bTextos, FVisita&& fVisita) {
    for (const TCampo<T>& rCampo : TCampos<T>::k_aLista)
        std::visit(
            [&](auto membro) {
                using TValor = std::decay_t<decltype(rDados.*membro)>;
                if (std::is_same_v<TValor, std::string> && !bTextos) return;
                fVisita(rCampo, rDados.*membro);
            },
            rCampo.membro);
}

template <class T>
XVJson ParaJson(const T& rDados, bool bTextos = true) {
    XVJson json = XVJson::object();
    Visita(rDados, bTextos, [&](const TCampo<T>& rCampo, const auto& rValor) {
        if constexpr (std::is_same_v<std::decay_t<decltype(rValor)>, XVUInt>) {
            if (rCampo.eEnumeracao != EEnumeracao::eNenhuma)
                Inclui(json, rCampo.sNome, rCampo.eEnumeracao, rValor);
            else
                json[std::string(rCampo.sNome)] = rValor;
        } else if constexpr (std::is_same_v<std::decay_t<decltype(rValor)>, XVByte>) {
            json[std::string(rCampo.sNome)] = rValor;
        } else {
            Inclui(json, rCampo.sNome, rValor);
        }
    });
    return json;
}

using XVListaPares = std::vector<std::pair<std::string, std::string>>;

template <class T>
XVListaPares ParaPares(const T& rDados, bool bTextos = true) {
    XVListaPares lista;
    Visita(rDados, bTextos, [&](const TCampo<T>& rCampo, const auto& rValor) {
        if constexpr (std::is_same_v<std::decay_t<decltype(rValor)>, XVUInt>) {
            if (rCampo.eEnumeracao != EEnumeracao::eNenhuma) {
                lista.emplace_back(rCampo.sRotulo, ParaPessoa(rCampo.eEnumeracao, rValor));
                return;
            }
        }
        if constexpr (std::is_integral_v<std::decay_t<decltype(rValor)>>)
            lista.emplace_back(rCampo.sRotulo, ParaPessoa(XVUInt64{rValor}));
        else
            lista.emplace_back(rCampo.sRotulo, ParaPessoa(rValor));
    });
    return lista;
}

namespace Interno {

template <class T>
std::string LeCampo(const SMembroJson& rMembro, const TCampo<T>& rCampo, bool bBase64, T* pDados) {
    return std::visit(
        [&](auto membro) -> std::string {
            auto& rValor = pDados->*membro;
            using TValor = std::decay_t<decltype(rValor)>;
            if constexpr (std::is_same_v<TValor, std::string>) {
                if (bBase64) return LeMembroBase64(rMembro, &rValor);
            }
            if constexpr (std::is_same_v<TValor, XVUInt>) {
                if (rCampo.eEnumeracao != EEnumeracao::eNenhuma)
                    return LeMembro(rMembro, rCampo.eEnumeracao, &rValor);
            }
            return LeMembro(rMembro, &rValor);
        },
        rCampo.membro);
}

template <class T>
bool EhDoMembro(const TCampo<T>& rCampo, const SMembroJson& rMembro, bool* pbBase64) {
    const std::string_view sNome = rMembro.sNome;
    // Lengths differ mostly, which costs no look at the characters.
    *pbBase64 = sNome.size() == rCampo.sNome.size() + k_sSufixoBase64.size() &&
                sNome.ends_with(k_sSufixoBase64) && sNome.starts_with(rCampo.sNome) &&
                std::holds_alternative<std::string T::*>(rCampo.membro);
    return *pbBase64 || sNome == rCampo.sNome || (sNome == "sDmc" && rCampo.sNome == "regDmc");
}

template <class T>
bool TemDmcIgual(const TCampo<T>& rCampo, const T& rUm, const T& rOutro) {
    const auto* pMembro = std::get_if<REG_XVDMC T::*>(&rCampo.membro);
    return pMembro != nullptr && rUm.**pMembro == rOutro.**pMembro;
}

}  // namespace Interno

// The members into the record; names for which fIgnora is true are left to the caller. The field and the
// explanation of the first fault, or an empty explanation. "sDmc" stands for "regDmc"; both must agree.
template <class T, class FIgnora>
[[nodiscard]] SErroCampo DeMembros(const std::vector<SMembroJson>& listaMembros, FIgnora&& fIgnora,
                                   T* pDados) {
    std::vector<std::string_view> listaLidos;
    listaLidos.reserve(listaMembros.size());
    for (const SMembroJson& rMembro : listaMembros) {
        if (fIgnora(rMembro)) continue;
        bool bBase64 = false;
        const auto bDoMembro = [&](const TCampo<T>& rCampo) {
            return Interno::EhDoMembro(rCampo, rMembro, &bBase64);
        };
        const auto pCampo = std::find_if(TCampos<T>::k_aLista.begin(), TCampos<T>::k_aLista.end(), bDoMembro);
        if (pCampo == TCampos<T>::k_aLista.end()) return {rMembro.sNome, "campo desconhecido"};
        const bool bRepetido =
            std::find(listaLidos.begin(), listaLidos.end(), pCampo->sNome) != listaLidos.end();
        std::optional<T> dadosRepetidos;
        if (bRepetido) dadosRepetidos.emplace();
        std::string sErro =
            Interno::LeCampo(rMembro, *pCampo, bBase64, bRepetido ? &*dadosRepetidos : pDados);
        if (sErro.empty() && bRepetido && !Interno::TemDmcIgual(*pCampo, *dadosRepetidos, *pDados))
            sErro = "já dado com outro valor nesta linha";
        if (!sErro.empty()) return {rMembro.sNome, std::move(sErro)};
        listaLidos.push_back(pCampo->sNome);
    }
    return {};
}

}  // namespace XVRegistroJson
