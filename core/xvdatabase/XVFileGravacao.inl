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
class CXVFile<T>::CPreparados final : public CXVGravacaoPreparada {
  public:
    explicit CPreparados(CXVFile& rFile) : m_rFile(rFile) {}

    CXVFileBase& GetArquivo() const override { return m_rFile; }
    XV_PONTOS_GRAVACAO("GravaColecao", "GravaRegistros", "GravaRegistros(uiPosicao, aRegistros)")
    void Publica() noexcept override { m_rFile.AtualizaMemoria(*this); }
    void Devolve() noexcept override { m_rFile.DevolveGravacao(*this); }

    XVUInt m_uiPosicao = 0;  // of the first record
    std::vector<T> m_aNovos;
    std::vector<T> m_aAntigos;
    std::vector<XVUInt64> m_aChaves;

  private:
    CXVFile& m_rFile;
};

template <class T>
HRESULT CXVFile<T>::GravaColecao(XVUInt& uiPosicao, std::span<const T> aRegistros) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}},
              {"aRegistros.size()", XVUInt64{aRegistros.size()}});
    return CXVOperacao::ExecutaSozinha(GetDataBase(), GetMutexGravacao(), uiPosicao,
                                       [&](CXVOperacao& rOperacao, XVUInt& uiPosicaoNova) {
                                           return PreparaColecao(rOperacao, uiPosicaoNova, aRegistros);
                                       });
}

template <class T>
HRESULT CXVFile<T>::ValidaPosicao(XVUInt uiPosicao) const {
    return uiPosicao > m_aRegistros.size() ? E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO : S_OK;
}

template <class T>
HRESULT CXVFile<T>::PreparaColecao(CXVOperacao& rOperacao, XVUInt& uiPosicao, std::span<const T> aRegistros) {
    if (aRegistros.empty()) return S_OK;
    const std::unique_lock lock(GetLock());
    XV_CHECK(ValidaGravacao());
    XV_CHECK(ValidaPosicao(uiPosicao));
    CPreparados& rPreparados = PreparadaLivre(m_listaPreparados, *this);
    XV_CHECK(ValidaIndices(uiPosicao, aRegistros, rPreparados.m_aChaves));  // a refused write creates no file
    if (!ExisteArquivo() && !EstaAusente()) {
        XV_CHECK(AbreParaGravacao());
        // The file was found with other records than those that this object knew of.
        XV_CHECK(ValidaPosicao(uiPosicao));
        XV_CHECK(ValidaIndices(uiPosicao, aRegistros, rPreparados.m_aChaves));
    }
    if (!PrecisaGravar(uiPosicao, aRegistros)) return S_OK;

    const bool bNovo = uiPosicao == XVDATABASE_POSICAO_NOVO_REGISTRO;
    const XVUInt64 uiPrimeira = bNovo ? GetTamanhoDadosPrevisto() / sizeof(T) + 1 : uiPosicao;
    if (uiPrimeira + aRegistros.size() - 1 > k_uiMaximoRegistros) XV_FALHA(eDirectoryFull);
    rPreparados.m_uiPosicao = static_cast<XVUInt>(uiPrimeira);
    rPreparados.m_aNovos.assign(aRegistros.begin(), aRegistros.end());
    rPreparados.m_aAntigos.clear();
    for (std::size_t i = 0; !bNovo && i < aRegistros.size() && uiPosicao - 1 + i < m_aRegistros.size(); ++i)
        rPreparados.m_aAntigos.push_back(m_aRegistros[uiPosicao - 1 + i]);
    PreparaMemoria(rPreparados.m_uiPosicao, aRegistros.size());
    XV_CHECK(PreparaGravacao(rOperacao, rPreparados, (uiPrimeira - 1) * sizeof(T),
                             std::as_bytes(std::span<const T>(rPreparados.m_aNovos)),
                             std::as_bytes(std::span<const T>(rPreparados.m_aAntigos))));
    uiPosicao = rPreparados.m_uiPosicao;
    return S_OK;
}

// Takes over a file that appeared since: its records and keys come first, and columns are of other records.
template <class T>
HRESULT CXVFile<T>::AbreParaGravacao() {
    m_colunas = {};
    return AbreECarrega([this] {
        const HRESULT hrCarga = Carrega();
        return FAILED(hrCarga) ? hrCarga : ConstroiIndices();
    });
}

template <class T>
bool CXVFile<T>::PrecisaGravar(XVUInt uiPosicao, std::span<const T> aRegistros) const {
    if (uiPosicao == 0 || uiPosicao - 1 + aRegistros.size() > m_aRegistros.size()) return true;
    for (std::size_t i = 0; i < aRegistros.size(); ++i)
        if (std::memcmp(&m_aRegistros[uiPosicao - 1 + i], &aRegistros[i], sizeof(T)) != 0) return true;
    return false;
}

// What can fail for lack of memory fails here, for this write and those that wait before it.
template <class T>
void CXVFile<T>::PreparaMemoria(XVUInt uiPosicao, std::size_t uiQuantidade) {
    const auto uiUltima = static_cast<XVUInt>(uiPosicao + uiQuantidade - 1);
    std::size_t uiChaves = uiQuantidade + GetPreparadas();
    if (uiUltima > m_aRegistros.size()) {
        m_aRegistros.Reserva(uiUltima - m_aRegistros.size());
        m_resumo.Reserva(uiUltima - m_aRegistros.size());
        m_colunas.Reserva(uiUltima - m_aRegistros.size());
        uiChaves += uiUltima - m_aRegistros.size();
    }
    m_ulUltimaPrevista = std::max(m_ulUltimaPrevista, uiUltima);
    for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx)
        if (m_listaIndices[idx].bConstruido)
            m_listaIndices[idx].indice.Reserva(uiChaves, uiUltima, m_aRegistros.size(), ChavesDe(idx));
}

template <class T>
void CXVFile<T>::AtualizaMemoria(const CPreparados& rPreparados) {
    const std::unique_lock lock(GetLock());
    const std::size_t uiQuantidade = rPreparados.m_aNovos.size();
    for (std::size_t i = 0; i < uiQuantidade; ++i) {
        const auto uiAtual = static_cast<XVUInt>(rPreparados.m_uiPosicao + i);
        const bool bExistia = uiAtual <= m_aRegistros.size();
        for (std::size_t idx = 0; idx < m_listaIndices.size(); ++idx) {
            SIndice& rIndice = m_listaIndices[idx];
            if (!rIndice.bConstruido) continue;
            const XVUInt64 uiChaveNova = rPreparados.m_aChaves[idx * uiQuantidade + i];
            const XVUInt64 uiChaveAntiga = bExistia ? rIndice.GetChave(m_aRegistros[uiAtual - 1], idx) : 0;
            if (uiChaveAntiga == uiChaveNova) continue;
            if (uiChaveAntiga != 0) rIndice.indice.Remove(uiChaveAntiga, uiAtual, ChavesDe(idx));
            if (uiChaveNova != 0) rIndice.indice.Inclui(uiChaveNova, uiAtual, ChavesDe(idx));
        }
        m_resumo.Muda(m_aRegistros, uiAtual - 1, rPreparados.m_aNovos[i]);
        m_colunas.Muda(uiAtual - 1, rPreparados.m_aNovos[i]);
        if (bExistia)
            m_aRegistros[uiAtual - 1] = rPreparados.m_aNovos[i];
        else
            m_aRegistros.Inclui(rPreparados.m_aNovos[i]);
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
