#include "middleware/verificacao/XVVerificacao.h"

#include <algorithm>
#include <utility>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVChavesDoLog.h"
#include "middleware/verificacao/XVInicioArquivo.h"

namespace {

void JuntaAFaixas(std::vector<SFaixa>& rFaixas, XVUInt ulPonteiro) {
    if (!rFaixas.empty() && rFaixas.back().ulAte + 1 == ulPonteiro)
        rFaixas.back().ulAte = ulPonteiro;
    else
        rFaixas.push_back({ulPonteiro, ulPonteiro});
}

// Pointers of one day, ascending.
void JuntaIntegracao(SXVAchado& rAchado, XVUInt ulPonteiro) {
    ++rAchado.uiQuantidade;
    JuntaAFaixas(rAchado.aFaixas, ulPonteiro);
}

}  // namespace

bool SVerificacao::EhIntegra() const {
    return std::none_of(listaAchados.begin(), listaAchados.end(), [](const SXVAchado& r) {
        return XVDescreveAchado(r.eTipo).eGravidade == EGravidade::eDano;
    });
}

CXVVerificacao::CXVVerificacao(std::string sDiretorio, const IXVDF_Profiler& rDono, FProgresso fnProgresso)
    : m_sDiretorio(std::move(sDiretorio)),
      m_rDono(rDono),
      m_fnProgresso(std::move(fnProgresso)),
      m_leitura(m_sDiretorio) {
    if (!m_fnProgresso) return;
    m_leitura.m_fnProgresso = [this](const std::string&, XVUInt64 uiBytes) {
        m_uiBytesLidos += uiBytes;
        m_fnProgresso(m_uiBytesLidos, m_uiBytesTotal);
    };
}

HRESULT CXVVerificacao::Executa(SVerificacao* pVerificacao) {
    *pVerificacao = {};
    m_pVerificacao = pVerificacao;
    const HRESULT hr = Prepara();
    if (FAILED(hr)) return hr;
    VerificaDiario();
    VerificaControle();
    VerificaSobras();
    if (!VerificaVersao()) return S_OK;
    VerificaIndice();
    VerificaLancamentos<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>(k_pszArquivoChaveRegistroParaTerceiro,
                                                                      2);
    VerificaLancamentos<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1>(k_pszArquivoDataHoraIntegracao, 1);
    XVPercorreDias(m_listaDias, m_indice.GetEntradas(),
                   [this](XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite) {
                       VerificaDia(uiDia, aEntradas, ulLimite);
                   });
    JulgaSemIndice();
    VerificaSelos();
    return S_OK;
}

HRESULT CXVVerificacao::Sela() {
    if (!m_pVerificacao->EhIntegra()) return S_FALSE;
    for (auto it = m_selosNovos.begin(); it != m_selosNovos.end();) {
        SArquivoLoja arquivo;
        const bool bMesmo = SUCCEEDED(m_leitura.Descreve(it->first, &arquivo)) &&
                            arquivo.regB.uiContadorAtualizacao == it->second.uiContador &&
                            arquivo.GetTamanhoDados() == it->second.uiTamanho;
        it = bMesmo ? std::next(it) : m_selosNovos.erase(it);
    }
    return XVNotaCaminho(XVSelos::Grava(m_sDiretorio, m_selosNovos), m_sDiretorio, k_pszArquivoSelos);
}

// The lengths of the days' records are those of now, before the index is read: every record within them is
// known to an index that is read later.
HRESULT CXVVerificacao::Prepara() {
    HRESULT hr = m_leitura.Abre();
    if (FAILED(hr)) return hr;
    if (FAILED(XVSelos::Le(m_sDiretorio, &m_selos)))
        Anota({.eTipo = EAchado::eSelosInvalidos, .sArquivo = k_pszArquivoSelos});
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes()) {
        SArquivoLoja arquivo;
        if (XVNomeArquivo::GetExtensao(sMinusculo) != "dat") continue;
        if (SUCCEEDED(m_leitura.Descreve(sNome, &arquivo))) m_uiBytesTotal += arquivo.uiTamanho;
        ++m_pVerificacao->uiArquivos;
    }
    m_pVerificacao->uiBytes = m_uiBytesTotal;
    m_listaDias = XVListaDias(m_leitura);
    return S_OK;
}

