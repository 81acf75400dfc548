// CXVDataBaseUtil, lowest floor: paths, names, moves and deletions. Knows neither control nor files.
#include "core/xvdatabase/XVDataBaseUtil.h"

#include <algorithm>

#include "contract/XVRegistroInicializacao.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVTentativas.h"
#include "suite/XVBaseParaRotinas.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr XVUInt k_ulTipoRegistroArquivo = 21;

// A deletion and a move are tried again whatever is in the way.
template <class TOperacao>
CXVErroArquivo Tenta(TOperacao operacao) {
    return XVTenta(k_iTentativasCurtas, operacao, [](const CXVErroArquivo& rErro) { return !rErro.Ok(); });
}

std::string TextoAuditoria(const IXVDF_Profiler& rDono, const std::string& sNomeArquivo) {
    const std::string sInicio = "Arquivo \"" + sNomeArquivo + "\" removido ";
    switch (rDono.GetUsuario()) {
        case k_usUsuarioConversao:
            return sInicio + "durante a conversão da base de dados";
        case 0:
            return sInicio + "sem informação de usuário logado";
        default:
            return sInicio + "pelo usuário \"" + XVAmbienteSO::GetNomeUsuario() + "\"";
    }
}

}  // namespace

HRESULT CXVDataBaseUtil::GetPathDados(EModulo eModulo, std::string_view sEmpresa, std::string* psDiretorio) {
    return CAmbienteXV::GetPathDados(eModulo, sEmpresa, psDiretorio);
}

HRESULT CXVDataBaseUtil::GetPathArquivo(EModulo eModulo, std::string_view sEmpresa,
                                        std::string_view sNomeArquivo, std::string* psPathArquivo) {
    psPathArquivo->clear();
    std::string sDiretorio;
    const HRESULT hr = GetPathDados(eModulo, sEmpresa, &sDiretorio);
    if (SUCCEEDED(hr)) *psPathArquivo = XVPlataforma::SistemaArquivos().Junta(sDiretorio, sNomeArquivo);
    return hr;
}

HRESULT CXVDataBaseUtil::Existe(const IXVDF_Profiler* pDono, const std::string& sPath, bool* pbExiste) {
    *pbExiste = false;
    const EExistencia eExistencia = XVPlataforma::SistemaArquivos().Existe(sPath);
    if (eExistencia == EExistencia::eSemAcesso) return XVArquivoRecusado::Anota(eAccessDenied, sPath, pDono);
    *pbExiste = eExistencia != EExistencia::eAusente;
    return S_OK;
}

HRESULT CXVDataBaseUtil::ExistePath(const IXVDF_Profiler* pDono, const std::string& sPathArquivo,
                                    bool* pbExiste, std::string* psNomeReal) {
    *pbExiste = true;
    const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().BuscaNomeReal(sPathArquivo, *psNomeReal);
    if (erro.Ok()) return S_OK;
    *pbExiste = false;
    if (erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado &&
        erro.GetCausa() != ECausaArquivo::eCaminhoInvalido)
        return XVArquivoRecusado::Anota(XVCodigosArquivo::DeAberturaFinal(erro.GetCausa(), false).hr,
                                        sPathArquivo, pDono);
    // Under another name of its own that the system knows a file by, it is there too.
    *psNomeReal = sPathArquivo.substr(sPathArquivo.find_last_of("/\\") + 1);
    return Existe(pDono, sPathArquivo, pbExiste);
}

HRESULT CXVDataBaseUtil::ListaMembros(const IXVDF_Profiler* pDono, EModulo eModulo,
                                      const std::string& sPadrao,
                                      std::vector<std::pair<XVUInt64, std::string>>* plistaMembros) {
    plistaMembros->clear();
    std::string sDiretorio;
    XV_CHECK_DONO(pDono, GetPathDados(eModulo, pDono->GetEmpresa(), &sDiretorio));
    const std::string sMascara =
        sPadrao.substr(0, sPadrao.find('?')) + "*." + std::string(XVNomeArquivo::GetExtensao(sPadrao));
    std::vector<std::string> listaNomes;
    const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Lista(sDiretorio, sMascara, listaNomes);
    if (!erro.Ok())
        XV_CHECK_DONO(pDono,
                      XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sDiretorio, pDono));
    for (std::string& sNome : listaNomes)
        if (const auto uiChave = XVNomeArquivo::NomeParaChave(sNome, sPadrao))
            plistaMembros->emplace_back(*uiChave, std::move(sNome));
    std::sort(plistaMembros->begin(), plistaMembros->end());
    return S_OK;
}

