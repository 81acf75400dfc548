#include "tests/middleware/XVBytesBase.h"

#include "platform/XVAmbienteSO.h"

CXVBytes& CXVBytes::Numero(std::uint64_t ui, int iBytes) {
    for (int i = 0; i < iBytes; ++i) m_sBytes += static_cast<char>(ui >> (8 * i) & 0xFF);
    return *this;
}

CXVBytes& CXVBytes::Campo(std::string_view sTexto, std::size_t uiLargura) {
    if (sTexto.size() > uiLargura - 1) sTexto.remove_prefix(sTexto.size() - (uiLargura - 1));
    m_sBytes += sTexto;
    return Zeros(uiLargura - sTexto.size());
}

std::string XVCabecalhoDoTeste(const SCabecalhoTeste& rCabecalho, std::uint64_t uiTamanhoDados) {
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

std::string XVArquivoDoTeste(const SCabecalhoTeste& rCabecalho, std::string_view sDados) {
    return XVCabecalhoDoTeste(rCabecalho, sDados.size()) + std::string(sDados);
}
