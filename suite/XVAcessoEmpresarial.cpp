#include "suite/XVAcessoEmpresarial.h"

#include <cstdio>

#include "platform/XVTentativas.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVTextoDecimal.h"

namespace {

constexpr std::string_view k_sCabecalho =
    "Data\tHora\tEmpresa\tUsuario\tSessao\tServico\tTipoRegistro\tChave\tTexto\n";

std::string_view SemFimDeLinha(std::string_view sTexto) {
    if (sTexto.ends_with('\n')) sTexto.remove_suffix(1);
    if (sTexto.ends_with('\r')) sTexto.remove_suffix(1);
    return sTexto;
}

void AnexaColuna(std::string& sLinha, std::string_view sValor) {
    const std::size_t uiInicio = sLinha.size();
    sLinha += sValor;
    for (const char c : {'\t', '\r', '\n', '\0'})
        for (std::size_t i = sLinha.find(c, uiInicio); i != std::string::npos; i = sLinha.find(c, i))
            sLinha[i] = ' ';
}

// "15/03/2024", tab, "09:00:00", tab.
void AnexaDataHora(std::string& sLinha, const SDataHora& rAgora) {
    XVAnexaDecimal(sLinha, rAgora.ucDia, 2);
    sLinha += '/';
    XVAnexaDecimal(sLinha, rAgora.ucMes, 2);
    sLinha += '/';
    XVAnexaDecimal(sLinha, rAgora.usAno, 4);
    sLinha += '\t';
    XVAnexaDecimal(sLinha, rAgora.ucHora, 2);
    sLinha += ':';
    XVAnexaDecimal(sLinha, rAgora.ucMinuto, 2);
    sLinha += ':';
    XVAnexaDecimal(sLinha, rAgora.ucSegundo, 2);
    sLinha += '\t';
}

CXVErroArquivo AbreLog(const std::string& sCaminho, ECriacaoArquivo eCriacao,
                       std::unique_ptr<IXVArquivo>& pArquivo) {
    return XVTentaEnquantoOcupado(k_iTentativasCurtas, [&] {
        return XVPlataforma::SistemaArquivos().Abre(
            sCaminho, {EAcessoArquivo::eAnexacao, ECompartilhamentoArquivo::eNegaNada, eCriacao}, pArquivo);
    });
}

// A write that failed may have left a part of its line: the next one then starts on a line of its own.
CXVErroArquivo GravaLinha(IXVArquivo& rArquivo, std::string_view sLinha, bool* pbLinhaPartida) {
    CXVErroArquivo erro;
    if (*pbLinhaPartida) erro = rArquivo.Grava(0, "\n", 1);
    if (!erro.Ok()) return erro;
    erro = rArquivo.Grava(0, sLinha.data(), sLinha.size());
    *pbLinhaPartida = !erro.Ok();
    return erro;
}

// Several processes may find the file absent at once: who holds the directory's mark writes the header
// line, the others wait until it stands there.
CXVErroArquivo CriaLog(const std::string& sDiretorio, const std::string& sNome, bool* pbLinhaPartida,
                       std::unique_ptr<IXVArquivo>& pArquivo) {
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    CXVErroArquivo erro =
        XVTentaMarca(k_iTentativasCurtas, sDiretorio, CXVAcessoEmpresarial::k_pszMarcaCriacao, pMarca);
    if (!erro.Ok()) return erro;
    erro = AbreLog(XVPlataforma::SistemaArquivos().Junta(sDiretorio, sNome), ECriacaoArquivo::eCriaSeAusente,
                   pArquivo);
    if (!erro.Ok()) return erro;
    XVUInt64 uiTamanho = 0;
    erro = pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho == 0) erro = GravaLinha(*pArquivo, k_sCabecalho, pbLinhaPartida);
    if (!erro.Ok()) pArquivo.reset();
    return erro;
}

