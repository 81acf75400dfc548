// Causes of file failures from errno values.
#pragma once

#include <string>

#include "platform/XVErroArquivo.h"

namespace XVErroPosix {

CXVErroArquivo DeErrno(int iErrno);

// Tells an absent file from an absent directory when iErrno is ENOENT.
CXVErroArquivo DeErrno(int iErrno, const std::string& sCaminho);

// A write or a change of length that would have ended at uiFim: beyond the process's limit the space is
// what lacks, beyond the file system's the offset is what is wrong.
CXVErroArquivo DeErrnoGravacao(int iErrno, XVUInt64 uiFim);

}  // namespace XVErroPosix
