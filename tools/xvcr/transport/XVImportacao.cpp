#include "tools/xvcr/transport/XVImportacao.h"

#include <utility>

#include "support/trace/XVCheck.h"
#include "support/values/XVCrc64.h"
#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

namespace {

using ETipo = SIntegracaoTransportada::ETipo;
using SErro = CXVImportacao::SErro;

SErro Erro(std::string sMensagem, bool bDefinitivo = false) {
    return {{"", std::move(sMensagem)}, bDefinitivo};
}

// Of a line and its line feed.
XVUInt64 Soma(std::string_view sLinha, XVUInt64 uiInicial) {
    return XVCrc64("\n", 1, XVCrc64(sLinha.data(), sLinha.size(), uiInicial));
}

constexpr const char* k_pszSomaDiferente =
    "a linha final não confere com as que vieram antes dela: faltam linhas ou foram alteradas";

SErro ErroDe(EImportada eImportada) {
    switch (eImportada) {
        case EImportada::eConflito:
            return Erro("o DMC já é o de outra integração nesta base");
        case EImportada::eLacuna:
            return Erro("a posição não é a seguinte do dia nesta base: falta a integração anterior");
        case EImportada::eChaveDoBanco:
            return Erro("outra integração do OfficialBank já tem esta chave externa nesta base");
        default:
            return {};
    }
}

}  // namespace

CXVImportacao::CXVImportacao(std::string sDiretorio, const IXVDF_Profiler& rDono, EChavesImportacao eChaves)
    : m_sDiretorio(std::move(sDiretorio)), m_rDono(rDono), m_eChaves(eChaves) {}

SErro CXVImportacao::Importa(std::string_view sLinha) {
    TLinhaExportacao linha;
    SErroCampo erro = XVLinhaExportacao::Le(sLinha, &linha);
    const bool bInicio = std::holds_alternative<SInicioExportacao>(linha);
    if (!m_bDentro && !bInicio)
        return Erro("a exportação não começa aqui: esta não é a sua primeira linha", true);
    const XVUInt64 uiSomaAntes = bInicio ? 0 : m_uiSoma;
    m_uiSoma = Soma(sLinha, uiSomaAntes);
    if (!erro.sMensagem.empty()) return {std::move(erro), false};
    if (const auto* pFim = std::get_if<SFimExportacao>(&linha);
        pFim != nullptr && pFim->uiSoma != uiSomaAntes) {
        Encerra();
        return Erro(k_pszSomaDiferente);
    }
    return std::visit([this](auto& rLinha) { return Recebe(rLinha); }, linha);
}

SErro CXVImportacao::Recebe(const SInicioExportacao& rInicio) {
    if (rInicio.ulVersao != SInicioExportacao::k_ulVersao)
        return Erro("a exportação é da versão " + std::to_string(rInicio.ulVersao) +
                        "; este programa lê a versão " + std::to_string(SInicioExportacao::k_ulVersao),
                    true);
    if (m_bDentro) return Erro("outra exportação começa antes do fim da anterior", true);
    m_bDentro = true;
    m_bTeveFim = false;
    m_lidas = {};
    m_pChaves = &m_mapaChaves[rInicio.sEmpresa];
    return {};
}

SErro CXVImportacao::Recebe(const SFimExportacao& rFim) {
    Encerra();
    return m_lidas == rFim ? SErro{} : Erro(k_pszSomaDiferente);
}

SErro CXVImportacao::Recebe(SIntegracaoTransportada& rIntegracao) {
    m_lidas.Conta(rIntegracao.eTipo);
    if (!XVPodeSerImportada(rIntegracao)) return Falha(E_INVALIDARG);
    return m_eChaves == EChavesImportacao::eNovas ? DaChaveNova(rIntegracao) : MantemChave(rIntegracao);
}

HRESULT CXVImportacao::PoeNaLojaNova(const SIntegracaoTransportada& rIntegracao) {
    if (m_bAberta) return S_FALSE;
    HRESULT hr = S_OK;
    if (m_pNova == nullptr) {
        m_pNova = std::make_unique<CXVLojaNova>(m_sDiretorio, m_rDono);
        hr = m_pNova->Comeca();
    }
    if (hr == S_OK) hr = m_pNova->Inclui(rIntegracao);
    if (hr == S_OK && rIntegracao.eTipo != ETipo::eVaga) ++m_contagem.uiNovas;
    if (SUCCEEDED(hr)) return hr;
    m_pNova.reset();  // takes away what it had made
    m_contagem.uiNovas = 0;
    return hr;
}

