// What a conversion has to know of a file before it trusts it: length, checksum, and what its header says.
// Nothing here changes a file.
#pragma once

#include <memory>
#include <string>

#include "platform/XVSistemaArquivos.h"
#include "support/trace/IXVDF_Profiler.h"

// Length and checksums of a whole file, its header included: CRC-64 of what stands before the place of the
// header's own CRC, and of the rest. Two, for bytes with their own CRC behind them leave no mark in a CRC of
// the same kind over both: another header that holds would not be noticed. An absent file: all 0.
struct SSomaArquivo {
    XVUInt64 uiTamanho = 0;
    XVUInt64 uiCrcInicio = 0;
    XVUInt64 uiCrcResto = 0;
    bool operator==(const SSomaArquivo&) const = default;
};

struct SArquivoConversao {
    bool bExiste = false;
    XVUInt64 uiSeek = 0;          // where the payload begins: 240 or 0
    XVUInt64 uiTamanhoDados = 0;  // bytes of the payload
    // File version in the header; 0: no header whose checksum holds, or headers are off on the machine.
    XVUShort usCarimbo = 0;
    // The header holds as a whole for this name and length; with headers off on the machine false.
    bool bIntegro = false;

    // Whether step usPasso has something to do here. A file that carries the step's stamp or a later one has
    // been through it.
    bool PrecisaDoPasso(XVUShort usPasso) const {
        return uiTamanhoDados != 0 && !(bIntegro && usCarimbo >= usPasso);
    }
};

namespace XVConversaoArquivo {

// A failure notes the file as the one that was refused, for pDono.

// Opens for reading beside anyone. An absent file: S_OK and null.
HRESULT Abre(const IXVDF_Profiler* pDono, const std::string& sPath, std::unique_ptr<IXVArquivo>* ppArquivo);
// sNome is the name that the header has to carry: a ".tra" copy carries that of its ".dat".
HRESULT Descreve(const IXVDF_Profiler* pDono, const std::string& sPath, std::string_view sNome,
                 SArquivoConversao* pArquivo);
HRESULT Soma(const IXVDF_Profiler* pDono, const std::string& sPath, SSomaArquivo* pSoma);

// The line in the error log that names a file and why the conversion will not go on with it; yields
// E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS.
HRESULT Recusa(const IXVDF_Profiler* pDono, const std::string& sPath, const char* pszMotivo);

}  // namespace XVConversaoArquivo
