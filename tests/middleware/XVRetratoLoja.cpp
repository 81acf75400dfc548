#include "tests/middleware/XVRetratoLoja.h"

#include <set>
#include <sstream>

#include "contract/XVCR_BuffersPS.h"
#include "tests/harness/XVBytesBase.h"

namespace {

std::string Codigo(HRESULT hr) {
    std::ostringstream s;
    s << k_pszRecusa << std::hex << static_cast<unsigned>(hr);
    return s.str();
}

// A text of any bytes, in a form that can be shown: short ones whole, of long ones the length and a checksum.
std::string Texto(const std::string& sTexto) {
    std::ostringstream s;
    s << sTexto.size() << ':' << std::hex << CrcBitABit(sTexto);
    if (sTexto.size() <= 24) s << ':' << sTexto;
    return s.str();
}

// What the searches range over: each value that occurs.
struct SValores {
    std::set<XVUInt> tipos, transacoes;
    std::set<std::pair<XVUInt64, XVUInt>> chaves;
    std::set<XVUInt64> inclusoes, alteracoes;
};

constexpr const char* k_pszPerguntaAbertura = "abertura";

class CXVRetratista {
  public:
    CXVRetratista(CBaseMiddleware& rLoja, TRetratoLoja& rRetrato) : m_rLoja(rLoja), m_rRetrato(rRetrato) {}

    void Integracoes() {
        for (const REG_XVDMC regDmc : Busca("todas", {})) {
            const SIntegracaoLida lida = XVLe(m_rLoja, regDmc);
            m_rRetrato["integracao " + regDmc.ToString()] = XVDescreveIntegracao(lida);
            if (FAILED(lida.hr)) continue;
            m_valores.tipos.insert(lida.reg.eTipoIntegracao);
            m_valores.transacoes.insert(lida.reg.eTipoTransacao);
            m_valores.chaves.insert({lida.reg.uiChaveIntegracaoSistemaTerceiro, lida.reg.eSistemaIntegracao});
            m_valores.inclusoes.insert(lida.reg.regDataHoraInclusao.uiValor >> 32);
            m_valores.alteracoes.insert(lida.reg.regDataHoraAlteracaoStatus.uiValor >> 32);
        }
    }
    void Buscas() {
        for (XVUInt eStatus = 0; eStatus < eXVSMiddleware_QuantidadeStatusIntegracao; ++eStatus)
            Busca("status " + std::to_string(eStatus), {.status = {eStatus}});
        for (const XVUInt eTipo : m_valores.tipos) Busca("tipo " + std::to_string(eTipo), {.tipos = {eTipo}});
        for (const XVUInt eTransacao : m_valores.transacoes)
            Busca("transacao " + std::to_string(eTransacao), {.transacoes = {eTransacao}});
        for (const XVUInt64 uiChave : k_aChavesPerguntadas)
            for (const XVUInt eSistema : {Mercos, OfficialBank}) m_valores.chaves.insert({uiChave, eSistema});
        for (const auto& [uiChave, eSistema] : m_valores.chaves)
            Busca("chave " + std::to_string(uiChave) + " do sistema " + std::to_string(eSistema),
                  {.de = uiChave, .ate = uiChave, .sistemas = {eSistema}});
        for (const XVUInt64 uiDma : m_valores.inclusoes)
            Busca("inclusao " + std::to_string(uiDma),
                  {.incluidaDe = {uiDma << 32}, .incluidaAte = {uiDma << 32}});
        for (const XVUInt64 uiDma : m_valores.alteracoes)
            Busca("alteracao " + std::to_string(uiDma),
                  {.alteradaDe = {uiDma << 32}, .alteradaAte = {uiDma << 32}});
    }
    void Mapa() {
        std::set<XVUInt64> ids(std::begin(k_aIdsPerguntados), std::end(k_aIdsPerguntados));
        for (unsigned ui = 1; ui <= k_uiRegistrosMapa; ++ui)
            ids.insert(Mapeada("mapa do registro " + std::to_string(ui), 0, XVRegistroMapa(ui)));
        for (const XVUInt64 uiId : ids)
            if (uiId != 0) Mapeada("mapa do id " + std::to_string(uiId), uiId, {});
    }
    void DatasHoras() {
        for (const XVUInt eTipo : k_aTiposDataHora)
            for (const XVUInt eSistema : {Mercos, OfficialBank})
                for (XVUInt eData = 1; eData < eXVSMiddleware_QuantidadeTipoDataIntegracaoTerceiro; ++eData) {
                    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
                    const HRESULT hr =
                        m_rLoja.BuscaDataHoraIntegracaoTerceiro({{}, eTipo, eSistema, eData}, &reg);
                    m_rRetrato["data e hora " + std::to_string(eTipo) + ' ' + std::to_string(eSistema) + ' ' +
                               std::to_string(eData)] = FAILED(hr) ? Codigo(hr) : testing::PrintToString(reg);
                }
    }

