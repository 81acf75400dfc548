// Verification of a whole store: every file by itself, the files against each other, and both against the
// seals. The store may be open, closed or left by a process that died; nothing of it is changed or locked.
//
// Each file is read once, front to back. In memory are the index, as a list, and one day at a time.
// Beside a writer each piece is of one moment, and what points is read before what it points to, so that an
// operation that comes meanwhile is never taken for damage.
//
// Thread rule: one thread.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "middleware/verificacao/XVAchado.h"
#include "middleware/verificacao/XVDiasDaLoja.h"
#include "middleware/verificacao/XVExameDia.h"
#include "support/trace/IXVDF_Profiler.h"

struct SVerificacao {
    XVUInt64 uiIntegracoes = 0;   // that the store knows, or should
    XVUInt64 uiInteiras = 0;      // of them
    XVUInt64 uiSubstituidas = 0;  // given up for a later one of the bank with the same key
    XVUInt64 uiDias = 0;          // with integrations
    XVUInt64 uiArquivos = 0;
    XVUInt64 uiBytes = 0;         // of their payloads
    XVUInt64 uiTextosMortos = 0;  // that no record names any more
    XVUInt64 uiBytesMortos = 0;
    XVUInt64 uiPosicoesVagas = 0;  // records that hold a place and no integration
    XVUInt64 uiSelados = 0;        // files that were held against a seal
    std::vector<SXVAchado> listaAchados;

    bool EhIntegra() const;
};

class CXVVerificacao {
  public:
    // Told now and then how many of how many bytes were read.
    using FProgresso = std::function<void(XVUInt64 uiFeitos, XVUInt64 uiTotal)>;

    // rDono must outlive this object.
    CXVVerificacao(std::string sDiretorio, const IXVDF_Profiler& rDono, FProgresso fnProgresso = {});

    // Failures of single files are findings; a failure of the directory as a whole is the code.
    HRESULT Executa(SVerificacao* pVerificacao);
    // Seals what Executa read, in place of the seals of before. Only of a store that was found sound, S_FALSE
    // otherwise: a seal over damage would hide it. A file that was written to meanwhile is left unsealed.
    HRESULT Sela();

  private:
    HRESULT Prepara();
    void VerificaDiario();
    bool VerificaVersao();
    void VerificaOutraVersao(XVUShort usVersao);
    void VerificaControle();
    void VerificaSobras();
    void VerificaSelos();
    void VerificaIndice();
    template <class T>
    void VerificaLancamentos(const char* pszNome, XVUInt ulColunas);
    void VerificaDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite);
    void JulgaArquivo(const SArquivoLoja& rArquivo, XVUInt64 uiDia, HRESULT hrLeitura);
    void JulgaArquivosDoDia(const CXVExameDia& rDia);
    void ContaDia(const CXVExameDia& rDia);
    void JulgaSemIndice();
    void Anota(SXVAchado achado);
    void AnotaSelo(const SArquivoLoja& rArquivo, const SSelo& rSelo, XVUInt64 uiAlterados, XVUInt64 uiDia);

    std::string m_sDiretorio;
    const IXVDF_Profiler& m_rDono;
    FProgresso m_fnProgresso;
    CXVLeituraLoja m_leitura;
    SVerificacao* m_pVerificacao = nullptr;
    TSelos m_selos;
    TSelos m_selosNovos;
    bool m_bIndiceConfere = false;
    CXVExameIndice m_indice;
    std::vector<SDiaListado> m_listaDias;
    std::vector<REG_XVDMC> m_listaSemIndice;
    std::set<XVUInt64> m_semRegistro;  // of those
    std::vector<TChaveDmc> m_aDoBanco;
    XVUInt64 m_uiBytesLidos = 0;
    XVUInt64 m_uiBytesTotal = 0;
};
