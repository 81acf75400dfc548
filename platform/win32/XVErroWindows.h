// Causes of file failures from the operating system's error numbers.
#pragma once

#include "platform/XVErroArquivo.h"

namespace XVErroWindows {

CXVErroArquivo De(XVUInt ulErro);
CXVErroArquivo DeUltimo();  // of the calling thread's last error

}  // namespace XVErroWindows
