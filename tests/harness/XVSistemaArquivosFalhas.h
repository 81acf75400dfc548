// A file system that fails on demand: it passes every operation on to another one, counts it by its
// kind, and lets the chosen one fail instead. Thread rule: any thread; a fault is set up before the
// threads that meet it start.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/XVSistemaArquivos.h"

enum class EOperacaoArquivo : std::uint8_t {
    eAbre,
    eLe,
    eGrava,
    eGetTamanho,
    eSetTamanho,
    eSincroniza,
    eApaga,
    eSubstitui,
    eCriaDiretorio,
    eLista,
    eMarca,
    eConsulta,  // Existe, EhSomenteLeitura, BuscaNomeReal: see SFalhaArquivo
    eQuantidade
};

struct SFalhaArquivo {
    // Nothing: any operation but eConsulta. A failing eConsulta answers as a system that refuses to tell: no
    // access, whatever eCausa says, and not read-only.
    std::optional<EOperacaoArquivo> eOperacao = std::nullopt;
    XVUInt64 uiNumero = 1;     // 1 is the next call
    bool bPermanente = false;  // that call and every one of the kind after it
    ECausaArquivo eCausa = ECausaArquivo::eErroFisico;
    XVUInt ulErroSistema = 0;
    bool bGravaMetade = false;  // a failing write has written the first half of its bytes
};

// Counts and decides; shared by the file system and the files it opened.
class CXVPlanoFalhas {
  public:
    using TFiltro = std::function<bool(const std::string& sCaminho)>;

    void Programa(const SFalhaArquivo& rFalha);
    void Limpa();
    void SetFiltro(TFiltro fnFiltro);
    XVUInt64 GetQuantidade(EOperacaoArquivo eOperacao) const;
    XVUInt64 GetQuantidadeTotal() const;
    XVUInt64 GetFalhasOcorridas() const;

    // Counts one operation; the fault it meets, or nothing.
    std::optional<SFalhaArquivo> Registra(EOperacaoArquivo eOperacao, const std::string& sCaminho);

  private:
    mutable std::mutex m_mutex;
    std::array<XVUInt64, static_cast<std::size_t>(EOperacaoArquivo::eQuantidade)> m_aQuantidades{};
    std::optional<SFalhaArquivo> m_falha;
    XVUInt64 m_uiVistas = 0;
    XVUInt64 m_uiFalhas = 0;
    TFiltro m_fnFiltro;
};

class CXVSistemaArquivosFalhas final : public IXVSistemaArquivos {
  public:
    explicit CXVSistemaArquivosFalhas(IXVSistemaArquivos& rInterno)
        : m_rInterno(rInterno), m_pPlano(std::make_shared<CXVPlanoFalhas>()) {}

    // Sets one fault up, in place of the one before, and starts all counts at zero.
    void Programa(const SFalhaArquivo& rFalha) { m_pPlano->Programa(rFalha); }
    // No fault; counts at zero.
    void Limpa() { m_pPlano->Limpa(); }
    // Operations on a path for which fnFiltro is false are neither counted nor failed.
    void SetFiltro(CXVPlanoFalhas::TFiltro fnFiltro) { m_pPlano->SetFiltro(std::move(fnFiltro)); }
    XVUInt64 GetQuantidade(EOperacaoArquivo eOperacao) const { return m_pPlano->GetQuantidade(eOperacao); }
    XVUInt64 GetQuantidadeTotal() const { return m_pPlano->GetQuantidadeTotal(); }  // without eConsulta
    XVUInt64 GetFalhasOcorridas() const { return m_pPlano->GetFalhasOcorridas(); }

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override;
    EExistencia Existe(const std::string& sCaminho) override;
    bool EhSomenteLeitura(const std::string& sCaminho) override;
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override;
    CXVErroArquivo Apaga(const std::string& sCaminho) override;
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override;
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override;
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override;
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override;

  private:
    IXVSistemaArquivos& m_rInterno;
    std::shared_ptr<CXVPlanoFalhas> m_pPlano;
};
