#include "tools/xvcr/text/XVEnumeracoesTexto.h"

#include <charconv>
#include <span>

#include "contract/XVCR_Enumeracoes.h"
#include "support/values/XVTextoAscii.h"

namespace {

struct SNome {
    XVUInt ulValor;
    std::string_view sNome;
};

#define XV_NOME(valor) \
    SNome {            \
        valor, #valor  \
    }

constexpr SNome k_aTipoIntegracao[] = {
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

constexpr SNome k_aStatusIntegracao[] = {
    XV_NOME(eXVSMiddleware_NenhumStatus), XV_NOME(eXVSMiddleware_Pendente), XV_NOME(eXVSMiddleware_Enviado),
    XV_NOME(eXVSMiddleware_Sucesso),      XV_NOME(eXVSMiddleware_Erro),     XV_NOME(eXVSMiddleware_Cancelado),
};

constexpr SNome k_aSistemaIntegracao[] = {
    XV_NOME(Tipo_Nenhum),
    XV_NOME(SimulacaoSistemaTerceiro),
    XV_NOME(OfficialBank),
    XV_NOME(Mercos),
};

constexpr SNome k_aTipoTransacao[] = {
    XV_NOME(XVSMiddleware_TipoTransacaoNenhum),
    XV_NOME(eXVSMiddleware_Inclusao),
    XV_NOME(eXVSMiddleware_Alteracao),
    XV_NOME(eXVSMiddleware_Exclusao),
};

constexpr SNome k_aTipoData[] = {
    XV_NOME(XVSMiddleware_DataNenhum),
    XV_NOME(eXVSMiddleware_DataUltimaBusca),
    XV_NOME(eXVSMiddleware_DataProximaRequisicao),
};

constexpr SNome k_aTipoConsulta[] = {
    XV_NOME(eXVSMiddleware_NenhumaConsulta),          XV_NOME(eXVSMiddleware_ConsultaCnpj),
    XV_NOME(eXVSMiddleware_ConsultaBoleto),           XV_NOME(eXVSMiddleware_ConsultaPagamento),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoLote),    XV_NOME(eXVSMiddleware_ConsultaPagamentoComprovante),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoExtrato),
};

constexpr SNome k_aStatusConsulta[] = {
    XV_NOME(eXVSMiddleware_NenhumStatusConsulta),
    XV_NOME(eXVSMiddleware_ConsultaSucesso),
    XV_NOME(eXVSMiddleware_ConsultaErro),
    XV_NOME(eXVSMiddleware_ConsultaPagamentoNecessario),
    XV_NOME(eXVSMiddleware_ConsultaNaoAutorizada),
    XV_NOME(eXVSMiddleware_ConsultaTempoEsgotado),
    XV_NOME(eXVSMiddleware_ConsultaDadosNaoEncontrados),
};

#undef XV_NOME

std::span<const SNome> Tabela(EEnumeracao eEnumeracao) {
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

// What follows the enumeration's own prefix ("eXVSMiddleware_", "XVSMiddleware_", "Tipo_").
std::string_view Curto(std::string_view sNome) {
    const std::size_t uiSublinhado = sNome.find('_');
    return uiSublinhado == std::string_view::npos ? sNome : sNome.substr(uiSublinhado + 1);
}

}  // namespace

namespace XVEnumeracoesTexto {

std::string_view GetNome(EEnumeracao eEnumeracao, XVUInt ulValor) {
    for (const SNome& rNome : Tabela(eEnumeracao))
        if (rNome.ulValor == ulValor) return rNome.sNome;
    return {};
}

std::string GetNomeCurto(EEnumeracao eEnumeracao, XVUInt ulValor) {
    const std::string_view sNome = GetNome(eEnumeracao, ulValor);
    return sNome.empty() ? std::to_string(ulValor) : std::string(Curto(sNome));
}

bool Busca(EEnumeracao eEnumeracao, std::string_view sTexto, XVUInt* pulValor) {
    XVUInt ulNumero = 0;
    const char* pszFim = sTexto.data() + sTexto.size();
    const auto [pszLido, erro] = std::from_chars(sTexto.data(), pszFim, ulNumero);
    const bool bNumero = erro == std::errc() && pszLido == pszFim;
    for (const SNome& rNome : Tabela(eEnumeracao)) {
        const bool bIgual =
            bNumero ? rNome.ulValor == ulNumero
                    : XVIgualSemCaixa(rNome.sNome, sTexto) || XVIgualSemCaixa(Curto(rNome.sNome), sTexto);
        if (bIgual) {
            *pulValor = rNome.ulValor;
            return true;
        }
    }
    return false;
}

std::string GetLista(EEnumeracao eEnumeracao) {
    std::string sLista;
    for (const SNome& rNome : Tabela(eEnumeracao)) {
        if (!sLista.empty()) sLista += ", ";
        sLista += Curto(rNome.sNome);
    }
    return sLista;
}

}  // namespace XVEnumeracoesTexto