HRESULT CXVImportacao::ConcluiLojaNova() {
    const std::unique_ptr<CXVLojaNova> pNova = std::move(m_pNova);
    const HRESULT hr = pNova == nullptr ? S_OK : pNova->Conclui();
    if (FAILED(hr)) m_contagem.uiNovas = 0;  // taken away again
    return hr;
}

HRESULT CXVImportacao::AbreBase() {
    if (m_bAberta) return S_OK;
    HRESULT hr = ConcluiLojaNova();
    if (SUCCEEDED(hr)) hr = m_Base.Inicializa(&m_rDono);
    m_bAberta = SUCCEEDED(hr);
    return hr;
}

SErro CXVImportacao::MantemChave(const SIntegracaoTransportada& rIntegracao) {
    HRESULT hr = PoeNaLojaNova(rIntegracao);
    if (hr == S_OK) return {};
    if (SUCCEEDED(hr)) hr = AbreBase();
    EImportada eImportada = EImportada::eNova;
    if (SUCCEEDED(hr)) hr = m_Base.ImportaIntegracao(rIntegracao, &eImportada);
    if (FAILED(hr)) return Falha(hr);
    const bool bVaga = rIntegracao.eTipo == ETipo::eVaga;
    if (eImportada == EImportada::eNova && !bVaga) ++m_contagem.uiNovas;
    if (eImportada == EImportada::eJaEstava && !bVaga) ++m_contagem.uiJaEstavam;
    return ErroDe(eImportada);
}

SErro CXVImportacao::DaChaveNova(SIntegracaoTransportada& rIntegracao) {
    if (rIntegracao.eTipo != ETipo::eInteira) {
        ++m_contagem.uiDeixadas;
        return {};
    }
    const REG_XVDMC regEspera = Traduz(&rIntegracao.dados.regDmcIntegracaoOrigem);
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS = rIntegracao.dados.ComoRegistro();
    REG_XVDMC regNova;
    HRESULT hr = AbreBase();
    if (SUCCEEDED(hr)) hr = m_Base.GravaInternalIntegracao(&regNova, &regPS);
    if (FAILED(hr)) return Falha(hr);
    ++m_contagem.uiNovas;
    m_pChaves->insert_or_assign(rIntegracao.dados.regDmc.uiValor, regNova);
    if (!regEspera.EhNulo()) m_listaSemOrigem.push_back({regEspera, m_pChaves, regNova});
    m_fnNova(rIntegracao.dados.regDmc, regNova);
    return {};
}

// What names an integration that came with a new key names it by that one; any other origin is emptied, for
// its key is, or will be, another integration's here. Returns the one that may come yet, or null.
REG_XVDMC CXVImportacao::Traduz(REG_XVDMC* pOrigem) const {
    if (m_eChaves != EChavesImportacao::eNovas || !pOrigem->EhDeIntegracao()) return {};
    const auto it = m_pChaves->find(pOrigem->uiValor);
    if (it == m_pChaves->end()) return std::exchange(*pOrigem, {});
    *pOrigem = it->second;
    return {};
}

HRESULT CXVImportacao::PoeOrigens() {
    HRESULT hr = S_OK;
    for (SSemOrigem& rSem : m_listaSemOrigem) {
        const auto it = rSem.pChaves->find(rSem.regDmcOrigem.uiValor);
        const bool bVeio = SUCCEEDED(hr) && it != rSem.pChaves->end();
        if (auto* pDados = std::get_if<CXVDadosMapa>(&rSem.quem); pDados != nullptr && bVeio) {
            pDados->regDmcOrigemIntegracao = it->second;
            hr = m_Base.GravaChaveRegistroTelvoParaTerceiro(pDados->ComoRegistro());
        } else if (bVeio) {
            hr = m_Base.PoeOrigem(std::get<REG_XVDMC>(rSem.quem), it->second);
        }
        if (!bVeio || FAILED(hr)) ++m_contagem.uiOrigensVazias;
    }
    m_listaSemOrigem.clear();
    return hr;
}

