#include "core/xvdatabase/XVTextFile.h"

#include <cstring>
#include <mutex>
#include <shared_mutex>

#include "core/xvdatabase/XVDataBase.h"
#include "support/XVCodigos.h"
#include "support/XVProfiler.h"

namespace {
constexpr std::size_t k_uiTamanhoPrefixo = sizeof(XVUInt);
constexpr std::size_t k_uiMaximoTextos = 0xFFFFFFFFU;
}  // namespace

HRESULT CXVTextFile::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    XV_CHECK_TEXTO(CXVFileBase::OnInicializa(), "__super::OnInicializa()");
    XV_CHECK(AbreArquivo());
    XV_CHECK_TEXTO(Recusa(Carrega()), "Carrega()");
    return S_OK;
}

HRESULT CXVTextFile::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    m_colecao.Limpa();
    m_listaBlocos.clear();
    XV_CHECK_TEXTO(CXVFileBase::OnFinaliza(), "__super::OnFinaliza()");
    return S_OK;
}

HRESULT CXVTextFile::Carrega() {
    XVUInt64 uiSeek = 0;
    XVUInt64 uiTamanho = 0;
    std::unique_ptr<char[]> pDados;
    if (ExisteArquivo()) XV_CHECK(GetAreaDados(&uiSeek, &uiTamanho));
    if (uiTamanho > 0) {
        pDados.reset(new char[static_cast<std::size_t>(uiTamanho)]);
        if (const CXVErroArquivo erro = LeDados(uiSeek, pDados.get(), static_cast<std::size_t>(uiTamanho));
            !erro.Ok())
            XV_CHECK_TEXTO(CatchInicializacao(&erro), "CatchInicializacao(pEx)");
    }
    m_colecao.Limpa();
    m_listaBlocos.clear();
    m_listaBlocos.push_back(std::move(pDados));
    XV_CHECK(InterpretaDados(m_listaBlocos.back().get(), uiTamanho));
    return S_OK;
}

// Walks the prefixes; the texts stay where they were read.
HRESULT CXVTextFile::InterpretaDados(const char* pDados, XVUInt64 uiTamanho) {
    XVUInt64 uiOffset = 0;
    while (uiOffset < uiTamanho) {
        if (uiTamanho - uiOffset < k_uiTamanhoPrefixo)
            XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        XVUInt ulTexto = 0;
        std::memcpy(&ulTexto, pDados + uiOffset, k_uiTamanhoPrefixo);
        if (ulTexto > uiTamanho - uiOffset - k_uiTamanhoPrefixo)
            XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        m_colecao.Inclui({uiOffset, pDados + uiOffset + k_uiTamanhoPrefixo, ulTexto});
        uiOffset += k_uiTamanhoPrefixo + ulTexto;
    }
    return S_OK;
}

HRESULT CXVTextFile::Le(XVUInt uiPosicao, std::string& sTexto) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    sTexto.clear();
    if (uiPosicao == 0) XV_FALHA(E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    const std::shared_lock lock(GetLock());
    if (!ExisteArquivo()) XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
    if (uiPosicao > m_colecao.size()) XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    const std::string_view sGuardado = m_colecao[uiPosicao - 1].GetTexto();
    sTexto = sGuardado.substr(0, sGuardado.find('\0'));
    return S_OK;
}

bool CXVTextFile::PrecisaGravar(XVUInt uiPosicao, std::span<const std::string_view> aRegistros) const {
    if (uiPosicao == 0 || uiPosicao - 1 + aRegistros.size() > m_colecao.size()) return true;
    for (std::size_t k = 0; k < aRegistros.size(); ++k)
        if (m_colecao[uiPosicao - 1 + k].GetTexto() != aRegistros[k]) return true;
    return false;
}

HRESULT CXVTextFile::Grava(XVUInt& uiPosicao, std::string_view sTexto) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    const std::span<const std::string_view> aRegistros(&sTexto, 1);
    XV_CHECK(GravaColecao(uiPosicao, aRegistros));
    return S_OK;
}

HRESULT CXVTextFile::GravaColecao(XVUInt& uiPosicao, const std::vector<std::string>& aRegistros) {
    const std::vector<std::string_view> aTextos(aRegistros.begin(), aRegistros.end());
    return GravaColecao(uiPosicao, std::span<const std::string_view>(aTextos));
}

