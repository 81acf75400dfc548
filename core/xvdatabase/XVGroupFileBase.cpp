#include "core/xvdatabase/XVGroupFileBase.h"

#include <mutex>
#include <utility>
#include <vector>

#include "core/xvdatabase/XVArquivoVisto.h"
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

CXVGroupFileBase::CXVGroupFileBase(std::string sNomeArquivo, CXVDataBase* pDataBase)
    : m_sNomeArquivo(std::move(sNomeArquivo)), m_eModulo(pDataBase->GetModulo()), m_pDataBase(pDataBase) {
    m_pDataBase->AddFile(this);
}

CXVGroupFileBase::~CXVGroupFileBase() {
    m_pDataBase->RemoveFile(this);
}

HRESULT CXVGroupFileBase::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    XV_CHECK_SUPER(IXVFileBase, OnInicializa());
    if (!XVNomeArquivo::EhPadraoGrupo(m_sNomeArquivo)) XV_FALHA(E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO);
    const std::unique_lock lock(m_Lock);
    XV_CHECK(ProcuraMembros());
    return S_OK;
}

HRESULT CXVGroupFileBase::ProcuraMembros() {
    std::string sPathArquivo;
    // Readers of the log know the call in the spelling of another string class.
    XV_CHECK_TEXTO(
        CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(),
                                        m_sNomeArquivo.substr(0, m_sNomeArquivo.find('?')), &sPathArquivo),
        "CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), "
        "m_sNomeArquivo.Left(m_sNomeArquivo.Find('?')), &sPathArquivo)");
    std::vector<std::pair<XVUInt64, std::string>> listaMembros;
    XV_CHECK(CXVDataBaseUtil::ListaMembros(this, m_eModulo, m_sNomeArquivo, &listaMembros));
    for (const auto& [uiChave, sNome] : listaMembros) {
        std::unique_ptr<IXVFileBase> pNovo = NewFile(sNome, m_pDataBase);
        std::unique_ptr<IXVFileBase>& pXVFile = m_mapFiles[uiChave];
        pXVFile = std::move(pNovo);
        if (m_bControleDesabilitado) pXVFile->DesabilitaControleCriacaoArquivos();
        if (!m_bAdiaInicializacao) XV_CHECK(pXVFile->Inicializa(this));
    }
    return S_OK;
}

HRESULT CXVGroupFileBase::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    HRESULT hrPrimeira = S_OK;
    {
        const std::unique_lock lock(m_Lock);
        for (const auto& it : m_mapFiles) {
            const HRESULT hr = XV_REGISTRA(it.second->Finaliza());
            hrPrimeira = XVPrimeiraFalha(hrPrimeira, hr);
        }
        EsqueceMembros();
    }
    const HRESULT hrBase = XV_REGISTRA_SUPER(IXVFileBase, OnFinaliza());
    return XVPrimeiraFalha(hrPrimeira, hrBase);
}

HRESULT CXVGroupFileBase::LookupMapFiles(XVUInt64 uiChaveNomeArquivo, IXVFileBase*& pXVFileInterface,
                                         bool bObrigatorio) {
    const auto it = m_mapFiles.find(uiChaveNomeArquivo);
    pXVFileInterface = it == m_mapFiles.end() ? nullptr : it->second.get();
    if (pXVFileInterface != nullptr || !bObrigatorio) return S_OK;
    if (m_pDataBase->GetVisao() != nullptr) XV_CHECK(ProcuraMembroNovo(uiChaveNomeArquivo, pXVFileInterface));
    if (pXVFileInterface != nullptr) return S_OK;
    std::string sPathArquivo;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(),
                                             XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, m_sNomeArquivo),
                                             &sPathArquivo));
    return XVArquivoRecusado::Anota(E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO, sPathArquivo, this);
}

// A member that somebody has made since a viewer looked into the directory.
HRESULT CXVGroupFileBase::ProcuraMembroNovo(XVUInt64 uiChaveNomeArquivo, IXVFileBase*& pXVFileInterface) {
    const std::string sNome = XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, m_sNomeArquivo);
    const CXVArquivoVisto arquivo(*m_pDataBase->GetVisao(), sNome);
    SAreaVista area;
    if (const CXVErroArquivo erro = arquivo.GetArea(&area); !erro.Ok()) {
        std::string sPath;
        XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), sNome, &sPath));
        XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sPath, this));
    }
    if (!area.bExiste) return S_OK;
    std::unique_ptr<IXVFileBase> pNovo = CriaMembro(uiChaveNomeArquivo);
    pXVFileInterface = pNovo.get();
    m_mapFiles[uiChaveNomeArquivo] = std::move(pNovo);
    return S_OK;
}

std::unique_ptr<IXVFileBase> CXVGroupFileBase::CriaMembro(XVUInt64 uiChaveNomeArquivo) {
    auto pXVFile = NewFile(XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, m_sNomeArquivo), m_pDataBase);
    if (m_bControleDesabilitado) pXVFile->DesabilitaControleCriacaoArquivos();
    return pXVFile;
}

HRESULT CXVGroupFileBase::GetQtdRegistros(XVUInt64 uiChaveNomeArquivo, XVUInt64* puiQuantidade) {
    *puiQuantidade = 0;
    const std::shared_lock lock(m_Lock);
    IXVFileBase* pXVFileInterface = nullptr;
    XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface));
    *puiQuantidade = ContaRegistros(*pXVFileInterface);
    return S_OK;
}

std::vector<XVUInt64> CXVGroupFileBase::GetChaves() const {
    const std::shared_lock lock(m_Lock);
    std::vector<XVUInt64> listaChaves;
    for (const auto& [uiChave, pMembro] : m_mapFiles) listaChaves.push_back(uiChave);
    return listaChaves;
}

XVUInt64 CXVGroupFileBase::GetTamanho() const {
    const std::shared_lock lock(m_Lock);
    XVUInt64 uiTotal = 0;
    for (const auto& it : m_mapFiles) uiTotal += it.second->GetTamanho();
    return uiTotal;
}

HRESULT CXVGroupFileBase::DeletaArquivo() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    const std::unique_lock lock(m_Lock);
    for (const auto& it : m_mapFiles) {
        it.second->SetProfiler(*this);  // a member that was never opened has nobody's company yet
        XV_CHECK(it.second->DeletaArquivo());
    }
    EsqueceMembros();
    return S_OK;
}

void CXVGroupFileBase::DesabilitaControleCriacaoArquivos() {
    const std::unique_lock lock(m_Lock);
    m_bControleDesabilitado = true;
    for (const auto& it : m_mapFiles) it.second->DesabilitaControleCriacaoArquivos();
}

std::vector<XVUInt64> CXVGroupFileBase::GetChavesAbaixoDe(XVUInt64 uiChaveNomeArquivo,
                                                          std::size_t uiMaximo) const {
    const std::shared_lock lock(m_Lock);
    std::vector<XVUInt64> listaChaves;
    for (auto it = m_mapFiles.lower_bound(uiChaveNomeArquivo);
         it != m_mapFiles.begin() && listaChaves.size() < uiMaximo;)
        listaChaves.push_back((--it)->first);
    return listaChaves;
}
