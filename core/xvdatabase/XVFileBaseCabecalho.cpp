// The header operations of CXVFileBase.
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVImagemArquivo.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

// Read once per process.
bool CXVFileBase::CabecalhoDesabilitadoNaMaquina() {
    static const bool bDesabilitado = XVPlataforma::Registry()
                                          .LeNumero(k_sChaveRegistrySuite, "XVDataBase_DesabilitaCabecalho")
                                          .value_or(0) != 0;
    return bDesabilitado;
}

void CXVFileBase::LimpaCabecalho() {
    m_bCabecalhoProcurado = false;
    m_bCabecalhoPresente = false;
    m_bCabecalhoValidado = false;
    std::memset(&m_regCabecalho, 0, sizeof(m_regCabecalho));
}

bool CXVFileBase::GerenciarCabecalho() const {
    return m_eModulo != k_eModuloSemCabecalho && !m_pDataBase->EhCabecalhoDesabilitado() &&
           !XVNomeArquivo::EhIsento(m_sNomeArquivo) && !CabecalhoDesabilitadoNaMaquina();
}

XVUInt64 CXVFileBase::GetSeekCabecalho() {
    return PossuiCabecalho() && m_regCabecalho.regA.usVersao == k_usVersaoCabecalho ? k_uiTamanhoCabecalho
                                                                                    : 0;
}

void CXVFileBase::ProximoCabecalho(REG_XVCABECALHO* pReg, XVUInt64 uiTamanhoDados) {
    if (GetSeekCabecalho() == 0) {
        XVCabecalho::Gera(*pReg, m_sNomeArquivo, *this, k_usVersaoArquivoInicial, uiTamanhoDados);
        return;
    }
    *pReg = m_regCabecalho;
    XVCabecalho::Atualiza(pReg->regB, *this, uiTamanhoDados);
}

bool CXVFileBase::PossuiCabecalho() {
    return SUCCEEDED(ProcuraCabecalho()) && m_bCabecalhoPresente;
}

