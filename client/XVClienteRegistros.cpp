#include "client/XVClienteRegistros.h"

#include <cstddef>
#include <cstring>
#include <limits>

// The generated records' layout is the one that the component promises.
#define XV_TAMANHO(registro, tamanho) static_assert(sizeof(registro) == (tamanho));
#define XV_OFFSET(registro, campo, posicao) static_assert(offsetof(registro, campo) == (posicao));
#include "contract/XVCR_LayoutRegistros.inc"
#undef XV_TAMANHO
#undef XV_OFFSET

namespace XVCliente {

namespace {

// The interface takes buffers it only reads as plain pointers.
byte* Bytes(const std::string& sTexto) {
    return sTexto.empty() ? nullptr : reinterpret_cast<byte*>(const_cast<char*>(sTexto.data()));
}

bool ParaLista(const std::vector<std::uint32_t>& lista, ULONG* pulQuantidade, ULONG** ppLista) {
    static_assert(sizeof(ULONG) == sizeof(std::uint32_t));
    if (lista.size() > std::numeric_limits<ULONG>::max()) return false;
    *pulQuantidade = static_cast<ULONG>(lista.size());
    *ppLista = lista.empty() ? nullptr : reinterpret_cast<ULONG*>(const_cast<std::uint32_t*>(lista.data()));
    return true;
}

std::string DeTexto(const _REG_DF_TEXTOPS& reg) {
    return DeBytes(reg.pTexto, reg.ulQtdBytes);
}

template <std::size_t N>
std::string DeCampo(const byte (&aCampo)[N]) {
    const auto* psz = reinterpret_cast<const char*>(aCampo);
    const void* pFim = std::memchr(psz, 0, N);
    return {psz, pFim == nullptr ? N : static_cast<std::size_t>(static_cast<const char*>(pFim) - psz)};
}

}  // namespace

std::string DeBytes(const byte* pBytes, ULONG ulQuantidade) {
    return pBytes == nullptr ? std::string()
                             : std::string(reinterpret_cast<const char*>(pBytes), ulQuantidade);
}

bool ParaRegistro(const std::string& sTexto, _REG_DF_TEXTOPS* pReg) {
    *pReg = {};
    if (sTexto.size() > std::numeric_limits<ULONG>::max()) return false;
    pReg->ulQtdBytes = static_cast<ULONG>(sTexto.size());
    pReg->pTexto = Bytes(sTexto);
    return true;
}

bool ParaRegistro(const SIntegracao& rDados, REG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) {
    *pReg = {};
    pReg->regDmc.uiValor = rDados.uiDmc;
    pReg->regDmcIntegracaoOrigem.uiValor = rDados.uiDmcIntegracaoOrigem;
    pReg->regDmcMovimentoOrigem.uiValor = rDados.uiDmcMovimentoOrigem;
    pReg->regDataHoraInclusao.uiValor = rDados.uiDataHoraInclusao;
    pReg->regDataHoraAlteracaoStatus.uiValor = rDados.uiDataHoraAlteracaoStatus;
    pReg->uiChaveIntegracaoSistemaTerceiro = rDados.uiChaveIntegracaoSistemaTerceiro;
    pReg->uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
    pReg->uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
    pReg->eTipoIntegracao = rDados.eTipoIntegracao;
    pReg->eStatusIntegracao = rDados.eStatusIntegracao;
    pReg->eSistemaIntegracao = rDados.eSistemaIntegracao;
    pReg->eTipoTransacao = rDados.eTipoTransacao;
    pReg->ulPonteiroFilial = rDados.ulPonteiroFilial;
    pReg->ulPonteiroUsuarioInclusao = rDados.ulPonteiroUsuarioInclusao;
    pReg->ulPonteiroUsuarioCancelamento = rDados.ulPonteiroUsuarioCancelamento;
    pReg->ulPonteiroAuxiliar = rDados.ulPonteiroAuxiliar;
    pReg->cReconsultarIdTerceiros = rDados.cReconsultarIdTerceiros;
    pReg->ucTipoPonteiroAuxiliar = rDados.ucTipoPonteiroAuxiliar;
    return ParaRegistro(rDados.sRegistroJSON, &pReg->regRegistroJSON) &&
           ParaRegistro(rDados.sMensagemIntegracao, &pReg->regMensagemIntegracao) &&
           ParaRegistro(rDados.sJSONRetornoIntegracao, &pReg->regJSONRetornoIntegracao);
}

bool ParaRegistro(const SStatusIntegracao& rDados, REG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS* pReg) {
    *pReg = {};
    pReg->regDmc.uiValor = rDados.uiDmc;
    pReg->uiChaveIntegracaoSistemaTerceiro = rDados.uiChaveIntegracaoSistemaTerceiro;
    pReg->eStatusIntegracao = rDados.eStatusIntegracao;
    pReg->eSistemaIntegracao = rDados.eSistemaIntegracao;
    return ParaRegistro(rDados.sMensagemIntegracao, &pReg->regMensagemIntegracao) &&
           ParaRegistro(rDados.sJSONRetornoIntegracao, &pReg->regJSONRetornoIntegracao);
}

bool ParaRegistro(const SFiltroIntegracao& rDados, REG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS* pReg) {
    *pReg = {};
    pReg->uiChaveIntegracaoSistemaTerceiroInicial = rDados.uiChaveInicial;
    pReg->uiChaveIntegracaoSistemaTerceiroFinal = rDados.uiChaveFinal;
    pReg->regDataHoraInicialInclusao.uiValor = rDados.uiInclusaoInicial;
    pReg->regDataHoraFinalInclusao.uiValor = rDados.uiInclusaoFinal;
    pReg->regDataHoraInicialAlteracaoStatus.uiValor = rDados.uiAlteracaoStatusInicial;
    pReg->regDataHoraFinalAlteracaoStatus.uiValor = rDados.uiAlteracaoStatusFinal;
    return ParaLista(rDados.listaTipoIntegracao, &pReg->ulQuantidadeTipoIntegracao,
                     &pReg->pListaTipoIntegracao) &&
           ParaLista(rDados.listaStatusIntegracao, &pReg->ulQuantidadeStatusIntegracao,
                     &pReg->pListaStatusIntegracao) &&
           ParaLista(rDados.listaSistemaIntegracao, &pReg->ulQuantidadeSistemaIntegracao,
                     &pReg->pListaSistemaIntegracao) &&
           ParaLista(rDados.listaTipoTransacao, &pReg->ulQuantidadeTipoTransacao, &pReg->pListaTipoTransacao);
}

bool ParaRegistro(const SConsultaTerceiro& rDados, REG_CR_CONSULTA_SISTEMA_TERCEIROPS* pReg) {
    *pReg = {};
    pReg->eTipoConsulta = rDados.eTipoConsulta;
    pReg->ulPonteiroAuxiliar = rDados.ulPonteiroAuxiliar;
    pReg->ucTipoPonteiroAuxiliar = rDados.ucTipoPonteiroAuxiliar;
    return ParaRegistro(rDados.sChaveConsulta, &pReg->regChaveConsulta);
}

REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaRegistro(const SChaveRegistro& rDados) {
    REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
    reg.uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
    reg.regDmcRegistroTelvo.uiValor = rDados.uiDmcRegistroTelvo;
    reg.uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    reg.regDmcOrigemIntegracao.uiValor = rDados.uiDmcOrigemIntegracao;
    return reg;
}

REG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaFiltro(const SChaveRegistro& rDados) {
    REG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
    reg.uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
    reg.regDmcRegistroTelvo.uiValor = rDados.uiDmcRegistroTelvo;
    reg.uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    return reg;
}

REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS ParaRegistro(const SDataHoraIntegracao& rDados) {
    REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
    reg.regDataHora.uiValor = rDados.uiDataHora;
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    reg.eTipoData = rDados.eTipoData;
    return reg;
}

REG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS ParaFiltro(const SDataHoraIntegracao& rDados) {
    REG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
    reg.eTipoIntegracao = rDados.eTipoIntegracao;
    reg.eSistemaIntegracao = rDados.eSistemaIntegracao;
    reg.eTipoData = rDados.eTipoData;
    return reg;
}

SIntegracao DeRegistro(const REG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    SIntegracao dados;
    dados.sRegistroJSON = DeTexto(reg.regRegistroJSON);
    dados.sMensagemIntegracao = DeTexto(reg.regMensagemIntegracao);
    dados.sJSONRetornoIntegracao = DeTexto(reg.regJSONRetornoIntegracao);
    dados.uiDmc = reg.regDmc.uiValor;
    dados.uiDmcIntegracaoOrigem = reg.regDmcIntegracaoOrigem.uiValor;
    dados.uiDmcMovimentoOrigem = reg.regDmcMovimentoOrigem.uiValor;
    dados.uiDataHoraInclusao = reg.regDataHoraInclusao.uiValor;
    dados.uiDataHoraAlteracaoStatus = reg.regDataHoraAlteracaoStatus.uiValor;
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

SChaveRegistro DeRegistro(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo.uiValor,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            reg.regDmcOrigemIntegracao.uiValor};
}

SDataHoraIntegracao DeRegistro(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg) {
    return {reg.regDataHora.uiValor, reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.eTipoData};
}

SRespostaConsulta DeRegistro(const REG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg) {
    return {DeTexto(reg.regMensagemRetorno), DeTexto(reg.regJSONRetorno),
            DeBytes(reg.pDocumentoRetorno, reg.ulTamanhoDocumentoRetorno), reg.eStatusConsulta};
}

SUltimoErro DeRegistro(const REG_DF_ULTIMO_ERROPS& reg) {
    return {reg.hrErro,
            reg.ulLinha,
            reg.regDataHora,
            DeCampo(reg.szNome),
            DeCampo(reg.szFuncao),
            DeCampo(reg.szFonte),
            DeCampo(reg.szMensagem)};
}

void Libera(REG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    ::CoTaskMemFree(reg.regRegistroJSON.pTexto);
    ::CoTaskMemFree(reg.regMensagemIntegracao.pTexto);
    ::CoTaskMemFree(reg.regJSONRetornoIntegracao.pTexto);
}

void Libera(REG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg) {
    ::CoTaskMemFree(reg.regMensagemRetorno.pTexto);
    ::CoTaskMemFree(reg.regJSONRetorno.pTexto);
    ::CoTaskMemFree(reg.pDocumentoRetorno);
}

}  // namespace XVCliente
