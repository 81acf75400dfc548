#include "tools/xvcr/commands/XVCarga.h"

#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/fields/XVRegistroJson.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

using EOperacao = SResultadoLinha::EOperacao;

bool EhOperacao(const SMembroJson& rMembro) {
    return rMembro.sNome == "operacao";
}

bool BuscaOperacao(const std::vector<SMembroJson>& listaMembros, EOperacao* peOperacao) {
    for (const SMembroJson& rMembro : listaMembros) {
        if (!EhOperacao(rMembro)) continue;
        if (rMembro.GetTipo() != SMembroJson::ETipo::eTexto) return false;
        const std::string sOperacao = rMembro.GetTexto();
        if (sOperacao != "integracao" && sOperacao != "status") return false;
        *peOperacao = sOperacao == "status" ? EOperacao::eStatus : EOperacao::eIntegracao;
    }
    return true;
}

template <class T>
bool LeDados(const std::vector<SMembroJson>& listaMembros, T* pDados, SResultadoLinha* pResultado) {
    SErroCampo erro = XVRegistroJson::DeMembros(listaMembros, EhOperacao, pDados);
    pResultado->sCampo = std::move(erro.sCampo);
    pResultado->sErro = std::move(erro.sMensagem);
    return pResultado->sErro.empty();
}

// The store would take the DMC alone and drop what names an integration beside it.
bool NomeiaUmaVez(const CXVDadosCR_StatusIntegracaoMiddleware& rDados, SResultadoLinha* pResultado) {
    if (rDados.regDmc.EhNulo()) return true;
    if (rDados.uiChaveIntegracaoSistemaTerceiro != 0)
        pResultado->sCampo = "uiChaveIntegracaoSistemaTerceiro";
    else if (rDados.eSistemaIntegracao != 0)
        pResultado->sCampo = "eSistemaIntegracao";
    else
        return true;
    pResultado->sErro = "não vale junto com o DMC, que já diz a integração";
    return false;
}

}  // namespace

SResultadoLinha CXVCarga::Executa(const std::string& sLinha) {
    const CXVArquivosRecusados recusados;  // of this line alone
    SResultadoLinha resultado;
    std::vector<SMembroJson> listaMembros;
    resultado.sErro = XVSeparaMembros(sLinha, &listaMembros);
    if (!resultado.sErro.empty()) return resultado;
    if (!BuscaOperacao(listaMembros, &resultado.eOperacao)) {
        resultado.sCampo = "operacao";
        resultado.sErro = "esperado \"integracao\" ou \"status\"";
        return resultado;
    }
    if (resultado.eOperacao == EOperacao::eStatus) {
        CXVDadosCR_StatusIntegracaoMiddleware dados;
        if (!LeDados(listaMembros, &dados, &resultado)) return resultado;
        resultado.regDmc = dados.regDmc;
        if (!NomeiaUmaVez(dados, &resultado)) return resultado;
        resultado.hr = m_rCliente.GravaStatusIntegracao(dados);
    } else {
        CXVDadosCR_IntegracaoMiddleware dados;
        if (!LeDados(listaMembros, &dados, &resultado)) return resultado;
        resultado.regDmc = dados.regDmc;
        resultado.hr = m_rCliente.GravaIntegracao(&resultado.regDmc, dados);
    }
    if (FAILED(resultado.hr)) resultado.sErro = XVDescreveFalha(resultado.hr);
    return resultado;
}