// Finds out once whether the open file has a header. A read that fails decides nothing: whoever asks next
// reads again.
HRESULT CXVFileBase::ProcuraCabecalho() {
    if (m_bCabecalhoProcurado) return S_OK;
    if (!XVNomeArquivo::EhIsento(m_sNomeArquivo) && ExisteArquivo() &&
        m_uiTamanhoArquivo >= k_uiTamanhoBlocoA) {
        if (const CXVErroArquivo erro = LeDados(0, &m_regCabecalho.regA, sizeof(m_regCabecalho.regA));
            const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK(CatchInicializacao(pEx));
        m_bCabecalhoPresente = XVCabecalho::AssinaturaConfere(m_regCabecalho.regA);
    }
    m_bCabecalhoProcurado = true;
    return S_OK;
}

HRESULT CXVFileBase::GetAreaDados(XVUInt64* puiSeek, XVUInt64* puiTamanho) {
    XV_CHECK(ProcuraCabecalho());
    if (!m_bCabecalhoPresente && ExisteArquivo()) XV_CHECK(ValidaAusenciaCabecalho());
    if (m_bCabecalhoPresente && m_regCabecalho.regA.usVersao != k_usVersaoCabecalho)
        XV_FALHA(E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA);
    *puiSeek = GetSeekCabecalho();
    if (m_uiTamanhoArquivo < *puiSeek) XV_FALHA(E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE);
    *puiTamanho = m_uiTamanhoArquivo - *puiSeek;
    return S_OK;
}

HRESULT CXVFileBase::GerenciaCabecalho() {
    if (!GerenciarCabecalho() || !ExisteArquivo()) return S_OK;
    XV_CHECK(ProcuraCabecalho());
    if (m_bCabecalhoPresente) {
        XV_CHECK(ValidaCabecalho());
        m_bCabecalhoValidado = true;
        return S_OK;
    }
    XV_CHECK(ValidaAusenciaCabecalho());
    XV_CHECK(ValidaConteudoSemCabecalho());
    const HRESULT hr = XV_REGISTRA(CriaCabecalho());
    // A full disk can be read all the same: the file stays without header until the next opening.
    if (hr == eDiskFull && ExisteArquivo() && m_eModoAbertura == eModoLeituraGravacao) return S_OK;
    return hr;
}

HRESULT CXVFileBase::ConfereCabecalho() {
    if (!ExisteArquivo() || m_bCabecalhoValidado || CabecalhoDesabilitadoNaMaquina()) return S_OK;
    XV_CHECK(Recusa(ProcuraCabecalho()));
    if (m_bCabecalhoPresente) {
        XV_CHECK(Recusa(ValidaCabecalho()));
        return S_OK;
    }
    XV_CHECK(Recusa(ValidaAusenciaCabecalho()));
    return S_OK;
}

HRESULT CXVFileBase::ValidaCabecalho() {
    if (const CXVErroArquivo erro = LeDados(0, &m_regCabecalho.regA, sizeof(m_regCabecalho.regA));
        const CXVErroArquivo* pEx = erro.GetFalha())
        XV_CHECK(CatchInicializacao(pEx));
    if (m_regCabecalho.regA.usVersao != k_usVersaoCabecalho)
        XV_FALHA(E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA);
    XV_CHECK(ValidaCabecalhoV01());
    return S_OK;
}

HRESULT CXVFileBase::ValidaCabecalhoV01() {
    REG_XVCABECALHO_B& regB = m_regCabecalho.regB;
    if (m_uiTamanhoArquivo < k_uiTamanhoCabecalho) XV_FALHA(E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE);
    if (const CXVErroArquivo erro = LeDados(k_uiTamanhoBlocoA, &regB, sizeof(regB));
        const CXVErroArquivo* pEx = erro.GetFalha())
        XV_CHECK(CatchInicializacao(pEx));
    XV_CHECK(XVCabecalho::ValidaBlocoB(regB, m_sNomeArquivo, m_uiTamanhoArquivo));
    return S_OK;
}

// A file may hold the remains of a header that was cut or overwritten. Nobody can tell where the payload of
// such a file begins, and a new header in front would turn the remains into records.
HRESULT CXVFileBase::ValidaAusenciaCabecalho() {
    if (XVNomeArquivo::EhIsento(m_sNomeArquivo)) return S_OK;
    std::array<XVByte, k_uiTamanhoCabecalho> aInicio;
    const auto uiTamanho = static_cast<std::size_t>(std::min<XVUInt64>(m_uiTamanhoArquivo, aInicio.size()));
    if (uiTamanho == 0) return S_OK;
    if (const CXVErroArquivo erro = LeDados(0, aInicio.data(), uiTamanho);
        const CXVErroArquivo* pEx = erro.GetFalha())
        XV_CHECK(CatchInicializacao(pEx));
    if (XVCabecalho::EhReconhecivel({aInicio.data(), uiTamanho}, m_sNomeArquivo))
        XV_FALHA(E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    return S_OK;
}

// A header vouches from now on for what it is put in front of, so the content has to deserve it.
HRESULT CXVFileBase::ValidaConteudoSemCabecalho() {
    if (m_uiTamanhoArquivo == 0) return S_OK;
    bool bIntegro = false;
    if (const CXVErroArquivo erro = ConfereConteudo(m_uiTamanhoArquivo, &bIntegro);
        const CXVErroArquivo* pEx = erro.GetFalha())
        XV_CHECK(CatchInicializacao(pEx));
    if (!bIntegro) XV_FALHA(E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    return S_OK;
}

void CXVFileBase::GeraDadosCabecalho() {
    XVCabecalho::Gera(m_regCabecalho, m_sNomeArquivo, *this, k_usVersaoArquivoInicial, m_uiTamanhoArquivo);
    m_bCabecalhoProcurado = true;
    m_bCabecalhoPresente = true;
}

HRESULT CXVFileBase::CriaCabecalho() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    if (m_bCriandoCabecalho) XV_FALHA(E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    GeraDadosCabecalho();
    if (m_uiTamanhoArquivo > 0) {
        struct SCriando {
            bool& rbCriando;
            ~SCriando() { rbCriando = false; }
        };
        const SCriando criando{m_bCriandoCabecalho = true};
        const HRESULT hr = CriaCabecalhoPorCopia();
        if (FAILED(hr) && !m_bCabecalhoValidado) LimpaCabecalho();
        return hr;
    }
    const HRESULT hr = XV_REGISTRA(GravaCabecalhoNovo());
    if (FAILED(hr)) {
        LimpaCabecalho();
        return hr;
    }
    m_bCabecalhoValidado = true;
    return S_OK;
}

// Header and old content go to a ".cab" copy, which then replaces the file.
HRESULT CXVFileBase::CriaCabecalhoPorCopia() {
    const XVUInt eModoAbertura = m_eModoAbertura;
    const std::string sNomeCab = XVNomeArquivo::TrocaExtensao(m_sNomeArquivo, "cab");
    const std::string sPathCab = XVNomeArquivo::TrocaExtensao(m_sPathArquivo, "cab");
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathCab, &bExiste));
    if (bExiste) XV_CHECK(XVArquivoRecusado::Anota(E_XVCR_ARQUIVO_CAB_ENCONTRADO, sPathCab, this));

    CXVCopiaProtegida copia(m_pDataBase->GetDiario());
    XV_CHECK(copia.Inicia(this, sNomeCab));
    CXVImagemArquivo xvFileDestino(m_eModulo, sNomeCab);
    XV_CHECK(xvFileDestino.Inicializa(this));
    XV_CHECK(xvFileDestino.AbreArquivo());
    XV_CHECK(xvFileDestino.Grava(&m_regCabecalho, sizeof(m_regCabecalho)));
    constexpr XVUInt64 k_uiPedaco = 1U << 20;
    const XVUInt64 uiTamanho = m_uiTamanhoArquivo;
    std::vector<char> aPedaco;
    for (XVUInt64 uiOffset = 0; uiOffset < uiTamanho; uiOffset += aPedaco.size()) {
        aPedaco.resize(static_cast<std::size_t>(std::min(k_uiPedaco, uiTamanho - uiOffset)));
        if (const CXVErroArquivo erro = LeDados(uiOffset, aPedaco.data(), aPedaco.size());
            const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK(CatchGravacao(pEx));
        XV_CHECK(xvFileDestino.Grava(aPedaco.data(), aPedaco.size()));
    }
    XV_CHECK(xvFileDestino.Conclui());
    FechaArquivo();
    XV_CHECK(CXVDataBaseUtil::RenomeiaArquivoCAB(this, m_eModulo, m_sNomeArquivo));
    xvFileDestino.Libera();
    XV_CHECK(AbreArquivo(eModoAbertura));
    return S_OK;
}

HRESULT CXVFileBase::AtualizaCabecalho(const REG_XVCABECALHO_B& regB) {
    const CXVErroArquivo erro = m_pJanelaCabecalho != nullptr
                                    ? m_pJanelaCabecalho->Grava(k_uiTamanhoBlocoA, &regB, sizeof(regB))
                                    : m_pArquivo->Grava(k_uiTamanhoBlocoA, &regB, sizeof(regB));
    if (const CXVErroArquivo* pEx = erro.GetFalha()) XV_CHECK(CatchGravacao(pEx));
    m_regCabecalho.regB = regB;
    return S_OK;
}

// Where the journal explains a header that a death left half written, and nothing is flushed with each
// operation, headers that are written often are written without a call. Only behind a whole page of content:
// a shorter file may live in its directory entry and need a first block on the device when it is stored to.
// Opening a window costs as much as some ten headers, and memory, so it belongs to the preparing.
void CXVFileBase::AbreJanelaCabecalho() {
    constexpr XVUInt64 k_uiPagina = 4096;
    constexpr XVUInt k_ulCabecalhosAntes = 16;
    if (m_pJanelaCabecalho != nullptr || ++m_ulCabecalhosPreparados < k_ulCabecalhosAntes ||
        m_uiTamanhoArquivo < k_uiPagina)
        return;
    m_ulCabecalhosPreparados = 0;
    const CXVDiario* pDiario = m_pDataBase->GetDiario();
    if (pDiario == nullptr || pDiario->EhDuravel()) return;
    // Without a window the calls go on, and it is tried again after as many headers.
    m_pArquivo->AbreJanela(k_uiTamanhoCabecalho, m_pJanelaCabecalho).Ignora();
}

void CXVFileBase::FechaJanelaCabecalho() {
    m_pJanelaCabecalho.reset();
    m_ulCabecalhosPreparados = 0;
}
