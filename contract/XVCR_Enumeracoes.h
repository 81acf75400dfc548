// Enumerations that travel in files and in interface records, always as 32-bit values. Values are fixed;
// the last member of each counted list is no valid value.
#pragma once

#include "platform/XVTipos.h"

enum XVSMiddleware_TipoIntegracao : XVUInt {
    eXVSMiddleware_NenhumaIntegracao = 0,
    eXVSMiddleware_CadastroHistorico = 1,
    eXVSMiddleware_CadastroTerceiros = 2,
    eXVSMiddleware_MovimentoContasReceberBoleto = 3,
    eXVSMiddleware_CadastroFormaPagamento = 4,
    eXVSMiddleware_CadastroCondicaoPagamento = 5,
    eXVSMiddleware_CadastroProduto = 6,
    eXVSMiddleware_CadastroTabelaPreco = 7,
    eXVSMiddleware_EnvioSaldoEstoque = 8,
    eXVSMiddleware_BuscaPedidos = 9,
    eXVSMiddleware_CadastroCategoriasProduto = 10,
    eXVSMiddleware_CadastroStatusPedidos = 11,
    eXVSMiddleware_CadastroItensTabelaPreco = 12,
    eXVSMiddleware_CadastroRedeClientes = 13,
    eXVSMiddleware_CadastroTransportadoras = 14,
    eXVSMiddleware_BuscaUsuarios = 15,
    eXVSMiddleware_MovimentoContasReceberBoletoLote = 16,
    eXVSMiddleware_MovimentoContasPagarRemessaOnline = 17,
    eXVSMiddleware_QuantidadeTipoIntegracao = 18,
};

enum XVSMiddleware_StatusIntegracao : XVUInt {
    eXVSMiddleware_NenhumStatus = 0,
    eXVSMiddleware_Pendente = 1,
    eXVSMiddleware_Enviado = 2,
    eXVSMiddleware_Sucesso = 3,
    eXVSMiddleware_Erro = 4,
    eXVSMiddleware_Cancelado = 5,
    eXVSMiddleware_QuantidadeStatusIntegracao = 6,
};

// Single-bit values; the bits 1, 4 and above 16 are unassigned.
enum XVSMiddleware_SistemaIntegracao : XVUInt {
    Tipo_Nenhum = 0,
    SimulacaoSistemaTerceiro = 2,
    OfficialBank = 8,
    Mercos = 16,
};

enum XVSMiddleware_TipoTransacao : XVUInt {
    XVSMiddleware_TipoTransacaoNenhum = 0,
    eXVSMiddleware_Inclusao = 1,
    eXVSMiddleware_Alteracao = 2,
    eXVSMiddleware_Exclusao = 3,
    eXVSMiddleware_QuantidadeTipoTransacao = 4,
};

enum XVSMiddleware_TipoData : XVUInt {
    XVSMiddleware_DataNenhum = 0,
    eXVSMiddleware_DataUltimaBusca = 1,
    eXVSMiddleware_DataProximaRequisicao = 2,
    eXVSMiddleware_QuantidadeTipoDataIntegracaoTerceiro = 3,
};

enum XVSMiddleware_TipoConsulta : XVUInt {
    eXVSMiddleware_NenhumaConsulta = 0,
    eXVSMiddleware_ConsultaCnpj = 1,
    eXVSMiddleware_ConsultaBoleto = 2,
    eXVSMiddleware_ConsultaPagamento = 3,
    eXVSMiddleware_ConsultaPagamentoLote = 4,
    eXVSMiddleware_ConsultaPagamentoComprovante = 5,
    eXVSMiddleware_ConsultaPagamentoExtrato = 6,
    eXVSMiddleware_QuantidadeTipoConsulta = 7,
};

enum XVSMiddleware_StatusConsulta : XVUInt {
    eXVSMiddleware_NenhumStatusConsulta = 0,
    eXVSMiddleware_ConsultaSucesso = 1,
    eXVSMiddleware_ConsultaErro = 2,
    eXVSMiddleware_ConsultaPagamentoNecessario = 3,
    eXVSMiddleware_ConsultaNaoAutorizada = 4,
    eXVSMiddleware_ConsultaTempoEsgotado = 5,
    eXVSMiddleware_ConsultaDadosNaoEncontrados = 6,
    eXVSMiddleware_QuantidadeStatusConsulta = 7,
};

// Bits of ullFlagLeitura: the JSON sent, the message, the JSON returned, all three; a new query of the
// external system; with it, the operation that closes that query.
inline constexpr XVUInt64 k_ullLeJSON = 1;
inline constexpr XVUInt64 k_ullLeMensagem = 2;
inline constexpr XVUInt64 k_ullLeJSONRetorno = 4;
inline constexpr XVUInt64 k_ullLeTextos = k_ullLeJSON | k_ullLeMensagem | k_ullLeJSONRetorno;
inline constexpr XVUInt64 k_ullConsultaSistemaTerceiro = 8;
inline constexpr XVUInt64 k_ullOperacaoPosterior = 16;
