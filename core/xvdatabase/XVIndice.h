// The key map of one index: 64-bit key -> ascending positions of the records that hold it.
//
// Open addressing over slots of 4 bytes, which hold a position; the key is taken from its record, through
// chave(position), wherever one has to be compared. Where keys may repeat, a slot holds the last of the key's
// positions, and each position has a link to the next one, the last to the first. So a slot is 4 bytes, an
// appended repeat costs no walk, and a look-up is one probe sequence without an allocation.
//
// chave must answer for every position in the map what it was entered under; 0 is no key, which is how a
// record that is not in the map answers. Thread rule: that of the file that owns it.
#pragma once

#include <algorithm>
#include <bit>
#include <span>
#include <vector>

#include "platform/XVAntecipa.h"
#include "platform/XVBlocoMemoria.h"
#include "platform/XVTipos.h"

class CXVIndice {
  public:
    explicit CXVIndice(bool bPermiteRepetida) : m_bPermiteRepetida(bPermiteRepetida) {}

    // Makes the map anew of the keys of all positions from 1 on, with room for uiMais further ones. False:
    // one repeats that must not, and the map is empty. Throws std::bad_alloc and leaves the map as it was.
    bool Constroi(std::span<const XVUInt64> aChaves, std::size_t uiMais = 0);
    void Limpa();

    // Makes room for uiQuantidade further keys up to position uiUltimaPosicao: the inclusions that follow
    // cannot fail. uiRegistros: how many positions chave answers for.
    template <class TChave>
    void Reserva(std::size_t uiQuantidade, XVUInt uiUltimaPosicao, std::size_t uiRegistros, TChave chave);

    // The key must not be 0; the position must not be held already. A key that is held must be one that may
    // repeat.
    template <class TChave>
    void Inclui(XVUInt64 uiChave, XVUInt uiPosicao, TChave chave);
    // Takes the position out of the key's entry; an entry left empty goes. Absent: nothing.
    template <class TChave>
    void Remove(XVUInt64 uiChave, XVUInt uiPosicao, TChave chave);

    // Lowest position of the key; 0 when no record has it.
    template <class TChave>
    XVUInt GetPrimeira(XVUInt64 uiChave, TChave chave) const;
    // The next higher position of the same key; 0 at the end.
    XVUInt GetProxima(XVUInt uiPosicao) const {
        if (!m_bPermiteRepetida) return 0;
        const XVUInt uiProxima = m_listaProxima[uiPosicao];
        return uiProxima > uiPosicao ? uiProxima : 0;
    }

  private:
    std::size_t Inicio(XVUInt64 uiChave) const {
        return static_cast<std::size_t>(Espalha(uiChave)) & m_uiMascara;
    }
    std::size_t Seguinte(std::size_t i) const { return (i + 1) & m_uiMascara; }
    // The key's slot, or the free slot where it would go. At least one slot is always free.
    template <class TChave>
    std::size_t Localiza(XVUInt64 uiChave, TChave& chave) const;
    // The slot of a key that is not in the map.
    std::size_t LocalizaLivre(XVUInt64 uiChave) const;
    template <class TChave>
    void LiberaLugar(std::size_t uiLivre, TChave& chave);
    void Encadeia(std::size_t uiLugar, XVUInt uiPosicao);
    XVUInt Anterior(XVUInt uiUltima, XVUInt uiPosicao) const;
    void ReservaElos(std::size_t uiPosicoes);
    static XVUInt64 Espalha(XVUInt64 ui);
    // Three quarters of the slots are taken at the most.
    static std::size_t Lugares(std::size_t uiChaves) {
        constexpr std::size_t k_uiMinimo = 64;
        return std::bit_ceil(std::max(uiChaves * 4 / 3 + 1, k_uiMinimo));
    }

    bool m_bPermiteRepetida;
    TXVBlocoMemoria<XVUInt> m_lugares;  // 0: free; a power of two of them
    std::size_t m_uiLugares = 0;
    std::size_t m_uiMascara = 0;
    std::size_t m_uiUsados = 0;
    std::vector<XVUInt> m_listaProxima;  // by position, where keys may repeat
};

#include "core/xvdatabase/XVIndice.inl"
