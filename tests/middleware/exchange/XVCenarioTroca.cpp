#include "tests/middleware/exchange/XVCenarioTroca.h"

#include <algorithm>

namespace {

XVProvedorTexto TextoProvedor(const std::string& sTexto) {
    return {sTexto.data(), sTexto.size()};
}

std::string Descreve(SDadosTeste dados) {
    dados.reg.sRegistroJSON = TextoProvedor(dados.sJSON);
    dados.reg.sMensagemIntegracao = TextoProvedor(dados.sMensagem);
    dados.reg.sJSONRetornoIntegracao = TextoProvedor(dados.sRetorno);
    return XVDescreve(dados.reg);
}

}  // namespace

std::string SDadosTeste::Chamada(const std::string& sOperacao) const {
    return sOperacao + " MATRIZ/7/99 " + Descreve(*this);
}

std::string SDadosTeste::Integracao() const {
    return Descreve(*this) + " inclusor=" + std::to_string(uiUsuarioInclusao) +
           " cancelador=" + std::to_string(uiUsuarioCancelamento);
}

CXVCenarioTroca::CXVCenarioTroca()
    : m_rGravador(*m_Biblioteca.GetFuncao<PFXVGravador>(k_pszFuncaoGravador)()), m_pLoja(Abre()) {
    m_rGravador = {};
    m_rGravador.iResultadoLista = 1;
    m_rGravador.mapParametros["Posterior"].iResultado = m_rGravador.mapParametros["Atualiza"].iResultado = 1;
}

CXVCenarioTroca::~CXVCenarioTroca() {
    EXPECT_EQ(m_rGravador.lBuffersVivos, 0) << "every buffer went back to the library";
    m_rGravador = {};
}

tagREG_CR_INTEGRACAO_MIDDLEWAREPS CXVCenarioTroca::Pedido(XVUInt eTransacao) {
    static const std::string s_sIntruso = "do chamador";
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmcIntegracaoOrigem = {k_uiOrigem};
    reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    reg.eTipoTransacao = eTransacao;
    reg.eSistemaIntegracao = Mercos;
    reg.ulPonteiroFilial = 3;
    reg.ulPonteiroAuxiliar = 21;
    reg.ucTipoPonteiroAuxiliar = 22;
    reg.regRegistroJSON = reg.regMensagemIntegracao = reg.regJSONRetornoIntegracao = XVTextoPS(s_sIntruso);
    reg.regDmc = {XVChaveDmc(k_uiHoje, 77)};
    reg.regDmcMovimentoOrigem = {XVChaveDmc(XVDma(2024, 3, 1), 17, 2)};
    reg.regDataHoraInclusao = {XVDataHora(XVDma(2024, 3, 1), 1)};
    reg.regDataHoraAlteracaoStatus = {XVDataHora(XVDma(2024, 3, 1), 2)};
    reg.uiChaveIntegracaoSistemaTerceiro = 991;
    reg.uiChaveRegistroSistemaTerceiro = 992;
    reg.uiBaseDadosTerceiro = 993;
    reg.eStatusIntegracao = eXVSMiddleware_Enviado;
    reg.ulPonteiroUsuarioInclusao = 994;
    reg.ulPonteiroUsuarioCancelamento = 995;
    reg.cReconsultarIdTerceiros = 96;
    return reg;
}

SItemGravador CXVCenarioTroca::Item(const std::string& sJSON) {
    return {sJSON, k_uiMovimento, 101, 102, Mercos, 103, 1};
}

SDadosTeste CXVCenarioTroca::Preparado(XVUInt eTransacao) {
    SDadosTeste dados;
    dados.sJSON = "{\"p\":1}";
    dados.reg.uiDmcIntegracaoOrigem = k_uiOrigem;
    dados.reg.uiDmcMovimentoOrigem = k_uiMovimento;
    dados.reg.uiDataHoraInclusao = k_uiAgora;
    dados.reg.uiChaveRegistroSistemaTerceiro = 102;
    dados.reg.uiBaseDadosTerceiro = 101;
    dados.reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    dados.reg.eSistemaIntegracao = Mercos;
    dados.reg.eTipoTransacao = eTransacao;
    dados.reg.ulPonteiroFilial = 103;
    dados.reg.ulPonteiroAuxiliar = 21;
    dados.reg.ucTipoPonteiroAuxiliar = 22;
    dados.uiUsuarioInclusao = 7;
    return dados;
}

SRespostaDados CXVCenarioTroca::Resposta(unsigned uiBase, XVUInt eStatus) {
    SRespostaDados resposta;
    resposta.bMuda = true;
    resposta.iResultado = 1;  // S_FALSE and its like are no failures, whoever answers them
    resposta.sJSON = "json " + std::to_string(uiBase);
    resposta.sMensagem = "mensagem " + std::to_string(uiBase);
    resposta.sRetorno = "retorno " + std::to_string(uiBase);
    resposta.uiChave = uiBase + 1;
    resposta.uiChaveRegistro = uiBase + 2;
    resposta.uiBase = uiBase + 3;
    resposta.ulFilial = uiBase + 4;
    resposta.eStatus = eStatus;
    resposta.cReconsultar = static_cast<std::uint8_t>(uiBase / 100);
    return resposta;
}

