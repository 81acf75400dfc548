// CBaseMiddleware: searching. The small index records are tested first; the records of one date are
// asked together and only for integrations that pass.
#include <algorithm>

#include "middleware/BaseMiddleware.h"
#include "middleware/XVFiltroBusca.h"
#include "middleware/XVOrdenacaoDmc.h"
#include "middleware/XVParteDoMomento.h"
#include "middleware/XVSelecaoColunas.h"
#include "middleware/XVSelecaoIndex.h"

HRESULT CBaseMiddleware::BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& rFiltroPS,
                                        _REG_DF_LISTA_XVDMCPS* pRegListaPonteirosPS) {
    XV_ESCOPO();
    if (pRegListaPonteirosPS == nullptr) XV_FALHA(E_POINTER);
    *pRegListaPonteirosPS = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    CXVFiltroBusca dadosFiltro;
    XV_CHECK_TEXTO(dadosFiltro.Interpreta(rFiltroPS), "dadosFiltro.CopiarDe(rFiltroPS)");
    CXVListaAchadas listaPonteiros;
    const HRESULT hr = LeSemEscritas([&] {
        XV_CHECK_EM("BuscaPonteiros", ValidaFiltroNivel1(dadosFiltro, listaPonteiros));
        return S_OK;
    });
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE && dadosFiltro.TemNivel2()) XV_CHECK(ConfirmaAchadas(dadosFiltro, listaPonteiros));
    XV_CHECK(listaPonteiros.Entrega(pRegListaPonteirosPS));
    return S_OK;
}

HRESULT CBaseMiddleware::ValidaFiltroNivel1(const CXVFiltroBusca& dadosFiltro,
                                            CXVListaAchadas& listaPonteiros) {
    CXVListaAchadas listaDmc;
    if (dadosFiltro.EhPorChaveSistema()) {
        XV_CHECK(BuscaRegistroIndexComChaveSistema(dadosFiltro, listaDmc));
    } else {
        CXVSelecaoIndex selecao(dadosFiltro, listaDmc);
        const auto anota = [&selecao](const auto&... parte) { selecao.Ve(parte...); };
        // The log has always shown the reading of the whole index under this text.
        XV_CHECK_TEXTO(m_pDataBase->m_IndexIntegracao.Percorre(anota),
                       "m_pDataBase->m_IndexIntegracao.LeColecao(1, uiQtdRegistros, listaIndex)");
        // The records of one file come together.
        if (!selecao.EmOrdem()) XVOrdenaDmcs(listaDmc);
    }
    if (!dadosFiltro.TemNivel2()) {
        listaPonteiros = std::move(listaDmc);
        return S_OK;
    }
    // What was found by one key stays in the order of the systems: each is a part of its own.
    const CVistaDmcs aDmcs = listaDmc.GetDmcs();
    const std::size_t uiParte = dadosFiltro.EhPorChaveSistema() ? 1 : aDmcs.size();
    for (std::size_t i = 0; i < aDmcs.size(); i += uiParte) {
        const bool bRepete = !listaPonteiros.empty() && listaPonteiros.GetDmcs().back() == aDmcs[i];
        if (!bRepete) XV_CHECK(FiltraPorArquivo(dadosFiltro, aDmcs.subspan(i, uiParte), listaPonteiros));
    }
    return S_OK;
}

// A viewer reads the disk while a writer changes it, so it may have tested an index record from before an
// operation and the record itself from after it. Both are read again here, in one moment, and tested again.
HRESULT CBaseMiddleware::ConfirmaAchadas(const CXVFiltroBusca& dadosFiltro, CXVListaAchadas& listaPonteiros) {
    constexpr std::size_t k_uiPorMomento = 256;
    CXVListaAchadas listaConfirmadas;
    const CVistaDmcs aDmcs = listaPonteiros.GetDmcs();
    for (std::size_t idx = 0; idx < aDmcs.size();) {
        CListaDmc listaParte;
        std::size_t uiQtd = k_uiPorMomento;
        std::size_t uiLidas = 0;
        const HRESULT hr = LeDeUmMomento([&] {
            listaParte.clear();
            const std::size_t uiAte = idx + XVParteDoMomento(aDmcs.subspan(idx), uiQtd);
            // A busy writer leaves only short moments: each attempt reads half as much as the one before.
            uiQtd = std::max<std::size_t>(uiQtd / 2, 1);
            for (std::size_t k = idx; k < uiAte; ++k) {
                bool bPassa = false;
                XV_CHECK_EM("ConfirmaAchadas", PassaNaVista(dadosFiltro, aDmcs[k], &bPassa));
                if (bPassa) listaParte.push_back(aDmcs[k]);
            }
            uiLidas = uiAte - idx;
            return S_OK;
        });
        if (FAILED(hr)) return hr;
        idx += uiLidas;
        std::copy(listaParte.begin(), listaParte.end(), listaConfirmadas.Amplia(listaParte.size()));
    }
    listaPonteiros = std::move(listaConfirmadas);
    return S_OK;
}

