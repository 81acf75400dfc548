// The contents of one file on a device that may lose its power: what has reached it and what has not.
#pragma once

#include <algorithm>
#include <map>
#include <vector>

#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSorteio.h"

class CXVConteudoQueda {
  public:
    explicit CXVConteudoQueda(std::string sNoDispositivo = {})
        : m_sNoDispositivo(sNoDispositivo), m_sAtual(std::move(sNoDispositivo)) {}

    void Grava(XVUInt64 uiOffset, std::string_view sBytes) {
        if (sBytes.empty()) return;
        const std::size_t uiInicio =
            uiOffset == SOperacaoArquivo::k_uiNoFim ? m_sAtual.size() : static_cast<std::size_t>(uiOffset);
        m_sAtual.resize(std::max(m_sAtual.size(), uiInicio + sBytes.size()));
        m_sAtual.replace(uiInicio, sBytes.size(), sBytes);
        m_listaPendentes.push_back({uiInicio, std::string(sBytes), m_sAtual.size()});
    }
    void SetTamanho(std::size_t uiTamanho) {
        m_sAtual.resize(uiTamanho);
        m_listaPendentes.push_back({uiTamanho, {}, uiTamanho});
    }
    void Sincroniza() {
        m_sNoDispositivo = m_sAtual;
        m_listaPendentes.clear();
    }

    // One of the contents that a power failure may leave.
    std::string Sobrevive(CXVSorteio& rSorteio) const {
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

  private:
    static constexpr std::size_t k_uiSetor = 512;

    // A write, or a new length when sBytes is empty.
    struct SAlteracao {
        std::size_t uiOffset = 0;
        std::string sBytes;
        std::size_t uiTamanhoDepois = 0;  // of the file
    };

    // The sectors of each change that fnChega(change, offset) lets reach the device; those behind a shorter
    // length become zeros. The file ends up uiTamanho bytes long.
    template <class TChega>
    std::string Aplica(TChega fnChega, std::size_t uiTamanho) const {
        std::string sBytes = m_sNoDispositivo;
        for (std::size_t i = 0; i < m_listaPendentes.size(); ++i) {
            const auto& [uiInicio, sNovos, uiDepois] = m_listaPendentes[i];
            const std::size_t uiFim = sNovos.empty() ? sBytes.size() : uiInicio + sNovos.size();
            for (std::size_t ui = uiInicio, uiProximo = 0; ui < uiFim; ui = uiProximo) {
                uiProximo = std::min(uiFim, (ui / k_uiSetor + 1) * k_uiSetor);
                if (!fnChega(i, ui)) continue;
                sBytes.resize(std::max(sBytes.size(), uiProximo));
                if (sNovos.empty())
                    sBytes.replace(ui, uiProximo - ui, uiProximo - ui, '\0');
                else
                    sBytes.replace(ui, uiProximo - ui, sNovos, ui - uiInicio, uiProximo - ui);
            }
        }
        sBytes.resize(uiTamanho);
        return sBytes;
    }
    // The first ones, the last of them cut short.
    std::string EmOrdem(CXVSorteio& rSorteio) const {
        const std::size_t uiUltima = rSorteio.Ate(m_listaPendentes.size());
        const std::size_t uiSetores = m_listaPendentes[uiUltima].sBytes.size() / k_uiSetor + 2;
        const std::size_t uiCorte =
            rSorteio.Acontece(1, 2)
                ? std::string::npos
                : (m_listaPendentes[uiUltima].uiOffset / k_uiSetor + rSorteio.Ate(uiSetores)) * k_uiSetor;
        return Aplica(
            [&](std::size_t i, std::size_t uiOffset) {
                return i < uiUltima || (i == uiUltima && uiOffset < uiCorte);
            },
            std::min(Tamanho(uiUltima + 1), std::max(Tamanho(uiUltima), uiCorte)));
    }
    // Each sector as it stood at a moment of its own, and the length at another.
    std::string PorSetor(CXVSorteio& rSorteio) const {
        const std::size_t uiMomentos = m_listaPendentes.size() + 1;
        std::map<std::size_t, std::size_t> mapaMomentos;  // by sector: the changes that it has seen
        return Aplica(
            [&](std::size_t i, std::size_t uiOffset) {
                const auto it =
                    mapaMomentos.try_emplace(uiOffset / k_uiSetor, rSorteio.Ate(uiMomentos)).first;
                return it->second > i;
            },
            Tamanho(rSorteio.Ate(uiMomentos)));
    }
    // Some writes and some sectors of them; the length is that of any moment.
    std::string Subconjunto(CXVSorteio& rSorteio) const {
        std::vector<std::size_t> listaSortes;  // 0: whole, 1: torn, otherwise lost
        for (std::size_t i = 0; i < m_listaPendentes.size(); ++i) listaSortes.push_back(rSorteio.Ate(4));
        return Aplica(
            [&](std::size_t i, std::size_t /*uiOffset*/) {
                return listaSortes[i] == 0 || (listaSortes[i] == 1 && rSorteio.Acontece(1, 2));
            },
            Tamanho(rSorteio.Ate(m_listaPendentes.size() + 1)));
    }
    // The length after that many of the changes.
    std::size_t Tamanho(std::size_t uiAlteracoes) const {
        return uiAlteracoes == 0 ? m_sNoDispositivo.size()
                                 : m_listaPendentes[uiAlteracoes - 1].uiTamanhoDepois;
    }

    std::string m_sNoDispositivo;
    std::string m_sAtual;
    std::vector<SAlteracao> m_listaPendentes;
};
