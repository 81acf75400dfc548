// CXVFile<T>: loading and reading.
#pragma once

template <class T>
HRESULT CXVFile<T>::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    XV_CHECK_SUPER(CXVFileBase, OnInicializa());
    m_aRegistros.Limpa();
    m_resumo = {};
    const bool bColunas = EsqueceColunas();  // of what the file held when it was closed
    XV_CHECK(IniciaVista());
    XV_CHECK(AbreArquivo());
    XV_CHECK(Recusa(Carrega()));
    XV_CHECK(Recusa(ConstroiIndices()));
    if (bColunas) FazColunas();
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    EsqueceRegistros();
    m_ulUltimaPrevista = 0;
    XV_CHECK_SUPER(CXVFileBase, OnFinaliza());
    return S_OK;
}

// The records in memory stay as they were unless all of the file was read.
template <class T>
HRESULT CXVFile<T>::Carrega() {
    if (!ExisteArquivo()) return S_OK;
    XVUInt64 uiSeek = 0;
    XVUInt64 uiTamanhoDados = 0;
    XV_CHECK(GetAreaDados(&uiSeek, &uiTamanhoDados));
    if (uiTamanhoDados % sizeof(T) != 0 || uiTamanhoDados / sizeof(T) > k_uiMaximoRegistros)
        XV_FALHA(E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA);
    if (EhVista() && EhAvulso()) return S_OK;  // read by position; no index asks for all
    TXVArrayRegistros<T> aRegistros;
    T* pBase = aRegistros.PreparaBase(static_cast<std::size_t>(uiTamanhoDados / sizeof(T)));
    if (uiTamanhoDados > 0) {
        if (const CXVErroArquivo erro =
                LeDadosEmPedacos(uiSeek, pBase, static_cast<std::size_t>(uiTamanhoDados), sizeof(T));
            const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK(CatchInicializacao(pEx));
    }
    TXVResumo<T> resumo;
    if (!EhVista()) resumo.Carrega(aRegistros);
    m_aRegistros = std::move(aRegistros);
    m_resumo = std::move(resumo);
    return S_OK;
}

template <class T>
CXVErroArquivo CXVFile<T>::ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) {
    *pbIntegro = false;
    if (uiTamanho / sizeof(T) > k_uiMaximoRegistros) return {};
    return XVConfereRegistros<T>(uiTamanho, pbIntegro, [this](XVUInt64 uiOffset, void* p, std::size_t n) {
        return LeDados(uiOffset, p, n);
    });
}

template <class T>
HRESULT CXVFile<T>::Le(XVUInt uiPosicao, T* preg) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    const std::shared_lock lock(GetLock());
    HRESULT hr = S_OK;
    if (uiPosicao == 0)
        hr = E_XVCR_TENTATIVA_LER_POSICAO_ZERO;
    else if (EhVista()) [[unlikely]] {
        hr = LeVisto(uiPosicao, preg);
        if (SUCCEEDED(hr)) return hr;
    } else if (!ExisteArquivo())
        hr = E_XVCR_ARQUIVO_NAO_EXISTE;
    else if (uiPosicao > m_aRegistros.size())
        hr = E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO;
    if (SUCCEEDED(hr)) [[likely]] {
        *preg = m_aRegistros[uiPosicao - 1];
        return S_OK;
    }
    RegistraFalhaLeitura(hr, uiPosicao, sizeof(T), m_aRegistros.size());
    // The failure is that of this very call.
    XV_CHECK_TEXTO(hr, "Le(uiPosicao, preg)");
    return hr;
}

template <class T>
HRESULT CXVFile<T>::LeColecao(XVUInt uiPosicao, XVUInt64 uiQtd, std::vector<T>& aRegistros) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}}, {"uiQtd", uiQtd});
    const std::shared_lock lock(GetLock());
    if (uiPosicao == 0 && uiQtd == 0) return S_OK;
    if (uiPosicao == 0 || uiQtd == 0) XV_FALHA(E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE);
    if (EhVista()) {
        XV_CHECK(LeColecaoVista(uiPosicao, uiQtd, aRegistros));
        return S_OK;
    }
    if (!ExisteArquivo()) XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
    if (uiPosicao > m_aRegistros.size()) XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    if (uiQtd > m_aRegistros.size() - (uiPosicao - 1))
        XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    m_aRegistros.CopiaPara(aRegistros, uiPosicao - 1, static_cast<std::size_t>(uiQtd));
    return S_OK;
}

template <class T>
template <class TVe>
HRESULT CXVFile<T>::Percorre(TVe fnVe) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    const std::shared_lock lock(GetLock());
    std::size_t uiVistos = 0;
    if (!EhVista()) {
        const auto mostra = [&](std::span<const T> aParte) {
            fnVe(aParte, uiVistos, &m_resumo);
            uiVistos += aParte.size();
        };
        m_aRegistros.Percorre(mostra);
        return S_OK;
    }
    // A viewer reads what there was when it began, in parts that need no memory for the whole.
    constexpr XVUInt64 k_uiParte = 1U << 14;
    const XVUInt64 uiQtd = GetQtdVista();
    std::vector<T> aParte;
    for (; uiVistos < uiQtd; uiVistos += aParte.size()) {
        aParte.clear();
        XV_CHECK(LeColecaoVista(static_cast<XVUInt>(uiVistos + 1),
                                std::min<XVUInt64>(k_uiParte, uiQtd - uiVistos), aParte));
        fnVe(std::span<const T>(aParte), uiVistos, static_cast<const TXVResumo<T>*>(nullptr));
    }
    return S_OK;
}

template <class T>
template <class TVe>
bool CXVFile<T>::VeColunas(TVe fnVe) const {
    const std::shared_lock lock(GetLock());
    if (!m_colunas.Existe()) return false;
    fnVe(m_colunas);
    return true;
}

template <class T>
void CXVFile<T>::FazColunas() {
    const std::unique_lock lock(GetLock());
    if (!ExisteArquivo() || m_colunas.Existe()) return;
    // Writes that are prepared already must find room for what they bring.
    m_colunas.Faz(m_aRegistros, std::max<std::size_t>(m_ulUltimaPrevista, m_aRegistros.size()));
}

template <class T>
bool CXVFile<T>::EsqueceColunas() {
    const std::unique_lock lock(GetLock());
    const bool bExistiam = m_colunas.Existe();
    m_colunas = {};
    return bExistiam;
}

template <class T>
XVUInt64 CXVFile<T>::GetQtdRegistros() const {
    const std::shared_lock lock(GetLock());
    return EhVista() ? GetQtdVista() : m_aRegistros.size();
}
