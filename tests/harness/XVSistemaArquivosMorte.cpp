#include "tests/harness/XVSistemaArquivosMorte.h"

#include <exception>
#include <list>
#include <mutex>

namespace {

constexpr CXVErroArquivo k_erroMorto(ECausaArquivo::eGenerica, 0);

}  // namespace

// The life of one process: what it counted and what it holds open. One mutex covers each operation as a
// whole, so nothing of the dead process reaches the file system after its death.
class CXVSistemaArquivosMorte::CXVProcesso {
  public:
    using TArquivos = std::list<std::unique_ptr<IXVArquivo>>;
    using TMarcas = std::list<std::unique_ptr<IXVMarcaDiretorio>>;

    CXVProcesso(EContagem eContagem, EMorte eMorte, XVUInt64 uiOperacao, bool bGravaMetade)
        : m_eContagem(eContagem), m_eMorte(eMorte), m_uiOperacao(uiOperacao), m_bGravaMetade(bGravaMetade) {}

    // Runs fn, or is dead: throws, or gives the quiet failure. fnMorte runs at the moment of death only.
    template <class TResultado, class TFn>
    TResultado Opera(bool bAltera, TResultado quandoMorto, TFn fn,
                     const std::function<void()>& fnMorte = nullptr) {
        std::unique_lock trava(m_mutex);
        if (!m_bMorto && (bAltera || m_eContagem == EContagem::eTodas)) {
            ++m_uiQuantidade;
            if (m_uiQuantidade == m_uiOperacao) {
                if (fnMorte && m_bGravaMetade) {
                    fnMorte();
                }
                Morre();
            }
        }
        if (!m_bMorto) {
            return fn();
        }
        const bool bCalado = m_eMorte == EMorte::eCala || m_bEnterrado || std::uncaught_exceptions() > 0;
        trava.unlock();
        if (!bCalado) {
            throw SProcessoMorto();
        }
        return quandoMorto;
    }

    // Called from inside Opera.
    TArquivos::iterator Guarda(std::unique_ptr<IXVArquivo> p) {
        return m_listaArquivos.insert(m_listaArquivos.end(), std::move(p));
    }
    TMarcas::iterator Guarda(std::unique_ptr<IXVMarcaDiretorio> p) {
        return m_listaMarcas.insert(m_listaMarcas.end(), std::move(p));
    }
    void Solta(TArquivos::iterator it) {
        const std::lock_guard trava(m_mutex);
        if (!m_bMorto) {
            m_listaArquivos.erase(it);
        }
    }
    void Solta(TMarcas::iterator it) {
        const std::lock_guard trava(m_mutex);
        if (!m_bMorto) {
            m_listaMarcas.erase(it);
        }
    }

    void Enterra() {
        const std::lock_guard trava(m_mutex);
        m_bEnterrado = true;
    }
    bool EstaMorto() {
        const std::lock_guard trava(m_mutex);
        return m_bMorto;
    }
    XVUInt64 GetQuantidade() {
        const std::lock_guard trava(m_mutex);
        return m_uiQuantidade;
    }

  private:
    void Morre() {
        m_bMorto = true;
        m_listaArquivos.clear();
        m_listaMarcas.clear();
    }

    std::mutex m_mutex;
    const EContagem m_eContagem;
    const EMorte m_eMorte;
    const XVUInt64 m_uiOperacao;
    const bool m_bGravaMetade;
    XVUInt64 m_uiQuantidade = 0;
    bool m_bMorto = false;
    bool m_bEnterrado = false;
    TArquivos m_listaArquivos;
    TMarcas m_listaMarcas;
};

namespace {

using CXVProcesso = CXVSistemaArquivosMorte::CXVProcesso;

class CXVArquivoMorte final : public IXVArquivo {
  public:
    CXVArquivoMorte(std::shared_ptr<CXVProcesso> pProcesso, CXVProcesso::TArquivos::iterator it)
        : m_pProcesso(std::move(pProcesso)), m_it(it) {}
    ~CXVArquivoMorte() override { m_pProcesso->Solta(m_it); }
    CXVArquivoMorte(const CXVArquivoMorte&) = delete;
    CXVArquivoMorte& operator=(const CXVArquivoMorte&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        return m_pProcesso->Opera(false, k_erroMorto,
                                  [&] { return (*m_it)->Le(uiOffset, pDados, uiTamanho); });
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        return m_pProcesso->Opera(
            true, k_erroMorto, [&] { return (*m_it)->Grava(uiOffset, pDados, uiTamanho); },
            [&] { (*m_it)->Grava(uiOffset, pDados, uiTamanho / 2).Ignora(); });
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        uiTamanho = 0;
        return m_pProcesso->Opera(false, k_erroMorto, [&] { return (*m_it)->GetTamanho(uiTamanho); });
    }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        return m_pProcesso->Opera(true, k_erroMorto, [&] { return (*m_it)->SetTamanho(uiTamanho); });
    }
    CXVErroArquivo Sincroniza() override {
        return m_pProcesso->Opera(false, k_erroMorto, [&] { return (*m_it)->Sincroniza(); });
    }

  private:
    std::shared_ptr<CXVProcesso> m_pProcesso;
    CXVProcesso::TArquivos::iterator m_it;
};

