// Where the payload begins of a file whose first 240 bytes give no sign: behind a header of which nothing is
// left, or at their front, in a file that never had one.
//
// The rest of the file is asked: the size of a record and what can stand in one, or the chain of texts. Where
// that tells nothing, or is as good from both places, nothing of the file is placed.
//
// Thread rule: one thread.
#pragma once

#include <cstring>
#include <string>

#include "core/xvdatabase/XVCabecalho.h"
#include "middleware/XVRegistrosMiddleware.h"
#include "middleware/verificacao/XVLeituraLoja.h"

namespace XVInicioArquivo {
enum class EVale : std::uint8_t {
    eNao,
    eTalvez,
    eSim,
};
// Sets where the payload begins and what an opening will say, by what each of the places is good for.
void Poe(SArquivoLoja* pArquivo, EVale eDoInicio, EVale eDepoisDoCabecalho);
// The file with its payload at uiInicio.
SArquivoLoja APartirDe(const SArquivoLoja& rArquivo, XVUInt64 uiInicio);

// Whether records of this layout can begin at uiInicio, by their size and the first of them.
template <class T>
EVale ValeParaRegistros(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiInicio) {
    constexpr std::size_t k_uiAmostra = 32;
    const SArquivoLoja arquivo = APartirDe(rArquivo, uiInicio);
    if (arquivo.uiInicio != uiInicio || arquivo.uiTamanho % sizeof(T) != 0) return EVale::eNao;
    std::string sBytes;
    CXVBuracos buracos;
    XVIgnora(rLeitura.Percorre(
        arquivo, std::min<XVUInt64>(arquivo.uiTamanho, k_uiAmostra * sizeof(T)),
        [&](XVUInt64, std::span<const char> aBytes) { sBytes.append(aBytes.data(), aBytes.size()); },
        &buracos));
    std::size_t uiBons = 0;
    std::size_t uiBonsNoLugarDoCabecalho = 0;
    for (std::size_t uiDe = 0; uiDe < sBytes.size(); uiDe += sizeof(T)) {
        T reg;
        std::memcpy(&reg, sBytes.data() + uiDe, sizeof(reg));
        if (!TXVPlausibilidade<T>::EhPlausivel(reg) || buracos.Toca(uiDe, uiDe + sizeof(T))) continue;
        ++uiBons;
        if (uiDe < k_uiTamanhoCabecalho) ++uiBonsNoLugarDoCabecalho;
    }
    if (uiInicio == 0 && uiBonsNoLugarDoCabecalho == 0) return EVale::eNao;
    if (uiBons * sizeof(T) == sBytes.size()) return EVale::eSim;
    return uiBons * sizeof(T) * 4 >= sBytes.size() * 3 ? EVale::eTalvez : EVale::eNao;
}
}  // namespace XVInicioArquivo

template <class T>
void XVDecideInicioDosRegistros(CXVLeituraLoja& rLeitura, SArquivoLoja* pArquivo) {
    if (!pArquivo->bSemSinal) return;
    XVInicioArquivo::Poe(pArquivo, XVInicioArquivo::ValeParaRegistros<T>(rLeitura, *pArquivo, 0),
                         XVInicioArquivo::ValeParaRegistros<T>(rLeitura, *pArquivo, k_uiTamanhoCabecalho));
}
// ulMaior: the highest position that a record names.
void XVDecideInicioDosTextos(CXVLeituraLoja& rLeitura, XVUInt ulMaior, SArquivoLoja* pArquivo);
