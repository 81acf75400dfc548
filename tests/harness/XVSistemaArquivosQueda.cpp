#include "tests/harness/XVSistemaArquivosQueda.h"

#include <algorithm>
#include <mutex>

#include "platform/XVMascara.h"
#include "tests/harness/XVConteudoQueda.h"

namespace {

using TConteudo = std::shared_ptr<CXVConteudoQueda>;

std::string Chave(std::string sCaminho) {
    std::transform(sCaminho.begin(), sCaminho.end(), sCaminho.begin(), XVMascara::Minuscula);
    return sCaminho;
}

}  // namespace

// Names and contents; what rInterno holds is always the newest of both.
struct CXVSistemaArquivosQueda::SDispositivo {
    struct SNome {
        std::string sCaminho;
        TConteudo pNoDispositivo;               // null: the name is not there
        std::vector<TConteudo> listaPendentes;  // what the name has stood for since

        const TConteudo& Atual() const {
            return listaPendentes.empty() ? pNoDispositivo : listaPendentes.back();
        }
    };
    mutable std::mutex mutex;  // guards everything but fnAoAlterar
    std::map<std::string, SNome> mapaNomes;
    TAoAlterar fnAoAlterar;

    // Tells of the operation and holds it off from all others while it goes on.
    [[nodiscard]] std::unique_lock<std::mutex> AoAlterar(const std::string& sCaminho,
                                                         EAlteracao eAlteracao = EAlteracao::eMuda) const {
        if (fnAoAlterar) fnAoAlterar(sCaminho, eAlteracao);
        return std::unique_lock(mutex);
    }
    TConteudo Atual(const std::string& sCaminho) {
        const auto it = mapaNomes.find(Chave(sCaminho));
        return it == mapaNomes.end() ? nullptr : it->second.Atual();
    }
    void Nomeia(const std::string& sCaminho, TConteudo pConteudo) {
        SNome& rNome = mapaNomes[Chave(sCaminho)];
        if (pConteudo) rNome.sCaminho = sCaminho;
        rNome.listaPendentes.push_back(std::move(pConteudo));
    }
    void SincronizaNomes(const std::string& sDiretorio) {
        const std::string sInicio = Chave(sDiretorio) + '/';
        for (auto& [sChave, rNome] : mapaNomes) {
            const bool bDoDiretorio =
                sChave.starts_with(sInicio) && sChave.find('/', sInicio.size()) == std::string::npos;
            if (!bDoDiretorio || rNome.listaPendentes.empty()) continue;
            rNome.pNoDispositivo = rNome.Atual();
            rNome.listaPendentes.clear();
        }
    }
};

namespace {

using SDispositivo = CXVSistemaArquivosQueda::SDispositivo;

class CXVArquivoQueda final : public IXVArquivo {
  public:
    CXVArquivoQueda(std::unique_ptr<IXVArquivo> pInterno, std::shared_ptr<SDispositivo> pDispositivo,
                    TConteudo pConteudo, std::string sCaminho, bool bAnexacao)
        : m_pInterno(std::move(pInterno)),
          m_pDispositivo(std::move(pDispositivo)),
          m_pConteudo(std::move(pConteudo)),
          m_sCaminho(std::move(sCaminho)),
          m_bAnexacao(bAnexacao) {}

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        return m_pInterno->Le(uiOffset, pDados, uiTamanho);
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        const auto trava = m_pDispositivo->AoAlterar(m_sCaminho);
        if (m_bAnexacao) uiOffset = m_pConteudo->GetAtual().size();
        const CXVErroArquivo erro = m_pInterno->Grava(uiOffset, pDados, uiTamanho);
        if (erro.Ok()) m_pConteudo->Grava(static_cast<std::size_t>(uiOffset), pDados, uiTamanho);
        return erro;
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override { return m_pInterno->GetTamanho(uiTamanho); }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        const auto trava = m_pDispositivo->AoAlterar(m_sCaminho);
        const CXVErroArquivo erro = m_pInterno->SetTamanho(uiTamanho);
        if (erro.Ok()) m_pConteudo->SetTamanho(static_cast<std::size_t>(uiTamanho));
        return erro;
    }
    CXVErroArquivo Sincroniza() override {
        const auto trava =
            m_pDispositivo->AoAlterar(m_sCaminho, CXVSistemaArquivosQueda::EAlteracao::eSincroniza);
        m_pConteudo->Sincroniza();
        return {};
    }

  private:
    std::unique_ptr<IXVArquivo> m_pInterno;
    std::shared_ptr<SDispositivo> m_pDispositivo;
    TConteudo m_pConteudo;
    std::string m_sCaminho;
    bool m_bAnexacao;
};

