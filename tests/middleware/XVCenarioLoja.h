// A store of the company MATRIZ in memory, on a clock that stands at 2024-03-15 12:00:00 UTC (09:00 local),
// opened by user 7 in session 99.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/middleware/XVBytesBase.h"
#include "tests/suite/XVCenarioSuite.h"

inline constexpr XVUInt64 k_uiHoje = XVDma(2024, 3, 15);

// An input record that owns its texts.
class CXVIntegracaoTeste {
  public:
    explicit CXVIntegracaoTeste(XVUInt64 uiChave = 0, XVUInt eSistema = Mercos,
                                XVUInt eStatus = eXVSMiddleware_Pendente);
    CXVIntegracaoTeste& Textos(std::string sJSON, std::string sMensagem, std::string sRetorno);
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* Ptr();

    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};

  private:
    std::string m_sJSON, m_sMensagem, m_sRetorno;
};

_REG_DF_TEXTOPS XVTextoPS(const std::string& sTexto);  // a view: sTexto must live

// A status for what a DMC or an external key names; a view of the texts.
tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS XVStatusPS(REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eStatus,
                                                    const std::string& sMensagem, const std::string& sRetorno,
                                                    XVUInt eSistema = Mercos);

// What was read, with its buffers freed.
struct SIntegracaoLida {
    HRESULT hr = S_OK;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};  // text pointers are no longer valid
    std::string sJSON, sMensagem, sRetorno;
};

// What to search for.
struct SFiltroTeste {
    XVUInt64 de = 0, ate = 0;  // external key
    REG_XVDMAHMSUTC incluidaDe{}, incluidaAte{}, alteradaDe{}, alteradaAte{};
    std::vector<XVUInt> tipos{}, status{}, sistemas{}, transacoes{};
};

using TLoja = std::unique_ptr<CBaseMiddleware>;
using TListaDmc = std::vector<XVUInt64>;

// An output record with its texts; its buffers are freed.
SIntegracaoLida XVToma(tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
SIntegracaoLida XVLe(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags = 7);
struct SBuscaFeita {
    HRESULT hr = S_OK;
    TListaDmc lista;
};
SBuscaFeita XVBuscaComCodigo(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro);
// The keys found; a failure is a failure of the test.
TListaDmc XVBusca(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro = {});

class CXVCenarioLoja : public CXVCenarioSuite {
  protected:
    // An open store; null and a failed test when it does not open.
    TLoja Abre(XVUShort usUsuario = 7, const std::string& sEmpresa = "MATRIZ", XVUInt ulSessao = 99) const;
    // Records a new one that must succeed.
    static REG_XVDMC Grava(CBaseMiddleware& rLoja, CXVIntegracaoTeste integracao);
    std::string Conteudo(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).value_or("<ausente>");
    }
    static std::string Dados(const std::string& sConteudo) {
        return sConteudo.size() < 240 ? sConteudo : sConteudo.substr(240);
    }
    std::string LogGeral() const { return Conteudo("XVLogGeral_202403.log"); }
    // All files of the data directory but the logs.
    CXVSistemaArquivosMemoria::TRetrato RetratoSemLogs() const;
    void SetDia(unsigned uiDia, unsigned uiHora = 12) {
        m_Relogio.SetUTC({2024, 3, static_cast<XVByte>(uiDia), static_cast<XVByte>(uiHora), 0, 0});
    }

    CXVCapturaTrace m_Captura;  // failures are expected here; nothing goes to a log
};
