// A file that holds exactly one record, kept in memory.
//
// Thread rule: any thread after Inicializa; reads share the file's lock, a write holds it alone only
// while it changes memory.
#pragma once

#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <type_traits>

#include "core/xvdatabase/XVFileBase.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

template <class T>
class CXVFileSingleReg : public CXVFileBase {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    XV_CLASSE((TXVNomeDeTemplate<"CXVFileSingleReg", T>::k_aTexto.data()), "core/xvdatabase/XVFileSingleReg")

    using CXVFileBase::CXVFileBase;

    // E_XVCR_ARQUIVO_NAO_EXISTE while the file does not exist.
    HRESULT Le(T& reg) const {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        const std::shared_lock lock(GetLock());
        if (!ExisteArquivo()) XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
        reg = m_reg;
        return S_OK;
    }

    // Writes the record if it differs from the stored one; creates the file.
    HRESULT Grava(const T& reg) {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        XVUInt uiPosicao = 0;  // the record has no other place
        return CXVOperacao::ExecutaSozinha(
            GetDataBase(), GetMutexGravacao(), uiPosicao,
            [&](CXVOperacao& rOperacao, XVUInt&) { return Prepara(rOperacao, reg); });
    }

    bool PrecisaGravar(const T& reg) const {
        return !ExisteArquivo() || std::memcmp(&reg, &m_reg, sizeof(T)) != 0;
    }
    XVUInt64 GetQtdRegistros() const {
        const std::shared_lock lock(GetLock());
        return ExisteArquivo() ? 1 : 0;
    }

    HRESULT SetRegData(XVUInt& /*uiPosicao*/, const void* pDados) override { return GravaDe(pDados); }
    HRESULT SetArrayData(const void* pDados, XVUInt64 uiQuantidade) override {
        if (uiQuantidade != 1) XV_FALHA(E_INVALIDARG);
        return GravaDe(pDados);
    }

  protected:
    HRESULT OnInicializa() override {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        std::memset(&m_reg, 0, sizeof(m_reg));
        XV_CHECK_SUPER(CXVFileBase, OnInicializa());
        XV_CHECK(AbreArquivo());
        if (!ExisteArquivo()) return S_OK;
        XV_CHECK(Recusa(Carrega(false)));
        return S_OK;
    }

    HRESULT OnFinaliza() override {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        XV_CHECK_SUPER(CXVFileBase, OnFinaliza());
        return S_OK;
    }

    CXVErroArquivo ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) override {
        *pbIntegro = uiTamanho == sizeof(T);
        return {};
    }

  private:
    // bAceitaVazio: a file just created has no record yet.
    HRESULT Carrega(bool bAceitaVazio) {
        XVUInt64 uiSeek = 0;
        XVUInt64 uiTamanho = 0;
        XV_CHECK(GetAreaDados(&uiSeek, &uiTamanho));
        if (uiTamanho == 0 && bAceitaVazio) return S_OK;
        if (uiTamanho != sizeof(T)) XV_FALHA(E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
        T reg;
        if (const CXVErroArquivo erro = LeDados(uiSeek, &reg, sizeof(reg));
            const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK(CatchInicializacao(pEx));
        m_reg = reg;
        return S_OK;
    }

    // Creates the file, or takes over one that appeared since.
    HRESULT AbreParaGravacao() {
        return AbreECarrega([this] { return Carrega(true); });
    }

    // The write of the record as part of an operation.
    class CPreparado final : public CXVGravacaoPreparada {
      public:
        explicit CPreparado(CXVFileSingleReg& rFile) : m_rFile(rFile) {}
        CXVFileBase& GetArquivo() const override { return m_rFile; }
        XV_PONTOS_GRAVACAO("Grava", "GravaRegistro", "GravaRegistro(reg)")
        void Publica() noexcept override {
            const std::unique_lock lock(m_rFile.GetLock());
            m_rFile.m_reg = m_regNovo;
        }
        void Devolve() noexcept override { m_rFile.DevolveGravacao(*this); }

        T m_regNovo{};
        T m_regAntigo{};

      private:
        CXVFileSingleReg& m_rFile;
    };

    HRESULT Prepara(CXVOperacao& rOperacao, const T& reg) {
        const std::unique_lock lock(GetLock());
        XV_CHECK(ValidaGravacao());
        if (!ExisteArquivo() && !EstaAusente()) XV_CHECK(AbreParaGravacao());
        const bool bPrimeira = GetTamanhoDadosPrevisto() == 0;
        if (!bPrimeira && !PrecisaGravar(reg)) return S_OK;
        m_preparado.m_regNovo = reg;
        m_preparado.m_regAntigo = m_reg;
        const auto aAntigos = std::as_bytes(std::span(&m_preparado.m_regAntigo, bPrimeira ? 0 : 1));
        XV_CHECK(PreparaGravacao(rOperacao, m_preparado, 0,
                                 std::as_bytes(std::span(&m_preparado.m_regNovo, 1)), aAntigos));
        return S_OK;
    }

    HRESULT GravaDe(const void* pDados) {
        if (pDados == nullptr) XV_FALHA(E_POINTER);
        T reg;
        std::memcpy(&reg, pDados, sizeof(T));
        XV_CHECK(Grava(reg));
        return S_OK;
    }

    T m_reg{};
    CPreparado m_preparado{*this};
};
