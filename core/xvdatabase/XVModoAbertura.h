// Open modes of database files.
#pragma once

#include "platform/XVTipos.h"

// Combinations of the open flags read-write 0x0002, deny-write 0x0020, deny-none 0x0040, create 0x1000,
// no-truncate 0x2000. 0 is a closed file.
enum EXVDataBase_ModoAbertura : XVUInt {
    eModoFechado = 0,
    eModoLeituraGravacao = 0x2022,
    eModoLeituraSemBloqueio = 0x2040,
    eModoLeituraGravacaoCriacao = 0x3022,
};

// Name of a mode in traces.
constexpr const char* ModoAberturaToString(XVUInt eModoAbertura) {
    switch (eModoAbertura) {
        case eModoFechado:
            return "Invalido";
        case eModoLeituraGravacao:
            return "LeituraGravacao";
        case eModoLeituraSemBloqueio:
            return "LeituraSemBloqueio";
        case eModoLeituraGravacaoCriacao:
            return "LeituraGravacaoCriacao";
        default:
            return "Desconhecido";
    }
}
