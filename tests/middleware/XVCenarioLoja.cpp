#include "tests/middleware/XVCenarioLoja.h"

#include "contract/XVDadosCR.h"

_REG_DF_TEXTOPS XVTextoPS(const std::string& sTexto) {
    _REG_DF_TEXTOPS reg{};
    reg.ulQtdBytes = static_cast<XVUInt>(sTexto.size());
    if (!sTexto.empty()) reg.pTexto = reinterpret_cast<XVByte*>(const_cast<char*>(sTexto.data()));
    return reg;
}

tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS XVStatusPS(REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eStatus,
                                                    const std::string& sMensagem, const std::string& sRetorno,
                                                    XVUInt eSistema) {
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmc = regDmc;
    reg.uiChaveIntegracaoSistemaTerceiro = uiChave;
    reg.eSistemaIntegracao = eSistema;
    reg.eStatusIntegracao = eStatus;
    reg.regMensagemIntegracao = XVTextoPS(sMensagem);
    reg.regJSONRetornoIntegracao = XVTextoPS(sRetorno);
    return reg;
}

CXVIntegracaoTeste::CXVIntegracaoTeste(XVUInt64 uiChave, XVUInt eSistema, XVUInt eStatus) {
    reg.uiChaveIntegracaoSistemaTerceiro = uiChave;
    reg.eSistemaIntegracao = eSistema;
    reg.eStatusIntegracao = eStatus;
    reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    reg.regDmcMovimentoOrigem = {XVChaveDmc(XVDma(2023, 1, 2), 5, 2)};
}

CXVIntegracaoTeste& CXVIntegracaoTeste::Textos(std::string sJSON, std::string sMensagem,
                                               std::string sRetorno) {
    m_sJSON = std::move(sJSON);
    m_sMensagem = std::move(sMensagem);
    m_sRetorno = std::move(sRetorno);
    return *this;
}

const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* CXVIntegracaoTeste::Ptr() {
    if (!m_sJSON.empty()) reg.regRegistroJSON = XVTextoPS(m_sJSON);
    if (!m_sMensagem.empty()) reg.regMensagemIntegracao = XVTextoPS(m_sMensagem);
    if (!m_sRetorno.empty()) reg.regJSONRetornoIntegracao = XVTextoPS(m_sRetorno);
    return &reg;
}

SIntegracaoLida XVToma(tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    SIntegracaoLida lida;
    lida.reg = reg;
    lida.sJSON = CXVStringPS::RegToString(reg.regRegistroJSON);
    lida.sMensagem = CXVStringPS::RegToString(reg.regMensagemIntegracao);
    lida.sRetorno = CXVStringPS::RegToString(reg.regJSONRetornoIntegracao);
    XVLiberaBuffers(&reg);
    return lida;
}

SIntegracaoLida XVLe(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    const HRESULT hr = rLoja.LeIntegracao(regDmc, &reg, ullFlags);
    SIntegracaoLida lida = XVToma(reg);
    lida.hr = hr;
    return lida;
}

SBuscaFeita XVBuscaComCodigo(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro) {
    const CXVDadosCR_FiltroIntegracaoMiddleware valor{
        rFiltro.de,          rFiltro.ate,   rFiltro.incluidaDe, rFiltro.incluidaAte, rFiltro.alteradaDe,
        rFiltro.alteradaAte, rFiltro.tipos, rFiltro.status,     rFiltro.sistemas,    rFiltro.transacoes};
    _REG_DF_LISTA_XVDMCPS regLista{};
    SBuscaFeita feita;
    feita.hr = rLoja.BuscaPonteiros(valor.ComoRegistro(), &regLista);
    for (XVUInt i = 0; i < regLista.ulQuantidade; ++i) feita.lista.push_back(regLista.pLista[i].uiValor);
    EXPECT_EQ(regLista.pLista == nullptr, feita.lista.empty());
    XVLiberaBuffers(&regLista);
    return feita;
}

TListaDmc XVBusca(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro) {
    const SBuscaFeita feita = XVBuscaComCodigo(rLoja, rFiltro);
    EXPECT_EQ(feita.hr, S_OK);
    return feita.lista;
}

TLoja CXVCenarioLoja::Abre(XVUShort usUsuario, const std::string& sEmpresa, XVUInt ulSessao) const {
    auto pLoja = std::make_unique<CBaseMiddleware>();
    const CXVDonoFixo dono(sEmpresa, usUsuario, ulSessao);
    const HRESULT hr = pLoja->Inicializa(&dono);
    EXPECT_EQ(hr, S_OK);
    return SUCCEEDED(hr) ? std::move(pLoja) : nullptr;
}

REG_XVDMC CXVCenarioLoja::Grava(CBaseMiddleware& rLoja, CXVIntegracaoTeste integracao) {
    REG_XVDMC regDmc;
    EXPECT_EQ(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
    return regDmc;
}

CXVSistemaArquivosMemoria::TRetrato CXVCenarioLoja::RetratoSemLogs() const {
    auto retrato = m_Arquivos.Retrata();
    std::erase_if(retrato, [](const auto& it) { return it.first.ends_with(".log"); });
    return retrato;
}
