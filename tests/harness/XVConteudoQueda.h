// The contents of one file on a device that may lose its power: what has reached it and what has not.
#pragma once

#include <string>
#include <vector>

#include "tests/harness/XVSorteio.h"

class CXVConteudoQueda {
  public:
    explicit CXVConteudoQueda(std::string sNoDispositivo = {})
        : m_sNoDispositivo(sNoDispositivo), m_sAtual(std::move(sNoDispositivo)) {}

    void Grava(std::size_t uiOffset, const void* pDados, std::size_t uiTamanho);
    void SetTamanho(std::size_t uiTamanho);
    void Sincroniza();

    const std::string& GetAtual() const { return m_sAtual; }
    // One of the contents that a power failure may leave.
    std::string Sobrevive(CXVSorteio& rSorteio) const;

  private:
    static constexpr std::size_t k_uiSetor = 512;

    // A write, or a new length when sBytes is empty.
    struct SAlteracao {
        std::size_t uiOffset = 0;
        std::string sBytes;
        std::size_t uiTamanhoDepois = 0;  // of the file
    };

    static void Aplica(const SAlteracao& rAlteracao, std::size_t uiDe, std::size_t uiAte,
                       std::string& rDestino);
    template <class TChega>
    static void AplicaPorSetor(const SAlteracao& rAlteracao, std::string& rDestino, TChega fnChega);
    std::string EmOrdem(CXVSorteio& rSorteio) const;
    std::string PorSetor(CXVSorteio& rSorteio) const;
    std::string Subconjunto(CXVSorteio& rSorteio) const;
    std::size_t TamanhoSorteado(CXVSorteio& rSorteio) const;

    std::string m_sNoDispositivo;
    std::string m_sAtual;
    std::vector<SAlteracao> m_listaPendentes;
};