HRESULT CXVTextFile::GravaColecao(XVUInt& uiPosicao, std::span<const std::string_view> aRegistros) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}},
              {"aRegistros.size()", XVUInt64{aRegistros.size()}});
    if (aRegistros.empty()) return S_OK;
    const std::unique_lock lock(GetLock());
    XV_CHECK(ValidaGravacao());
    if (uiPosicao > m_colecao.size()) XV_FALHA(E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    if (!ExisteArquivo()) XV_CHECK(AbreParaGravacao());
    if (!PrecisaGravar(uiPosicao, aRegistros)) return S_OK;
    XVUInt uiPosicaoNova = 0;
    SBloco bloco;
    XV_CHECK(MontaBloco(aRegistros, &bloco));
    static constexpr SPontoFalha k_ponto = XV_PONTO_FALHA("GravaRegistros(uiPosicao, aRegistros)");
    const XVUInt64 uiTamanhoArquivo = GetTamanho();
    const HRESULT hr = ExecutaComTentativas(
        k_ponto, [&] { return GravaRegistros(uiPosicaoNova, aRegistros, bloco, uiTamanhoArquivo); });
    if (FAILED(hr)) {
        DesfazGravacao(uiTamanhoArquivo);
        return hr;
    }
    uiPosicao = uiPosicaoNova;
    return S_OK;
}

// Creates the file, or takes over one that appeared since: its texts come first.
HRESULT CXVTextFile::AbreParaGravacao() {
    const HRESULT hr = AbreECarrega([this] { return Carrega(); });
    XV_CHECK_TEXTO(hr, "AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao)");
    return S_OK;
}

// Prefixes and texts one after the other: the run reaches the disk in one write and the same block then
// holds the texts in memory.
HRESULT CXVTextFile::MontaBloco(std::span<const std::string_view> aRegistros, SBloco* pBloco) {
    if (aRegistros.size() > k_uiMaximoTextos - m_colecao.size()) XV_FALHA(eDirectoryFull);
    pBloco->uiTamanho = 0;
    for (const std::string_view sTexto : aRegistros) {
        if (sTexto.size() > 0xFFFFFFFFU) XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        pBloco->uiTamanho += k_uiTamanhoPrefixo + sTexto.size();
    }
    pBloco->pDados.reset(new char[pBloco->uiTamanho]);
    char* p = pBloco->pDados.get();
    for (const std::string_view sTexto : aRegistros) {
        const auto ulTamanho = static_cast<XVUInt>(sTexto.size());
        std::memcpy(p, &ulTamanho, k_uiTamanhoPrefixo);
        std::copy(sTexto.begin(), sTexto.end(), p + k_uiTamanhoPrefixo);
        p += k_uiTamanhoPrefixo + sTexto.size();
    }
    return S_OK;
}

HRESULT CXVTextFile::GravaRegistros(XVUInt& uiPosicao, std::span<const std::string_view> aRegistros,
                                    SBloco& bloco, XVUInt64 uiTamanhoArquivo) {
    // What can fail for lack of memory fails before the disk is touched.
    m_colecao.Reserva(aRegistros.size());
    if (m_listaBlocos.size() == m_listaBlocos.capacity())
        m_listaBlocos.reserve(m_listaBlocos.size() * 2 + 16);
    const XVUInt64 uiOffset =
        uiPosicao == 0 ? uiTamanhoArquivo : GetSeekCabecalho() + m_colecao[uiPosicao - 1].uiOffsetDados;
    if (const CXVErroArquivo erro = GravaDados(uiOffset, bloco.pDados.get(), bloco.uiTamanho); !erro.Ok())
        XV_CHECK_TEXTO(CatchGravacao(&erro), "CatchGravacao(pEx)");
    XV_CHECK(AtualizaArquivo());
    m_listaBlocos.push_back(std::move(bloco.pDados));
    AtualizaMemoria(uiPosicao, aRegistros, uiOffset - GetSeekCabecalho());
    return S_OK;
}

// Overwritten entries keep their offsets: only runs of equal lengths may be overwritten.
void CXVTextFile::AtualizaMemoria(XVUInt& uiPosicao, std::span<const std::string_view> aRegistros,
                                  XVUInt64 uiOffsetDados) {
    const char* pTexto = m_listaBlocos.back().get();
    const std::size_t uiPrimeira = uiPosicao == 0 ? m_colecao.size() : uiPosicao - 1;
    for (std::size_t k = 0; k < aRegistros.size(); ++k) {
        const auto ulTamanho = static_cast<XVUInt>(aRegistros[k].size());
        SEntrada entrada{uiOffsetDados, pTexto + k_uiTamanhoPrefixo, ulTamanho};
        pTexto += k_uiTamanhoPrefixo + ulTamanho;
        uiOffsetDados += k_uiTamanhoPrefixo + ulTamanho;
        if (uiPrimeira + k < m_colecao.size()) {
            entrada.uiOffsetDados = m_colecao[uiPrimeira + k].uiOffsetDados;
            m_colecao[uiPrimeira + k] = entrada;
        } else {
            m_colecao.Inclui(entrada);
        }
    }
    uiPosicao = static_cast<XVUInt>(uiPrimeira + 1);
}

XVUInt64 CXVTextFile::GetQtdRegistros() const {
    const std::shared_lock lock(GetLock());
    return m_colecao.size();
}

const CXVTextFile::CColecao* CXVTextFile::GetPtrRegistros() const {
    return GetDataBase()->PermiteAcessoDireto() ? &m_colecao : nullptr;
}
