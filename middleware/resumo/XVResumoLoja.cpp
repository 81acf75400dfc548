#include "middleware/resumo/XVResumoLoja.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>
#include <numeric>

#include "contract/XVCR_Enumeracoes.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/resumo/XVMensagemNormal.h"
#include "middleware/verificacao/XVInicioArquivo.h"
#include "support/values/XVTextoUtf8.h"

namespace {

using TIndice = REG_CR_INDEX_INTEGRACAO_V1;
using TMapa = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;

constexpr std::size_t k_uiGrupos = 1000;
constexpr std::size_t k_uiMensagem = 1;         // among the texts of a day
constexpr std::size_t k_uiMaiorExemplo = 4096;  // bytes of a message that are looked at

XVUInt64 Segundos(REG_XVDMAHMSUTC reg) {
    using namespace std::chrono;
    const REG_XVDMA dma = reg.GetDma();
    const sys_days dia = year(static_cast<int>(dma.GetAno())) / month(dma.GetMes()) / day(dma.GetDia());
    return static_cast<XVUInt64>(dia.time_since_epoch().count()) * 86400U + reg.GetSegundos();
}

// The records, and of each column the slots of its map, with a link for each record where keys repeat.
XVUInt64 Memoria(XVUInt64 uiRegistros, XVUInt64 uiRegistro, XVUInt64 uiColunas, XVUInt64 uiComRepetidas) {
    const XVUInt64 uiLugares = std::bit_ceil(uiRegistros * 4 / 3 + 1);
    return uiRegistros * (uiRegistro + uiComRepetidas * sizeof(XVUInt)) +
           uiColunas * uiLugares * sizeof(XVUInt);
}

}  // namespace

XVUInt64 XVIdadeEmSegundos(REG_XVDMAHMSUTC regAgora, REG_XVDMAHMSUTC regQuando) {
    const XVUInt64 uiAgora = Segundos(regAgora);
    return uiAgora - std::min(uiAgora, Segundos(regQuando));
}

XVUInt64 SResumoLoja::Pendentes() const {
    return std::accumulate(auiPendentes.begin(), auiPendentes.end(), XVUInt64{0});
}

CXVResumoLoja::CXVResumoLoja(std::string sDiretorio, EAlcance eAlcance)
    : m_sDiretorio(std::move(sDiretorio)), m_eAlcance(eAlcance), m_leitura(m_sDiretorio) {}

HRESULT CXVResumoLoja::Executa(SResumoLoja* pResumo) {
    *pResumo = {};
    m_pResumo = pResumo;
    pResumo->regMomento = REG_XVDMAHMSUTC::Agora();
    m_leitura.m_fnProgresso = [this](const std::string&, XVUInt64 uiBytes) {
        if (m_fnProgresso) m_fnProgresso(uiBytes);
    };
    HRESULT hr = Prepara();
    if (FAILED(hr)) return hr;
    CXVExameIndice indice;
    hr = LeIndice(&indice);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sDiretorio, k_pszArquivoIndexIntegracao);
    pResumo->uiIntegracoes = pResumo->uiIlegiveis = indice.GetImpossiveis().size();
    pResumo->uiMemoria += Memoria(indice.GetEntradas().size(), sizeof(TIndice) + 1, 3, 2);
    XVPercorreDias({}, indice.GetEntradas(),
                   [this](XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt) {
                       ResumeDia(uiDia, aEntradas);
                   });
    return S_OK;
}

// Without a whole index every count would be of what happens to be left of it.
HRESULT CXVResumoLoja::LeIndice(CXVExameIndice* pIndice) {
    const std::vector<SDiaListado> listaDias = XVListaDias(m_leitura);  // first: a writer may go on meanwhile
    SArquivoLoja arquivo;
    const HRESULT hr = m_leitura.Descreve(k_pszArquivoIndexIntegracao, &arquivo);
    if (FAILED(hr)) return hr;
    XVDecideInicioDosRegistros<TIndice>(m_leitura, &arquivo);
    if (FAILED(arquivo.hr)) return arquivo.hr;
    if (arquivo.uiInicio + arquivo.uiTamanho == 0 &&
        std::any_of(listaDias.begin(), listaDias.end(),
                    [](const SDiaListado& r) { return r.ulRegistros > 0; }))
        return E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS;
    return pIndice->Examina(m_leitura, arquivo, arquivo.GetTamanhoDados(), m_semSelos);
}

HRESULT CXVResumoLoja::Prepara() {
    HRESULT hr = m_leitura.Abre();
    if (SUCCEEDED(hr)) hr = ConfereVersao();
    if (FAILED(hr)) return hr;
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes()) {
        SArquivoLoja arquivo;
        if (XVNomeArquivo::GetExtensao(sMinusculo) != "dat") continue;
        if (SUCCEEDED(m_leitura.Descreve(sNome, &arquivo)))
            m_pResumo->uiBytes += arquivo.uiInicio + arquivo.uiTamanho;
        if (XVIgualSemCaixa(sNome, k_pszArquivoChaveRegistroParaTerceiro))
            m_pResumo->uiMemoria += Memoria(arquivo.GetTamanhoDados() / sizeof(TMapa), sizeof(TMapa), 2, 2);
        ++m_pResumo->uiArquivos;
    }
    return hr;
}

