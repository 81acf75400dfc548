#include "core/xvdatabase/XVImagemArquivo.h"

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"

namespace {
constexpr std::size_t k_uiTamanhoBuffer = 1U << 20;
}

CXVImagemArquivo::~CXVImagemArquivo() {
    XVIgnora(Finaliza());
}

HRESULT CXVImagemArquivo::OnFinaliza() {
    m_pArquivo.reset();
    if (m_bPropria) {
        m_bPropria = false;
        XVPlataforma::SistemaArquivos().Apaga(m_sPathArquivo).Ignora();
    }
    return S_OK;
}

HRESULT CXVImagemArquivo::Falha(const CXVErroArquivo& rErro, const char* pszOperacao) {
    const SCodigoArquivo codigo = XVCodigosArquivo::DeExcecao(rErro.GetCausa());
    return XVArquivoRecusado::Anota(
        CheckHr(codigo.hr, pszOperacao, XVNomeClasse(), XVNomeFonte(), __LINE__, this), m_sPathArquivo, this);
}

HRESULT CXVImagemArquivo::AbreArquivo() {
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), m_sNomeArquivo, &m_sPathArquivo));
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaEscrita,
                                          ECriacaoArquivo::eCriaSeAusente};
    if (const CXVErroArquivo erro =
            XVPlataforma::SistemaArquivos().Abre(m_sPathArquivo, k_abertura, m_pArquivo);
        !erro.Ok())
        return Falha(erro, "AbreArquivo");
    m_bPropria = true;
    if (const CXVErroArquivo erro = m_pArquivo->SetTamanho(0); !erro.Ok()) return Falha(erro, "SetTamanho");
    m_uiOffset = 0;
    m_sBuffer.clear();
    return S_OK;
}

HRESULT CXVImagemArquivo::Grava(const void* pDados, std::size_t uiTamanho) {
    if (m_sBuffer.size() + uiTamanho > k_uiTamanhoBuffer) XV_CHECK(Descarrega());
    if (uiTamanho < k_uiTamanhoBuffer) {
        m_sBuffer.append(static_cast<const char*>(pDados), uiTamanho);
        return S_OK;
    }
    if (const CXVErroArquivo erro = m_pArquivo->Grava(m_uiOffset, pDados, uiTamanho); !erro.Ok())
        return Falha(erro, "Grava");
    m_uiOffset += uiTamanho;
    return S_OK;
}

HRESULT CXVImagemArquivo::Descarrega() {
    if (m_sBuffer.empty()) return S_OK;
    if (const CXVErroArquivo erro = m_pArquivo->Grava(m_uiOffset, m_sBuffer.data(), m_sBuffer.size());
        !erro.Ok())
        return Falha(erro, "Grava");
    m_uiOffset += m_sBuffer.size();
    m_sBuffer.clear();
    return S_OK;
}

HRESULT CXVImagemArquivo::Conclui() {
    XV_CHECK(Descarrega());
    if (const CXVErroArquivo erro = m_pArquivo->Sincroniza(); !erro.Ok()) return Falha(erro, "Sincroniza");
    m_pArquivo.reset();
    return S_OK;
}
