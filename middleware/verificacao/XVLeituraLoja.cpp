#include "middleware/verificacao/XVLeituraLoja.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

using TInicio = std::array<XVByte, k_uiTamanhoCabecalho>;

// What the first bytes of a file that is no exempt one say of it; the sizes are those without a header.
void JulgaCabecalho(const TInicio& aInicio, std::size_t uiLidos, SArquivoLoja* pArquivo) {
    REG_XVCABECALHO reg;
    static_assert(sizeof(reg) == sizeof(aInicio));
    std::memcpy(&reg, aInicio.data(), sizeof(reg));
    const XVUInt64 uiTamanhoArquivo = pArquivo->uiTamanho;
    const bool bAssinatura = uiLidos >= k_uiTamanhoBlocoA && XVCabecalho::AssinaturaConfere(reg.regA);
    pArquivo->bInicioZerado = uiLidos == aInicio.size() &&
                              std::all_of(aInicio.begin(), aInicio.end(), [](XVByte uc) { return uc == 0; });
    const bool bRestos =
        !bAssinatura && XVCabecalho::EhReconhecivel({aInicio.data(), uiLidos}, pArquivo->sNome);
    pArquivo->bSemSinal = !bAssinatura && !bRestos;
    if (pArquivo->bSemSinal && !pArquivo->bInicioZerado) return;
    pArquivo->uiInicio = std::min(k_uiTamanhoCabecalho, uiTamanhoArquivo);
    pArquivo->uiTamanho = uiTamanhoArquivo - pArquivo->uiInicio;
    if (!bAssinatura) {
        pArquivo->hr = E_XVCR_CRC_CABECALHO_NAO_CONFERE;
    } else if (reg.regA.usVersao != k_usVersaoCabecalho) {
        pArquivo->hr = E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA;
    } else if (uiLidos < aInicio.size()) {
        pArquivo->hr = E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE;
    } else if (!CXVFileBase::CabecalhoDesabilitadoNaMaquina()) {
        pArquivo->hr = XVCabecalho::ValidaBlocoB(reg.regB, pArquivo->sNome, uiTamanhoArquivo);
        pArquivo->bCabecalho =
            reg.regB.uiTamanhoBloco == k_uiTamanhoBlocoB && XVCabecalho::CrcConfere(reg.regB);
        pArquivo->regB = reg.regB;
    }
}

}  // namespace

HRESULT XVNotaCaminho(HRESULT hr, const std::string& sDiretorio, const std::string& sNome) {
    CXVArquivosRecusados* pRecusados = CXVArquivosRecusados::GetAtual();
    if (FAILED(hr) && pRecusados != nullptr)
        pRecusados->Inclui(
            hr, sNome.empty() ? sDiretorio : XVPlataforma::SistemaArquivos().Junta(sDiretorio, sNome));
    return hr;
}

CXVLeituraLoja::CXVLeituraLoja(const std::string& sDiretorio)
    : m_visao(sDiretorio, CXVVisao::EFimArquivo::eDoSistema) {}

HRESULT CXVLeituraLoja::Abre() {
    std::vector<std::string> listaNomes;
    const CXVErroArquivo erro =
        XVPlataforma::SistemaArquivos().Lista(m_visao.GetDiretorio(), "*", listaNomes);
    if (!erro.Ok()) return XVNotaCaminho(XVCodigoArquivo(erro), m_visao.GetDiretorio());
    m_mapaNomes.clear();
    for (const std::string& rNome : listaNomes) m_mapaNomes.emplace(XVEmMinusculas(rNome), rNome);
    return LeDiario();
}

HRESULT CXVLeituraLoja::LeDiario() {
    m_eDiario = EDiario::eAusente;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pDiario;
    const CXVErroArquivo erro =
        rSistema.Abre(rSistema.Junta(m_visao.GetDiretorio(), k_pszNomeDiario), k_aberturaConsulta, pDiario);
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado) return S_OK;
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    if (m_visao.TemEscritor())
        m_eDiario = EDiario::eEmUso;
    else
        ConfereDiario(*pDiario);
    return S_OK;
}

// As the next opening for writing will, which is asked to say what it would refuse and not to log it.
void CXVLeituraLoja::ConfereDiario(IXVArquivo& rDiario) {
    const CXVCapturaTrace captura;
    CXVReconstrucao reconstrucao;
    HRESULT hr = reconstrucao.Le(nullptr, m_visao.GetDiretorio(), rDiario);
    if (SUCCEEDED(hr)) hr = reconstrucao.Confere(nullptr);
    m_eDiario = SUCCEEDED(hr) ? EDiario::eAConcluir : EDiario::eNaoConfere;
    m_listaCopias = reconstrucao.GetCopias();
    // A file that an operation made, and that its writer did not come to make, is there once it is concluded.
    if (SUCCEEDED(hr))
        for (const auto& [sNome, bExiste] : reconstrucao.GetExistencias()) {
            if (bExiste)
                m_mapaNomes.emplace(XVEmMinusculas(sNome), sNome);
            else
                m_mapaNomes.erase(XVEmMinusculas(sNome));
        }
    if (SUCCEEDED(hr) || captura.GetFalhas().empty()) return;
    m_sMotivoDiario = captura.GetFalhas().front().sMensagem;
    std::replace(m_sMotivoDiario.begin(), m_sMotivoDiario.end(), '\t', ' ');
}

