#include "support/trace/XVProfilerLinha.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/values/XVTextoAscii.h"

namespace {

constexpr std::string_view k_sCabecalhoComum =
    "Data\tHora\tProcesso\tUsuarioLocal\tClasseFuncao\tGuid\tEmpresa\tUsuario\tSessao\tThreadID\tEmpresa\t"
    "Usuario\tNumeroSessao\tUsuarioDominio\tAplicativo\tModuleName\tArquivoFonte\tLinhaFonte\tWTS\tFiller\t"
    "Filler\tTipo\tMemoriaDisponivel\tMemoriaTotal\tMemoriaComponente\t";
constexpr std::string_view k_sCabecalhoParametros =
    "\tParameter1\tParameter2\tParameter3\tParameter4\tParameter5\tParameter6\tParameter7\tParameter8\t"
    "Parameter9\n";
constexpr std::string_view k_sCabecalhoProfiler = "Duracao\tDeltaMemoria";
constexpr std::string_view k_sCabecalhoErro = "VersaoTelvo\tVersaoSO\tArquivo\tLinha\tLog";

constexpr std::size_t k_uiMaximoParametros = 9;
// Columns that stay empty: UsuarioDominio, Aplicativo and ModuleName.
constexpr std::size_t k_uiVagasAntesDaFonte = 3;

std::size_t ContaTabs(std::string_view sTexto) {
    return static_cast<std::size_t>(std::count(sTexto.begin(), sTexto.end(), '\t'));
}

const char* PalavraTipo(ETipoEvento eTipo) {
    switch (eTipo) {
        case ETipoEvento::eEntrada:
            return "ENTROU";
        case ETipoEvento::eSaida:
            return "SAIU";
        case ETipoEvento::eCriacaoObjeto:
            return "COCREATE";
        case ETipoEvento::eErro:
            break;
    }
    return "ERRO";
}

constexpr bool EhSeparador(char c) {
    return c == '\t' || c == '\r' || c == '\n' || c == '\0';
}

// Builds a line column by column, counting them.
class CLinha {
  public:
    explicit CLinha(std::size_t uiColunas) : m_uiTabsRestantes(uiColunas - 1) { m_sLinha.reserve(1024); }

    CLinha& Campo(std::string_view sValor) {
        Separa();
        Saneado(sValor);
        return *this;
    }
    CLinha& CampoParametro(std::string_view sNome, std::string_view sValor) {
        Separa();
        Saneado(sNome);
        m_sLinha += " = ";
        Saneado(sValor);
        return *this;
    }
    // A text whose own tabs begin new columns while there are any left.
    void CampoComColunas(std::string_view sNome, std::string_view sValor) {
        CampoParametro(sNome, {});
        for (const char c : sValor) {
            if (c == '\t' && m_uiTabsRestantes > 0) {
                m_sLinha += '\t';
                --m_uiTabsRestantes;
            } else {
                m_sLinha += EhSeparador(c) ? ' ' : c;
            }
        }
    }
    template <class... TArgumentos>
    CLinha& CampoFormatado(const char* pszFormato, TArgumentos... argumentos) {
        char szValor[64];
        const int iTamanho = std::snprintf(szValor, sizeof szValor, pszFormato, argumentos...);
        return Campo(std::string_view(szValor, static_cast<std::size_t>(std::max(iTamanho, 0))));
    }
    std::string Termina() {
        m_sLinha.append(m_uiTabsRestantes, '\t');
        m_sLinha += '\n';
        return std::move(m_sLinha);
    }

