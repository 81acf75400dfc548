// Bodies of T_XVUnknown.

// Whoever drops the last reference destroys the logic object, and with it closes the store: outside of every
// call's frame, so the object brings a frame of its own.
template <class TInterface, class TLogica>
HRESULT T_XVUnknown<TInterface, TLogica>::ConstroiLogica() noexcept {
    return XVNaFronteira([this] {
        const auto destroi = [](TLogica* pLogica) { XVExecutaVigiada([pLogica] { delete pLogica; }); };
        TrocaLogica(std::shared_ptr<TLogica>(new TLogica, destroi));
        return S_OK;
    });
}

template <class TInterface, class TLogica>
T_XVUnknown<TInterface, TLogica>::~T_XVUnknown() {
    XV_METODO_INTERFACE("~T_XVUnknown");
    const std::shared_ptr<TLogica> pLogica = TomaLogica();
    if (pLogica == nullptr) return;
    TrocaLogica(nullptr);
    // No call is inside any more: this is the last reference but those of calls that outlive their component.
    XVIgnora(ExecutaQuadro(metodoXV, pLogica, [this](TLogica& rLogica) {
        return FAILED(m_hrConstruct) ? m_hrConstruct : rLogica.Finaliza();
    }));
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::QueryInterface(REFIID riid, void** ppvObject) {
    if (ppvObject == nullptr) return E_POINTER;
    *ppvObject = nullptr;
    if (!IsEqualGUID(riid, IID_IUnknown) && !IsEqualGUID(riid, TInterface::k_iidInterface))
        return E_NOINTERFACE;
    *ppvObject = static_cast<TInterface*>(this);
    AddRef();
    return S_OK;
}

template <class TInterface, class TLogica>
ULONG STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::Release() {
    const ULONG ulRestantes = m_ulReferencias.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (ulRestantes == 0) delete this;
    return ulRestantes;
}

template <class TInterface, class TLogica>
bool T_XVUnknown<TInterface, TLogica>::TentaAddRef() {
    ULONG ulReferencias = m_ulReferencias.load(std::memory_order_relaxed);
    while (ulReferencias != 0)
        if (m_ulReferencias.compare_exchange_weak(ulReferencias, ulReferencias + 1,
                                                  std::memory_order_relaxed))
            return true;
    return false;
}

template <class TInterface, class TLogica>
template <class TCorpo>
HRESULT T_XVUnknown<TInterface, TLogica>::ExecutaQuadro(const SMetodoInterface& rMetodo,
                                                        const std::shared_ptr<TLogica>& pLogica,
                                                        TCorpo&& fnCorpo) noexcept {
    CedeVez();
    const XVTrapParametroInvalido trap({pLogica.get(), rMetodo.pszNomeCompleto, rMetodo.fonte, rMetodo.iLinha,
                                        &CXVBaseParaRotinas::GetAcessoServidoresDefault});
    const ProfilerScope escopo(pLogica.get(), rMetodo.pszClasse, rMetodo.pszFuncao, {{"hr", XVUInt64{0}}});
    const CXVBaseParaRotinas& rBase = *pLogica;
    std::optional<CXVAcessoDefault> acesso;
    if (rBase.EstaInicializado()) acesso.emplace(&rBase);
    HRESULT hr = E_FAIL;
    XVExecutaVigiada([&] { hr = ExecutaCorpo(rMetodo, *pLogica, fnCorpo); });
    if (XVEhResultadoFatal(hr)) [[unlikely]]
        DescartaLogica(pLogica);
    return hr;
}

template <class TInterface, class TLogica>
template <class TCorpo>
HRESULT T_XVUnknown<TInterface, TLogica>::ExecutaCorpo(const SMetodoInterface& rMetodo, TLogica& rLogica,
                                                       TCorpo&& fnCorpo) noexcept {
    const CXVArquivosRecusados recusados;
    return XVNaFronteira(
        [&] {
            const HRESULT hr = fnCorpo(rLogica);
            if (FAILED(hr)) [[unlikely]]
                XVRegistraFalhaMetodo(hr, "pfInSEHFuncao()", rMetodo, rLogica);
            return hr;
        },
        [&](HRESULT hr) {
            XVRegistraFalhaMetodo(hr, "XVTranslateThrownExceptionToHresult()", rMetodo, rLogica);
        });
}

// A component that was initialised anew meanwhile keeps its new logic object.
template <class TInterface, class TLogica>
void T_XVUnknown<TInterface, TLogica>::DescartaLogica(const std::shared_ptr<TLogica>& pLogica) {
    std::shared_ptr<TLogica> pDescartada;
    const std::lock_guard trava(m_MutexLogica);
    if (m_pLogica == pLogica) m_pLogica.swap(pDescartada);
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::EstaInicializado(XVLongPS* plInicializado) {
    const CXVAtividadeComponente::CChamada chamada(m_Atividade);
    CedeVez();
    if (plInicializado == nullptr) return E_POINTER;
    *plInicializado = 1;
    return S_OK;
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE
T_XVUnknown<TInterface, TLogica>::GetUltimoErro(REG_DF_ULTIMO_ERROPS* pRegUltimoErro) {
    const CXVAtividadeComponente::CChamada chamada(m_Atividade);
    CedeVez();
    if (pRegUltimoErro == nullptr) return E_POINTER;
    *pRegUltimoErro = {};
    if (const std::shared_ptr<TLogica> pLogica = TomaLogica(); pLogica != nullptr)
        pLogica->GetUltimoErro().CopiaPara(pRegUltimoErro);
    return S_OK;
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::FuncaoGenerica(
    XVUInt ulFuncao, const _REG_CR_LISTA_BYTESPS* pEntrada, _REG_CR_LISTA_BYTESPS* pSaida) {
    XV_METODO_INTERFACE("FuncaoGenerica");
    if (pSaida != nullptr) *pSaida = {};
    return ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        std::span<const XVByte> entrada;
        HRESULT hr = pSaida == nullptr ? E_POINTER : XVListaDeBytes(pEntrada, &entrada);
        std::vector<XVByte> saida;
        if (SUCCEEDED(hr)) hr = rLogica.OnFuncaoGenerica(ulFuncao, entrada, saida);
        if (SUCCEEDED(hr)) hr = XVListaDeBytesToReg(saida, pSaida);
        return hr;
    });
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::AlteracaoMultiplaCadastro(
    XVUInt ulPonteiro, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) {
    XV_METODO_INTERFACE("AlteracaoMultiplaCadastro");
    return ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        std::span<const XVByte> listaAlteracoes;
        const HRESULT hr = XVListaDeBytes(pListaAlteracoes, &listaAlteracoes);
        return FAILED(hr) ? hr : rLogica.OnAlteracaoMultiplaCadastro(ulPonteiro, listaAlteracoes);
    });
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE T_XVUnknown<TInterface, TLogica>::AlteracaoMultiplaMovimento(
    XVUInt64 uiDmc, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) {
    XV_METODO_INTERFACE("AlteracaoMultiplaMovimento");
    return ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        const REG_XVDMC regDMC{uiDmc};
        std::span<const XVByte> listaAlteracoes;
        const HRESULT hr =
            regDMC.EhValido() ? XVListaDeBytes(pListaAlteracoes, &listaAlteracoes) : E_INVALIDARG;
        return FAILED(hr) ? hr : rLogica.OnAlteracaoMultiplaMovimento(regDMC, listaAlteracoes);
    });
}

