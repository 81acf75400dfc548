#include "middleware/verificacao/XVLojaNova.h"

#include <algorithm>

#include "contract/XVCR_Enumeracoes.h"
#include "core/xvdatabase/XVMarcas.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/BaseMiddleware.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/verificacao/XVExameDia.h"
#include "middleware/verificacao/XVLeituraLoja.h"
#include "platform/XVPlataforma.h"
#include "platform/XVTentativas.h"

namespace {

using ETipo = SIntegracaoTransportada::ETipo;

using ECabecalho = CXVEscritaRecuperada::ECabecalho;

const std::string k_sControle(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS);
constexpr const char* k_pszCopia = ".tra";

template <class T>
std::string_view Bytes(const T& reg) {
    return {reinterpret_cast<const char*>(&reg), sizeof(reg)};
}

}  // namespace

CXVLojaNova::CXVLojaNova(std::string sDiretorio, const IXVDF_Profiler& rDono)
    : m_sDiretorio(std::move(sDiretorio)), m_rDono(rDono) {}

CXVLojaNova::~CXVLojaNova() {
    if (m_bComecou) Desfaz();
}

HRESULT CXVLojaNova::Comeca() {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const std::string sMarca = XVMarcas::Nome(XV_DF, IXVArqMarcaEnum::ControleCriacaoArquivosInMemory);
    CXVErroArquivo erro = rSistema.CriaDiretorio(m_sDiretorio);
    // Of two that find the directory empty at the same time one makes the store; the other one finds its
    // list.
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    if (erro.Ok()) erro = XVTentaMarca(k_iTentativasLongas, m_sDiretorio, sMarca, pMarca);
    std::vector<std::string> listaNomes;
    if (erro.Ok()) erro = rSistema.Lista(m_sDiretorio, "*", listaNomes);
    if (!erro.Ok()) return XVNotaCaminho(XVCodigoArquivo(erro), m_sDiretorio);
    const auto bDeServico = [&](const std::string& rNome) {
        return rNome == sMarca || XVEmMinusculas(rNome).ends_with(".log");
    };
    if (!std::all_of(listaNomes.begin(), listaNomes.end(), bDeServico)) return S_FALSE;
    m_bComecou = true;
    // First of all what keeps others away: a list that names an index, and that there is none yet.
    const HRESULT hr = GravaControle({k_pszArquivoVersao});
    return SUCCEEDED(hr) ? GravaVersao() : hr;
}

bool CXVLojaNova::Segue(const SIntegracaoTransportada& rIntegracao) const {
    const REG_XVDMC regDmc = rIntegracao.dados.regDmc;
    if (!m_bComecou || !XVPodeSerImportada(rIntegracao)) return false;
    return regDmc.GetDma() == m_dma ? m_ulRegistros + 1 == regDmc.GetPonteiro()
                                    : regDmc.GetDma() > m_dma && regDmc.GetPonteiro() == 1;
}

// Whether another integration of the bank has its key already; notes it otherwise.
bool CXVLojaNova::TemChaveDoBanco(const CXVDadosCR_IntegracaoMiddleware& rDados) {
    const XVUInt64 uiChave = rDados.uiChaveIntegracaoSistemaTerceiro;
    return rDados.eSistemaIntegracao == OfficialBank && uiChave != 0 &&
           !m_chavesDoBanco.insert(uiChave).second;
}

HRESULT CXVLojaNova::Inclui(const SIntegracaoTransportada& rIntegracao) {
    const CXVDadosCR_IntegracaoMiddleware& rDados = rIntegracao.dados;
    if (!Segue(rIntegracao)) return S_FALSE;
    if (rIntegracao.eTipo == ETipo::eInteira && TemChaveDoBanco(rDados)) return S_FALSE;
    HRESULT hr = rDados.regDmc.GetDma() == m_dma ? S_OK : ComecaDia(rDados.regDmc.GetDma());
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg{};
    if (rIntegracao.eTipo != ETipo::eVaga) {
        reg = CBaseMiddleware::MontaRegistro(rDados.ComoRegistro());
        const std::string* const apsTextos[k_uiTextos] = {&rDados.sRegistroJSON, &rDados.sMensagemIntegracao,
                                                          &rDados.sJSONRetornoIntegracao};
        XVUInt aulPosicoes[k_uiTextos] = {};
        for (std::size_t i = 0; i < k_uiTextos && SUCCEEDED(hr); ++i)
            hr = GravaTexto(i, *apsTextos[i], &aulPosicoes[i]);
        reg.ulPonteiroJSONRegistro = aulPosicoes[0];
        reg.ulPonteiroMensagemRetorno = aulPosicoes[1];
        reg.ulPonteiroJSONRetornoIntegracao = aulPosicoes[2];
    }
    if (SUCCEEDED(hr)) hr = m_pRegistros->Grava(Bytes(reg));
    if (FAILED(hr)) return hr;
    ++m_ulRegistros;
    if (rIntegracao.eTipo == ETipo::eInteira)
        m_listaIndice.push_back({CBaseMiddleware::MontaIndice(rDados), rIntegracao.ulPosicaoIndice});
    return S_OK;
}

HRESULT CXVLojaNova::ComecaDia(REG_XVDMA dma) {
    const HRESULT hr = ConcluiDia();
    if (FAILED(hr)) return hr;
    m_dma = dma;
    m_ulRegistros = 0;
    m_aulTextos = {};
    return CriaArquivo(XVNomeArquivo::ChaveParaNome(dma.ToChave(), k_pszArquivoIntegracao), &m_pRegistros);
}

