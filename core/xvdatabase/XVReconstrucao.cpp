#include "core/xvdatabase/XVReconstrucao.h"

#include <algorithm>
#include <cstring>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

namespace {

SAberturaArquivo AberturaEscrita(bool bCria) {
    return {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
            bCria ? ECriacaoArquivo::eCriaSeAusente : ECriacaoArquivo::eSomenteExistente};
}

// A header that was being replaced by the next one when its writer died: bytes of one and of the other.
bool EhMistura(const REG_XVCABECALHO_B& reg, const void* p1, const void* p2) {
    const auto* p = reinterpret_cast<const unsigned char*>(&reg);
    const auto* a = static_cast<const unsigned char*>(p1);
    const auto* b = static_cast<const unsigned char*>(p2);
    for (std::size_t i = 0; i < sizeof(reg); ++i)
        if (p[i] != a[i] && p[i] != b[i]) return false;
    return true;
}

}  // namespace

std::string CXVReconstrucao::Path(const std::string& sNome) const {
    return XVPlataforma::SistemaArquivos().Junta(m_sDiretorio, sNome);
}

HRESULT CXVReconstrucao::RecusaArquivo(const IXVDF_Profiler* pDono, const std::string& sNome,
                                       const char* pszMotivo) const {
    XVProfiler::RecordError(pDono, "CXVReconstrucao::Confere", XVNomeFonte(), __LINE__,
                            "O diário de operações não confere: %s\t%s", sNome.c_str(), pszMotivo);
    return XVArquivoRecusado::Anota(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, Path(sNome), pDono);
}

HRESULT CXVReconstrucao::Le(const IXVDF_Profiler* pDono, const std::string& sDiretorio, IXVArquivo& rDiario) {
    m_sDiretorio = sDiretorio;
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(m_diario.Le(rDiario)));
    if (m_diario.TemLacuna())
        return RecusaArquivo(
            pDono, k_pszNomeDiario,
            "faltam operações que o equipamento perdeu; os arquivos podem estar incompletos");
    if (m_diario.TemEstadoDesconhecido())
        return RecusaArquivo(pDono, k_pszNomeDiario,
                             "não se sabe se uma das operações deve ser concluída ou desfeita");
    return Monta(pDono);
}

// An entry that is to be undone is applied in its place among the others, not only when it is the last one.
// Once undone it should be marked as void; where that mark could not be written, later operations began all
// the same from the state before it.
HRESULT CXVReconstrucao::Monta(const IXVDF_Profiler* pDono) {
    for (const SEntradaLida& rEntrada : m_diario.GetEntradas()) {
        if (rEntrada.eEstado == EEstadoEntrada::eNula) continue;
        if (rEntrada.eTipo == ETipoEntrada::eCopia) {
            for (const SParteLida& rParte : rEntrada.listaPartes) m_listaCopias.emplace_back(rParte.sNome);
            continue;
        }
        m_bDesfaz = rEntrada.eEstado == EEstadoEntrada::eDesfazer;
        for (const SParteLida& rParte : rEntrada.listaPartes)
            if (!Inclui(rParte, m_bDesfaz))
                return RecusaArquivo(pDono, std::string(rParte.sNome),
                                     "as operações não se seguem umas às outras");
    }
    return S_OK;
}

bool CXVReconstrucao::Inclui(const SParteLida& rParte, bool bDesfaz) {
    const auto [it, bNovo] = m_mapaArquivos.try_emplace(std::string(rParte.sNome));
    SArquivo& rArquivo = it->second;
    if (bNovo) {
        rArquivo.bExistia = !rParte.bCria;
        rArquivo.uiTamanhoMenor = rParte.bCria ? 0 : rParte.uiTamanhoAntes;
    } else if (rParte.bCria != rArquivo.bApaga) {
        return false;
    }
    // A file that was made, undone and made again begins a second time.
    const bool bComeca = bNovo || rParte.bCria;
    if (!bComeca && (rParte.uiTamanhoAntes != rArquivo.uiTamanhoFinal ||
                     (rParte.pAntes != nullptr && rArquivo.pCabecalhoFinal != nullptr &&
                      std::memcmp(rParte.pAntes, rArquivo.pCabecalhoFinal, sizeof(*rParte.pAntes)) != 0)))
        return false;
    if (bComeca && rParte.pAntes != nullptr) rArquivo.listaCabecalhos.push_back(rParte.pAntes);
    rArquivo.listaPartes.push_back(&rParte);
    rArquivo.uiTamanhoMaior = std::max(rArquivo.uiTamanhoMaior, rParte.uiTamanhoDepois);
    if (rParte.pDepois != nullptr) {
        rArquivo.listaCabecalhos.push_back(rParte.pDepois);
        rArquivo.pCabecalhoFinal = bDesfaz ? rParte.pAntes : rParte.pDepois;
    }
    rArquivo.uiTamanhoFinal = bDesfaz ? rParte.uiTamanhoAntes : rParte.uiTamanhoDepois;
    rArquivo.bApaga = bDesfaz && rParte.bCria;
    rArquivo.faixasFinais.Mescla(rParte.uiOffset, bDesfaz ? rParte.sAntigos : rParte.sNovos);
    return true;
}

