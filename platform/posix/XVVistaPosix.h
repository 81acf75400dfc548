// Views of an open file through the memory of the process.
#pragma once

#include <atomic>
#include <memory>

#include "platform/XVVista.h"

namespace XVVistaPosix {

// Maps the first uiTamanho bytes, or answers null where a mapping could end the process or show other bytes
// than the file's: the view then works by calls. rulVistas counts the views that live and must outlive them.
std::unique_ptr<IXVVista> Mapeia(int iDescritor, XVUInt64 uiTamanho, bool bSomenteLeitura,
                                 std::atomic<unsigned>& rulVistas);

}  // namespace XVVistaPosix
