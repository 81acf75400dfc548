#include "tests/harness/XVConteudoQueda.h"

#include <algorithm>

void CXVConteudoQueda::Grava(std::size_t uiOffset, const void* pDados, std::size_t uiTamanho) {
    if (uiTamanho == 0) return;
    SAlteracao alteracao{uiOffset, std::string(static_cast<const char*>(pDados), uiTamanho), 0};
    Aplica(alteracao, 0, uiTamanho, m_sAtual);
    alteracao.uiTamanhoDepois = m_sAtual.size();
    m_listaPendentes.push_back(std::move(alteracao));
}

void CXVConteudoQueda::SetTamanho(std::size_t uiTamanho) {
    m_sAtual.resize(uiTamanho);
    m_listaPendentes.push_back({uiTamanho, {}, uiTamanho});
}

void CXVConteudoQueda::Sincroniza() {
    m_sNoDispositivo = m_sAtual;
    m_listaPendentes.clear();
}

// The bytes uiDe to uiAte of a write; a new length takes away what lay beyond it.
void CXVConteudoQueda::Aplica(const SAlteracao& rAlteracao, std::size_t uiDe, std::size_t uiAte,
                              std::string& rDestino) {
    if (rAlteracao.sBytes.empty()) {
        rDestino.resize(rAlteracao.uiOffset);
        return;
    }
    rDestino.resize(std::max(rDestino.size(), rAlteracao.uiOffset + uiAte));
    rDestino.replace(rAlteracao.uiOffset + uiDe, uiAte - uiDe, rAlteracao.sBytes, uiDe, uiAte - uiDe);
}

// The parts of a write that fnChega lets reach the device; a shorter length takes away whole sectors alike.
template <class TChega>
void CXVConteudoQueda::AplicaPorSetor(const SAlteracao& rAlteracao, std::string& rDestino, TChega fnChega) {
    const bool bTamanho = rAlteracao.sBytes.empty();
    const std::size_t uiFim = bTamanho ? rDestino.size() : rAlteracao.uiOffset + rAlteracao.sBytes.size();
    for (std::size_t ui = rAlteracao.uiOffset; ui < uiFim;) {
        const std::size_t uiProximo = std::min(uiFim, (ui / k_uiSetor + 1) * k_uiSetor);
        if (fnChega(ui)) {
            if (bTamanho)
                rDestino.replace(ui, uiProximo - ui, uiProximo - ui, '\0');
            else
                Aplica(rAlteracao, ui - rAlteracao.uiOffset, uiProximo - rAlteracao.uiOffset, rDestino);
        }
        ui = uiProximo;
    }
}

std::string CXVConteudoQueda::Sobrevive(CXVSorteio& rSorteio) const {
    if (m_listaPendentes.empty()) return m_sAtual;
    switch (rSorteio.Ate(8)) {
        case 0:
            return m_sNoDispositivo;
        case 1:
            return m_sAtual;
        case 2:
        case 3:
            return EmOrdem(rSorteio);
        case 4:
        case 5:
            return PorSetor(rSorteio);
        default:
            return Subconjunto(rSorteio);
    }
}

// The first ones, the last of them cut short.
std::string CXVConteudoQueda::EmOrdem(CXVSorteio& rSorteio) const {
    std::string sBytes = m_sNoDispositivo;
    const std::size_t uiQuantidade = rSorteio.Ate(m_listaPendentes.size() + 1);
    for (std::size_t i = 0; i < uiQuantidade; ++i) {
        const SAlteracao& rAlteracao = m_listaPendentes[i];
        std::size_t uiAte = rAlteracao.sBytes.size();
        if (i + 1 == uiQuantidade && uiAte > 0 && rSorteio.Acontece(1, 2)) {
            const std::size_t uiSetores =
                (rAlteracao.uiOffset + uiAte) / k_uiSetor - rAlteracao.uiOffset / k_uiSetor;
            const std::size_t uiFim =
                (rAlteracao.uiOffset / k_uiSetor + rSorteio.Ate(uiSetores + 1)) * k_uiSetor;
            if (uiFim <= rAlteracao.uiOffset) continue;
            uiAte = std::min(uiAte, uiFim - rAlteracao.uiOffset);
        }
        Aplica(rAlteracao, 0, uiAte, sBytes);
    }
    return sBytes;
}

// Each sector as it stood at a moment of its own, and the length at another.
std::string CXVConteudoQueda::PorSetor(CXVSorteio& rSorteio) const {
    std::vector<std::size_t> listaMomentos;  // by sector: the changes that it has seen
    const auto viu = [&](std::size_t uiOffset, std::size_t uiAlteracao) {
        while (listaMomentos.size() <= uiOffset / k_uiSetor)
            listaMomentos.push_back(rSorteio.Ate(m_listaPendentes.size() + 1));
        return listaMomentos[uiOffset / k_uiSetor] > uiAlteracao;
    };
    std::string sBytes = m_sNoDispositivo;
    for (std::size_t i = 0; i < m_listaPendentes.size(); ++i)
        AplicaPorSetor(m_listaPendentes[i], sBytes, [&](std::size_t uiOffset) { return viu(uiOffset, i); });
    sBytes.resize(TamanhoSorteado(rSorteio));
    return sBytes;
}

// Some writes and some sectors of them; the length is that of any moment.
std::string CXVConteudoQueda::Subconjunto(CXVSorteio& rSorteio) const {
    std::string sBytes = m_sNoDispositivo;
    for (const SAlteracao& rAlteracao : m_listaPendentes) {
        if (rSorteio.Acontece(1, 2)) continue;
        const bool bRasgada = rSorteio.Acontece(1, 2);
        AplicaPorSetor(rAlteracao, sBytes,
                       [&](std::size_t /*uiOffset*/) { return !bRasgada || rSorteio.Acontece(1, 2); });
    }
    sBytes.resize(TamanhoSorteado(rSorteio));
    return sBytes;
}

std::size_t CXVConteudoQueda::TamanhoSorteado(CXVSorteio& rSorteio) const {
    const std::size_t uiMomento = rSorteio.Ate(m_listaPendentes.size() + 1);
    return uiMomento == 0 ? m_sNoDispositivo.size() : m_listaPendentes[uiMomento - 1].uiTamanhoDepois;
}
