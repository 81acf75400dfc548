// The file of the operation journal as its writer sees it: head, two words, and the ring of entries.
//
// An entry takes the place of the oldest ones; how far back entries are still needed is written before their
// place is used again, so that at any moment every needed entry is whole. Nothing is flushed here. Thread
// rule: one object is used by one thread at a time.
#pragma once

#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "core/xvdatabase/XVOperacao.h"
#include "platform/XVSistemaArquivos.h"

class CXVDiarioAnel {
  public:
    // Bytes of a ring made from now on; at least 4096, a multiple of 64. The usual size keeps the entries of
    // some two hundred operations.
    static void SetTamanhoAnel(XVUInt64 uiTamanho);

    // Makes the file a journal of a new session, with device blocks behind every byte of the ring. rArquivo
    // must outlive the object or Fecha. bMapeia: through memory where that is possible, which is right while
    // nothing is flushed; a flush of bytes that were stored through a mapping takes three times as long as
    // one of bytes that were written by a call.
    CXVErroArquivo Prepara(IXVArquivo& rArquivo, XVUInt64 uiSessao, bool bMapeia);
    bool EstaPronto() const { return m_pJanela != nullptr; }
    void Fecha();
    // Makes the entries of a journal file nobody's, on the device. A file too short to be one: nothing.
    static CXVErroArquivo Invalida(IXVArquivo& rArquivo);
    // Says to viewers that an opening is about to conclude what the entries say.
    static CXVErroArquivo MarcaConclusao(IXVArquivo& rArquivo) {
        return rArquivo.Grava(k_uiOffsetSequencia, &k_uiPalavraConclusao, sizeof(k_uiPalavraConclusao));
    }

    // An entry is put together first: nothing is written, memory may run out.
    void IniciaEntrada(ETipoEntrada eTipo);
    void IncluiParte(std::string_view sNomeArquivo, const SGravacao& rGravacao);
    // The newest entry whose place the one put together would take; 0: none.
    XVUInt64 GetSubstituida() const;
    // Writes it and gives its number. On failure no complete entry has been left behind.
    CXVErroArquivo GravaEntrada(XVUInt64& uiNumero);
    // Of the last entry that was written, or an earlier one that is still there.
    CXVErroArquivo MarcaEstado(XVUInt64 uiNumero, EEstadoEntrada eEstado);
    XVUInt64 GetUltima() const { return m_uiUltima; }

    // Entries up to uiNumero are not needed any more.
    CXVErroArquivo Dispensa(XVUInt64 uiNumero);

    // The number of the operation that is being written to its files, and that it has been.
    CXVErroArquivo MarcaEmCurso(XVUInt64 uiNumero);
    CXVErroArquivo MarcaConcluida(XVUInt64 uiNumero);

  private:
    struct SViva {
        XVUInt64 uiNumero;
        XVUInt64 uiOffset;
        XVUInt64 uiTamanho;
    };
    struct SLugar {
        XVUInt64 uiOffset = 0;
        std::size_t uiSubstituidas = 0;  // from the front of the list
    };

    SLugar Planeja() const;
    XVUInt64 GetFimAnel() const { return k_uiTamanhoPaginaDiario + m_uiTamanhoAnel; }
    std::byte* Estende(std::size_t uiTamanho);
    CXVErroArquivo GravaBytes(XVUInt64 uiOffset);
    const SViva* Busca(XVUInt64 uiNumero) const;

    IXVArquivo* m_pArquivo = nullptr;
    std::unique_ptr<IXVJanela> m_pJanela;
    XVUInt64 m_uiTamanhoAnel = 0;
    XVUInt64 m_uiSessao = 0;
    XVUInt64 m_uiUltima = 0;
    XVUInt64 m_uiPrimeira = 1;
    XVUInt64 m_uiProximo = k_uiTamanhoPaginaDiario;
    std::deque<SViva> m_listaVivas;     // oldest first
    std::vector<std::byte> m_aEntrada;  // kept for its memory; the entry is at its front
    std::size_t m_uiTamanhoEntrada = 0;
};
