#include "middleware/verificacao/XVRecuperacao.h"

#include <algorithm>
#include <cstring>

#include "contract/XVCR_Enumeracoes.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVEscritaRecuperada.h"
#include "middleware/verificacao/XVInicioArquivo.h"
#include "middleware/verificacao/XVVersaoZero.h"
#include "platform/XVCaminho.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {
// Behind every position that an index can have.
constexpr XVUInt64 k_uiDepoisDoIndice = XVUInt64{1} << 32;

std::string ComSeparador(const std::string& sDiretorio) {
    return XVPlataforma::SistemaArquivos().Junta(sDiretorio, "");
}

// Whether a directory lies, or will lie when it is made, in the one whose real path is given. Links and ".."
// lead on through directories that are there; behind one that is not, nobody knows yet.
bool FicaEm(std::string sDiretorio, const std::string& sReal) {
    std::string sLugar;
    while (!XVPlataforma::SistemaArquivos().GetCaminhoReal(sDiretorio, sLugar).Ok()) {
        const XVCaminho::SPartes partes = XVCaminho::Separa(sDiretorio, "/\\");
        if (partes.sNome == "..") return true;
        if (partes.sDiretorio == sDiretorio) break;
        sDiretorio = partes.sDiretorio;
    }
    return ComSeparador(sLugar).starts_with(ComSeparador(sReal));
}
}  // namespace

CXVRecuperacao::CXVRecuperacao(SPastas pastas, const IXVDF_Profiler& rDono, bool bVersaoAtual)
    : m_pastas(std::move(pastas)),
      m_rDono(rDono),
      m_bVersaoAtual(bVersaoAtual),
      m_leitura(m_pastas.sOrigem) {}

CXVRecuperacao::~CXVRecuperacao() = default;

HRESULT CXVRecuperacao::Executa(SRecuperacao* pRecuperacao) {
    *pRecuperacao = {};
    m_pRecuperacao = pRecuperacao;
    HRESULT hr = Prepara();
    if (FAILED(hr)) return hr;
    ProcuraIncompletos();
    hr = LeIndice();
    if (FAILED(hr)) return hr;
    XVPercorreDias(m_listaDias, m_indice.GetEntradas(),
                   [&](XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt) {
                       if (SUCCEEDED(hr)) hr = RecuperaDia(uiDia, aEntradas);
                   });
    using TMapa = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
    using TDataHora = REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1;
    if (SUCCEEDED(hr)) hr = RecuperaLancamentos<TMapa>(k_pszArquivoChaveRegistroParaTerceiro, 2);
    if (SUCCEEDED(hr)) hr = RecuperaLancamentos<TDataHora>(k_pszArquivoDataHoraIntegracao, 1);
    if (SUCCEEDED(hr)) hr = GravaIndice();
    if (SUCCEEDED(hr)) hr = CopiaLogs();
    if (SUCCEEDED(hr)) hr = GravaControle();
    if (SUCCEEDED(hr) && !pRecuperacao->listaSeparados.empty())
        hr = XVNotaCaminho(
            XVCodigoArquivo(XVPlataforma::SistemaArquivos().SincronizaDiretorio(m_pastas.sSeparados)),
            m_pastas.sSeparados);
    // Last of all: without it the new directory is no store of this version.
    if (SUCCEEDED(hr)) hr = GravaVersao();
    if (FAILED(hr)) return hr;
    return XVCodigoArquivo(XVPlataforma::SistemaArquivos().SincronizaDiretorio(m_pastas.sDestino));
}

HRESULT CXVRecuperacao::Descreve(const std::string& sNome, SArquivoLoja* pArquivo) {
    const HRESULT hr = m_leitura.Descreve(sNome, pArquivo);
    AnotaIlegivel(sNome, hr);
    return FAILED(hr) ? S_FALSE : S_OK;
}