void CXVVerificacao::Anota(SXVAchado achado) {
    m_pVerificacao->listaAchados.push_back(std::move(achado));
}

void CXVVerificacao::JulgaArquivo(const SArquivoLoja& rArquivo, XVUInt64 uiDia, HRESULT hrLeitura) {
    if (!rArquivo.bExiste && SUCCEEDED(hrLeitura)) return;
    SXVAchado achado{.sArquivo = rArquivo.sNome, .uiDia = uiDia};
    if (rArquivo.bInicioIlegivel) hrLeitura = rArquivo.hr;
    if (FAILED(hrLeitura)) {
        achado.eTipo = EAchado::eArquivoIlegivel;
        achado.hr = hrLeitura;
        Anota(achado);
    } else if (FAILED(rArquivo.hr)) {
        achado.eTipo = EAchado::eArquivoRecusado;
        achado.hr = rArquivo.hr;
        if (rArquivo.bCabecalho && rArquivo.regB.uiTamanhoDados != rArquivo.uiTamanho) {
            const bool bMenor = rArquivo.uiTamanho < rArquivo.regB.uiTamanhoDados;
            const XVUInt64 uiBytes = bMenor ? rArquivo.regB.uiTamanhoDados - rArquivo.uiTamanho
                                            : rArquivo.uiTamanho - rArquivo.regB.uiTamanhoDados;
            achado.sDetalhe = std::to_string(uiBytes) + (bMenor ? " bytes a menos" : " bytes a mais") +
                              " do que o cabeçalho diz";
        }
        Anota(achado);
    } else if (rArquivo.uiInicio == 0 && rArquivo.uiTamanho > 0) {
        achado.eTipo = EAchado::eSemCabecalho;
        Anota(achado);
    }
}

void CXVVerificacao::AnotaSelo(const SArquivoLoja& rArquivo, const SSelo& rSelo, XVUInt64 uiAlterados,
                               XVUInt64 uiDia) {
    if (!rArquivo.bCabecalho) return;
    const std::string sChave = XVEmMinusculas(rArquivo.sNome);
    m_pVerificacao->uiSelados += m_selos.contains(sChave) ? 1U : 0U;
    m_selosNovos[sChave] = rSelo;
    if (uiAlterados > 0)
        Anota({.eTipo = EAchado::eBlocoAlterado,
               .sArquivo = rArquivo.sNome,
               .uiDia = uiDia,
               .uiQuantidade = uiAlterados});
}

void CXVVerificacao::VerificaIndice() {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(k_pszArquivoIndexIntegracao, &arquivo);
    if (SUCCEEDED(hr)) XVDecideInicioDosRegistros<REG_CR_INDEX_INTEGRACAO_V1>(m_leitura, &arquivo);
    if (SUCCEEDED(hr)) hr = m_indice.Examina(m_leitura, arquivo, arquivo.GetTamanhoDados(), m_selos);
    JulgaArquivo(arquivo, 0, hr);
    const auto& rAchados = m_pVerificacao->listaAchados;
    const bool bDito = std::any_of(rAchados.begin(), rAchados.end(),
                                   [&](const SXVAchado& r) { return r.sArquivo == arquivo.sNome; });
    if (!arquivo.bExiste && !bDito && !m_listaDias.empty())
        Anota({.eTipo = EAchado::eArquivoAusente, .sArquivo = arquivo.sNome});
    AnotaSelo(arquivo, m_indice.GetSelo(), m_indice.GetBlocosAlterados(), 0);
    if (m_indice.GetSobra() != 0)
        Anota({.eTipo = EAchado::eRegistroPelaMetade, .sArquivo = arquivo.sNome, .uiQuantidade = 1});
    const auto& rImpossiveis = m_indice.GetImpossiveis();
    if (!rImpossiveis.empty()) {
        SXVAchado achado{.eTipo = EAchado::eIndiceImpossivel, .sArquivo = arquivo.sNome};
        achado.uiQuantidade = rImpossiveis.size();
        achado.sDetalhe = "o primeiro deles na posição " + std::to_string(rImpossiveis.front());
        Anota(achado);
    }
    m_bIndiceConfere = arquivo.bExiste && SUCCEEDED(hr) && SUCCEEDED(arquivo.hr) && rImpossiveis.empty() &&
                       m_indice.GetSobra() == 0;
}

