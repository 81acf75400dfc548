// Windows on an open file through the memory of the process.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <vector>

#include "platform/XVJanelaMemoria.h"

class CXVJanelaWindows;

// The windows on one file that live and may have been written: flushing the file does not bring their pages
// along. Thread rule: any thread.
class CXVJanelasDoArquivo {
  public:
    CXVErroArquivo Descarrega();
    void Inclui(const CXVJanelaWindows* pJanela);
    void Exclui(const CXVJanelaWindows* pJanela);

  private:
    std::mutex m_mutex;
    std::vector<const CXVJanelaWindows*> m_listaJanelas;
};

namespace XVJanelaWindows {

// Maps the first uiTamanho bytes, or answers null where a mapping could end the process or show other bytes
// than the file's: the window then works by calls. rJanelas must outlive it.
std::unique_ptr<IXVJanela> AbreJanela(HANDLE hArquivo, XVUInt64 uiTamanho, CXVJanelasDoArquivo& rJanelas);

}  // namespace XVJanelaWindows
