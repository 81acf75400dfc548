// A file system over another one. Every operation, those of the files that it opened too, passes through a
// watcher, which performs it, refuses it, or does something around it. The watcher outlives the files.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

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
    eConsulta,  // Existe, EhSomenteLeitura, BuscaNomeReal
    eQuantidade
};

struct SOperacaoArquivo {
    static constexpr XVUInt64 k_uiNoFim = ~XVUInt64{0};

    EOperacaoArquivo eOperacao;
    const std::string& sCaminho;  // of a move: where it goes
    bool bAltera = false;   // can change something: openings that may create, writes, lengths, deletions,
                            // moves, directories, marks
    XVUInt64 uiOffset = 0;  // of a read or a write (k_uiNoFim: appended), or the new length
    std::string_view sDados = {};  // what a write writes, where a read goes, or where a move comes from
};

// What an opened file or a mark holds of the file system beneath; the watcher may let it go earlier.
struct SAberto {
    std::unique_ptr<IXVArquivo> pArquivo;
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    void Solta() {
        pArquivo.reset();
        pMarca.reset();
    }
};

// A watcher that keeps a TGuarda alive during each operation, and no more.
template <class TGuarda>
class TXVVigiaGuarda {
  public:
    // fnFaz performs the operation, fnMetade the first half of a write.
    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo&, TFaz fnFaz, TMetade) {
        [[maybe_unused]] const TGuarda guarda{};
        return fnFaz();
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) {
        [[maybe_unused]] const TGuarda guarda{};
        rAberto.Solta();
    }
};

template <class TVigia>
class TXVAberto {
  public:
    TXVAberto(std::shared_ptr<TVigia> pVigia, SAberto aberto)
        : m_pVigia(std::move(pVigia)), m_pAberto(std::make_shared<SAberto>(std::move(aberto))) {
        m_pVigia->Abriu(m_pAberto);
    }
    ~TXVAberto() { m_pVigia->Fecha(*m_pAberto); }
    TXVAberto(const TXVAberto&) = delete;
    TXVAberto& operator=(const TXVAberto&) = delete;

  protected:
    std::shared_ptr<TVigia> m_pVigia;
    std::shared_ptr<SAberto> m_pAberto;
};

template <class TVigia>
class TXVMarcaEnvolta final : public IXVMarcaDiretorio, private TXVAberto<TVigia> {
  public:
    using TXVAberto<TVigia>::TXVAberto;
};

template <class TVigia>
class TXVArquivoEnvolto final : public IXVArquivo, private TXVAberto<TVigia> {
  public:
    TXVArquivoEnvolto(std::shared_ptr<TVigia> pVigia, SAberto aberto, std::string sCaminho, bool bAnexacao)
        : TXVAberto<TVigia>(std::move(pVigia), std::move(aberto)),
          m_sCaminho(std::move(sCaminho)),
          m_bAnexacao(bAnexacao) {}

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        return this->m_pVigia->Opera(
            {EOperacaoArquivo::eLe,
             m_sCaminho,
             false,
             uiOffset,
             {static_cast<const char*>(pDados), uiTamanho}},
            [&] { return Interno().Le(uiOffset, pDados, uiTamanho); }, [] {});
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        return this->m_pVigia->Opera(
            {EOperacaoArquivo::eGrava,
             m_sCaminho,
             true,
             m_bAnexacao ? SOperacaoArquivo::k_uiNoFim : uiOffset,
             {static_cast<const char*>(pDados), uiTamanho}},
            [&] { return Interno().Grava(uiOffset, pDados, uiTamanho); },
            [&] { Interno().Grava(uiOffset, pDados, uiTamanho / 2).Ignora(); });
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        uiTamanho = 0;
        return Opera(EOperacaoArquivo::eGetTamanho, [&] { return Interno().GetTamanho(uiTamanho); });
    }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        return this->m_pVigia->Opera(
            {EOperacaoArquivo::eSetTamanho, m_sCaminho, true, uiTamanho},
            [&] { return Interno().SetTamanho(uiTamanho); }, [] {});
    }
    CXVErroArquivo Sincroniza() override {
        return Opera(EOperacaoArquivo::eSincroniza, [&] { return Interno().Sincroniza(); });
    }

  private:
    IXVArquivo& Interno() { return *this->m_pAberto->pArquivo; }
    template <class TFaz>
    CXVErroArquivo Opera(EOperacaoArquivo eOperacao, TFaz fnFaz) {
        return this->m_pVigia->Opera({eOperacao, m_sCaminho}, fnFaz, [] {});
    }

    std::string m_sCaminho;
    bool m_bAnexacao;
};