HRESULT CXVResumoLoja::ConfereVersao() {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(k_pszArquivoVersao, &arquivo);
    REG_CR_MIDDLEWARE_VERSAO reg{};
    if (SUCCEEDED(hr) && arquivo.uiTamanho == sizeof(reg))
        hr = m_leitura.Percorre(arquivo, sizeof(reg), [&](XVUInt64, std::span<const char> aBytes) {
            std::memcpy(&reg, aBytes.data(), sizeof(reg));
        });
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sDiretorio, k_pszArquivoVersao);
    if (reg.usVersao == k_usVersaoAtualBase || !XVTemDados(m_leitura)) return S_OK;
    hr = reg.usVersao < k_usVersaoAtualBase ? E_XVCR_VERSAO_INCOMPATIVEL
                                            : E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA;
    return XVNotaCaminho(hr, m_sDiretorio, k_pszArquivoVersao);
}

void CXVResumoLoja::ResumeDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas) {
    CXVExameDia dia(m_leitura, m_semSelos, uiDia, CXVExameDia::EAlcance::eAteOCabecalho);
    dia.ExaminaRegistros(aEntradas, ~XVUInt{0});
    if (m_eAlcance == EAlcance::eTudo) {
        dia.ExaminaTextos();
        for (std::size_t i = 0; i < CXVExameDia::k_uiTextos; ++i)
            dia.GetTextos(i).ContaMortos(&m_pResumo->uiTextosMortos, &m_pResumo->uiBytesMortos);
    }
    for (const SEntradaIndice& rEntrada : aEntradas) ResumeIntegracao(dia, rEntrada);
    m_pResumo->mapaDias[uiDia] += aEntradas.size();
}

void CXVResumoLoja::ResumeIntegracao(CXVExameDia& rDia, const SEntradaIndice& rEntrada) {
    SResumoLoja& r = *m_pResumo;
    const TIndice& rIndice = rEntrada.reg;
    const REG_XVDMC regDmc = rIndice.regDmcIntegracao;
    ++r.uiIntegracoes;
    ++r.mapaStatusSistema[{rIndice.eStatusIntegracao, rIndice.eSistemaIntegracao}];
    const XVUInt ulPonteiro = rEntrada.GetPonteiro();
    constexpr XVUInt k_ulSemRegistro = eMotivo_RegistroVazio | eMotivo_RegistroImpossivel | eMotivo_Ilegivel;
    const bool bTem = ulPonteiro <= rDia.GetRegistros().size() &&
                      (rDia.GetMotivos()[ulPonteiro - 1] & k_ulSemRegistro) == 0;
    REG_XVDMAHMSUTC regInclusao = REG_XVDMAHMSUTC::Cria(regDmc.GetDma(), 0);
    XVUInt ulMensagem = 0;
    if (bTem) {
        const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg = rDia.GetRegistros()[ulPonteiro - 1];
        ++r.mapaTipos[reg.eTipoIntegracao];
        const REG_XVDMAHMSUTC regDoRegistro = reg.regDataHoraInclusao;
        if (!regDoRegistro.EhNula()) regInclusao = regDoRegistro;
        ulMensagem = reg.ulPonteiroMensagemRetorno;
        if (r.regPrimeira.EhNula() || regInclusao.uiValor < r.regPrimeira.uiValor)
            r.regPrimeira = regInclusao;
        if (regInclusao.uiValor > r.regUltima.uiValor) r.regUltima = regInclusao;
    } else {
        ++r.uiIlegiveis;
    }
    if (rIndice.eStatusIntegracao == eXVSMiddleware_Pendente) AnotaPendente(regDmc, regInclusao);
    if (rIndice.eStatusIntegracao == eXVSMiddleware_Erro) AnotaFalha(rDia, regDmc, ulMensagem);
}

// An inclusion in the future, by whoever gave it, is of now.
void CXVResumoLoja::AnotaPendente(REG_XVDMC regDmc, REG_XVDMAHMSUTC regInclusao) {
    const XVUInt64 uiIdade = XVIdadeEmSegundos(m_pResumo->regMomento, regInclusao);
    std::size_t i = 0;
    while (i < k_auiIdades.size() && uiIdade > k_auiIdades[i]) ++i;
    ++m_pResumo->auiPendentes[i];
    if (!m_pResumo->maisAntiga || uiIdade > m_pResumo->maisAntiga->second)
        m_pResumo->maisAntiga = {regDmc, uiIdade};
}

void CXVResumoLoja::AnotaFalha(const CXVExameDia& rDia, REG_XVDMC regDmc, XVUInt ulMensagem) {
    ++m_pResumo->uiFalhas;
    if (m_eAlcance == EAlcance::eNumeros) return;
    std::string sMensagem;
    const CXVExameTextos& rTextos = rDia.GetTextos(k_uiMensagem);
    if (ulMensagem != 0 && ulMensagem <= rTextos.GetQuantidade()) {
        const XVUInt64 uiDe = rTextos.GetInicio(ulMensagem);
        const XVUInt64 uiBytes = std::min<XVUInt64>(rTextos.GetTamanho(ulMensagem), k_uiMaiorExemplo + 1);
        XVIgnora(m_leitura.Percorre(
            rDia.GetArquivoTextos(k_uiMensagem), uiDe, uiDe + uiBytes,
            [&](XVUInt64, std::span<const char> aBytes) { sMensagem.append(aBytes.data(), aBytes.size()); }));
        sMensagem.resize(std::min(sMensagem.size(), sMensagem.find('\0')));
        sMensagem.resize(XVCorteUtf8(sMensagem, k_uiMaiorExemplo));
    }
    const std::string sNormal = XVMensagemNormal(sMensagem);
    auto& rMapa = m_pResumo->mapaFalhas;
    if (rMapa.size() >= k_uiGrupos && !rMapa.contains(sNormal)) {
        ++m_pResumo->uiFalhasForaDosGrupos;
        return;
    }
    SGrupoFalhas& rGrupo = rMapa[sNormal];
    ++rGrupo.uiQuantidade;
    rGrupo.regDmc = regDmc;
    rGrupo.sExemplo = std::move(sMensagem);
}
