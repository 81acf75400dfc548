// A rule of the simulated system: which calls it is for and how they end. One document "*.regra" each; the
// first one in name order whose conditions all hold decides, the others are not looked at.
#pragma once

#include <optional>
#include <string>

#include "suite/simulation/XVPastaSimulacao.h"

enum class EOperacaoSimulada : XVUInt {
    eRealizaOperacaoAnterior,
    eRealizaOperacaoPosterior,
    eAtualizaParametrosIntegracao,
    eBuscaIntegracoes,
    eEnviaJson,
    eBuscaDados,
    eExcluiDados,
    eBuscaDadosSistemaTerceiro,
};

// How long a call takes and with which code it fails.
struct SDesfechoSimulado {
    static constexpr HRESULT k_hrTempoEsgotado = XVHResult(0x800705B4U);  // ERROR_TIMEOUT
    static constexpr XVUInt k_ulMaximoEspera = 60'000;                    // ms

    XVUInt ulEspera = 0;
    HRESULT hrResultado = S_OK;

    // Takes the fields Espera, Resultado and TempoEsgotado.
    static SDesfechoSimulado De(CXVLeitorCampos& rLeitor);
    // Waits, then answers the code.
    HRESULT Cumpre() const;
};

// What a call is about; absent members are not known to the operation.
struct SChamadaSimulada {
    EOperacaoSimulada eOperacao = EOperacaoSimulada::eEnviaJson;
    REG_XVDMC regOrigem;
    XVUInt eTipo = 0;
    XVUInt eTransacao = 0;
    XVUInt64 uiChave = 0;
    std::string_view sJSON;
    XVUInt eConsulta = 0;
    std::string_view sChaveConsulta;
};

struct SRegraSimulacao {
    EOperacaoSimulada eOperacao = EOperacaoSimulada::eEnviaJson;
    // Conditions.
    std::optional<REG_XVDMC> regOrigem;
    std::optional<XVUInt> eTipo;
    std::optional<XVUInt> eTransacao;
    std::optional<XVUInt64> uiChave;
    std::optional<std::string> sContem;
    std::optional<XVUInt> eConsulta;
    std::optional<std::string> sChaveConsulta;
    // Results.
    SDesfechoSimulado desfecho;
    std::optional<XVUInt> eStatus;
    std::optional<std::string> sMensagem;
    std::optional<XVUInt> eNovoTipo;
    std::optional<XVUInt> eNovaTransacao;
    std::optional<XVUInt> ulNovaFilial;
    std::optional<REG_XVDMC> regNovaOrigem;
    std::optional<XVUInt64> uiNovaChave;
    std::optional<XVUInt64> uiNovaChaveRegistro;
    std::optional<XVUInt64> uiNovaBaseDados;
    std::string sDocumento;  // file name in the folder "documentos"
    std::string sCorpo;

    // False: the document is no valid rule, told in *psErro.
    bool Interpreta(const CXVDocumentoSimulacao& rDocumento, std::string* psErro);
    bool Vale(const SChamadaSimulada& rChamada) const;
};

class CXVRegrasSimulacao {
  public:
    XV_CLASSE("CXVRegrasSimulacao", "suite/simulation/XVRegraSimulacao")

    CXVRegrasSimulacao(const CXVPastaSimulacao& rPasta, const IXVDF_Profiler& rDono)
        : m_rPasta(rPasta), m_rDono(rDono) {}

    // The rule for the call, or nothing. Any rule document that cannot be understood is a failure. pbExiste
    // (may be null) tells whether any rule is for the operation and, for queries, the kind of query.
    HRESULT Busca(const SChamadaSimulada& rChamada, std::optional<SRegraSimulacao>* pRegra,
                  bool* pbExiste) const;

  private:
    const CXVPastaSimulacao& m_rPasta;
    const IXVDF_Profiler& m_rDono;
};