HRESULT CXVRecuperacao::Prepara() {
    HRESULT hr = m_leitura.Abre();
    if (FAILED(hr)) return hr;
    if (m_leitura.GetDiario() == EDiario::eEmUso) return Recusa(ERecusa::eEmUso, eSharingViolation);
    hr = ConfereVersao();
    if (FAILED(hr)) return hr;
    m_leitura.m_fnProgresso = [this](const std::string&, XVUInt64 uiBytes) {
        if (m_fnProgresso) m_fnProgresso(uiBytes);
    };
    return PreparaDestino();
}

HRESULT CXVRecuperacao::PreparaDestino() {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::string sOrigem;
    const CXVErroArquivo erroOrigem = rSistema.GetCaminhoReal(m_pastas.sOrigem, sOrigem);
    if (!erroOrigem.Ok()) return XVNotaCaminho(XVCodigoArquivo(erroOrigem), m_pastas.sOrigem);
    for (const std::string* psPasta : {&m_pastas.sDestino, &m_pastas.sSeparados})
        if (FicaEm(*psPasta, sOrigem)) return Recusa(ERecusa::eDestinoNaOrigem, E_INVALIDARG);
    for (const std::string* psPasta : {&m_pastas.sSeparados, &m_pastas.sDestino}) {
        std::vector<std::string> listaNomes;
        CXVErroArquivo erro;
        if (psPasta == &m_pastas.sDestino) erro = rSistema.CriaDiretorio(*psPasta);
        if (erro.Ok()) erro = rSistema.Lista(*psPasta, "*", listaNomes);
        const bool bAusente = erro.GetCausa() == ECausaArquivo::eCaminhoInvalido ||
                              erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado;
        if (!erro.Ok() && !(bAusente && psPasta == &m_pastas.sSeparados))
            return XVNotaCaminho(XVCodigoArquivo(erro), *psPasta);
        if (!listaNomes.empty()) return Recusa(ERecusa::eDestinoOcupado, eInvalidFile);
    }
    m_bComecou = true;
    return S_OK;
}

// The record is believed where it reads as the present version, its header whole or not.
HRESULT CXVRecuperacao::ConfereVersao() {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(k_pszArquivoVersao, &arquivo);
    REG_CR_MIDDLEWARE_VERSAO reg{};
    if (SUCCEEDED(hr) && arquivo.uiTamanho == sizeof(reg))
        hr = m_leitura.Percorre(arquivo, sizeof(reg), [&](XVUInt64, std::span<const char> aBytes) {
            std::memcpy(&reg, aBytes.data(), sizeof(reg));
        });
    if (arquivo.bCabecalho && XVVersaoNaoConfere(reg, arquivo.regB.usVersaoArquivo))
        reg.usVersao = arquivo.regB.usVersaoArquivo;
    if (SUCCEEDED(hr) && reg.usVersao == k_usVersaoAtualBase) return S_OK;
    if (!XVTemDados(m_leitura)) return S_OK;
    // The first version had no such file.
    if (SUCCEEDED(hr) && SUCCEEDED(arquivo.hr) && arquivo.uiTamanho == sizeof(reg) && reg.usVersao != 0)
        return XVNotaCaminho(reg.usVersao < k_usVersaoAtualBase ? E_XVCR_VERSAO_INCOMPATIVEL
                                                                : E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA,
                             m_pastas.sOrigem, k_pszArquivoVersao);
    if (SUCCEEDED(hr) && !arquivo.bExiste && XVEhVersaoZero(m_leitura, m_pastas.sOrigem, m_rDono))
        return E_XVCR_VERSAO_INCOMPATIVEL;
    return m_bVersaoAtual ? S_OK : E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS;
}

