// The company's general log: one line for every operation of the store and every deletion of a file.
// File "XVLogGeral_YYYYMM.log" in the company's data directory, tab-separated, described in docs/formats.md.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/XVSistemaArquivos.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVCheck.h"

enum class DFSLOG_Servico : XVUInt {
    eDFSLOG_Inclusao = 1,
    eDFSLOG_Exclusao = 2,
    eDFSLOG_Alteracao = 3,
};

// One audit record of the suite.
struct CXVDadosDF_Log {
    XVUInt64 uiChave = 0;       // the caller's key value
    XVUInt ulTipoRegistro = 0;  // 21: database file
    XVUInt ulServico = 0;       // DFSLOG_Servico as a number
    std::string sTexto;
};

class CXVAcessoEmpresarial {
  public:
    XV_CLASSE("CXVAcessoEmpresarial", "XVAcessoEmpresarial")

    // The mark on the data directory under which a month's file is created.
    static constexpr const char* k_pszMarcaCriacao = "loggeral";

    // pDono: who writes (company, user, session); must outlive this object.
    explicit CXVAcessoEmpresarial(const IXVDF_Profiler* pDono);
    ~CXVAcessoEmpresarial();

    // Appends one line; the trailing "\n" of sTexto is not counted as content. Tab, CR, LF and NUL inside
    // become a space. The file stays open between lines and changes with the month. Thread rule: any thread.
    HRESULT GravaLogGeral(DFSLOG_Servico eServico, std::string_view sTexto);
    HRESULT GravaLog(const CXVDadosDF_Log& dadosLog);

    void Fecha();

  private:
    HRESULT Anexa(XVUInt64 uiChave, XVUInt ulTipoRegistro, XVUInt ulServico, std::string_view sTexto);

    const IXVDF_Profiler* m_pDono;
    std::mutex m_Mutex;
    std::string m_sLinha;  // kept for its memory
    std::unique_ptr<IXVArquivo> m_pArquivo;
    XVUInt m_ulAnoMes = 0;         // of the file opened last
    bool m_bLinhaPartida = false;  // the last write to it failed
};
