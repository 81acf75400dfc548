// The component object: owns the logic object, accepts the caller's initialisation record and gives every
// interface method the same frame.
//
// TLogica is a CXVBaseParaRotinas with Inicializa(const IXVDF_Profiler*)/Finaliza and the operations of
// middleware/XVOperacoesGenericas.h; its destructor finalises. Its operations run on several threads at once.
//
// Life of the logic object: each call holds its own reference, so that a fatal result, or an
// initialisation anew, takes the object away from later calls while those inside finish on it; the last one
// out destroys it. After a fatal result the component is dead: everything answers 0x81080A04.
//
// Thread rule: any thread. No lock of this class is held while the logic object works, save that
// initialisations of one component wait for each other.
#pragma once

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVRegistroInicializacao.h"
#include "core/xvrpcdll/XVAtividadeComponente.h"
#include "core/xvrpcdll/XVListasPS.h"
#include "core/xvrpcdll/XVQuadroMetodo.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVChamadaVigiada.h"
#include "platform/XVCom.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/faults/XVExcecoes.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

template <class TInterface, class TLogica>
class T_XVUnknown : public TInterface {
  public:
    T_XVUnknown() : m_hrConstruct(ConstroiLogica()) {}
    T_XVUnknown(const T_XVUnknown&) = delete;
    T_XVUnknown& operator=(const T_XVUnknown&) = delete;

    // Result of the construction; a component whose construction failed answers it to initialisations.
    HRESULT GetResultadoConstrucao() const { return m_hrConstruct; }
    const CXVAtividadeComponente& GetAtividade() const { return m_Atividade; }
    REG_DF_INICIALIZAPS GetRegistroInicializacao() const {
        const std::lock_guard trava(m_MutexInicializacao);
        return m_regInicializacao;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override {
        return m_ulReferencias.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    ULONG STDMETHODCALLTYPE Release() override;
    // AddRef for who keeps no reference of its own but a list of live components: false when the object is
    // already ending. The list must hold it while this is called.
    bool TentaAddRef();

    HRESULT STDMETHODCALLTYPE Inicializa(const REG_DF_INICIALIZAPS* pRegInicializa) override {
        return Inicializa_Padrao(pRegInicializa);
    }
    HRESULT STDMETHODCALLTYPE EstaInicializado(XVLongPS* plInicializado) override;
    HRESULT STDMETHODCALLTYPE GetUltimoErro(REG_DF_ULTIMO_ERROPS* pRegUltimoErro) override;
    HRESULT STDMETHODCALLTYPE FuncaoGenerica(XVUInt ulFuncao, const _REG_CR_LISTA_BYTESPS* pEntrada,
                                             _REG_CR_LISTA_BYTESPS* pSaida) override;
    HRESULT STDMETHODCALLTYPE
    AlteracaoMultiplaCadastro(XVUInt ulPonteiro, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) override;
    HRESULT STDMETHODCALLTYPE
    AlteracaoMultiplaMovimento(XVUInt64 uiDmc, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) override;
    HRESULT STDMETHODCALLTYPE Inicializa_Padrao(const REG_DF_INICIALIZAPS* pRegInicializa) override;

    static constexpr const char* XVNomeClasse() {
        return TXVNomeComponente<TInterface, TLogica>::k_aTexto.data();
    }
    static constexpr const char* XVNomeFonte() { return "core/xvrpcdll/T_XVUnknown"; }

  protected:
    // Released, never deleted from outside.
    virtual ~T_XVUnknown();

    // For the destructor of a derived class: the logic object, which is whoever's takes it to finalise. Null:
    // there is none any more.
    std::shared_ptr<TLogica> EntregaLogica() {
        std::shared_ptr<TLogica> pLogica;
        const std::lock_guard trava(m_MutexLogica);
        m_pLogica.swap(pLogica);
        return pLogica;
    }

    // Before each call: a server lets others pass first. A component in its only caller's own process has
    // nobody to wait for, and on a busy machine the turn may take long to come back.
    virtual void CedeVez() const { XVPlataforma::Relogio().Dorme(0); }

    // The frame of an interface method. fnCorpo(TLogica&) runs the operation and returns its HRESULT.
    template <class TCorpo>
    HRESULT ExecutaMetodo(const SMetodoInterface& rMetodo, TCorpo&& fnCorpo) noexcept {
        const CXVAtividadeComponente::CChamada chamada(m_Atividade);
        const std::shared_ptr<TLogica> pLogica = TomaLogica();
        if (pLogica == nullptr || !pLogica->EstaInicializado()) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
        return ExecutaQuadro(rMetodo, pLogica, fnCorpo);
    }

  private:
    // The frame proper, for a logic object that may still be uninitialised.
    template <class TCorpo>
    HRESULT ExecutaQuadro(const SMetodoInterface& rMetodo, const std::shared_ptr<TLogica>& pLogica,
                          TCorpo&& fnCorpo) noexcept;
    // Runs the body; what it throws becomes a code, and a failure is recorded.
    template <class TCorpo>
    static HRESULT ExecutaCorpo(const SMetodoInterface& rMetodo, TLogica& rLogica, TCorpo&& fnCorpo) noexcept;

    HRESULT ConstroiLogica() noexcept;
    std::shared_ptr<TLogica> TomaLogica() const {
        const std::lock_guard trava(m_MutexLogica);
        return m_pLogica;
    }
    void TrocaLogica(std::shared_ptr<TLogica> pNova) {
        const std::lock_guard trava(m_MutexLogica);
        m_pLogica.swap(pNova);
    }
    void DescartaLogica(const std::shared_ptr<TLogica>& pLogica);

    HRESULT ValidaRegistro(const REG_DF_INICIALIZAPS& reg, TLogica& rLogica) const;
    HRESULT InicializaComRegistro(const REG_DF_INICIALIZAPS& reg);

    mutable std::mutex m_MutexLogica;  // guards the pointer alone
    std::shared_ptr<TLogica> m_pLogica;
    mutable std::mutex m_MutexInicializacao;   // one initialisation at a time
    REG_DF_INICIALIZAPS m_regInicializacao{};  // all zero unless initialised
    CXVAtividadeComponente m_Atividade;
    std::atomic<ULONG> m_ulReferencias = 1;
    HRESULT m_hrConstruct;
};

#include "core/xvrpcdll/T_XVUnknown.inl"
