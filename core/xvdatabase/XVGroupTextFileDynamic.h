// A group whose members are text files.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "core/xvdatabase/XVGroupDinamico.h"
#include "core/xvdatabase/XVTextFile.h"

struct SNomesGroupTextFileDynamic {
    XV_CLASSE("CXVGroupTextFileDynamic", "core/xvdatabase/XVGroupTextFileDynamic")
};

class CXVGroupTextFileDynamic : public TXVGroupDinamico<CXVTextFile, SNomesGroupTextFileDynamic> {
  public:
    using TXVGroupDinamico::TXVGroupDinamico;

    // As the member's operations. E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO: the key has no member.
    HRESULT Le(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, std::string* psTexto);
    HRESULT Le(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, CXVBufferSaida* psTexto);
    // A text as part of an operation; out: the position that it will have.
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                    std::string_view sTexto);
    // The key's member is created by its first write.
    HRESULT Grava(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, std::string_view sTexto);
    HRESULT GravaColecao(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                         std::span<const std::string_view> aRegistros);

  private:
    template <class TDestino>
    HRESULT LePara(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, TDestino* psTexto);
};
