// The contents of one file on a device that may lose its power: what has reached it and what has not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSorteio.h"

class CXVConteudoQueda {
  public:
    explicit CXVConteudoQueda(std::string sNoDispositivo = {})
        : m_sNoDispositivo(sNoDispositivo), m_sAtual(std::move(sNoDispositivo)) {}

    void Grava(XVUInt64 uiOffset, std::string_view sBytes);
    void SetTamanho(std::size_t uiTamanho);
    void Sincroniza();

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

    template <class TChega>
    std::string Aplica(TChega fnChega, std::size_t uiTamanho) const;
    std::string EmOrdem(CXVSorteio& rSorteio) const;
    std::string PorSetor(CXVSorteio& rSorteio) const;
    std::string Subconjunto(CXVSorteio& rSorteio) const;
    // The length after that many of the changes.
    std::size_t Tamanho(std::size_t uiAlteracoes) const;

    std::string m_sNoDispositivo;
    std::string m_sAtual;
    std::vector<SAlteracao> m_listaPendentes;
};