HRESULT CXVLeituraLoja::Descreve(const std::string& sNome, SArquivoLoja* pArquivo) {
    const CXVErroArquivo erro = m_visao.NoMomento([&](CXVMomento& rMomento) -> CXVErroArquivo {
        *pArquivo = {};
        pArquivo->sNome = sNome;
        SAreaVista area;
        CXVErroArquivo erroLeitura = rMomento.GetArea(sNome, &area);
        if (!erroLeitura.Ok() || !area.bExiste) return erroLeitura;
        pArquivo->bExiste = true;
        pArquivo->uiTamanho = area.uiTamanho;
        TInicio aInicio{};
        const auto uiLidos = static_cast<std::size_t>(std::min<XVUInt64>(area.uiTamanho, aInicio.size()));
        if (uiLidos == 0 || XVNomeArquivo::EhIsento(sNome)) return erroLeitura;
        erroLeitura = rMomento.Le(sNome, 0, aInicio.data(), uiLidos);
        if (erroLeitura.Ok()) {
            JulgaCabecalho(aInicio, uiLidos, pArquivo);
        } else if (erroLeitura.GetCausa() == ECausaArquivo::eErroFisico) {
            pArquivo->hr = XVCodigoArquivo(erroLeitura);
            pArquivo->bSemSinal = pArquivo->bInicioIlegivel = true;
            return {};
        }
        return erroLeitura;
    });
    if (!erro.Ok()) pArquivo->hr = XVCodigoArquivo(erro);
    return XVCodigoArquivo(erro);
}

// By halves, down to what a device keeps or loses as one: one bad sector costs a few more readings.
CXVErroArquivo CXVLeituraLoja::LePedaco(CXVMomento& rMomento, const SArquivoLoja& rArquivo, XVUInt64 uiOffset,
                                        std::span<char> aBytes, CXVBuracos* pBuracos) {
    constexpr std::size_t k_uiSetor = 512;
    const CXVErroArquivo erro = m_visao.NoMomento(rMomento, [&](CXVMomento& r) {
        return r.Le(rArquivo.sNome, rArquivo.uiInicio + uiOffset, aBytes.data(), aBytes.size());
    });
    if (erro.GetCausa() != ECausaArquivo::eErroFisico || pBuracos == nullptr) return erro;
    const XVUInt64 uiNoArquivo = rArquivo.uiInicio + uiOffset;
    const XVUInt64 uiMeio = (uiNoArquivo + (aBytes.size() + k_uiSetor) / 2) / k_uiSetor * k_uiSetor;
    if (uiMeio <= uiNoArquivo || uiMeio >= uiNoArquivo + aBytes.size()) {
        std::fill(aBytes.begin(), aBytes.end(), '\0');
        pBuracos->Inclui(uiOffset, aBytes.size());
        return erro;
    }
    const auto uiMetade = static_cast<std::size_t>(uiMeio - uiNoArquivo);
    const CXVErroArquivo primeiro = LePedaco(rMomento, rArquivo, uiOffset, aBytes.first(uiMetade), pBuracos);
    if (!primeiro.Ok() && primeiro.GetCausa() != ECausaArquivo::eErroFisico) return primeiro;
    const CXVErroArquivo segundo =
        LePedaco(rMomento, rArquivo, uiOffset + uiMetade, aBytes.subspan(uiMetade), pBuracos);
    return segundo.Ok() ? primeiro : segundo;
}

HRESULT CXVLeituraLoja::Percorre(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte,
                                 const FPedaco& fn, CXVBuracos* pBuracos) {
    std::vector<char> aBloco;
    CXVMomento momento(m_visao, 0);
    HRESULT hr = S_OK;
    for (XVUInt64 uiOffset = uiDe; uiOffset < uiAte; uiOffset += aBloco.size()) {
        aBloco.resize(static_cast<std::size_t>(std::min<XVUInt64>(k_uiBloco, uiAte - uiOffset)));
        const CXVErroArquivo erro = LePedaco(momento, rArquivo, uiOffset, aBloco, pBuracos);
        hr = XVPrimeiraFalha(hr, XVCodigoArquivo(erro));
        if (!erro.Ok() && (pBuracos == nullptr || erro.GetCausa() != ECausaArquivo::eErroFisico)) return hr;
        if (m_fnProgresso) m_fnProgresso(rArquivo.sNome, aBloco.size());
        fn(uiOffset, aBloco);
    }
    return hr;
}
