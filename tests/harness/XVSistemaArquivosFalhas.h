// A file system that fails on demand: it passes every operation on to another one, counts it by its
// kind, and lets the chosen one fail instead. Thread rule: any thread; a fault is set up before the
// threads that meet it start.
#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <numeric>
#include <optional>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

struct SFalhaArquivo {
    // Nothing: any operation but eConsulta. A failing eConsulta answers as a system that refuses to tell: no
    // access, whatever eCausa says, and not read-only.
    std::optional<EOperacaoArquivo> eOperacao = std::nullopt;
    XVUInt64 uiNumero = 1;     // 1 is the next call
    bool bPermanente = false;  // that call and every one of the kind after it
    ECausaArquivo eCausa = ECausaArquivo::eErroFisico;
    XVUInt ulErroSistema = 0;
    bool bGravaMetade = false;  // a failing write has written the first half of its bytes
    bool bFazTudo = false;      // what fails has been done all the same

    bool EhDaEspecie(EOperacaoArquivo e) const {
        return eOperacao ? *eOperacao == e : e != EOperacaoArquivo::eConsulta;
    }
};

// Counts and decides; shared by the file system and the files it opened.
class CXVPlanoFalhas {
  public:
    using TFiltro = std::function<bool(const std::string& sCaminho)>;

    void Programa(std::optional<SFalhaArquivo> falha) {
        const std::lock_guard trava(m_mutex);
        m_falha = falha;
        m_aQuantidades.fill(0);
        m_uiVistas = 0;
        m_uiFalhas = 0;
    }
    void SetFiltro(TFiltro fnFiltro) {
        const std::lock_guard trava(m_mutex);
        m_fnFiltro = std::move(fnFiltro);
    }
    XVUInt64 GetQuantidade(EOperacaoArquivo eOperacao) const {
        const std::lock_guard trava(m_mutex);
        return m_aQuantidades[static_cast<std::size_t>(eOperacao)];
    }
    XVUInt64 GetQuantidadeTotal() const {
        const std::lock_guard trava(m_mutex);
        const auto itConsulta = m_aQuantidades.begin() + static_cast<int>(EOperacaoArquivo::eConsulta);
        return std::accumulate(m_aQuantidades.begin(), itConsulta, XVUInt64{0});
    }
    XVUInt64 GetFalhasOcorridas() const {
        const std::lock_guard trava(m_mutex);
        return m_uiFalhas;
    }

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& rOperacao, TFaz fnFaz, TMetade fnMetade) {
        const auto falha = Registra(rOperacao);
        if (!falha) return fnFaz();
        if (falha->bGravaMetade) fnMetade();
        if (falha->bFazTudo) fnFaz().Ignora();
        if (rOperacao.eOperacao == EOperacaoArquivo::eConsulta) return {ECausaArquivo::eAcessoNegado, 0};
        return {falha->eCausa, falha->ulErroSistema};
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) { rAberto.Solta(); }

  private:
    // Counts one operation; the fault it meets, or nothing.
    std::optional<SFalhaArquivo> Registra(const SOperacaoArquivo& rOperacao) {
        const std::lock_guard trava(m_mutex);
        if (m_fnFiltro && !m_fnFiltro(rOperacao.sCaminho)) return std::nullopt;
        const EOperacaoArquivo eOperacao = rOperacao.eOperacao;
        ++m_aQuantidades[static_cast<std::size_t>(eOperacao)];
        if (!m_falha || !m_falha->EhDaEspecie(eOperacao)) return std::nullopt;
        ++m_uiVistas;
        if (m_uiVistas != m_falha->uiNumero && (!m_falha->bPermanente || m_uiVistas < m_falha->uiNumero))
            return std::nullopt;
        ++m_uiFalhas;
        return m_falha;
    }

    mutable std::mutex m_mutex;
    std::array<XVUInt64, static_cast<std::size_t>(EOperacaoArquivo::eQuantidade)> m_aQuantidades{};
    std::optional<SFalhaArquivo> m_falha;
    XVUInt64 m_uiVistas = 0;
    XVUInt64 m_uiFalhas = 0;
    TFiltro m_fnFiltro;
};

class CXVSistemaArquivosFalhas final : public TXVSistemaArquivosEnvolto<CXVPlanoFalhas> {
  public:
    explicit CXVSistemaArquivosFalhas(IXVSistemaArquivos& rInterno) : TXVSistemaArquivosEnvolto(rInterno) {}

    // Sets one fault up, in place of the one before, and starts all counts at zero.
    void Programa(const SFalhaArquivo& rFalha) { m_pVigia->Programa(rFalha); }
    // No fault; counts at zero.
    void Limpa() { m_pVigia->Programa(std::nullopt); }
    // Operations on a path for which fnFiltro is false are neither counted nor failed.
    void SetFiltro(CXVPlanoFalhas::TFiltro fnFiltro) { m_pVigia->SetFiltro(std::move(fnFiltro)); }
    XVUInt64 GetQuantidade(EOperacaoArquivo eOperacao) const { return m_pVigia->GetQuantidade(eOperacao); }
    XVUInt64 GetQuantidadeTotal() const { return m_pVigia->GetQuantidadeTotal(); }  // without eConsulta
    XVUInt64 GetFalhasOcorridas() const { return m_pVigia->GetFalhasOcorridas(); }
};
