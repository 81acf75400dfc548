// The store that a power failure left, opened, looked at and used.
#pragma once

#include <stdexcept>

#include "middleware/verificacao/XVRecuperacao.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/middleware/XVConteudoComDono.h"
#include "tests/middleware/XVRetratoLoja.h"

// What the script knew at the moment of the failure.
struct SVerdadeQueda {
    const TRetratoLoja& antes;  // of the operation in flight
    const TRetratoLoja& depois;
    bool bReconhecida;                          // the operation was over: only `depois` will do
    const std::map<XVUInt64, unsigned>& donos;  // by integration
};

// Throws std::runtime_error with the promise that was broken.
class CXVExameQueda {
  public:
    explicit CXVExameQueda(const SVerdadeQueda& rVerdade) : m_rVerdade(rVerdade) {}

    // It opens by itself and shows what was acknowledged and whole operations only.
    void ComDurabilidade() {
        {
            CBaseMiddleware consulta;  // may refuse what only an opening can put in order
            if (SUCCEEDED(XVInicializa(consulta, true))) Compara("a viewer", XVRetrataLoja(consulta));
        }
        CBaseMiddleware loja;
        const CXVCapturaTrace captura;
        Exige(XVInicializa(loja) == S_OK, "the opening was refused " + NomeiaArquivo(captura));
        Compara("the opened store", XVRetrataLoja(loja));
        Nova(loja, k_uiPrimeiroNovo);
        Exige(!m_mapaNovas.empty(), "nothing can be recorded any more");
        ConfereReabertura(loja);
    }
    // It opens, or names the file that it refuses (false); it shows nothing under a key that was recorded
    // under another, and no later operation makes it worse.
    bool SemDurabilidade() {
        {
            CBaseMiddleware consulta;
            if (SUCCEEDED(XVInicializa(consulta, true))) ConfereDonos(consulta);
            m_mapaLidas.clear();  // the opening may put in order what a viewer saw
        }
        CBaseMiddleware loja;
        {
            const CXVCapturaTrace captura;
            if (FAILED(XVInicializa(loja))) {
                Exige(!NomeiaArquivo(captura).empty(), "refused without a file's name");
                return false;
            }
        }
        ConfereDonos(loja);
        ConfereMapaEDatas(loja);
        for (unsigned ui = 0; ui < 3; ++ui) {
            Nova(loja, k_uiPrimeiroNovo + ui);
            if (ui == 1) Toca(loja);
            ConfereDonos(loja);
        }
        ConfereReabertura(loja);
        return true;
    }

    // What is recovered of it, whether it opens or not, is a sound store that shows nothing under a key that
    // was recorded under another; with durability, all that was acknowledged and whole operations only.
    // Without it nothing may have reached the device of the undoing of an operation that failed (bTeveFalha):
    // its bytes are then as readable as any others.
    void Recuperada(bool bDurabilidade, bool bTeveFalha) {
        const CXVDonoFixo dono("MATRIZ");
        const std::string sNova = CAmbienteXV::MontaPathDados(XV_DF, "/recuperada", "MATRIZ");
        std::string sDiretorio;
        SRecuperacao recuperacao;
        SVerificacao verificacao;
        Exige(CAmbienteXV::GetPathDados(XV_DF, "MATRIZ", &sDiretorio) == S_OK, "no directory");
        CXVRecuperacao executor({sDiretorio, sNova, "/recuperada/separados"}, dono, true);
        const HRESULT hr = executor.Executa(&recuperacao);
        if (hr == eBadPath) return;  // there was no store yet
        Exige(hr == S_OK, "the recovery failed, " + std::to_string(static_cast<unsigned>(hr)));
        Exige(CXVVerificacao(sNova, dono).Executa(&verificacao) == S_OK,
              "what was recovered cannot be verified");
        for (const SXVAchado& rAchado : verificacao.listaAchados)
            Exige(XVDescreveAchado(rAchado.eTipo).eGravidade != EGravidade::eDano,
                  "what was recovered is not sound: " + rAchado.sArquivo + ' ' +
                      XVDescreveAchado(rAchado.eTipo).pszNome);
        CXVRegistryFalso registry;
        registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/recuperada");
        const CXVGuardaRegistry guarda(registry);
        CBaseMiddleware loja;
        Exige(XVInicializa(loja) == S_OK, "what was recovered does not open");
        if (bDurabilidade || !bTeveFalha) ConfereDonos(loja);
        m_mapaLidas.clear();
        if (bDurabilidade) Compara("what was recovered", XVRetrataLoja(loja));
    }

