// A file header put together byte by byte, without the product's structures or its CRC tables.
#pragma once

#include <cstring>
#include <string>

#include "tests/harness/XVCrcBitABit.h"

template <class T>
T Campo(const std::string& sArquivo, std::size_t uiOffset) {
    T valor{};
    std::memcpy(&valor, sArquivo.data() + uiOffset, sizeof(T));
    return valor;
}

template <class T>
void Poe(std::string& sArquivo, std::size_t uiOffset, T valor) {
    std::memcpy(sArquivo.data() + uiOffset, &valor, sizeof(T));
}

inline void PoeTexto(std::string& sArquivo, std::size_t uiOffset, const std::string& sTexto) {
    sArquivo.replace(uiOffset, sTexto.size(), sTexto);
}

inline std::string CampoTexto(const std::string& sArquivo, std::size_t uiOffset, std::size_t uiLargura) {
    return sArquivo.substr(uiOffset, uiLargura).c_str();
}

inline void FechaCrc(std::string& sArquivo) {
    Poe(sArquivo, 232, CrcBitABit(sArquivo.substr(24, 208)));
}

// Header and payload of a sound file of the company MATRIZ.
inline std::string ArquivoComCabecalho(const std::string& sNome, const std::string& sDados) {
    std::string s(240, '\0');
    Poe<XVUShort>(s, 0, 1);
    Poe<XVUInt64>(s, 8, 0x54E979925CD0F10DULL);
    Poe<XVUInt64>(s, 16, 0x53E7815838846436ULL);
    Poe<XVUInt64>(s, 64, 216);
    Poe<XVUInt64>(s, 72, sDados.size());
    Poe<XVUShort>(s, 104, 1);
    Poe<XVUShort>(s, 106, 127);
    Poe<XVUShort>(s, 108, 127);
    PoeTexto(s, 112, sNome.size() > 23 ? sNome.substr(sNome.size() - 23) : sNome);
    PoeTexto(s, 136, "MATRIZ");
    PoeTexto(s, 184, "OUTROPC");
    FechaCrc(s);
    return s + sDados;
}
