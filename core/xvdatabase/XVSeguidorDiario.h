// Follows the operations of another process by its journal, while something slow is done with the files: what
// was read of them meanwhile, each piece of some moment, becomes one moment when the operations that came are
// laid over it.
//
// The ring of the journal reaches back a few hundred operations, so it has to be looked at often.
// Thread rule: one thread.
#pragma once

#include <optional>

#include "core/xvdatabase/XVFaixas.h"
#include "core/xvdatabase/XVVisao.h"

// What the operations that came made of a file.
struct SMudancaArquivo {
    bool bCriado = false;
    XVUInt64 uiTamanho = 0;  // of the file
    CXVFaixas faixas;
    std::optional<REG_XVCABECALHO_B> regCabecalho;
};

class CXVSeguidorDiario {
  public:
    // rVisao must outlive this object.
    explicit CXVSeguidorDiario(CXVVisao& rVisao) : m_rVisao(rVisao) {}

    // Follows from this moment on. False: nobody writes by a journal that has entries.
    bool Inicia();
    // Takes up what came since; little work where nothing did.
    void Olha();
    // Whether all operations that came are in GetMudancas, and their writer still lives.
    bool Confirma();
    const std::map<std::string, SMudancaArquivo>& GetMudancas() const { return m_mapa; }

  private:
    bool Le(IXVArquivo& rArquivo, XVUInt64* puiPalavra);
    bool Toma(const CXVDiarioLeitura& rDiario);
    bool TomaEntrada(const SEntradaLida& rEntrada);

    CXVVisao& m_rVisao;
    XVUInt64 m_uiSessao = 0;
    XVUInt64 m_uiUltima = 0;  // the last operation that was taken up
    XVUInt64 m_uiBytes = 0;   // kept
    bool m_bPerdeu = true;
    std::map<std::string, SMudancaArquivo> m_mapa;
};
