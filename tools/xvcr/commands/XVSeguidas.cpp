#include "tools/xvcr/commands/XVSeguidas.h"

#include <CLI/StringTools.hpp>
#include <algorithm>

#include "tools/xvcr/commands/XVEmpresas.h"

namespace {

constexpr unsigned k_uiRodadasEntreListas = 20;  // of the companies that there are
constexpr unsigned k_uiRodadasDepoisDeFalha = 20;

}  // namespace

CXVSeguidas::CXVSeguidas(const SSelecaoSeguidas& rSelecao, const SAcompanha& rTudo)
    : m_rSelecao(rSelecao), m_rTudo(rTudo) {
    for (const std::string& rEmpresa : ListaPedidas()) Inclui(rEmpresa, rSelecao.bDesdeOInicio);
    for (const auto& [sEmpresa, ficha] : rSelecao.mapFichas)
        if (!m_mapSeguidas.contains(sEmpresa))
            XVFalha("há um token da empresa \"" + sEmpresa + "\", que não está entre as acompanhadas");
}

std::vector<std::string> CXVSeguidas::ListaPedidas() const {
    if (m_rSelecao.bTodas) return XVListaEmpresas(m_rTudo.sDiretorio);
    CXVContexto& rContexto = m_rTudo.rContexto;
    rContexto.ExigeAlgumaEmpresa();
    const std::vector<std::string> listaEmpresas = CLI::detail::split(rContexto.identificacao.sEmpresa, ',');
    for (const std::string& rEmpresa : listaEmpresas) {
        rContexto.identificacao.sEmpresa = rEmpresa;
        rContexto.ExigeBase();
    }
    return listaEmpresas;
}

void CXVSeguidas::Inclui(const std::string& sEmpresa, bool bPassagem) {
    if (m_mapSeguidas.contains(sEmpresa)) return;
    const auto ficha = m_rSelecao.mapFichas.find(sEmpresa);
    CXVAcompanhamento acompanhamento = ficha == m_rSelecao.mapFichas.end()
                                           ? CXVAcompanhamento(m_rTudo, sEmpresa, bPassagem)
                                           : CXVAcompanhamento(m_rTudo, ficha->second);
    m_mapSeguidas.try_emplace(sEmpresa, SSeguida{std::move(acompanhamento)});
}

bool CXVSeguidas::Rodada() {
    // A company that comes later is new: all of it is told.
    if (m_rSelecao.bTodas && ++m_uiRodadas % k_uiRodadasEntreListas == 0)
        for (const std::string& rEmpresa : XVListaEmpresas(m_rTudo.sDiretorio)) Inclui(rEmpresa, true);
    bool bEscreveu = false;
    for (auto it = m_mapSeguidas.begin(); it != m_mapSeguidas.end() && !m_rTudo.fParar(); ++it)
        bEscreveu |= RodadaDeUma(it->second);
    return bEscreveu;
}

bool CXVSeguidas::FalhamTodas() const {
    const auto falha = [](const auto& rPar) { return !rPar.second.sFalha.empty(); };
    return !m_mapSeguidas.empty() && std::all_of(m_mapSeguidas.begin(), m_mapSeguidas.end(), falha);
}

// A failure is said once, and the company tried again after a while.
bool CXVSeguidas::RodadaDeUma(SSeguida& rSeguida) {
    if (rSeguida.uiEspera > 0 && --rSeguida.uiEspera > 0) return false;
    CXVAcompanhamento& rAcompanhamento = rSeguida.acompanhamento;
    try {
        rAcompanhamento.Rodada();
        rSeguida.sFalha.clear();
    } catch (const CXVErro& rErro) {
        if (m_rTudo.rContexto.saida.Falhou()) throw;
        if (rSeguida.sFalha != rErro.what())
            XVEscreveErro("empresa " + rAcompanhamento.GetEmpresa() + ": " + rErro.what());
        rSeguida.sFalha = rErro.what();
        rSeguida.uiEspera = k_uiRodadasDepoisDeFalha;
        m_rTudo.rContexto.eSaida = ESaida::eFalha;
    }
    return rAcompanhamento.Escreveu();
}