HRESULT CXVReconstrucao::Confere(const IXVDF_Profiler* pDono) {
    for (const auto& [sNome, rArquivo] : m_mapaArquivos) {
        const HRESULT hr = ConfereArquivo(pDono, sNome, rArquivo);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT CXVReconstrucao::ConfereArquivo(const IXVDF_Profiler* pDono, const std::string& sNome,
                                        const SArquivo& rArquivo) {
    std::unique_ptr<IXVArquivo> pFile;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(Path(sNome), k_aberturaConsulta, pFile);
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado)
        return rArquivo.bExistia ? RecusaArquivo(pDono, sNome, "o arquivo não existe mais") : S_OK;
    XVUInt64 uiTamanho = 0;
    bool bCabecalho = true;
    bool bBytes = true;
    if (erro.Ok()) erro = pFile->GetTamanho(uiTamanho);
    if (erro.Ok() && (uiTamanho < rArquivo.uiTamanhoMenor || uiTamanho > rArquivo.uiTamanhoMaior))
        return RecusaArquivo(pDono, sNome, "o tamanho não é o de nenhuma das operações");
    if (erro.Ok()) erro = ConfereCabecalho(*pFile, uiTamanho, rArquivo, &bCabecalho);
    if (erro.Ok()) erro = ConfereBytes(*pFile, uiTamanho, rArquivo, &bBytes);
    if (!erro.Ok())
        XV_CHECK_DONO(pDono,
                      XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), Path(sNome), pDono));
    if (!bCabecalho) return RecusaArquivo(pDono, sNome, "o cabeçalho não é o de nenhuma das operações");
    if (!bBytes) return RecusaArquivo(pDono, sNome, "os registros não são os de nenhuma das operações");
    return S_OK;
}

CXVErroArquivo CXVReconstrucao::ConfereCabecalho(IXVArquivo& rFile, XVUInt64 uiTamanho,
                                                 const SArquivo& rArquivo, bool* pbOk) {
    *pbOk = true;
    const auto& rLista = rArquivo.listaCabecalhos;
    if (rLista.empty()) return {};
    REG_XVCABECALHO reg{};
    if (rArquivo.bExistia && uiTamanho < sizeof(reg)) {
        *pbOk = false;
        return {};
    }
    const CXVErroArquivo erro =
        rFile.Le(0, &reg, static_cast<std::size_t>(std::min<XVUInt64>(uiTamanho, sizeof(reg))));
    if (!erro.Ok()) return erro;
    // The header on disk is one of the list, or a mixture of two where a process died while it replaced one:
    // with the next one by the operation itself, with the last one by a conclusion that was interrupted. A
    // file that an operation made had zeros before its first header.
    const REG_XVCABECALHO_B regVazio{};
    const REG_XVCABECALHO_B* pFinal = rArquivo.pCabecalhoFinal;
    *pbOk = false;
    for (std::size_t i = 0; i < rLista.size() && !*pbOk; ++i)
        *pbOk = EhMistura(reg.regB, rLista[i], rLista[std::min(i + 1, rLista.size() - 1)]) ||
                EhMistura(reg.regB, rLista[i], pFinal) ||
                (!rArquivo.bExistia && EhMistura(reg.regB, &regVazio, rLista[i]));
    return {};
}

// Each byte must be what one of the operations wrote there, or what stood there before. What they appended
// may not have reached the device, though the length has: zeros, then.
bool CXVReconstrucao::Explica(const SArquivo& rArquivo, XVUInt64 uiOffset, char cDisco) {
    if (uiOffset >= rArquivo.uiTamanhoMenor && cDisco == '\0') return true;
    return std::any_of(rArquivo.listaPartes.begin(), rArquivo.listaPartes.end(), [&](const SParteLida* p) {
        const XVUInt64 uiIndice = uiOffset - p->uiOffset;
        return uiOffset >= p->uiOffset &&
               ((uiIndice < p->sNovos.size() && p->sNovos[uiIndice] == cDisco) ||
                (uiIndice < p->sAntigos.size() && p->sAntigos[uiIndice] == cDisco));
    });
}

CXVErroArquivo CXVReconstrucao::ConfereBytes(IXVArquivo& rFile, XVUInt64 uiTamanho, const SArquivo& rArquivo,
                                             bool* pbOk) {
    *pbOk = true;
    for (const SParteLida* pParte : rArquivo.listaPartes) {
        if (pParte->uiOffset >= uiTamanho) continue;
        std::string sDisco(
            static_cast<std::size_t>(std::min<XVUInt64>(pParte->sNovos.size(), uiTamanho - pParte->uiOffset)),
            '\0');
        const CXVErroArquivo erro = rFile.Le(pParte->uiOffset, sDisco.data(), sDisco.size());
        if (!erro.Ok()) return erro;
        for (std::size_t i = 0; i < sDisco.size() && *pbOk; ++i)
            *pbOk = sDisco[i] == pParte->sNovos[i] || Explica(rArquivo, pParte->uiOffset + i, sDisco[i]);
    }
    return {};
}

