#include "core/xvdatabase/XVMomento.h"

#include <algorithm>
#include <cstring>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVVisao.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr SAberturaArquivo k_aberturaProva{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaEscrita,
                                           ECriacaoArquivo::eSomenteExistente};

// After so many attempts in vain the files are opened anew: one of them may have been replaced by another.
constexpr int k_iTentativasPorAbertura = 16;
// How often a journal is looked at again while its word says that an operation is being written: in all, and
// while it is the same operation.
constexpr int k_iEsperas = 200;
constexpr int k_iEsperasDaMesma = 20;

thread_local CXVMomento* g_pMomentoAtual = nullptr;

bool EhAusente(const CXVErroArquivo& rErro) {
    return rErro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado ||
           rErro.GetCausa() == ECausaArquivo::eCaminhoInvalido;
}

}  // namespace

CXVMomento::CXVMomento(CXVVisao& rVisao, XVUInt64 uiChamada) : m_rVisao(rVisao), m_uiChamada(uiChamada) {}
CXVMomento::~CXVMomento() = default;

CXVMomento::CAtivo::CAtivo(CXVMomento* pMomento) : m_pAnterior(g_pMomentoAtual) {
    g_pMomentoAtual = pMomento;
}
CXVMomento::CAtivo::~CAtivo() {
    g_pMomentoAtual = m_pAnterior;
}
CXVMomento* CXVMomento::GetAtual() {
    return g_pMomentoAtual;
}

CXVErroArquivo CXVMomento::Inicia() {
    if (++m_iInicios % k_iTentativasPorAbertura == 0) {
        m_mapVistos.clear();
        m_pDiario.reset();
    }
    m_listaLidos.clear();
    std::erase_if(m_mapVistos, [](const auto& it) { return it.second.pArquivo == nullptr; });
    for (auto& it : m_mapVistos) it.second.bAreaLida = false;
    m_pSobreposta.reset();
    const CXVErroArquivo erro = LeMarca(&m_marca);
    return erro.Ok() && m_marca.uiSessao != 0 ? EscolheSobreposta() : erro;
}

// A journal that is too short for its words, or whose head does not hold, has no entries.
CXVErroArquivo CXVMomento::LeMarca(SMarcaDiario* pMarca) {
    *pMarca = {};
    if (m_pDiario == nullptr) {
        IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
        const CXVErroArquivo erro = rSistema.Abre(rSistema.Junta(m_rVisao.GetDiretorio(), k_pszNomeDiario),
                                                  k_aberturaConsulta, m_pDiario);
        if (EhAusente(erro)) return {};
        if (!erro.Ok()) return erro;
    }
    pMarca->bExiste = true;
    std::byte aInicio[k_uiOffsetSequencia + sizeof(XVUInt64)];
    const CXVErroArquivo erro = m_pDiario->Le(0, aInicio, sizeof(aInicio));
    if (erro.GetCausa() == ECausaArquivo::eFimDeArquivo) return {};
    if (!erro.Ok()) return erro;
    REG_XVDIARIO_CABECALHO reg;
    std::memcpy(&reg, aInicio, sizeof(reg));
    if (reg.uiAssinatura != k_uiAssinaturaDiario ||
        reg.uiSoma != XVSoma64(&reg, offsetof(REG_XVDIARIO_CABECALHO, uiSoma)))
        return {};
    pMarca->uiSessao = reg.uiSessao;
    std::memcpy(&pMarca->uiPalavra, aInicio + k_uiOffsetSequencia, sizeof(XVUInt64));
    return {};
}

// The writer denies writing to others as long as it lives.
bool CXVMomento::EscritorVive() const {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pProva;
    const CXVErroArquivo erro =
        rSistema.Abre(rSistema.Junta(m_rVisao.GetDiretorio(), k_pszNomeDiario), k_aberturaProva, pProva);
    return erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento;
}

