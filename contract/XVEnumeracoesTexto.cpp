#include "contract/XVEnumeracoesTexto.h"

#include <array>
#include <charconv>

#include "contract/XVCR_Enumeracoes.h"
#include "support/values/XVTextoAscii.h"

namespace {

#define XV_NOME(valor) \
    SNomeEnumeracao {  \
        valor, #valor  \
    }

constexpr SNomeEnumeracao k_aTipoIntegracao[] = {
    XV_NOME(eXVSMiddleware_NenhumaIntegracao),
    XV_NOME(eXVSMiddleware_CadastroHistorico),
    XV_NOME(eXVSMiddleware_CadastroTerceiros),
    XV_NOME(eXVSMiddleware_MovimentoContasReceberBoleto),
    XV_NOME(eXVSMiddleware_CadastroFormaPagamento),
    XV_NOME(eXVSMiddleware_CadastroCondicaoPagamento),
    XV_NOME(eXVSMiddleware_CadastroProduto),
    XV_NOME(eXVSMiddleware_CadastroTabelaPreco),
    XV_NOME(eXVSMiddleware_EnvioSaldoEstoque),
    XV_NOME(eXVSMiddleware_BuscaPedidos),
    XV_NOME(eXVSMiddleware_CadastroCategoriasProduto),
    XV_NOME(eXVSMiddleware_CadastroStatusPedidos),
    XV_NOME(eXVSMiddleware_CadastroItensTabelaPreco),
    XV_NOME(eXVSMiddleware_CadastroRedeClientes),
    XV_NOME(eXVSMiddleware_CadastroTransportadoras),
    XV_NOME(eXVSMiddleware_BuscaUsuarios),
    XV_NOME(eXVSMiddleware_MovimentoContasReceberBoletoLote),
    XV_NOME(eXVSMiddleware_MovimentoContasPagarRemessaOnline),
};

constexpr SNomeEnumeracao k_aStatusIntegracao[] = {
    XV_NOME(eXVSMiddleware_NenhumStatus), XV_NOME(eXVSMiddleware_Pendente), XV_NOME(eXVSMiddleware_Enviado),
    XV_NOME(eXVSMiddleware_Sucesso),      XV_NOME(eXVSMiddleware_Erro),     XV_NOME(eXVSMiddleware_Cancelado),
};

constexpr SNomeEnumeracao k_aSistemaIntegracao[] = {
    XV_NOME(Tipo_Nenhum),
    XV_NOME(SimulacaoSistemaTerceiro),
    XV_NOME(OfficialBank),
    XV_NOME(Mercos),
};

constexpr SNomeEnumeracao k_aTipoTransacao[] = {
    XV_NOME(XVSMiddleware_TipoTransacaoNenhum),
    XV_NOME(eXVSMiddleware_Inclusao),
    XV_NOME(eXVSMiddleware_Alteracao),
    XV_NOME(eXVSMiddleware_Exclusao),
};

constexpr SNomeEnumeracao k_aTipoData[] = {
    XV_NOME(XVSMiddleware_DataNenhum),
    XV_NOME(eXVSMiddleware_DataUltimaBusca),
    XV_NOME(eXVSMiddleware_DataProximaRequisicao),
};

constexpr SNomeEnumeracao k_aTipoConsulta[] = {
    XV_NOME(eXVSMiddleware_NenhumaConsulta),          XV_NOME(eXVSMiddleware_ConsultaCnpj),
    XV_NOME(eXVSMiddleware_ConsultaBoleto),           XV_NOME(eXVSMiddleware_ConsultaPagamento),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoLote),    XV_NOME(eXVSMiddleware_ConsultaPagamentoComprovante),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoExtrato),
};

constexpr SNomeEnumeracao k_aStatusConsulta[] = {
    XV_NOME(eXVSMiddleware_NenhumStatusConsulta),
    XV_NOME(eXVSMiddleware_ConsultaSucesso),
    XV_NOME(eXVSMiddleware_ConsultaErro),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoNecessario),
    XV_NOME(eXVSMiddleware_ConsultaNaoAutorizada),
    XV_NOME(eXVSMiddleware_ConsultaTempoEsgotado),
    XV_NOME(eXVSMiddleware_ConsultaDadosNaoEncontrados),
};

#undef XV_NOME

// A value added to a counted list must get its name here.
static_assert(std::size(k_aTipoIntegracao) == eXVSMiddleware_QuantidadeTipoIntegracao);
static_assert(std::size(k_aStatusIntegracao) == eXVSMiddleware_QuantidadeStatusIntegracao);
static_assert(std::size(k_aTipoTransacao) == eXVSMiddleware_QuantidadeTipoTransacao);
static_assert(std::size(k_aTipoData) == eXVSMiddleware_QuantidadeTipoDataIntegracaoTerceiro);
static_assert(std::size(k_aTipoConsulta) == eXVSMiddleware_QuantidadeTipoConsulta);
static_assert(std::size(k_aStatusConsulta) == eXVSMiddleware_QuantidadeStatusConsulta);

}  // namespace

namespace XVEnumeracoesTexto {

std::span<const SNomeEnumeracao> GetNomes(EEnumeracao eEnumeracao) {
    switch (eEnumeracao) {
        case EEnumeracao::eTipoIntegracao:
            return k_aTipoIntegracao;
        case EEnumeracao::eStatusIntegracao:
            return k_aStatusIntegracao;
        case EEnumeracao::eSistemaIntegracao:
            return k_aSistemaIntegracao;
        case EEnumeracao::eTipoTransacao:
            return k_aTipoTransacao;
        case EEnumeracao::eTipoData:
            return k_aTipoData;
        case EEnumeracao::eTipoConsulta:
            return k_aTipoConsulta;
        case EEnumeracao::eStatusConsulta:
            return k_aStatusConsulta;
        case EEnumeracao::eNenhuma:
            break;
    }
    return {};
}

std::string_view GetNome(EEnumeracao eEnumeracao, XVUInt ulValor) {
    for (const SNomeEnumeracao& rNome : GetNomes(eEnumeracao))
        if (rNome.ulValor == ulValor) return rNome.sNome;
    return {};
}

std::string GetNomeCurto(EEnumeracao eEnumeracao, XVUInt ulValor) {
    for (const SNomeEnumeracao& rNome : GetNomes(eEnumeracao))
        if (rNome.ulValor == ulValor) return std::string(rNome.GetCurto());
    return std::to_string(ulValor);
}

bool Busca(EEnumeracao eEnumeracao, std::string_view sTexto, XVUInt* pulValor) {
    XVUInt ulNumero = 0;
    const char* pszFim = sTexto.data() + sTexto.size();
    const auto [pszLido, erro] = std::from_chars(sTexto.data(), pszFim, ulNumero);
    const bool bNumero = erro == std::errc() && pszLido == pszFim;
    for (const SNomeEnumeracao& rNome : GetNomes(eEnumeracao)) {
        const bool bIgual =
            bNumero ? rNome.ulValor == ulNumero
                    : XVIgualSemCaixa(rNome.sNome, sTexto) || XVIgualSemCaixa(rNome.GetCurto(), sTexto);
        if (bIgual) {
            *pulValor = rNome.ulValor;
            return true;
        }
    }
    return false;
}

std::string GetLista(EEnumeracao eEnumeracao) {
    std::string sLista;
    for (const SNomeEnumeracao& rNome : GetNomes(eEnumeracao)) {
        if (!sLista.empty()) sLista += ", ";
        sLista.append(std::to_string(rNome.ulValor)).append("=").append(rNome.GetCurto());
    }
    return sLista;
}

}  // namespace XVEnumeracoesTexto
