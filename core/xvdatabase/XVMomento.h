// One moment of a viewed directory: the state of its journal, what is to be laid over the files, and the
// files that were read, which stay open until the moment ends.
//
// Thread rule: one thread.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "platform/XVSistemaArquivos.h"

class CXVReconstrucao;
class CXVVisao;

// What the journal says of the present moment. Equal before and after: no operation began or ended, in a
// directory where somebody may write.
struct SMarcaDiario {
    bool bExiste = false;
    XVUInt64 uiSessao = 0;   // 0: no entries stand
    XVUInt64 uiPalavra = 0;  // the word at k_uiOffsetSequencia
    bool operator==(const SMarcaDiario&) const = default;
};

// Where the content of a file lies.
struct SAreaVista {
    bool bExiste = false;
    XVUInt64 uiSeek = 0;     // of the payload: 240 or 0
    XVUInt64 uiTamanho = 0;  // of the file, up to where it ends for the view
    XVUInt64 uiSoma = 0;     // of the header
};

class CXVMomento {
  public:
    CXVMomento(CXVVisao& rVisao, XVUInt64 uiChamada);
    ~CXVMomento();
    CXVMomento(const CXVMomento&) = delete;
    CXVMomento& operator=(const CXVMomento&) = delete;

    // Makes a moment the thread's for a scope; null: what is read meanwhile is of moments of its own.
    class CAtivo {
      public:
        explicit CAtivo(CXVMomento* pMomento);
        ~CAtivo();
        CAtivo(const CAtivo&) = delete;
        CAtivo& operator=(const CAtivo&) = delete;

      private:
        CXVMomento* m_pAnterior;
    };
    static CXVMomento* GetAtual();  // of this thread, or null

    // Looks at the journal: what is read from now on is of the moment that it shows. Files stay open.
    CXVErroArquivo Inicia();
    // Whether everything read since Inicia is of that moment.
    bool Confirma();

    // What the file looks like; an absent one is no failure.
    CXVErroArquivo GetArea(const std::string& sNomeArquivo, SAreaVista* pArea);
    // Reads exactly uiTamanho bytes. eFimDeArquivo, eArquivoNaoEncontrado.
    CXVErroArquivo Le(const std::string& sNomeArquivo, XVUInt64 uiOffset, void* pDados,
                      std::size_t uiTamanho);

    // Whether somebody has the directory open for writing.
    bool EscritorVive() const;
    const SMarcaDiario& GetMarca() const { return m_marca; }
    CXVVisao& GetVisao() const { return m_rVisao; }
    // Number of the call in which the moment lies; 0: of none.
    XVUInt64 GetChamada() const { return m_uiChamada; }

  private:
    struct SLido {
        std::string sNome;
        XVUInt64 uiOffset;
        std::size_t uiTamanho;
        XVUInt64 uiSoma;
    };
    struct SVisto {
        std::unique_ptr<IXVArquivo> pArquivo;  // null: not in the directory
        bool bAreaLida = false;
        SAreaVista area;
    };

    CXVErroArquivo LeMarca(SMarcaDiario* pMarca);
    CXVErroArquivo EscolheSobreposta();
    CXVErroArquivo AbreVisto(const std::string& sNomeArquivo, SVisto** ppVisto);
    CXVErroArquivo LeCru(const std::string& sNomeArquivo, SVisto& rVisto, XVUInt64 uiOffset, void* pDados,
                         std::size_t uiTamanho);
    CXVErroArquivo LeArea(const std::string& sNomeArquivo, SVisto& rVisto);

    CXVVisao& m_rVisao;
    XVUInt64 m_uiChamada;
    std::unique_ptr<IXVArquivo> m_pDiario;
    SMarcaDiario m_marca;
    XVUInt64 m_uiSessaoViva = 0;  // of a writer that was found alive
    int m_iInicios = 0;           // since the last moment that was confirmed
    std::shared_ptr<const CXVReconstrucao> m_pSobreposta;
    std::map<std::string, SVisto> m_mapVistos;
    std::vector<SLido> m_listaLidos;  // to be read again, where nothing else tells whether somebody wrote
};
