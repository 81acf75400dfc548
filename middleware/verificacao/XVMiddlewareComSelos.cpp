#include "middleware/verificacao/XVMiddlewareComSelos.h"

HRESULT CXVMiddlewareComSelos::OnFinaliza() {
    {
        const std::lock_guard trava(m_mutexSelagem);
        m_selagem.Espera();
    }
    return CBaseMiddleware::OnFinaliza();
}

void CXVMiddlewareComSelos::AoComecarDia(XVUInt64 uiDia) noexcept {
    try {
        std::vector<XVUInt64> listaDias = m_pDataBase->m_Integracao.GetChavesAbaixoDe(uiDia, k_uiDias);
        std::string sDiretorio;
        if (listaDias.empty() || FAILED(CXVDataBaseUtil::GetPathDados(XV_DF, GetEmpresa(), &sDiretorio)))
            return;
        const std::lock_guard trava(m_mutexSelagem);
        m_selagem.Comeca(std::move(sDiretorio), std::move(listaDias));
    } catch (...) {
        return;  // no memory for it; the integration is recorded
    }
}