template <class TVigia>
class TXVSistemaArquivosEnvolto : public IXVSistemaArquivos {
  public:
    explicit TXVSistemaArquivosEnvolto(IXVSistemaArquivos& rInterno,
                                       std::shared_ptr<TVigia> pVigia = std::make_shared<TVigia>())
        : m_rInterno(rInterno), m_pVigia(std::move(pVigia)) {}

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override {
        pArquivo.reset();
        const bool bAltera = rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente;
        return Opera(EOperacaoArquivo::eAbre, sCaminho, bAltera, [&] {
            SAberto aberto;
            const CXVErroArquivo erro = m_rInterno.Abre(sCaminho, rAbertura, aberto.pArquivo);
            if (erro.Ok())
                pArquivo = std::make_unique<TXVArquivoEnvolto<TVigia>>(
                    m_pVigia, std::move(aberto), sCaminho, rAbertura.eAcesso == EAcessoArquivo::eAnexacao);
            return erro;
        });
    }
    EExistencia Existe(const std::string& sCaminho) override {
        return Consulta(sCaminho, EExistencia::eSemAcesso, [&] { return m_rInterno.Existe(sCaminho); });
    }
    bool EhSomenteLeitura(const std::string& sCaminho) override {
        return Consulta(sCaminho, false, [&] { return m_rInterno.EhSomenteLeitura(sCaminho); });
    }
    CXVErroArquivo GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) override {
        sReal.clear();
        return Opera(EOperacaoArquivo::eConsulta, sDiretorio, false,
                     [&] { return m_rInterno.GetCaminhoReal(sDiretorio, sReal); });
    }
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override {
        sNomeReal.clear();
        return Opera(EOperacaoArquivo::eConsulta, sCaminho, false,
                     [&] { return m_rInterno.BuscaNomeReal(sCaminho, sNomeReal); });
    }
    CXVErroArquivo Apaga(const std::string& sCaminho) override {
        return Opera(EOperacaoArquivo::eApaga, sCaminho, true, [&] { return m_rInterno.Apaga(sCaminho); });
    }
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override {
        return m_pVigia->Opera(
            {EOperacaoArquivo::eSubstitui, sDestino, true, 0, sOrigem},
            [&] { return m_rInterno.Substitui(sOrigem, sDestino); }, [] {});
    }
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override {
        listaNomes.clear();
        return Opera(EOperacaoArquivo::eLista, sDiretorio, false,
                     [&] { return m_rInterno.Lista(sDiretorio, sMascara, listaNomes); });
    }
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override {
        return Opera(EOperacaoArquivo::eCriaDiretorio, sDiretorio, true,
                     [&] { return m_rInterno.CriaDiretorio(sDiretorio); });
    }
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override {
        return Opera(EOperacaoArquivo::eSincroniza, sDiretorio, false,
                     [&] { return m_rInterno.SincronizaDiretorio(sDiretorio); });
    }
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override {
        pMarca.reset();
        return Opera(EOperacaoArquivo::eMarca, Junta(sDiretorio, sMarca), true, [&] {
            SAberto aberto;
            const CXVErroArquivo erro = m_rInterno.MarcaDiretorio(sDiretorio, sMarca, aberto.pMarca);
            if (erro.Ok()) pMarca = std::make_unique<TXVMarcaEnvolta<TVigia>>(m_pVigia, std::move(aberto));
            return erro;
        });
    }
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override {
        return m_rInterno.Junta(sDiretorio, sNome);
    }

  protected:
    IXVSistemaArquivos& m_rInterno;
    std::shared_ptr<TVigia> m_pVigia;

  private:
    template <class TFaz>
    CXVErroArquivo Opera(EOperacaoArquivo eOperacao, const std::string& sCaminho, bool bAltera, TFaz fnFaz) {
        return m_pVigia->Opera({eOperacao, sCaminho, bAltera}, fnFaz, [] {});
    }
    // The answer to a question; that of a system that refuses to tell, where the watcher refuses.
    template <class TResposta, class TFaz>
    TResposta Consulta(const std::string& sCaminho, TResposta resposta, TFaz fnFaz) {
        Opera(EOperacaoArquivo::eConsulta, sCaminho, false, [&] {
            resposta = fnFaz();
            return CXVErroArquivo();
        }).Ignora();
        return resposta;
    }
};
