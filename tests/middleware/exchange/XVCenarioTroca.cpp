#include "tests/middleware/exchange/XVCenarioTroca.h"

#include <algorithm>

namespace {

XVProvedorTexto TextoProvedor(const std::string& sTexto) {
    return {sTexto.data(), sTexto.size()};
}

std::string DescreveDados(SDadosTeste dados) {
    dados.reg.sRegistroJSON = TextoProvedor(dados.sJSON);
    dados.reg.sMensagemIntegracao = TextoProvedor(dados.sMensagem);
    dados.reg.sJSONRetornoIntegracao = TextoProvedor(dados.sRetorno);
    return XVDescreve(dados.reg);
}

std::string Usuarios(unsigned uiInclusao, unsigned uiCancelamento) {
    return " inclusor=" + std::to_string(uiInclusao) + " cancelador=" + std::to_string(uiCancelamento);
}

}  // namespace

std::string SDadosTeste::Chamada(const std::string& sOperacao) const {
    return sOperacao + " MATRIZ/7/99 " + DescreveDados(*this);
}

std::string SDadosTeste::Integracao() const {
    return DescreveDados(*this) + Usuarios(uiUsuarioInclusao, uiUsuarioCancelamento);
}

std::string CXVCenarioTroca::Descreve(const SIntegracaoLida& rLida) {
    if (FAILED(rLida.hr)) return "falha " + std::to_string(rLida.hr);
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg = rLida.reg;
    std::ostringstream s;
    s << "dmc=" << reg.regDmc.uiValor << " integracaoOrigem=" << reg.regDmcIntegracaoOrigem.uiValor
      << " movimentoOrigem=" << reg.regDmcMovimentoOrigem.uiValor
      << " inclusao=" << reg.regDataHoraInclusao.uiValor
      << " alteracao=" << reg.regDataHoraAlteracaoStatus.uiValor << XVDescreveComuns(reg) << " json=["
      << rLida.sJSON << "] mensagem=[" << rLida.sMensagem << "] retorno=[" << rLida.sRetorno << "]"
      << Usuarios(reg.ulPonteiroUsuarioInclusao, reg.ulPonteiroUsuarioCancelamento);
    return s.str();
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
    return {sJSON, {{}, k_uiMovimento, 101, 102, Mercos, 103, 1, {}}};
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
    SDadosGravador dados;
    dados.sJSON = "json " + std::to_string(uiBase);
    dados.sMensagem = "mensagem " + std::to_string(uiBase);
    dados.sRetorno = "retorno " + std::to_string(uiBase);
    XVProvedorDados& reg = dados.reg;
    reg.uiChaveIntegracaoSistemaTerceiro = uiBase + 1;
    reg.uiChaveRegistroSistemaTerceiro = uiBase + 2;
    reg.uiBaseDadosTerceiro = uiBase + 3;
    reg.ulPonteiroFilial = uiBase + 4;
    reg.eStatusIntegracao = eStatus;
    reg.cReconsultarIdTerceiros = static_cast<std::uint8_t>(uiBase / 100);
    reg.uiDmc = reg.uiDmcIntegracaoOrigem = reg.uiDmcMovimentoOrigem = 1U << 14;
    reg.uiDataHoraInclusao = reg.uiDataHoraAlteracaoStatus = 1;
    reg.eTipoIntegracao = reg.eSistemaIntegracao = reg.eTipoTransacao = 2;
    reg.ulPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar = 99;
    return {1, true, dados};  // S_FALSE and its like are no failures, whoever answers them
}

void CXVCenarioTroca::Aplica(const SRespostaDados& rResposta, SDadosTeste* pDados) {
    const SDadosGravador& rDados = rResposta.dados;
    pDados->sJSON = rDados.sJSON;
    pDados->sMensagem = rDados.sMensagem;
    pDados->sRetorno = rDados.sRetorno;
    pDados->reg.uiChaveIntegracaoSistemaTerceiro = rDados.reg.uiChaveIntegracaoSistemaTerceiro;
    pDados->reg.uiChaveRegistroSistemaTerceiro = rDados.reg.uiChaveRegistroSistemaTerceiro;
    pDados->reg.uiBaseDadosTerceiro = rDados.reg.uiBaseDadosTerceiro;
    pDados->reg.ulPonteiroFilial = rDados.reg.ulPonteiroFilial;
    pDados->reg.eStatusIntegracao = rDados.reg.eStatusIntegracao;
    pDados->reg.cReconsultarIdTerceiros = rDados.reg.cReconsultarIdTerceiros;
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

std::string CXVCenarioTroca::Pergunta(XVUInt eTransacao, XVUInt64 uiDmc, XVUInt64 uiOrigem,
                                      XVUInt64 uiChaveRegistro, XVUInt64 uiBase) {
    XVProvedorParametros reg = ParametrosDe(Preparado(eTransacao), uiDmc);
    reg.uiDmcOrigem = uiOrigem;
    reg.uiChaveRegistroSistemaTerceiro = uiChaveRegistro;
    reg.uiBaseDadosTerceiro = uiBase;
    reg.ulPonteiroFilial = 3;
    return Parametros("BuscaIntegracoes", reg);
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
