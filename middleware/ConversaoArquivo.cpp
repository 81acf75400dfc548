#include "middleware/ConversaoArquivo.h"

#include <algorithm>
#include <vector>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVFileBase.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVCrc64.h"

namespace {

HRESULT Codigo(const CXVErroArquivo& rErro, const std::string& sPath, const IXVDF_Profiler* pDono) {
    if (rErro.Ok()) return S_OK;
    return XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(rErro.GetCausa()).hr, sPath, pDono);
}

// A file with a signature and no room for the whole header has no payload; the conversion refuses it by its
// header.
CXVErroArquivo DescreveAberto(IXVArquivo& rArquivo, std::string_view sNome, SArquivoConversao* pArquivo) {
    XVUInt64 uiTamanho = 0;
    if (const CXVErroArquivo erro = rArquivo.GetTamanho(uiTamanho); !erro.Ok()) return erro;
    pArquivo->uiTamanhoDados = uiTamanho;
    REG_XVCABECALHO reg;
    if (uiTamanho < sizeof(reg)) return {};
    if (const CXVErroArquivo erro = rArquivo.Le(0, &reg, sizeof(reg)); !erro.Ok()) return erro;
    if (!XVCabecalho::AssinaturaConfere(reg.regA)) return {};
    pArquivo->uiSeek = k_uiTamanhoCabecalho;
    pArquivo->uiTamanhoDados = uiTamanho - k_uiTamanhoCabecalho;
    if (CXVFileBase::CabecalhoDesabilitadoNaMaquina()) return {};
    if (XVCabecalho::CrcConfere(reg.regB)) pArquivo->usCarimbo = reg.regB.usVersaoArquivo;
    pArquivo->bIntegro = XVCabecalho::EhIntegro(reg, sNome, uiTamanho);
    return {};
}

// CRC of the bytes from uiInicio up to uiFim.
CXVErroArquivo CrcDoTrecho(IXVArquivo& rArquivo, XVUInt64 uiInicio, XVUInt64 uiFim, XVUInt64* puiCrc) {
    constexpr XVUInt64 k_uiPedaco = 1U << 20;
    std::vector<char> aPedaco;
    for (XVUInt64 uiOffset = uiInicio; uiOffset < uiFim; uiOffset += aPedaco.size()) {
        aPedaco.resize(static_cast<std::size_t>(std::min(k_uiPedaco, uiFim - uiOffset)));
        if (const CXVErroArquivo erro = rArquivo.Le(uiOffset, aPedaco.data(), aPedaco.size()); !erro.Ok())
            return erro;
        *puiCrc = XVCrc64(aPedaco.data(), aPedaco.size(), *puiCrc);
    }
    return {};
}

CXVErroArquivo SomaAberto(IXVArquivo& rArquivo, SSomaArquivo* pSoma) {
    if (const CXVErroArquivo erro = rArquivo.GetTamanho(pSoma->uiTamanho); !erro.Ok()) return erro;
    constexpr XVUInt64 k_uiOffsetCrc = k_uiTamanhoBlocoA + offsetof(REG_XVCABECALHO_B, uiCrc);
    const XVUInt64 uiDivisa = std::min(k_uiOffsetCrc, pSoma->uiTamanho);
    if (const CXVErroArquivo erro = CrcDoTrecho(rArquivo, 0, uiDivisa, &pSoma->uiCrcInicio); !erro.Ok())
        return erro;
    return CrcDoTrecho(rArquivo, uiDivisa, pSoma->uiTamanho, &pSoma->uiCrcResto);
}

}  // namespace

namespace XVConversaoArquivo {

HRESULT Abre(const IXVDF_Profiler* pDono, const std::string& sPath, std::unique_ptr<IXVArquivo>* ppArquivo) {
    ppArquivo->reset();
    bool bExiste = false;
    const HRESULT hr = CXVDataBaseUtil::Existe(pDono, sPath, &bExiste);
    if (FAILED(hr) || !bExiste) return hr;
    return Codigo(XVPlataforma::SistemaArquivos().Abre(sPath, k_aberturaConsulta, *ppArquivo), sPath, pDono);
}

HRESULT Descreve(const IXVDF_Profiler* pDono, const std::string& sPath, std::string_view sNome,
                 SArquivoConversao* pArquivo) {
    *pArquivo = {};
    std::unique_ptr<IXVArquivo> pAberto;
    const HRESULT hr = Abre(pDono, sPath, &pAberto);
    if (FAILED(hr) || pAberto == nullptr) return hr;
    pArquivo->bExiste = true;
    return Codigo(DescreveAberto(*pAberto, sNome, pArquivo), sPath, pDono);
}

HRESULT Soma(const IXVDF_Profiler* pDono, const std::string& sPath, SSomaArquivo* pSoma) {
    *pSoma = {};
    std::unique_ptr<IXVArquivo> pAberto;
    const HRESULT hr = Abre(pDono, sPath, &pAberto);
    if (FAILED(hr) || pAberto == nullptr) return hr;
    return Codigo(SomaAberto(*pAberto, pSoma), sPath, pDono);
}

HRESULT Recusa(const IXVDF_Profiler* pDono, const std::string& sPath, const char* pszMotivo) {
    XVProfiler::RecordError(pDono, "CBaseMiddleware::ExecutaConversao", "ConversaoArquivo", __LINE__,
                            "%s: %s\tE_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS", pszMotivo,
                            sPath.c_str());
    return XVArquivoRecusado::Anota(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, sPath, pDono);
}

}  // namespace XVConversaoArquivo