// The index, and of every integration that it does not know what the general log tells.
HRESULT CXVRecuperacao::LeIndice() {
    // Without it every integration would come back with its place in the index lost: who may not look at it
    // is to be let, before that.
    HRESULT hr = m_leitura.Descreve(k_pszArquivoIndexIntegracao, &m_arquivoIndice);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_pastas.sOrigem, k_pszArquivoIndexIntegracao);
    if (XVEhDeOutroPrograma(m_arquivoIndice.hr))
        return XVNotaCaminho(m_arquivoIndice.hr, m_pastas.sOrigem, k_pszArquivoIndexIntegracao);
    XVDecideInicioDosRegistros<REG_CR_INDEX_INTEGRACAO_V1>(m_leitura, &m_arquivoIndice);
    constexpr XVUInt64 k_uiRegistro = sizeof(REG_CR_INDEX_INTEGRACAO_V1);
    // Under another name it may be another store's.
    if (m_arquivoIndice.hr == E_XVCR_NOME_ARQUIVO_NAO_CONFERE || m_arquivoIndice.bInicioIncerto) {
        hr = Separa(m_arquivoIndice, 0, m_arquivoIndice.uiTamanho);
    } else {
        AnotaIlegivel(m_arquivoIndice.sNome,
                      m_indice.Examina(m_leitura, m_arquivoIndice, m_arquivoIndice.uiTamanho, m_semSelos));
        const XVUInt64 uiLidos = m_indice.GetEntradas().size() + m_indice.GetImpossiveis().size();
        hr = Separa(m_arquivoIndice, uiLidos * k_uiRegistro, m_arquivoIndice.uiTamanho);
    }
    if (FAILED(hr)) return hr;
    m_bIndiceConfere = m_arquivoIndice.bExiste && SUCCEEDED(m_arquivoIndice.hr) && m_indice.GetSobra() == 0 &&
                       m_indice.GetImpossiveis().empty() && m_pRecuperacao->listaIlegiveis.empty();
    std::vector<XVUInt64> aImpossiveis;
    for (const XVUInt ulPosicao : m_indice.GetImpossiveis())
        aImpossiveis.push_back((ulPosicao - 1) * k_uiRegistro);
    hr = SeparaRegistros(m_arquivoIndice, aImpossiveis, k_uiRegistro);
    if (FAILED(hr)) return hr;
    m_listaDias = XVListaDias(m_leitura);
    std::vector<REG_XVDMC> listaSemIndice;
    XVPercorreDias(m_listaDias, m_indice.GetEntradas(),
                   [&](XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt) {
                       CXVExameDia dia(m_leitura, m_semSelos, uiDia, CXVExameDia::EAlcance::eTudo);
                       dia.ExaminaRegistros(aEntradas, ~XVUInt{0});
                       if (!dia.TemChaves()) return;
                       dia.JuntaDoBanco(aEntradas, &m_aDoBanco);
                       for (const XVUInt ulPonteiro : dia.GetSemIndice())
                           listaSemIndice.push_back(dia.GetDmc(ulPonteiro));
                       for (const XVUInt ulPonteiro : dia.GetSoNoCabecalho())
                           listaSemIndice.push_back(dia.GetDmc(ulPonteiro));
                       for (XVUInt ul = 1; ul <= dia.GetMotivos().size(); ++ul)
                           if ((dia.GetMotivos()[ul - 1] & eMotivo_IndiceRepetido) != 0)
                               listaSemIndice.push_back(dia.GetDmc(ul));
                   });
    m_log.Le(m_pastas.sOrigem, listaSemIndice, m_aDoBanco);
    return S_OK;
}

// A later integration of the bank with the same key took its place in the index; or may have, where no line
// of the log is left to say so. It stays as it was, unknown to the index. Only of an index that is whole: a
// damaged one may have lost it.
bool CXVRecuperacao::FoiSubstituida(REG_XVDMC regDmc) const {
    if (!m_bIndiceConfere) return false;
    return m_log.GetChave(regDmc) ? m_log.FoiSubstituida(regDmc) : !m_aDoBanco.empty();
}

