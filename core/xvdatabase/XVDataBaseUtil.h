// Operations on database files by name: path, deletion with its audit entry, the replacement of a live
// file by its converted copy, and single records read and written without a schema.
//
// The class is built in floors, each in a source of its own, and none calls a floor above it: paths, moves
// and deletions of what stands under a path (XVDataBaseUtil.cpp) <- images of files <- creation control <-
// deletion with its control (XVDataBaseUtilDelecao.cpp) <- file base <- renaming
// (XVDataBaseUtilRenomeacao.cpp) and single records (XVDataBaseUtilSingleReg.cpp).
//
// The first argument names in whose company, user and session the operation runs. Thread rule: any
// thread; the utilities take no lock, bounded retries (50, 10 ms apart) absorb short holds by others.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/XVAmbiente.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVCheck.h"

struct REG_CR_MIDDLEWARE_VERSAO;

class CXVDataBaseUtil {
  public:
    XV_CLASSE("CXVDataBaseUtil", "XVDataBaseUtil")

    // What a deletion does with the file's entry in the creation control.
    enum EControleDelecao : XVUInt { eMantemNoControle = 0, eRemoveDoControle = 2 };

    // Absolute path of a file of the module and company; on failure the output is empty.
    static HRESULT GetPathArquivo(EModulo eModulo, std::string_view sEmpresa, std::string_view sNomeArquivo,
                                  std::string* psPathArquivo);
    static HRESULT GetPathDados(EModulo eModulo, std::string_view sEmpresa, std::string* psDiretorio);

    // Whether the directory holds something under this path, read-only or not. Where the system does not
    // tell, neither answer would be right, one would take a store for an empty one, the other for a whole
    // one: the result is eAccessDenied, or the code of another cause, and the error log names the path.
    static HRESULT Existe(const IXVDF_Profiler* pDono, const std::string& sPath, bool* pbExiste);
    // The same without regard to case; *psNomeReal is the name as it stands in the directory.
    static HRESULT ExistePath(const IXVDF_Profiler* pDono, const std::string& sPathArquivo, bool* pbExiste,
                              std::string* psNomeReal);

    // Deletes the file, or every member of a group pattern; an absent file is no error. Each deletion leaves
    // one entry in the general log. E_XVCR_DELECAO_ARQUIVO after 50 attempts.
    static HRESULT DeletaArquivo(const IXVDF_Profiler* pDono, EModulo eModulo,
                                 const std::string& sNomeArquivo, EControleDelecao eControle);

    // One file, whatever the creation control says of it; an absent file is no error. For the control itself,
    // which stands below the deletion of what it lists.
    static HRESULT DeletaSemControle(const IXVDF_Profiler* pDono, EModulo eModulo,
                                     const std::string& sNomeArquivo);

    // Replaces sNomeArquivo by its sibling with extension sExtensao and stamps usVersaoArquivo into its
    // header. Without a sibling the live file is deleted. A name holding '?' means every member of the group.
    static HRESULT RenomeiaArquivoEXT(const IXVDF_Profiler* pDono, EModulo eModulo,
                                      const std::string& sNomeArquivo, std::string_view sExtensao,
                                      XVUShort usVersaoArquivo);
    static HRESULT RenomeiaArquivoTRA(const IXVDF_Profiler* pDono, EModulo eModulo,
                                      const std::string& sNomeArquivo, XVUShort usVersaoArquivo);
    static HRESULT RenomeiaArquivoTRAGroupFile(const IXVDF_Profiler* pDono, EModulo eModulo,
                                               const std::string& sPadrao, XVUShort usVersaoArquivo);
    // What follows the move: the file is brought under control, validated and stamped. Done again, it changes
    // nothing.
    static HRESULT ConcluiRenomeacao(const IXVDF_Profiler* pDono, EModulo eModulo,
                                     const std::string& sNomeArquivo, XVUShort usVersaoArquivo);
    // Only a move onto a path, replacing what is there, tried 50 times: E_XVCR_RENOMEACAO_ARQUIVO.
    static HRESULT MovePath(const IXVDF_Profiler* pDono, const std::string& sPathOrigem,
                            const std::string& sPathArquivo);
    // Only the move of the ".cab" copy: the caller has the header and the control in hand.
    static HRESULT RenomeiaArquivoCAB(const IXVDF_Profiler* pDono, EModulo eModulo,
                                      const std::string& sNomeArquivo);

    // The record of a single-record file. Absent file: a zero record, unless the creation control lists it.
    // Reading changes nothing on disk; a damaged header or a wrong size is the code of the fault.
    static HRESULT LeSingleReg(const IXVDF_Profiler* pDono, EModulo eModulo, REG_CR_MIDDLEWARE_VERSAO* pReg,
                               const std::string& sNomeArquivo);
    // Writes the record in one step: a crash leaves the old file or the new one, never a part.
    static HRESULT GravaSingleReg(const IXVDF_Profiler* pDono, EModulo eModulo,
                                  const REG_CR_MIDDLEWARE_VERSAO& reg, const std::string& sNomeArquivo);

    // Names of the members of a group pattern that the directory holds, in ascending order of their keys.
    static HRESULT ListaMembros(const IXVDF_Profiler* pDono, EModulo eModulo, const std::string& sPadrao,
                                std::vector<std::pair<XVUInt64, std::string>>* plistaMembros);

  private:
    static HRESULT DeletaArquivoUnico(const IXVDF_Profiler* pDono, EModulo eModulo,
                                      const std::string& sNomeArquivo, EControleDelecao eControle);
    static HRESULT EncerraNoDiario(const IXVDF_Profiler* pDono, const std::string& sPathArquivo);
    static HRESULT DeletaPath(const IXVDF_Profiler* pDono, const std::string& sPathArquivo);
    static HRESULT GravaAuditoria(const IXVDF_Profiler* pDono, const std::string& sNomeArquivo);
    static HRESULT RenomeiaArquivoUnico(const IXVDF_Profiler* pDono, EModulo eModulo,
                                        const std::string& sNomeArquivo, std::string_view sExtensao,
                                        XVUShort usVersaoArquivo);
};
