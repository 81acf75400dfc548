#include "tests/middleware/XVExameQueda.h"

#include <algorithm>

#include "support/trace/XVCapturaTrace.h"

namespace {

constexpr unsigned k_uiPrimeiroNovo = 900001;

HRESULT Inicializa(CBaseMiddleware& rLoja) {
    const CXVDonoFixo dono("MATRIZ");
    return rLoja.Inicializa(&dono);
}

// The newest error record since the capture began that names a file of the store; empty: none does.
std::string NomeiaArquivo(const CXVCapturaTrace& rCaptura) {
    const auto& rFalhas = rCaptura.GetFalhas();
    const auto it = std::find_if(rFalhas.rbegin(), rFalhas.rend(), [](const SFalhaCapturada& rFalha) {
        const std::string sTudo = rFalha.sExpressao + rFalha.sMensagem;
        return sTudo.find(".dat") != std::string::npos || sTudo.find(".srk") != std::string::npos;
    });
    return it == rFalhas.rend() ? "" : it->sExpressao + ' ' + it->sMensagem;
}

std::string Codigo(const char* pszQuem, HRESULT hr) {
    return XVDiferenca({}, XVRetratoRecusado(hr)).insert(0, std::string(pszQuem) + ": ");
}

}  // namespace

unsigned CXVExameQueda::Dono(XVUInt64 uiDmc) const {
    if (const auto it = m_mapaNovas.find(uiDmc); it != m_mapaNovas.end()) return it->second;
    const auto it = m_rVerdade.donos.find(uiDmc);
    return it == m_rVerdade.donos.end() ? 0 : it->second;
}

std::string CXVExameQueda::Compara(const char* pszQuem, const TRetratoLoja& rObtido) const {
    if (Pode(rObtido)) return {};
    return std::string(pszQuem) +
           (m_rVerdade.bReconhecida ? " shows other than was acknowledged\n"
                                    : " shows a part of the operation\n") +
           XVDiferenca(m_rVerdade.depois, rObtido);
}

// A viewer may refuse what only an opening can put in order.
std::string CXVExameQueda::ConferePorConsulta() {
    CBaseMiddleware loja;
    loja.SetSomenteLeitura(true);
    return FAILED(Inicializa(loja)) ? "" : Compara("a viewer", XVRetrataLoja(loja));
}

std::string CXVExameQueda::ComDurabilidade() {
    std::string sFalha = ConferePorConsulta();
    if (!sFalha.empty()) return sFalha;
    CBaseMiddleware loja;
    const CXVCapturaTrace captura;
    if (const HRESULT hr = Inicializa(loja); FAILED(hr))
        return Codigo("opening", hr) + NomeiaArquivo(captura);
    sFalha = Compara("the opened store", XVRetrataLoja(loja));
    if (sFalha.empty()) sFalha = Nova(loja, k_uiPrimeiroNovo);
    if (sFalha.empty() && m_mapaNovas.empty()) sFalha = "nothing can be recorded any more";
    return sFalha.empty() ? ConfereReabertura(loja) : sFalha;
}

std::string CXVExameQueda::SemDurabilidade() {
    {
        CBaseMiddleware consulta;
        consulta.SetSomenteLeitura(true);
        std::string sFalha = FAILED(Inicializa(consulta)) ? "" : ConfereDonos(consulta);
        if (!sFalha.empty()) return "a viewer: " + sFalha;
        m_mapaLidas.clear();  // the opening may put in order what a viewer saw
    }
    CBaseMiddleware loja;
    {
        const CXVCapturaTrace captura;
        if (FAILED(Inicializa(loja))) {
            m_bRecusada = true;
            return NomeiaArquivo(captura).empty() ? "refused without a file's name" : "";
        }
    }
    std::string sFalha = ConfereDonos(loja);
    if (sFalha.empty()) sFalha = ConfereMapaEDatas(loja);
    if (sFalha.empty()) sFalha = GravaMais(loja);
    return sFalha.empty() ? ConfereReabertura(loja) : sFalha;
}

// Every integration that is shown was recorded, and shows nothing of another. What was readable before stays
// as it was; an integration that cannot be read is a loss, not a lie.
std::string CXVExameQueda::ConfereDonos(CBaseMiddleware& rLoja) {
    for (const XVUInt64 uiDmc : XVBuscaComCodigo(rLoja, {}).lista) {
        const unsigned uiDono = Dono(uiDmc);
        const std::string sNome = REG_XVDMC{uiDmc}.ToString();
        if (uiDono == 0) return sNome + " was never recorded";
        const SIntegracaoLida lida = XVLe(rLoja, {uiDmc});
        const auto itLida = m_mapaLidas.find(uiDmc);
        if (FAILED(lida.hr)) {
            if (itLida != m_mapaLidas.end()) return sNome + " could be read before a later operation";
            continue;
        }
        if (std::string sAlheio = XVConteudoAlheio(lida, uiDono); !sAlheio.empty())
            return sNome + ": " + sAlheio;
        const std::string sRetrato = XVRetrataIntegracao(rLoja, {uiDmc});
        if (itLida != m_mapaLidas.end() && itLida->second != sRetrato)
            return sNome + " changed with a later operation\n  " + itLida->second + "\n  " + sRetrato;
        m_mapaLidas[uiDmc] = sRetrato;
    }
    return {};
}

