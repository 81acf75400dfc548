// The trace logs of an installation: which files there are, and reading them while they grow.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/xvcr/logs/XVLinhaLog.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

// Where to look: the monthly error logs of a directory, or its log of entries and exits.
struct SOrigemLog {
    std::string sDiretorio;
    std::string sArquivo;  // one file by its path; then nothing else counts
    std::string sAnoMes;   // "202611"; empty: all months
    bool bPerfil = false;  // entries, exits and object creations instead of errors
    bool bSegue = false;   // the files grow while they are read, so a last line may not be whole yet

    // The files in the order of their months. A directory that cannot be listed is thrown as CXVErro.
    std::vector<std::string> Lista() const;
};

// One log, read line by line as it grows.
class CXVLeitorLog {
  public:
    // uiInicio: the byte from which on the first whole line is wanted; the columns are those of the header at
    // the beginning of the file.
    CXVLeitorLog(const std::string& sArquivo, bool bCresce, std::uintmax_t uiInicio = 0);

    // The next record that is there now. Lines that are none are passed over and leave a warning.
    bool Proximo(SLinhaLog* pLinha);
    std::vector<std::string> TiraAvisos() { return std::exchange(m_listaAvisos, {}); }
    // Whether the file that now has this name is shorter than what was read of it, or begins otherwise: cut,
    // or another one.
    bool FoiTrocado();

  private:
    void AvisaIlegivel();

    const std::string m_sArquivo;
    const std::uintmax_t m_uiInicio;  // byte with which the reading began
    std::string m_sInicio;            // as the file began when it was last looked at
    std::unique_ptr<IXVFonteBytes> m_pFonte;
    CXVLeitorLinhas m_Leitor;
    std::optional<CXVCabecalhoLog> m_Cabecalho;
    std::vector<std::string> m_listaAvisos;
    bool m_bNoMeioDaLinha;  // the line that comes next is the rest of one
    bool m_bDitoSemCabecalho = false;
};

// All logs of an origin, those included that appear later, are moved away and begin anew, or are cut.
class CXVLeitoresLog {
  public:
    explicit CXVLeitoresLog(SOrigemLog origem) : m_Origem(std::move(origem)) {}

    // The last records that fAceita takes, uiQuantos at most, in their order. Each log is read from its end,
    // as far as they need it; LeNovos then goes on behind them.
    std::vector<SLinhaLog> LeUltimos(std::size_t uiQuantos,
                                     const std::function<bool(const SLinhaLog&)>& fAceita);

    // Calls fRecebe for each record that has come since the last call.
    template <class FRecebe>
    void LeNovos(FRecebe&& fRecebe) {
        const std::vector<std::string> listaArquivos = m_Origem.Lista();
        // What an open file still held when it lost its name comes first.
        for (auto p = m_mapLeitores.begin(); p != m_mapLeitores.end();) {
            const bool bSaiu =
                std::find(listaArquivos.begin(), listaArquivos.end(), p->first) == listaArquivos.end() ||
                p->second.FoiTrocado();
            if (bSaiu) LeResto(p->second, fRecebe);
            p = bSaiu ? m_mapLeitores.erase(p) : std::next(p);
        }
        for (const std::string& rArquivo : listaArquivos)
            LeResto(m_mapLeitores.try_emplace(rArquivo, rArquivo, m_Origem.bSegue).first->second, fRecebe);
    }

  private:
    // A record, and the warnings about lines before it.
    struct SAchada {
        SLinhaLog linha;
        std::vector<std::string> listaAvisos;
    };

    template <class FRecebe>
    static void LeResto(CXVLeitorLog& rLeitor, FRecebe&& fRecebe) {
        SLinhaLog linha;
        for (bool bLida = true; bLida;) {
            bLida = rLeitor.Proximo(&linha);
            Avisa(rLeitor.TiraAvisos());
            if (bLida) fRecebe(linha);
        }
    }
    static void Avisa(const std::vector<std::string>& listaAvisos);
    std::deque<SAchada> UltimosDe(const std::string& sArquivo, std::size_t uiQuantos,
                                  const std::function<bool(const SLinhaLog&)>& fAceita);

    SOrigemLog m_Origem;
    std::map<std::string, CXVLeitorLog> m_mapLeitores;
};
