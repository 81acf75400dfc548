// A file header put together byte by byte, without the product's structures or its CRC tables.
#pragma once

#include <cstring>
#include <string>

#include "tests/harness/XVBytesBase.h"

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

// Header and payload of a sound file of the company MATRIZ, written at another computer.
inline std::string ArquivoComCabecalho(const std::string& sNome, const std::string& sDados) {
    return XVArquivoDoTeste({.sNome = sNome, .sComputador = "OUTROPC"}, sDados);
}
