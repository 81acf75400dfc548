// CXVRecuperacao: what is not of a day.
#include <algorithm>
#include <set>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVEscritaRecuperada.h"
#include "middleware/verificacao/XVInicioArquivo.h"
#include "middleware/verificacao/XVPedacosEmRegistros.h"
#include "middleware/verificacao/XVRecuperacao.h"
#include "middleware/verificacao/XVTextosDoControle.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {

template <class T>
std::string_view Bytes(const T& reg) {
    return {reinterpret_cast<const char*>(&reg), sizeof(reg)};
}

}  // namespace

HRESULT CXVRecuperacao::Conclui(CXVEscritaRecuperada& rEscrita) {
    m_listaArquivos.push_back(rEscrita.GetNome());
    return rEscrita.Conclui(m_rDono, k_usVersaoArquivoInicial);
}

// What is missing as a whole or at its end; nothing else tells it of the key map, the date-times and of days
// that the index lost too.
void CXVRecuperacao::ProcuraIncompletos() {
    std::vector<std::string> listaNomes;
    bool bPartida = false;
    AnotaIlegivel(std::string(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS),
                  XVTextosDoControle::Le(m_leitura, &listaNomes, &bPartida));
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes()) listaNomes.push_back(sNome);
    std::set<std::string> vistos;
    for (const std::string& rNome : listaNomes) {
        // What the version file says is known by now.
        if (XVIgualSemCaixa(rNome, k_pszArquivoVersao) || !vistos.insert(XVEmMinusculas(rNome)).second)
            continue;
        SArquivoLoja arquivo;
        if (FAILED(m_leitura.Descreve(rNome, &arquivo))) continue;
        const bool bCurto = arquivo.bCabecalho && arquivo.uiTamanho < arquivo.regB.uiTamanhoDados;
        if (!arquivo.bExiste || bCurto) m_pRecuperacao->listaIncompletos.push_back(rNome);
    }
}

// The records that can be one, in their order; the others are put aside.
template <class T>
HRESULT CXVRecuperacao::RecuperaLancamentos(const char* pszNome, XVUInt ulColunas) {
    SArquivoLoja arquivo;
    if (Descreve(pszNome, &arquivo) != S_OK || !arquivo.bExiste) return S_OK;
    if (XVEhDeOutroPrograma(arquivo.hr)) return XVNotaCaminho(arquivo.hr, m_pastas.sOrigem, pszNome);
    XVDecideInicioDosRegistros<T>(m_leitura, &arquivo);
    const CXVDataBase_CR_Middleware esquema;
    std::vector<T> aBons;
    std::vector<XVUInt64> aRuins;
    TXVPedacosEmRegistros<T> pedacos;
    CXVBuracos buracos;
    const auto examina = [&](const T& reg, bool) {
        const XVUInt64 uiDe = (aBons.size() + aRuins.size()) * sizeof(T);
        bool bBom = !buracos.Toca(uiDe, uiDe + sizeof(T)) && TXVPlausibilidade<T>::EhPlausivel(reg);
        for (XVUInt ul = 0; ul < ulColunas; ++ul) bBom = bBom && esquema.GetChaveIndex(reg, ul) != 0;
        if (bBom)
            aBons.push_back(reg);
        else
            aRuins.push_back(uiDe);
    };
    if (arquivo.hr != E_XVCR_NOME_ARQUIVO_NAO_CONFERE && !arquivo.bInicioIncerto)
        AnotaIlegivel(pszNome, m_leitura.Percorre(
                                   arquivo, arquivo.uiTamanho,
                                   [&](XVUInt64, std::span<const char> aBytes) {
                                       pedacos.Toma(aBytes, false, examina);
                                   },
                                   &buracos));
    HRESULT hr = SeparaRegistros(arquivo, aRuins, sizeof(T));
    if (FAILED(hr)) return hr;
    hr = Separa(arquivo, (aBons.size() + aRuins.size()) * sizeof(T), arquivo.uiTamanho);
    m_pRecuperacao->uiLancamentos += aBons.size();
    CXVEscritaRecuperada escrita(m_pastas.sDestino, pszNome, CXVEscritaRecuperada::ECabecalho::eCom);
    if (SUCCEEDED(hr)) hr = escrita.Abre();
    for (auto it = aBons.begin(); it != aBons.end() && SUCCEEDED(hr); ++it) hr = escrita.Grava(Bytes(*it));
    return SUCCEEDED(hr) ? Conclui(escrita) : hr;
}
template HRESULT CXVRecuperacao::RecuperaLancamentos<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>(
    const char*, XVUInt);
