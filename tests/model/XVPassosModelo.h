// Random operations on a store, each checked at once against the model.
//
// Thread rule: one object, one thread; objects of different shares may work on one store at once.
#pragma once

#include <cstring>
#include <set>
#include <sstream>

#include "middleware/BaseMiddleware.h"
#include "platform/XVAmbienteSO.h"
#include "tests/harness/XVSorteio.h"
#include "tests/middleware/XVRetratoLoja.h"
#include "tests/model/XVModeloLoja.h"

// The keys, records and types that one of several workers uses alone.
struct SParteModelo {
    unsigned uiQual = 0;
    unsigned uiQuantas = 1;
};

class CXVPassosModelo {
  public:
    CXVPassosModelo(XVUInt64 uiSemente, SParteModelo parte) : m_sorteio(uiSemente), m_parte(parte) {}

    void SetAgora(REG_XVDMAHMSUTC regAgora) { m_modelo.SetAgora(regAgora); }
    // One operation. Empty: the store answered as the model; otherwise what differs.
    std::string Passo(CBaseMiddleware& rLoja) {
        using TPasso = std::string (CXVPassosModelo::*)(CBaseMiddleware&);
        using P = CXVPassosModelo;
        constexpr std::pair<unsigned, TPasso> k_aPassos[] = {
            // how often of twenty
            {4, &P::Inclui},        {3, &P::Altera},     {3, &P::GravaStatus}, {1, &P::LeLista},
            {3, &P::Busca},         {2, &P::GravaChave}, {1, &P::BuscaChave},  {1, &P::GravaDataHora},
            {1, &P::BuscaDataHora}, {1, &P::Le}};
        XVUInt64 uiSorte = Escolhe(20);
        const auto* pPasso = k_aPassos;
        for (; uiSorte >= pPasso->first; ++pPasso) uiSorte -= pPasso->first;
        return (this->*pPasso->second)(rLoja);
    }
    // Everything that the model knows, read again.
    std::string ConfereTudo(CBaseMiddleware& rLoja) {
        for (const REG_XVDMC regDmc : m_modelo.GetDmcs())
            if (const auto s = ConfereUma(rLoja, regDmc, 7); !s.empty()) return s;
        if (const auto s = ConfereBusca(rLoja, {}); !s.empty()) return s;
        for (int i = 0; i < 20; ++i) {
            if (const auto s = Busca(rLoja); !s.empty()) return s;
            if (const auto s = BuscaChave(rLoja); !s.empty()) return s;
            if (const auto s = BuscaDataHora(rLoja); !s.empty()) return s;
        }
        return {};
    }

  private:
    static constexpr XVUInt k_aSistemas[] = {Mercos, OfficialBank, SimulacaoSistemaTerceiro, Tipo_Nenhum};
    static constexpr XVUInt64 k_uiDia = 101040;  // a day of 2045 in the form of dates: any will do

    // The record for the interface; views of the texts of rIntegracao.
    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS ParaPS(const SIntegracaoLida& rIntegracao) {
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg = rIntegracao.reg;
        reg.regRegistroJSON = CXVStringPS::Vista(rIntegracao.sJSON);
        reg.regMensagemIntegracao = CXVStringPS::Vista(rIntegracao.sMensagem);
        reg.regJSONRetornoIntegracao = CXVStringPS::Vista(rIntegracao.sRetorno);
        return reg;
    }

    template <class T>
    static std::string Compara(const char* pszCampo, const T& obtido, const T& esperado) {
        if (obtido == esperado) return {};
        std::ostringstream saida;
        saida << std::hex << pszCampo << ": " << obtido << ", expected " << esperado;
        return saida.str();
    }

    // A whole record, its fillers included; what differs is shown as bytes.
    template <class T>
    static std::string ComparaInteiro(const char* pszRegistro, const T& obtido, const T& esperado) {
        if (std::memcmp(&obtido, &esperado, sizeof(T)) == 0) return {};
        return std::string(pszRegistro) + ": " + ::testing::PrintToString(obtido) + ", expected " +
               ::testing::PrintToString(esperado);
    }

    static std::string Compara(const SIntegracaoLida& rLida, SIntegracaoLida esperada, XVUInt64 ullFlags) {
        if ((ullFlags & k_ullLeJSON) == 0) esperada.sJSON.clear();
        if ((ullFlags & k_ullLeMensagem) == 0) esperada.sMensagem.clear();
        if ((ullFlags & k_ullLeJSONRetorno) == 0) esperada.sRetorno.clear();
        return Compara("read", XVDescreveIntegracao(rLida), XVDescreveIntegracao(esperada));
    }