  private:
    // The keys found also become an answer of the picture.
    std::vector<REG_XVDMC> Busca(const std::string& sNome, SFiltroTeste filtro) {
        const SBuscaFeita feita = XVBuscaComCodigo(m_rLoja, std::move(filtro));
        std::vector<REG_XVDMC> lista;
        std::string sResposta = FAILED(feita.hr) ? Codigo(feita.hr) : "";
        for (const XVUInt64 uiDmc : feita.lista) {
            lista.push_back({uiDmc});
            sResposta += lista.back().ToString() + ' ';
        }
        m_rRetrato["busca " + sNome] = sResposta;
        return lista;
    }
    XVUInt64 Mapeada(const std::string& sNome, XVUInt64 uiId, REG_XVDMC regDmc) {
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
        const HRESULT hr =
            m_rLoja.BuscaChaveRegistroTelvoParaTerceiro({uiId, regDmc, 1, k_eTipoMapa, Mercos, {}}, &reg);
        m_rRetrato[sNome] = FAILED(hr) ? Codigo(hr) : testing::PrintToString(reg);
        return reg.uiChaveRegistroSistemaTerceiro;
    }

    CBaseMiddleware& m_rLoja;
    TRetratoLoja& m_rRetrato;
    SValores m_valores;
};

}  // namespace

std::string XVDescreveIntegracao(const SIntegracaoLida& rLida) {
    if (FAILED(rLida.hr)) return Codigo(rLida.hr);
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg = rLida.reg;
    std::ostringstream s;
    s << std::hex << "dmc " << reg.regDmc.uiValor << " origem " << reg.regDmcIntegracaoOrigem.uiValor
      << " movimento " << reg.regDmcMovimentoOrigem.uiValor << " inclusao " << reg.regDataHoraInclusao.uiValor
      << " alteracao " << reg.regDataHoraAlteracaoStatus.uiValor << std::dec << " chave "
      << reg.uiChaveIntegracaoSistemaTerceiro << " registro " << reg.uiChaveRegistroSistemaTerceiro
      << " base " << reg.uiBaseDadosTerceiro << " tipo " << reg.eTipoIntegracao << " status "
      << reg.eStatusIntegracao << " sistema " << reg.eSistemaIntegracao << " transacao " << reg.eTipoTransacao
      << " filial " << reg.ulPonteiroFilial << " usuarios " << reg.ulPonteiroUsuarioInclusao << ' '
      << reg.ulPonteiroUsuarioCancelamento << " auxiliar " << reg.ulPonteiroAuxiliar << ' '
      << unsigned{reg.ucTipoPonteiroAuxiliar} << " reconsultar " << unsigned{reg.cReconsultarIdTerceiros}
      << " json " << Texto(rLida.sJSON) << " mensagem " << Texto(rLida.sMensagem) << " retorno "
      << Texto(rLida.sRetorno);
    return s.str();
}

REG_XVDMC XVRegistroMapa(unsigned uiPonteiro) {
    return {XVChaveDmc(0, uiPonteiro, 2)};
}

TRetratoLoja XVRetratoRecusado(HRESULT hr) {
    return {{k_pszPerguntaAbertura, "the opening was refused, " + Codigo(hr)}};
}

TRetratoLoja XVRetrataLoja(CBaseMiddleware& rLoja) {
    TRetratoLoja retrato;
    CXVRetratista retratista(rLoja, retrato);
    retratista.Integracoes();
    retratista.Buscas();
    retratista.Mapa();
    retratista.DatasHoras();
    return retrato;
}

std::string XVRetrataIntegracao(CBaseMiddleware& rLoja, REG_XVDMC regDmc) {
    return XVDescreveIntegracao(XVLe(rLoja, regDmc));
}

std::string XVDiferenca(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido) {
    std::string sDiferenca;
    const auto anota = [&](const std::string& sPergunta, const std::string& sEsperada,
                           const std::string& sObtida) {
        if (sDiferenca.size() < 2000)
            sDiferenca += sPergunta + "\n  expected " + sEsperada + "\n  shown    " + sObtida + '\n';
    };
    if (const auto it = rObtido.find(k_pszPerguntaAbertura); it != rObtido.end()) return it->second + '\n';
    for (const auto& [sPergunta, sResposta] : rEsperado) {
        const auto it = rObtido.find(sPergunta);
        if (it == rObtido.end())
            anota(sPergunta, sResposta, "(nothing)");
        else if (it->second != sResposta)
            anota(sPergunta, sResposta, it->second);
    }
    for (const auto& [sPergunta, sResposta] : rObtido)
        if (!rEsperado.contains(sPergunta)) anota(sPergunta, "(nothing)", sResposta);
    return sDiferenca;
}
