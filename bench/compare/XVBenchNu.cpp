// The bare limit: the calls that no store of five files can leave out. Each recording writes the payload to
// the end of five files and the header of each; a status does so with the four that change; a reading reads
// the record and three texts at known places. The index stands in memory, with a table by key and system. A
// durable recording is one write of its size into a file whose length does not change, and one flush.
#include <array>
#include <filesystem>
#include <map>

#include "bench/compare/IXVBenchAdversario.h"
#include "bench/compare/XVBenchTabela.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr std::size_t k_uiCabecalho = 240;
constexpr std::size_t k_uiInicioBlocoB = 24;
constexpr std::size_t k_uiBytesComprimento = 4;  // before each text
constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                                      ECriacaoArquivo::eCriaSeAusente};

void Exige(const CXVErroArquivo& rErro, const char* pszO) {
    if (!rErro.Ok()) XVTermina(std::string(pszO) + ": cause " + std::to_string(int(rErro.GetCausa())));
}

// A file with a header that is written after every change.
class CArquivo {
  public:
    explicit CArquivo(const std::string& sCaminho) {
        Exige(XVPlataforma::SistemaArquivos().Abre(sCaminho, k_abertura, m_p), "Abre");
        Exige(m_p->GetTamanho(m_uiFim), "GetTamanho");
        m_uiFim = std::max<XVUInt64>(m_uiFim, k_uiCabecalho);
    }
    XVUInt64 Anexa(const void* pDados, std::size_t uiTamanho) {
        const XVUInt64 uiInicio = m_uiFim;
        m_uiFim += uiTamanho;
        Grava(uiInicio, pDados, uiTamanho);
        return uiInicio;
    }
    void Grava(XVUInt64 uiInicio, const void* pDados, std::size_t uiTamanho) {
        Exige(m_p->Grava(uiInicio, pDados, uiTamanho), "Grava");
        Exige(m_p->Grava(k_uiInicioBlocoB, m_aCabecalho.data(), m_aCabecalho.size()), "Grava");
    }
    void Le(XVUInt64 uiInicio, void* pDados, std::size_t uiTamanho) {
        Exige(m_p->Le(uiInicio, pDados, uiTamanho), "Le");
    }
    XVUInt64 Bytes() const { return m_uiFim - k_uiCabecalho; }

  private:
    std::unique_ptr<IXVArquivo> m_p;
    XVUInt64 m_uiFim = 0;
    std::array<XVByte, 216> m_aCabecalho{};
};

// Where durable recordings go, over and over.
class CDescarga {
  public:
    explicit CDescarga(const std::string& sCaminho) : m_aBytes(1U << 20U) {
        Exige(XVPlataforma::SistemaArquivos().Abre(sCaminho, k_abertura, m_p), "Abre");
        Exige(m_p->Grava(0, m_aBytes.data(), m_aBytes.size()), "Grava");
        Exige(m_p->Sincroniza(), "Sincroniza");
    }
    void Grava() {
        constexpr std::size_t k_uiEntrada = 5120;
        m_uiInicio = (m_uiInicio + k_uiEntrada) % (m_aBytes.size() - k_uiEntrada);
        Exige(m_p->Grava(m_uiInicio, m_aBytes.data(), k_uiEntrada), "Grava");
        Exige(m_p->Sincroniza(), "Sincroniza");
    }

  private:
    std::unique_ptr<IXVArquivo> m_p;
    std::vector<XVByte> m_aBytes;
    XVUInt64 m_uiInicio = 0;
};

enum EArquivoDia { eRegistros, eJSON, eMensagem, eRetorno, eQuantos };

struct SDia {
    explicit SDia(const std::string& sInicio)
        : aArquivos{CArquivo(sInicio + "r"), CArquivo(sInicio + "j"), CArquivo(sInicio + "m"),
                    CArquivo(sInicio + "t")} {}
    std::array<CArquivo, eQuantos> aArquivos;
};

class CXVNuBench final : public IXVBenchAdversario {
  public:
    explicit CXVNuBench(const SAberturaBench& rAbertura);

    void Grava(const SIntegracaoBench& rIntegracao) override;
    void GravaStatus(const SStatusBench& rStatus) override;
    SLidaBench Le(REG_XVDMC regDmc) override;
    std::span<const REG_XVDMC> Busca(const SFiltroBench& rFiltro) override;
    XVUInt64 BytesEmDisco() override;

