// An operation journal put together byte by byte, without the product's structures and without its checksum.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/xvdatabase/XVCabecalhoTeste.h"

inline XVUInt64 SomaPalavraAPalavra(std::string s) {
    const std::size_t uiTamanho = s.size();
    s.resize((uiTamanho + 63) / 64 * 64);
    const auto mistura = [](XVUInt64 uiFaixa, XVUInt64 uiPalavra) {
        uiFaixa = (uiFaixa ^ uiPalavra) * 0x9FB21C651E98DF25ULL;
        return uiFaixa ^ (uiFaixa >> 32);
    };
    std::array<XVUInt64, 8> aFaixas{};
    for (std::size_t i = 0; i < 8; ++i) aFaixas[i] = i * 0x9E3779B97F4A7C15ULL + 1;
    for (std::size_t i = 0; i < s.size(); i += 8)
        aFaixas[i / 8 % 8] = mistura(aFaixas[i / 8 % 8], Campo<XVUInt64>(s, i));
    XVUInt64 uiSoma = 0;
    for (const XVUInt64 uiFaixa : aFaixas) uiSoma = mistura(uiSoma, uiFaixa);
    return mistura(uiSoma, uiTamanho);
}

inline std::string CheioAte(std::string s, std::size_t uiMultiplo) {
    s.resize((s.size() + uiMultiplo - 1) / uiMultiplo * uiMultiplo);
    return s;
}

// Block B of a file.
inline std::string Bloco(const std::string& sArquivo) {
    return sArquivo.substr(24, 216);
}

// One write of one file.
struct SParteBytes {
    std::string sNome;
    XVUInt64 uiOffset = 0, uiAntes = 0, uiDepois = 0;
    std::string sNovos, sAntigos;
    bool bCria = false;
    std::string sBlocoAntes{}, sBlocoDepois{};  // block B; empty: no header
};

inline std::string ParteBytes(const SParteBytes& p) {
    std::string s(56, '\0');
    Poe<XVUInt64>(s, 8, p.uiOffset);
    Poe<XVUInt64>(s, 16, p.uiAntes);
    Poe<XVUInt64>(s, 24, p.uiDepois);
    Poe<XVUInt64>(s, 32, p.sNovos.size());
    Poe<XVUInt64>(s, 40, p.sAntigos.size());
    Poe<XVUShort>(s, 48, static_cast<XVUShort>(p.sNome.size()));
    s[50] = static_cast<char>((p.bCria ? 1 : 0) + (p.sBlocoAntes.empty() ? 0 : 2));
    s += CheioAte(p.sNome, 8) + p.sBlocoAntes + p.sBlocoDepois + CheioAte(p.sNovos, 8) +
         CheioAte(p.sAntigos, 8);
    Poe<XVUInt64>(s, 0, s.size());
    return s;
}

enum : XVUInt { k_ulRefazer = 0, k_ulDesfazer = 1, k_ulNula = 2, k_ulGravacao = 1, k_ulCopia = 2 };

struct SEntradaBytes {
    XVUInt64 uiNumero = 1;
    std::vector<SParteBytes> partes;
    XVUInt ulEstado = k_ulRefazer;
    XVUInt ulTipo = k_ulGravacao;
};

inline void SelaEntrada(std::string& rsEntrada, XVUInt ulEstado = k_ulRefazer) {
    Poe<XVUInt64>(rsEntrada, 32, 0);
    Poe<XVUInt64>(rsEntrada, 40, 0);
    Poe<XVUInt64>(rsEntrada, 32, SomaPalavraAPalavra(rsEntrada));
    Poe<XVUInt64>(rsEntrada, 40, Campo<XVUInt64>(rsEntrada, 16) * 4 + ulEstado);
}

inline std::string EntradaBytes(XVUInt64 uiSessao, const SEntradaBytes& e) {
    std::string s = "ENTRADA1" + std::string(56, '\0');
    for (const SParteBytes& p : e.partes) s += ParteBytes(p);
    Poe<XVUInt64>(s, 8, uiSessao);
    Poe<XVUInt64>(s, 16, e.uiNumero);
    Poe<XVUInt64>(s, 24, s.size());
    Poe<XVUInt>(s, 48, e.ulTipo);
    Poe<XVUInt>(s, 52, static_cast<XVUInt>(e.partes.size()));
    SelaEntrada(s, e.ulEstado);
    return s;
}

// The page, a ring that holds the entries one behind the other, and what lies behind the ring.
inline std::string DiarioBytes(XVUInt64 uiSessao, const std::vector<std::string>& entradas,
                               XVUInt64 uiPrimeira = 1, std::size_t uiAnel = 4096,
                               const std::string& sLonga = {}) {
    std::string s = "VDIARIO1" + std::string(4096 - 8, '\0');
    Poe<XVUInt64>(s, 8, uiSessao);
    Poe<XVUInt64>(s, 16, uiAnel);
    Poe<XVUInt64>(s, 24, SomaPalavraAPalavra(s.substr(0, 24)));
    Poe<XVUInt64>(s, 520, uiPrimeira);
    std::string sAnel;
    for (const std::string& sEntrada : entradas) sAnel += CheioAte(sEntrada, 64);
    sAnel.resize(uiAnel);
    return s + sAnel + sLonga;
}
