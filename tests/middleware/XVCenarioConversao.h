// A data directory of an older version in memory, on a standing clock.
#pragma once

#include "middleware/ConversaoMiddleware.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/middleware/XVCenarioLoja.h"

inline constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
inline constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";
inline constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";
inline constexpr const char* k_pszMapa = "CRCHAVEREGTER.dat";
inline constexpr const char* k_pszDatas = "CRDTHRINTEG.dat";

class CXVCenarioConversao : public CXVCenarioLoja {
  protected:
    void Poe(const std::string& sNome, const std::string& sBytes) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    }
    void Apaga(const std::string& sNome) { EXPECT_TRUE(m_Arquivos.Apaga(PastaDados(sNome)).Ok()) << sNome; }
    void Instala(const TArquivos& rArquivos) {
        for (const auto& [sNome, sBytes] : rArquivos) Poe(sNome, sBytes);
    }
    // These files and no others.
    void Recomeca(const TArquivos& rArquivos) {
        m_Arquivos.Restaura(m_vazio);
        Instala(rArquivos);
    }
    HRESULT Converte(IXVObservadorConversao* pObservador = nullptr) const {
        CXVConversaoMiddleware conversao(pObservador);
        const HRESULT hr = conversao.Inicializa(&m_Dono);
        return FAILED(hr) ? hr : conversao.ExecutaConversao();
    }
    HRESULT AbreEFecha(bool bSomenteLeitura) const {
        CBaseMiddleware loja;
        return XVInicializa(loja, bSomenteLeitura);
    }
    // Neither conversion, opening nor viewing takes the store, nothing of it changes, and the error log names
    // the file.
    void EsperaRecusa(const std::string& sNomeado, const std::string& sCaso) {
        SCOPED_TRACE(sCaso);
        const auto antes = RetratoSemLogs();
        const CXVCapturaTrace captura;
        EXPECT_EQ(Converte(), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_TRUE(XVTextoNoLog(captura, sNomeado)) << sNomeado;
        EXPECT_NE(AbreEFecha(false), S_OK);
        EXPECT_NE(AbreEFecha(true), S_OK);
        EXPECT_EQ(m_Arquivos.Diferenca(antes, RetratoSemLogs()), "");
    }
    // Nothing transient is left behind.
    void ConfereSemRestos() const {
        for (const auto& [sCaminho, arquivo] : m_Arquivos.Retrata())
            EXPECT_FALSE(sCaminho.ends_with(".tra") || sCaminho.ends_with(".srk")) << sCaminho;
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }

    const CXVSistemaArquivosMemoria::TRetrato m_vazio = m_Arquivos.Retrata();
};