std::string CXVExameQueda::ConfereMapaEDatas(CBaseMiddleware& rLoja) {
    for (unsigned ui = 1; ui <= k_uiRegistrosMapa; ++ui) {
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
        XVIgnora(rLoja.BuscaChaveRegistroTelvoParaTerceiro(
            {0, XVRegistroMapa(ui), 1, k_eTipoMapa, Mercos, {}}, &reg));
        const XVUInt64 uiId = reg.uiChaveRegistroSistemaTerceiro;
        if (uiId != 0 && !XVEhIdDoRegistro(uiId, ui))
            return "the map shows " + std::to_string(uiId) + " for record " + std::to_string(ui);
    }
    for (const XVUInt eTipo : k_aTiposDataHora)
        for (const XVUInt eSistema : {Mercos, OfficialBank})
            for (XVUInt eData = 1; eData <= 2; ++eData) {
                tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
                XVIgnora(rLoja.BuscaDataHoraIntegracaoTerceiro({{}, eTipo, eSistema, eData}, &reg));
                if (reg.regDataHora.uiValor != 0 &&
                    !XVEhDataHoraDaChave(reg.regDataHora, eTipo, eSistema, eData))
                    return "a date-time of another key is shown";
            }
    return {};
}

// A new one; what refuses to be recorded changes nothing.
std::string CXVExameQueda::Nova(CBaseMiddleware& rLoja, unsigned uiDono) {
    CXVSorteio sorteio(uiDono);
    CXVIntegracaoTeste integracao = XVIntegracaoComDono(uiDono, Mercos, eXVSMiddleware_Enviado, sorteio);
    const TListaDmc listaAntes = XVBuscaComCodigo(rLoja, {}).lista;
    REG_XVDMC regDmc;
    if (FAILED(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()))) return {};
    if (std::find(listaAntes.begin(), listaAntes.end(), regDmc.uiValor) != listaAntes.end() ||
        !m_mapaNovas.insert({regDmc.uiValor, uiDono}).second)
        return regDmc.ToString() + " was given out twice";
    m_mapaLidas.erase(regDmc.uiValor);
    const SIntegracaoLida lida = XVLe(rLoja, regDmc);
    if (FAILED(lida.hr) || lida.reg.uiBaseDadosTerceiro != uiDono ||
        lida.sJSON.size() != integracao.Ptr()->regRegistroJSON.ulQtdBytes)
        return regDmc.ToString() + " does not show what was recorded just now";
    return {};
}

// A status and an update of one that is there.
std::string CXVExameQueda::Toca(CBaseMiddleware& rLoja) {
    if (m_mapaLidas.empty()) return {};
    const XVUInt64 uiDmc = m_mapaLidas.begin()->first;
    CXVSorteio sorteio(uiDmc);
    const std::string sMensagem = XVTextoComDono(Dono(uiDmc), k_cDonoMensagem, sorteio);
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmc = {uiDmc};
    reg.eStatusIntegracao = eXVSMiddleware_Erro;
    reg.regMensagemIntegracao = XVTextoPS(sMensagem);
    if (FAILED(rLoja.GravaStatusIntegracao(reg))) return {};
    const SIntegracaoLida lida = XVLe(rLoja, {uiDmc});
    if (FAILED(lida.hr) || lida.reg.eStatusIntegracao != eXVSMiddleware_Erro || lida.sMensagem != sMensagem)
        return reg.regDmc.ToString() + " does not show its new status";
    m_mapaLidas.erase(uiDmc);
    return {};
}

std::string CXVExameQueda::GravaMais(CBaseMiddleware& rLoja) {
    for (unsigned ui = 0; ui < 3; ++ui) {
        std::string sFalha = Nova(rLoja, k_uiPrimeiroNovo + ui);
        if (sFalha.empty() && ui == 1) sFalha = Toca(rLoja);
        if (sFalha.empty()) sFalha = ConfereDonos(rLoja);
        if (!sFalha.empty()) return sFalha;
    }
    return {};
}

// Closed and opened again it is the same.
std::string CXVExameQueda::ConfereReabertura(CBaseMiddleware& rLoja) {
    const TRetratoLoja retrato = XVRetrataLoja(rLoja);
    if (const HRESULT hr = rLoja.Finaliza(); FAILED(hr)) return Codigo("closing", hr);
    CBaseMiddleware loja;
    if (const HRESULT hr = Inicializa(loja); FAILED(hr)) return Codigo("opening for the second time", hr);
    const TRetratoLoja reaberta = XVRetrataLoja(loja);
    return retrato == reaberta
               ? ""
               : "opened for the second time it shows another\n" + XVDiferenca(retrato, reaberta);
}
