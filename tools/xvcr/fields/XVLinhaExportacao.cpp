#include "tools/xvcr/fields/XVLinhaExportacao.h"

#include "support/values/XVTextoDecimal.h"
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVTextoJson.h"
#include "tools/xvcr/text/XVTextoTela.h"

template <>
struct TCampos<SInicioExportacao> {
    using S = SInicioExportacao;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{C{"versao", "Versão", &S::ulVersao},
                                         C{"empresa", "Empresa", &S::sEmpresa}};
};

template <>
struct TCampos<SFimExportacao> {
    using S = SFimExportacao;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"integracoes", "Integrações", &S::ulIntegracoes},
        C{"substituidas", "Substituídas", &S::ulSubstituidas},
        C{"vagas", "Vagas", &S::ulVagas},
        C{"mapa", "Mapa", &S::ulMapa},
        C{"datasHoras", "Datas", &S::ulDatasHoras},
        C{"soma", "Soma", &S::uiSoma},
    };
};

namespace {

using ETipo = SIntegracaoTransportada::ETipo;

constexpr std::string_view k_sInicio = R"({"linha":"inicio")";
constexpr std::string_view k_sFim = R"({"linha":"fim")";

constexpr std::string_view k_sPosicaoIndice = "posicaoIndice";  // what an integration has beside its fields
constexpr std::string_view k_asTipos[] = {"integracao", "substituida", "vaga"};  // as ETipo

void AnexaValor(std::string& rPara, EEnumeracao eEnumeracao, XVUInt ulValor) {
    const std::string_view sNome = XVEnumeracoesTexto::GetNome(eEnumeracao, ulValor);
    if (sNome.empty()) return XVAnexaDecimal(rPara, XVUInt64{ulValor});
    XVTextoJson::AnexaTexto(rPara, sNome);
}

void AnexaEntreAspas(std::string& rPara, XVUInt64 uiValor) {
    rPara += '"';
    XVAnexaDecimal(rPara, uiValor);
    rPara += '"';
}

void AnexaNome(std::string& rPara, std::string_view sNome, std::string_view sSufixo = {}) {
    rPara += ",\"";
    rPara += sNome;
    rPara += sSufixo;
    rPara += "\":";
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao, const std::string& sTexto) {
    if (sTexto.empty()) return;
    const bool bUtf8 = XVTextoTela::EhUtf8(sTexto);
    AnexaNome(rPara, sNome, bUtf8 ? "" : XVRegistroJson::k_sSufixoBase64);
    XVTextoJson::AnexaTexto(rPara, bUtf8 ? sTexto : XVBase64::Codifica(sTexto));
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao, REG_XVDMC regDmc) {
    if (regDmc.uiValor == 0) return;
    AnexaNome(rPara, sNome);
    // The text form does not hold what only an impossible key has.
    if (regDmc.EhNulo() || !regDmc.EhValido()) return AnexaEntreAspas(rPara, regDmc.uiValor);
    rPara += '"';
    regDmc.AnexaA(rPara);
    rPara += '"';
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao, REG_XVDMAHMSUTC regDataHora) {
    if (regDataHora.EhNula()) return;
    AnexaNome(rPara, sNome);
    if (!regDataHora.EhValida()) return AnexaEntreAspas(rPara, regDataHora.uiValor);
    XVTextoJson::AnexaTexto(rPara, regDataHora.ToISO8601());
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao, XVUInt64 uiValor) {
    if (uiValor == 0) return;
    AnexaNome(rPara, sNome);
    AnexaEntreAspas(rPara, uiValor);
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao eEnumeracao, XVUInt ulValor) {
    if (ulValor == 0) return;
    AnexaNome(rPara, sNome);
    AnexaValor(rPara, eEnumeracao, ulValor);
}

void AnexaCampo(std::string& rPara, std::string_view sNome, EEnumeracao, XVByte ucValor) {
    AnexaCampo(rPara, sNome, EEnumeracao::eNenhuma, XVUInt{ucValor});
}

template <class T>
void AnexaCampos(std::string& rPara, const T& rDados) {
    XVRegistroJson::Visita(rDados, true, [&](const TCampo<T>& rCampo, const auto& rValor) {
        AnexaCampo(rPara, rCampo.sNome, rCampo.eEnumeracao, rValor);
    });
}

template <class T>
void AnexaLinha(std::string& rPara, std::string_view sTipo, const T& rDados) {
    rPara += R"({"linha":")";
    rPara += sTipo;
    rPara += '"';
    AnexaCampos(rPara, rDados);
    rPara += '}';
}

bool EhDoTipo(const SMembroJson& rMembro) {
    return rMembro.sNome == "linha";
}

