// A file of a viewed directory: reads as of one moment each, or of the moment that the thread reads in, and
// writes nothing. It is held open only while it is read.
//
// Thread rule: any thread.
#pragma once

#include <string>
#include <utility>

#include "core/xvdatabase/XVVisao.h"
#include "platform/XVSistemaArquivos.h"

class CXVArquivoVisto final : public IXVArquivo {
  public:
    // rVisao must outlive the file.
    CXVArquivoVisto(CXVVisao& rVisao, std::string sNomeArquivo)
        : m_rVisao(rVisao), m_sNomeArquivo(std::move(sNomeArquivo)) {}

    // Bytes that are read in one moment even beside a busy writer.
    static constexpr std::size_t k_uiPedaco = 32U << 10;

    // Pieces of at most k_uiPedaco, and of whole units of uiUnidade bytes, are of one moment each.
    CXVErroArquivo LeEmPedacos(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho, std::size_t uiUnidade);
    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        return LeEmPedacos(uiOffset, pDados, uiTamanho, 1);
    }
    // Up to where the header says. eArquivoNaoEncontrado: there is no such file at this moment.
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override;
    // An absent file is no failure. The state of the journal in that moment: pMarca, may be null.
    CXVErroArquivo GetArea(SAreaVista* pArea, SMarcaDiario* pMarca = nullptr) const;
    CXVErroArquivo Grava(XVUInt64, const void*, std::size_t) override { return Recusa(); }
    CXVErroArquivo SetTamanho(XVUInt64) override { return Recusa(); }
    CXVErroArquivo Sincroniza() override { return {}; }

  private:
    static CXVErroArquivo Recusa() { return {ECausaArquivo::eAcessoNegado, 0}; }

    CXVVisao& m_rVisao;
    std::string m_sNomeArquivo;
};
