// The record with which a client initialises a component: who calls, for which company, and a seal that
// tells a record built by the suite's own client side from anything else.
#pragma once

#include <string_view>

#include "platform/XVTipos.h"

struct tagREG_DF_INICIALIZAPS {
    XVUInt ulUsuario;  // the low 16 bits count
    XVUInt ulNumeroSessao;
    XVUInt ulNumeroChamador;  // any number but 0
    XVUInt ulFiller;
    XVUShort usVersao;  // k_usVersaoRegistroInicializacao
    XVUShort usFiller[3];
    char szEmpresa[48];  // texts are zero-terminated within their field
    char szExecutavel[48];
    char szModulo[48];
    char szIdentificacao[64];
    char szUsuarioLocal[32];
    char cMarca;  // k_cMarcaRegistroInicializacao
    XVByte ucSessaoRemota;
    XVByte cFiller[22];
    XVUInt64 uiCRC;  // of all bytes before it
};
using REG_DF_INICIALIZAPS = tagREG_DF_INICIALIZAPS;

inline constexpr XVUShort k_usVersaoRegistroInicializacao = 127;
inline constexpr char k_cMarcaRegistroInicializacao = 'B';
// The user that conversions work as; no client may be it.
inline constexpr XVUShort k_usUsuarioConversao = 65535;

namespace XVRegistroInicializacao {

// Writes version, marker and, last, the CRC. Every other field must be set before.
void Sela(REG_DF_INICIALIZAPS* pReg);

bool VersaoConfere(const REG_DF_INICIALIZAPS& reg);
bool CRCConfere(const REG_DF_INICIALIZAPS& reg);
// The caller's number and texts that must be there, and the marker.
bool EstruturaConfere(const REG_DF_INICIALIZAPS& reg);
// Every text ends within its field. Holds for records accepted without the other checks, too.
bool TextosTerminados(const REG_DF_INICIALIZAPS& reg);
// The user is a client's, not the one reserved for conversions, and the company can name a directory.
bool ChamadorAceito(const REG_DF_INICIALIZAPS& reg);

// Precondition of both: TextosTerminados.
inline std::string_view GetEmpresa(const REG_DF_INICIALIZAPS& reg) {
    return reg.szEmpresa;
}
inline XVUShort GetUsuario(const REG_DF_INICIALIZAPS& reg) {
    return static_cast<XVUShort>(reg.ulUsuario);
}

}  // namespace XVRegistroInicializacao
