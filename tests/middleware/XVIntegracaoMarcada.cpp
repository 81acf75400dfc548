#include "tests/middleware/XVIntegracaoMarcada.h"

#include <algorithm>
#include <sstream>

namespace {

// Short texts mostly, now and then one that needs several writes of a small buffer.
std::string Texto(char chTipo, XVUInt64 uiVersao) {
    const std::string sMarca = chTipo + std::to_string(uiVersao) + ' ';
    const std::size_t uiTamanho = uiVersao % 61 == 0 ? 70000 : 20 + uiVersao * 7919 % 3000;
    std::string sTexto;
    while (sTexto.size() < uiTamanho) sTexto += sMarca;
    return sTexto;
}

XVUInt Status(XVUInt64 uiVersao) {
    return static_cast<XVUInt>(eXVSMiddleware_Pendente + uiVersao % 5);
}

XVUInt64 Inclusao(XVUInt64 uiVersao) {
    const auto uiDma =
        XVDma(2023, static_cast<unsigned>(1 + uiVersao % 12), static_cast<unsigned>(1 + uiVersao % 28));
    return uiDma << 32 | uiVersao % 86400;
}

bool StatusTrazRetorno(XVUInt64 uiVersao) {
    return uiVersao % 2 == 0;
}

CXVIntegracaoTeste Entrada(XVUInt64 uiNumero, XVUInt64 uiVersao) {
    const auto ulVersao = static_cast<XVUInt>(uiVersao);
    CXVIntegracaoTeste integracao(XVIntegracaoMarcada::Chave(uiNumero, uiVersao), Mercos, Status(uiVersao));
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

// Collects what differs, field by field.
class CComparacao {
  public:
    void Numero(const char* pszCampo, XVUInt64 uiObtido, XVUInt64 uiEsperado) {
        if (uiObtido != uiEsperado)
            m_saida << ' ' << pszCampo << ' ' << uiObtido << " != " << uiEsperado << ';';
    }
    void Texto(const char* pszCampo, const std::string& sObtido, const std::string& sEsperado) {
        if (sObtido != sEsperado)
            m_saida << ' ' << pszCampo << " [" << sObtido.substr(0, 12) << "...] " << sObtido.size()
                    << " != [" << sEsperado.substr(0, 12) << "...] " << sEsperado.size() << ';';
    }
    std::string Str() const { return m_saida.str(); }

  private:
    std::ostringstream m_saida;
};

}  // namespace

namespace XVIntegracaoMarcada {

SIntegracaoMarcada Nova(XVUInt64 uiNumero, XVUInt64 uiVersao) {
    return {uiNumero,           {},
            uiVersao,           uiVersao,
            uiVersao,           Status(uiVersao),
            Inclusao(uiVersao), static_cast<XVUInt>(uiVersao)};
}

SIntegracaoMarcada Alterada(SIntegracaoMarcada antes, XVUInt64 uiVersao, XVUInt64 uiAgora) {
    SIntegracaoMarcada depois = Nova(antes.uiNumero, uiVersao);
    depois.regDmc = antes.regDmc;
    if (depois.eStatus != antes.eStatus) depois.uiAlteracao = uiAgora;
    return depois;
}

SIntegracaoMarcada ComStatus(SIntegracaoMarcada antes, XVUInt64 uiVersao, XVUInt64 uiAgora,
                             XVUShort usUsuario) {
    antes.uiVersaoMensagem = uiVersao;
    if (StatusTrazRetorno(uiVersao)) antes.uiVersaoRetorno = uiVersao;
    antes.eStatus = Status(uiVersao);
    antes.uiAlteracao = uiAgora;
    if (antes.eStatus == eXVSMiddleware_Cancelado) antes.ulCancelador = usUsuario;
    return antes;
}

HRESULT GravaNova(CBaseMiddleware& rLoja, XVUInt64 uiNumero, XVUInt64 uiVersao, REG_XVDMC* pRegDmc) {
    *pRegDmc = {};
    return rLoja.GravaIntegracao(pRegDmc, Entrada(uiNumero, uiVersao).Ptr());
}

HRESULT GravaAlterada(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiNumero, XVUInt64 uiVersao) {
    return rLoja.GravaIntegracao(&regDmc, Entrada(uiNumero, uiVersao).Ptr());
}

HRESULT GravaStatus(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiVersao) {
    const std::string sMensagem = Texto('m', uiVersao);
    const std::string sRetorno = StatusTrazRetorno(uiVersao) ? Texto('r', uiVersao) : "";
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmc = regDmc;
    reg.eStatusIntegracao = Status(uiVersao);
    reg.eSistemaIntegracao = Mercos;
    reg.regMensagemIntegracao = XVTextoPS(sMensagem);
    reg.regJSONRetornoIntegracao = XVTextoPS(sRetorno);
    return rLoja.GravaStatusIntegracao(reg);
}

std::string Confere(CBaseMiddleware& rLoja, const SIntegracaoMarcada& rEsperada) {
    return Confere(XVLe(rLoja, rEsperada.regDmc), rEsperada);
}

std::string Confere(const SIntegracaoLida& lida, const SIntegracaoMarcada& rEsperada) {
    CComparacao comparacao;
    comparacao.Numero("hr", static_cast<XVUInt>(lida.hr), 0);
    if (lida.hr != S_OK) return comparacao.Str();
    const CXVIntegracaoTeste entrada = Entrada(rEsperada.uiNumero, rEsperada.uiVersao);
    const auto& reg = lida.reg;
    const auto& esperado = entrada.reg;
    comparacao.Numero("dmc", reg.regDmc.uiValor, rEsperada.regDmc.uiValor);
    comparacao.Numero("chave", reg.uiChaveIntegracaoSistemaTerceiro,
                      esperado.uiChaveIntegracaoSistemaTerceiro);
    comparacao.Numero("sistema", reg.eSistemaIntegracao, Mercos);
    comparacao.Numero("status", reg.eStatusIntegracao, rEsperada.eStatus);
    comparacao.Numero("alteracao", reg.regDataHoraAlteracaoStatus.uiValor, rEsperada.uiAlteracao);
    comparacao.Numero("cancelador", reg.ulPonteiroUsuarioCancelamento, rEsperada.ulCancelador);
    comparacao.Numero("origem", reg.regDmcIntegracaoOrigem.uiValor, esperado.regDmcIntegracaoOrigem.uiValor);
    comparacao.Numero("movimento", reg.regDmcMovimentoOrigem.uiValor, esperado.regDmcMovimentoOrigem.uiValor);
    comparacao.Numero("inclusao", reg.regDataHoraInclusao.uiValor, esperado.regDataHoraInclusao.uiValor);
    comparacao.Numero("base", reg.uiBaseDadosTerceiro, esperado.uiBaseDadosTerceiro);
    comparacao.Numero("tipo", reg.eTipoIntegracao, esperado.eTipoIntegracao);
    comparacao.Numero("transacao", reg.eTipoTransacao, esperado.eTipoTransacao);
    comparacao.Numero("filial", reg.ulPonteiroFilial, esperado.ulPonteiroFilial);
    comparacao.Numero("usuario", reg.ulPonteiroUsuarioInclusao, esperado.ulPonteiroUsuarioInclusao);
    comparacao.Numero("auxiliar", reg.ulPonteiroAuxiliar, esperado.ulPonteiroAuxiliar);
    comparacao.Numero("reconsulta", reg.cReconsultarIdTerceiros, esperado.cReconsultarIdTerceiros);
    comparacao.Numero("tipo auxiliar", reg.ucTipoPonteiroAuxiliar, esperado.ucTipoPonteiroAuxiliar);
    comparacao.Texto("JSON", lida.sJSON, Texto('j', rEsperada.uiVersao));
    comparacao.Texto("mensagem", lida.sMensagem, Texto('m', rEsperada.uiVersaoMensagem));
    comparacao.Texto("retorno", lida.sRetorno, Texto('r', rEsperada.uiVersaoRetorno));
    return comparacao.Str();
}

}  // namespace XVIntegracaoMarcada
