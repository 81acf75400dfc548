// Decodes an HRESULT into the names of the Windows SDK's headers and into the sentence of the messages
// library "XVLMensagem". Every text may be empty; none is null. Thread rule: any thread.
#pragma once

#include <string>

#include "platform/XVTipos.h"

struct SDescricaoHResult {
    std::string sMensagem;  // sentence of the messages library
    int iSeverity = 0;      // bit 31
    const char* pszSeverity = "";
    int iFacility = 0;  // bits 16-28
    const char* pszFacility = "";
    int iCode = 0;             // bits 0-15
    const char* pszCode = "";  // Win32 error name
    const char* pszNome = "";  // name of the whole value
};

namespace XVDescricaoHResult {

SDescricaoHResult Decodifica(HRESULT hr);

const char* GetDescricao_SEVERITY(HRESULT hr);
const char* GetDescricao_FACILITY(HRESULT hr);
// Empty unless the messages library answers that the facility is none of the suite's.
const char* GetDescricao_CODE(HRESULT hr);
const char* GetNomeHRESULT(HRESULT hr);
std::string GetMensagem(HRESULT hr);

// By number.
const char* GetNomeSeverity(unsigned uiSeverity);
const char* GetNomeFacility(unsigned uiFacility);
// Empty for a code without name.
const char* GetNomeCodigoWin32(unsigned uiCodigo);

}  // namespace XVDescricaoHResult
