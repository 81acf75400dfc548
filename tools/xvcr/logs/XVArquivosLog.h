// The trace logs of an installation: which files there are, and reading them while they grow.
#pragma once

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

    // The files in the order of their months. A directory that cannot be listed is thrown as CXVErro.
    std::vector<std::string> Lista() const;
};

// One log, read line by line as it grows.
class CXVLeitorLog {
  public:
    explicit CXVLeitorLog(const std::string& sArquivo);

    // The next record that is there now; lines that are none are passed over.
    bool Proximo(SLinhaLog* pLinha);

  private:
    std::unique_ptr<IXVFonteBytes> m_pFonte;
    CXVLeitorLinhas m_Leitor;
    std::optional<CXVCabecalhoLog> m_Cabecalho;
};

// All logs of an origin, those included that appear later.
class CXVLeitoresLog {
  public:
    explicit CXVLeitoresLog(SOrigemLog origem) : m_Origem(std::move(origem)) {}

    // Calls fRecebe for each record that has come since the last call.
    template <class FRecebe>
    void LeNovos(FRecebe&& fRecebe) {
        for (const std::string& rArquivo : m_Origem.Lista()) {
            auto pLeitor = m_mapLeitores.find(rArquivo);
            if (pLeitor == m_mapLeitores.end()) pLeitor = m_mapLeitores.try_emplace(rArquivo, rArquivo).first;
            SLinhaLog linha;
            while (pLeitor->second.Proximo(&linha)) fRecebe(linha);
        }
    }

  private:
    SOrigemLog m_Origem;
    std::map<std::string, CXVLeitorLog> m_mapLeitores;
};
