// Small files of numbers and names that are read and replaced whole, with a sum at their end.
//
// Thread rule: any thread.
#pragma once

#include <string>
#include <string_view>

#include "support/codes/XVCodigos.h"

namespace XVBytesDeArquivo {

void Anexa(std::string& rs, XVUInt64 ui);
// Its length in front.
void AnexaTexto(std::string& rs, std::string_view sTexto);
// Takes a number, or a text, off the front; false when there is none.
bool Tira(std::string_view& rs, XVUInt64* pui);
bool TiraTexto(std::string_view& rs, std::string* psTexto);

// The bytes between signature and sum; *psBytes holds them. An absent file: S_FALSE. One that does not hold:
// E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA.
HRESULT Le(const std::string& sPath, XVUInt64 uiAssinatura, std::string* psBytes);
// Replaces the file in one step: signature, bytes and sum are written under the other name, synchronised and
// moved.
HRESULT Grava(const std::string& sPath, const std::string& sPathNovo, XVUInt64 uiAssinatura,
              std::string_view sBytes);

}  // namespace XVBytesDeArquivo