void CXVRecuperacao::PoeNoIndice(REG_XVDMC regDmc) {
    REG_CR_INDEX_INTEGRACAO_V1 reg{};
    reg.regDmcIntegracao = regDmc;
    reg.uiChaveIntegracaoSistemaTerceiro = m_log.GetChave(regDmc).value_or(0);
    reg.eSistemaIntegracao = Tipo_Nenhum;
    reg.eStatusIntegracao = eXVSMiddleware_Erro;
    m_mapaIndice.emplace(k_uiDepoisDoIndice + m_mapaIndice.size(), reg);
}

void CXVRecuperacao::AnotaPerdida(REG_XVDMC regDmc, XVUInt ulMotivos, std::optional<XVUInt64> uiChave) {
    ++m_pRecuperacao->uiPerdidas;
    m_pRecuperacao->listaIntegracoes.push_back({regDmc, true, ulMotivos, uiChave});
}

void CXVRecuperacao::AnotaIlegivel(const std::string& sNome, HRESULT hr) {
    auto& rLista = m_pRecuperacao->listaIlegiveis;
    if (FAILED(hr) && std::find(rLista.begin(), rLista.end(), sNome) == rLista.end()) rLista.push_back(sNome);
}

HRESULT CXVRecuperacao::Separa(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte) {
    if (uiDe >= uiAte) return S_OK;
    const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().CriaDiretorio(m_pastas.sSeparados);
    if (!erro.Ok()) return XVNotaCaminho(XVCodigoArquivo(erro), m_pastas.sSeparados);
    CXVBuracos buracos;
    std::unique_ptr<CXVEscritaRecuperada> pEscrita;
    HRESULT hr = S_OK;
    const auto conclui = [&] {
        if (pEscrita == nullptr) return;
        m_pRecuperacao->listaSeparados.back().uiBytes = pEscrita->GetTamanhoDados();
        if (SUCCEEDED(hr)) hr = pEscrita->Conclui(m_rDono, 0);
        pEscrita.reset();
    };
    const auto grava = [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
        if (pEscrita == nullptr) {
            const XVUInt64 uiNoArquivo = rArquivo.uiInicio + uiOffset;
            pEscrita = std::make_unique<CXVEscritaRecuperada>(
                m_pastas.sSeparados, rArquivo.sNome + '.' + std::to_string(uiNoArquivo),
                CXVEscritaRecuperada::ECabecalho::eSem);
            m_pRecuperacao->listaSeparados.push_back({rArquivo.sNome, uiNoArquivo, 0});
            hr = pEscrita->Abre();
        }
        if (SUCCEEDED(hr)) hr = pEscrita->Grava({aBytes.data(), aBytes.size()});
    };
    const HRESULT hrLeitura = m_leitura.Percorre(
        rArquivo, uiDe, uiAte,
        [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
            for (std::size_t i = 0; i < aBytes.size() && SUCCEEDED(hr);) {
                const std::size_t uiFim = buracos.GetFimDoTrecho(uiOffset, i, aBytes.size());
                if (buracos.Toca(uiOffset + i, uiOffset + i + 1))
                    conclui();
                else
                    grava(uiOffset + i, aBytes.subspan(i, uiFim - i));
                i = uiFim;
            }
        },
        &buracos);
    AnotaIlegivel(rArquivo.sNome, hrLeitura);
    conclui();
    return hr;
}

HRESULT CXVRecuperacao::SeparaRegistros(const SArquivoLoja& rArquivo, std::span<const XVUInt64> aDe,
                                        XVUInt64 uiTamanho) {
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < aDe.size() && SUCCEEDED(hr);) {
        const std::size_t uiPrimeiro = i;
        for (++i; i < aDe.size() && aDe[i] == aDe[i - 1] + uiTamanho;) ++i;
        hr = Separa(rArquivo, aDe[uiPrimeiro], aDe[i - 1] + uiTamanho);
    }
    return hr;
}
