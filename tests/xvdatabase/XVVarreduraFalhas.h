// Every operation of a use of the engine with the Nth file operation failing, for every N until a run
// meets no fault: the failure is told, nothing stays open, and the data afterwards is that from before or
// from after.
#pragma once

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>

#include "tests/xvdatabase/XVCenarioBanco.h"

class CXVVarreduraFalhas : public CXVCenarioBanco {
  protected:
    // From opening to finalising, and the first code of both.
    template <class TArquivo, class TOperacao>
    HRESULT Usa(const std::string& sNome, TOperacao operacao) {
        TXVBanco<TArquivo> banco(sNome);
        HRESULT hr = Abre(banco);
        if (SUCCEEDED(hr)) hr = operacao(banco.xvFile);
        const HRESULT hrFinaliza = banco.xvDB.Finaliza();
        return FAILED(hr) ? hr : hrFinaliza;
    }
    HRESULT UsaRegistros(const std::function<HRESULT(CXVFileTeste&)>& fn) {
        return Usa<CXVFileTeste>("A.dat", [&](CXVFileTeste& rFile) {
            const SChavesTeste chaves;
            const HRESULT hr = rFile.IncluiIndex(&chaves, 0);
            return FAILED(hr) ? hr : fn(rFile);
        });
    }

    // What a reader sees, without changing anything: the payload, or the refusal. An absent file is as good
    // as an empty one.
    std::string Estado(const std::string& sNome) {
        TXVBanco<CXVTextFile> banco(sNome);
        banco.xvDB.SetSomenteLeituraSemBloqueio(true);
        if (!Existe(sNome)) return "";
        CXVFileBase xvFile(sNome, &banco.xvDB, ERegistroArquivo::eAvulso);
        HRESULT hr = xvFile.Inicializa(&m_Dono);
        if (SUCCEEDED(hr)) hr = xvFile.AbreArquivo(eModoLeituraSemBloqueio);
        if (SUCCEEDED(hr)) hr = xvFile.ConfereCabecalho();
        const auto uiSeek = static_cast<std::size_t>(xvFile.GetSeekCabecalho());
        XVIgnora(xvFile.Finaliza());
        if (SUCCEEDED(hr)) return Le(sNome).substr(uiSeek);
        std::ostringstream s;
        s << k_pszRecusado << std::hex << hr;
        return s.str();
    }

    struct SOperacao {
        std::function<HRESULT()> fnExecuta;
        std::function<std::string()> fnEstado;
        // Overwrites in place: half a write on a device that then refuses everything cannot be undone.
        bool bSobrepoe = false;
    };
    // What a device that refused even the undoing may have left: a copy, or a file that is cut in its middle.
    static bool EhRecusaDeResto(HRESULT hr) {
        return hr == E_XVCR_ARQUIVO_CAB_ENCONTRADO || hr == E_XVCR_ARQUIVO_TRA_ENCONTRADO ||
               hr == E_XVCR_CRC_CABECALHO_NAO_CONFERE ||
               hr == E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA;
    }
    bool NomeiaOArquivo(const CXVCapturaTrace& rCaptura) const {
        const auto& listaFalhas = rCaptura.GetFalhas();
        return std::any_of(listaFalhas.begin(), listaFalhas.end(), [this](const SFalhaCapturada& rFalha) {
            return rFalha.sMensagem.starts_with("Arquivo recusado: " + PastaDados(""));
        });
    }
    void Varre(const SOperacao& rOperacao);
    void VarreComFalha(const SOperacao& rOperacao, SFalhaArquivo falha);

    static constexpr const char* k_pszRecusado = "recusado ";
    std::string m_sAntes;
    std::string m_sDepois;
    CXVSistemaArquivosMemoria::TRetrato m_Inicial;
};

inline void CXVVarreduraFalhas::Varre(const SOperacao& rOperacao) {
    m_Falhas.SetFiltro([](const std::string& s) { return s.find("XVProfiler") == std::string::npos; });
    m_Inicial = m_Arquivos.Retrata();
    m_sAntes = rOperacao.fnEstado();
    ASSERT_EQ(rOperacao.fnExecuta(), S_OK);
    m_sDepois = rOperacao.fnEstado();
    constexpr auto k_eCheio = ECausaArquivo::eDiscoCheio;   // tried again
    constexpr auto k_eFisico = ECausaArquivo::eErroFisico;  // fatal
    for (const ECausaArquivo eCausa : {k_eCheio, k_eFisico})
        for (const bool bMetade : {false, true})
            VarreComFalha(rOperacao, {.eCausa = eCausa, .bGravaMetade = bMetade});
    VarreComFalha(rOperacao, {.bPermanente = true, .eCausa = k_eCheio});
    VarreComFalha(rOperacao, {.bPermanente = true, .eCausa = k_eFisico, .bGravaMetade = true});
    VarreComFalha(rOperacao, {.eOperacao = EOperacaoArquivo::eConsulta});
}

inline void CXVVarreduraFalhas::VarreComFalha(const SOperacao& rOperacao, SFalhaArquivo falha) {
    bool bHouveFalha = true;
    for (falha.uiNumero = 1; bHouveFalha; ++falha.uiNumero) {
        ASSERT_LT(falha.uiNumero, 300U);
        SCOPED_TRACE((falha.eOperacao ? "question " : "operation ") + std::to_string(falha.uiNumero) +
                     (falha.bPermanente ? " and after" : "") + (falha.bGravaMetade ? ", half written" : "") +
                     (falha.eCausa == ECausaArquivo::eDiscoCheio ? ", disk full" : ", hard I/O"));
        const CXVCapturaTrace captura;
        m_Arquivos.Restaura(m_Inicial);
        m_Falhas.Programa(falha);
        const HRESULT hr = rOperacao.fnExecuta();
        bHouveFalha = m_Falhas.GetFalhasOcorridas() > 0;
        m_Falhas.Limpa();
        ASSERT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        const std::string sEstado = rOperacao.fnEstado();
        if (SUCCEEDED(hr)) {
            ASSERT_EQ(sEstado, m_sDepois) << "success was claimed";
        } else if (falha.eOperacao == EOperacaoArquivo::eConsulta) {
            ASSERT_EQ(hr, eAccessDenied) << "what is not told is neither there nor absent";
            ASSERT_TRUE(NomeiaOArquivo(captura));
        }
        // Only where the device refuses even the undoing may the file be left to be refused.
        if (falha.bPermanente && sEstado.starts_with(k_pszRecusado)) continue;
        if (falha.bPermanente && falha.bGravaMetade && rOperacao.bSobrepoe) continue;
        ASSERT_TRUE(sEstado == m_sAntes || sEstado == m_sDepois) << std::hex << hr << "\n"
                                                                 << ::testing::PrintToString(sEstado);
        const HRESULT hrProxima = rOperacao.fnExecuta();
        ASSERT_TRUE(hrProxima == S_OK || (falha.bPermanente && EhRecusaDeResto(hrProxima)))
            << "the next valid operation works " << std::hex << hrProxima;
        ASSERT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
}