  private:
    CArquivo& Arquivo(REG_XVDMC regDmc, EArquivoDia eArquivo);
    XVUInt AnexaTexto(REG_XVDMC regDmc, EArquivoDia eArquivo, std::string_view sTexto);
    std::string_view LeTexto(REG_XVDMC regDmc, EArquivoDia eArquivo, XVUInt ulInicio, std::size_t uiTamanho);
    void MontaTabela(std::size_t uiEntradas);
    XVUInt Posicao(REG_XVDMC regDmc) const;
    void CarregaTipos();
    void AgrupaPorDia();
    XVUInt64 InicioRegistro(REG_XVDMC regDmc) const {
        return k_uiCabecalho + (regDmc.GetPonteiro() - 1) * sizeof(REG_CR_INTEGRACAO_MIDDLEWARE_V2);
    }

    std::string m_sPasta;
    std::unique_ptr<CDescarga> m_pDescarga;  // of a durable one
    CArquivo m_arquivoIndex;
    std::map<XVUInt, std::unique_ptr<SDia>> m_mapDias;
    XVUInt m_ulUltimoDia = 0;
    SDia* m_pUltimo = nullptr;
    std::vector<REG_CR_INDEX_INTEGRACAO_V1> m_listaIndex;
    std::vector<XVUInt> m_listaTipos;  // of the first so many of the index
    CXVTabelaBench m_tabela;
    std::array<std::string, eQuantos> m_asTextos;  // with their lengths before them
    std::vector<REG_XVDMC> m_listaAchadas;
    std::vector<REG_XVDMC> m_listaTroca;  // while they are being sorted
};

CXVNuBench::CXVNuBench(const SAberturaBench& rAbertura)
    : m_sPasta(rAbertura.sPasta), m_arquivoIndex(m_sPasta + "/index") {
    m_listaIndex.resize(m_arquivoIndex.Bytes() / sizeof(REG_CR_INDEX_INTEGRACAO_V1));
    if (!m_listaIndex.empty()) m_arquivoIndex.Le(k_uiCabecalho, m_listaIndex.data(), m_arquivoIndex.Bytes());
    MontaTabela(std::max<std::size_t>(m_listaIndex.size(), 1024));
    if (rAbertura.eDuracao == EDuracaoBench::eDispositivo)
        m_pDescarga = std::make_unique<CDescarga>(m_sPasta + "/descarga");
}

void CXVNuBench::MontaTabela(std::size_t uiEntradas) {
    m_tabela.Reserva(uiEntradas);
    for (std::size_t i = 0; i < m_listaIndex.size(); ++i)
        m_tabela.Inclui(m_listaIndex[i].uiChaveIntegracaoSistemaTerceiro, m_listaIndex[i].eSistemaIntegracao,
                        static_cast<XVUInt>(i + 1));
}

CArquivo& CXVNuBench::Arquivo(REG_XVDMC regDmc, EArquivoDia eArquivo) {
    const XVUInt ulDia = regDmc.GetDma().GetValor();
    if (m_pUltimo == nullptr || ulDia != m_ulUltimoDia) {
        std::unique_ptr<SDia>& rDia = m_mapDias[ulDia];
        if (rDia == nullptr) rDia = std::make_unique<SDia>(m_sPasta + "/" + std::to_string(ulDia));
        m_pUltimo = rDia.get();
        m_ulUltimoDia = ulDia;
    }
    return m_pUltimo->aArquivos[eArquivo];
}

XVUInt CXVNuBench::AnexaTexto(REG_XVDMC regDmc, EArquivoDia eArquivo, std::string_view sTexto) {
    const auto ulTamanho = static_cast<XVUInt>(sTexto.size());
    std::string& rTexto = m_asTextos[eArquivo];
    rTexto.assign(reinterpret_cast<const char*>(&ulTamanho), k_uiBytesComprimento);
    rTexto += sTexto;
    return static_cast<XVUInt>(Arquivo(regDmc, eArquivo).Anexa(rTexto.data(), rTexto.size()));
}

