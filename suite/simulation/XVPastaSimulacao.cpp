#include "suite/simulation/XVPastaSimulacao.h"

#include <algorithm>
#include <atomic>
#include <limits>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "platform/XVTentativas.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr const char* k_pszContador = "contador.doc";

// Repeats an operation while another thread or process has the file or the mark.
template <class TOperacao>
CXVErroArquivo ComTentativas(TOperacao operacao) {
    return XVTentaEnquantoOcupado(k_iTentativasLongas, operacao);
}

bool TemExtensao(std::string_view sNome, std::string_view sExtensao) {
    return sNome.size() > sExtensao.size() + 1 && sNome.ends_with(sExtensao) &&
           sNome[sNome.size() - sExtensao.size() - 1] == '.';
}

// No two writers of any process share one.
std::string NomeTemporario() {
    static std::atomic<XVUInt> s_ulNumero{0};
    return std::to_string(XVAmbienteSO::GetIdProcesso()) + "-" + std::to_string(++s_ulNumero) + ".novo";
}

HRESULT GravaArquivo(const std::string& sCaminho, const std::string& sBytes) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = rSistema.Abre(sCaminho,
                                        {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo,
                                         ECriacaoArquivo::eCriaSeAusente},
                                        pArquivo);
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    erro = pArquivo->SetTamanho(0);  // left over by a process that died and whose number came again
    if (erro.Ok()) erro = pArquivo->Grava(0, sBytes.data(), sBytes.size());
    if (erro.Ok()) erro = pArquivo->Sincroniza();
    return XVCodigoArquivo(erro);
}

}  // namespace

HRESULT CXVPastaSimulacao::Abre() {
    std::string sDiretorio;
    XV_CHECK_DONO(&m_rDono, CAmbienteXV::GetPathDados(XV_DF, m_rDono.GetEmpresa(), &sDiretorio));
    m_sPasta = XVPlataforma::SistemaArquivos().Junta(sDiretorio, "simulacao");
    return S_OK;
}

HRESULT CXVPastaSimulacao::Cria() const {
    XV_CHECK_DONO(&m_rDono, XVCodigoArquivo(XVPlataforma::SistemaArquivos().CriaDiretorio(m_sPasta)));
    return S_OK;
}

std::string CXVPastaSimulacao::Caminho(std::string_view sPasta, std::string_view sNome) const {
    const IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    return rSistema.Junta(sPasta.empty() ? m_sPasta : rSistema.Junta(m_sPasta, sPasta), sNome);
}

HRESULT CXVPastaSimulacao::Lista(std::string_view sPasta, std::string_view sExtensao,
                                 std::vector<std::string>* pLista) const {
    pLista->clear();
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const std::string sDiretorio = sPasta.empty() ? m_sPasta : rSistema.Junta(m_sPasta, sPasta);
    if (rSistema.Existe(sDiretorio) == EExistencia::eAusente) return S_OK;
    XV_CHECK_DONO(&m_rDono,
                  XVCodigoArquivo(rSistema.Lista(sDiretorio, "*." + std::string(sExtensao), *pLista)));
    std::erase_if(*pLista, [sExtensao](const std::string& s) { return !TemExtensao(s, sExtensao); });
    std::sort(pLista->begin(), pLista->end());
    return S_OK;
}

HRESULT CXVPastaSimulacao::LeInicio(const std::string& sCaminho, XVUInt64 uiMaximo, bool bInteiro,
                                    std::string* psBytes) const {
    psBytes->clear();
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = ComTentativas([&] {
        return XVPlataforma::SistemaArquivos().Abre(
            sCaminho,
            {EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
             ECriacaoArquivo::eSomenteExistente},
            pArquivo);
    });
    const ECausaArquivo eCausa = erro.GetCausa();
    if (eCausa == ECausaArquivo::eArquivoNaoEncontrado || eCausa == ECausaArquivo::eCaminhoInvalido)
        return XVCodigoArquivo(erro);
    XV_CHECK_DONO(&m_rDono, XVCodigoArquivo(erro));
    XVUInt64 uiTamanho = 0;
    XV_CHECK_DONO(&m_rDono, XVCodigoArquivo(pArquivo->GetTamanho(uiTamanho)));
    if (uiTamanho > uiMaximo && bInteiro) return Recusa(sCaminho, "arquivo grande demais");
    psBytes->resize(static_cast<std::size_t>(std::min(uiTamanho, uiMaximo)));
    if (psBytes->empty()) return S_OK;
    XV_CHECK_DONO(&m_rDono, XVCodigoArquivo(pArquivo->Le(0, psBytes->data(), psBytes->size())));
    return S_OK;
}