CXVErroArquivo CXVMomento::EscolheSobreposta() {
    int iDaMesma = 0;
    for (int i = 0;; ++i) {
        if (m_marca.uiSessao == 0) return {};
        const bool bVivo = m_marca.uiSessao == m_uiSessaoViva || EscritorVive();
        if (!bVivo || m_marca.uiPalavra == k_uiPalavraConclusao) {
            m_pSobreposta = m_rVisao.Concluida(*m_pDiario, m_marca);
            return {};
        }
        m_uiSessaoViva = m_marca.uiSessao;
        if (m_marca.uiPalavra % 2 == 0) return {};
        if (i >= k_iEsperas || iDaMesma >= k_iEsperasDaMesma || m_rVisao.FoiEsperada(m_marca)) break;
        CXVVisao::Pausa(i);
        SMarcaDiario marca;
        if (const CXVErroArquivo erro = LeMarca(&marca); !erro.Ok()) return erro;
        iDaMesma = marca == m_marca ? iDaMesma + 1 : 0;
        m_marca = marca;
    }
    m_pSobreposta = m_rVisao.Anterior(*m_pDiario, m_marca);
    return {};
}

// Where no journal counts the operations, a writer that came and went shows in what it wrote.
bool CXVMomento::Confirma() {
    SMarcaDiario marca;
    bool bIgual = LeMarca(&marca).Ok() && marca == m_marca;
    if (m_marca.uiSessao == 0) {
        std::string sDados;
        for (auto it = m_listaLidos.begin(); bIgual && it != m_listaLidos.end(); ++it) {
            sDados.resize(it->uiTamanho);
            const SVisto& rVisto = m_mapVistos[it->sNome];
            bIgual = rVisto.pArquivo != nullptr &&
                     rVisto.pArquivo->Le(it->uiOffset, sDados.data(), sDados.size()).Ok() &&
                     XVSoma64(sDados.data(), sDados.size()) == it->uiSoma;
        }
        if (bIgual) bIgual = LeMarca(&marca).Ok() && marca == m_marca;
    }
    if (bIgual) m_iInicios = 0;
    return bIgual;
}

CXVErroArquivo CXVMomento::AbreVisto(const std::string& sNomeArquivo, SVisto** ppVisto) {
    const auto [it, bNovo] = m_mapVistos.try_emplace(sNomeArquivo);
    *ppVisto = &it->second;
    if (!bNovo) return {};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const std::string sPath = rSistema.Junta(m_rVisao.GetDiretorio(), sNomeArquivo);
    CXVErroArquivo erro = rSistema.Abre(sPath, k_aberturaConsulta, it->second.pArquivo);
    if (EhAusente(erro)) {  // or spelled differently
        std::string sNomeReal;
        erro = rSistema.BuscaNomeReal(sPath, sNomeReal);
        if (erro.Ok())
            erro = rSistema.Abre(rSistema.Junta(m_rVisao.GetDiretorio(), sNomeReal), k_aberturaConsulta,
                                 it->second.pArquivo);
        if (EhAusente(erro)) return {};
    }
    if (!erro.Ok()) m_mapVistos.erase(it);
    return erro;
}

// From the disk, with what is to be laid over it.
CXVErroArquivo CXVMomento::LeCru(const std::string& sNomeArquivo, SVisto& rVisto, XVUInt64 uiOffset,
                                 void* pDados, std::size_t uiTamanho) {
    std::size_t uiDoDisco = uiTamanho;
    XVUInt64 uiVisto = 0;
    const bool bSobreposta = m_pSobreposta != nullptr && m_pSobreposta->BuscaTamanho(sNomeArquivo, &uiVisto);
    if (bSobreposta) {
        XVUInt64 uiNoDisco = 0;
        if (rVisto.pArquivo != nullptr)
            if (const CXVErroArquivo erro = rVisto.pArquivo->GetTamanho(uiNoDisco); !erro.Ok()) return erro;
        uiDoDisco = static_cast<std::size_t>(
            std::min<XVUInt64>(uiTamanho, uiNoDisco > uiOffset ? uiNoDisco - uiOffset : 0));
        std::memset(static_cast<char*>(pDados) + uiDoDisco, 0, uiTamanho - uiDoDisco);
    }
    if (uiDoDisco > 0) {
        if (rVisto.pArquivo == nullptr) return {ECausaArquivo::eArquivoNaoEncontrado, 0};
        const CXVErroArquivo erro = rVisto.pArquivo->Le(uiOffset, pDados, uiDoDisco);
        if (!erro.Ok()) return erro;
        if (m_marca.uiSessao == 0)
            m_listaLidos.push_back({sNomeArquivo, uiOffset, uiDoDisco, XVSoma64(pDados, uiDoDisco)});
    }
    if (bSobreposta) m_pSobreposta->Sobrepoe(sNomeArquivo, uiOffset, pDados, uiTamanho);
    return {};
}

