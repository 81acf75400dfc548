// CXVFile<T>: writing.
#pragma once

template <class T>
HRESULT CXVFile<T>::Grava(XVUInt& uiPosicao, const T& reg) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    const std::span<const T> aRegistros(&reg, 1);
    XV_CHECK(GravaColecao(uiPosicao, aRegistros));
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::GravaColecao(XVUInt& uiPosicao, std::span<const T> aRegistros) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}},
              {"aRegistros.size()", XVUInt64{aRegistros.size()}});
    if (aRegistros.empty()) return S_OK;
    const std::unique_lock lock(GetLock());
    XV_CHECK(ValidaGravacao());
    if (uiPosicao > m_aRegistros.size()) XV_FALHA(E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    if (!ExisteArquivo()) {
        XV_CHECK(ValidaIndices(uiPosicao, aRegistros));  // a refused write creates no file
        XV_CHECK(AbreParaGravacao());
        // The file may have been found with other records than those that this object knew of.
        if (uiPosicao > m_aRegistros.size()) XV_FALHA(E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    }
    if (!PrecisaGravar(uiPosicao, aRegistros)) return S_OK;

    static constexpr SPontoFalha k_ponto = XV_PONTO_FALHA("GravaRegistros(uiPosicao, aRegistros)");
    const XVUInt64 uiTamanhoArquivo = GetTamanho();
    const HRESULT hr = ExecutaComTentativas(
        k_ponto, [&] { return GravaRegistros(uiPosicao, aRegistros, uiTamanhoArquivo); });
    if (FAILED(hr) && hr != E_XVCR_INDEXACAO_COM_POSICAO_ZERO && hr != E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA)
        DesfazGravacaoRegistros(uiPosicao, aRegistros.size(), uiTamanhoArquivo);
    return hr;
}

// The records that were overwritten are still in memory.
template <class T>
void CXVFile<T>::DesfazGravacaoRegistros(XVUInt uiPosicao, std::size_t uiQuantidade,
                                         XVUInt64 uiTamanhoArquivo) {
    DesfazGravacao(uiTamanhoArquivo);
    if (uiPosicao == XVDATABASE_POSICAO_NOVO_REGISTRO || !ExisteArquivo()) return;
    const XVUInt64 uiSeek = GetSeekCabecalho();
    const std::size_t uiFim = std::min(uiPosicao - 1 + uiQuantidade, m_aRegistros.size());
    for (std::size_t i = uiPosicao - 1; i < uiFim && ExisteArquivo(); ++i)
        if (!GravaDados(uiSeek + i * sizeof(T), &m_aRegistros[i], sizeof(T)).Ok()) FechaArquivo();
}

// Creates the file, or takes over one that appeared since: its records and keys come first.
template <class T>
HRESULT CXVFile<T>::AbreParaGravacao() {
    const HRESULT hr = AbreECarrega([this] {
        const HRESULT hrCarga = Carrega();
        return FAILED(hrCarga) ? hrCarga : ConstroiIndices();
    });
    XV_CHECK_TEXTO(hr, "AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao)");
    return S_OK;
}

template <class T>
bool CXVFile<T>::PrecisaGravar(XVUInt uiPosicao, std::span<const T> aRegistros) const {
    if (uiPosicao == 0 || uiPosicao - 1 + aRegistros.size() > m_aRegistros.size()) return true;
    for (std::size_t i = 0; i < aRegistros.size(); ++i)
        if (std::memcmp(&m_aRegistros[uiPosicao - 1 + i], &aRegistros[i], sizeof(T)) != 0) return true;
    return false;
}

// One attempt. uiTamanhoArquivo is the file's length before the first attempt: every attempt of an append
// writes there again.
template <class T>
HRESULT CXVFile<T>::GravaRegistros(XVUInt& uiPosicao, std::span<const T> aRegistros,
                                   XVUInt64 uiTamanhoArquivo) {
    XV_CHECK(ValidaIndices(uiPosicao, aRegistros));
    const XVUInt64 uiSeek = GetSeekCabecalho();
    const bool bNovo = uiPosicao == XVDATABASE_POSICAO_NOVO_REGISTRO;
    const XVUInt64 uiOffset = bNovo ? uiTamanhoArquivo : uiSeek + (uiPosicao - XVUInt64{1}) * sizeof(T);
    const XVUInt64 uiPrimeira = bNovo ? (uiTamanhoArquivo - uiSeek) / sizeof(T) + 1 : uiPosicao;
    if (uiPrimeira + aRegistros.size() - 1 > k_uiMaximoRegistros) XV_FALHA(eDirectoryFull);
    const auto uiPrimeiraPosicao = static_cast<XVUInt>(uiPrimeira);
    PreparaMemoria(uiPrimeiraPosicao, aRegistros.size());

    if (const CXVErroArquivo erro = GravaDados(uiOffset, aRegistros.data(), aRegistros.size_bytes());
        !erro.Ok())
        XV_CHECK_TEXTO(CatchGravacao(&erro), "CatchGravacao(pEx)");
    XV_CHECK(AtualizaArquivo());
    AtualizaMemoria(uiPrimeiraPosicao, aRegistros);
    uiPosicao = uiPrimeiraPosicao;
    return S_OK;
}

// What can fail for lack of memory fails here, before the disk is touched.
template <class T>
void CXVFile<T>::PreparaMemoria(XVUInt uiPosicao, std::size_t uiQuantidade) {
    const auto uiUltima = static_cast<XVUInt>(uiPosicao + uiQuantidade - 1);
    if (uiUltima > m_aRegistros.size()) m_aRegistros.Reserva(uiUltima - m_aRegistros.size());
    for (SIndice& rIndice : m_listaIndices) rIndice.indice.Reserva(uiQuantidade, uiUltima);
}

template <class T>
void CXVFile<T>::AtualizaMemoria(XVUInt uiPosicao, std::span<const T> aRegistros) {
    for (std::size_t i = 0; i < aRegistros.size(); ++i) {
        const auto uiAtual = static_cast<XVUInt>(uiPosicao + i);
        const bool bExistia = uiAtual <= m_aRegistros.size();
        for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx) {
            SIndice& rIndice = m_listaIndices[idx];
            const XVUInt64 uiChaveNova = rIndice.listaIndexGerados[i];
            const XVUInt64 uiChaveAntiga = bExistia ? rIndice.GetChave(m_aRegistros[uiAtual - 1], idx) : 0;
            if (uiChaveAntiga == uiChaveNova) continue;
            if (uiChaveAntiga != 0) rIndice.indice.Remove(uiChaveAntiga, uiAtual);
            if (uiChaveNova != 0) rIndice.indice.Inclui(uiChaveNova, uiAtual);
        }
        if (bExistia)
            m_aRegistros[uiAtual - 1] = aRegistros[i];
        else
            m_aRegistros.Inclui(aRegistros[i]);
    }
}

template <class T>
HRESULT CXVFile<T>::SetConteudo(std::span<const T> aRegistros) {
    XVUInt uiPosicao = GetQtdRegistros() == 0 ? XVDATABASE_POSICAO_NOVO_REGISTRO : 1;
    XV_CHECK(GravaColecao(uiPosicao, aRegistros));
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::SetArrayData(const void* pDados, XVUInt64 uiQuantidade) {
    if (uiQuantidade > 0 && pDados == nullptr) XV_FALHA(E_POINTER);
    std::vector<T> aRegistros(static_cast<std::size_t>(uiQuantidade));
    if (uiQuantidade > 0) std::memcpy(aRegistros.data(), pDados, aRegistros.size() * sizeof(T));
    XV_CHECK(SetConteudo(aRegistros));
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::SetRegData(XVUInt& uiPosicao, const void* pDados) {
    if (pDados == nullptr) XV_FALHA(E_POINTER);
    T reg;
    std::memcpy(&reg, pDados, sizeof(T));
    XV_CHECK(Grava(uiPosicao, reg));
    return S_OK;
}
