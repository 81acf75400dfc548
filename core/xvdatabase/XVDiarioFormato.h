// The operation journal as it lies on disk. All integers little-endian.
//
// One page (head), a ring of entries that is written round, and behind it the place of an entry that does not
// fit the ring. An entry starts at a multiple of 64 bytes and lies in one piece. It is complete when its
// checksum holds; which entries belong together is told by the session in the head.
#pragma once

#include <cstddef>

#include "core/xvdatabase/XVCabecalho.h"
#include "platform/XVTipos.h"

inline constexpr const char* k_pszNomeDiario = "XVDATABASE_ABERTA.srk";

inline constexpr XVUInt64 k_uiAssinaturaDiario = 0x314F495241494456ULL;   // "VDIARIO1"
inline constexpr XVUInt64 k_uiAssinaturaEntrada = 0x3141444152544E45ULL;  // "ENTRADA1"
inline constexpr XVUInt64 k_uiTamanhoPaginaDiario = 4096;
// Two words, each rewritten in one piece, in a sector beside the head's.
// Twice the number of the last operation; one less while it is being written to its files.
inline constexpr XVUInt64 k_uiOffsetSequencia = 512;
// The word while an opening concludes what a writer that died has left.
inline constexpr XVUInt64 k_uiPalavraConclusao = ~XVUInt64{0};
// Number of the oldest entry that is still needed: it and all after it must be there.
inline constexpr XVUInt64 k_uiOffsetPrimeira = 520;
inline constexpr std::size_t k_uiAlinhamentoEntrada = 64;

#pragma pack(push, 1)

// Offset 0 of the file; rewritten at every opening for writing. A new session makes every entry that is
// there another session's, and so none of this one's.
struct REG_XVDIARIO_CABECALHO {
    XVUInt64 uiAssinatura;
    XVUInt64 uiSessao;
    XVUInt64 uiTamanhoAnel;  // bytes; the ring begins at k_uiTamanhoPaginaDiario
    XVUInt64 uiSoma;         // XVSoma64 of the bytes before
};
static_assert(sizeof(REG_XVDIARIO_CABECALHO) == 32);

enum class EEstadoEntrada : std::uint8_t {
    eRefazer = 0,   // to be concluded
    eDesfazer = 1,  // its writing failed: to be undone
    eNula = 2,      // undone, or never begun
};
enum class ETipoEntrada : XVUInt {
    eGravacao = 1,  // writes of one operation
    eCopia = 2,     // a transient copy is being made: its name, to be deleted
};

struct REG_XVDIARIO_ENTRADA {
    XVUInt64 uiAssinatura;
    XVUInt64 uiSessao;
    XVUInt64 uiNumero;   // 1, 2, 3 ... in a session
    XVUInt64 uiTamanho;  // bytes of the entry from its first byte, parts included
    XVUInt64 uiSoma;     // XVSoma64 of the entry with this field and the next as zero
    XVUInt64 uiEstado;   // uiNumero * 4 + EEstadoEntrada; rewritten in one piece
    ETipoEntrada eTipo;
    XVUInt ulPartes;
    XVUInt64 uiZero;
};
static_assert(sizeof(REG_XVDIARIO_ENTRADA) == 64);
static_assert(offsetof(REG_XVDIARIO_ENTRADA, uiEstado) % 8 == 0);

// One write of one file; follow, each filled up to a multiple of 8: the name, block B of the header before
// and after (with k_ucParteCabecalho), the new bytes, the bytes that they overwrite.
struct REG_XVDIARIO_PARTE {
    XVUInt64 uiTamanhoParte;  // bytes, this record and its fillers included
    XVUInt64 uiOffset;        // in the file, header included
    XVUInt64 uiTamanhoAntes;  // length of the file
    XVUInt64 uiTamanhoDepois;
    XVUInt64 uiNovos;    // number of new bytes
    XVUInt64 uiAntigos;  // number of overwritten bytes, uiNovos at the most
    XVUShort usTamanhoNome;
    XVByte ucMarcas;
    XVByte aZero[5];
};
static_assert(sizeof(REG_XVDIARIO_PARTE) == 56);

inline constexpr XVByte k_ucParteCria = 1;       // the file was not there before
inline constexpr XVByte k_ucParteCabecalho = 2;  // the file has a header

#pragma pack(pop)

constexpr std::size_t XVAlinha(std::size_t uiTamanho, std::size_t uiMultiplo) {
    return (uiTamanho + uiMultiplo - 1) / uiMultiplo * uiMultiplo;
}
constexpr XVUInt64 XVEstadoEntrada(XVUInt64 uiNumero, EEstadoEntrada eEstado) {
    return uiNumero * 4 + static_cast<XVUInt64>(eEstado);
}
