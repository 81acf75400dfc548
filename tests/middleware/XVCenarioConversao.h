// A data directory of an older version in memory, on a standing clock.
#pragma once

#include "middleware/ConversaoMiddleware.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/suite/XVCenarioSuite.h"

class CXVCenarioConversao : public CXVCenarioSuite {
  protected:
    void Instala(const TArquivos& rArquivos) {
        for (const auto& [sNome, sBytes] : rArquivos) m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    }
    HRESULT Converte(IXVObservadorConversao* pObservador = nullptr) const {
        CXVConversaoMiddleware conversao(pObservador);
        const HRESULT hr = conversao.Inicializa(&m_Dono);
        return FAILED(hr) ? hr : conversao.ExecutaConversao();
    }
    std::string Conteudo(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).value_or("<ausente>");
    }
    static std::string Dados(const std::string& sConteudo) {
        return sConteudo.size() < 240 ? sConteudo : sConteudo.substr(240);
    }
    CXVSistemaArquivosMemoria::TRetrato RetratoSemLogs() const {
        auto retrato = m_Arquivos.Retrata();
        std::erase_if(retrato, [](const auto& it) { return it.first.ends_with(".log"); });
        return retrato;
    }
    // Nothing transient is left behind.
    void ConfereSemRestos() const {
        for (const auto& [sCaminho, arquivo] : m_Arquivos.Retrata())
            EXPECT_FALSE(sCaminho.ends_with(".tra") || sCaminho.ends_with(".srk")) << sCaminho;
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }

    CXVCapturaTrace m_Captura;
};
