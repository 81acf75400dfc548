#include "tests/middleware/XVOperacoesLoja.h"

#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

REG_XVDMC Dmc(unsigned uiDia, unsigned uiPonteiro) {
    return {XVChaveDmc(XVDma(2024, 3, uiDia), uiPonteiro)};
}

HRESULT Inclui(CBaseMiddleware& rLoja, XVUInt64 uiChave, XVUInt eSistema, const char* pszMarca) {
    CXVIntegracaoTeste integracao(uiChave, eSistema, eXVSMiddleware_Enviado);
    integracao.reg.uiBaseDadosTerceiro = 7;
    integracao.reg.ulPonteiroFilial = 3;
    if (*pszMarca != '\0') {
        const std::string sMarca = pszMarca;
        integracao.Textos("{\"" + sMarca + "\":1}" + std::string(700, 'j'), sMarca + " enviada",
                          "{\"" + sMarca + "\":2}" + std::string(300, 'r'));
    }
    REG_XVDMC regDmc;
    return rLoja.GravaIntegracao(&regDmc, integracao.Ptr());
}

HRESULT Altera(CBaseMiddleware& rLoja, REG_XVDMC regDmc, const char* pszRetorno, XVUInt64 uiChave = 2,
               XVUInt eSistema = Mercos) {
    CXVIntegracaoTeste integracao(uiChave, eSistema, eXVSMiddleware_Erro);
    integracao.reg.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
    integracao.reg.eTipoTransacao = eXVSMiddleware_Alteracao;
    integracao.reg.uiBaseDadosTerceiro = 8;
    integracao.Textos("{\"alterada\":true}" + std::string(600, 'a'), "alterada", pszRetorno);
    return rLoja.GravaIntegracao(&regDmc, integracao.Ptr());
}

HRESULT Status(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eStatus,
               const std::string& sRetorno) {
    const std::string sMensagem = "o sistema respondeu";
    return rLoja.GravaStatusIntegracao(XVStatusPS(regDmc, uiChave, eStatus, sMensagem, sRetorno));
}

tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS Chave(XVUInt64 uiId, unsigned uiRegistro) {
    return {uiId, XVRegistroMapa(uiRegistro), 1, k_eTipoMapa, Mercos, Dmc(15, 1)};
}

HRESULT DataHora(CBaseMiddleware& rLoja, XVUInt eTipo, unsigned uiHora) {
    return rLoja.GravaDataHoraIntegracaoTerceiro(
        {{XVDataHora(XVDma(2024, 3, 15), uiHora)}, eTipo, Mercos, eXVSMiddleware_DataUltimaBusca, {}});
}

}  // namespace

bool XVPovoaLoja(CBaseMiddleware& rLoja, const std::function<void(unsigned uiDia)>& fnSetDia) {
    fnSetDia(13);
    bool bOk = SUCCEEDED(Inclui(rLoja, 3, Mercos, "treze"));
    bOk = bOk && SUCCEEDED(Inclui(rLoja, 0, Mercos, ""));
    fnSetDia(14);
    bOk = bOk && SUCCEEDED(Inclui(rLoja, 4, OfficialBank, "quatorze"));
    fnSetDia(15);
    bOk = bOk && SUCCEEDED(Inclui(rLoja, 1, Mercos, "quinze"));
    bOk = bOk && SUCCEEDED(Inclui(rLoja, 500, OfficialBank, "banco"));
    bOk = bOk && SUCCEEDED(Inclui(rLoja, 5, Mercos, "outra"));
    bOk = bOk && SUCCEEDED(rLoja.GravaChaveRegistroTelvoParaTerceiro(Chave(100, 1)));
    bOk = bOk && SUCCEEDED(rLoja.GravaChaveRegistroTelvoParaTerceiroPendente(Chave(0, 2)));
    return bOk && SUCCEEDED(DataHora(rLoja, k_aTiposDataHora[0], 8));
}

