#include "middleware/verificacao/XVExameIndice.h"

#include <algorithm>

#include "middleware/verificacao/XVPedacosEmRegistros.h"

HRESULT CXVExameIndice::Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                                const TSelos& rSelos) {
    using TRegistro = REG_CR_INDEX_INTEGRACAO_V1;
    m_aEntradas.reserve(static_cast<std::size_t>(uiAte / sizeof(TRegistro)));
    CXVConferenciaSelo conferencia(rSelos, rArquivo, false);
    TXVPedacosEmRegistros<TRegistro> pedacos;
    CXVBuracos buracos;
    XVUInt ulPosicao = 0;
    const auto toma = [&](const TRegistro& reg, bool bAlterada) {
        const XVUInt64 uiDe = XVUInt64{ulPosicao++} * sizeof(TRegistro);
        // No program gives an integration a key of another kind.
        if (!buracos.Toca(uiDe, uiDe + sizeof(TRegistro)) && TXVPlausibilidade<TRegistro>::EhPlausivel(reg) &&
            REG_XVDMC(reg.regDmcIntegracao).GetTipo() == REG_XVDMC::k_uiTipoIntegracao)
            m_aEntradas.push_back({reg, ulPosicao, bAlterada});
        else
            m_aImpossiveis.push_back(ulPosicao);
    };
    const HRESULT hr = rLeitura.Percorre(
        rArquivo, uiAte,
        [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
            pedacos.Toma(aBytes, conferencia.Confere(uiOffset, aBytes), toma);
        },
        &buracos);
    m_uiSobra = pedacos.GetSobra();
    m_uiBlocosAlterados = conferencia.GetAlterados();
    m_selo = conferencia.GetNovo();
    Ordena();
    return hr;
}

void CXVExameIndice::Ordena() {
    const auto chave = [](const SEntradaIndice& r) {
        return std::pair(REG_XVDMC(r.reg.regDmcIntegracao).uiValor, r.ulPosicao);
    };
    const auto antes = [&](const SEntradaIndice& a, const SEntradaIndice& b) { return chave(a) < chave(b); };
    if (!std::is_sorted(m_aEntradas.begin(), m_aEntradas.end(), antes))
        std::sort(m_aEntradas.begin(), m_aEntradas.end(), antes);
}
