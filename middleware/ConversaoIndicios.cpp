#include "middleware/ConversaoIndicios.h"

#include <utility>
#include <vector>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/ConversaoDiario.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"

template <class T>
HRESULT CXVIndiciosVersao::SaoPossiveis(const std::string& sPath, const SArquivoConversao& rArquivo,
                                        bool* pbPossiveis) {
    *pbPossiveis = false;
    std::unique_ptr<IXVArquivo> pArquivo;
    XV_CHECK(XVConversaoArquivo::Abre(this, sPath, &pArquivo));
    if (pArquivo == nullptr) return S_OK;
    const CXVErroArquivo erro = XVConfereRegistros<T>(
        rArquivo.uiTamanhoDados, pbPossiveis, [&](XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) {
            return pArquivo->Le(rArquivo.uiSeek + uiOffset, pDados, uiTamanho);
        });
    if (!erro.Ok()) XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sPath, this));
    return S_OK;
}

// Content that is possible in neither layout proves nothing; the step that meets it refuses it.
template <class TPrimeiro, class TPosterior>
HRESULT CXVIndiciosVersao::ConfereLeiaute(const std::string& sPath, const SArquivoConversao& rArquivo) {
    bool bPrimeiro = false;
    bool bPosterior = false;
    XV_CHECK(SaoPossiveis<TPrimeiro>(sPath, rArquivo, &bPrimeiro));
    XV_CHECK(SaoPossiveis<TPosterior>(sPath, rArquivo, &bPosterior));
    if (bPosterior && !bPrimeiro)
        XV_CHECK(Recusa(sPath, "Base sem arquivo de versão com registros de versão posterior",
                        "Versão anterior à dos registros dos arquivos"));
    m_bPrimeiroLeiaute |= bPrimeiro && !bPosterior;
    return S_OK;
}

HRESULT CXVIndiciosVersao::Recusa(const std::string& sPath, const char* pszSemVersao,
                                  const char* pszComVersao) {
    if (m_usVersao == 0) return XVConversaoArquivo::Recusa(this, sPath, pszSemVersao);
    std::string sPathVersao;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), k_pszArquivoVersao, &sPathVersao));
    return XVConversaoArquivo::Recusa(this, sPathVersao, pszComVersao);
}

HRESULT CXVIndiciosVersao::ConfereArquivo(const std::string& sNome) {
    std::string sPath;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), sNome, &sPath));
    SArquivoConversao arquivo;
    XV_CHECK(XVConversaoArquivo::Descreve(this, sPath, sNome, &arquivo));
    if (arquivo.usCarimbo > m_usMaiorCarimbo)
        XV_CHECK(Recusa(sPath, "Base sem arquivo de versão com arquivo de versão posterior",
                        "Versão anterior à que um passo da conversão deixou num arquivo"));
    if (arquivo.uiTamanhoDados == 0) return S_OK;
    m_bTemDados = true;
    // The steps that gave the two kinds of records their present layout; one under way may have done so.
    constexpr XVUShort k_usPassoChaves = 2;
    constexpr XVUShort k_usPassoIntegracoes = 3;
    const auto primeiroLeiaute = [this](XVUShort usPasso) {
        return m_usVersao + (m_bConversaoEmCurso ? 1 : 0) < usPasso;
    };
    if (sNome == k_pszArquivoChaveRegistroParaTerceiro && primeiroLeiaute(k_usPassoChaves))
        return ConfereLeiaute<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1,
                              REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>(sPath, arquivo);
    if (XVNomeArquivo::NomeParaChave(sNome, k_pszArquivoIntegracao) && primeiroLeiaute(k_usPassoIntegracoes))
        return ConfereLeiaute<REG_CR_INTEGRACAO_MIDDLEWARE_V1, REG_CR_INTEGRACAO_MIDDLEWARE_V2>(sPath,
                                                                                                arquivo);
    return S_OK;
}

HRESULT CXVIndiciosVersao::ConfereGrupo(const char* pszPadrao) {
    std::vector<std::pair<XVUInt64, std::string>> listaMembros;
    XV_CHECK(CXVDataBaseUtil::ListaMembros(this, XV_DF, pszPadrao, &listaMembros));
    for (const auto& membro : listaMembros) XV_CHECK(ConfereArquivo(membro.second));
    return S_OK;
}

HRESULT CXVIndiciosVersao::ConfereTodos() {
    m_bTemDados = false;
    m_bPrimeiroLeiaute = false;
    for (const char* pszNome : k_apszArquivosUnicos) XV_CHECK(ConfereArquivo(pszNome));
    for (const char* pszPadrao : k_apszGrupos) XV_CHECK(ConfereGrupo(pszPadrao));
    return S_OK;
}

HRESULT CXVIndiciosVersao::ConfereVersaoAnterior(XVUShort usVersao) {
    std::string sPathDiario;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), k_pszDiarioConversao, &sPathDiario));
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathDiario, &m_bConversaoEmCurso));
    m_usVersao = usVersao;
    m_usMaiorCarimbo = static_cast<XVUShort>(usVersao + (m_bConversaoEmCurso ? 1 : 0));
    return ConfereTodos();
}

HRESULT CXVIndiciosVersao::ConfereVersaoZero() {
    m_bTemDados = false;
    m_usVersao = 0;
    m_usMaiorCarimbo = k_usVersaoArquivoInicial;
    m_bConversaoEmCurso = false;
    std::string sDiretorio;
    XV_CHECK(CXVDataBaseUtil::GetPathDados(XV_DF, GetEmpresa(), &sDiretorio));
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sDiretorio, &bExiste));
    if (!bExiste) return S_OK;
    XV_CHECK(ConfereTodos());
    if (!m_bTemDados || m_bPrimeiroLeiaute) return S_OK;
    std::string sPathVersao;
    std::string sPathControle;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), k_pszArquivoVersao, &sPathVersao));
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(
        XV_DF, GetEmpresa(), XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS, &sPathControle));
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathControle, &bExiste));
    if (!bExiste)
        XV_CHECK(XVConversaoArquivo::Recusa(this, sPathVersao,
                                            "Arquivo de versão e controle ausentes numa base com dados"));
    return S_OK;
}
