// One line of a trace log, taken apart by the names in the log's own header: columns may come and go.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct SLinhaLog {
    std::string sDataHora;  // local time, "2026-11-21T13:05:09"
    std::string sProcesso;
    std::string sUsuarioLocal;
    std::string sFuncao;
    std::string sEmpresa;
    std::string sUsuario;  // number without its letter and leading zeros, as the session
    std::string sSessao;
    std::string sThread;
    std::string sTipo;  // ENTROU, SAIU, COCREATE, ERRO
    std::string sArquivo;
    std::string sLinha;
    std::string sExpressao;  // of a failed check
    std::string sCodigo;     // "0x81080AAA", empty when the line holds none
    std::string sMensagem;   // what stands beside the code, or the whole text of a line without check
    std::string sDuracao;    // milliseconds, entry and exit records
    std::string sMemoria;    // of the process, and how much it changed in the call; exit records
    std::string sDeltaMemoria;
    std::string sGuid;                         // the same in a call's entry and exit
    std::string sPerdidas;                     // records before it that its process could not write
    std::vector<std::string> listaParametros;  // "name = value"
};

class CXVCabecalhoLog {
  public:
    explicit CXVCabecalhoLog(std::string_view sLinha);

    // Whether the line is a header of these logs.
    static bool EhCabecalho(std::string_view sLinha);

    // False for a line that has no date and time where the header says.
    bool Le(std::string_view sLinha, SLinhaLog* pLinha) const;

  private:
    std::string_view Coluna(const std::vector<std::string_view>& listaCelulas, std::string_view sNome) const;

    std::vector<std::string> m_listaNomes;
};
