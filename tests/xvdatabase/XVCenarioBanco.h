// Database files in a directory in memory, behind a file system that fails on demand, on a clock that
// stands still.
#pragma once

#include <cstring>
#include <vector>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVFileSingleReg.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVTextFile.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVBytesBase.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/suite/XVCenarioSuite.h"

struct REG_TESTE {
    XVUInt64 uiChave;
    XVUInt ulGrupo;
    XVUInt ulValor;
    bool operator==(const REG_TESTE&) const = default;
};
static_assert(sizeof(REG_TESTE) == 16);

template <>
inline constexpr std::string_view k_sNomeRegistro<REG_TESTE> = "REG_TESTE";

using CXVFileTeste = CXVFile<REG_TESTE>;
using CXVFileUnico = CXVFileSingleReg<REG_TESTE>;

// Column 0: the record's key; column 1: its group.
struct SChavesTeste {
    XVUInt64 GetChaveIndex(const REG_TESTE& reg, XVUInt uiColuna) const {
        return uiColuna == 0 ? reg.uiChave : reg.ulGrupo;
    }
};

// A container with one file.
template <class TArquivo>
struct TXVBanco {
    explicit TXVBanco(const std::string& sNome, EModulo eModulo = XV_DF)
        : xvDB(eModulo), xvFile(sNome, &xvDB) {}
    TArquivo* operator->() { return &xvFile; }

    CXVDataBase xvDB;
    TArquivo xvFile;
};

class CXVCenarioBanco : public CXVCenarioSuite {
  protected:
    static constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";

    CXVCenarioBanco() : m_Falhas(m_Arquivos), m_GuardaFalhas(m_Falhas) {
        // What the trace reads for itself, whenever it does, is none of the files under test.
        m_Falhas.SetFiltro([](const std::string& sCaminho) { return !sCaminho.ends_with("log.ini"); });
    }
    void TearDown() override { EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "handles leaked"; }

    void Cria(const std::string& sNome, std::string sConteudo) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), std::move(sConteudo));
    }
    std::string Le(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).value_or("<ausente>");
    }
    bool Existe(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).has_value();
    }
    XVUInt64 Conta(EOperacaoArquivo eOperacao) const { return m_Falhas.GetQuantidade(eOperacao); }

    template <class TArquivo>
    HRESULT Abre(TXVBanco<TArquivo>& rBanco) {
        return rBanco.xvDB.Inicializa(&m_Dono);
    }
    // The result of opening the file as it lies there.
    template <class TArquivo>
    HRESULT Tenta(const std::string& sNome) {
        TXVBanco<TArquivo> banco(sNome);
        return Abre(banco);
    }
    // All records of a record file, read anew from disk.
    std::vector<REG_TESTE> LeRegistros(const std::string& sNome) {
        TXVBanco<CXVFileTeste> banco(sNome);
        EXPECT_EQ(Abre(banco), S_OK);
        std::vector<REG_TESTE> lista;
        const XVUInt64 uiQtd = banco->GetQtdRegistros();
        EXPECT_EQ(banco->LeColecao(uiQtd == 0 ? 0 : 1, uiQtd, lista), S_OK);
        return lista;
    }
    std::vector<std::string> LeTextos(const std::string& sNome) {
        TXVBanco<CXVTextFile> banco(sNome);
        EXPECT_EQ(Abre(banco), S_OK);
        std::vector<std::string> lista(static_cast<std::size_t>(banco->GetQtdRegistros()));
        for (std::size_t i = 0; i < lista.size(); ++i)
            EXPECT_EQ(banco->Le(static_cast<XVUInt>(i + 1), lista[i]), S_OK);
        return lista;
    }

    CXVSistemaArquivosFalhas m_Falhas;
    CXVGuardaSistemaArquivos m_GuardaFalhas;
};

inline std::string Bytes(const std::vector<REG_TESTE>& lista) {
    return {reinterpret_cast<const char*>(lista.data()), lista.size() * sizeof(REG_TESTE)};
}
// A text record as it lies on disk.
inline std::string Prefixado(const std::string& sTexto) {
    return CXVBytes().Texto(sTexto);
}