void CXVCenarioTroca::Aplica(const SRespostaDados& rResposta, SDadosTeste* pDados) {
    pDados->sJSON = rResposta.sJSON;
    pDados->sMensagem = rResposta.sMensagem;
    pDados->sRetorno = rResposta.sRetorno;
    pDados->reg.uiChaveIntegracaoSistemaTerceiro = rResposta.uiChave;
    pDados->reg.uiChaveRegistroSistemaTerceiro = rResposta.uiChaveRegistro;
    pDados->reg.uiBaseDadosTerceiro = rResposta.uiBase;
    pDados->reg.ulPonteiroFilial = rResposta.ulFilial;
    pDados->reg.eStatusIntegracao = rResposta.eStatus;
    pDados->reg.cReconsultarIdTerceiros = rResposta.cReconsultar;
}

std::string CXVCenarioTroca::Parametros(const std::string& sOperacao, const XVProvedorParametros& reg) {
    return sOperacao + " MATRIZ/7/99 " + XVDescreve(reg);
}

XVProvedorParametros CXVCenarioTroca::ParametrosDe(const SDadosTeste& rDados, XVUInt64 uiDmc) {
    XVProvedorParametros reg{};
    reg.eTipoIntegracao = rDados.reg.eTipoIntegracao;
    reg.uiDmcOrigem = rDados.reg.uiDmcMovimentoOrigem;
    reg.uiDmcIntegracao = uiDmc;
    reg.uiChaveRegistroSistemaTerceiro = rDados.reg.uiChaveRegistroSistemaTerceiro;
    reg.uiBaseDadosTerceiro = rDados.reg.uiBaseDadosTerceiro;
    reg.eSistemaIntegracao = rDados.reg.eSistemaIntegracao;
    reg.eTipoTransacao = rDados.reg.eTipoTransacao;
    reg.ulPonteiroFilial = rDados.reg.ulPonteiroFilial;
    reg.ulPonteiroAuxiliar = rDados.reg.ulPonteiroAuxiliar;
    reg.ucTipoPonteiroAuxiliar = rDados.reg.ucTipoPonteiroAuxiliar;
    return reg;
}

std::string CXVCenarioTroca::Le(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags) {
    const SIntegracaoLida lida = XVLe(rLoja, regDmc, ullFlags);
    if (FAILED(lida.hr)) return "falha " + std::to_string(lida.hr);
    SDadosTeste dados;
    dados.sJSON = lida.sJSON;
    dados.sMensagem = lida.sMensagem;
    dados.sRetorno = lida.sRetorno;
    dados.reg.uiDmc = lida.reg.regDmc.uiValor;
    dados.reg.uiDmcIntegracaoOrigem = lida.reg.regDmcIntegracaoOrigem.uiValor;
    dados.reg.uiDmcMovimentoOrigem = lida.reg.regDmcMovimentoOrigem.uiValor;
    dados.reg.uiDataHoraInclusao = lida.reg.regDataHoraInclusao.uiValor;
    dados.reg.uiDataHoraAlteracaoStatus = lida.reg.regDataHoraAlteracaoStatus.uiValor;
    dados.reg.uiChaveIntegracaoSistemaTerceiro = lida.reg.uiChaveIntegracaoSistemaTerceiro;
    dados.reg.uiChaveRegistroSistemaTerceiro = lida.reg.uiChaveRegistroSistemaTerceiro;
    dados.reg.uiBaseDadosTerceiro = lida.reg.uiBaseDadosTerceiro;
    dados.reg.eTipoIntegracao = lida.reg.eTipoIntegracao;
    dados.reg.eStatusIntegracao = lida.reg.eStatusIntegracao;
    dados.reg.eSistemaIntegracao = lida.reg.eSistemaIntegracao;
    dados.reg.eTipoTransacao = lida.reg.eTipoTransacao;
    dados.reg.ulPonteiroFilial = lida.reg.ulPonteiroFilial;
    dados.reg.ulPonteiroAuxiliar = lida.reg.ulPonteiroAuxiliar;
    dados.reg.cReconsultarIdTerceiros = lida.reg.cReconsultarIdTerceiros;
    dados.reg.ucTipoPonteiroAuxiliar = lida.reg.ucTipoPonteiroAuxiliar;
    dados.uiUsuarioInclusao = lida.reg.ulPonteiroUsuarioInclusao;
    dados.uiUsuarioCancelamento = lida.reg.ulPonteiroUsuarioCancelamento;
    return dados.Integracao();
}

std::vector<std::string> CXVCenarioTroca::LinhasPerdidas() const {
    std::vector<std::string> lista;
    for (const SFalhaCapturada& rFalha : m_Captura.GetFalhas())
        if (rFalha.sMensagem.find("Troca com o sistema externo") != std::string::npos)
            lista.push_back(rFalha.sMensagem);
    return lista;
}

unsigned CXVCenarioTroca::Chamadas(const std::string& sOperacao) const {
    return static_cast<unsigned>(std::ranges::count_if(
        m_rGravador.listaChamadas, [&](const std::string& s) { return s.starts_with(sOperacao + " "); }));
}

REG_XVDMC CXVCenarioTroca::GravaAnterior(XVUInt64 uiChave, XVUInt eStatus) {
    SetDia(13, 8);
    CXVIntegracaoTeste anterior(uiChave, Mercos, eStatus);
    anterior.reg.ulPonteiroUsuarioInclusao = 33;
    anterior.reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2024, 3, 1), 18, 2)};
    const REG_XVDMC regDmc =
        Grava(*m_pLoja, anterior.Textos("json velho", "mensagem velha", "retorno velho"));
    SetDia(15);
    return regDmc;
}
