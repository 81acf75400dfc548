#include "suite/simulation/XVRegraSimulacao.h"

#include <algorithm>
#include <limits>

#include "contract/XVCR_Enumeracoes.h"
#include "platform/XVPlataforma.h"
#include "suite/simulation/XVNomesSimulacao.h"

namespace {

constexpr XVUInt64 k_uiMaximo64 = std::numeric_limits<XVUInt64>::max();
constexpr XVUInt k_ulMaximo32 = std::numeric_limits<XVUInt>::max();

const std::vector<SNomeValor>& NomesOperacao() {
    const auto valor = [](EOperacaoSimulada e) { return static_cast<XVUInt>(e); };
    static const std::vector<SNomeValor> s_lista{
        {"RealizaOperacaoAnterior", valor(EOperacaoSimulada::eRealizaOperacaoAnterior)},
        {"RealizaOperacaoPosterior", valor(EOperacaoSimulada::eRealizaOperacaoPosterior)},
        {"AtualizaParametrosIntegracao", valor(EOperacaoSimulada::eAtualizaParametrosIntegracao)},
        {"BuscaIntegracoes", valor(EOperacaoSimulada::eBuscaIntegracoes)},
        {"EnviaJson", valor(EOperacaoSimulada::eEnviaJson)},
        {"BuscaDados", valor(EOperacaoSimulada::eBuscaDados)},
        {"ExcluiDados", valor(EOperacaoSimulada::eExcluiDados)},
        {"BuscaDadosSistemaTerceiro", valor(EOperacaoSimulada::eBuscaDadosSistemaTerceiro)},
    };
    return s_lista;
}

// A plain file name: nothing that leads out of the folder.
bool EhNomeArquivo(std::string_view sNome) {
    return !sNome.empty() && sNome.size() <= 100 && sNome.front() != '.' && sNome.back() != '.' &&
           std::all_of(sNome.begin(), sNome.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                      c == '.' || c == '_' || c == '-';
           });
}

template <class T>
bool Admite(const std::optional<T>& rCondicao, const T& rValor) {
    return !rCondicao || *rCondicao == rValor;
}

void TomaDocumento(CXVLeitorCampos& rLeitor, std::string* psDocumento) {
    *psDocumento = rLeitor.Texto("Documento").value_or(std::string());
    if (!psDocumento->empty() && !EhNomeArquivo(*psDocumento))
        rLeitor.Recusa("Documento",
                       "esperado um nome de arquivo sem pasta (letras, algarismos, \".\", \"_\", \"-\")");
}

}  // namespace

SDesfechoSimulado SDesfechoSimulado::De(CXVLeitorCampos& rLeitor) {
    SDesfechoSimulado desfecho;
    const auto ulEspera = rLeitor.Numero32("Espera", k_ulMaximoEspera);
    const auto ulTempoEsgotado = rLeitor.Numero32("TempoEsgotado", k_ulMaximoEspera);
    const auto hrResultado = rLeitor.Codigo("Resultado");
    if (ulTempoEsgotado && (ulEspera || hrResultado))
        rLeitor.Recusa("TempoEsgotado", "não se une a Espera e Resultado");
    desfecho.ulEspera = ulTempoEsgotado.value_or(ulEspera.value_or(0));
    desfecho.hrResultado = ulTempoEsgotado ? k_hrTempoEsgotado : hrResultado.value_or(S_OK);
    return desfecho;
}

HRESULT SDesfechoSimulado::Cumpre() const {
    if (ulEspera != 0) XVPlataforma::Relogio().Dorme(ulEspera);
    return hrResultado;
}

