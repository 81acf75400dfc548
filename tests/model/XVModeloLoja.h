// What a store must answer, kept in plain containers and written from the rules alone: no file, no index, no
// code of the store. Thread rule: one thread.
#pragma once

#include "support/codes/XVCodigos.h"
#include "tests/middleware/XVCenarioLoja.h"

class CXVModeloLoja {
  public:
    using TChave = tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS;
    using TStatus = tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS;
    using TDataHora = tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS;

    void SetAgora(REG_XVDMAHMSUTC regAgora) { m_regAgora = regAgora; }

    // Whether a new integration would be taken, and the DMC it gets when nobody else records on that day.
    static HRESULT PodeIncluir(const SIntegracaoLida& rEntrada) {
        const auto& reg = rEntrada.reg;
        const bool bValida = reg.eTipoIntegracao < k_ulTipos && reg.eStatusIntegracao < k_ulStatus &&
                             reg.eTipoTransacao < k_ulTransacoes && SistemaExiste(reg.eSistemaIntegracao);
        return bValida ? S_OK : E_INVALIDARG;
    }
    REG_XVDMC ProximoDmc() const {
        const XVUInt64 uiDia = m_regAgora.uiValor >> 32;
        const auto it = m_mapaPosicoes.find(static_cast<XVUInt>(uiDia));
        const XVUInt64 uiPosicao = it == m_mapaPosicoes.end() ? 1 : it->second + 1U;
        return {uiDia << 46 | uiPosicao << 14 | 1};
    }
    void Inclui(REG_XVDMC regDmc, const SIntegracaoLida& rEntrada) {
        SIntegracaoLida nova = rEntrada;
        nova.reg.regDmc = regDmc;
        if (nova.reg.regDataHoraInclusao.uiValor == 0) nova.reg.regDataHoraInclusao = m_regAgora;
        ++m_mapaPosicoes[static_cast<XVUInt>(m_regAgora.uiValor >> 32)];
        m_listaDmcs.push_back(regDmc);
        const bool bBanco = nova.reg.eSistemaIntegracao == OfficialBank;
        SIntegracaoLida* pAnterior =
            bBanco ? LocalizaPorChave(nova.reg.uiChaveIntegracaoSistemaTerceiro, OfficialBank) : nullptr;
        if (pAnterior != nullptr)
            *pAnterior = nova;
        else
            m_listaIndex.push_back(nova);
    }
    HRESULT Altera(REG_XVDMC regDmc, const SIntegracaoLida& rEntrada) {
        if (const HRESULT hr = PodeIncluir(rEntrada); FAILED(hr)) return hr;
        const XVUInt eStatus = rEntrada.reg.eStatusIntegracao;
        if (rEntrada.reg.uiChaveIntegracaoSistemaTerceiro == 0 && eStatus != eXVSMiddleware_Pendente &&
            eStatus != eXVSMiddleware_Erro && eStatus != eXVSMiddleware_Cancelado)
            return E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA;
        SIntegracaoLida* pIntegracao = Localiza(regDmc);
        if (pIntegracao == nullptr) return E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA;
        const bool bMudouStatus = pIntegracao->reg.eStatusIntegracao != eStatus;
        *pIntegracao = rEntrada;
        pIntegracao->reg.regDmc = regDmc;
        if (bMudouStatus) pIntegracao->reg.regDataHoraAlteracaoStatus = m_regAgora;
        return S_OK;
    }
    HRESULT GravaStatus(const TStatus& rStatus, XVUShort usUsuario) {
        const XVUInt64 uiChave = rStatus.uiChaveIntegracaoSistemaTerceiro;
        const XVUInt eSistema = rStatus.eSistemaIntegracao;
        if (rStatus.eStatusIntegracao >= k_ulStatus || !SistemaExiste(eSistema)) return E_INVALIDARG;
        const bool bPorDmc = !rStatus.regDmc.EhNulo();
        if (!bPorDmc && (uiChave == 0 || eSistema == 0))
            return E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA;
        SIntegracaoLida* pIntegracao =
            bPorDmc ? Localiza(rStatus.regDmc) : LocalizaPorChave(uiChave, eSistema);
        if (pIntegracao == nullptr)
            return bPorDmc ? E_XVCR_TENTATIVA_LER_POSICAO_ZERO : E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA;
        auto& reg = pIntegracao->reg;
        reg.eStatusIntegracao = rStatus.eStatusIntegracao;
        reg.regDataHoraAlteracaoStatus = m_regAgora;
        if (rStatus.eStatusIntegracao == eXVSMiddleware_Cancelado)
            reg.ulPonteiroUsuarioCancelamento = usUsuario;
        pIntegracao->sMensagem = CXVStringPS::RegToString(rStatus.regMensagemIntegracao);
        const std::string sRetorno(CXVStringPS::RegToString(rStatus.regJSONRetornoIntegracao));
        if (!sRetorno.empty()) pIntegracao->sRetorno = sRetorno;
        return S_OK;
    }
    // Null: no such integration.
    const SIntegracaoLida* Le(REG_XVDMC regDmc) const {
        return const_cast<CXVModeloLoja*>(this)->Localiza(regDmc);
    }
    std::vector<XVUInt64> Busca(const SFiltroTeste& rFiltro) const {
        std::vector<XVUInt64> lista;
        if (rFiltro.de != 0 && !rFiltro.sistemas.empty()) {
            // One key in some systems: neither status nor upper bound is asked; in the order of the systems.
            for (const XVUInt eSistema : rFiltro.sistemas)
                for (const auto& r : m_listaIndex)
                    if (eSistema != 0 && r.reg.uiChaveIntegracaoSistemaTerceiro == rFiltro.de &&
                        r.reg.eSistemaIntegracao == eSistema && PassaNivel2(rFiltro, r))
                        lista.push_back(r.reg.regDmc.uiValor);
            return lista;
        }
        for (const auto& r : m_listaIndex) {
            const XVUInt64 uiChave = r.reg.uiChaveIntegracaoSistemaTerceiro;
            if (Contem(rFiltro.status, r.reg.eStatusIntegracao) &&
                Contem(rFiltro.sistemas, r.reg.eSistemaIntegracao) && uiChave >= rFiltro.de &&
                (rFiltro.ate == 0 || uiChave <= rFiltro.ate) && PassaNivel2(rFiltro, r))
                lista.push_back(r.reg.regDmc.uiValor);
        }
        std::sort(lista.begin(), lista.end());
        return lista;
    }
    // Every DMC that was ever given, those taken over included.
    const std::vector<REG_XVDMC>& GetDmcs() const { return m_listaDmcs; }

