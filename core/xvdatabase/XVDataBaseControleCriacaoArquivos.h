// File-creation control of one database file: the list, kept in the data directory's control file, of
// the files that were brought under control, and the check at open that a listed file is present.
//
// The list is itself a database file of texts, read and written through CXVTextFile, whose base asks a
// control of its own at every opening. This recursion is part of what the list is, and it ends at once: the
// control file's own name is exempt from control (XVNomeArquivo::EhIsento).
//
// Thread rule: as its file. Updates of the control file are exclusive between threads and processes
// through a mark on the directory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/XVSistemaArquivos.h"
#include "suite/XVInicializador.h"
#include "support/XVAmbiente.h"

class CXVDiario;
class CXVImagemArquivo;

class CXVDataBaseControleCriacaoArquivos : public CXVInicializador {
  public:
    XV_CLASSE("CXVDataBaseControleCriacaoArquivos", "XVDataBaseControleCriacaoArquivos")

    CXVDataBaseControleCriacaoArquivos(EModulo eModulo, std::string sNomeArquivo)
        : m_eModulo(eModulo), m_sNomeArquivo(std::move(sNomeArquivo)) {}

    // The journal of the directory, where this process holds it for writing; null: the list is always read.
    void SetDiario(CXVDiario* pDiario) { m_pDiario = pDiario; }

    // The check run by the file's opening. Only in eModoLeituraGravacao: a listed file that is missing is
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS; a present file that is not listed is listed; with the
    // control disabled a listed file leaves the list.
    HRESULT GerenciaControleCriacaoArquivos(XVUInt eModoAbertura);
    HRESULT PossuiControleCriacaoArquivos(bool* pbPossui);
    // For readers: a file that is listed and missing is E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS.
    // Changes nothing, even when the file comes to the directory meanwhile.
    HRESULT ConfereArquivoControlado();
    // All names under control, in the order in which they came; changes nothing.
    HRESULT LeNomesControlados(std::vector<std::string>* plistaNomes);
    HRESULT CriaControleCriacaoArquivos();
    HRESULT RemoveControleCriacaoArquivos();
    void DesabilitaControleCriacaoArquivos() { m_bDesabilitado = true; }

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    HRESULT LeLista(std::vector<std::string>* plistaNomes);
    HRESULT ExecutaMarcaDiretorio(std::unique_ptr<IXVMarcaDiretorio>& marca);
    HRESULT LeOutrosNomes(std::vector<std::string>* plistaNomes);
    HRESULT SubstituiLista(const std::string& sPathTra, bool bVazia);
    HRESULT GravaLista(CXVImagemArquivo& xvFileNew, const std::vector<std::string>& aRegistrosNew);

    EModulo m_eModulo;
    std::string m_sNomeArquivo;
    bool m_bDesabilitado = false;
    CXVDiario* m_pDiario = nullptr;
};
