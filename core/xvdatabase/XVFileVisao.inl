// CXVFile<T>: viewing. Records are read from the disk, each as of the moment of the reading; memory holds the
// indexes, which are built anew when somebody has written since.
#pragma once

// Before the file is looked at: what is written from here on makes the copy in memory an old one.
template <class T>
HRESULT CXVFile<T>::IniciaVista() {
    if (!EhVista()) return S_OK;
    if (const CXVErroArquivo erro = LeVistaAtual(&m_vista); const CXVErroArquivo* pEx = erro.GetFalha())
        XV_CHECK(Recusa(CatchInicializacao(pEx)));
    return S_OK;
}

// Not in the moment of the call: the file may be long.
template <class T>
HRESULT CXVFile<T>::CarregaVista(XVUInt64 uiChamada) {
    const CXVMomento::CAtivo suspende(nullptr);
    const std::unique_lock lock(GetLock());
    FechaArquivo();
    EsqueceRegistros();
    // After a failure every call loads again and gets the code of the load, not an answer from half a copy.
    m_bVistaValida = false;
    XV_CHECK(IniciaVista());
    m_vista.uiChamada = uiChamada;
    XV_CHECK(AbreArquivo());
    XV_CHECK(Recusa(Carrega()));
    const HRESULT hr = Recusa(ConstroiIndices());
    if (FAILED(hr)) EsqueceRegistros();
    XV_CHECK(hr);
    m_bVistaValida = true;
    return S_OK;
}

// Tables of keys ask the records for them: both go together.
template <class T>
void CXVFile<T>::EsqueceRegistros() noexcept {
    m_aRegistros.Limpa();
    m_resumo = {};
    for (SIndice& rIndice : m_listaIndices) {
        rIndice.indice.Limpa();
        rIndice.bConstruido = false;
    }
}

// One call reloads a file once at the most: what was there when the call began is then known.
template <class T>
HRESULT CXVFile<T>::AtualizaVista() const {
    if (!EhVista()) return S_OK;
    SVistaCarregada atual;
    const CXVErroArquivo erro = LeVistaAtual(&atual);
    if (const CXVErroArquivo* pEx = erro.GetFalha()) return Recusa(CatchInicializacao(pEx));
    {
        const std::shared_lock lock(GetLock());
        const bool bMesmaChamada = atual.uiChamada != 0 && atual.uiChamada == m_vista.uiChamada;
        if (m_bVistaValida && (bMesmaChamada || atual.EhIgual(m_vista))) return S_OK;
    }
    // What a viewer keeps in memory is a copy of the disk: renewing it changes nothing.
    return const_cast<CXVFile*>(this)->CarregaVista(atual.uiChamada);
}

template <class T>
HRESULT CXVFile<T>::LeVisto(XVUInt uiPosicao, T* preg) const {
    SAreaVista area;
    const CXVErroArquivo erro = GetDataBase()->GetVisao()->NoMomento([&](CXVMomento& rMomento) {
        CXVErroArquivo erroLe = rMomento.GetArea(GetNomeArquivo(), &area);
        if (erroLe.Ok() && uiPosicao <= GetQtdNaArea(area))
            erroLe = rMomento.Le(GetNomeArquivo(), area.uiSeek + XVUInt64{uiPosicao - 1} * sizeof(T), preg,
                                 sizeof(T));
        return erroLe;
    });
    if (const CXVErroArquivo* pEx = erro.GetFalha()) return Recusa(CatchInicializacao(pEx));
    if (!area.bExiste) return E_XVCR_ARQUIVO_NAO_EXISTE;
    return uiPosicao <= GetQtdNaArea(area) ? S_OK : E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO;
}

template <class T>
HRESULT CXVFile<T>::LeColecaoVista(XVUInt uiPosicao, XVUInt64 uiQtd, std::vector<T>& aRegistros) const {
    CXVArquivoVisto arquivo(*GetDataBase()->GetVisao(), GetNomeArquivo());
    SAreaVista area;
    CXVErroArquivo erro = arquivo.GetArea(&area);
    if (erro.Ok()) {
        const XVUInt64 uiNoArquivo = GetQtdNaArea(area);
        if (!area.bExiste) XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
        if (uiPosicao > uiNoArquivo || uiQtd > uiNoArquivo - (uiPosicao - 1))
            XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
        const std::size_t uiAntes = aRegistros.size();
        aRegistros.resize(uiAntes + static_cast<std::size_t>(uiQtd));
        erro = arquivo.LeEmPedacos(area.uiSeek + XVUInt64{uiPosicao - 1} * sizeof(T),
                                   aRegistros.data() + uiAntes, static_cast<std::size_t>(uiQtd) * sizeof(T),
                                   sizeof(T));
        if (!erro.Ok()) aRegistros.resize(uiAntes);
    }
    if (const CXVErroArquivo* pEx = erro.GetFalha()) XV_CHECK(Recusa(CatchInicializacao(pEx)));
    return S_OK;
}

template <class T>
XVUInt64 CXVFile<T>::GetQtdVista() const {
    SAreaVista area;
    const CXVArquivoVisto arquivo(*GetDataBase()->GetVisao(), GetNomeArquivo());
    return arquivo.GetArea(&area).Ok() ? GetQtdNaArea(area) : m_aRegistros.size();
}

// The record under a key, where the index still holds: a record that has the key is the one, however old the
// index is.
template <class T>
bool CXVFile<T>::LeIndexVisto(XVUInt64 uiChave, T* preg, XVUInt uiColunaIndexacao) const {
    XVUInt uiPosicao = 0;
    {
        const std::shared_lock lock(GetLock());
        if (uiColunaIndexacao >= m_listaIndices.size() || !m_listaIndices[uiColunaIndexacao].bConstruido)
            return false;
        uiPosicao = BuscaPrimeira(uiChave, uiColunaIndexacao);
    }
    return uiPosicao != 0 && SUCCEEDED(LeVisto(uiPosicao, preg)) &&
           m_listaIndices[uiColunaIndexacao].GetChave(*preg, uiColunaIndexacao) == uiChave;
}
