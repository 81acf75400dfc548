// Views of an open file through the memory of the process.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <vector>

#include "platform/XVVistaMapeada.h"

class CXVVistaWindows;

// The views of one file that live and may have been written: flushing the file does not bring their pages
// along. Thread rule: any thread.
class CXVVistasDoArquivo {
  public:
    CXVErroArquivo Descarrega();
    void Inclui(const CXVVistaWindows* pVista);
    void Exclui(const CXVVistaWindows* pVista);

  private:
    std::mutex m_mutex;
    std::vector<const CXVVistaWindows*> m_listaVistas;
};

namespace XVVistaWindows {

// Maps the first uiTamanho bytes, or answers null where a mapping could end the process or show other bytes
// than the file's: the view then works by calls. rVistas must outlive the view.
std::unique_ptr<IXVVista> Mapeia(HANDLE hArquivo, XVUInt64 uiTamanho, bool bSomenteLeitura,
                                 CXVVistasDoArquivo& rVistas);

}  // namespace XVVistaWindows
