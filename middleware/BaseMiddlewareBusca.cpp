// CBaseMiddleware: searching. The small index records are tested first; the records of one date are
// opened together and only for integrations that pass.
#include <algorithm>

#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"
#include "middleware/XVFiltroBusca.h"
#include "middleware/XVOrdenacaoDmc.h"

HRESULT CBaseMiddleware::BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& rFiltroPS,
                                        _REG_DF_LISTA_XVDMCPS* pRegListaPonteirosPS) {
    XV_ESCOPO();
    if (pRegListaPonteirosPS == nullptr) XV_FALHA(E_POINTER);
    *pRegListaPonteirosPS = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    CXVFiltroBusca dadosFiltro;
    XV_CHECK(dadosFiltro.CopiarDe(rFiltroPS));
    CListaDmc listaPonteiros;
    const HRESULT hr = LeSemEscritas([&] {
        XV_CHECK_EM("BuscaPonteiros", ValidaFiltroNivel1(dadosFiltro, listaPonteiros));
        return S_OK;
    });
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE && dadosFiltro.TemNivel2()) XV_CHECK(ConfirmaAchadas(dadosFiltro, listaPonteiros));
    XV_CHECK(XVListaToReg(listaPonteiros, pRegListaPonteirosPS));
    return S_OK;
}

HRESULT CBaseMiddleware::ValidaFiltroNivel1(const CXVFiltroBusca& dadosFiltro, CListaDmc& listaPonteiros) {
    if (dadosFiltro.EhPorChaveSistema()) {
        XV_CHECK(BuscaRegistroIndexComChaveSistema(dadosFiltro, listaPonteiros));
        return S_OK;
    }
    CListaDmc listaDmc;
    bool bEmOrdem = true;  // as a store is that records on one day after the other
    REG_XVDMC regUltimo;
    const auto anota = [&](std::span<const REG_CR_INDEX_INTEGRACAO_V1> aRegistros) {
        for (const REG_CR_INDEX_INTEGRACAO_V1& reg : aRegistros) {
            if (!dadosFiltro.PassaNivel1(reg)) continue;
            bEmOrdem = bEmOrdem && regUltimo.uiValor <= reg.regDmcIntegracao.uiValor;
            regUltimo = reg.regDmcIntegracao;
            listaDmc.push_back(regUltimo);
        }
    };
    // The log has always shown the reading of the whole index under this text.
    XV_CHECK_TEXTO(m_pDataBase->m_IndexIntegracao.Percorre(anota),
                   "m_pDataBase->m_IndexIntegracao.LeColecao(1, uiQtdRegistros, listaIndex)");
    // The records of one file come together.
    if (!bEmOrdem) XVOrdenaDmcs(listaDmc);
    if (!dadosFiltro.TemNivel2()) {
        listaPonteiros = std::move(listaDmc);
        return S_OK;
    }
    return FiltraPorArquivo(dadosFiltro, listaDmc, listaPonteiros);
}

// A viewer reads the disk while a writer changes it, so it may have tested an index record from before an
// operation and the record itself from after it. Both are read again here, in one moment, and tested again.
HRESULT CBaseMiddleware::ConfirmaAchadas(const CXVFiltroBusca& dadosFiltro, CListaDmc& listaPonteiros) {
    constexpr std::size_t k_uiPorMomento = 256;
    CListaDmc listaConfirmadas;
    for (std::size_t idx = 0; idx < listaPonteiros.size();) {
        CListaDmc listaParte;
        std::size_t uiQtd = k_uiPorMomento;
        std::size_t uiLidas = 0;
        const HRESULT hr = LeDeUmMomento([&] {
            listaParte.clear();
            const std::size_t uiAte = std::min(idx + uiQtd, listaPonteiros.size());
            // A busy writer leaves only short moments: each attempt reads half as much as the one before.
            uiQtd = std::max<std::size_t>(uiQtd / 2, 1);
            for (std::size_t k = idx; k < uiAte; ++k) {
                bool bPassa = false;
                XV_CHECK_EM("ConfirmaAchadas", PassaNaVista(dadosFiltro, listaPonteiros[k], &bPassa));
                if (bPassa) listaParte.push_back(listaPonteiros[k]);
            }
            uiLidas = uiAte - idx;
            return S_OK;
        });
        if (FAILED(hr)) return hr;
        idx += uiLidas;
        listaConfirmadas.insert(listaConfirmadas.end(), listaParte.begin(), listaParte.end());
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

HRESULT CBaseMiddleware::FiltraPorArquivo(const CXVFiltroBusca& dadosFiltro, const CListaDmc& listaOrdenada,
                                          CListaDmc& listaPonteiros) {
    CListaDmc listaDmc;
    for (auto itInicio = listaOrdenada.begin(); itInicio != listaOrdenada.end();) {
        const REG_XVDMA dma = itInicio->GetDma();
        const auto itFim = std::partition_point(itInicio, listaOrdenada.end(),
                                                [dma](REG_XVDMC regDmc) { return regDmc.GetDma() == dma; });
        listaDmc.assign(itInicio, itFim);
        const XVUInt64 uiChaveArquivoUltimo = dma.ToChave();
        XV_CHECK_EM("ValidaFiltroNivel1",
                    ValidaFiltroNivel2(dadosFiltro, uiChaveArquivoUltimo, listaDmc, listaPonteiros));
        itInicio = itFim;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::ValidaFiltroNivel2(const CXVFiltroBusca& dadosFiltro, XVUInt64 uiChaveArquivoAtual,
                                            const CListaDmc& listaDmc, CListaDmc& listaPonteiros) {
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
            if (dadosFiltro.PassaNivel2(aRegistros[k])) listaPonteiros.push_back(listaDmc[idx + k]);
        idx += uiQtd;
    }
    return S_OK;
}

// A filter with a key and systems asks for that one key in each of the systems: the lower bound is the key
// itself, and neither the status nor the upper bound is looked at.
HRESULT CBaseMiddleware::BuscaRegistroIndexComChaveSistema(const CXVFiltroBusca& dadosFiltro,
                                                           CListaDmc& listaPonteiros) {
    const XVUInt64 uiChave = dadosFiltro.GetChaveInicial();
    const bool bNivel2 = dadosFiltro.TemNivel2();
    std::vector<XVUInt> listaPosicao;
    for (const XVUInt eSistema : dadosFiltro.GetListaSistemaIntegracao()) {
        const XVUInt64 uiChaveIndex =
            CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(uiChave, eSistema);
        XV_CHECK(m_pDataBase->m_IndexIntegracao.ExisteIndex(
            uiChaveIndex, listaPosicao,
            EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro));
        for (const XVUInt uiPosicao : listaPosicao) {
            REG_CR_INDEX_INTEGRACAO_V1 regIndex;
            XV_CHECK(m_pDataBase->m_IndexIntegracao.Le(uiPosicao, &regIndex));
            if (regIndex.uiChaveIntegracaoSistemaTerceiro != uiChave ||
                regIndex.eSistemaIntegracao != eSistema)
                continue;
            const REG_XVDMC regDmc = regIndex.regDmcIntegracao;
            if (bNivel2) {
                REG_CR_INTEGRACAO_MIDDLEWARE_V2 regIntegracao;
                XV_CHECK(m_pDataBase->m_Integracao.Le(regDmc.GetDma().ToChave(), regDmc.GetPonteiro(),
                                                      &regIntegracao));
                if (!dadosFiltro.PassaNivel2(regIntegracao)) continue;
            }
            if (listaPonteiros.empty() || !(listaPonteiros.back() == regDmc))
                listaPonteiros.push_back(regDmc);
        }
    }
    return S_OK;
}
