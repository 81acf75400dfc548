// Bounded attempts at what others hold only for a moment: a file that a backup reads, a name that a scanner
// looks at, a mark on a directory.
//
// Thread rule: any thread; the calling thread sleeps between two attempts.
#pragma once

#include <memory>
#include <string>

#include "platform/XVPlataforma.h"
#include "platform/XVSistemaArquivos.h"

inline constexpr XVUInt k_ulEntreTentativas = 10;  // ms

// Half a second, for one write, deletion or move: whoever is in the way is about to go.
inline constexpr int k_iTentativasCurtas = 50;
// Five seconds, for opening a file and for a mark: they may be held for as long as another process opens or
// closes a store.
inline constexpr int k_iTentativasLongas = 500;

// However many attempts are left, none begins to wait after this: each may take far longer than the wait, on
// a busy machine and where looking at a lock waits by itself.
inline constexpr XVUInt k_ulLimiteTentativas = 5000;  // ms

// Runs operacao until repete(result) is false, iTentativas times at the most; the last result.
template <class TOperacao, class TRepete>
auto XVTenta(int iTentativas, TOperacao operacao, TRepete repete) {
    auto resultado = operacao();
    if (!repete(resultado)) [[likely]]
        return resultado;
    IXVRelogio& rRelogio = XVPlataforma::Relogio();
    const XVUInt ulInicio = rRelogio.GetTicks();
    for (int i = 1; i < iTentativas && rRelogio.GetTicks() - ulInicio < k_ulLimiteTentativas; ++i) {
        rRelogio.Dorme(k_ulEntreTentativas);
        resultado = operacao();
        if (!repete(resultado)) break;
    }
    return resultado;
}

// The same while the answer is that another opening is in the way.
template <class TOperacao>
CXVErroArquivo XVTentaEnquantoOcupado(int iTentativas, TOperacao operacao) {
    return XVTenta(iTentativas, operacao, [](const CXVErroArquivo& rErro) {
        return rErro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento;
    });
}

// Waits for the mark sMarca on a directory.
inline CXVErroArquivo XVTentaMarca(int iTentativas, const std::string& sDiretorio, const std::string& sMarca,
                                   std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    return XVTentaEnquantoOcupado(iTentativas, [&] {
        return XVPlataforma::SistemaArquivos().MarcaDiretorio(sDiretorio, sMarca, pMarca);
    });
}