CXVErroArquivo CXVMomento::LeArea(const std::string& sNomeArquivo, SVisto& rVisto) {
    SAreaVista area;
    area.bExiste = rVisto.pArquivo != nullptr;
    if (m_pSobreposta != nullptr) m_pSobreposta->BuscaExistencia(sNomeArquivo, &area.bExiste);
    if (area.bExiste) {
        const bool bSobreposta =
            m_pSobreposta != nullptr && m_pSobreposta->BuscaTamanho(sNomeArquivo, &area.uiTamanho);
        if (!bSobreposta)
            if (const CXVErroArquivo erro = rVisto.pArquivo->GetTamanho(area.uiTamanho); !erro.Ok())
                return erro;
        if (!XVNomeArquivo::EhIsento(sNomeArquivo) && area.uiTamanho >= k_uiTamanhoCabecalho) {
            REG_XVCABECALHO reg;
            const CXVErroArquivo erro = LeCru(sNomeArquivo, rVisto, 0, &reg, sizeof(reg));
            // Who looks at the file as the system shows it asks for the header by itself.
            if (erro.GetCausa() == ECausaArquivo::eErroFisico &&
                m_rVisao.GetFim() == CXVVisao::EFimArquivo::eDoSistema)
                reg = {};
            else if (!erro.Ok())
                return erro;
            area.uiSoma = XVSoma64(&reg, sizeof(reg));
            if (XVCabecalho::AssinaturaConfere(reg.regA) && reg.regA.usVersao == k_usVersaoCabecalho) {
                area.uiSeek = k_uiTamanhoCabecalho;
                if (m_rVisao.GetFim() == CXVVisao::EFimArquivo::eDoCabecalho &&
                    !CXVFileBase::CabecalhoDesabilitadoNaMaquina() &&
                    reg.regB.uiTamanhoBloco == k_uiTamanhoBlocoB && XVCabecalho::CrcConfere(reg.regB) &&
                    reg.regB.uiTamanhoDados < area.uiTamanho - k_uiTamanhoCabecalho)
                    area.uiTamanho = k_uiTamanhoCabecalho + reg.regB.uiTamanhoDados;
            }
        }
    }
    rVisto.area = area;
    rVisto.bAreaLida = true;
    return {};
}

CXVErroArquivo CXVMomento::GetArea(const std::string& sNomeArquivo, SAreaVista* pArea) {
    *pArea = {};
    SVisto* pVisto = nullptr;
    CXVErroArquivo erro = AbreVisto(sNomeArquivo, &pVisto);
    if (erro.Ok() && !pVisto->bAreaLida) erro = LeArea(sNomeArquivo, *pVisto);
    if (erro.Ok()) *pArea = pVisto->area;
    return erro;
}

CXVErroArquivo CXVMomento::Le(const std::string& sNomeArquivo, XVUInt64 uiOffset, void* pDados,
                              std::size_t uiTamanho) {
    SAreaVista area;
    const CXVErroArquivo erro = GetArea(sNomeArquivo, &area);
    if (!erro.Ok()) return erro;
    if (!area.bExiste) return {ECausaArquivo::eArquivoNaoEncontrado, 0};
    if (uiOffset > area.uiTamanho || uiTamanho > area.uiTamanho - uiOffset)
        return {ECausaArquivo::eFimDeArquivo, 0};
    return LeCru(sNomeArquivo, m_mapVistos[sNomeArquivo], uiOffset, pDados, uiTamanho);
}
