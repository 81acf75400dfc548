// CXVFile<T>: indexes.
#pragma once

template <class T>
template <class TDataBase>
HRESULT CXVFile<T>::IncluiIndex(const TDataBase* pDataBase, XVUInt uiColunaIndexacao,
                                bool bPermiteChaveZerada, bool bPermiteChaveRepetida) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    const std::unique_lock lock(GetLock());
    if (uiColunaIndexacao != m_listaIndices.size()) XV_FALHA(E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    const auto pfGetChaves = [](const void* p, std::span<const T> aRegistros, XVUInt uiColuna,
                                XVUInt64* puiChaves) {
        for (const T& reg : aRegistros)
            *puiChaves++ = static_cast<const TDataBase*>(p)->GetChaveIndex(reg, uiColuna);
    };
    m_listaIndices.push_back({pDataBase,
                              pfGetChaves,
                              bPermiteChaveZerada,
                              bPermiteChaveRepetida,
                              CXVIndice(bPermiteChaveRepetida),
                              false,
                              {}});
    const HRESULT hr =
        XV_REGISTRA_COMPLETO(this, IniciaIndex(m_listaIndices.back(), uiColunaIndexacao),
                             "AtualizaIndexDoArquivo(m_listaIndices.back(), uiColunaIndexacao)");
    if (FAILED(hr)) m_listaIndices.pop_back();
    return Recusa(hr);
}

template <class T>
HRESULT CXVFile<T>::ConstroiIndices() {
    for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx)
        XV_CHECK_TEXTO(IniciaIndex(m_listaIndices[idx], idx),
                       "AtualizaIndexDoArquivo(m_listaIndices[idx], idx)");
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::IniciaIndex(SIndice& rIndice, std::size_t uiColuna) {
    rIndice.indice.Limpa();
    rIndice.bConstruido = false;
    return rIndice.AceitaTudo() ? S_OK : AtualizaIndexDoArquivo(rIndice, uiColuna);
}