    std::string Inclui(CBaseMiddleware& rLoja) {
        const SIntegracaoLida integracao = SorteiaIntegracao();
        const auto reg = ParaPS(integracao);
        REG_XVDMC regDmc;
        const HRESULT hr = rLoja.GravaIntegracao(&regDmc, &reg);
        if (const auto s = Compara("new", hr, CXVModeloLoja::PodeIncluir(integracao)); !s.empty()) return s;
        if (FAILED(hr)) return Compara("DMC of a refused one", regDmc.uiValor, XVUInt64{0});
        const XVUInt64 uiEsperado = m_modelo.ProximoDmc().uiValor;
        // Beside others the position is anybody's; the day is not.
        if (m_parte.uiQuantas == 1 ? regDmc.uiValor != uiEsperado : regDmc.uiValor >> 46 != uiEsperado >> 46)
            return Compara("DMC of a new one", regDmc.uiValor, uiEsperado);
        m_modelo.Inclui(regDmc, integracao);
        return ConfereUma(rLoja, regDmc, 7);
    }
    std::string Altera(CBaseMiddleware& rLoja) {
        REG_XVDMC regDmc = SorteiaDmc();
        const SIntegracaoLida integracao = SorteiaIntegracao();
        const auto reg = ParaPS(integracao);
        const HRESULT hr = rLoja.GravaIntegracao(&regDmc, &reg);
        if (const auto s = Compara("update", hr, m_modelo.Altera(regDmc, integracao)); !s.empty()) return s;
        return ConfereUma(rLoja, regDmc, 7);
    }
    std::string GravaStatus(CBaseMiddleware& rLoja) {
        const std::string sMensagem = SorteiaTexto();
        const std::string sRetorno = SorteiaTexto();
        const REG_XVDMC regDmc = Escolhe(3) == 0 ? REG_XVDMC() : SorteiaDmc();
        const XVUInt64 uiChave = SorteiaChaveExterna();
        const XVUInt eStatus = Enumeracao(6);
        const auto status = XVStatusPS(regDmc, uiChave, eStatus, sMensagem, sRetorno, SorteiaSistema());
        const HRESULT hr = rLoja.GravaStatusIntegracao(status);
        const auto s = Compara("status", hr, m_modelo.GravaStatus(status, rLoja.GetUsuarioProprio()));
        return s.empty() && !regDmc.EhNulo() ? ConfereUma(rLoja, regDmc, 7) : s;
    }
    std::string Le(CBaseMiddleware& rLoja) {
        const REG_XVDMC regDmc = SorteiaDmc();
        return ConfereUma(rLoja, regDmc, Escolhe(8));
    }
    std::string LeLista(CBaseMiddleware& rLoja) {
        std::vector<REG_XVDMC> dmcs;
        for (XVUInt64 i = Escolhe(6); i > 0; --i) dmcs.push_back(SorteiaDmc());
        const bool bTodas =
            std::all_of(dmcs.begin(), dmcs.end(), [&](REG_XVDMC r) { return m_modelo.Le(r) != nullptr; });
        const _REG_DF_LISTA_XVDMCPS lista{static_cast<XVUInt>(dmcs.size()), 0, dmcs.data(), 0};
        XVUInt ulQuantidade = 0;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegs = nullptr;
        const HRESULT hr = rLoja.LeIntegracoes(lista, &ulQuantidade, &pRegs, 7);
        std::string sErro = Compara("list", hr, bTodas ? S_OK : E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        if (sErro.empty())
            sErro = Compara("list count", std::size_t{ulQuantidade}, bTodas ? dmcs.size() : std::size_t{0});
        for (XVUInt i = 0; i < ulQuantidade; ++i) {
            const SIntegracaoLida lida = XVToma(pRegs[i]);
            if (sErro.empty()) sErro = Compara(lida, *m_modelo.Le(dmcs[i]), 7);
        }
        XVAmbienteSO::LiberaSaida(pRegs);
        return sErro;
    }
    std::string Busca(CBaseMiddleware& rLoja) { return ConfereBusca(rLoja, SorteiaFiltro()); }
    std::string GravaChave(CBaseMiddleware& rLoja) {
        const auto chave = SorteiaChave();
        const bool bPendente = Escolhe(3) == 0;
        return Compara(bPendente ? "pending map" : "map",
                       bPendente ? rLoja.GravaChaveRegistroTelvoParaTerceiroPendente(chave)
                                 : rLoja.GravaChaveRegistroTelvoParaTerceiro(chave),
                       m_modelo.GravaChave(chave, bPendente));
    }
    std::string BuscaChave(CBaseMiddleware& rLoja) {
        auto filtro = SorteiaChave();
        if (Escolhe(3) == 0) filtro.regDmcRegistroTelvo = {};
        CXVModeloLoja::TChave achada{};
        const HRESULT hr = rLoja.BuscaChaveRegistroTelvoParaTerceiro({filtro.uiChaveRegistroSistemaTerceiro,
                                                                      filtro.regDmcRegistroTelvo,
                                                                      filtro.uiBaseDadosTerceiro,
                                                                      filtro.eTipoIntegracao,
                                                                      filtro.eSistemaIntegracao,
                                                                      {}},
                                                                     &achada);
        return hr == S_OK ? ComparaInteiro("map", achada, m_modelo.BuscaChave(filtro))
                          : Compara("map search", hr, S_OK);
    }
    std::string GravaDataHora(CBaseMiddleware& rLoja) {
        // The types are shared out among the workers.
        const XVUInt ulTipo = static_cast<XVUInt>(Escolhe(4) * m_parte.uiQuantas + m_parte.uiQual);
        const CXVModeloLoja::TDataHora dataHora{
            SorteiaDataHora(), Escolhe(60) == 0 ? 18 : ulTipo, SorteiaSistema(), Enumeracao(3), {}};
        return Compara("date-time", rLoja.GravaDataHoraIntegracaoTerceiro(dataHora),
                       m_modelo.GravaDataHora(dataHora));
    }
    std::string BuscaDataHora(CBaseMiddleware& rLoja) {
        const XVUInt ulTipo = static_cast<XVUInt>(Escolhe(4) * m_parte.uiQuantas + m_parte.uiQual);
        const CXVModeloLoja::TDataHora filtro{{}, ulTipo, SorteiaSistema(), Enumeracao(3), {}};
        CXVModeloLoja::TDataHora achada{};
        const HRESULT hr = rLoja.BuscaDataHoraIntegracaoTerceiro(
            {{}, filtro.eTipoIntegracao, filtro.eSistemaIntegracao, filtro.eTipoData}, &achada);
        const auto esperada = m_modelo.BuscaDataHora(filtro);
        return hr == S_OK ? ComparaInteiro("date-time", achada, esperada)
                          : Compara("date-time search", hr, S_OK);
    }

    std::string ConfereUma(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags) {
        const SIntegracaoLida lida = XVLe(rLoja, regDmc, ullFlags);
        const SIntegracaoLida* pEsperada = m_modelo.Le(regDmc);
        if (pEsperada == nullptr) return Compara("read", lida.hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        return Compara(lida, *pEsperada, ullFlags);
    }
    std::string ConfereBusca(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro) {
        SBuscaFeita feita = XVBuscaComCodigo(rLoja, rFiltro);
        if (const auto s = Compara("search", feita.hr, S_OK); !s.empty()) return s;
        TListaDmc& achadas = feita.lista;
        if (m_parte.uiQuantas != 1) {  // those of other workers are not compared
            std::set<XVUInt64> conjuntoProprias;
            for (const REG_XVDMC regDmc : m_modelo.GetDmcs()) conjuntoProprias.insert(regDmc.uiValor);
            std::erase_if(achadas, [&](XVUInt64 uiDmc) { return !conjuntoProprias.contains(uiDmc); });
        }
        const std::vector<XVUInt64> esperadas = m_modelo.Busca(rFiltro);
        if (achadas == esperadas) return {};
        return "search: " + std::to_string(achadas.size()) + " found, expected " +
               std::to_string(esperadas.size()) + " or another order";
    }

    SIntegracaoLida SorteiaIntegracao() {
        SIntegracaoLida integracao;
        auto& reg = integracao.reg;
        const XVUInt64 uiMarca = 1 + Escolhe(1000);
        reg.regDmcIntegracaoOrigem =
            Escolhe(3) == 0 ? REG_XVDMC{} : REG_XVDMC{k_uiDia << 46 | uiMarca << 14 | 1};
        reg.regDmcMovimentoOrigem = {k_uiDia << 46 | (uiMarca + 1) << 14 | 2};
        reg.regDataHoraInclusao = SorteiaDataHora();
        reg.regDataHoraAlteracaoStatus = SorteiaDataHora();
        reg.uiChaveIntegracaoSistemaTerceiro = SorteiaChaveExterna();
        reg.uiBaseDadosTerceiro = uiMarca + 2;
        reg.eTipoIntegracao = Enumeracao(18);
        reg.eStatusIntegracao = Enumeracao(6);
        reg.eSistemaIntegracao = SorteiaSistema();
        reg.eTipoTransacao = Enumeracao(4);
        reg.ulPonteiroFilial = static_cast<XVUInt>(uiMarca + 3);
        reg.ulPonteiroUsuarioInclusao = static_cast<XVUInt>(uiMarca + 4);
        reg.ulPonteiroUsuarioCancelamento = static_cast<XVUInt>(uiMarca + 5);
        reg.ulPonteiroAuxiliar = static_cast<XVUInt>(uiMarca + 6);
        reg.cReconsultarIdTerceiros = static_cast<XVByte>(uiMarca & 1);
        reg.ucTipoPonteiroAuxiliar = static_cast<XVByte>(uiMarca + 7);
        integracao.sJSON = SorteiaTexto();
        integracao.sMensagem = SorteiaTexto();
        integracao.sRetorno = SorteiaTexto();
        return integracao;
    }
    SFiltroTeste SorteiaFiltro() {
        const auto lista = [&](XVUInt ulQuantidade) {
            std::set<XVUInt> conjunto;
            if (Escolhe(3) == 0)
                for (XVUInt64 i = 1 + Escolhe(3); i > 0; --i) conjunto.insert(Enumeracao(ulQuantidade));
            return std::vector<XVUInt>(conjunto.begin(), conjunto.end());
        };
        SFiltroTeste filtro;
        if (Escolhe(3) == 0) filtro.de = SorteiaChaveExterna();
        if (Escolhe(3) == 0) filtro.ate = SorteiaChaveExterna();
        if (Escolhe(4) == 0) filtro.incluidaDe = SorteiaDataHora();
        if (Escolhe(4) == 0) filtro.incluidaAte = SorteiaDataHora();
        if (Escolhe(4) == 0) filtro.alteradaDe = SorteiaDataHora();
        if (Escolhe(4) == 0) filtro.alteradaAte = SorteiaDataHora();
        filtro.tipos = lista(18);
        filtro.status = lista(6);
        filtro.transacoes = lista(4);
        for (const XVUInt eSistema : k_aSistemas)
            if (Escolhe(6) == 0) filtro.sistemas.push_back(eSistema);
        return filtro;
    }
    CXVModeloLoja::TChave SorteiaChave() {
        const XVUInt64 uiRegistro = Escolhe(6);
        const XVUInt64 uiProprio = uiRegistro * m_parte.uiQuantas + m_parte.uiQual;
        CXVModeloLoja::TChave chave{};
        if (uiRegistro != 0) chave.regDmcRegistroTelvo = {uiProprio << 14 | 2};
        chave.uiBaseDadosTerceiro = Escolhe(2);
        chave.eTipoIntegracao = Escolhe(60) == 0 ? 18 : 6 + static_cast<XVUInt>(Escolhe(2));
        chave.eSistemaIntegracao = SorteiaSistema();
        if (Escolhe(2) == 0) chave.regDmcOrigemIntegracao = {k_uiDia << 46 | (1 + Escolhe(50)) << 14 | 1};
        chave.uiChaveRegistroSistemaTerceiro = SorteiaChaveExterna();
        return chave;
    }
    REG_XVDMC SorteiaDmc() {
        const auto& lista = m_modelo.GetDmcs();
        const XVUInt64 uiQual = Escolhe(lista.size() + 1);
        if (uiQual < lista.size()) return lista[uiQual];
        // One that was never given: a position or a kind that nobody has.
        return Escolhe(2) == 0 || lista.empty() ? REG_XVDMC{k_uiDia << 46 | 7ULL << 14 | 1}
                                                : REG_XVDMC{lista.back().uiValor ^ 3};
    }
    std::string SorteiaTexto() {
        const XVUInt64 uiTipo = Escolhe(8);
        if (uiTipo == 0) return {};
        if (uiTipo == 1) return "repetido";  // equal to an earlier one
        const std::size_t uiTamanho = uiTipo == 2 ? Escolhe(5000) : Escolhe(60);
        return std::to_string(++m_uiTextos) + std::string(uiTamanho, static_cast<char>('a' + uiTipo));
    }
    XVUInt SorteiaSistema() { return Escolhe(60) == 0 ? 4 : k_aSistemas[Escolhe(std::size(k_aSistemas))]; }
    XVUInt64 SorteiaChaveExterna() {
        const XVUInt64 ui = Escolhe(9);
        return ui == 0 ? 0 : ui * m_parte.uiQuantas + m_parte.uiQual;
    }
    REG_XVDMAHMSUTC SorteiaDataHora() {
        if (Escolhe(3) == 0) return {};
        const XVUInt64 uiDia = (2024ULL - 1848) << 9 | 3 << 5 | (9 + Escolhe(7));
        return {uiDia << 32 | (Escolhe(2) == 0 ? 0 : Escolhe(24) * 3600)};
    }
    XVUInt64 Escolhe(XVUInt64 uiLimite) { return m_sorteio.Ate(uiLimite); }
    XVUInt Enumeracao(XVUInt ulQuantidade) {
        // Now and then the first value that is not one.
        return Escolhe(60) == 0 ? ulQuantidade : static_cast<XVUInt>(Escolhe(ulQuantidade));
    }

    CXVSorteio m_sorteio;
    const SParteModelo m_parte;
    CXVModeloLoja m_modelo;
    XVUInt64 m_uiTextos = 0;
};
