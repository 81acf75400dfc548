#include "tools/xvcr/XVConversaoPS.h"

#include "contract/XVCR_BuffersPS.h"

namespace {

// Input records are not written through; their pointers are not const only because outputs share the layout.
template <class T>
T* SemConst(const T* p) {
    return const_cast<T*>(p);
}

_REG_DF_TEXTOPS Vista(const std::string& sTexto) {
    _REG_DF_TEXTOPS reg{};
    if (sTexto.empty()) return reg;
    reg.ulQtdBytes = static_cast<XVUInt>(sTexto.size());
    reg.pTexto = reinterpret_cast<XVByte*>(SemConst(sTexto.data()));
    return reg;
}

XVUInt Quantidade(const std::vector<XVUInt>& lista) {
    return static_cast<XVUInt>(lista.size());
}

XVUInt* Vista(const std::vector<XVUInt>& lista) {
    return lista.empty() ? nullptr : SemConst(lista.data());
}

}  // namespace

namespace XVConversaoPS {

tagREG_CR_INTEGRACAO_MIDDLEWAREPS ParaPS(const SIntegracao& rDados) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regRegistroJSON = Vista(rDados.sRegistroJSON);
    reg.regMensagemIntegracao = Vista(rDados.sMensagemIntegracao);
    reg.regJSONRetornoIntegracao = Vista(rDados.sJSONRetornoIntegracao);
    reg.regDmc = rDados.regDmc;
    reg.regDmcIntegracaoOrigem = rDados.regDmcIntegracaoOrigem;
    reg.regDmcMovimentoOrigem = rDados.regDmcMovimentoOrigem;
    reg.regDataHoraInclusao = rDados.regDataHoraInclusao;
    reg.regDataHoraAlteracaoStatus = rDados.regDataHoraAlteracaoStatus;
    reg.uiChaveIntegracaoSistemaTerceiro = rDados.uiChaveIntegracaoSistemaTerceiro;
    reg.uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
    reg.uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eStatusIntegracao = rDados.eStatusIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    reg.eTipoTransacao = rDados.eTipoTransacao;
    reg.ulPonteiroFilial = rDados.ulPonteiroFilial;
    reg.ulPonteiroUsuarioInclusao = rDados.ulPonteiroUsuarioInclusao;
    reg.ulPonteiroUsuarioCancelamento = rDados.ulPonteiroUsuarioCancelamento;
    reg.ulPonteiroAuxiliar = rDados.ulPonteiroAuxiliar;
    reg.cReconsultarIdTerceiros = rDados.cReconsultarIdTerceiros;
    reg.ucTipoPonteiroAuxiliar = rDados.ucTipoPonteiroAuxiliar;
    return reg;
}

tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS ParaPS(const SStatusIntegracao& rDados) {
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmc = rDados.regDmc;
    reg.regMensagemIntegracao = Vista(rDados.sMensagemIntegracao);
    reg.regJSONRetornoIntegracao = Vista(rDados.sJSONRetornoIntegracao);
    reg.uiChaveIntegracaoSistemaTerceiro = rDados.uiChaveIntegracaoSistemaTerceiro;
    reg.eStatusIntegracao = rDados.eStatusIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    return reg;
}

tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS ParaPS(const SFiltroIntegracao& rFiltro) {
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiroInicial = rFiltro.uiChaveIntegracaoSistemaTerceiroInicial;
    reg.uiChaveIntegracaoSistemaTerceiroFinal = rFiltro.uiChaveIntegracaoSistemaTerceiroFinal;
    reg.regDataHoraInicialInclusao = rFiltro.regDataHoraInicialInclusao;
    reg.regDataHoraFinalInclusao = rFiltro.regDataHoraFinalInclusao;
    reg.regDataHoraInicialAlteracaoStatus = rFiltro.regDataHoraInicialAlteracaoStatus;
    reg.regDataHoraFinalAlteracaoStatus = rFiltro.regDataHoraFinalAlteracaoStatus;
    reg.ulQuantidadeTipoIntegracao = Quantidade(rFiltro.listaTipoIntegracao);
    reg.ulQuantidadeStatusIntegracao = Quantidade(rFiltro.listaStatusIntegracao);
    reg.ulQuantidadeSistemaIntegracao = Quantidade(rFiltro.listaSistemaIntegracao);
    reg.ulQuantidadeTipoTransacao = Quantidade(rFiltro.listaTipoTransacao);
    reg.pListaTipoIntegracao = Vista(rFiltro.listaTipoIntegracao);
    reg.pListaStatusIntegracao = Vista(rFiltro.listaStatusIntegracao);
    reg.pListaSistemaIntegracao = Vista(rFiltro.listaSistemaIntegracao);
    reg.pListaTipoTransacao = Vista(rFiltro.listaTipoTransacao);
    return reg;
}

_REG_DF_LISTA_XVDMCPS ParaPS(const std::vector<REG_XVDMC>& lista) {
    _REG_DF_LISTA_XVDMCPS reg{};
    reg.ulQuantidade = static_cast<XVUInt>(lista.size());
    reg.pLista = lista.empty() ? nullptr : SemConst(lista.data());
    return reg;
}

tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaPS(const SChaveRegistro& rDados) {
    return {.uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro,
            .regDmcRegistroTelvo = rDados.regDmcRegistroTelvo,
            .uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro,
            .eTipoIntegracao = rDados.eTipoIntegracao,
            .eSistemaIntegracao = rDados.eSistemaIntegracao,
            .regDmcOrigemIntegracao = rDados.regDmcOrigemIntegracao};
}

tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaFiltroPS(const SChaveRegistro& rFiltro) {
    return {.uiChaveRegistroSistemaTerceiro = rFiltro.uiChaveRegistroSistemaTerceiro,
            .regDmcRegistroTelvo = rFiltro.regDmcRegistroTelvo,
            .uiBaseDadosTerceiro = rFiltro.uiBaseDadosTerceiro,
            .eTipoIntegracao = rFiltro.eTipoIntegracao,
            .eSistemaIntegracao = rFiltro.eSistemaIntegracao,
            .cFiller = {}};
}

tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS ParaPS(const SDataHoraIntegracao& rDados) {
    return {.regDataHora = rDados.regDataHora,
            .eTipoIntegracao = rDados.eTipoIntegracao,
            .eSistemaIntegracao = rDados.eSistemaIntegracao,
            .eTipoData = rDados.eTipoData,
            .cFiller = {}};
}

tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS ParaFiltroPS(const SDataHoraIntegracao& rFiltro) {
    return {.cFiller = {},
            .eTipoIntegracao = rFiltro.eTipoIntegracao,
            .eSistemaIntegracao = rFiltro.eSistemaIntegracao,
            .eTipoData = rFiltro.eTipoData};
}

tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS ParaPS(const SConsultaTerceiro& rConsulta) {
    return {.regChaveConsulta = Vista(rConsulta.sChaveConsulta),
            .eTipoConsulta = rConsulta.eTipoConsulta,
            .ulPonteiroAuxiliar = rConsulta.ulPonteiroAuxiliar,
            .cFiller = {},
            .ucTipoPonteiroAuxiliar = rConsulta.ucTipoPonteiroAuxiliar};
}

SIntegracao DePS(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    SIntegracao dados;
    dados.sRegistroJSON = CXVStringPS::RegToString(reg.regRegistroJSON);
    dados.sMensagemIntegracao = CXVStringPS::RegToString(reg.regMensagemIntegracao);
    dados.sJSONRetornoIntegracao = CXVStringPS::RegToString(reg.regJSONRetornoIntegracao);
    dados.regDmc = reg.regDmc;
    dados.regDmcIntegracaoOrigem = reg.regDmcIntegracaoOrigem;
    dados.regDmcMovimentoOrigem = reg.regDmcMovimentoOrigem;
    dados.regDataHoraInclusao = reg.regDataHoraInclusao;
    dados.regDataHoraAlteracaoStatus = reg.regDataHoraAlteracaoStatus;
    dados.uiChaveIntegracaoSistemaTerceiro = reg.uiChaveIntegracaoSistemaTerceiro;
    dados.uiChaveRegistroSistemaTerceiro = reg.uiChaveRegistroSistemaTerceiro;
    dados.uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro;
    dados.eTipoIntegracao = reg.eTipoIntegracao;
    dados.eStatusIntegracao = reg.eStatusIntegracao;
    dados.eSistemaIntegracao = reg.eSistemaIntegracao;
    dados.eTipoTransacao = reg.eTipoTransacao;
    dados.ulPonteiroFilial = reg.ulPonteiroFilial;
    dados.ulPonteiroUsuarioInclusao = reg.ulPonteiroUsuarioInclusao;
    dados.ulPonteiroUsuarioCancelamento = reg.ulPonteiroUsuarioCancelamento;
    dados.ulPonteiroAuxiliar = reg.ulPonteiroAuxiliar;
    dados.cReconsultarIdTerceiros = reg.cReconsultarIdTerceiros;
    dados.ucTipoPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar;
    return dados;
}

SChaveRegistro DePS(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
    return {.uiChaveRegistroSistemaTerceiro = reg.uiChaveRegistroSistemaTerceiro,
            .regDmcRegistroTelvo = reg.regDmcRegistroTelvo,
            .uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro,
            .eTipoIntegracao = reg.eTipoIntegracao,
            .eSistemaIntegracao = reg.eSistemaIntegracao,
            .regDmcOrigemIntegracao = reg.regDmcOrigemIntegracao};
}

SDataHoraIntegracao DePS(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg) {
    return {.regDataHora = reg.regDataHora,
            .eTipoIntegracao = reg.eTipoIntegracao,
            .eSistemaIntegracao = reg.eSistemaIntegracao,
            .eTipoData = reg.eTipoData};
}

SRespostaConsulta DePS(const tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg) {
    SRespostaConsulta resposta;
    resposta.sMensagemRetorno = CXVStringPS::RegToString(reg.regMensagemRetorno);
    resposta.sJSONRetorno = CXVStringPS::RegToString(reg.regJSONRetorno);
    if (reg.pDocumentoRetorno != nullptr)
        resposta.sDocumentoRetorno.assign(reinterpret_cast<const char*>(reg.pDocumentoRetorno),
                                          reg.ulTamanhoDocumentoRetorno);
    resposta.eStatusConsulta = reg.eStatusConsulta;
    return resposta;
}

}  // namespace XVConversaoPS