// An empty text is none, and a file without texts is not made.
HRESULT CXVLojaNova::GravaTexto(std::size_t uiQual, const std::string& sTexto, XVUInt* pulPosicao) {
    if (sTexto.empty()) return S_OK;
    auto& rpEscrita = m_aTextos[uiQual];
    HRESULT hr = S_OK;
    if (rpEscrita == nullptr)
        hr = CriaArquivo(XVNomeArquivo::ChaveParaNome(m_dma.ToChave(), k_apszGruposDeTextos[uiQual]),
                         &rpEscrita);
    if (SUCCEEDED(hr)) hr = rpEscrita->GravaTexto(sTexto);
    *pulPosicao = ++m_aulTextos[uiQual];
    return hr;
}

HRESULT CXVLojaNova::ConcluiDia() {
    HRESULT hr = m_pRegistros == nullptr ? S_OK : ConcluiArquivo(m_pRegistros);
    for (auto& rpTextos : m_aTextos)
        if (SUCCEEDED(hr) && rpTextos != nullptr) hr = ConcluiArquivo(rpTextos);
    return hr;
}

HRESULT CXVLojaNova::Conclui() {
    if (!m_bComecou) return S_OK;
    HRESULT hr = ConcluiDia();
    if (SUCCEEDED(hr)) hr = GravaControle(m_listaArquivos);
    if (SUCCEEDED(hr)) hr = GravaIndice();
    if (SUCCEEDED(hr))
        hr = XVCodigoArquivo(XVPlataforma::SistemaArquivos().SincronizaDiretorio(m_sDiretorio));
    m_bComecou = FAILED(hr);
    return hr;
}

// The files that were made, and the index, which is made last. The list is replaced as a whole: at no moment
// is there one that does not name the index.
HRESULT CXVLojaNova::GravaControle(std::vector<std::string> listaNomes) {
    std::erase(listaNomes, k_sControle);
    listaNomes.emplace_back(k_pszArquivoIndexIntegracao);
    return PoeDeUmaVez(k_sControle, ECabecalho::eSem, [&](CXVEscritaRecuperada& rEscrita) {
        HRESULT hr = S_OK;
        for (auto it = listaNomes.begin(); it != listaNomes.end() && SUCCEEDED(hr); ++it)
            hr = rEscrita.GravaTexto(*it);
        return hr;
    });
}

template <class FEscreve>
HRESULT CXVLojaNova::PoeDeUmaVez(const std::string& sNome, ECabecalho eCabecalho, FEscreve fnEscreve) {
    const std::string sCopia = sNome + k_pszCopia;
    CXVEscritaRecuperada escrita(m_sDiretorio, sNome, eCabecalho, sCopia);
    HRESULT hr = escrita.Abre();
    if (SUCCEEDED(hr)) hr = fnEscreve(escrita);
    if (SUCCEEDED(hr)) hr = escrita.Conclui(m_rDono, k_usVersaoArquivoInicial);
    if (FAILED(hr)) return hr;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    m_listaArquivos.push_back(sNome);
    return XVNotaCaminho(XVCodigoArquivo(rSistema.Substitui(rSistema.Junta(m_sDiretorio, sCopia),
                                                            rSistema.Junta(m_sDiretorio, sNome))),
                         m_sDiretorio, sNome);
}

HRESULT CXVLojaNova::GravaVersao() {
    REG_CR_MIDDLEWARE_VERSAO reg{};
    reg.usVersao = k_usVersaoAtualBase;
    std::unique_ptr<CXVEscritaRecuperada> pEscrita;
    HRESULT hr = CriaArquivo(k_pszArquivoVersao, &pEscrita);
    if (SUCCEEDED(hr)) hr = pEscrita->Grava(Bytes(reg));
    return SUCCEEDED(hr) ? pEscrita->Conclui(m_rDono, reg.usVersao) : hr;
}

// In the order of the store that they come from, without the gaps that it may have. An empty index would
// open as a store without integrations, so the file gets its name when it is whole.
HRESULT CXVLojaNova::GravaIndice() {
    std::stable_sort(m_listaIndice.begin(), m_listaIndice.end(),
                     [](const SNoIndice& a, const SNoIndice& b) { return a.ulPosicao < b.ulPosicao; });
    return PoeDeUmaVez(k_pszArquivoIndexIntegracao, ECabecalho::eCom, [this](CXVEscritaRecuperada& rEscrita) {
        HRESULT hr = S_OK;
        for (auto it = m_listaIndice.begin(); it != m_listaIndice.end() && SUCCEEDED(hr); ++it)
            hr = rEscrita.Grava(Bytes(it->reg));
        return hr;
    });
}

HRESULT CXVLojaNova::CriaArquivo(const std::string& sNome, std::unique_ptr<CXVEscritaRecuperada>* ppEscrita) {
    *ppEscrita = std::make_unique<CXVEscritaRecuperada>(m_sDiretorio, sNome, ECabecalho::eCom);
    m_listaArquivos.push_back(sNome);
    return (*ppEscrita)->Abre();
}

HRESULT CXVLojaNova::ConcluiArquivo(std::unique_ptr<CXVEscritaRecuperada>& rpEscrita) {
    const HRESULT hr = rpEscrita->Conclui(m_rDono, k_usVersaoArquivoInicial);
    rpEscrita.reset();
    return hr;
}

void CXVLojaNova::Desfaz() {
    m_pRegistros.reset();
    for (auto& rpTextos : m_aTextos) rpTextos.reset();
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    for (const std::string& rNome : {k_sControle, std::string(k_pszArquivoIndexIntegracao)})
        m_listaArquivos.push_back(rNome + k_pszCopia);
    for (const std::string& rNome : m_listaArquivos)
        static_cast<void>(rSistema.Apaga(rSistema.Junta(m_sDiretorio, rNome)));
}