void CXVVerificacao::VerificaDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite) {
    CXVExameDia dia(m_leitura, m_selos, uiDia, CXVExameDia::EAlcance::eAteOCabecalho);
    dia.ExaminaRegistros(aEntradas, ulLimite);
    dia.ExaminaTextos();
    dia.JuntaDoBanco(aEntradas, &m_aDoBanco);
    JulgaArquivosDoDia(dia);
    ContaDia(dia);
    const auto& rSemIndice = dia.GetSemIndice();
    if (!dia.TemChaves() && !rSemIndice.empty())
        Anota({.eTipo = EAchado::eSemIndice,
               .sArquivo = dia.GetArquivo().sNome,
               .uiQuantidade = rSemIndice.size(),
               .sDetalhe = "o nome do arquivo não é de um dia do calendário"});
    else
        for (const XVUInt ulPonteiro : rSemIndice) m_listaSemIndice.push_back(dia.GetDmc(ulPonteiro));
    if (!dia.TemChaves()) return;
    for (const XVUInt ulPonteiro : dia.GetSoNoCabecalho()) {
        m_listaSemIndice.push_back(dia.GetDmc(ulPonteiro));
        m_semRegistro.insert(m_listaSemIndice.back().uiValor);
    }
}

void CXVVerificacao::JulgaArquivosDoDia(const CXVExameDia& rDia) {
    JulgaArquivo(rDia.GetArquivo(), rDia.GetDia(), rDia.GetFalha(CXVExameDia::k_uiTextos));
    AnotaSelo(rDia.GetArquivo(), rDia.GetSelo(), rDia.GetBlocosAlterados(), rDia.GetDia());
    if (rDia.GetSobra() != 0)
        Anota({.eTipo = EAchado::eRegistroPelaMetade,
               .sArquivo = rDia.GetArquivo().sNome,
               .uiDia = rDia.GetDia(),
               .uiQuantidade = 1});
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos; ++i) {
        const SArquivoLoja& rArquivo = rDia.GetArquivoTextos(i);
        const CXVExameTextos& rTextos = rDia.GetTextos(i);
        JulgaArquivo(rArquivo, rDia.GetDia(), rDia.GetFalha(i));
        AnotaSelo(rArquivo, rTextos.GetSelo(), rTextos.GetBlocosAlterados(), rDia.GetDia());
        rTextos.ContaMortos(&m_pVerificacao->uiTextosMortos, &m_pVerificacao->uiBytesMortos);
        if (!rTextos.EstaPartida() && !rTextos.EstaDeslocada()) continue;
        SXVAchado achado{
            .eTipo = rTextos.EstaPartida() ? EAchado::eCadeiaPartida : EAchado::eTextosDeslocados,
            .sArquivo = rArquivo.sNome,
            .uiDia = rDia.GetDia(),
            .uiQuantidade = 1};
        achado.sDetalhe = "depois do texto " + std::to_string(rTextos.GetTextosSaos()) + ", no byte " +
                          std::to_string(rArquivo.uiInicio + rTextos.GetFimSao());
        if (rTextos.GetPerdidos() > 0)
            achado.sDetalhe += "; segue no byte " + std::to_string(rArquivo.uiInicio + rTextos.GetRetomada());
        Anota(achado);
    }
}

