#include "tools/xvcr/fields/XVRegistroJson.h"

#include "support/values/XVTextoDecimal.h"
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVLeituraValor.h"
#include "tools/xvcr/text/XVTextoEntrada.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

using ETipo = SMembroJson::ETipo;

constexpr const char* k_szTipoErrado = "tipo de valor errado";

// A number, or a text that holds one.
template <class T>
std::string LeNumero(const SMembroJson& rMembro, T* pValor) {
    switch (rMembro.GetTipo()) {
        case ETipo::eNumero:
            return XVLeituraValor::Le(rMembro.sValor, pValor);
        case ETipo::eTexto:
            return XVLeituraValor::Le(rMembro.GetTexto(), pValor);
        default:
            return k_szTipoErrado;
    }
}

}  // namespace

namespace XVRegistroJson {

void Inclui(XVJson& rJson, std::string_view sCampo, const std::string& sTexto) {
    std::string sNome(sCampo);
    if (XVTextoTela::EhUtf8(sTexto))
        rJson[sNome] = sTexto;
    else
        rJson[sNome + std::string(k_sSufixoBase64)] = XVBase64::Codifica(sTexto);
}

void Inclui(XVJson& rJson, std::string_view sCampo, REG_XVDMC regDmc) {
    rJson[std::string(sCampo)] = std::to_string(regDmc.uiValor);
    if (sCampo == "regDmc") rJson["sDmc"] = regDmc.ToString();
}

void AnexaObjeto(std::string& rTexto, REG_XVDMC regDmc) {
    rTexto += R"({"regDmc":")";
    XVAnexaDecimal(rTexto, regDmc.uiValor);
    rTexto += R"(","sDmc":")";
    regDmc.AnexaA(rTexto);
    rTexto += R"("})";
}

void Inclui(XVJson& rJson, std::string_view sCampo, REG_XVDMAHMSUTC regDataHora) {
    const bool bValida = regDataHora.EhValida();
    rJson[std::string(sCampo)] = bValida ? regDataHora.ToISO8601() : std::to_string(regDataHora.uiValor);
}

void Inclui(XVJson& rJson, std::string_view sCampo, XVUInt64 uiValor) {
    rJson[std::string(sCampo)] = std::to_string(uiValor);
}

void Inclui(XVJson& rJson, std::string_view sCampo, EEnumeracao eEnumeracao, XVUInt ulValor) {
    const std::string_view sNome = XVEnumeracoesTexto::GetNome(eEnumeracao, ulValor);
    if (sNome.empty())
        rJson[std::string(sCampo)] = ulValor;
    else
        rJson[std::string(sCampo)] = sNome;
}

std::string ParaPessoa(const std::string& sTexto) {
    return XVTextoTela::Escapa(sTexto, true);
}

std::string ParaPessoa(REG_XVDMC regDmc) {
    return regDmc.EhNulo() ? "-" : regDmc.ToString();
}

std::string ParaPessoa(REG_XVDMAHMSUTC regDataHora) {
    if (regDataHora.EhNula()) return "-";
    return regDataHora.EhValida() ? regDataHora.ToISO8601() : std::to_string(regDataHora.uiValor);
}

std::string ParaPessoa(XVUInt64 uiValor) {
    return std::to_string(uiValor);
}

std::string ParaPessoa(EEnumeracao eEnumeracao, XVUInt ulValor) {
    return XVEnumeracoesTexto::GetNomeCurto(eEnumeracao, ulValor);
}

std::string LeMembro(const SMembroJson& rMembro, std::string* psTexto) {
    switch (rMembro.GetTipo()) {
        case ETipo::eTexto:
            *psTexto = rMembro.GetTexto();
            break;
        case ETipo::eComposto:
            *psTexto = rMembro.GetCompacto();
            break;
        case ETipo::eNulo:
            psTexto->clear();
            break;
        default:
            return k_szTipoErrado;
    }
    return XVConfereTexto(*psTexto);
}

std::string LeMembroBase64(const SMembroJson& rMembro, std::string* psTexto) {
    if (rMembro.GetTipo() != ETipo::eTexto) return k_szTipoErrado;
    if (!XVBase64::Decodifica(rMembro.GetTexto(), psTexto)) return "base64 inválido";
    return XVConfereTexto(*psTexto);
}

std::string LeMembro(const SMembroJson& rMembro, REG_XVDMC* pDmc) {
    if (rMembro.GetTipo() != ETipo::eNulo) return LeNumero(rMembro, pDmc);
    *pDmc = {};
    return {};
}

std::string LeMembro(const SMembroJson& rMembro, REG_XVDMAHMSUTC* pDataHora) {
    if (rMembro.GetTipo() != ETipo::eNulo) return LeNumero(rMembro, pDataHora);
    *pDataHora = {};
    return {};
}

std::string LeMembro(const SMembroJson& rMembro, XVUInt64* puiValor) {
    return LeNumero(rMembro, puiValor);
}
std::string LeMembro(const SMembroJson& rMembro, XVUInt* pulValor) {
    return LeNumero(rMembro, pulValor);
}

std::string LeMembro(const SMembroJson& rMembro, XVByte* pucValor) {
    if (rMembro.GetTipo() != ETipo::eLogico) return LeNumero(rMembro, pucValor);
    *pucValor = rMembro.sValor == "true" ? 1 : 0;
    return {};
}

std::string LeMembro(const SMembroJson& rMembro, EEnumeracao eEnumeracao, XVUInt* pulValor) {
    switch (rMembro.GetTipo()) {
        case ETipo::eNumero:
            return XVLeituraValor::Le(rMembro.sValor, eEnumeracao, pulValor);
        case ETipo::eTexto:
            return XVLeituraValor::Le(rMembro.GetTexto(), eEnumeracao, pulValor);
        default:
            return k_szTipoErrado;
    }
}

}  // namespace XVRegistroJson
