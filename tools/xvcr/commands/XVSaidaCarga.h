// What carrega tells about its lines, and how far it is.
#pragma once

#include "tools/xvcr/commands/XVCarga.h"
#include "tools/xvcr/output/XVSaida.h"

struct SContagemCarga {
    std::uint64_t uiLidas = 0;
    std::uint64_t uiGravadas = 0;
    std::uint64_t uiExistentes = 0;
    std::uint64_t uiUltimaLinha = 0;  // the last one that was answered

    void Inclui(const SLinhaCarga& rLinha);
    std::uint64_t GetErros() const { return uiLidas - uiGravadas - uiExistentes; }
};

class CXVSaidaCarga {
  public:
    // bChaveUnica: what was recorded before is counted apart.
    CXVSaidaCarga(CXVSaida& rSaida, bool bChaveUnica) : m_rSaida(rSaida), m_bChaveUnica(bChaveUnica) {}

    void Linha(const SLinhaCarga& rLinha);
    void Total(const SContagemCarga& rContagem);
    // For a person, on the error output.
    static void Erro(const SLinhaCarga& rLinha);
    std::string DescreveTotal(const SContagemCarga& rContagem) const;

  private:
    void LinhaJson(const SLinhaCarga& rLinha);
    void LinhaJsonComErro(const SLinhaCarga& rLinha);

    CXVSaida& m_rSaida;
    const bool m_bChaveUnica;
    std::string m_sTexto;  // of one line; its memory serves the next
};

// uiTotal: bytes of the source, 0 where nobody knows. The rate shows after the first second.
std::string XVDescreveProgressoCarga(std::uint64_t uiLinhas, std::uint64_t uiBytes, std::uint64_t uiTotal,
                                     XVUInt ulMilissegundos);
