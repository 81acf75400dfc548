// What makes a payload sound without a header to vouch for it: fixed-size records that are possible, or
// an unbroken chain of texts. The walks read the payload once, front to back, in pieces of at most about
// 1 MiB, and change nothing.
//
// le(offset, pointer, size) reads from the payload and answers a CXVErroArquivo. The walks give the first
// failed read; *pbIntegro is false then, and wherever the content is not sound.
#pragma once

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/XVErroArquivo.h"

// Whether a record's fields can have been written by the system. A layout without a rule of its own
// accepts every record; the schema's layouts have one each.
template <class T>
struct TXVPlausibilidade {
    static bool EhPlausivel(const T& /*reg*/) { return true; }
};

inline constexpr XVUInt64 k_uiPedacoConteudo = 1U << 20;

template <class T, class TLe>
CXVErroArquivo XVConfereRegistros(XVUInt64 uiTamanho, bool* pbIntegro, TLe le) {
    *pbIntegro = false;
    if (uiTamanho % sizeof(T) != 0) return {};
    const XVUInt64 uiQuantidade = uiTamanho / sizeof(T);
    std::vector<T> aPedaco;
    for (XVUInt64 i = 0; i < uiQuantidade; i += aPedaco.size()) {
        aPedaco.resize(static_cast<std::size_t>(
            std::min<XVUInt64>(uiQuantidade - i, k_uiPedacoConteudo / sizeof(T) + 1)));
        const CXVErroArquivo erro = le(i * sizeof(T), aPedaco.data(), aPedaco.size() * sizeof(T));
        if (!erro.Ok()) return erro;
        if (!std::all_of(aPedaco.begin(), aPedaco.end(), TXVPlausibilidade<T>::EhPlausivel)) return {};
    }
    *pbIntegro = true;
    return {};
}

// Walks a chain of texts and calls texto(offset of the length prefix, length) for each.
template <class TLe, class TTexto>
CXVErroArquivo XVPercorreTextos(XVUInt64 uiTamanho, bool* pbIntegro, TLe le, TTexto texto) {
    *pbIntegro = false;
    std::vector<char> aPedaco;
    XVUInt64 uiInicioPedaco = 0;
    XVUInt ulTexto = 0;
    for (XVUInt64 uiOffset = 0; uiOffset < uiTamanho; uiOffset += sizeof(ulTexto) + ulTexto) {
        if (uiTamanho - uiOffset < sizeof(ulTexto)) return {};
        if (uiOffset + sizeof(ulTexto) > uiInicioPedaco + aPedaco.size()) {
            uiInicioPedaco = uiOffset;
            aPedaco.resize(static_cast<std::size_t>(std::min(uiTamanho - uiOffset, k_uiPedacoConteudo)));
            const CXVErroArquivo erro = le(uiOffset, aPedaco.data(), aPedaco.size());
            if (!erro.Ok()) return erro;
        }
        std::memcpy(&ulTexto, aPedaco.data() + (uiOffset - uiInicioPedaco), sizeof(ulTexto));
        if (ulTexto > uiTamanho - uiOffset - sizeof(ulTexto)) return {};
        texto(uiOffset, ulTexto);
    }
    *pbIntegro = true;
    return {};
}

template <class TLe>
CXVErroArquivo XVConfereTextos(XVUInt64 uiTamanho, bool* pbIntegro, TLe le) {
    return XVPercorreTextos(uiTamanho, pbIntegro, le, [](XVUInt64, XVUInt) {});
}
