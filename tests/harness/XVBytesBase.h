// Database files built byte by byte, without the product's layouts and writers: what a test expects on
// disk, and the databases of earlier versions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/XVAmbienteSO.h"

// CRC-64 from its definition, bit by bit and without the product's tables: reflected polynomial
// 0xC96C5795D7870F42, from 0, no final inversion.
inline std::uint64_t CrcBitABit(std::string_view sBytes) {
    std::uint64_t uiCrc = 0;
    for (const char c : sBytes) {
        uiCrc ^= static_cast<unsigned char>(c);
        for (int i = 0; i < 8; ++i) uiCrc = (uiCrc >> 1) ^ ((uiCrc & 1) != 0 ? 0xC96C5795D7870F42ULL : 0);
    }
    return uiCrc;
}

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
    CXVBytes& Campo(std::string_view sTexto, std::size_t uiLargura) {
        if (sTexto.size() > uiLargura - 1) sTexto.remove_prefix(sTexto.size() - (uiLargura - 1));
        m_sBytes += sTexto;
        return Zeros(uiLargura - sTexto.size());
    }
    CXVBytes& Junta(std::string_view sBytes) {
        m_sBytes += sBytes;
        return *this;
    }
    // One entry of a text file.
    CXVBytes& Texto(std::string_view sTexto) { return U32(sTexto.size()).Junta(sTexto); }

    const std::string& Str() const { return m_sBytes; }
    operator const std::string&() const { return m_sBytes; }  // NOLINT: reads as its bytes

  private:
    CXVBytes& Numero(std::uint64_t ui, int iBytes) {
        for (int i = 0; i < iBytes; ++i) m_sBytes += static_cast<char>(ui >> (8 * i) & 0xFF);
        return *this;
    }

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
inline std::string XVCabecalhoDoTeste(const SCabecalhoTeste& rCabecalho, std::uint64_t uiTamanhoDados) {
    const CXVBytes dataHora = CXVBytes().U8(15).U8(3).U16(2024).U8(9).U8(0).U8(0).U8(0);
    CXVBytes blocoB;
    for (int i = 0; i < 3; ++i) blocoB.Junta(dataHora.Str());
    blocoB.Zeros(16).U64(216).U64(uiTamanhoDados).U64(rCabecalho.uiContador).U64(rCabecalho.uiSessao);
    blocoB.U32(0).U32(rCabecalho.uiUsuario).U16(rCabecalho.uiVersaoArquivo).U16(127).U16(127).U16(0);
    blocoB.Campo(rCabecalho.sNome, 24).Campo(rCabecalho.sEmpresa, 24).Zeros(24);
    const std::string sComputador =
        rCabecalho.sComputador.empty() ? XVAmbienteSO::GetNomeComputador() : rCabecalho.sComputador;
    blocoB.Campo(sComputador.substr(0, 15), 16).Zeros(16).Zeros(16);
    blocoB.U64(CrcBitABit(blocoB.Str()));

    const CXVBytes versao = CXVBytes().U16(1);
    const CXVBytes crcVersao = CXVBytes().U64(CrcBitABit(versao.Str()));
    return CXVBytes()
        .U16(1)
        .Zeros(6)
        .Junta(crcVersao.Str())
        .U64(CrcBitABit(crcVersao.Str()))
        .Junta(blocoB.Str());
}
// Header and payload.
inline std::string XVArquivoDoTeste(const SCabecalhoTeste& rCabecalho, std::string_view sDados) {
    return XVCabecalhoDoTeste(rCabecalho, sDados.size()) + std::string(sDados);
}
