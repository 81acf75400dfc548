// CXVFile<T>: indexes.
#pragma once

template <class T>
template <class TDataBase>
HRESULT CXVFile<T>::IncluiIndex(const TDataBase* pDataBase, XVUInt uiColunaIndexacao,
                                bool bPermiteChaveZerada, bool bPermiteChaveRepetida) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    const std::unique_lock lock(GetLock());
    if (uiColunaIndexacao != m_listaIndices.size()) XV_FALHA(E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    const auto pfGetChaveIndex = [](const void* p, const T& reg, XVUInt uiColuna) {
        return static_cast<const TDataBase*>(p)->GetChaveIndex(reg, uiColuna);
    };
    m_listaIndices.push_back(
        {pDataBase, pfGetChaveIndex, bPermiteChaveZerada, bPermiteChaveRepetida, {}, {}});
    const HRESULT hr = XV_REGISTRA(AtualizaIndexDoArquivo(m_listaIndices.back(), uiColunaIndexacao));
    if (FAILED(hr)) m_listaIndices.pop_back();
    return Recusa(hr);
}

template <class T>
HRESULT CXVFile<T>::ConstroiIndices() {
    for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx)
        XV_CHECK(AtualizaIndexDoArquivo(m_listaIndices[idx], idx));
    return S_OK;
}

// Builds one index anew from all records in memory.
template <class T>
HRESULT CXVFile<T>::AtualizaIndexDoArquivo(SIndice& rIndice, std::size_t uiColuna) {
    rIndice.indice.Limpa();
    rIndice.indice.Reserva(m_aRegistros.size(), static_cast<XVUInt>(m_aRegistros.size()));
    for (std::size_t i = 0; i < m_aRegistros.size(); ++i) {
        const XVUInt64 uiChave = rIndice.GetChave(m_aRegistros[i], uiColuna);
        if (uiChave == 0) {
            if (!rIndice.bPermiteChaveZerada) XV_FALHA(E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
            continue;
        }
        if (!rIndice.bPermiteChaveRepetida && rIndice.indice.GetPrimeira(uiChave) != 0)
            XV_FALHA(E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
        rIndice.indice.Inclui(uiChave, static_cast<XVUInt>(i + 1));
    }
    return S_OK;
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
        if (!PodeManterChave(rIndice, uiChave, uiPosicaoRegistro))
            XV_FALHA(E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
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
bool CXVFile<T>::PodeManterChave(const SIndice& rIndice, XVUInt64 uiChave, XVUInt uiPosicaoRegistro) const {
    const XVUInt uiPosicaoAtual = rIndice.indice.GetPrimeira(uiChave);
    return uiPosicaoAtual == 0 || uiPosicaoAtual == uiPosicaoRegistro;
}

template <class T>
HRESULT CXVFile<T>::ExisteIndex(XVUInt64 chave, std::vector<XVUInt>& listaPosicao,
                                XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    XV_CHECK(AtualizaVista());
    const std::shared_lock lock(GetLock());
    listaPosicao.clear();
    if (uiColunaIndexacao >= m_listaIndices.size()) XV_FALHA(E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    const CXVIndice& rIndice = m_listaIndices[uiColunaIndexacao].indice;
    for (XVUInt uiPosicao = rIndice.GetPrimeira(chave); uiPosicao != 0;
         uiPosicao = rIndice.GetProxima(uiPosicao))
        listaPosicao.push_back(uiPosicao);
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::ExisteIndex(XVUInt64 chave, XVUInt& uiPosicao, XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    XV_CHECK(AtualizaVista());
    const std::shared_lock lock(GetLock());
    uiPosicao = 0;
    if (uiColunaIndexacao >= m_listaIndices.size()) XV_FALHA(E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    uiPosicao = m_listaIndices[uiColunaIndexacao].indice.GetPrimeira(chave);
    return S_OK;
}

template <class T>
HRESULT CXVFile<T>::LeIndex(XVUInt64 uiPosicaoIndex, T* preg, XVUInt uiColunaIndexacao) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiColunaIndexacao", XVUInt64{uiColunaIndexacao}});
    if (EhVista() && LeIndexVisto(uiPosicaoIndex, preg, uiColunaIndexacao)) return S_OK;
    XVUInt uiPosicao = 0;
    XV_CHECK(ExisteIndex(uiPosicaoIndex, uiPosicao, uiColunaIndexacao));
    if (uiPosicao == 0) XV_FALHA(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    XV_CHECK(Le(uiPosicao, preg));
    return S_OK;
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
