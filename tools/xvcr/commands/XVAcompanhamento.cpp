#include "tools/xvcr/commands/XVAcompanhamento.h"

#include <algorithm>
#include <map>

#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"

namespace {

constexpr std::size_t k_uiPorLeitura = 64;  // integrations in memory at a time, in a pass

// What the store itself says of one integration, and not of the store or of the machine.
bool EhDaIntegracao(HRESULT hr) {
    constexpr XVUInt k_ulDaBase = 0x8108U;
    return static_cast<XVUInt>(hr) >> 16 == k_ulDaBase && hr != E_XVCR_COMPONENTE_NAO_INICIALIZADO;
}

std::string DiretorioDosDados(const SAcompanha& rTudo, const std::string& sEmpresa) {
    return CAmbienteXV::MontaPathDados(k_eModuloBase, rTudo.sDiretorio, sEmpresa);
}

}  // namespace

CXVAcompanhamento::CXVAcompanhamento(const SAcompanha& rTudo, SFicha ficha)
    : m_rTudo(rTudo),
      m_Ficha(std::move(ficha)),
      m_eComeco(EComeco::eNenhum),
      m_Log(DiretorioDosDados(rTudo, m_Ficha.sEmpresa)) {}

CXVAcompanhamento::CXVAcompanhamento(const SAcompanha& rTudo, const std::string& sEmpresa, bool bPassagem)
    : m_rTudo(rTudo),
      m_Ficha{.sEmpresa = sEmpresa},
      m_eComeco(bPassagem ? EComeco::ePassagem : EComeco::eNoFim),
      m_Log(DiretorioDosDados(rTudo, sEmpresa)) {}

void CXVAcompanhamento::Rodada() {
    m_bEscreveu = false;
    try {
        LeTudo();
    } catch (...) {
        m_pCliente.reset();  // the next round opens the store anew
        throw;
    }
    // Indexes of stores in which nothing happens need not be in memory.
    if (!m_bEscreveu) m_pCliente.reset();
}

void CXVAcompanhamento::LeTudo() {
    if (m_eComeco != EComeco::eNenhum) Comeca();
    if (m_Ficha.passagem.has_value()) Passa();
    std::vector<SLinhaLogGeral> listaLinhas;
    CPosicoesLog listaPosicoes = m_Ficha.listaPosicoes;
    while (!Parar() && m_Log.LeParte(&listaPosicoes, &listaLinhas)) {
        EscrevePedidos(Junta(listaLinhas, listaPosicoes), true);
        if (!Parar()) m_Ficha.listaPosicoes = listaPosicoes;
    }
}

// The end of the log is taken before the store is looked at: what comes while it is, the log tells again.
void CXVAcompanhamento::Comeca() {
    m_Ficha.listaPosicoes = m_Log.GetFim();
    if (m_eComeco == EComeco::ePassagem) m_Ficha.passagem = 0;
    Escreve(m_eComeco == EComeco::ePassagem ? "passagem" : "inicio", m_Ficha);
    m_eComeco = EComeco::eNenhum;
}

// In the order of the DMCs, so that a pass that was interrupted goes on behind its last one.
void CXVAcompanhamento::Passa() {
    std::vector<REG_XVDMC> lista;
    XVConfere(Cliente().BuscaPonteiros({}, &lista));
    const auto antes = [](REG_XVDMC a, REG_XVDMC b) { return a.uiValor < b.uiValor; };
    std::sort(lista.begin(), lista.end(), antes);
    auto it = std::upper_bound(lista.begin(), lista.end(), REG_XVDMC{*m_Ficha.passagem}, antes);
    std::vector<SPedido> listaPedidos;
    while (it != lista.end() && !Parar()) {
        listaPedidos.clear();
        for (; it != lista.end() && listaPedidos.size() < k_uiPorLeitura; ++it) {
            SFicha depois = m_Ficha;
            depois.passagem = it->uiValor;
            listaPedidos.push_back({*it, false, std::move(depois)});
        }
        EscrevePedidos(listaPedidos, false);
    }
    if (Parar()) return;
    m_Ficha.passagem.reset();
    Escreve("passagemConcluida", m_Ficha);
    m_rTudo.rContexto.saida.Termina();
}

// Each integration once, where the lines name it first. The lines up to the next one that is new are told
// with it.
std::vector<CXVAcompanhamento::SPedido> CXVAcompanhamento::Junta(const std::vector<SLinhaLogGeral>& rLinhas,
                                                                 const CPosicoesLog& rFim) const {
    std::vector<SPedido> listaPedidos;
    std::map<XVUInt64, std::size_t> mapOnde;
    for (const SLinhaLogGeral& rLinha : rLinhas) {
        const auto [it, bPrimeira] = mapOnde.try_emplace(rLinha.regDmc.uiValor, listaPedidos.size());
        if (bPrimeira) listaPedidos.push_back({rLinha.regDmc, false, m_Ficha});
        listaPedidos[it->second].bNova |= rLinha.bNova;
        listaPedidos.back().depois.listaPosicoes = rLinha.depois;
    }
    if (!listaPedidos.empty()) listaPedidos.back().depois.listaPosicoes = rFim;
    return listaPedidos;
}

