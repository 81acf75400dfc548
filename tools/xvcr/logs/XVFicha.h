// Where the following of one company stands, and its text: the token from which a later run goes on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/XVTipos.h"

// The end of what was read of one month's general log. The last line stands in it with its checksum: a log in
// which another line stands there is not the one that was read.
struct SPosicaoLog {
    static constexpr XVUInt64 k_uiMaiorLinha = 16384;  // bytes; of a general log, with room to spare

    XVUInt ulAnoMes = 0;   // 202611
    XVUInt64 uiLinha = 0;  // byte where the last line that was read begins
    XVUInt64 uiFim = 0;    // byte behind its line feed; 0: nothing was read
    XVUInt64 uiSoma = 0;   // XVCrc64 of the line

    bool operator==(const SPosicaoLog&) const = default;
};

// Months ascending. Two are kept: the one before may still grow where the clock is set back.
using CPosicoesLog = std::vector<SPosicaoLog>;
inline constexpr std::size_t k_uiMesesGuardados = 2;

struct SFicha {
    std::string sEmpresa{};
    CPosicoesLog listaPosicoes{};
    // A pass over the whole store is under way: the value of the last DMC that it wrote, 0 for none.
    std::optional<XVUInt64> passagem{};

    // "1:001:202611.9400.9585.0123456789abcdef", one part for each month, and ":p123" of a pass.
    std::string ToString() const;
    // False for what ToString never writes.
    [[nodiscard]] static bool DeString(std::string_view sTexto, SFicha* pFicha);
};