template <class TInterface, class TLogica>
HRESULT STDMETHODCALLTYPE
T_XVUnknown<TInterface, TLogica>::Inicializa_Padrao(const REG_DF_INICIALIZAPS* pRegInicializa) {
    const CXVAtividadeComponente::CChamada chamada(m_Atividade);
    if (pRegInicializa == nullptr) return E_POINTER;
    const REG_DF_INICIALIZAPS reg = *pRegInicializa;  // checked and used is one and the same copy
    const std::lock_guard trava(m_MutexInicializacao);
    std::shared_ptr<TLogica> pLogica = TomaLogica();
    if (pLogica == nullptr) return FAILED(m_hrConstruct) ? m_hrConstruct : E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    const HRESULT hr = XVNaFronteira(
        [&] { return ValidaRegistro(reg, *pLogica); },
        [&](HRESULT hrExcecao) {
            XV_METODO_INTERFACE("Inicializa_Padrao");
            XVRegistraFalhaMetodo(hrExcecao, "XVTranslateThrownExceptionToHresult()", metodoXV, *pLogica);
        });
    if (FAILED(hr)) return hr;
    if (pLogica->EstaInicializado()) {
        // The old logic object ends with its last call; from here on calls find the new one, uninitialised.
        pLogica.reset();
        const HRESULT hrNova = ConstroiLogica();
        if (FAILED(hrNova)) return hrNova;
    }
    return InicializaComRegistro(reg);
}

