// A file that holds exactly one record, kept in memory.
//
// Thread rule: any thread after Inicializa; reads share the file's lock, a write holds it for the whole
// operation including its retries.
#pragma once

#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <type_traits>

#include "core/xvdatabase/XVFileBase.h"
#include "support/XVCodigos.h"
#include "support/XVProfiler.h"

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
        const std::unique_lock lock(GetLock());
        XV_CHECK(ValidaGravacao());
        if (!ExisteArquivo()) XV_CHECK(AbreParaGravacao());
        const XVUInt64 uiTamanhoArquivo = GetTamanho();
        const bool bPrimeira = uiTamanhoArquivo == GetSeekCabecalho();
        if (!bPrimeira && !PrecisaGravar(reg)) return S_OK;
        static constexpr SPontoFalha k_ponto = XV_PONTO_FALHA("GravaRegistro(reg)");
        const HRESULT hr = ExecutaComTentativas(k_ponto, [&] { return GravaRegistro(reg); });
        if (SUCCEEDED(hr)) return S_OK;
        if (bPrimeira)
            DesfazCriacao();  // without its record the file could not be loaded again
        else
            DesfazGravacao(uiTamanhoArquivo, GetSeekCabecalho(), &m_reg, sizeof(m_reg));
        return hr;
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
        XV_CHECK_TEXTO(CXVFileBase::OnInicializa(), "__super::OnInicializa()");
        XV_CHECK(AbreArquivo());
        if (!ExisteArquivo()) return S_OK;
        XV_CHECK_TEXTO(Recusa(Carrega(false)), "Carrega(false)");
        return S_OK;
    }

    HRESULT OnFinaliza() override {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        XV_CHECK_TEXTO(CXVFileBase::OnFinaliza(), "__super::OnFinaliza()");
        return S_OK;
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
        if (const CXVErroArquivo erro = LeDados(uiSeek, &reg, sizeof(reg)); !erro.Ok())
            XV_CHECK_TEXTO(CatchInicializacao(&erro), "CatchInicializacao(pEx)");
        m_reg = reg;
        return S_OK;
    }

    // Creates the file, or takes over one that appeared since.
    HRESULT AbreParaGravacao() {
        const HRESULT hr = AbreECarrega([this] { return Carrega(true); });
        XV_CHECK_TEXTO(hr, "AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao)");
        return S_OK;
    }

    HRESULT GravaRegistro(const T& reg) {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        if (const CXVErroArquivo erro = GravaDados(GetSeekCabecalho(), &reg, sizeof(reg)); !erro.Ok())
            XV_CHECK_TEXTO(CatchGravacao(&erro), "CatchGravacao(pEx)");
        XV_CHECK(AtualizaArquivo());
        m_reg = reg;
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
};