bool SRegraSimulacao::Interpreta(const CXVDocumentoSimulacao& rDocumento, std::string* psErro) {
    using enum EOperacaoSimulada;
    CXVLeitorCampos leitor(rDocumento);
    const auto ulOperacao = leitor.Enumeracao("Operacao", NomesOperacao());
    if (!ulOperacao) leitor.Recusa("Operacao", "falta");
    eOperacao = static_cast<EOperacaoSimulada>(ulOperacao.value_or(0));
    const bool bTroca = eOperacao == eEnviaJson || eOperacao == eBuscaDados || eOperacao == eExcluiDados;
    const bool bConsulta = eOperacao == eBuscaDadosSistemaTerceiro;

    if (!bConsulta) {
        regOrigem = leitor.Dmc("Origem");
        eTipo = leitor.Enumeracao("Tipo", XVNomesSimulacao::TipoIntegracao());
        eTransacao = leitor.Enumeracao("Transacao", XVNomesSimulacao::TipoTransacao());
    } else {
        eConsulta = leitor.Enumeracao("Consulta", XVNomesSimulacao::TipoConsulta());
        sChaveConsulta = leitor.Texto("ChaveConsulta");
        TomaDocumento(leitor, &sDocumento);
    }
    if (bTroca || eOperacao == eRealizaOperacaoAnterior) {
        uiChave = leitor.Numero("Chave", k_uiMaximo64);
        sContem = leitor.Texto("Contem");
    }
    if (bTroca) eStatus = leitor.Enumeracao("Status", XVNomesSimulacao::StatusIntegracao());
    if (bConsulta) eStatus = leitor.Enumeracao("Status", XVNomesSimulacao::StatusConsulta());
    if (bTroca || bConsulta) sMensagem = leitor.Texto("Mensagem");
    if (eOperacao == eEnviaJson) {
        uiNovaChave = leitor.Numero("NovaChave", k_uiMaximo64);
        if (uiNovaChave == 0) leitor.Recusa("NovaChave", "0 não é chave");
    }
    if (eOperacao == eAtualizaParametrosIntegracao) {
        eNovoTipo = leitor.Enumeracao("NovoTipo", XVNomesSimulacao::TipoIntegracao());
        eNovaTransacao = leitor.Enumeracao("NovaTransacao", XVNomesSimulacao::TipoTransacao());
        regNovaOrigem = leitor.Dmc("NovaOrigem");
    }
    if (eOperacao == eAtualizaParametrosIntegracao || eOperacao == eRealizaOperacaoAnterior)
        ulNovaFilial = leitor.Numero32("NovaFilial", k_ulMaximo32);
    if (eOperacao == eRealizaOperacaoAnterior) uiNovaBaseDados = leitor.Numero("NovaBaseDados", k_uiMaximo64);
    if (bTroca || eOperacao == eAtualizaParametrosIntegracao || eOperacao == eRealizaOperacaoAnterior)
        uiNovaChaveRegistro = leitor.Numero("NovaChaveRegistro", k_uiMaximo64);
    desfecho = SDesfechoSimulado::De(leitor);

    sCorpo = rDocumento.GetCorpoEscrito();
    if (!sCorpo.empty() && !bTroca && !bConsulta && eOperacao != eRealizaOperacaoAnterior)
        leitor.Recusa("Operacao", "esta operação não tem corpo");
    if (sCorpo.find('\0') != std::string::npos) leitor.Recusa("Operacao", "o corpo contém um byte zero");
    return leitor.Termina(psErro);
}

bool SRegraSimulacao::Vale(const SChamadaSimulada& rChamada) const {
    return eOperacao == rChamada.eOperacao && Admite(regOrigem, rChamada.regOrigem) &&
           Admite(eTipo, rChamada.eTipo) && Admite(eTransacao, rChamada.eTransacao) &&
           Admite(uiChave, rChamada.uiChave) && Admite(eConsulta, rChamada.eConsulta) &&
           (!sChaveConsulta || *sChaveConsulta == rChamada.sChaveConsulta) &&
           (!sContem || rChamada.sJSON.find(*sContem) != std::string_view::npos);
}

HRESULT CXVRegrasSimulacao::Busca(const SChamadaSimulada& rChamada, std::optional<SRegraSimulacao>* pRegra,
                                  bool* pbExiste) const {
    pRegra->reset();
    if (pbExiste != nullptr) *pbExiste = false;
    std::vector<std::string> listaNomes;
    XV_CHECK_DONO(&m_rDono, m_rPasta.Lista("regras", "regra", &listaNomes));
    for (const std::string& sNome : listaNomes) {
        CXVDocumentoSimulacao documento;
        XV_CHECK_DONO(&m_rDono, m_rPasta.Le("regras", sNome, &documento));
        SRegraSimulacao regra;
        std::string sErro;
        if (!regra.Interpreta(documento, &sErro)) return m_rPasta.Recusa(sNome, sErro);
        if (pbExiste != nullptr && regra.eOperacao == rChamada.eOperacao &&
            Admite(regra.eConsulta, rChamada.eConsulta))
            *pbExiste = true;
        if (!regra.Vale(rChamada)) continue;
        *pRegra = std::move(regra);
        return S_OK;
    }
    return S_OK;
}