  private:
    void Separa() {
        if (m_bPrimeiro) {
            m_bPrimeiro = false;
            return;
        }
        m_sLinha += '\t';
        --m_uiTabsRestantes;
    }
    void Saneado(std::string_view sValor) {
        for (const char c : sValor) m_sLinha += EhSeparador(c) ? ' ' : c;
    }
    std::string m_sLinha;
    std::size_t m_uiTabsRestantes;
    bool m_bPrimeiro = true;
};

void CamposSessao(CLinha& rLinha, const SProfilerEvento& rEvento) {
    std::string sEmpresa = "E";
    unsigned uiUsuario = 0;
    unsigned uiSessao = 0;
    if (rEvento.pDono != nullptr) {
        sEmpresa += rEvento.pDono->GetEmpresa();
        uiUsuario = rEvento.pDono->GetUsuario();
        uiSessao = rEvento.pDono->GetNumeroSessao();
    }
    const auto donos = [&] {
        rLinha.Campo(sEmpresa).CampoFormatado("U%03u", uiUsuario).CampoFormatado("S%08u", uiSessao);
    };
    donos();
    rLinha.CampoFormatado("T%08u", static_cast<unsigned>(XVAmbienteSO::GetIdThread()));
    donos();
}

void CamposFonte(CLinha& rLinha, const SProfilerEvento& rEvento) {
    for (std::size_t i = 0; i < k_uiVagasAntesDaFonte; ++i) rLinha.Campo({});
    rLinha.Campo(rEvento.sArquivoFonte);
    rLinha.Campo(rEvento.sArquivoFonte.empty() ? std::string() : std::to_string(rEvento.iLinhaFonte));
    rLinha.Campo({});  // WTS
    // The first of the two called Filler.
    rLinha.Campo(rEvento.uiPerdidosAntes == 0 ? std::string()
                                              : "Perdidas = " + std::to_string(rEvento.uiPerdidosAntes));
    rLinha.Campo({});
}

void CamposComuns(CLinha& rLinha, const SProfilerEvento& rEvento) {
    const SDataHora& r = rEvento.dataHora;
    rLinha.CampoFormatado("%02u/%02u/%04u", unsigned{r.ucDia}, unsigned{r.ucMes}, unsigned{r.usAno})
        .CampoFormatado("%02u:%02u:%02u", unsigned{r.ucHora}, unsigned{r.ucMinuto}, unsigned{r.ucSegundo})
        .Campo(rEvento.sProcesso)
        .Campo(rEvento.sUsuarioLocal)
        .Campo(rEvento.sClasseFuncao)
        .Campo(rEvento.sGuid);
    CamposSessao(rLinha, rEvento);
    CamposFonte(rLinha, rEvento);
    const XVAmbienteSO::SMemoriaMaquina memoria = XVAmbienteSO::GetMemoriaMaquina();
    rLinha.Campo(PalavraTipo(rEvento.eTipo))
        .CampoFormatado("%" PRIu64, memoria.uiDisponivel)
        .CampoFormatado("%" PRIu64, memoria.uiTotal)
        .CampoFormatado("%" PRIu64, rEvento.uiMemoriaFim);
}

}  // namespace

SProfilerEvento::SProfilerEvento(ETipoEvento eTipoEvento, const IXVDF_Profiler* pDonoEvento)
    : eTipo(eTipoEvento),
      pDono(pDonoEvento),
      dataHora(XVPlataforma::Relogio().AgoraLocal()),
      sProcesso(XVProfilerLinha::GetNomeProcesso()),
      sUsuarioLocal(XVProfilerLinha::GetUsuarioLocal()) {}

namespace XVProfilerLinha {

const std::string& GetCabecalho(ETipoEvento eTipo) {
    const auto monta = [](std::string_view sMeio) {
        return new std::string(std::string(k_sCabecalhoComum).append(sMeio).append(k_sCabecalhoParametros));
    };
    // Never freed: records may be written while the process ends.
    static const std::string& s_rProfiler = *monta(k_sCabecalhoProfiler);
    static const std::string& s_rErro = *monta(k_sCabecalhoErro);
    return eTipo == ETipoEvento::eErro ? s_rErro : s_rProfiler;
}

std::string MontaLinha(const SProfilerEvento& rEvento) {
    CLinha linha(ContaTabs(GetCabecalho(rEvento.eTipo)) + 1);
    CamposComuns(linha, rEvento);
    const auto& rLista = rEvento.listaParametros;
    const std::size_t uiParametros = std::min(rLista.size(), k_uiMaximoParametros);
    if (rEvento.eTipo != ETipoEvento::eErro) {
        linha.CampoFormatado("%" PRIu32, rEvento.ulTicksFim - rEvento.ulTicksInicio)
            .CampoFormatado("%" PRId64,
                            static_cast<std::int64_t>(rEvento.uiMemoriaFim - rEvento.uiMemoriaInicio));
        for (std::size_t i = 0; i < uiParametros; ++i)
            linha.CampoParametro(rLista[i].first, rLista[i].second);
        return linha.Termina();
    }
    for (std::size_t i = 0; i + 1 < uiParametros; ++i)
        linha.CampoParametro(rLista[i].first, rLista[i].second);
    if (uiParametros > 0)
        linha.CampoComColunas(rLista[uiParametros - 1].first, rLista[uiParametros - 1].second);
    return linha.Termina();
}

const std::string& GetNomeProcesso() {
    static const std::string& s_rNome = *[] {
        const std::string sCaminho = XVAmbienteSO::GetCaminhoExecutavel();
        const std::size_t uiBarra = sCaminho.find_last_of("/\\");
        return new std::string(
            XVEmMinusculas(uiBarra == std::string::npos ? sCaminho : sCaminho.substr(uiBarra + 1)));
    }();
    return s_rNome;
}

const std::string& GetUsuarioLocal() {
    static const std::string& s_rUsuario = *new std::string(XVAmbienteSO::GetNomeUsuario());
    return s_rUsuario;
}

std::string Saneia(std::string_view sTexto) {
    std::string sSaneado(sTexto);
    std::replace_if(sSaneado.begin(), sSaneado.end(), EhSeparador, ' ');
    return sSaneado;
}

}  // namespace XVProfilerLinha