void CXVAcompanhamento::EscrevePedidos(const std::vector<SPedido>& rPedidos, bool bAusentes) {
    std::vector<REG_XVDMC> listaDmcs;
    for (const SPedido& rPedido : rPedidos) listaDmcs.push_back(rPedido.regDmc);
    std::vector<CXVDadosCR_IntegracaoMiddleware> listaDados;
    const bool bTodas = SUCCEEDED(Cliente().LeIntegracoes(listaDmcs, m_rTudo.uiFlags, &listaDados));
    listaDados.resize(rPedidos.size());
    for (std::size_t i = 0; i < rPedidos.size() && !Parar(); ++i) {
        const HRESULT hr =
            bTodas ? S_OK : Cliente().LeIntegracao(rPedidos[i].regDmc, m_rTudo.uiFlags, &listaDados[i]);
        if (hr != E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA || bAusentes)
            EscreveUm(rPedidos[i], hr, listaDados[i]);
        m_Ficha = rPedidos[i].depois;
        listaDados[i] = {};
    }
    m_rTudo.rContexto.saida.Termina();
}

void CXVAcompanhamento::EscreveUm(const SPedido& rPedido, HRESULT hr,
                                  const CXVDadosCR_IntegracaoMiddleware& rDados) {
    XVJson mais = XVJson::object();
    if (SUCCEEDED(hr)) {
        if (rPedido.bNova) {
            if (XVJson lista = DmcsDaChave(rDados); !lista.is_null()) mais["dmcsDaChave"] = std::move(lista);
        }
        mais["integracao"] = XVRegistroJson::ParaJson(rDados, m_rTudo.uiFlags != 0);
        return Escreve("integracao", rPedido.depois, std::move(mais));
    }
    XVRegistroJson::Inclui(mais, "regDmc", rPedido.regDmc);
    if (hr == E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA)
        return Escreve("ausente", rPedido.depois, std::move(mais));
    if (!EhDaIntegracao(hr)) XVConfere(hr);
    mais["hr"] = XVCliente::CodigoEmTexto(hr);
    Escreve("ilegivel", rPedido.depois, std::move(mais));
    XVEscreveErro("empresa " + GetEmpresa() + ": " + rPedido.regDmc.ToString() + ": " + XVDescreveFalha(hr));
    m_rTudo.rContexto.eSaida = ESaida::eFalha;
}

// An integration of the bank takes the place of an earlier one that has its key, of which the log says
// nothing: which integrations have the key now tells which do not any more.
XVJson CXVAcompanhamento::DmcsDaChave(const CXVDadosCR_IntegracaoMiddleware& rDados) {
    if (rDados.eSistemaIntegracao != OfficialBank || rDados.uiChaveIntegracaoSistemaTerceiro == 0) return {};
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    filtro.uiChaveIntegracaoSistemaTerceiroInicial = rDados.uiChaveIntegracaoSistemaTerceiro;
    filtro.listaSistemaIntegracao = {OfficialBank};
    std::vector<REG_XVDMC> lista;
    XVConfere(Cliente().BuscaPonteiros(filtro, &lista));
    XVJson json = XVJson::array();
    for (const REG_XVDMC regDmc : lista) json.push_back(std::to_string(regDmc.uiValor));
    return json;
}

void CXVAcompanhamento::Escreve(const char* pszEvento, const SFicha& rFicha, XVJson&& rMais) {
    XVJson json{{"evento", pszEvento}, {"sEmpresa", rFicha.sEmpresa}, {"token", rFicha.ToString()}};
    for (auto& [rNome, rValor] : rMais.items()) json[rNome] = std::move(rValor);
    m_rTudo.rContexto.saida.LinhaJson(json);
    m_bEscreveu = true;
}

XVCliente::CXVCliente& CXVAcompanhamento::Cliente() {
    if (m_pCliente == nullptr) {
        auto pCliente = std::make_unique<XVCliente::CXVCliente>();
        XVCliente::SIdentificacao identificacao = m_rTudo.rContexto.identificacao;
        identificacao.sEmpresa = GetEmpresa();
        XVConfere(pCliente->ConectaLocal(
            identificacao, {.sDiretorio = m_rTudo.rContexto.loja.sDiretorio, .bSomenteLeitura = true}));
        m_pCliente = std::move(pCliente);
    }
    return *m_pCliente;
}