std::string DiretorioDe(const std::string& sCaminho) {
    return sCaminho.substr(0, sCaminho.rfind('/'));
}

}  // namespace

CXVSistemaArquivosQueda::CXVSistemaArquivosQueda(CXVSistemaArquivosMemoria& rInterno)
    : TXVSistemaArquivosEnvolto(rInterno),
      m_rMemoria(rInterno),
      m_pDispositivo(std::make_shared<SDispositivo>()) {
    for (const auto& [sCaminho, rArquivo] : m_rMemoria.Retrata())
        if (sCaminho.back() != '/')
            m_pDispositivo->mapaNomes[Chave(sCaminho)] = {
                sCaminho, std::make_shared<CXVConteudoQueda>(rArquivo.sConteudo), {}};
}
CXVSistemaArquivosQueda::~CXVSistemaArquivosQueda() = default;

void CXVSistemaArquivosQueda::SetAoAlterar(TAoAlterar fnAoAlterar) {
    m_pDispositivo->fnAoAlterar = std::move(fnAoAlterar);
}

CXVSistemaArquivosQueda::TRetrato CXVSistemaArquivosQueda::Corta(XVUInt64 uiSemente) const {
    CXVSorteio sorteio(uiSemente);
    const std::lock_guard trava(m_pDispositivo->mutex);
    TRetrato retrato = m_rMemoria.Retrata();
    std::erase_if(retrato, [](const auto& it) { return it.first.back() != '/'; });
    for (const auto& [sChave, rNome] : m_pDispositivo->mapaNomes) {
        const std::size_t uiMomento = sorteio.Ate(rNome.listaPendentes.size() + 1);
        const TConteudo& pConteudo =
            uiMomento == 0 ? rNome.pNoDispositivo : rNome.listaPendentes[uiMomento - 1];
        if (pConteudo) retrato[rNome.sCaminho] = {pConteudo->Sobrevive(sorteio), false};
    }
    return retrato;
}

CXVErroArquivo CXVSistemaArquivosQueda::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                             std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    const bool bCria = rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente &&
                       m_rInterno.Existe(sCaminho) == EExistencia::eAusente;
    std::unique_lock trava =
        bCria ? m_pDispositivo->AoAlterar(sCaminho) : std::unique_lock(m_pDispositivo->mutex);
    TConteudo pConteudo = m_pDispositivo->Atual(sCaminho);
    std::unique_ptr<IXVArquivo> pInterno;
    const CXVErroArquivo erro = m_rInterno.Abre(sCaminho, rAbertura, pInterno);
    if (!erro.Ok()) return erro;
    if (!pConteudo) {
        pConteudo = std::make_shared<CXVConteudoQueda>();
        m_pDispositivo->Nomeia(sCaminho, pConteudo);
    }
    pArquivo = std::make_unique<CXVArquivoQueda>(std::move(pInterno), m_pDispositivo, std::move(pConteudo),
                                                 sCaminho, rAbertura.eAcesso == EAcessoArquivo::eAnexacao);
    return {};
}

CXVErroArquivo CXVSistemaArquivosQueda::Apaga(const std::string& sCaminho) {
    const auto trava = m_pDispositivo->AoAlterar(sCaminho);
    const CXVErroArquivo erro = m_rInterno.Apaga(sCaminho);
    if (erro.Ok()) m_pDispositivo->Nomeia(sCaminho, nullptr);
    return erro;
}

CXVErroArquivo CXVSistemaArquivosQueda::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    const auto trava = m_pDispositivo->AoAlterar(sDestino);
    const CXVErroArquivo erro = m_rInterno.Substitui(sOrigem, sDestino);
    if (!erro.Ok()) return erro;
    const TConteudo pConteudo = m_pDispositivo->Atual(sOrigem);
    pConteudo->Sincroniza();
    m_pDispositivo->Nomeia(sOrigem, nullptr);
    m_pDispositivo->Nomeia(sDestino, pConteudo);
    m_pDispositivo->SincronizaNomes(DiretorioDe(sOrigem));
    m_pDispositivo->SincronizaNomes(DiretorioDe(sDestino));
    return {};
}

CXVErroArquivo CXVSistemaArquivosQueda::SincronizaDiretorio(const std::string& sDiretorio) {
    const auto trava = m_pDispositivo->AoAlterar(sDiretorio, EAlteracao::eSincroniza);
    m_pDispositivo->SincronizaNomes(sDiretorio);
    return {};
}