class CXVMarcaMorte final : public IXVMarcaDiretorio {
  public:
    CXVMarcaMorte(std::shared_ptr<CXVProcesso> pProcesso, CXVProcesso::TMarcas::iterator it)
        : m_pProcesso(std::move(pProcesso)), m_it(it) {}
    ~CXVMarcaMorte() override { m_pProcesso->Solta(m_it); }
    CXVMarcaMorte(const CXVMarcaMorte&) = delete;
    CXVMarcaMorte& operator=(const CXVMarcaMorte&) = delete;

  private:
    std::shared_ptr<CXVProcesso> m_pProcesso;
    CXVProcesso::TMarcas::iterator m_it;
};

}  // namespace

CXVSistemaArquivosMorte::CXVSistemaArquivosMorte(IXVSistemaArquivos& rInterno, EContagem eContagem,
                                                 EMorte eMorte)
    : m_rInterno(rInterno), m_eContagem(eContagem), m_eMorte(eMorte) {
    Nasce(0);
}
CXVSistemaArquivosMorte::~CXVSistemaArquivosMorte() = default;

void CXVSistemaArquivosMorte::Nasce(XVUInt64 uiOperacao, bool bGravaMetade) {
    m_pProcesso = std::make_shared<CXVProcesso>(m_eContagem, m_eMorte, uiOperacao, bGravaMetade);
}

bool CXVSistemaArquivosMorte::Executa(const std::function<void()>& fn) {
    try {
        fn();
    } catch (const SProcessoMorto&) {
        m_pProcesso->Enterra();
        return true;
    }
    if (!m_pProcesso->EstaMorto()) {
        return false;
    }
    // Something caught the death (a handler for everything at a boundary) and went on.
    m_pProcesso->Enterra();
    return true;
}

bool CXVSistemaArquivosMorte::EstaMorto() const {
    return m_pProcesso->EstaMorto();
}
XVUInt64 CXVSistemaArquivosMorte::GetQuantidade() const {
    return m_pProcesso->GetQuantidade();
}

CXVErroArquivo CXVSistemaArquivosMorte::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                             std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    const bool bAltera = rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente;
    return m_pProcesso->Opera(bAltera, k_erroMorto, [&] {
        std::unique_ptr<IXVArquivo> pInterno;
        const CXVErroArquivo erro = m_rInterno.Abre(sCaminho, rAbertura, pInterno);
        if (erro.Ok()) {
            pArquivo =
                std::make_unique<CXVArquivoMorte>(m_pProcesso, m_pProcesso->Guarda(std::move(pInterno)));
        }
        return erro;
    });
}

EExistencia CXVSistemaArquivosMorte::Existe(const std::string& sCaminho) {
    return m_pProcesso->Opera(false, EExistencia::eAusente, [&] { return m_rInterno.Existe(sCaminho); });
}

bool CXVSistemaArquivosMorte::EhSomenteLeitura(const std::string& sCaminho) {
    return m_pProcesso->Opera(false, false, [&] { return m_rInterno.EhSomenteLeitura(sCaminho); });
}

CXVErroArquivo CXVSistemaArquivosMorte::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    return m_pProcesso->Opera(false, k_erroMorto,
                              [&] { return m_rInterno.BuscaNomeReal(sCaminho, sNomeReal); });
}

CXVErroArquivo CXVSistemaArquivosMorte::Apaga(const std::string& sCaminho) {
    return m_pProcesso->Opera(true, k_erroMorto, [&] { return m_rInterno.Apaga(sCaminho); });
}

CXVErroArquivo CXVSistemaArquivosMorte::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    return m_pProcesso->Opera(true, k_erroMorto, [&] { return m_rInterno.Substitui(sOrigem, sDestino); });
}

CXVErroArquivo CXVSistemaArquivosMorte::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                              std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    return m_pProcesso->Opera(false, k_erroMorto,
                              [&] { return m_rInterno.Lista(sDiretorio, sMascara, listaNomes); });
}

CXVErroArquivo CXVSistemaArquivosMorte::CriaDiretorio(const std::string& sDiretorio) {
    return m_pProcesso->Opera(true, k_erroMorto, [&] { return m_rInterno.CriaDiretorio(sDiretorio); });
}

CXVErroArquivo CXVSistemaArquivosMorte::SincronizaDiretorio(const std::string& sDiretorio) {
    return m_pProcesso->Opera(false, k_erroMorto, [&] { return m_rInterno.SincronizaDiretorio(sDiretorio); });
}

CXVErroArquivo CXVSistemaArquivosMorte::MarcaDiretorio(const std::string& sDiretorio,
                                                       const std::string& sMarca,
                                                       std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    pMarca.reset();
    return m_pProcesso->Opera(true, k_erroMorto, [&] {
        std::unique_ptr<IXVMarcaDiretorio> pInterna;
        const CXVErroArquivo erro = m_rInterno.MarcaDiretorio(sDiretorio, sMarca, pInterna);
        if (erro.Ok()) {
            pMarca = std::make_unique<CXVMarcaMorte>(m_pProcesso, m_pProcesso->Guarda(std::move(pInterna)));
        }
        return erro;
    });
}

std::string CXVSistemaArquivosMorte::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return m_rInterno.Junta(sDiretorio, sNome);
}
