#include "tests/harness/XVSistemaArquivosFalhas.h"

#include <numeric>

namespace {

std::size_t Indice(EOperacaoArquivo eOperacao) {
    return static_cast<std::size_t>(eOperacao);
}

}  // namespace

void CXVPlanoFalhas::Programa(const SFalhaArquivo& rFalha) {
    Limpa();
    const std::lock_guard trava(m_mutex);
    m_falha = rFalha;
}

void CXVPlanoFalhas::Limpa() {
    const std::lock_guard trava(m_mutex);
    m_falha.reset();
    m_aQuantidades.fill(0);
    m_uiVistas = 0;
    m_uiFalhas = 0;
}

void CXVPlanoFalhas::SetFiltro(TFiltro fnFiltro) {
    const std::lock_guard trava(m_mutex);
    m_fnFiltro = std::move(fnFiltro);
}

XVUInt64 CXVPlanoFalhas::GetQuantidade(EOperacaoArquivo eOperacao) const {
    const std::lock_guard trava(m_mutex);
    return m_aQuantidades[Indice(eOperacao)];
}

XVUInt64 CXVPlanoFalhas::GetQuantidadeTotal() const {
    const std::lock_guard trava(m_mutex);
    return std::accumulate(m_aQuantidades.begin(), m_aQuantidades.end(), XVUInt64{0}) -
           m_aQuantidades[Indice(EOperacaoArquivo::eConsulta)];
}

XVUInt64 CXVPlanoFalhas::GetFalhasOcorridas() const {
    const std::lock_guard trava(m_mutex);
    return m_uiFalhas;
}

std::optional<SFalhaArquivo> CXVPlanoFalhas::Registra(const SOperacaoArquivo& rOperacao) {
    const std::lock_guard trava(m_mutex);
    if (m_fnFiltro && !m_fnFiltro(rOperacao.sCaminho)) return std::nullopt;
    const EOperacaoArquivo eOperacao = rOperacao.eOperacao;
    ++m_aQuantidades[Indice(eOperacao)];
    const bool bDaEspecie = m_falha && (m_falha->eOperacao ? *m_falha->eOperacao == eOperacao
                                                           : eOperacao != EOperacaoArquivo::eConsulta);
    if (!bDaEspecie) return std::nullopt;
    ++m_uiVistas;
    if (m_uiVistas != m_falha->uiNumero && (!m_falha->bPermanente || m_uiVistas < m_falha->uiNumero))
        return std::nullopt;
    ++m_uiFalhas;
    return m_falha;
}
