#include "tools/xvcr/commands/XVOpcoesIntegracao.h"

#include <algorithm>

#include "tools/xvcr/commands/XVOpcoes.h"

template <auto membro>
void CXVOpcoesIntegracao::Valor(CLI::App& rComando, const char* pszNome, const char* pszTipo,
                                const char* pszDescricao) {
    Inclui<membro>(XVOpcaoValor(rComando, pszNome, pszTipo, pszDescricao, &(m_Dados.*membro)));
}

template <auto membro>
void CXVOpcoesIntegracao::Texto(CLI::App& rComando, const char* pszNome, const char* pszDescricao) {
    Inclui<membro>(XVOpcaoTexto(rComando, pszNome, pszDescricao, &(m_Dados.*membro)));
}

template <auto membro>
void CXVOpcoesIntegracao::Enumeracao(CLI::App& rComando, const char* pszNome, const char* pszDescricao,
                                     EEnumeracao eEnumeracao) {
    Inclui<membro>(XVOpcaoEnumeracao(rComando, pszNome, pszDescricao, eEnumeracao, &(m_Dados.*membro)));
}

void CXVOpcoesIntegracao::Adiciona(CLI::App& rComando, EUsoDosCampos eUso) {
    using S = CXVDadosCR_IntegracaoMiddleware;
    constexpr const char* k_szNumero = "NÚMERO";
    const bool bGravacao = eUso == EUsoDosCampos::eGravacao;
    const bool bPendencia = eUso == EUsoDosCampos::ePendencia;
    if (bGravacao) {
        Texto<&S::sRegistroJSON>(rComando, "--json-enviado", "JSON enviado ao sistema externo");
        Texto<&S::sMensagemIntegracao>(rComando, "--mensagem", "Mensagem de retorno");
        Texto<&S::sJSONRetornoIntegracao>(rComando, "--json-retorno", "JSON devolvido pelo sistema externo");
        Enumeracao<&S::eStatusIntegracao>(rComando, "--status", "Status da integração",
                                          EEnumeracao::eStatusIntegracao);
        Valor<&S::uiChaveIntegracaoSistemaTerceiro>(rComando, "--chave", k_szNumero,
                                                    "Chave da integração no sistema externo");
        Valor<&S::regDmcMovimentoOrigem>(rComando, "--movimento-origem", "DMC",
                                         "Registro da suíte que é integrado");
        Valor<&S::cReconsultarIdTerceiros>(rComando, "--reconsultar", "0|1",
                                           "Consultar de novo os ids do sistema externo");
    }
    Enumeracao<&S::eTipoIntegracao>(rComando, "--tipo", "Tipo de integração", EEnumeracao::eTipoIntegracao);
    Enumeracao<&S::eSistemaIntegracao>(rComando, "--sistema", "Sistema externo",
                                       EEnumeracao::eSistemaIntegracao);
    Enumeracao<&S::eTipoTransacao>(rComando, "--transacao", "Tipo de transação", EEnumeracao::eTipoTransacao);
    if (!bPendencia)
        Valor<&S::regDmcIntegracaoOrigem>(rComando, "--integracao-origem", "DMC",
                                          "Integração que deu origem a esta");
    Valor<&S::ulPonteiroFilial>(rComando, "--filial", k_szNumero, "Ponteiro da filial");
    Valor<&S::ulPonteiroAuxiliar>(rComando, "--auxiliar", k_szNumero, "Ponteiro auxiliar");
    Valor<&S::ucTipoPonteiroAuxiliar>(rComando, "--tipo-auxiliar", k_szNumero, "Tipo do ponteiro auxiliar");
    if (bGravacao || bPendencia) AdicionaAutoria(rComando);
}

void CXVOpcoesIntegracao::AdicionaAutoria(CLI::App& rComando) {
    using S = CXVDadosCR_IntegracaoMiddleware;
    constexpr const char* k_szNumero = "NÚMERO";
    Valor<&S::uiChaveRegistroSistemaTerceiro>(rComando, "--chave-registro", k_szNumero,
                                              "Chave do registro no sistema externo");
    Valor<&S::uiBaseDadosTerceiro>(rComando, "--base-dados", k_szNumero, "Base de dados do sistema externo");
    Valor<&S::regDataHoraInclusao>(rComando, "--inclusao", "DATA-HORA",
                                   "Data-hora de inclusão em UTC (padrão: agora)");
    Valor<&S::regDataHoraAlteracaoStatus>(rComando, "--alteracao-status", "DATA-HORA",
                                          "Data-hora da última mudança de status em UTC");
    Valor<&S::ulPonteiroUsuarioInclusao>(rComando, "--usuario-inclusao", k_szNumero, "Usuário que incluiu");
    Valor<&S::ulPonteiroUsuarioCancelamento>(rComando, "--usuario-cancelamento", k_szNumero,
                                             "Usuário que cancelou");
}

bool CXVOpcoesIntegracao::TemDadas() const {
    return std::any_of(m_listaDadas.begin(), m_listaDadas.end(),
                       [](const SDada& rDada) { return rDada.pOpcao->count() > 0; });
}

void CXVOpcoesIntegracao::Aplica(CXVDadosCR_IntegracaoMiddleware& rDados) const {
    for (const SDada& rDada : m_listaDadas)
        if (rDada.pOpcao->count() > 0) rDada.pfCopia(rDados, m_Dados);
}
