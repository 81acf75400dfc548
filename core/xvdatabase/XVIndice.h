// The key map of one index: 64-bit key -> ascending positions of the records that hold it.
//
// Open addressing over slots of 16 bytes (key, first and last position); the positions of one key are a
// list threaded through one 4-byte link per record position. A look-up is one probe sequence and no
// allocation. Thread rule: that of the file that owns it.
#pragma once

#include <vector>

#include "platform/XVTipos.h"

class CXVIndice {
  public:
    // Makes room for keys of uiQuantidade further records up to position uiUltimaPosicao: the inclusions that
    // follow cannot fail.
    void Reserva(std::size_t uiQuantidade, XVUInt uiUltimaPosicao);

    // The key must not be 0; the position must not be held under it already.
    void Inclui(XVUInt64 uiChave, XVUInt uiPosicao);
    // Takes the position out of the key's entry; an entry left empty goes. Absent: nothing.
    void Remove(XVUInt64 uiChave, XVUInt uiPosicao);
    void Limpa();

    // Lowest position of the key; 0 when no record has it.
    XVUInt GetPrimeira(XVUInt64 uiChave) const;
    // The next higher position of the same key; 0 at the end.
    XVUInt GetProxima(XVUInt uiPosicao) const { return m_listaProxima[uiPosicao]; }

  private:
    struct SEntrada {
        XVUInt64 uiChave = 0;
        XVUInt uiPrimeira = 0;  // 0: free slot
        XVUInt uiUltima = 0;
    };

    std::size_t Inicio(XVUInt64 uiChave) const;
    std::size_t Localiza(XVUInt64 uiChave) const;
    void Redimensiona(std::size_t uiEntradas);
    void LiberaEntrada(std::size_t uiLivre);

    std::vector<SEntrada> m_listaEntradas;  // a power of two
    std::vector<XVUInt> m_listaProxima;     // by position
    std::size_t m_uiUsadas = 0;
};