// Precondition: m_MutexInicializacao is held.
template <class TInterface, class TLogica>
HRESULT T_XVUnknown<TInterface, TLogica>::InicializaComRegistro(const REG_DF_INICIALIZAPS& reg) {
    XV_METODO_INTERFACE("Inicializa_Padrao");
    const std::shared_ptr<TLogica> pLogica = TomaLogica();
    if (pLogica == nullptr) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    m_regInicializacao = reg;
    const HRESULT hr = ExecutaQuadro(metodoXV, pLogica, [&](TLogica& rLogica) {
        CXVProfilerEmpresa chamador;
        chamador.SetProfiler(XVRegistroInicializacao::GetEmpresa(reg),
                             XVRegistroInicializacao::GetUsuario(reg), reg.ulNumeroSessao);
        return rLogica.Inicializa(&chamador);
    });
    if (FAILED(hr)) m_regInicializacao = {};
    return hr;
}

template <class TInterface, class TLogica>
HRESULT T_XVUnknown<TInterface, TLogica>::ValidaRegistro(const REG_DF_INICIALIZAPS& reg,
                                                         TLogica& rLogica) const {
    // Lines under which support staff knows each refusal.
    constexpr int k_iLinhaVersao = 36;
    constexpr int k_iLinhaCRC = 45;
    constexpr int k_iLinhaEstrutura = 62;
    namespace Reg = XVRegistroInicializacao;
    XV_METODO_INTERFACE("Inicializa_Padrao");
    const auto naLinha = [&](int iLinha) {
        SMetodoInterface metodo = metodoXV;
        metodo.iLinha = iLinha;
        return metodo;
    };
    if (!Reg::VersaoConfere(reg))
        return XV_FALHA_METODO(E_XVCR_VERSAO_INCOMPATIVEL, naLinha(k_iLinhaVersao), rLogica);
    if (XVPlataforma::Registry()
            .LeNumero(k_sChaveRegistrySuite, "DesabilitaControleInicializacao")
            .value_or(0) == 0) {
        if (!Reg::CRCConfere(reg))
            return XV_FALHA_METODO(E_XVCR_CRC_INICIALIZACAO_INVALIDO, naLinha(k_iLinhaCRC), rLogica);
        if (!Reg::EstruturaConfere(reg))
            return XV_FALHA_METODO(E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA, naLinha(k_iLinhaEstrutura),
                                   rLogica);
    }
    // These hold even where the control is switched off: the texts are about to be read and name a directory.
    if (!Reg::TextosTerminados(reg))
        return XV_FALHA_METODO(E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA, naLinha(k_iLinhaEstrutura), rLogica);
    if (!Reg::ChamadorAceito(reg)) return XV_FALHA_METODO(E_INVALIDARG, metodoXV, rLogica);
    return S_OK;
}