  private:
    static constexpr unsigned k_uiPrimeiroNovo = 900001;

    // The newest error record since the capture began that names a file of the store; empty: none does.
    static std::string NomeiaArquivo(const CXVCapturaTrace& rCaptura) {
        const auto& rFalhas = rCaptura.GetFalhas();
        const auto it = std::find_if(rFalhas.rbegin(), rFalhas.rend(), [](const SFalhaCapturada& rFalha) {
            const std::string sTudo = rFalha.sExpressao + rFalha.sMensagem;
            return sTudo.find(".dat") != std::string::npos || sTudo.find(".srk") != std::string::npos;
        });
        return it == rFalhas.rend() ? "" : it->sExpressao + ' ' + it->sMensagem;
    }

    static void Exige(bool bCumprida, const std::string& sFalha) {
        if (!bCumprida) throw std::runtime_error(sFalha);
    }

    // Whose an integration is; 0: nobody's. A key that the failure took away may have been given out again.
    unsigned Dono(XVUInt64 uiDmc) const {
        if (const auto it = m_mapaNovas.find(uiDmc); it != m_mapaNovas.end()) return it->second;
        const auto it = m_rVerdade.donos.find(uiDmc);
        return it == m_rVerdade.donos.end() ? 0 : it->second;
    }
    void Compara(const char* pszQuem, const TRetratoLoja& rObtido) const {
        Exige(rObtido == m_rVerdade.depois || (!m_rVerdade.bReconhecida && rObtido == m_rVerdade.antes),
              std::string(pszQuem) +
                  (m_rVerdade.bReconhecida ? " shows other than was acknowledged\n"
                                           : " shows a part of the operation\n") +
                  XVDiferenca(m_rVerdade.depois, rObtido));
    }
    // Every integration that is shown was recorded, and shows nothing of another. What was readable before
    // stays as it was; an integration that cannot be read is a loss, not a lie.
    void ConfereDonos(CBaseMiddleware& rLoja) {
        for (const XVUInt64 uiDmc : XVBuscaComCodigo(rLoja, {}).lista) {
            const unsigned uiDono = Dono(uiDmc);
            const std::string sNome = REG_XVDMC{uiDmc}.ToString();
            Exige(uiDono != 0, sNome + " was never recorded");
            const SIntegracaoLida lida = XVLe(rLoja, {uiDmc});
            const auto itLida = m_mapaLidas.find(uiDmc);
            if (FAILED(lida.hr)) {
                Exige(itLida == m_mapaLidas.end(), sNome + " could be read before a later operation");
                continue;
            }
            const std::string sAlheio = XVConteudoAlheio(lida, uiDono);
            Exige(sAlheio.empty(), sNome + ": " + sAlheio);
            const std::string sRetrato = XVDescreveIntegracao(lida);
            Exige(itLida == m_mapaLidas.end() || itLida->second == sRetrato,
                  sNome + " changed with a later operation, now " + sRetrato);
            m_mapaLidas[uiDmc] = sRetrato;
        }
    }
    static void ConfereMapaEDatas(CBaseMiddleware& rLoja) {
        for (unsigned ui = 1; ui <= k_uiRegistrosMapa; ++ui) {
            tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
            XVIgnora(rLoja.BuscaChaveRegistroTelvoParaTerceiro(
                {0, XVRegistroMapa(ui), 1, k_eTipoMapa, Mercos, {}}, &reg));
            const XVUInt64 uiId = reg.uiChaveRegistroSistemaTerceiro;
            Exige(uiId == 0 || XVEhIdDoRegistro(uiId, ui),
                  "the map shows " + std::to_string(uiId) + " for record " + std::to_string(ui));
        }
        for (const XVUInt eTipo : k_aTiposDataHora)
            for (const XVUInt eSistema : {Mercos, OfficialBank})
                for (XVUInt eData = 1; eData <= 2; ++eData) {
                    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
                    XVIgnora(rLoja.BuscaDataHoraIntegracaoTerceiro({{}, eTipo, eSistema, eData}, &reg));
                    Exige(reg.regDataHora.uiValor == 0 ||
                              XVEhDataHoraDaChave(reg.regDataHora, eTipo, eSistema, eData),
                          "a date-time of another key is shown");
                }
    }
    // Closed and opened again it is the same.
    static void ConfereReabertura(CBaseMiddleware& rLoja) {
        const TRetratoLoja retrato = XVRetrataLoja(rLoja);
        Exige(rLoja.Finaliza() == S_OK, "closing failed");
        CBaseMiddleware loja;
        Exige(XVInicializa(loja) == S_OK, "opening for the second time failed");
        const std::string sDiferenca = XVDiferenca(retrato, XVRetrataLoja(loja));
        Exige(sDiferenca.empty(), "opened for the second time it shows another\n" + sDiferenca);
    }
    // A new one; what refuses to be recorded changes nothing.
    void Nova(CBaseMiddleware& rLoja, unsigned uiDono) {
        CXVSorteio sorteio(uiDono);
        CXVIntegracaoTeste integracao = XVIntegracaoComDono(uiDono, Mercos, eXVSMiddleware_Enviado, sorteio);
        const TListaDmc listaAntes = XVBuscaComCodigo(rLoja, {}).lista;
        REG_XVDMC regDmc;
        if (FAILED(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()))) return;
        Exige(std::ranges::count(listaAntes, regDmc.uiValor) == 0 &&
                  m_mapaNovas.insert({regDmc.uiValor, uiDono}).second,
              regDmc.ToString() + " was given out twice");
        m_mapaLidas.erase(regDmc.uiValor);
        const SIntegracaoLida lida = XVLe(rLoja, regDmc);
        Exige(lida.hr == S_OK && lida.reg.uiBaseDadosTerceiro == uiDono &&
                  lida.sJSON.size() == integracao.Ptr()->regRegistroJSON.ulQtdBytes,
              regDmc.ToString() + " does not show what was recorded just now");
    }
    // A status of one that is there.
    void Toca(CBaseMiddleware& rLoja) {
        if (m_mapaLidas.empty()) return;
        const XVUInt64 uiDmc = m_mapaLidas.begin()->first;
        CXVSorteio sorteio(uiDmc);
        const std::string sMensagem = XVTextoComDono(Dono(uiDmc), k_cDonoMensagem, sorteio);
        const std::string sRetorno;
        const auto reg = XVStatusPS({uiDmc}, 0, eXVSMiddleware_Erro, sMensagem, sRetorno);
        if (FAILED(rLoja.GravaStatusIntegracao(reg))) return;
        const SIntegracaoLida lida = XVLe(rLoja, {uiDmc});
        Exige(lida.hr == S_OK && lida.reg.eStatusIntegracao == eXVSMiddleware_Erro &&
                  lida.sMensagem == sMensagem,
              reg.regDmc.ToString() + " does not show its new status");
        m_mapaLidas.erase(uiDmc);
    }

    const SVerdadeQueda& m_rVerdade;
    std::map<XVUInt64, unsigned> m_mapaNovas;     // recorded after the failure
    std::map<XVUInt64, std::string> m_mapaLidas;  // as they were read last
};