bool EhDoLugar(const SMembroJson& rMembro) {
    return rMembro.sNome == k_sPosicaoIndice;
}

template <class T>
SErroCampo LeSimples(const std::vector<SMembroJson>& listaMembros, TLinhaExportacao* pLinha) {
    return XVRegistroJson::DeMembros(listaMembros, EhDoTipo, &pLinha->emplace<T>());
}

SErroCampo LeIntegracao(const std::vector<SMembroJson>& listaMembros, ETipo eTipo, TLinhaExportacao* pLinha) {
    auto& rIntegracao = pLinha->emplace<SIntegracaoTransportada>();
    rIntegracao.eTipo = eTipo;
    const auto fIgnora = [&](const SMembroJson& rMembro) {
        return EhDoTipo(rMembro) || (eTipo == ETipo::eInteira && EhDoLugar(rMembro));
    };
    SErroCampo erro = XVRegistroJson::DeMembros(listaMembros, fIgnora, &rIntegracao.dados);
    if (!erro.sMensagem.empty()) return erro;
    CXVDadosCR_IntegracaoMiddleware soChave;
    soChave.regDmc = rIntegracao.dados.regDmc;
    if (eTipo == ETipo::eVaga && !(rIntegracao.dados == soChave))
        return {"linha", "só regDmc vale com \"vaga\""};
    for (const SMembroJson& rMembro : listaMembros) {
        if (eTipo != ETipo::eInteira || !EhDoLugar(rMembro)) continue;
        std::string sErro = XVRegistroJson::LeMembro(rMembro, &rIntegracao.ulPosicaoIndice);
        if (!sErro.empty()) return {rMembro.sNome, std::move(sErro)};
    }
    return {};
}

}  // namespace

void SContagemExportacao::Conta(ETipo eTipo) {
    ++(eTipo == ETipo::eInteira ? ulIntegracoes : eTipo == ETipo::eSubstituida ? ulSubstituidas : ulVagas);
}

namespace XVLinhaExportacao {

void Anexa(std::string& rPara, const SInicioExportacao& rInicio) {
    AnexaLinha(rPara, "inicio", rInicio);
}

void Anexa(std::string& rPara, const SIntegracaoTransportada& rIntegracao) {
    rPara += R"({"linha":")";
    rPara += k_asTipos[static_cast<std::size_t>(rIntegracao.eTipo)];
    rPara += '"';
    AnexaCampo(rPara, k_sPosicaoIndice, EEnumeracao::eNenhuma, rIntegracao.ulPosicaoIndice);
    AnexaCampos(rPara, rIntegracao.dados);
    rPara += '}';
}

void Anexa(std::string& rPara, const CXVDadosMapa& rDados) {
    AnexaLinha(rPara, "mapa", rDados);
}
void Anexa(std::string& rPara, const CXVDadosDataHora& rDados) {
    AnexaLinha(rPara, "dataHora", rDados);
}
void Anexa(std::string& rPara, const SFimExportacao& rFim) {
    AnexaLinha(rPara, "fim", rFim);
}

SErroCampo Le(std::string_view sLinha, TLinhaExportacao* pLinha) {
    std::vector<SMembroJson> listaMembros;
    std::string sErro = XVSeparaMembros(sLinha, &listaMembros);
    if (!sErro.empty()) return {"", std::move(sErro)};
    const auto it = std::find_if(listaMembros.begin(), listaMembros.end(), EhDoTipo);
    const bool bTexto = it != listaMembros.end() && it->GetTipo() == SMembroJson::ETipo::eTexto;
    const std::string sTipo = bTexto ? it->GetTexto() : "";
    if (sTipo == "inicio") return LeSimples<SInicioExportacao>(listaMembros, pLinha);
    if (sTipo == "mapa") return LeSimples<CXVDadosMapa>(listaMembros, pLinha);
    if (sTipo == "dataHora") return LeSimples<CXVDadosDataHora>(listaMembros, pLinha);
    if (sTipo == "fim") return LeSimples<SFimExportacao>(listaMembros, pLinha);
    const auto pTipo = std::find(std::begin(k_asTipos), std::end(k_asTipos), sTipo);
    if (pTipo != std::end(k_asTipos))
        return LeIntegracao(listaMembros, static_cast<ETipo>(pTipo - std::begin(k_asTipos)), pLinha);
    return {"linha", "não é de uma exportação desta versão"};
}

bool EhInicio(std::string_view sLinha) {
    return sLinha.starts_with(k_sInicio);
}
bool EhFim(std::string_view sLinha) {
    return sLinha.starts_with(k_sFim);
}

}  // namespace XVLinhaExportacao