HRESULT CBaseMiddleware::PassaNaVista(const CXVFiltroBusca& dadosFiltro, REG_XVDMC regDmc, bool* pbPassa) {
    *pbPassa = false;
    const XVUInt64 uiChave = dadosFiltro.GetChaveInicial();
    const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regDmc);
    XVUInt uiPosicao = 0;
    XV_CHECK(m_pDataBase->m_IndexIntegracao.ExisteIndex(uiChaveIndex, uiPosicao, eIndexacao_DMCIntegracao));
    // Without an entry in the index, the index record has passed to a newer integration with the same key.
    if (uiPosicao == 0) return S_OK;
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK(m_pDataBase->m_IndexIntegracao.Le(uiPosicao, &regIndex));
    const bool bNivel1 = dadosFiltro.EhPorChaveSistema()
                             ? regIndex.uiChaveIntegracaoSistemaTerceiro == uiChave &&
                                   dadosFiltro.AdmiteSistema(regIndex.eSistemaIntegracao)
                             : dadosFiltro.PassaNivel1(regIndex);
    if (!bNivel1 || !(regIndex.regDmcIntegracao == regDmc)) return S_OK;
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
    XV_CHECK(m_pDataBase->m_Integracao.Le(regDmc.GetDma().ToChave(), regDmc.GetPonteiro(), &reg));
    *pbPassa = dadosFiltro.PassaNivel2(reg);
    return S_OK;
}

HRESULT CBaseMiddleware::FiltraPorArquivo(const CXVFiltroBusca& dadosFiltro, CVistaDmcs aOrdenadas,
                                          CXVListaAchadas& listaPonteiros) {
    for (std::size_t uiInicio = 0; uiInicio < aOrdenadas.size();) {
        const CVistaDmcs aResto = aOrdenadas.subspan(uiInicio);
        const REG_XVDMA dma = aResto.front().GetDma();
        const auto itFim = std::partition_point(aResto.begin(), aResto.end(),
                                                [dma](REG_XVDMC regDmc) { return regDmc.GetDma() == dma; });
        const CVistaDmcs listaDmc(aResto.begin(), itFim);
        const XVUInt64 uiChaveArquivoUltimo = dma.ToChave();
        XV_CHECK_EM("ValidaFiltroNivel1",
                    ValidaFiltroNivel2(dadosFiltro, uiChaveArquivoUltimo, listaDmc, listaPonteiros));
        uiInicio += listaDmc.size();
    }
    return S_OK;
}

HRESULT CBaseMiddleware::ValidaFiltroNivel2(const CXVFiltroBusca& dadosFiltro, XVUInt64 uiChaveArquivoAtual,
                                            CVistaDmcs listaDmc, CXVListaAchadas& listaPonteiros) {
    bool bVistas = false;
    const auto seleciona = [&](const auto& rColunas) {
        bVistas = XVSelecionaPorColunas(dadosFiltro, rColunas, listaDmc, listaPonteiros);
    };
    // To who reads the log, columns that cannot be made are records that cannot be read.
    XV_CHECK_TEXTO(m_pDataBase->m_Integracao.VeColunas(uiChaveArquivoAtual, seleciona),
                   "m_pDataBase->m_Integracao.LeColecao(uiChaveArquivoAtual, uiPosicao, uiQtd, aRegistros)");
    if (bVistas) return S_OK;
    // Neighbours are read under one lock of the group: searches side by side would otherwise close each
    // other's member at every record.
    constexpr std::size_t k_uiPorLeitura = 4096;
    std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2> aRegistros;
    for (std::size_t idx = 0; idx < listaDmc.size();) {
        const XVUInt uiPosicao = listaDmc[idx].GetPonteiro();
        std::size_t uiQtd = 1;
        while (uiQtd < k_uiPorLeitura && idx + uiQtd < listaDmc.size() &&
               listaDmc[idx + uiQtd].GetPonteiro() == XVUInt64{uiPosicao} + uiQtd)
            ++uiQtd;
        aRegistros.clear();
        XV_CHECK(m_pDataBase->m_Integracao.LeColecao(uiChaveArquivoAtual, uiPosicao, uiQtd, aRegistros));
        for (std::size_t k = 0; k < uiQtd; ++k)
            if (dadosFiltro.PassaNivel2(aRegistros[k])) listaPonteiros.Inclui(listaDmc[idx + k]);
        idx += uiQtd;
    }
    return S_OK;
}

// A filter with a key and systems asks for that one key in each of the systems: the lower bound is the key
// itself, and neither the status nor the upper bound is looked at.
HRESULT CBaseMiddleware::BuscaRegistroIndexComChaveSistema(const CXVFiltroBusca& dadosFiltro,
                                                           CXVListaAchadas& listaPonteiros) {
    const XVUInt64 uiChave = dadosFiltro.GetChaveInicial();
    for (const XVUInt eSistema : dadosFiltro.GetListaSistemaIntegracao()) {
        const auto anota = [&](const REG_CR_INDEX_INTEGRACAO_V1& regIndex) {
            const bool bAchada = regIndex.uiChaveIntegracaoSistemaTerceiro == uiChave &&
                                 regIndex.eSistemaIntegracao == eSistema;
            const REG_XVDMC regDmc = regIndex.regDmcIntegracao;
            if (bAchada && (listaPonteiros.empty() || !(listaPonteiros.GetDmcs().back() == regDmc)))
                listaPonteiros.Inclui(regDmc);
        };
        const XVUInt64 uiChaveIndex =
            CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(uiChave, eSistema);
        XV_CHECK_TEXTO(m_pDataBase->m_IndexIntegracao.PercorreIndex(
                           uiChaveIndex, eIndexacao_ChaveIntegracaoComSistemaTerceiro, anota),
                       "m_pDataBase->m_IndexIntegracao.ExisteIndex(uiChaveIndex, listaPosicao, "
                       "EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro)");
    }
    return S_OK;
}