void CXVNuBench::Grava(const SIntegracaoBench& rIntegracao) {
    if (m_pDescarga != nullptr) return m_pDescarga->Grava();
    const REG_XVDMC regDmc = rIntegracao.regDmc;
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg{};
    reg.eTipoIntegracao = rIntegracao.eTipo;
    reg.ulPonteiroJSONRegistro = AnexaTexto(regDmc, eJSON, rIntegracao.sJSON);
    reg.ulPonteiroMensagemRetorno = AnexaTexto(regDmc, eMensagem, rIntegracao.sMensagem);
    reg.ulPonteiroJSONRetornoIntegracao = AnexaTexto(regDmc, eRetorno, rIntegracao.sRetorno);
    Arquivo(regDmc, eRegistros).Anexa(&reg, sizeof(reg));
    m_listaIndex.push_back({rIntegracao.uiChave, regDmc, rIntegracao.eSistema, rIntegracao.eStatus});
    m_arquivoIndex.Anexa(&m_listaIndex.back(), sizeof(REG_CR_INDEX_INTEGRACAO_V1));
    if (m_listaIndex.size() * 2 > m_tabela.Lugares())
        MontaTabela(m_listaIndex.size() * 2);
    else
        m_tabela.Inclui(rIntegracao.uiChave, rIntegracao.eSistema, static_cast<XVUInt>(m_listaIndex.size()));
}

void CXVNuBench::GravaStatus(const SStatusBench& rStatus) {
    const XVUInt ulPosicao = m_tabela.Procura(rStatus.uiChave, rStatus.eSistema, m_listaIndex);
    REG_CR_INDEX_INTEGRACAO_V1& regIndex = m_listaIndex[ulPosicao - 1];
    const REG_XVDMC regDmc = regIndex.regDmcIntegracao;
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
    Arquivo(regDmc, eRegistros).Le(InicioRegistro(regDmc), &reg, sizeof(reg));
    reg.ulPonteiroJSONRetornoIntegracao = AnexaTexto(regDmc, eRetorno, rStatus.sRetorno);
    reg.ulPonteiroMensagemRetorno = AnexaTexto(regDmc, eMensagem, rStatus.sMensagem);
    Arquivo(regDmc, eRegistros).Grava(InicioRegistro(regDmc), &reg, sizeof(reg));
    regIndex.eStatusIntegracao = rStatus.eStatus;
    m_arquivoIndex.Grava(k_uiCabecalho + (ulPosicao - 1) * sizeof(regIndex), &regIndex, sizeof(regIndex));
}

std::string_view CXVNuBench::LeTexto(REG_XVDMC regDmc, EArquivoDia eArquivo, XVUInt ulInicio,
                                     std::size_t uiTamanho) {
    std::string& rTexto = m_asTextos[eArquivo];
    rTexto.resize(k_uiBytesComprimento + uiTamanho);
    Arquivo(regDmc, eArquivo).Le(ulInicio, rTexto.data(), rTexto.size());
    return std::string_view(rTexto).substr(k_uiBytesComprimento);
}

// The index is ascending here: readings are compared over stores that were recorded day by day.
XVUInt CXVNuBench::Posicao(REG_XVDMC regDmc) const {
    const auto it = std::lower_bound(m_listaIndex.begin(), m_listaIndex.end(), regDmc.uiValor,
                                     [](const REG_CR_INDEX_INTEGRACAO_V1& reg, XVUInt64 uiValor) {
                                         return reg.regDmcIntegracao.uiValor < uiValor;
                                     });
    return static_cast<XVUInt>(it - m_listaIndex.begin()) + 1;
}

SLidaBench CXVNuBench::Le(REG_XVDMC regDmc) {
    const REG_CR_INDEX_INTEGRACAO_V1& regIndex = m_listaIndex[Posicao(regDmc) - 1];
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
    Arquivo(regDmc, eRegistros).Le(InicioRegistro(regDmc), &reg, sizeof(reg));
    return {regIndex.uiChaveIntegracaoSistemaTerceiro,
            regIndex.eSistemaIntegracao,
            regIndex.eStatusIntegracao,
            reg.eTipoIntegracao,
            LeTexto(regDmc, eJSON, reg.ulPonteiroJSONRegistro, k_uiBytesJSON),
            LeTexto(regDmc, eMensagem, reg.ulPonteiroMensagemRetorno, k_uiBytesMensagem),
            LeTexto(regDmc, eRetorno, reg.ulPonteiroJSONRetornoIntegracao, k_uiBytesRetorno)};
}

