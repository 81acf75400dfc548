#include "tools/xvcr/commands/XVCarga.h"

#include "support/codes/XVCodigos.h"
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

// The codes of the store itself; others are those of the system below it.
constexpr bool EhDaBase(HRESULT hr) {
    return static_cast<XVUInt>(hr) >> 16U == static_cast<XVUInt>(E_XVCR_VERSAO_INCOMPATIVEL) >> 16U;
}

template <class T>
void Prepara(const std::vector<SMembroJson>& listaMembros, SLinhaCarga* pLinha) {
    T& rDados = pLinha->dados.emplace<T>();
    if (!LeDados(listaMembros, &rDados, &pLinha->resultado)) return;
    pLinha->resultado.regDmc = rDados.regDmc;
    if constexpr (std::is_same_v<T, CXVDadosCR_StatusIntegracaoMiddleware>)
        static_cast<void>(NomeiaUmaVez(rDados, &pLinha->resultado));
}

}  // namespace

void XVPreparaLinha(std::string_view sLinha, SLinhaCarga* pLinha) {
    SResultadoLinha& rResultado = pLinha->resultado;
    std::vector<SMembroJson> listaMembros;
    rResultado.sErro = XVSeparaMembros(sLinha, &listaMembros);
    if (!rResultado.sErro.empty()) return;
    if (!BuscaOperacao(listaMembros, &rResultado.eOperacao)) {
        rResultado.sCampo = "operacao";
        rResultado.sErro = "esperado \"integracao\" ou \"status\"";
    } else if (rResultado.eOperacao == EOperacao::eStatus) {
        Prepara<CXVDadosCR_StatusIntegracaoMiddleware>(listaMembros, pLinha);
    } else {
        Prepara<CXVDadosCR_IntegracaoMiddleware>(listaMembros, pLinha);
    }
}

void CXVCarga::Executa(SLinhaCarga* pLinha) {
    SResultadoLinha& rResultado = pLinha->resultado;
    if (!rResultado.sErro.empty()) return;
    const CXVArquivosRecusados recusados;  // of this line alone
    if (const auto* pStatus = std::get_if<CXVDadosCR_StatusIntegracaoMiddleware>(&pLinha->dados))
        rResultado.hr = m_rCliente.GravaStatusIntegracao(*pStatus);
    else if (const auto* pIntegracao = std::get_if<CXVDadosCR_IntegracaoMiddleware>(&pLinha->dados))
        rResultado.hr = Grava(*pIntegracao, &rResultado);
    if (FAILED(rResultado.hr)) rResultado.sErro = XVDescreveFalha(rResultado.hr);
}

HRESULT CXVCarga::Grava(const CXVDadosCR_IntegracaoMiddleware& rDados, SResultadoLinha* pResultado) {
    if (m_bChaveUnica && rDados.regDmc.EhNulo()) {
        const HRESULT hr = BuscaExistente(rDados, &pResultado->regDmc);
        pResultado->bExistente = SUCCEEDED(hr) && !pResultado->regDmc.EhNulo();
        if (FAILED(hr) || pResultado->bExistente) return hr;
    }
    return m_rCliente.GravaIntegracao(&pResultado->regDmc, rDados);
}

// The bank's keys are one numbering, in which the store keeps the newest of a key. Other systems number
// orders, products and customers apart, and one document is included once and changed often.
HRESULT CXVCarga::BuscaExistente(const CXVDadosCR_IntegracaoMiddleware& rDados, REG_XVDMC* pDmc) {
    if (rDados.uiChaveIntegracaoSistemaTerceiro == 0 || rDados.eSistemaIntegracao == Tipo_Nenhum) return S_OK;
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    filtro.uiChaveIntegracaoSistemaTerceiroInicial = rDados.uiChaveIntegracaoSistemaTerceiro;
    filtro.listaSistemaIntegracao = {rDados.eSistemaIntegracao};
    if (rDados.eSistemaIntegracao != OfficialBank) {
        filtro.listaTipoIntegracao = {rDados.eTipoIntegracao};
        filtro.listaTipoTransacao = {rDados.eTipoTransacao};
    }
    std::vector<REG_XVDMC> listaDmc;
    const HRESULT hr = m_rCliente.BuscaPonteiros(filtro, &listaDmc);
    if (SUCCEEDED(hr) && !listaDmc.empty()) *pDmc = listaDmc.front();
    return hr;
}

bool CXVCarga::EhDaLinha(const SResultadoLinha& rResultado) {
    switch (rResultado.hr) {
        case S_OK:  // it never came to the store
        case E_INVALIDARG:
        case E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA:
        case E_XVCR_TENTATIVA_LER_POSICAO_ZERO:
        case E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA:
        case E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA:
            return true;
        case E_XVCR_COMPONENTE_NAO_INICIALIZADO:
        case E_XVCR_PARAMETRO_INVALIDO_RUNTIME:
            return false;
        default:
            // A file that the store refuses is that of one day, the day of the integration that is named.
            return EhDaBase(rResultado.hr) &&
                   (rResultado.eOperacao == EOperacao::eStatus || !rResultado.regDmc.EhNulo());
    }
}