HRESULT AbreLogDoMes(std::string_view sEmpresa, const SDataHora& rAgora, bool* pbLinhaPartida,
                     std::unique_ptr<IXVArquivo>& pArquivo) {
    std::string sDiretorio;
    const HRESULT hr = CAmbienteXV::GetPathDados(k_eModuloBase, sEmpresa, &sDiretorio);
    if (FAILED(hr)) return hr;
    char szNome[40];
    std::snprintf(szNome, sizeof(szNome), "XVLogGeral_%04u%02u.log", static_cast<unsigned>(rAgora.usAno),
                  static_cast<unsigned>(rAgora.ucMes));
    const std::string sCaminho = XVPlataforma::SistemaArquivos().Junta(sDiretorio, szNome);
    CXVErroArquivo erro = AbreLog(sCaminho, ECriacaoArquivo::eSomenteExistente, pArquivo);
    XVUInt64 uiTamanho = 0;
    if (erro.Ok()) erro = pArquivo->GetTamanho(uiTamanho);
    // An empty file is one whose creator has not written the header line yet, or never will.
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado || (erro.Ok() && uiTamanho == 0)) {
        pArquivo.reset();
        erro = CriaLog(sDiretorio, szNome, pbLinhaPartida, pArquivo);
    }
    if (!erro.Ok()) pArquivo.reset();
    return XVCodigoArquivo(erro);
}

}  // namespace

CXVAcessoEmpresarial::CXVAcessoEmpresarial(const IXVDF_Profiler* pDono) : m_pDono(pDono) {}

CXVAcessoEmpresarial::~CXVAcessoEmpresarial() = default;

HRESULT CXVAcessoEmpresarial::GravaLogGeral(DFSLOG_Servico eServico, std::string_view sTexto) {
    return Anexa(0, 0, static_cast<XVUInt>(eServico), sTexto);
}

HRESULT CXVAcessoEmpresarial::GravaLog(const CXVDadosDF_Log& dadosLog) {
    return Anexa(dadosLog.uiChave, dadosLog.ulTipoRegistro, dadosLog.ulServico, dadosLog.sTexto);
}

void CXVAcessoEmpresarial::Fecha() {
    const std::lock_guard trava(m_Mutex);
    m_pArquivo.reset();
    m_ulAnoMes = 0;
}

HRESULT CXVAcessoEmpresarial::Anexa(XVUInt64 uiChave, XVUInt ulTipoRegistro, XVUInt ulServico,
                                    std::string_view sTexto) {
    const std::string_view sEmpresa = m_pDono->GetEmpresa();
    const std::lock_guard trava(m_Mutex);
    // Read under the lock: no line goes to a month after the first line of the next one.
    const SDataHora agora = XVPlataforma::Relogio().AgoraLocal();
    m_sLinha.clear();
    AnexaDataHora(m_sLinha, agora);
    AnexaColuna(m_sLinha, sEmpresa);
    for (const XVUInt64 uiValor : {XVUInt64{m_pDono->GetUsuario()}, XVUInt64{m_pDono->GetNumeroSessao()},
                                   XVUInt64{ulServico}, XVUInt64{ulTipoRegistro}, uiChave}) {
        m_sLinha += '\t';
        XVAnexaDecimal(m_sLinha, uiValor);
    }
    m_sLinha += '\t';
    AnexaColuna(m_sLinha, SemFimDeLinha(sTexto));
    m_sLinha += '\n';

    const XVUInt ulAnoMes = agora.usAno * 100U + agora.ucMes;
    if (m_pArquivo == nullptr || m_ulAnoMes != ulAnoMes) {
        m_pArquivo.reset();
        if (m_ulAnoMes != ulAnoMes) m_bLinhaPartida = false;
        m_ulAnoMes = ulAnoMes;
        const HRESULT hr = AbreLogDoMes(sEmpresa, agora, &m_bLinhaPartida, m_pArquivo);
        if (FAILED(hr)) return hr;
    }
    const CXVErroArquivo erro = GravaLinha(*m_pArquivo, m_sLinha, &m_bLinhaPartida);
    if (!erro.Ok()) m_pArquivo.reset();  // the next line tries a fresh opening
    return XVCodigoArquivo(erro);
}
