#include "tools/xvcr/output/XVTerminal.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVConsole.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace XVTerminal {

std::size_t GetLargura() {
    constexpr XVUInt k_ulMaior = 10000;
    XVUInt ulColunas = 0;
    const std::string sColunas = XVAmbienteSO::GetVariavelAmbiente("COLUMNS").value_or("");
    if (XVLeituraValor::Le(sColunas, &ulColunas).empty() && ulColunas > 0 && ulColunas <= k_ulMaior)
        return ulColunas;
    return XVConsole::GetLarguraSaida();
}

bool UsaCores() {
    return XVConsole::SaidaAceitaCores() &&
           XVAmbienteSO::GetVariavelAmbiente("NO_COLOR").value_or("").empty();
}

}  // namespace XVTerminal