HRESULT CXVReconstrucao::Aplica(const IXVDF_Profiler* pDono) {
    std::string sAlterados;
    CXVErroArquivo erro;
    for (auto it = m_mapaArquivos.begin(); erro.Ok() && it != m_mapaArquivos.end(); ++it) {
        bool bAlterou = false;
        erro = AplicaArquivo(it->first, it->second, &bAlterou);
        if (bAlterou) sAlterados += ' ' + it->first;
    }
    std::string sCopias;
    for (auto it = m_listaCopias.begin(); erro.Ok() && it != m_listaCopias.end(); ++it) {
        bool bApagada = false;
        if (XVNomeArquivo::EhCopiaTransitoria(*it)) erro = ApagaArquivo(*it, &bApagada);
        if (bApagada) sCopias += ' ' + *it;
    }
    if (erro.Ok() && !(sAlterados.empty() && sCopias.empty()))
        erro = XVPlataforma::SistemaArquivos().SincronizaDiretorio(m_sDiretorio);
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(erro));
    if (!sAlterados.empty())
        XVProfiler::RecordError(pDono, "CXVReconstrucao::Aplica", XVNomeFonte(), __LINE__,
                                "Operação interrompida %s: %s\tArquivos:%s",
                                m_bDesfaz ? "desfeita" : "concluída", m_sDiretorio.c_str(),
                                sAlterados.c_str());
    if (m_diario.TemInacabada())
        XVProfiler::RecordError(pDono, "CXVReconstrucao::Aplica", XVNomeFonte(), __LINE__,
                                "Operação interrompida descartada antes de começar: %s",
                                m_sDiretorio.c_str());
    if (!sCopias.empty())
        XVProfiler::RecordError(pDono, "CXVReconstrucao::Aplica", XVNomeFonte(), __LINE__,
                                "Cópia transitória interrompida removida: %s\tArquivos:%s",
                                m_sDiretorio.c_str(), sCopias.c_str());
    return S_OK;
}

CXVErroArquivo CXVReconstrucao::ApagaArquivo(const std::string& sNome, bool* pbAlterou) {
    const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Apaga(Path(sNome));
    *pbAlterou = erro.Ok();
    return erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado ? CXVErroArquivo() : erro;
}

CXVErroArquivo CXVReconstrucao::AplicaArquivo(const std::string& sNome, const SArquivo& rArquivo,
                                              bool* pbAlterou) {
    if (rArquivo.bApaga) return ApagaArquivo(sNome, pbAlterou);
    std::unique_ptr<IXVArquivo> pFile;
    CXVErroArquivo erro =
        XVPlataforma::SistemaArquivos().Abre(Path(sNome), AberturaEscrita(!rArquivo.bExistia), pFile);
    XVUInt64 uiTamanho = 0;
    if (erro.Ok()) erro = pFile->GetTamanho(uiTamanho);
    if (erro.Ok()) erro = AplicaBytes(*pFile, uiTamanho, rArquivo, pbAlterou);
    if (erro.Ok()) erro = pFile->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho != rArquivo.uiTamanhoFinal) {
        *pbAlterou = true;
        erro = pFile->SetTamanho(rArquivo.uiTamanhoFinal);
    }
    return erro.Ok() && *pbAlterou ? pFile->Sincroniza() : erro;
}

// Only what differs is written. Data first: a header is the last thing to come.
CXVErroArquivo CXVReconstrucao::AplicaBytes(IXVArquivo& rFile, XVUInt64 uiTamanho, const SArquivo& rArquivo,
                                            bool* pbAlterou) {
    std::string sDisco;
    const auto grava = [&](XVUInt64 uiOffset, std::string_view sBytes) -> CXVErroArquivo {
        if (uiOffset + sBytes.size() <= uiTamanho) {
            sDisco.resize(sBytes.size());
            const CXVErroArquivo erro = rFile.Le(uiOffset, sDisco.data(), sDisco.size());
            if (!erro.Ok() || sDisco == sBytes) return erro;
        }
        *pbAlterou = true;
        return rFile.Grava(uiOffset, sBytes.data(), sBytes.size());
    };
    for (const auto& [uiOffset, sBytes] : rArquivo.faixasFinais)
        if (const CXVErroArquivo erro = grava(uiOffset, sBytes); !erro.Ok()) return erro;
    if (rArquivo.pCabecalhoFinal == nullptr) return {};
    REG_XVCABECALHO reg{XVCabecalho::BlocoA(), *rArquivo.pCabecalhoFinal};
    const std::string_view sCabecalho(reinterpret_cast<const char*>(&reg), sizeof(reg));
    return rArquivo.bExistia ? grava(k_uiTamanhoBlocoA, sCabecalho.substr(k_uiTamanhoBlocoA))
                             : grava(0, sCabecalho);
}
