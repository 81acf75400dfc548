#include "middleware/XVColunasIntegracao.h"

using TColunas = TXVColunas<REG_CR_INTEGRACAO_MIDDLEWARE_V2>;

void TColunas::Faz(const TXVArrayRegistros<TReg>& aRegistros, std::size_t uiPrevistas) {
    TColunas novas;
    XVByte* pucTipo = novas.m_aTipos.PreparaBase(aRegistros.size());
    XVByte* pucTransacao = novas.m_aTransacoes.PreparaBase(aRegistros.size());
    REG_XVDMAHMSUTC* pInclusao = novas.m_aInclusoes.PreparaBase(aRegistros.size());
    REG_XVDMAHMSUTC* pAlteracao = novas.m_aAlteracoesStatus.PreparaBase(aRegistros.size());
    const auto anota = [&](std::span<const TReg> aParte) {
        for (const TReg& reg : aParte) {
            novas.m_bTemOutros = novas.m_bTemOutros || !CabeNoByte(reg);
            *pucTipo++ = static_cast<XVByte>(reg.eTipoIntegracao);
            *pucTransacao++ = static_cast<XVByte>(reg.eTipoTransacao);
            *pInclusao++ = reg.regDataHoraInclusao;
            *pAlteracao++ = reg.regDataHoraAlteracaoStatus;
        }
    };
    aRegistros.Percorre(anota);
    novas.m_bExiste = true;
    novas.Reserva(uiPrevistas - aRegistros.size());
    *this = std::move(novas);
}

void TColunas::Reserva(std::size_t uiQuantidade) {
    if (!m_bExiste) return;
    m_aTipos.Reserva(uiQuantidade);
    m_aTransacoes.Reserva(uiQuantidade);
    m_aInclusoes.Reserva(uiQuantidade);
    m_aAlteracoesStatus.Reserva(uiQuantidade);
}

void TColunas::Muda(std::size_t i, const TReg& reg) noexcept {
    if (!m_bExiste) return;
    const auto poe = [i](auto& rColuna, auto valor) {
        if (i == rColuna.size())
            rColuna.Inclui(valor);
        else
            rColuna[i] = valor;
    };
    m_bTemOutros = m_bTemOutros || !CabeNoByte(reg);
    poe(m_aTipos, static_cast<XVByte>(reg.eTipoIntegracao));
    poe(m_aTransacoes, static_cast<XVByte>(reg.eTipoTransacao));
    poe(m_aInclusoes, REG_XVDMAHMSUTC(reg.regDataHoraInclusao));
    poe(m_aAlteracoesStatus, REG_XVDMAHMSUTC(reg.regDataHoraAlteracaoStatus));
}

std::size_t TColunas::GetMemoria() const {
    return m_aTipos.GetMemoria() + m_aTransacoes.GetMemoria() + m_aInclusoes.GetMemoria() +
           m_aAlteracoesStatus.GetMemoria();
}

TColunas::SParte TColunas::GetParte(std::size_t i) const {
    const std::span<const XVByte> aTipos = m_aTipos.GetContiguos(i);
    return {aTipos.data(), &m_aTransacoes[i], &m_aInclusoes[i], &m_aAlteracoesStatus[i], aTipos.size()};
}