template HRESULT CXVRecuperacao::RecuperaLancamentos<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1>(const char*,
                                                                                              XVUInt);

// In the old order: of several integrations with one key the lowest position is the one that a status meets.
HRESULT CXVRecuperacao::GravaIndice() {
    // Days without an index would be a store that lost it, even where none of their integrations is left.
    if (m_mapaIndice.empty() && !m_arquivoIndice.bExiste && m_listaArquivos.empty()) return S_OK;
    CXVEscritaRecuperada escrita(m_pastas.sDestino, k_pszArquivoIndexIntegracao,
                                 CXVEscritaRecuperada::ECabecalho::eCom);
    HRESULT hr = escrita.Abre();
    for (auto it = m_mapaIndice.begin(); it != m_mapaIndice.end() && SUCCEEDED(hr); ++it)
        hr = escrita.Grava(Bytes(it->second));
    return SUCCEEDED(hr) ? Conclui(escrita) : hr;
}

HRESULT CXVRecuperacao::GravaVersao() {
    REG_CR_MIDDLEWARE_VERSAO reg{};
    reg.usVersao = k_usVersaoAtualBase;
    CXVEscritaRecuperada escrita(m_pastas.sDestino, k_pszArquivoVersao,
                                 CXVEscritaRecuperada::ECabecalho::eCom);
    HRESULT hr = escrita.Abre();
    if (SUCCEEDED(hr)) hr = escrita.Grava(Bytes(reg));
    return SUCCEEDED(hr) ? escrita.Conclui(m_rDono, reg.usVersao) : hr;
}

HRESULT CXVRecuperacao::GravaControle() {
    m_listaArquivos.insert(m_listaArquivos.begin(), k_pszArquivoVersao);
    CXVEscritaRecuperada escrita(m_pastas.sDestino,
                                 std::string(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS),
                                 CXVEscritaRecuperada::ECabecalho::eSem);
    HRESULT hr = escrita.Abre();
    for (auto it = m_listaArquivos.begin(); it != m_listaArquivos.end() && SUCCEEDED(hr); ++it)
        hr = escrita.GravaTexto(*it);
    return SUCCEEDED(hr) ? escrita.Conclui(m_rDono, 0) : hr;
}

// The general logs belong to the store's history; without them nothing tells keys that an index lost.
HRESULT CXVRecuperacao::CopiaLogs() {
    HRESULT hr = S_OK;
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes())
        if (SUCCEEDED(hr) && sMinusculo.starts_with("xvloggeral_") && sMinusculo.ends_with(".log"))
            hr = CopiaLog(sNome);
    return hr;
}

// All bytes of it, whatever stands in front; zeros where it cannot be read, so that no line seems whole that
// is not.
HRESULT CXVRecuperacao::CopiaLog(const std::string& sNome) {
    SArquivoLoja arquivo;
    if (Descreve(sNome, &arquivo) != S_OK) return S_OK;
    arquivo = XVInicioArquivo::APartirDe(arquivo, 0);
    CXVEscritaRecuperada escrita(m_pastas.sDestino, sNome, CXVEscritaRecuperada::ECabecalho::eSem);
    HRESULT hr = escrita.Abre();
    CXVBuracos buracos;
    AnotaIlegivel(sNome, m_leitura.Percorre(
                             arquivo, arquivo.uiTamanho,
                             [&](XVUInt64, std::span<const char> aBytes) {
                                 if (SUCCEEDED(hr)) hr = escrita.Grava({aBytes.data(), aBytes.size()});
                             },
                             &buracos));
    return SUCCEEDED(hr) ? escrita.Conclui(m_rDono, 0) : hr;
}