    HRESULT GravaChave(const TChave& rChave, bool bPendente) {
        if (rChave.regDmcRegistroTelvo.EhNulo()) return E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA;
        if (rChave.eTipoIntegracao >= k_ulTipos || !SistemaExiste(rChave.eSistemaIntegracao))
            return E_INVALIDARG;
        TChave* pAtual = LocalizaChave(rChave);
        if (pAtual == nullptr) {
            m_listaChaves.push_back(rChave);
            if (bPendente) m_listaChaves.back().uiChaveRegistroSistemaTerceiro = 0;
        } else if (!bPendente) {
            const REG_XVDMC regOrigem = pAtual->regDmcOrigemIntegracao;
            *pAtual = rChave;
            if (rChave.regDmcOrigemIntegracao.EhNulo()) pAtual->regDmcOrigemIntegracao = regOrigem;
        }
        return S_OK;
    }
    // All zero when nothing is found. uiChaveRegistroSistemaTerceiro 0 and a null record match nothing.
    TChave BuscaChave(const TChave& rFiltro) const {
        const XVUInt64 uiId = rFiltro.uiChaveRegistroSistemaTerceiro;
        for (const TChave& r : m_listaChaves) {
            const bool bRegistro = r.regDmcRegistroTelvo == rFiltro.regDmcRegistroTelvo;
            const bool bAchou = uiId == 0 ? bRegistro
                                          : r.uiChaveRegistroSistemaTerceiro == uiId &&
                                                (bRegistro || rFiltro.regDmcRegistroTelvo.EhNulo());
            if (bAchou && MesmoLugar(r, rFiltro)) return r;
        }
        return {};
    }
    HRESULT GravaDataHora(const TDataHora& rDataHora) {
        if (rDataHora.eTipoIntegracao >= k_ulTipos || rDataHora.eTipoData >= k_ulTiposData ||
            !SistemaExiste(rDataHora.eSistemaIntegracao))
            return E_INVALIDARG;
        // Nothing of nothing: a key without any bit is none.
        if (rDataHora.eTipoIntegracao == 0 && rDataHora.eTipoData == 0 && rDataHora.eSistemaIntegracao == 0)
            return E_XVCR_INDEXACAO_COM_POSICAO_ZERO;
        std::erase_if(m_listaDatasHoras, [&](const TDataHora& r) { return MesmaData(r, rDataHora); });
        m_listaDatasHoras.push_back(rDataHora);
        return S_OK;
    }
    TDataHora BuscaDataHora(const TDataHora& rFiltro) const {
        for (const TDataHora& r : m_listaDatasHoras)
            if (MesmaData(r, rFiltro)) return r;
        return {};
    }

