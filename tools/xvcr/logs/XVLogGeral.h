// The general log of a company as a feed: which integrations its lines name, from a position on.
//
// Every reading begins by looking whether the log is still the one that the positions were taken from, so it
// is the same whether the program has read on or was started anew.
#pragma once

#include "support/values/XVDmc.h"
#include "tools/xvcr/logs/XVFicha.h"

struct SLinhaLogGeral {
    REG_XVDMC regDmc;
    bool bNova = false;   // the line of the integration's inclusion
    CPosicoesLog depois;  // the positions behind the line

    // A line without its line feed. False: it names no integration. What an interrupted write left before it
    // is passed over.
    [[nodiscard]] static bool Le(std::string_view sLinha, SLinhaLogGeral* pLinha);
};

class CXVLogGeral {
  public:
    // sDiretorio: the company's data directory. Failures of all functions are thrown as CXVErro.
    explicit CXVLogGeral(std::string sDiretorio) : m_sDiretorio(std::move(sDiretorio)) {}

    // Behind the last whole line that is there now.
    CPosicoesLog GetFim() const;
    // Reads on by a part of a file and moves the positions; the lines of integrations that came. False:
    // nothing has come. A log that the positions do not fit is a failure.
    [[nodiscard]] bool LeParte(CPosicoesLog* pPosicoes, std::vector<SLinhaLogGeral>* pLinhas) const;

  private:
    std::vector<XVUInt> ListaMeses() const;
    std::string GetCaminho(XVUInt ulAnoMes) const;
    std::string LeBytes(XVUInt ulAnoMes, XVUInt64 uiInicio, XVUInt64 uiFim, XVUInt64* puiTamanho) const;
    void ConfereMeses(const std::vector<XVUInt>& listaMeses, const CPosicoesLog& rPosicoes) const;
    bool LeArquivo(std::size_t uiQual, CPosicoesLog* pPosicoes, std::vector<SLinhaLogGeral>* pLinhas) const;

    const std::string m_sDiretorio;
};
