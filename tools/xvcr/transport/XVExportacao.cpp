#include "tools/xvcr/transport/XVExportacao.h"

#include <algorithm>

namespace {

// Integrations in memory at a time; their texts may be large.
constexpr std::size_t k_uiPorLeitura = 64;

REG_XVDMA DaChave(XVUInt64 uiDia) {
    return REG_XVDMA::Cria(static_cast<unsigned>(uiDia / 10000), static_cast<unsigned>(uiDia / 100 % 100),
                           static_cast<unsigned>(uiDia % 100));
}

}  // namespace

HRESULT CXVExportacao::Prepara(XVUInt64 uiDe, XVUInt64 uiAte) {
    m_mapaDias.clear();
    m_uiQuantidade = 0;
    // The records first: an integration recorded in between is in the index and beyond the count, and does
    // not pass for one that the index has lost.
    HRESULT hr = ContaDias(uiDe, uiAte);
    if (SUCCEEDED(hr)) hr = DistribuiIndice(uiDe, uiAte);
    for (auto it = m_mapaDias.begin(); it != m_mapaDias.end() && SUCCEEDED(hr); ++it)
        hr = ConfereFim(it->first, &it->second);
    return hr;
}

HRESULT CXVExportacao::ContaDias(XVUInt64 uiDe, XVUInt64 uiAte) {
    std::vector<XVUInt64> listaDias;
    const HRESULT hr = m_rBase.ListaDias(&listaDias);
    if (FAILED(hr)) return hr;
    for (const XVUInt64 uiDia : listaDias) {
        if (uiDia < uiDe || uiDia > uiAte || !DaChave(uiDia).EhValida()) continue;
        SDia& rDia = m_mapaDias[uiDia];
        // For a day that cannot be counted stands its first place, which cannot be read then either.
        if (FAILED(m_rBase.ContaRegistrosDoDia(uiDia, &rDia.ulRegistros))) rDia.ulRegistros = 1;
    }
    return S_OK;
}

HRESULT CXVExportacao::DistribuiIndice(XVUInt64 uiDe, XVUInt64 uiAte) {
    std::vector<REG_CR_INDEX_INTEGRACAO_V1> listaIndice;
    const HRESULT hr = m_rBase.ListaIndice(&listaIndice);
    if (FAILED(hr)) return hr;
    for (const REG_CR_INDEX_INTEGRACAO_V1& reg : listaIndice) {
        const REG_XVDMC regDmc = reg.regDmcIntegracao;
        const XVUInt64 uiDia = regDmc.GetDma().ToChave();
        if (uiDia >= uiDe && uiDia <= uiAte) m_mapaDias[uiDia].listaIndice.push_back(regDmc);
    }
    return S_OK;
}

// What the index knows behind the records was recorded after they were counted, or its record is lost: then
// it is handed out as that.
HRESULT CXVExportacao::ConfereFim(XVUInt64 uiDia, SDia* pDia) {
    auto& rLista = pDia->listaIndice;
    std::sort(rLista.begin(), rLista.end(),
              [](REG_XVDMC a, REG_XVDMC b) { return a.GetPonteiro() < b.GetPonteiro(); });
    if (!rLista.empty() && rLista.back().GetPonteiro() > pDia->ulRegistros) {
        XVUInt ulAgora = 0;
        const HRESULT hr = m_rBase.ContaRegistrosDoDia(uiDia, &ulAgora);
        std::erase_if(rLista, [&](REG_XVDMC regDmc) {
            return SUCCEEDED(hr) && regDmc.GetPonteiro() > pDia->ulRegistros &&
                   regDmc.GetPonteiro() <= ulAgora;
        });
    }
    m_uiQuantidade += std::max<XVUInt64>(pDia->ulRegistros, rLista.size());
    return S_OK;
}

std::vector<XVUInt64> CXVExportacao::GetDias() const {
    std::vector<XVUInt64> listaDias;
    for (const auto& [uiDia, rDia] : m_mapaDias)
        if (rDia.ulRegistros != 0 || !rDia.listaIndice.empty()) listaDias.push_back(uiDia);
    return listaDias;
}

// Each position of the day under the key that the index knows, or else the one that it must have had; then
// what the index knows without a record.
std::vector<REG_XVDMC> CXVExportacao::MontaChaves(XVUInt64 uiDia, const SDia& rDia) {
    std::vector<REG_XVDMC> listaChaves;
    listaChaves.reserve(rDia.ulRegistros);
    auto it = rDia.listaIndice.begin();
    for (XVUInt ul = 1; ul <= rDia.ulRegistros; ++ul) {
        const bool bNoIndice = it != rDia.listaIndice.end() && it->GetPonteiro() == ul;
        listaChaves.push_back(bNoIndice ? *it
                                        : REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, ul, DaChave(uiDia)));
        while (it != rDia.listaIndice.end() && it->GetPonteiro() <= ul) ++it;
    }
    listaChaves.insert(listaChaves.end(), it, rDia.listaIndice.end());
    return listaChaves;
}

void CXVExportacao::Percorre(XVUInt64 uiDia, const FRecebe& fnRecebe) {
    const std::vector<REG_XVDMC> listaChaves = MontaChaves(uiDia, m_mapaDias.at(uiDia));
    std::vector<SIntegracaoTransportada> listaLidas;
    m_ulEntregues = 0;
    for (std::size_t i = 0; i < listaChaves.size(); i += k_uiPorLeitura) {
        const std::span<const REG_XVDMC> aParte(listaChaves.data() + i,
                                                std::min(k_uiPorLeitura, listaChaves.size() - i));
        if (FAILED(m_rBase.LeTransportadas(aParte, &listaLidas))) {
            EntregaUmaAUma(aParte, fnRecebe);
            continue;
        }
        std::for_each(listaLidas.begin(), listaLidas.end(), fnRecebe);
        m_ulEntregues += static_cast<XVUInt>(listaLidas.size());
    }
}

void CXVExportacao::EntregaUmaAUma(std::span<const REG_XVDMC> aDmcs, const FRecebe& fnRecebe) {
    std::vector<SIntegracaoTransportada> listaLidas;
    for (const REG_XVDMC& regDmc : aDmcs) {
        const HRESULT hr = m_rBase.LeTransportadas({&regDmc, 1}, &listaLidas);
        SIntegracaoTransportada vaga;
        vaga.eTipo = SIntegracaoTransportada::ETipo::eVaga;
        vaga.dados.regDmc = regDmc;
        if (FAILED(hr)) m_fnNaoLida(regDmc, hr);
        // An index record that names a far position is more likely to be wrong itself.
        if (FAILED(hr) && regDmc.GetPonteiro() != m_ulEntregues + 1) continue;
        fnRecebe(FAILED(hr) ? vaga : listaLidas.front());
        ++m_ulEntregues;
    }
}
