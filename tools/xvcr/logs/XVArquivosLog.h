// The trace logs of an installation: which files there are, and reading them while they grow.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
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
    CXVLeitorLog(const std::string& sArquivo, bool bCresce);

    // The next record that is there now. Lines that are none are passed over, and told on the error output.
    bool Proximo(SLinhaLog* pLinha);
    // Whether the file that now has this name is shorter than what was read of it, or begins otherwise: cut,
    // or another one.
    bool FoiTrocado();

  private:
    void DizIlegivel();

    const std::string m_sArquivo;
    std::string m_sInicio;  // as it was when the file was last looked at
    std::unique_ptr<IXVFonteBytes> m_pFonte;
    CXVLeitorLinhas m_Leitor;
    std::optional<CXVCabecalhoLog> m_Cabecalho;
    bool m_bDitoSemCabecalho = false;
};

// All logs of an origin, those included that appear later, are moved away and begin anew, or are cut.
class CXVLeitoresLog {
  public:
    explicit CXVLeitoresLog(SOrigemLog origem) : m_Origem(std::move(origem)) {}

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
    template <class FRecebe>
    static void LeResto(CXVLeitorLog& rLeitor, FRecebe&& fRecebe) {
        SLinhaLog linha;
        while (rLeitor.Proximo(&linha)) fRecebe(linha);
    }

    SOrigemLog m_Origem;
    std::map<std::string, CXVLeitorLog> m_mapLeitores;
};
