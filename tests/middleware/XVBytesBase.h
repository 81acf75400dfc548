// Database files built byte by byte, without the product's layouts and writers: what a test expects on
// disk, and the databases of earlier versions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tests/harness/XVCrcBitABit.h"

// A growing run of little-endian fields.
class CXVBytes {
  public:
    CXVBytes& U8(unsigned ui) { return Numero(ui, 1); }
    CXVBytes& U16(unsigned ui) { return Numero(ui, 2); }
    CXVBytes& U32(std::uint64_t ui) { return Numero(ui, 4); }
    CXVBytes& U64(std::uint64_t ui) { return Numero(ui, 8); }
    CXVBytes& Zeros(std::size_t uiQuantidade) {
        m_sBytes.append(uiQuantidade, '\0');
        return *this;
    }
    // A text field, NUL-padded; of a longer text the end is kept.
    CXVBytes& Campo(std::string_view sTexto, std::size_t uiLargura);
    CXVBytes& Junta(std::string_view sBytes) {
        m_sBytes += sBytes;
        return *this;
    }
    // One entry of a text file.
    CXVBytes& Texto(std::string_view sTexto) { return U32(sTexto.size()).Junta(sTexto); }

    const std::string& Str() const { return m_sBytes; }
    operator const std::string&() const { return m_sBytes; }  // NOLINT: reads as its bytes

  private:
    CXVBytes& Numero(std::uint64_t ui, int iBytes);

    std::string m_sBytes;
};

// Packed date, date-time and key of a record.
constexpr std::uint64_t XVDma(unsigned uiAno, unsigned uiMes, unsigned uiDia) {
    return (std::uint64_t{uiAno} - 1848) << 9 | uiMes << 5 | uiDia;
}
constexpr std::uint64_t XVDataHora(std::uint64_t uiDma, unsigned uiHora, unsigned uiMinuto = 0) {
    return uiDma << 32 | (uiHora * 3600 + uiMinuto * 60);
}
constexpr std::uint64_t XVChaveDmc(std::uint64_t uiDma, std::uint64_t uiPonteiro, unsigned uiTipo = 1) {
    return uiDma << 46 | uiPonteiro << 14 | uiTipo;
}

struct SCabecalhoTeste {
    std::string sNome;
    std::uint64_t uiContador = 0;
    unsigned uiVersaoArquivo = 1;
    unsigned uiUsuario = 7;
    unsigned uiSessao = 99;
    std::string sEmpresa = "MATRIZ";
    std::string sComputador{};  // empty: this machine's
};
// A header of 240 bytes for uiTamanhoDados bytes, all its date-times 15/03/2024 09:00:00.
std::string XVCabecalhoDoTeste(const SCabecalhoTeste& rCabecalho, std::uint64_t uiTamanhoDados);
// Header and payload.
std::string XVArquivoDoTeste(const SCabecalhoTeste& rCabecalho, std::string_view sDados);
