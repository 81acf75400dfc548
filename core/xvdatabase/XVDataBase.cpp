#include "core/xvdatabase/XVDataBase.h"

#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVVisao.h"

HRESULT IXVFileBase::SetArrayData(const void* /*pDados*/, XVUInt64 /*uiQuantidade*/) {
    return E_NOTIMPL;
}
HRESULT IXVFileBase::SetRegData(XVUInt& /*uiPosicao*/, const void* /*pDados*/) {
    return E_NOTIMPL;
}

void CXVDataBase::AddFile(IXVFileBase* pFile) {
    if (m_bControleDesabilitado) pFile->DesabilitaControleCriacaoArquivos();
    m_mapFiles[pFile->GetNomeArquivo()] = pFile;
}

void CXVDataBase::RemoveFile(IXVFileBase* pFile) {
    const auto it = m_mapFiles.find(pFile->GetNomeArquivo());
    if (it != m_mapFiles.end() && it->second == pFile) m_mapFiles.erase(it);
}

HRESULT CXVDataBase::OnInicializa() {
    XV_CHECK_SUPER(CXVBaseParaRotinas, OnInicializa());
    std::string sDiretorio;
    m_pDiario = nullptr;
    m_pVisao = m_bSomenteLeitura ? CXVVisao::GetAtual() : nullptr;
    if (!m_bSomenteLeitura && SUCCEEDED(CAmbienteXV::GetPathDados(m_eModulo, GetEmpresa(), &sDiretorio)))
        m_pDiario = CXVDiario::Busca(sDiretorio);
    m_memoriaMembros.LeOrcamento(m_eModulo);
    for (const auto& file : m_mapFiles) XV_CHECK(file.second->Inicializa(this));
    return S_OK;
}

// Every file is finalised whatever the others answer, so that no handle stays open; the first failure is
// the result.
HRESULT CXVDataBase::OnFinaliza() {
    HRESULT hrPrimeira = S_OK;
    for (const auto& file : m_mapFiles) {
        const HRESULT hr = XV_REGISTRA(file.second->Finaliza());
        hrPrimeira = XVPrimeiraFalha(hrPrimeira, hr);
    }
    const HRESULT hrBase = XV_REGISTRA_SUPER(CXVBaseParaRotinas, OnFinaliza());
    return XVPrimeiraFalha(hrPrimeira, hrBase);
}
