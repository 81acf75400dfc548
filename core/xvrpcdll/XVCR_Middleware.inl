// Bodies of T_XVCR_Middleware. A failed call hands out nothing: what its operation had already put into an
// output is freed and cleared.

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::LeIntegracao(
    XVUInt64 uiDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao, XVUInt64 ullFlagLeitura) {
    XV_METODO_INTERFACE("LeIntegracao");
    if (pRegIntegracao != nullptr) *pRegIntegracao = {};
    const HRESULT hr = this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegIntegracao == nullptr) return E_POINTER;
        const REG_XVDMC regDmc{uiDmc};
        return regDmc.EhValido() ? rLogica.LeIntegracao(regDmc, pRegIntegracao, ullFlagLeitura)
                                 : E_INVALIDARG;
    });
    if (FAILED(hr) && pRegIntegracao != nullptr) {
        XVLiberaBuffers(pRegIntegracao);
        *pRegIntegracao = {};
    }
    return hr;
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::LeIntegracoes(
    const _REG_DF_LISTA_XVDMCPS* pListaDmc, XVUInt* pulQuantidade,
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracao, XVUInt64 ullFlagLeitura) {
    XV_METODO_INTERFACE("LeIntegracoes");
    if (pulQuantidade != nullptr) *pulQuantidade = 0;
    if (ppRegIntegracao != nullptr) *ppRegIntegracao = nullptr;
    const HRESULT hr = this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pulQuantidade == nullptr || ppRegIntegracao == nullptr) return E_POINTER;
        const HRESULT hrLista = XVListaDeDmc(pListaDmc);
        if (FAILED(hrLista)) return hrLista;
        return rLogica.LeIntegracoes(*pListaDmc, pulQuantidade, ppRegIntegracao, ullFlagLeitura);
    });
    if (FAILED(hr) && pulQuantidade != nullptr && ppRegIntegracao != nullptr)
        XVLiberaIntegracoes(pulQuantidade, ppRegIntegracao);
    return hr;
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaIntegracaoInstantanea(
    REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) {
    XV_METODO_INTERFACE("GravaIntegracaoInstantanea");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegDmc == nullptr || pRegIntegracao == nullptr) return E_POINTER;
        return rLogica.GravaIntegracaoInstantanea(pRegDmc, *pRegIntegracao);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaIntegracao(
    REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) {
    XV_METODO_INTERFACE("GravaIntegracao");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegDmc == nullptr || pRegIntegracao == nullptr) return E_POINTER;
        return rLogica.GravaIntegracao(pRegDmc, pRegIntegracao);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaPendenciaIntegracao(
    XVUInt64 uiDmcOrigem, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) {
    XV_METODO_INTERFACE("GravaPendenciaIntegracao");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegIntegracao == nullptr) return E_POINTER;
        return rLogica.GravaPendenciaIntegracao(REG_XVDMC{uiDmcOrigem}, *pRegIntegracao);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaStatusIntegracao(
    const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS* pRegStatus) {
    XV_METODO_INTERFACE("GravaStatusIntegracao");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        return pRegStatus == nullptr ? E_POINTER : rLogica.GravaStatusIntegracao(*pRegStatus);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::BuscaPonteiros(
    const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS* pRegFiltro, _REG_DF_LISTA_XVDMCPS* pListaDmc) {
    XV_METODO_INTERFACE("BuscaPonteiros");
    if (pListaDmc != nullptr) *pListaDmc = {};
    const HRESULT hr = this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegFiltro == nullptr || pListaDmc == nullptr) return E_POINTER;
        return rLogica.BuscaPonteiros(*pRegFiltro, pListaDmc);
    });
    if (FAILED(hr)) XVLiberaBuffers(pListaDmc);
    return hr;
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaChaveRegistroTelvoParaTerceiro(
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) {
    XV_METODO_INTERFACE("GravaChaveRegistroTelvoParaTerceiro");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        return pReg == nullptr ? E_POINTER : rLogica.GravaChaveRegistroTelvoParaTerceiro(*pReg);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::BuscaChaveRegistroTelvoParaTerceiro(
    const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegFiltro,
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) {
    XV_METODO_INTERFACE("BuscaChaveRegistroTelvoParaTerceiro");
    if (pReg != nullptr) *pReg = {};
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegFiltro == nullptr || pReg == nullptr) return E_POINTER;
        return rLogica.BuscaChaveRegistroTelvoParaTerceiro(*pRegFiltro, pReg);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaChaveRegistroTelvoParaTerceiroPendente(
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) {
    XV_METODO_INTERFACE("GravaChaveRegistroTelvoParaTerceiroPendente");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        return pReg == nullptr ? E_POINTER : rLogica.GravaChaveRegistroTelvoParaTerceiroPendente(*pReg);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::GravaDataHoraIntegracaoTerceiro(
    const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) {
    XV_METODO_INTERFACE("GravaDataHoraIntegracaoTerceiro");
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        return pReg == nullptr ? E_POINTER : rLogica.GravaDataHoraIntegracaoTerceiro(*pReg);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::BuscaDataHoraIntegracaoTerceiro(
    const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegFiltro,
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) {
    XV_METODO_INTERFACE("BuscaDataHoraIntegracaoTerceiro");
    if (pReg != nullptr) *pReg = {};
    return this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegFiltro == nullptr || pReg == nullptr) return E_POINTER;
        return rLogica.BuscaDataHoraIntegracaoTerceiro(*pRegFiltro, pReg);
    });
}

template <class TLogica>
HRESULT STDMETHODCALLTYPE T_XVCR_Middleware<TLogica>::BuscaDadosSistemaTerceiro(
    const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS* pRegConsulta,
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pRegStatus) {
    XV_METODO_INTERFACE("BuscaDadosSistemaTerceiro");
    if (pRegStatus != nullptr) *pRegStatus = {};
    const HRESULT hr = this->ExecutaMetodo(metodoXV, [&](TLogica& rLogica) {
        if (pRegConsulta == nullptr || pRegStatus == nullptr) return E_POINTER;
        return rLogica.BuscaDadosSistemaTerceiro(*pRegConsulta, pRegStatus);
    });
    if (FAILED(hr) && pRegStatus != nullptr) {
        XVLiberaBuffers(pRegStatus);
        *pRegStatus = {};
    }
    return hr;
}