SErro CXVImportacao::Recebe(CXVDadosMapa& rDados) {
    ++m_lidas.ulMapa;
    const REG_XVDMC regEspera = Traduz(&rDados.regDmcOrigemIntegracao);
    CXVDadosMapa filtro = rDados;
    filtro.uiChaveRegistroSistemaTerceiro = 0;  // whatever the record's id is
    HRESULT hr = AbreBase();
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regAtual{};
    if (SUCCEEDED(hr) && !rDados.regDmcRegistroTelvo.EhNulo())
        hr = m_Base.BuscaChaveRegistroTelvoParaTerceiro(filtro.ComoFiltro(), &regAtual);
    CXVDadosMapa atual;
    atual.CopiarDe(regAtual);
    const bool bHavia = !atual.regDmcRegistroTelvo.EhNulo();
    if (SUCCEEDED(hr) && !bHavia) hr = m_Base.GravaChaveRegistroTelvoParaTerceiro(rDados.ComoRegistro());
    if (FAILED(hr)) return Falha(hr);
    if (bHavia && !(atual == rDados)) return Erro("o registro da suíte já tem outra ligação nesta base");
    ++m_contagem.uiLancamentos;
    if (regEspera.EhNulo()) return {};
    // The origin of what was there before is not for an import to say.
    if (bHavia)
        ++m_contagem.uiOrigensVazias;
    else
        m_listaSemOrigem.push_back({regEspera, m_pChaves, rDados});
    return {};
}

SErro CXVImportacao::Recebe(const CXVDadosDataHora& rDados) {
    ++m_lidas.ulDatasHoras;
    HRESULT hr = AbreBase();
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS regAtual{};
    if (SUCCEEDED(hr)) hr = m_Base.BuscaDataHoraIntegracaoTerceiro(rDados.ComoFiltro(), &regAtual);
    CXVDadosDataHora atual;
    atual.CopiarDe(regAtual);
    const bool bHavia = !atual.regDataHora.EhNula();
    if (SUCCEEDED(hr) && !bHavia) hr = m_Base.GravaDataHoraIntegracaoTerceiro(rDados.ComoRegistro());
    if (FAILED(hr)) return Falha(hr);
    if (bHavia && !(atual == rDados)) return Erro("a data-hora já tem outro valor nesta base");
    ++m_contagem.uiLancamentos;
    return {};
}

SErro CXVImportacao::Falha(HRESULT hr) {
    return Erro(XVDescreveFalha(hr), hr != E_INVALIDARG);
}

HRESULT CXVImportacao::Termina() {
    HRESULT hr = ConcluiLojaNova();
    if (m_bAberta) hr = XVPrimeiraFalha(hr, PoeOrigens());
    const HRESULT hrBase = m_bAberta ? m_Base.Finaliza() : S_OK;
    m_bAberta = false;
    return XVPrimeiraFalha(hr, hrBase);
}

std::string XVDescreveLinhaLonga(std::size_t uiLinhaMaxima) {
    return "mais de " + std::to_string(uiLinhaMaxima) + " bytes; --linha-maxima aceita mais";
}

std::string XVConfereExportacao(IXVFonteBytes& rFonte, std::size_t uiLinhaMaxima) {
    CXVLeitorLinhas leitor(rFonte, uiLinhaMaxima);
    XVUInt64 uiSoma = 0;
    bool bDentro = false;
    std::string sLinha;
    for (;;) {
        const CXVLeitorLinhas::EResultado eResultado = leitor.Proxima(&sLinha);
        if (eResultado == CXVLeitorLinhas::EResultado::eFim) break;
        if (eResultado == CXVLeitorLinhas::EResultado::eLonga)
            return "linha " + std::to_string(leitor.GetNumero()) + ": " + XVDescreveLinhaLonga(uiLinhaMaxima);
        if (!bDentro) {
            if (!XVLinhaExportacao::EhInicio(sLinha)) return "não é uma exportação inteira do xvcr";
            bDentro = true;
            uiSoma = 0;
        }
        TLinhaExportacao linha;
        if (XVLinhaExportacao::EhFim(sLinha)) {
            const SErroCampo erro = XVLinhaExportacao::Le(sLinha, &linha);
            if (!erro.sMensagem.empty() || std::get<SFimExportacao>(linha).uiSoma != uiSoma)
                return k_pszSomaDiferente;
            bDentro = false;
        }
        uiSoma = Soma(sLinha, uiSoma);
    }
    return bDentro || leitor.GetNumero() == 0 ? "falta a linha final: a exportação está incompleta" : "";
}