HRESULT CXVPastaSimulacao::LeBytes(std::string_view sPasta, std::string_view sNome, XVUInt64 uiMaximo,
                                   std::string* psBytes) const {
    return LeInicio(Caminho(sPasta, sNome), uiMaximo, true, psBytes);
}

HRESULT CXVPastaSimulacao::Le(std::string_view sPasta, std::string_view sNome,
                              CXVDocumentoSimulacao* pDocumento) const {
    std::string sBytes;
    const HRESULT hr = LeBytes(sPasta, sNome, k_uiMaximoArquivo, &sBytes);
    if (FAILED(hr)) return hr;
    std::string sErro;
    return pDocumento->Interpreta(sBytes, &sErro) ? S_OK : Recusa(sNome, sErro);
}

HRESULT CXVPastaSimulacao::LeCampos(std::string_view sNome, CXVDocumentoSimulacao* pDocumento) const {
    std::string sBytes;
    const HRESULT hr =
        LeInicio(Caminho("", sNome), CXVDocumentoSimulacao::k_uiMaximoCabecalho, false, &sBytes);
    if (FAILED(hr)) return hr;
    std::string sErro;
    return pDocumento->Interpreta(sBytes, &sErro) ? S_OK : Recusa(sNome, sErro);
}

HRESULT CXVPastaSimulacao::Grava(std::string_view sNome, const CXVDocumentoSimulacao& rDocumento) const {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const std::string sTemporario = Caminho("", NomeTemporario());
    HRESULT hr = XV_REGISTRA_DONO(&m_rDono, GravaArquivo(sTemporario, rDocumento.Monta()));
    if (SUCCEEDED(hr))
        hr = XV_REGISTRA_DONO(&m_rDono, XVCodigoArquivo(ComTentativas([&] {
            return rSistema.Substitui(sTemporario, Caminho("", sNome));
        })));
    if (FAILED(hr)) rSistema.Apaga(sTemporario).Ignora();
    return hr;
}

HRESULT CXVPastaSimulacao::LeContador(XVUInt64* puiChave) const {
    *puiChave = 0;
    CXVDocumentoSimulacao documento;
    const HRESULT hr = Le("", k_pszContador, &documento);
    if (hr == eFileNotFound) return S_OK;
    if (FAILED(hr)) return hr;
    CXVLeitorCampos leitor(documento);
    *puiChave = leitor.Numero("Ultima", std::numeric_limits<XVUInt64>::max()).value_or(0);
    std::string sErro;
    return leitor.Termina(&sErro) ? S_OK : Recusa(k_pszContador, sErro);
}

HRESULT CXVPastaSimulacao::EmiteChave(XVUInt64* puiChave) const {
    *puiChave = 0;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    XV_CHECK_DONO(&m_rDono, XVCodigoArquivo(ComTentativas(
                                [&] { return rSistema.MarcaDiretorio(m_sPasta, "contador", pMarca); })));
    XVUInt64 uiChave = 0;
    XV_CHECK_DONO(&m_rDono, LeContador(&uiChave));
    EExistencia eExistencia = EExistencia::eAusente;
    do {
        if (uiChave == std::numeric_limits<XVUInt64>::max()) return Recusa(k_pszContador, "chaves esgotadas");
        ++uiChave;
        eExistencia = rSistema.Existe(Caminho("", NomeDocumento(uiChave)));
        if (eExistencia == EExistencia::eSemAcesso)
            XV_CHECK_DONO(&m_rDono, XVCodigoArquivo({ECausaArquivo::eAcessoNegado, 0}));
    } while (eExistencia != EExistencia::eAusente);
    CXVDocumentoSimulacao contador;
    contador.Inclui("Ultima", uiChave);
    XV_CHECK_DONO(&m_rDono, Grava(k_pszContador, contador));
    *puiChave = uiChave;
    return S_OK;
}

HRESULT CXVPastaSimulacao::Recusa(std::string_view sNome, const std::string& sMotivo) const {
    XVProfiler::RecordError(&m_rDono, "CXVPastaSimulacao::Recusa", XVNomeFonte(), __LINE__,
                            "Documento de simulação recusado: \"%.*s\": %s", static_cast<int>(sNome.size()),
                            sNome.data(), sMotivo.c_str());
    return k_hrDocumentoInvalido;
}