void CXVVerificacao::ContaDia(const CXVExameDia& rDia) {
    std::array<SXVAchado, k_uiMotivos> aAchados;
    XVUInt64 uiConhecidas = 0;
    XVUInt64 uiInteiras = 0;
    for (XVUInt ulPonteiro = 1; ulPonteiro <= rDia.GetRegistros().size(); ++ulPonteiro) {
        if (!rDia.EstaNoIndice(ulPonteiro)) continue;
        const XVUInt ulMotivos = rDia.GetMotivos()[ulPonteiro - 1];
        ++uiConhecidas;
        uiInteiras += ulMotivos == 0 ? 1 : 0;
        for (unsigned i = 0; i < k_uiMotivos && ulMotivos != 0; ++i)
            if ((ulMotivos & (1U << i)) != 0) JuntaIntegracao(aAchados[i], ulPonteiro);
    }
    XVUInt ulAnterior = 0;
    for (const SEntradaIndice& rAusente : rDia.GetAusentes()) {
        if (rAusente.GetPonteiro() == ulAnterior) continue;
        ulAnterior = rAusente.GetPonteiro();
        ++uiConhecidas;
        JuntaIntegracao(aAchados[0], ulAnterior);
    }
    for (unsigned i = 0; i < k_uiMotivos; ++i) {
        if (aAchados[i].uiQuantidade == 0) continue;
        aAchados[i].eTipo = static_cast<EAchado>(i);
        aAchados[i].sArquivo = rDia.GetArquivo().sNome;
        aAchados[i].uiDia = rDia.GetDia();
        Anota(std::move(aAchados[i]));
    }
    m_pVerificacao->uiIntegracoes += uiConhecidas;
    m_pVerificacao->uiInteiras += uiInteiras;
    m_pVerificacao->uiPosicoesVagas += rDia.GetVagos();
    m_pVerificacao->uiDias += uiConhecidas > 0 ? 1 : 0;
}

// What the index does not know, and the records hold or held, is missed, unless another integration of the
// bank with the same key took that place. The record does not hold the key; the general log does.
void CXVVerificacao::JulgaSemIndice() {
    CXVChavesDoLog log;
    log.Le(m_sDiretorio, m_listaSemIndice, m_aDoBanco);
    SXVAchado aAchados[3];
    const auto anota = [&] {
        for (SXVAchado& rAchado : aAchados)
            if (rAchado.uiQuantidade > 0) Anota(std::exchange(rAchado, {}));
    };
    for (const REG_XVDMC regDmc : m_listaSemIndice) {
        const bool bSubstituida = log.FoiSubstituida(regDmc);
        if (bSubstituida && m_bIndiceConfere) {
            ++m_pVerificacao->uiSubstituidas;
            continue;
        }
        // Of an index that is damaged itself nobody can tell what it never held from what it lost.
        const bool bTalvez =
            bSubstituida || (m_bIndiceConfere && !log.GetChave(regDmc) && !m_aDoBanco.empty());
        const XVUInt64 uiDia = regDmc.GetDma().ToChave();
        constexpr EAchado k_aTipos[] = {EAchado::eSemIndice, EAchado::eTalvezSubstituida,
                                        EAchado::eSemRegistroNemIndice};
        const std::size_t uiQual = bTalvez ? 1 : m_semRegistro.contains(regDmc.uiValor) ? 2 : 0;
        SXVAchado& rAchado = aAchados[uiQual];
        if (rAchado.uiDia != uiDia) anota();
        rAchado.eTipo = k_aTipos[uiQual];
        rAchado.uiDia = uiDia;
        rAchado.sArquivo = XVNomeArquivo::ChaveParaNome(uiDia, k_pszArquivoIntegracao);
        JuntaIntegracao(rAchado, regDmc.GetPonteiro());
        m_pVerificacao->uiIntegracoes += bTalvez ? 0 : 1;
    }
    anota();
}
