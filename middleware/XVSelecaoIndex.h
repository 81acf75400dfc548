// The first level of a search: which records of the index pass the filter. Where the index has a summary,
// whole groups of records are passed over by their classes; records that a viewer reads are each asked. Both
// find the same.
//
// Thread rule: one thread.
#pragma once

#include <span>
#include <vector>

#include "contract/XVListaAchadas.h"
#include "middleware/XVFiltroBusca.h"
#include "middleware/XVResumoIndex.h"

class CXVSelecaoIndex {
  public:
    using TResumo = TXVResumo<REG_CR_INDEX_INTEGRACAO_V1>;

    CXVSelecaoIndex(const CXVFiltroBusca& rFiltro, CXVListaAchadas& rAchadas)
        : m_rFiltro(rFiltro), m_rAchadas(rAchadas) {}

    // The parts of the index, in their order; pResumo of all of it, or null.
    void Ve(std::span<const REG_CR_INDEX_INTEGRACAO_V1> aRegistros, std::size_t uiPrimeiro,
            const TResumo* pResumo);
    // Whether what was found is in the order of the DMCs.
    bool EmOrdem() const { return m_bEmOrdem; }

  private:
    using TParte = std::span<const REG_CR_INDEX_INTEGRACAO_V1>;
    static constexpr std::size_t k_uiGrupo = 64;  // records whose classes are looked at together

    void Prepara(const TResumo& rResumo);
    void VeCadaUm(TParte aRegistros);
    std::size_t CopiaTodos(TParte aRegistros, REG_XVDMC* pDmcs) const;
    std::size_t Seleciona(TParte aRegistros, const XVByte* pClasses, REG_XVDMC* pDmcs) const;
    std::size_t SelecionaGrupo(TParte aRegistros, const XVByte* pClasses, REG_XVDMC* pDmcs) const;
    bool TemAlguma(const XVByte* pClasses) const;

    const CXVFiltroBusca& m_rFiltro;
    CXVListaAchadas& m_rAchadas;
    bool m_bEmOrdem = true;
    XVUInt64 m_uiUltimo = 0;
    std::array<XVByte, TResumo::k_uiClasses> m_aAdmite{};  // 1: records of the class may pass
    std::vector<XVByte> m_listaAdmitidas;  // these classes, as far as there are records of them
    bool m_bTodas = true;                  // no record has another class than these
    bool m_bTodasExatas = true;            // what passes by its class passes by its status and system
};
