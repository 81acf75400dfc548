// The mark of a store that is open for writing: a file that its process holds, denied to everyone else,
// and deletes when the store was closed cleanly.
//
// Found held: the store is open elsewhere. Found free: the process that opened the store ended without
// closing it, and may have ended between the two writes that make up one (the data, then the header that
// knows its length). Such a write was never reported as done; it is undone: what stands beyond the length
// in a valid header is kept aside in "<file>.srk" and cut off. Without the mark a length that does not
// fit its header is never touched. A file that could not be looked at keeps the mark for the next opening.
//
// The mark is empty until its holder has it; one byte long while a store is open under it.
//
// Thread rule: one object is used by one thread at a time.
#pragma once

#include <memory>
#include <string>

#include "platform/XVSistemaArquivos.h"
#include "support/IXVDF_Profiler.h"
#include "support/XVCheck.h"

class CXVMarcaAbertura {
  public:
    XV_CLASSE("CXVMarcaAbertura", "XVMarcaAbertura")

    // Marks the data directory. Held elsewhere through 500 attempts 10 ms apart: eSharingViolation.
    HRESULT Abre(const IXVDF_Profiler* pDono, const std::string& sDiretorio);
    // Lifts the mark. After an unclean close the file stays, so that the next opening looks at the files
    // again.
    void Fecha(bool bFechadaLimpa);

  private:
    static HRESULT AbreArquivoMarca(const IXVDF_Profiler* pDono, const std::string& sPath,
                                    std::unique_ptr<IXVArquivo>& pArquivo);
    HRESULT DesfazGravacoesInterrompidas(const IXVDF_Profiler* pDono, const std::string& sDiretorio);
    CXVErroArquivo DesfazNoArquivo(const IXVDF_Profiler* pDono, const std::string& sPath);
    static CXVErroArquivo GuardaSobra(IXVArquivo& rArquivo, const std::string& sPathSobra, XVUInt64 uiInicio,
                                      XVUInt64 uiFim);

    std::unique_ptr<IXVArquivo> m_pArquivo;
    std::string m_sPath;
    bool m_bPendente = false;  // a file is still to be looked at
};
