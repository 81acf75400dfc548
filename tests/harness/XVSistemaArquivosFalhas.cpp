#include "tests/harness/XVSistemaArquivosFalhas.h"

#include <numeric>

namespace {

std::size_t Indice(EOperacaoArquivo eOperacao) {
    return static_cast<std::size_t>(eOperacao);
}

CXVErroArquivo Erro(const SFalhaArquivo& rFalha) {
    return {rFalha.eCausa, rFalha.ulErroSistema};
}

class CXVArquivoFalhas final : public IXVArquivo {
  public:
    CXVArquivoFalhas(std::unique_ptr<IXVArquivo> pInterno, std::shared_ptr<CXVPlanoFalhas> pPlano,
                     std::string sCaminho)
        : m_pInterno(std::move(pInterno)), m_pPlano(std::move(pPlano)), m_sCaminho(std::move(sCaminho)) {}

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        const auto falha = m_pPlano->Registra(EOperacaoArquivo::eLe, m_sCaminho);
        return falha ? Erro(*falha) : m_pInterno->Le(uiOffset, pDados, uiTamanho);
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        const auto falha = m_pPlano->Registra(EOperacaoArquivo::eGrava, m_sCaminho);
        if (!falha) {
            return m_pInterno->Grava(uiOffset, pDados, uiTamanho);
        }
        if (falha->bGravaMetade) {
            m_pInterno->Grava(uiOffset, pDados, uiTamanho / 2).Ignora();
        }
        return Erro(*falha);
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        uiTamanho = 0;
        const auto falha = m_pPlano->Registra(EOperacaoArquivo::eGetTamanho, m_sCaminho);
        return falha ? Erro(*falha) : m_pInterno->GetTamanho(uiTamanho);
    }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        const auto falha = m_pPlano->Registra(EOperacaoArquivo::eSetTamanho, m_sCaminho);
        return falha ? Erro(*falha) : m_pInterno->SetTamanho(uiTamanho);
    }
    CXVErroArquivo Sincroniza() override {
        const auto falha = m_pPlano->Registra(EOperacaoArquivo::eSincroniza, m_sCaminho);
        return falha ? Erro(*falha) : m_pInterno->Sincroniza();
    }

  private:
    std::unique_ptr<IXVArquivo> m_pInterno;
    std::shared_ptr<CXVPlanoFalhas> m_pPlano;
    std::string m_sCaminho;
};

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

std::optional<SFalhaArquivo> CXVPlanoFalhas::Registra(EOperacaoArquivo eOperacao,
                                                      const std::string& sCaminho) {
    const std::lock_guard trava(m_mutex);
    if (m_fnFiltro && !m_fnFiltro(sCaminho)) {
        return std::nullopt;
    }
    ++m_aQuantidades[Indice(eOperacao)];
    const bool bDaEspecie = m_falha && (m_falha->eOperacao ? *m_falha->eOperacao == eOperacao
                                                           : eOperacao != EOperacaoArquivo::eConsulta);
    if (!bDaEspecie) {
        return std::nullopt;
    }
    ++m_uiVistas;
    if (m_uiVistas == m_falha->uiNumero || (m_falha->bPermanente && m_uiVistas > m_falha->uiNumero)) {
        ++m_uiFalhas;
        return m_falha;
    }
    return std::nullopt;
}

CXVErroArquivo CXVSistemaArquivosFalhas::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                              std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    if (const auto falha = m_pPlano->Registra(EOperacaoArquivo::eAbre, sCaminho)) {
        return Erro(*falha);
    }
    std::unique_ptr<IXVArquivo> pInterno;
    const CXVErroArquivo erro = m_rInterno.Abre(sCaminho, rAbertura, pInterno);
    if (erro.Ok()) {
        pArquivo = std::make_unique<CXVArquivoFalhas>(std::move(pInterno), m_pPlano, sCaminho);
    }
    return erro;
}

EExistencia CXVSistemaArquivosFalhas::Existe(const std::string& sCaminho) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eConsulta, sCaminho);
    return falha ? EExistencia::eSemAcesso : m_rInterno.Existe(sCaminho);
}

bool CXVSistemaArquivosFalhas::EhSomenteLeitura(const std::string& sCaminho) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eConsulta, sCaminho);
    return !falha && m_rInterno.EhSomenteLeitura(sCaminho);
}

CXVErroArquivo CXVSistemaArquivosFalhas::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eConsulta, sCaminho);
    return falha ? CXVErroArquivo(ECausaArquivo::eAcessoNegado, 0)
                 : m_rInterno.BuscaNomeReal(sCaminho, sNomeReal);
}

CXVErroArquivo CXVSistemaArquivosFalhas::Apaga(const std::string& sCaminho) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eApaga, sCaminho);
    return falha ? Erro(*falha) : m_rInterno.Apaga(sCaminho);
}

CXVErroArquivo CXVSistemaArquivosFalhas::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eSubstitui, sDestino);
    return falha ? Erro(*falha) : m_rInterno.Substitui(sOrigem, sDestino);
}

CXVErroArquivo CXVSistemaArquivosFalhas::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                               std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eLista, sDiretorio);
    return falha ? Erro(*falha) : m_rInterno.Lista(sDiretorio, sMascara, listaNomes);
}

CXVErroArquivo CXVSistemaArquivosFalhas::CriaDiretorio(const std::string& sDiretorio) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eCriaDiretorio, sDiretorio);
    return falha ? Erro(*falha) : m_rInterno.CriaDiretorio(sDiretorio);
}

CXVErroArquivo CXVSistemaArquivosFalhas::SincronizaDiretorio(const std::string& sDiretorio) {
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eSincroniza, sDiretorio);
    return falha ? Erro(*falha) : m_rInterno.SincronizaDiretorio(sDiretorio);
}

CXVErroArquivo CXVSistemaArquivosFalhas::MarcaDiretorio(const std::string& sDiretorio,
                                                        const std::string& sMarca,
                                                        std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    pMarca.reset();
    const auto falha = m_pPlano->Registra(EOperacaoArquivo::eMarca, Junta(sDiretorio, sMarca));
    return falha ? Erro(*falha) : m_rInterno.MarcaDiretorio(sDiretorio, sMarca, pMarca);
}

std::string CXVSistemaArquivosFalhas::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return m_rInterno.Junta(sDiretorio, sNome);
}
