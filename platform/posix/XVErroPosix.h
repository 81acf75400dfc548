// Causes of file failures from errno values.
#pragma once

#include <string>

#include "platform/XVErroArquivo.h"

namespace XVErroPosix {

CXVErroArquivo DeErrno(int iErrno);

// An operation on a path: tells an absent file from an absent directory, and a link that is not followed from
// a path that leads in circles.
CXVErroArquivo DeErrnoCaminho(int iErrno, const std::string& sCaminho);

// A write or a change of length that would have ended at uiFim: beyond the process's limit the space is
// what lacks, beyond the file system's the offset is what is wrong.
CXVErroArquivo DeErrnoGravacao(int iErrno, XVUInt64 uiFim);

}  // namespace XVErroPosix
