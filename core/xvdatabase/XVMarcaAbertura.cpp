#include "core/xvdatabase/XVMarcaAbertura.h"

#include <algorithm>
#include <vector>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVCodigosArquivo.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVPlataforma.h"
#include "support/XVArquivoRecusado.h"
#include "support/XVCodigos.h"
#include "support/XVProfiler.h"

namespace {

constexpr const char* k_pszNomeMarca = "XVDATABASE_ABERTA.srk";
constexpr int k_iTentativas = 500;
constexpr XVUInt k_ulEsperaTentativa = 10;  // ms
constexpr XVUInt64 k_uiPedaco = 1U << 20;
constexpr SAberturaArquivo k_aberturaExclusiva{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo, ECriacaoArquivo::eCriaSeAusente};
constexpr SAberturaArquivo k_aberturaExistente{EAcessoArquivo::eLeituraEscrita,
                                               ECompartilhamentoArquivo::eNegaEscrita,
                                               ECriacaoArquivo::eSomenteExistente};

// The length that a valid header gives its file; 0: no header, or one that does not hold.
XVUInt64 TamanhoPeloCabecalho(IXVArquivo& rArquivo, XVUInt64 uiTamanho) {
    REG_XVCABECALHO reg;
    if (uiTamanho < sizeof(reg) || !rArquivo.Le(0, &reg, sizeof(reg)).Ok()) return 0;
    if (!XVCabecalho::AssinaturaConfere(reg.regA) || reg.regA.usVersao != k_usVersaoCabecalho ||
        reg.regB.uiTamanhoBloco != k_uiTamanhoBlocoB || !XVCabecalho::CrcConfere(reg.regB))
        return 0;
    if (reg.regB.uiTamanhoDados > uiTamanho - sizeof(reg)) return 0;  // cut short: nothing to undo
    return k_uiTamanhoCabecalho + reg.regB.uiTamanhoDados;
}

}  // namespace

HRESULT CXVMarcaAbertura::AbreArquivoMarca(const IXVDF_Profiler* pDono, const std::string& sPath,
                                           std::unique_ptr<IXVArquivo>& pArquivo) {
    CXVErroArquivo erro;
    for (int i = 1; i <= k_iTentativas; ++i) {
        erro = XVPlataforma::SistemaArquivos().Abre(sPath, k_aberturaExclusiva, pArquivo);
        if (erro.GetCausa() != ECausaArquivo::eViolacaoCompartilhamento) break;
        if (i < k_iTentativas) XVPlataforma::Relogio().Dorme(k_ulEsperaTentativa);
    }
    if (!erro.Ok())
        XV_CHECK_TEXTO_DONO(
            pDono, XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, sPath, pDono),
            "AbreArquivoMarca(sPath)");
    return S_OK;
}

HRESULT CXVMarcaAbertura::Abre(const IXVDF_Profiler* pDono, const std::string& sDiretorio) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    m_sPath = rSistema.Junta(sDiretorio, k_pszNomeMarca);
    m_bPendente = false;
    XV_CHECK_DONO(pDono, AbreArquivoMarca(pDono, m_sPath, m_pArquivo));
    // Asked of the file in hand: while this opening waited, its holder may have closed cleanly or been
    // killed.
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = m_pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho == 0) erro = m_pArquivo->Grava(0, "1", 1);
    if (!erro.Ok()) {
        Fecha(false);
        XV_CHECK_TEXTO_DONO(pDono, XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, "MarcaAberta(m_sPath)");
    }
    if (uiTamanho == 0) return S_OK;
    const HRESULT hr = DesfazGravacoesInterrompidas(pDono, sDiretorio);
    if (FAILED(hr)) Fecha(false);
    XV_CHECK_TEXTO_DONO(pDono, hr, "DesfazGravacoesInterrompidas(pDono, sDiretorio)");
    return S_OK;
}

void CXVMarcaAbertura::Fecha(bool bFechadaLimpa) {
    if (m_pArquivo == nullptr) return;
    m_pArquivo.reset();
    if (bFechadaLimpa && !m_bPendente) XVPlataforma::SistemaArquivos().Apaga(m_sPath).Ignora();
}

HRESULT CXVMarcaAbertura::DesfazGravacoesInterrompidas(const IXVDF_Profiler* pDono,
                                                       const std::string& sDiretorio) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::vector<std::string> listaNomes;
    CXVErroArquivo erro = rSistema.Lista(sDiretorio, "*.dat", listaNomes);
    for (auto it = listaNomes.begin(); erro.Ok() && it != listaNomes.end(); ++it)
        if (!XVNomeArquivo::EhIsento(*it)) erro = DesfazNoArquivo(pDono, rSistema.Junta(sDiretorio, *it));
    if (!erro.Ok())
        XV_CHECK_TEXTO_DONO(pDono, XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr,
                            "DesfazNoArquivo(pDono, sPath)");
    return S_OK;
}

// A file that cannot be opened for writing now is left for its own opening to refuse; the mark then stays.
CXVErroArquivo CXVMarcaAbertura::DesfazNoArquivo(const IXVDF_Profiler* pDono, const std::string& sPath) {
    std::unique_ptr<IXVArquivo> pArquivo;
    const CXVErroArquivo erroAbre =
        XVPlataforma::SistemaArquivos().Abre(sPath, k_aberturaExistente, pArquivo);
    if (!erroAbre.Ok()) {
        m_bPendente |= erroAbre.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado;
        return {};
    }
    XVUInt64 uiTamanho = 0;
    if (const CXVErroArquivo erro = pArquivo->GetTamanho(uiTamanho); !erro.Ok()) return erro;
    const XVUInt64 uiTamanhoCerto = TamanhoPeloCabecalho(*pArquivo, uiTamanho);
    if (uiTamanhoCerto == 0 || uiTamanhoCerto >= uiTamanho) return {};
    CXVErroArquivo erro = GuardaSobra(*pArquivo, sPath + ".srk", uiTamanhoCerto, uiTamanho);
    if (erro.Ok()) erro = pArquivo->SetTamanho(uiTamanhoCerto);
    if (erro.Ok())
        XVProfiler::RecordError(pDono, "CXVMarcaAbertura::Abre", XVNomeFonte(), __LINE__,
                                "Gravação interrompida desfeita: %s\tBytes = %llu", sPath.c_str(),
                                static_cast<unsigned long long>(uiTamanho - uiTamanhoCerto));
    return erro;
}

CXVErroArquivo CXVMarcaAbertura::GuardaSobra(IXVArquivo& rArquivo, const std::string& sPathSobra,
                                             XVUInt64 uiInicio, XVUInt64 uiFim) {
    std::unique_ptr<IXVArquivo> pSobra;
    XVUInt64 uiDestino = 0;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(sPathSobra, k_aberturaExclusiva, pSobra);
    if (erro.Ok()) erro = pSobra->GetTamanho(uiDestino);
    std::vector<char> aPedaco;
    while (erro.Ok() && uiInicio < uiFim) {
        aPedaco.resize(static_cast<std::size_t>(std::min(k_uiPedaco, uiFim - uiInicio)));
        erro = rArquivo.Le(uiInicio, aPedaco.data(), aPedaco.size());
        if (erro.Ok()) erro = pSobra->Grava(uiDestino, aPedaco.data(), aPedaco.size());
        uiInicio += aPedaco.size();
        uiDestino += aPedaco.size();
    }
    return erro.Ok() ? pSobra->Sincroniza() : erro;
}
