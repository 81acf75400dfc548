#include "suite/simulation/XVNomesSimulacao.h"

#include "contract/XVCR_Enumeracoes.h"

const std::vector<SNomeValor>& XVNomesSimulacao::TipoIntegracao() {
    static const std::vector<SNomeValor> s_lista{
        {"CadastroHistorico", eXVSMiddleware_CadastroHistorico},
        {"CadastroTerceiros", eXVSMiddleware_CadastroTerceiros},
        {"MovimentoContasReceberBoleto", eXVSMiddleware_MovimentoContasReceberBoleto},
        {"CadastroFormaPagamento", eXVSMiddleware_CadastroFormaPagamento},
        {"CadastroCondicaoPagamento", eXVSMiddleware_CadastroCondicaoPagamento},
        {"CadastroProduto", eXVSMiddleware_CadastroProduto},
        {"CadastroTabelaPreco", eXVSMiddleware_CadastroTabelaPreco},
        {"EnvioSaldoEstoque", eXVSMiddleware_EnvioSaldoEstoque},
        {"BuscaPedidos", eXVSMiddleware_BuscaPedidos},
        {"CadastroCategoriasProduto", eXVSMiddleware_CadastroCategoriasProduto},
        {"CadastroStatusPedidos", eXVSMiddleware_CadastroStatusPedidos},
        {"CadastroItensTabelaPreco", eXVSMiddleware_CadastroItensTabelaPreco},
        {"CadastroRedeClientes", eXVSMiddleware_CadastroRedeClientes},
        {"CadastroTransportadoras", eXVSMiddleware_CadastroTransportadoras},
        {"BuscaUsuarios", eXVSMiddleware_BuscaUsuarios},
        {"MovimentoContasReceberBoletoLote", eXVSMiddleware_MovimentoContasReceberBoletoLote},
        {"MovimentoContasPagarRemessaOnline", eXVSMiddleware_MovimentoContasPagarRemessaOnline},
    };
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::TipoTransacao() {
    static const std::vector<SNomeValor> s_lista{
        {"Inclusao", eXVSMiddleware_Inclusao},
        {"Alteracao", eXVSMiddleware_Alteracao},
        {"Exclusao", eXVSMiddleware_Exclusao},
    };
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::StatusIntegracao() {
    static const std::vector<SNomeValor> s_lista{
        {"Pendente", eXVSMiddleware_Pendente},   {"Enviado", eXVSMiddleware_Enviado},
        {"Sucesso", eXVSMiddleware_Sucesso},     {"Erro", eXVSMiddleware_Erro},
        {"Cancelado", eXVSMiddleware_Cancelado},
    };
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::TipoConsulta() {
    static const std::vector<SNomeValor> s_lista{
        {"Cnpj", eXVSMiddleware_ConsultaCnpj},
        {"Boleto", eXVSMiddleware_ConsultaBoleto},
        {"Pagamento", eXVSMiddleware_ConsultaPagamento},
        {"PagamentoLote", eXVSMiddleware_ConsultaPagamentoLote},
        {"PagamentoComprovante", eXVSMiddleware_ConsultaPagamentoComprovante},
        {"PagamentoExtrato", eXVSMiddleware_ConsultaPagamentoExtrato},
    };
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::StatusConsulta() {
    static const std::vector<SNomeValor> s_lista{
        {"Sucesso", eXVSMiddleware_ConsultaSucesso},
        {"Erro", eXVSMiddleware_ConsultaErro},
        {"PagamentoNecessario", eXVSMiddleware_ConsultaPagamentoNecessario},
        {"NaoAutorizada", eXVSMiddleware_ConsultaNaoAutorizada},
        {"TempoEsgotado", eXVSMiddleware_ConsultaTempoEsgotado},
        {"DadosNaoEncontrados", eXVSMiddleware_ConsultaDadosNaoEncontrados},
    };
    return s_lista;
}