// Before a file goes or is replaced: what the journal knows of it ends here.
HRESULT CXVDataBaseUtil::EncerraNoDiario(const IXVDF_Profiler* pDono, const std::string& sPathArquivo) {
    CXVDiario* pDiario = CXVDiario::Busca(sPathArquivo.substr(0, sPathArquivo.find_last_of("/\\")));
    return pDiario == nullptr ? S_OK : pDiario->PontoSeguro(pDono);
}

HRESULT CXVDataBaseUtil::DeletaPath(const IXVDF_Profiler* pDono, const std::string& sPathArquivo) {
    XV_CHECK_DONO(pDono, EncerraNoDiario(pDono, sPathArquivo));
    const CXVErroArquivo erro = Tenta([&] { return XVPlataforma::SistemaArquivos().Apaga(sPathArquivo); });
    if (erro.Ok() || XVPlataforma::SistemaArquivos().Existe(sPathArquivo) == EExistencia::eAusente)
        return S_OK;
    XVProfiler::RecordError(pDono, "CXVDataBaseUtil::DeletaArquivo", XVNomeFonte(), __LINE__,
                            "Erro ao deletar arquivo %s DW: %d.", sPathArquivo.c_str(),
                            static_cast<int>(erro.GetErroSistema()));
    return XVArquivoRecusado::Anota(E_XVCR_DELECAO_ARQUIVO, sPathArquivo, pDono);
}

HRESULT CXVDataBaseUtil::GravaAuditoria(const IXVDF_Profiler* pDono, const std::string& sNomeArquivo) {
    CXVBaseParaRotinas base;
    XV_CHECK_DONO(pDono, base.Inicializa(pDono));
    CXVDadosDF_Log dadosLog;
    dadosLog.ulTipoRegistro = k_ulTipoRegistroArquivo;
    dadosLog.ulServico = static_cast<XVUInt>(DFSLOG_Servico::eDFSLOG_Exclusao);
    dadosLog.sTexto = TextoAuditoria(*pDono, sNomeArquivo);
    XV_CHECK_DONO(pDono, base.GetAcessoEmpresarial()->GravaLog(dadosLog));
    return S_OK;
}

HRESULT CXVDataBaseUtil::DeletaSemControle(const IXVDF_Profiler* pDono, EModulo eModulo,
                                           const std::string& sNomeArquivo) {
    std::string sPathArquivo;
    XV_CHECK_DONO(pDono, GetPathArquivo(eModulo, pDono->GetEmpresa(), sNomeArquivo, &sPathArquivo));
    bool bExiste = false;
    XV_CHECK_DONO(pDono, Existe(pDono, sPathArquivo, &bExiste));
    if (!bExiste) return S_OK;
    XV_CHECK_DONO(pDono, DeletaPath(pDono, sPathArquivo));
    // The file is gone whatever becomes of the entry: its failure is recorded and no more.
    if (eModulo != k_eModuloSemAuditoria) XVIgnora(GravaAuditoria(pDono, sNomeArquivo));
    return S_OK;
}

HRESULT CXVDataBaseUtil::MovePath(const IXVDF_Profiler* pDono, const std::string& sPathOrigem,
                                  const std::string& sPathArquivo) {
    XV_CHECK_DONO(pDono, EncerraNoDiario(pDono, sPathArquivo));
    const CXVErroArquivo erro =
        Tenta([&] { return XVPlataforma::SistemaArquivos().Substitui(sPathOrigem, sPathArquivo); });
    if (erro.Ok()) return S_OK;
    XVProfiler::RecordError(pDono, "CXVDataBaseUtil::RenomeiaArquivoEXT", XVNomeFonte(), __LINE__,
                            "Erro ao renomear arquivo %s DW: %d.", sPathOrigem.c_str(),
                            static_cast<int>(erro.GetErroSistema()));
    return XVArquivoRecusado::Anota(E_XVCR_RENOMEACAO_ARQUIVO, sPathOrigem, pDono);
}

HRESULT CXVDataBaseUtil::RenomeiaArquivoCAB(const IXVDF_Profiler* pDono, EModulo eModulo,
                                            const std::string& sNomeArquivo) {
    std::string sPathArquivo;
    XV_CHECK_DONO(pDono, GetPathArquivo(eModulo, pDono->GetEmpresa(), sNomeArquivo, &sPathArquivo));
    XV_CHECK_DONO(pDono, MovePath(pDono, XVNomeArquivo::TrocaExtensao(sPathArquivo, "cab"), sPathArquivo));
    return S_OK;
}
