// What the entries of a journal make of the files of its directory: for each file the states that it may be
// in, and the one that it is to have. Concluding the operations writes it; viewing only lays it over what is
// read.
//
// A file whose length, header or bytes are none of those states is another one than the journal
// speaks of: nothing is touched then, in no file. Thread rule: one object is used by one thread at a time.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/xvdatabase/XVDiarioLeitura.h"
#include "core/xvdatabase/XVFaixas.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVCheck.h"

class CXVReconstrucao {
  public:
    XV_CLASSE("CXVReconstrucao", "XVReconstrucao")

    // Reads the journal of a directory from an open file. E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS:
    // entries that are needed are missing, or contradict each other; the error log names what.
    HRESULT Le(const IXVDF_Profiler* pDono, const std::string& sDiretorio, IXVArquivo& rDiario);

    // Whether the entries speak of no file.
    bool EhVazia() const { return m_mapaArquivos.empty(); }
    // Transient copies that were being made, and that Aplica deletes.
    const std::vector<std::string>& GetCopias() const { return m_listaCopias; }
    // Whether every file is in a state that the entries explain. The same code when one is not; the error log
    // names it.
    HRESULT Confere(const IXVDF_Profiler* pDono);
    // Gives every file the state that it is to have, to the device, and says in the error log what it did.
    // May be interrupted anywhere and done again. After Confere.
    HRESULT Aplica(const IXVDF_Profiler* pDono);

    // For viewing. Instead of Le: the files as they were before the operation of this number, which is in
    // flight; where all of it stands in the files already, or nothing of it any more, as they are.
    CXVErroArquivo LeDesfeita(const std::string& sDiretorio, IXVArquivo& rDiario, XVUInt64 uiNumero);
    // The files that the entries speak of, and whether each is to be there.
    std::map<std::string, bool> GetExistencias() const;
    // The length that a file is to have, and whether it is to be there; false: the entries do not speak of
    // it.
    bool BuscaExistencia(const std::string& sNomeArquivo, bool* pbExiste) const;
    bool BuscaTamanho(const std::string& sNomeArquivo, XVUInt64* puiTamanho) const;
    // Lays what the file is to hold over uiTamanho bytes read at uiOffset.
    void Sobrepoe(const std::string& sNomeArquivo, XVUInt64 uiOffset, void* pDados,
                  std::size_t uiTamanho) const;

  private:
    struct SArquivo {
        bool bExistia = true;
        bool bApaga = false;
        XVUInt64 uiTamanhoMenor = 0;
        XVUInt64 uiTamanhoMaior = 0;
        XVUInt64 uiTamanhoFinal = 0;
        std::vector<const REG_XVCABECALHO_B*> listaCabecalhos;  // in the order in which they were written
        const REG_XVCABECALHO_B* pCabecalhoFinal = nullptr;
        std::vector<const SParteLida*> listaPartes;
        CXVFaixas faixasFinais;
    };

    HRESULT Monta(const IXVDF_Profiler* pDono);
    bool Inclui(const SParteLida& rParte, bool bDesfaz);
    HRESULT RecusaArquivo(const IXVDF_Profiler* pDono, const std::string& sNome, const char* pszMotivo) const;

    HRESULT ConfereArquivo(const IXVDF_Profiler* pDono, const std::string& sNome, const SArquivo& rArquivo);
    static CXVErroArquivo ConfereCabecalho(IXVArquivo& rFile, XVUInt64 uiTamanho, const SArquivo& rArquivo,
                                           bool* pbOk);
    static bool Explica(const SArquivo& rArquivo, XVUInt64 uiOffset, char cDisco);
    static CXVErroArquivo ConfereBytes(IXVArquivo& rFile, XVUInt64 uiTamanho, const SArquivo& rArquivo,
                                       bool* pbOk);
    CXVErroArquivo AplicaArquivo(const std::string& sNome, const SArquivo& rArquivo, bool* pbAlterou);
    CXVErroArquivo AplicaBytes(IXVArquivo& rFile, XVUInt64 uiTamanho, const SArquivo& rArquivo,
                               bool* pbAlterou);
    CXVErroArquivo ApagaArquivo(const std::string& sNome, bool* pbAlterou);
    bool EstaEscrita(const SEntradaLida& rEntrada) const;
    bool EstaEscrita(const SParteLida& rParte) const;
    std::string Path(const std::string& sNome) const;

    std::string m_sDiretorio;
    CXVDiarioLeitura m_diario;
    std::map<std::string, SArquivo> m_mapaArquivos;
    std::vector<std::string> m_listaCopias;
    bool m_bDesfaz = false;
};
