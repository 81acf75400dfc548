// The error record: what RecordError and the checks have in common.
#pragma once

#include <string>
#include <string_view>

#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVFonteTrace.h"

struct SErroTrace {
    const IXVDF_Profiler* pDono = nullptr;
    std::string sFuncao;  // full name
    SFonteTrace fonte;
    int iLinha = 0;
    HRESULT hr = 0;               // of a check
    std::string_view sExpressao;  // of a check
};

namespace XVProfilerErro {

// Hands the record to the capture of this thread, if there is one, and writes it to the error log.
// Precondition: the caller holds the guard of this thread.
void Grava(const SErroTrace& rErro, const std::string& sMensagem);

// "Class::Function"; the function alone where the class is empty.
std::string NomeCompleto(std::string_view sClasse, std::string_view sFuncao);

}  // namespace XVProfilerErro
