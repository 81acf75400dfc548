// CXVDataBaseUtil: deletion of files that are under control.
#include "core/xvdatabase/XVDataBaseControleCriacaoArquivos.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "support/trace/XVProfiler.h"

// The entry leaves the control before the file goes: a crash in between leaves an unlisted file, which
// the next opening lists again; the other order would leave a listed file missing.
HRESULT CXVDataBaseUtil::DeletaArquivoUnico(const IXVDF_Profiler* pDono, EModulo eModulo,
                                            const std::string& sNomeArquivo, EControleDelecao eControle) {
    if (eControle == eRemoveDoControle) {
        CXVDataBaseControleCriacaoArquivos controle(eModulo, sNomeArquivo);
        XV_CHECK_DONO(pDono, controle.Inicializa(pDono));
        XV_CHECK_DONO(pDono, controle.RemoveControleCriacaoArquivos());
    }
    return DeletaSemControle(pDono, eModulo, sNomeArquivo);
}

HRESULT CXVDataBaseUtil::DeletaArquivo(const IXVDF_Profiler* pDono, EModulo eModulo,
                                       const std::string& sNomeArquivo, EControleDelecao eControle) {
    XV_ESCOPO_DONO(pDono, {"sNomeArquivo", sNomeArquivo});
    if (!XVNomeArquivo::EhPadraoGrupo(sNomeArquivo))
        return DeletaArquivoUnico(pDono, eModulo, sNomeArquivo, eControle);
    std::vector<std::pair<XVUInt64, std::string>> listaMembros;
    XV_CHECK_DONO(pDono, ListaMembros(pDono, eModulo, sNomeArquivo, &listaMembros));
    for (const auto& membro : listaMembros)
        XV_CHECK_DONO(pDono, DeletaArquivoUnico(pDono, eModulo, membro.second, eControle));
    return S_OK;
}
