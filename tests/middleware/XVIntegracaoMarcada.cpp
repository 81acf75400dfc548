#include "tests/middleware/XVIntegracaoMarcada.h"

#include "tests/middleware/XVRetratoLoja.h"

namespace {

constexpr unsigned k_uiBitsVersao = 24;  // of an external key; the number stands above them

// Short texts mostly, now and then one that needs several writes of a small buffer.
std::string Texto(char chTipo, XVUInt64 uiVersao) {
    const std::string sMarca = chTipo + std::to_string(uiVersao) + ' ';
    const std::size_t uiTamanho = uiVersao % 61 == 0 ? 70000 : 20 + uiVersao * 7919 % 3000;
    std::string sTexto;
    while (sTexto.size() < uiTamanho) sTexto += sMarca;
    return sTexto;
}

XVUInt64 Inclusao(XVUInt64 uiVersao) {
    const auto uiDma =
        XVDma(2023, static_cast<unsigned>(1 + uiVersao % 12), static_cast<unsigned>(1 + uiVersao % 28));
    return uiDma << 32 | uiVersao % 86400;
}

CXVIntegracaoTeste Entrada(XVUInt64 uiNumero, XVUInt64 uiVersao) {
    const auto ulVersao = static_cast<XVUInt>(uiVersao);
    CXVIntegracaoTeste integracao(uiNumero << k_uiBitsVersao | uiVersao, Mercos,
                                  static_cast<XVUInt>(eXVSMiddleware_Pendente + uiVersao % 5));
    auto& reg = integracao.reg;
    reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2023, 1, 1), uiVersao)};
    reg.regDmcMovimentoOrigem = {XVChaveDmc(XVDma(2023, 1, 2), uiVersao, 2)};
    reg.regDataHoraInclusao = {Inclusao(uiVersao)};
    reg.regDataHoraAlteracaoStatus = {Inclusao(uiVersao)};
    reg.uiBaseDadosTerceiro = uiVersao;
    reg.eTipoIntegracao = ulVersao % eXVSMiddleware_QuantidadeTipoIntegracao;
    reg.eTipoTransacao = ulVersao % eXVSMiddleware_QuantidadeTipoTransacao;
    reg.ulPonteiroFilial = ulVersao;
    reg.ulPonteiroUsuarioInclusao = ulVersao;
    reg.ulPonteiroUsuarioCancelamento = ulVersao;
    reg.ulPonteiroAuxiliar = ulVersao;
    reg.cReconsultarIdTerceiros = static_cast<XVByte>(uiVersao & 1);
    reg.ucTipoPonteiroAuxiliar = static_cast<XVByte>(uiVersao);
    integracao.Textos(Texto('j', uiVersao), Texto('m', uiVersao), Texto('r', uiVersao));
    return integracao;
}

}  // namespace

namespace XVIntegracaoMarcada {

HRESULT GravaNova(CBaseMiddleware& rLoja, XVUInt64 uiNumero, XVUInt64 uiVersao, REG_XVDMC* pRegDmc) {
    *pRegDmc = {};
    return rLoja.GravaIntegracao(pRegDmc, Entrada(uiNumero, uiVersao).Ptr());
}

HRESULT GravaAlterada(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiNumero, XVUInt64 uiVersao) {
    return rLoja.GravaIntegracao(&regDmc, Entrada(uiNumero, uiVersao).Ptr());
}

std::string Confere(const SIntegracaoLida& rLida, XVUInt64* puiVersao) {
    const XVUInt64 uiChave = rLida.reg.uiChaveIntegracaoSistemaTerceiro;
    const XVUInt64 uiVersao = uiChave & ((1U << k_uiBitsVersao) - 1);
    *puiVersao = uiVersao;
    SIntegracaoLida esperada{S_OK, Entrada(uiChave >> k_uiBitsVersao, uiVersao).reg, Texto('j', uiVersao),
                             Texto('m', uiVersao), Texto('r', uiVersao)};
    esperada.reg.regDmc = rLida.reg.regDmc;  // given by the store, as the moment of the last change is
    esperada.reg.regDataHoraAlteracaoStatus = rLida.reg.regDataHoraAlteracaoStatus;
    const std::string sLida = XVDescreveIntegracao(rLida);
    const std::string sEsperada = XVDescreveIntegracao(esperada);
    return sLida == sEsperada ? "" : sLida + "\nis not\n" + sEsperada;
}

}  // namespace XVIntegracaoMarcada
