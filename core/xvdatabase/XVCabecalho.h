// The 240-byte header at the front of a database file, as it lies on disk, and the rules that fill,
// update and validate it in memory. Nothing here touches a file. All integers little-endian.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "platform/XVRelogio.h"
#include "support/trace/IXVDF_Profiler.h"

#pragma pack(push, 1)

// Local date-time of a header.
struct REG_XVDATAHORA_CABECALHO {
    XVByte ucDia;
    XVByte ucMes;
    XVUShort usAno;
    XVByte ucHora;
    XVByte ucMinuto;
    XVByte ucSegundo;
    XVByte ucZero;
};
static_assert(sizeof(REG_XVDATAHORA_CABECALHO) == 8);

// Block A: written once, tells a file with header from one whose first bytes are records.
struct REG_XVCABECALHO_A {
    XVUShort usVersao;
    XVByte aZero[6];
    XVUInt64 uiCrcVersao;
    XVUInt64 uiCrcDoCrc;
};
static_assert(sizeof(REG_XVCABECALHO_A) == 24);

// Block B: rewritten at every update. Offsets in comments count from the start of the file.
struct REG_XVCABECALHO_B {
    REG_XVDATAHORA_CABECALHO regUltimaAtualizacao;    // 24
    REG_XVDATAHORA_CABECALHO regCriacao;              // 32
    REG_XVDATAHORA_CABECALHO regSegundaCriacao;       // 40
    REG_XVDATAHORA_CABECALHO regAlteracaoEmpresa;     // 48
    REG_XVDATAHORA_CABECALHO regAlteracaoComputador;  // 56
    XVUInt64 uiTamanhoBloco;                          // 64
    XVUInt64 uiTamanhoDados;                          // 72
    XVUInt64 uiContadorAtualizacao;                   // 80
    XVUInt64 uiNumeroSessao;                          // 88
    XVUInt ulZero;                                    // 96
    XVUInt ulUsuario;                                 // 100
    XVUShort usVersaoArquivo;                         // 104
    XVUShort usVersaoSistemaCriacao;                  // 106
    XVUShort usVersaoSistemaAtualizacao;              // 108
    XVUShort usVoltasContador;                        // 110
    char szNomeArquivo[24];                           // 112
    char szEmpresa[24];                               // 136
    char szEmpresaAnterior[24];                       // 160
    char szComputador[16];                            // 184
    char szComputadorAnterior[16];                    // 200
    XVByte aZero[16];                                 // 216
    XVUInt64 uiCrc;                                   // 232
};
static_assert(sizeof(REG_XVCABECALHO_B) == 216);
static_assert(offsetof(REG_XVCABECALHO_B, uiTamanhoBloco) + 24 == 64);
static_assert(offsetof(REG_XVCABECALHO_B, uiTamanhoDados) + 24 == 72);
static_assert(offsetof(REG_XVCABECALHO_B, uiNumeroSessao) + 24 == 88);
static_assert(offsetof(REG_XVCABECALHO_B, ulUsuario) + 24 == 100);
static_assert(offsetof(REG_XVCABECALHO_B, usVersaoArquivo) + 24 == 104);
static_assert(offsetof(REG_XVCABECALHO_B, usVoltasContador) + 24 == 110);
static_assert(offsetof(REG_XVCABECALHO_B, szNomeArquivo) + 24 == 112);
static_assert(offsetof(REG_XVCABECALHO_B, szEmpresa) + 24 == 136);
static_assert(offsetof(REG_XVCABECALHO_B, szComputador) + 24 == 184);
static_assert(offsetof(REG_XVCABECALHO_B, uiCrc) + 24 == 232);

struct REG_XVCABECALHO {
    REG_XVCABECALHO_A regA;
    REG_XVCABECALHO_B regB;
};
static_assert(sizeof(REG_XVCABECALHO) == 240);

#pragma pack(pop)

inline constexpr XVUInt64 k_uiTamanhoCabecalho = sizeof(REG_XVCABECALHO);
inline constexpr XVUInt64 k_uiTamanhoBlocoA = sizeof(REG_XVCABECALHO_A);
inline constexpr XVUInt64 k_uiTamanhoBlocoB = sizeof(REG_XVCABECALHO_B);
inline constexpr XVUShort k_usVersaoCabecalho = 1;
inline constexpr XVUShort k_usVersaoArquivoInicial = 1;
inline constexpr XVUShort k_usVersaoSistema = 127;

namespace XVCabecalho {

// Block A holds: version not 0 and both CRCs right; in version 1 every byte of it.
bool AssinaturaConfere(const REG_XVCABECALHO_A& regA);
// Block B's CRC over its first 208 bytes is right.
bool CrcConfere(const REG_XVCABECALHO_B& regB);

// Fills a new header for a payload of uiTamanhoDados bytes of the given file version, written now by rDono.
void Gera(REG_XVCABECALHO& reg, std::string_view sNomeArquivo, const IXVDF_Profiler& rDono,
          XVUShort usVersaoArquivo, XVUInt64 uiTamanhoDados);
// Brings block B up to date for a payload of uiTamanhoDados bytes, written now by rDono.
void Atualiza(REG_XVCABECALHO_B& regB, const IXVDF_Profiler& rDono, XVUInt64 uiTamanhoDados);
// Recomputes the CRC after a field was set.
void Sela(REG_XVCABECALHO_B& regB);
// Block A as every file of this version has it.
REG_XVCABECALHO_A BlocoA();

// Whether the first bytes of a file, at most 240 of them, are what is left of a header, its signature
// whole or not: 16 of the 24 signature bytes are right, or the size of block B stands in its place, or the
// file's own name does. A file of records or texts has none of the three.
bool EhReconhecivel(std::span<const XVByte> aInicio, std::string_view sNomeArquivo);
// Whether a header holds as a whole for a file of this length and name; the engine versions are not asked.
bool EhIntegro(const REG_XVCABECALHO& reg, std::string_view sNomeArquivo, XVUInt64 uiTamanhoArquivo);

// Block B as an opening demands it of a file of this length (240 bytes at the least) and name: S_OK, or the
// code of the first rule that it breaks.
HRESULT ValidaBlocoB(const REG_XVCABECALHO_B& regB, std::string_view sNomeArquivo, XVUInt64 uiTamanhoArquivo);

// The file-name field against a name: last 23 characters, case ignored.
bool NomeConfere(const REG_XVCABECALHO_B& regB, std::string_view sNomeArquivo);

}  // namespace XVCabecalho