// Of all that the index holds. The index is ascending, and a day is read by one call.
void CXVNuBench::CarregaTipos() {
    std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2> listaDia;
    while (m_listaTipos.size() < m_listaIndex.size()) {
        const REG_XVDMC regDmc = m_listaIndex[m_listaTipos.size()].regDmcIntegracao;
        CArquivo& rArquivo = Arquivo(regDmc, eRegistros);
        listaDia.resize(rArquivo.Bytes() / sizeof(listaDia.front()));
        rArquivo.Le(k_uiCabecalho, listaDia.data(), rArquivo.Bytes());
        for (const auto& reg : listaDia) m_listaTipos.push_back(reg.eTipoIntegracao);
    }
}

// A radix sort by date, stable, so that the positions of a day keep their order.
void CXVNuBench::AgrupaPorDia() {
    constexpr unsigned k_uiBits = 9;
    constexpr unsigned k_uiInicioData = 46;
    m_listaTroca.resize(m_listaAchadas.size());
    for (unsigned uiPasso = 0; uiPasso < 2; ++uiPasso) {
        const unsigned uiDesloca = k_uiInicioData + uiPasso * k_uiBits;
        std::array<std::size_t, (1U << k_uiBits) + 1> auiInicios{};
        const auto digito = [uiDesloca](REG_XVDMC reg) {
            return static_cast<std::size_t>(reg.uiValor >> uiDesloca) & ((1U << k_uiBits) - 1);
        };
        for (const REG_XVDMC reg : m_listaAchadas) ++auiInicios[digito(reg) + 1];
        for (std::size_t i = 1; i < auiInicios.size(); ++i) auiInicios[i] += auiInicios[i - 1];
        for (const REG_XVDMC reg : m_listaAchadas) m_listaTroca[auiInicios[digito(reg)]++] = reg;
        m_listaAchadas.swap(m_listaTroca);
    }
}

std::span<const REG_XVDMC> CXVNuBench::Busca(const SFiltroBench& rFiltro) {
    m_listaAchadas.clear();
    if (rFiltro.EhExato()) {
        const XVUInt ul =
            m_tabela.Procura(rFiltro.uiChaveInicial, rFiltro.listaSistemas.front(), m_listaIndex);
        m_listaAchadas.push_back(m_listaIndex[ul - 1].regDmcIntegracao);
        return m_listaAchadas;
    }
    if (!rFiltro.listaTipos.empty()) CarregaTipos();
    m_listaAchadas.reserve(m_listaIndex.size());
    const bool bTudo = rFiltro.uiChaveInicial == 0 && rFiltro.listaStatus.empty();
    bool bEmOrdem = true;
    XVUInt64 uiAnterior = 0;
    for (std::size_t i = 0; i < m_listaIndex.size(); ++i) {
        const REG_CR_INDEX_INTEGRACAO_V1& reg = m_listaIndex[i];
        const REG_XVDMC regDmc = reg.regDmcIntegracao;
        if (!bTudo && !rFiltro.Aceita(regDmc, reg.uiChaveIntegracaoSistemaTerceiro, reg.eSistemaIntegracao,
                                      reg.eStatusIntegracao, i < m_listaTipos.size() ? m_listaTipos[i] : 0))
            continue;
        bEmOrdem = bEmOrdem && regDmc.uiValor >= uiAnterior;
        uiAnterior = regDmc.uiValor;
        m_listaAchadas.push_back(regDmc);
    }
    if (!bEmOrdem) AgrupaPorDia();
    return m_listaAchadas;
}

XVUInt64 CXVNuBench::BytesEmDisco() {
    XVUInt64 uiBytes = 0;
    for (const auto& rEntrada : std::filesystem::directory_iterator(m_sPasta))
        uiBytes += rEntrada.file_size();
    return uiBytes;
}

}  // namespace

std::unique_ptr<IXVBenchAdversario> XVAbreNu(const SAberturaBench& rAbertura) {
    return std::make_unique<CXVNuBench>(rAbertura);
}
