#include "core/xvdatabase/XVGroupTextFileDynamic.h"

HRESULT CXVGroupTextFileDynamic::Le(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, std::string* psTexto) {
    psTexto->clear();
    return LePara(uiChaveNomeArquivo, uiPosicao, psTexto);
}

HRESULT CXVGroupTextFileDynamic::Le(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, CXVBufferSaida* psTexto) {
    psTexto->Limpa();
    return LePara(uiChaveNomeArquivo, uiPosicao, psTexto);
}

template <class TDestino>
HRESULT CXVGroupTextFileDynamic::LePara(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, TDestino* psTexto) {
    XVUInt64 uiCarregados = 0;
    const HRESULT hr = NoMembro(uiChaveNomeArquivo, [&](CXVTextFile* pXVFile) {
        XV_CHECK_EM("Le", pXVFile->Le(uiPosicao, psTexto));
        uiCarregados = pXVFile->CarregaTextosLidos(GetMaximoMembro());
        return S_OK;
    });
    if (uiCarregados != 0) ContaCrescimento(uiCarregados);
    return hr;
}

HRESULT CXVGroupTextFileDynamic::Prepara(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo,
                                         XVUInt& uiPosicao, std::string_view sTexto) {
    const std::span<const std::string_view> aRegistros(&sTexto, 1);
    return PreparaNoMembro(rOperacao, uiChaveNomeArquivo, uiPosicao, aRegistros);
}

HRESULT CXVGroupTextFileDynamic::Grava(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                                       std::string_view sTexto) {
    const std::span<const std::string_view> aRegistros(&sTexto, 1);
    XV_CHECK(GravaColecao(uiChaveNomeArquivo, uiPosicao, aRegistros));
    return S_OK;
}

HRESULT CXVGroupTextFileDynamic::GravaColecao(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                                              std::span<const std::string_view> aRegistros) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiChaveNomeArquivo", uiChaveNomeArquivo},
              {"uiPosicao", XVUInt64{uiPosicao}}, {"aRegistros.size()", XVUInt64{aRegistros.size()}});
    return GravaNoMembro(uiChaveNomeArquivo, uiPosicao, aRegistros);
}
