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
        if (!PrecisaGravar(reg)) return S_OK;
        if (!ExisteArquivo()) {
            const HRESULT hr = AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao);
            if (FAILED(hr)) FechaArquivo();
            XV_CHECK_TEXTO(hr, "AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao)");
        }
        const XVUInt64 uiTamanhoArquivo = GetTamanho();
        const HRESULT hr = ExecutaComTentativas([&] { return GravaRegistro(reg); });
        if (FAILED(hr)) DesfazGravacao(uiTamanhoArquivo);
        XV_CHECK_TEXTO(hr, "GravaRegistro(reg)");
        return S_OK;
    }

    bool PrecisaGravar(const T& reg) const { return !ExisteArquivo() || std::memcmp(&reg, &m_reg, sizeof(T)) != 0; }
    XVUInt64 GetQtdRegistros() const { return ExisteArquivo() ? 1 : 0; }

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
        const XVUInt64 uiSeek = GetSeekCabecalho();
        if (GetTamanho() - uiSeek != sizeof(T)) XV_FALHA(E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
        if (const CXVErroArquivo erro = LeDados(uiSeek, &m_reg, sizeof(m_reg)); !erro.Ok())
            XV_CHECK_TEXTO(CatchInicializacao(&erro), "CatchInicializacao(pEx)");
        return S_OK;
    }

    HRESULT OnFinaliza() override {
        XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
        XV_CHECK_TEXTO(CXVFileBase::OnFinaliza(), "__super::OnFinaliza()");
        return S_OK;
    }

  private:
    HRESULT GravaRegistro(const T& reg) {
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