  private:
    static constexpr XVUInt k_ulTipos = 18;
    static constexpr XVUInt k_ulStatus = 6;
    static constexpr XVUInt k_ulTransacoes = 4;
    static constexpr XVUInt k_ulTiposData = 3;

    static bool SistemaExiste(XVUInt eSistema) {
        return eSistema == 0 || eSistema == 2 || eSistema == 8 || eSistema == 16;
    }

    static bool Contem(const std::vector<XVUInt>& lista, XVUInt e) {
        return lista.empty() || std::count(lista.begin(), lista.end(), e) > 0;
    }

    // The day and the time of day are compared apart; a bound of midnight asks for the day alone.
    static bool Entre(REG_XVDMAHMSUTC reg, REG_XVDMAHMSUTC regDe, REG_XVDMAHMSUTC regAte) {
        const auto dia = [](REG_XVDMAHMSUTC r) { return r.uiValor >> 32; };
        const auto hora = [](REG_XVDMAHMSUTC r) { return r.uiValor & 0xFFFFFFFFU; };
        const bool bDepois =
            regDe.uiValor == 0 || (dia(reg) >= dia(regDe) && (hora(regDe) == 0 || hora(reg) >= hora(regDe)));
        const bool bAntes = regAte.uiValor == 0 ||
                            (dia(reg) <= dia(regAte) && (hora(regAte) == 0 || hora(reg) <= hora(regAte)));
        return bDepois && bAntes;
    }

    // The first that fits; null: none.
    template <class TItem, class TFiltro>
    static TItem* Acha(std::vector<TItem>& lista, TFiltro fnServe) {
        const auto it = std::ranges::find_if(lista, fnServe);
        return it == lista.end() ? nullptr : &*it;
    }

    static bool MesmoLugar(const TChave& a, const TChave& b) {
        return a.uiBaseDadosTerceiro == b.uiBaseDadosTerceiro && a.eTipoIntegracao == b.eTipoIntegracao &&
               a.eSistemaIntegracao == b.eSistemaIntegracao;
    }

    static bool MesmaData(const TDataHora& a, const TDataHora& b) {
        return a.eTipoIntegracao == b.eTipoIntegracao && a.eSistemaIntegracao == b.eSistemaIntegracao &&
               a.eTipoData == b.eTipoData;
    }

    SIntegracaoLida* Localiza(REG_XVDMC regDmc) {
        return Acha(m_listaIndex, [&](const auto& r) { return r.reg.regDmc == regDmc; });
    }
    // The first of several; key 0 and system 0 name nothing.
    SIntegracaoLida* LocalizaPorChave(XVUInt64 uiChave, XVUInt eSistema) {
        return Acha(m_listaIndex, [&](const auto& r) {
            return uiChave != 0 && eSistema != 0 && r.reg.uiChaveIntegracaoSistemaTerceiro == uiChave &&
                   r.reg.eSistemaIntegracao == eSistema;
        });
    }
    TChave* LocalizaChave(const TChave& rChave) {
        return Acha(m_listaChaves, [&](const TChave& r) {
            return r.regDmcRegistroTelvo == rChave.regDmcRegistroTelvo && MesmoLugar(r, rChave);
        });
    }
    static bool PassaNivel2(const SFiltroTeste& rFiltro, const SIntegracaoLida& rIntegracao) {
        const auto& reg = rIntegracao.reg;
        return Contem(rFiltro.tipos, reg.eTipoIntegracao) && Contem(rFiltro.transacoes, reg.eTipoTransacao) &&
               Entre(reg.regDataHoraInclusao, rFiltro.incluidaDe, rFiltro.incluidaAte) &&
               Entre(reg.regDataHoraAlteracaoStatus, rFiltro.alteradaDe, rFiltro.alteradaAte);
    }

    REG_XVDMAHMSUTC m_regAgora{};
    std::vector<SIntegracaoLida> m_listaIndex;  // in the order of the index
    std::map<XVUInt, XVUInt> m_mapaPosicoes;    // integrations recorded by date
    std::vector<REG_XVDMC> m_listaDmcs;
    std::vector<TChave> m_listaChaves;
    std::vector<TDataHora> m_listaDatasHoras;
};