// Builds one index anew from all records in memory.
template <class T>
HRESULT CXVFile<T>::AtualizaIndexDoArquivo(SIndice& rIndice, std::size_t uiColuna) {
    const TXVBlocoMemoria<XVUInt64> chaves(m_aRegistros.size());
    XVUInt64* puiProximas = chaves.get();
    const auto anota = [&](std::span<const T> aRegistros) {
        rIndice.pfGetChaves(rIndice.pDataBase, aRegistros, static_cast<XVUInt>(uiColuna), puiProximas);
        puiProximas += aRegistros.size();
    };
    m_aRegistros.Percorre(anota);
    const std::span<const XVUInt64> aChaves(chaves.get(), m_aRegistros.size());
    // Of several faults the record that comes first decides.
    const auto itZerada =
        rIndice.bPermiteChaveZerada ? aChaves.end() : std::find(aChaves.begin(), aChaves.end(), XVUInt64{0});
    // Writes that are prepared already must find room for what they bring.
    const std::size_t uiPrevistas = std::max<std::size_t>(m_ulUltimaPrevista, aChaves.size());
    const bool bRepetida = !rIndice.indice.Constroi(
        aChaves.first(static_cast<std::size_t>(itZerada - aChaves.begin())), uiPrevistas - aChaves.size());
    if (bRepetida) XV_FALHA(E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    if (itZerada != aChaves.end()) XV_FALHA(E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
    rIndice.bConstruido = true;
    return S_OK;
}

// Runs busca() on a column that is made, under the lock.
template <class T>
template <class TBusca>
HRESULT CXVFile<T>::NoIndex(XVUInt uiColuna, TBusca busca) const {
    {
        const std::shared_lock lock(GetLock());
        if (uiColuna >= m_listaIndices.size()) XV_FALHA_EM("ExisteIndex", E_XVCR_COLUNA_INDEXACAO_INVALIDA);
        if (m_listaIndices[uiColuna].bConstruido) return busca();
    }
    const std::unique_lock lock(GetLock());
    // Nothing that is in the file or may be asked of it changes.
    auto* pThis = const_cast<CXVFile*>(this);
    SIndice& rIndice = pThis->m_listaIndices[uiColuna];
    if (!rIndice.bConstruido) XV_CHECK_EM("ExisteIndex", pThis->AtualizaIndexDoArquivo(rIndice, uiColuna));
    return busca();
}

// Checks a proposed write against every index, before any byte is written. aChaves: the keys, one column
// after the other, each in record order.
template <class T>
HRESULT CXVFile<T>::ValidaIndices(XVUInt uiPosicao, std::span<const T> aRegistros,
                                  std::vector<XVUInt64>& aChaves) {
    aChaves.clear();
    for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx)
        XV_CHECK(ValidaIndex(uiPosicao, aRegistros, idx, aChaves));
    return S_OK;
}

// Checks a proposed write against one index and adds its keys to aChaves.
template <class T>
HRESULT CXVFile<T>::ValidaIndex(XVUInt uiPosicao, std::span<const T> aRegistros, std::size_t idx,
                                std::vector<XVUInt64>& aChaves) {
    SIndice& rIndice = m_listaIndices[idx];
    rIndice.setIndexOrdenar.clear();
    for (std::size_t i = 0; i < aRegistros.size(); ++i) {
        const XVUInt64 uiChave = rIndice.GetChave(aRegistros[i], idx);
        aChaves.push_back(uiChave);
        if (uiChave == 0) {
            if (!rIndice.bPermiteChaveZerada) XV_FALHA(E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
            continue;
        }
        if (rIndice.bPermiteChaveRepetida) continue;
        const XVUInt uiPosicaoRegistro = uiPosicao == 0 ? 0 : static_cast<XVUInt>(uiPosicao + i);
        if (!PodeManterChave(idx, uiChave, uiPosicaoRegistro)) XV_FALHA(E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
        rIndice.setIndexOrdenar.push_back(uiChave);
    }
    std::sort(rIndice.setIndexOrdenar.begin(), rIndice.setIndexOrdenar.end());
    if (std::adjacent_find(rIndice.setIndexOrdenar.begin(), rIndice.setIndexOrdenar.end()) !=
        rIndice.setIndexOrdenar.end())
        XV_FALHA(E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    return S_OK;
}

// A key that may not repeat is free, or held by the very record that is overwritten (0: appended).
template <class T>
bool CXVFile<T>::PodeManterChave(std::size_t uiColuna, XVUInt64 uiChave, XVUInt uiPosicaoRegistro) const {
    const XVUInt uiPosicaoAtual = BuscaPrimeira(uiChave, uiColuna);
    return uiPosicaoAtual == 0 || uiPosicaoAtual == uiPosicaoRegistro;
}

template <class T>
HRESULT CXVFile<T>::ExisteIndex(XVUInt64 chave, std::vector<XVUInt>& listaPosicao,
                                XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    XV_CHECK(AtualizaVista());
    listaPosicao.clear();
    return NoIndex(uiColunaIndexacao, [&] {
        const CXVIndice& rIndice = m_listaIndices[uiColunaIndexacao].indice;
        for (XVUInt uiPosicao = BuscaPrimeira(chave, uiColunaIndexacao); uiPosicao != 0;
             uiPosicao = rIndice.GetProxima(uiPosicao))
            listaPosicao.push_back(uiPosicao);
        return S_OK;
    });
}

template <class T>
HRESULT CXVFile<T>::ExisteIndex(XVUInt64 chave, XVUInt& uiPosicao, XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    XV_CHECK(AtualizaVista());
    uiPosicao = 0;
    return NoIndex(uiColunaIndexacao, [&] {
        uiPosicao = BuscaPrimeira(chave, uiColunaIndexacao);
        return S_OK;
    });
}

template <class T>
template <class TVe>
HRESULT CXVFile<T>::PercorreIndex(XVUInt64 chave, XVUInt uiColunaIndexacao, TVe fnVe) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    if (EhVista()) {  // whose records are on the disk
        std::vector<XVUInt> listaPosicao;
        XV_CHECK(ExisteIndex(chave, listaPosicao, uiColunaIndexacao));
        for (const XVUInt uiPosicao : listaPosicao) {
            T reg;
            XV_CHECK(Le(uiPosicao, &reg));
            fnVe(reg);
        }
        return S_OK;
    }
    return NoIndex(uiColunaIndexacao, [&] {
        const CXVIndice& rIndice = m_listaIndices[uiColunaIndexacao].indice;
        for (XVUInt uiPosicao = BuscaPrimeira(chave, uiColunaIndexacao); uiPosicao != 0;
             uiPosicao = rIndice.GetProxima(uiPosicao))
            fnVe(m_aRegistros[uiPosicao - 1]);
        return S_OK;
    });
}

template <class T>
HRESULT CXVFile<T>::LeIndex(XVUInt64 uiPosicaoIndex, T* preg, XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    if (EhVista()) {
        if (LeIndexVisto(uiPosicaoIndex, preg, uiColunaIndexacao)) return S_OK;
        XVUInt uiPosicao = 0;
        XV_CHECK(ExisteIndex(uiPosicaoIndex, uiPosicao, uiColunaIndexacao));
        if (uiPosicao == 0) XV_FALHA(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        XV_CHECK(Le(uiPosicao, preg));
        return S_OK;
    }
    return NoIndex(uiColunaIndexacao, [&] {
        const XVUInt uiPosicao = BuscaPrimeira(uiPosicaoIndex, uiColunaIndexacao);
        if (uiPosicao == 0) XV_FALHA_EM("LeIndex", E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
        *preg = m_aRegistros[uiPosicao - 1];
        return S_OK;
    });
}

template <class T>
HRESULT CXVFile<T>::GravaIndex(XVUInt64 uiPosicaoIndex, const T& reg, XVUInt uiColunaIndexacao) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    XVUInt uiPosicao = 0;
    XV_CHECK(ExisteIndex(uiPosicaoIndex, uiPosicao, uiColunaIndexacao));
    if (uiPosicao == 0) XV_FALHA(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    XV_CHECK(Grava(uiPosicao, reg));
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::PreparaIndex(CXVOperacao& rOperacao, XVUInt64 uiPosicaoIndex, const T& reg,
                                 XVUInt uiColunaIndexacao) {
    XVUInt uiPosicao = 0;
    XV_CHECK(ExisteIndex(uiPosicaoIndex, uiPosicao, uiColunaIndexacao));
    if (uiPosicao == 0) XV_FALHA(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    XV_PREPARA(rOperacao, Prepara(rOperacao, uiPosicao, reg));
    return S_OK;
}