const std::vector<SOperacaoLoja>& XVOperacoesLoja() {
    using L = CBaseMiddleware;
    constexpr auto k_eComum = ELojaInicial::eComum;
    constexpr XVUInt k_eSucesso = eXVSMiddleware_Sucesso;
    static const std::string s_sRetorno = "{\"retorno\":" + std::string(500, '1') + "}";
    static const std::vector<SOperacaoLoja> s_lista{
        {"PrimeiraDaLoja", ELojaInicial::eAusente, 15, [](L& r) { return Inclui(r, 1, Mercos, "primeira"); }},
        {"PrimeiraDoDia", k_eComum, 16, [](L& r) { return Inclui(r, 2, Mercos, "primeira"); }},
        {"PosteriorDoDia", k_eComum, 15, [](L& r) { return Inclui(r, 1, Mercos, "posterior"); }},
        {"SemTextos", k_eComum, 15, [](L& r) { return Inclui(r, 0, Mercos, ""); }},
        {"BancoTomaAPosicao", k_eComum, 15, [](L& r) { return Inclui(r, 500, OfficialBank, "nova"); }},
        {"BancoComChaveNova", k_eComum, 15, [](L& r) { return Inclui(r, 600, OfficialBank, "chave nova"); }},
        {"BancoComOutraChave", k_eComum, 15, [](L& r) { return Inclui(r, 601, OfficialBank, "outra"); }},
        {"AlteracaoParaOBanco", k_eComum, 15,
         [](L& r) { return Altera(r, Dmc(13, 2), "{}", 600, OfficialBank); }},
        {"AlteracaoComRetorno", k_eComum, 15,
         [](L& r) { return Altera(r, Dmc(15, 1), "{\"retorno\":\"novo\"}"); }},
        {"AlteracaoSemRetorno", k_eComum, 15, [](L& r) { return Altera(r, Dmc(15, 1), ""); }},
        {"AlteracaoDeOutroDia", k_eComum, 15, [](L& r) { return Altera(r, Dmc(13, 2), "{}"); }},
        {"OrigemDepois", k_eComum, 15, [](L& r) { return r.PoeOrigem(Dmc(15, 1), Dmc(13, 2)); }},
        {"StatusPorDmcComRetorno", k_eComum, 15,
         [](L& r) { return Status(r, Dmc(15, 1), 0, k_eSucesso, s_sRetorno); }},
        {"StatusPorDmcSemRetorno", k_eComum, 15,
         [](L& r) { return Status(r, Dmc(15, 1), 0, eXVSMiddleware_Cancelado, ""); }},
        {"StatusPorChaveComRetorno", k_eComum, 15,
         [](L& r) { return Status(r, {}, 3, k_eSucesso, s_sRetorno); }},
        {"StatusPorChaveSemRetorno", k_eComum, 15, [](L& r) { return Status(r, {}, 1, k_eSucesso, ""); }},
        {"MapaInclui", k_eComum, 15,
         [](L& r) { return r.GravaChaveRegistroTelvoParaTerceiro(Chave(101, 3)); }},
        {"MapaAltera", k_eComum, 15,
         [](L& r) { return r.GravaChaveRegistroTelvoParaTerceiro(Chave(200, 1)); }},
        {"MapaPendente", k_eComum, 15,
         [](L& r) { return r.GravaChaveRegistroTelvoParaTerceiroPendente(Chave(0, 4)); }},
        {"DataHoraInclui", k_eComum, 15, [](L& r) { return DataHora(r, k_aTiposDataHora[1], 9); }},
        {"DataHoraAltera", k_eComum, 15, [](L& r) { return DataHora(r, k_aTiposDataHora[0], 10); }},
        {"AberturaSemCabecalho", ELojaInicial::eSemCabecalho, 15, [](L&) { return S_OK; }},
        {"AlteracaoSemCabecalho", ELojaInicial::eSemCabecalho, 15,
         [](L& r) { return Altera(r, Dmc(15, 1), "{}"); }},
    };
    return s_lista;
}

const SOperacaoLoja& XVOperacaoLoja(std::string_view sNome) {
    return *std::ranges::find(XVOperacoesLoja(), sNome, &SOperacaoLoja::pszNome);
}
