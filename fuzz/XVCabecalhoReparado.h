// Makes a mutated header one that its checksums confirm, so that what is behind them is reached: the fields
// stay as they came.
#pragma once

#include <cstring>
#include <string>

#include "core/xvdatabase/XVCabecalho.h"
#include "support/values/XVCrc64.h"

enum class EReparo {
    eNenhum,
    eCrc,      // signature and checksum only
    eTamanho,  // and block size, data length and file name, so that the file is taken
    eQuantidade
};

inline void XVReparaCabecalho(std::string& sArquivo, EReparo eReparo, std::string_view sNome) {
    if (eReparo == EReparo::eNenhum || sArquivo.size() < sizeof(REG_XVCABECALHO)) return;
    REG_XVCABECALHO reg;
    std::memcpy(&reg, sArquivo.data(), sizeof(reg));
    if (reg.regA.usVersao == 0 || eReparo == EReparo::eTamanho) reg.regA.usVersao = k_usVersaoCabecalho;
    reg.regA.uiCrcVersao = XVCrc64(&reg.regA.usVersao, sizeof(reg.regA.usVersao));
    reg.regA.uiCrcDoCrc = XVCrc64(&reg.regA.uiCrcVersao, sizeof(reg.regA.uiCrcVersao));
    if (eReparo == EReparo::eTamanho) {
        reg.regB.uiTamanhoBloco = k_uiTamanhoBlocoB;
        reg.regB.uiTamanhoDados = sArquivo.size() - sizeof(reg);
        std::memset(reg.regB.szNomeArquivo, 0, sizeof(reg.regB.szNomeArquivo));
        sNome.copy(reg.regB.szNomeArquivo, sizeof(reg.regB.szNomeArquivo) - 1);
    }
    reg.regB.uiCrc = XVCrc64(&reg.regB, offsetof(REG_XVCABECALHO_B, uiCrc));
    std::memcpy(sArquivo.data(), &reg, sizeof(reg));
}
