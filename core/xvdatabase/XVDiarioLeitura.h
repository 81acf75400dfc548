// The operation journal as the next opening, or a viewer, finds it: bytes that may be torn, foreign or made
// up. Nothing is believed that its checksum and its bounds do not carry.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "platform/XVSistemaArquivos.h"

// One write of one file. The texts and bytes lie in the journal's own copy.
struct SParteLida {
    std::string_view sNome;
    XVUInt64 uiOffset = 0;
    XVUInt64 uiTamanhoAntes = 0;
    XVUInt64 uiTamanhoDepois = 0;
    std::string_view sNovos;
    std::string_view sAntigos;
    bool bCria = false;
    const REG_XVCABECALHO_B* pAntes = nullptr;  // null: the header is not kept up
    const REG_XVCABECALHO_B* pDepois = nullptr;
};

struct SEntradaLida {
    XVUInt64 uiNumero = 0;
    ETipoEntrada eTipo = ETipoEntrada::eGravacao;
    std::optional<EEstadoEntrada> eEstado;  // nothing: a word that no writer leaves
    std::vector<SParteLida> listaPartes;
};

class CXVDiarioLeitura {
  public:
    // Reads the journal of an open file. Bytes that are no journal: no entries, and no failure.
    CXVErroArquivo Le(IXVArquivo& rArquivo);

    // The entries that are still needed, oldest first.
    const std::vector<SEntradaLida>& GetEntradas() const { return m_listaEntradas; }
    // 0: the bytes are no journal.
    XVUInt64 GetSessao() const { return m_uiSessao; }
    // The word that tells how far the writer is, as it stood before the entries were read.
    XVUInt64 GetPalavra() const { return m_uiPalavra; }
    // An entry that is needed is not there: the device lost it.
    bool TemLacuna() const { return m_bLacuna; }
    // An entry that is needed does not say what became of its operation.
    bool TemEstadoDesconhecido() const;
    // The last entry was not finished: its operation had not begun.
    bool TemInacabada() const { return m_bInacabada; }

  private:
    CXVErroArquivo LeAte(IXVArquivo& rArquivo, XVUInt64 uiFim);
    void Interpreta(std::size_t uiFimAnel);
    std::size_t Examina(std::size_t uiOffset, std::size_t uiFim);
    bool SomaConfere(std::size_t uiOffset, const REG_XVDIARIO_ENTRADA& reg);
    void Encadeia(XVUInt64 uiPrimeira);
    static bool InterpretaPartes(std::string_view sEntrada, XVUInt ulPartes, SEntradaLida* pEntrada);
    template <class T>
    T Palavra(std::size_t uiOffset) const;

    std::string m_sBytes;
    std::vector<SEntradaLida> m_listaEntradas;
    XVUInt64 m_uiSessao = 0;
    XVUInt64 m_uiPalavra = 0;
    XVUInt64 m_uiMaiorInacabada = 0;
    XVUInt64 m_uiSomados = 0;  // bytes of which sums were taken
    bool m_bLacuna = false;
    bool m_bInacabada = false;
};
