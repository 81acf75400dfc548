// Windows on an open file through the memory of the process.
#pragma once

#include <atomic>
#include <memory>

#include "platform/XVJanela.h"

namespace XVJanelaPosix {

// Maps the first uiTamanho bytes, or answers null where a mapping could end the process or show other bytes
// than the file's: the window then works by calls. rulJanelas counts the windows that live and must outlive
// them.
std::unique_ptr<IXVJanela> AbreJanela(int iDescritor, XVUInt64 uiTamanho, std::atomic<unsigned>& rulJanelas);

}  // namespace XVJanelaPosix
