// One record of a trace log and its tab-separated line. Every line has as many columns as the header of
// its kind: 36 in the profiler log, 39 in the error log.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/XVRelogio.h"
#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"

enum class ETipoEvento : std::uint8_t { eEntrada = 0, eSaida = 1, eCriacaoObjeto = 2, eErro = 3 };

struct SProfilerEvento {
    SProfilerEvento(ETipoEvento eTipoEvento, const IXVDF_Profiler* pDonoEvento);

    ETipoEvento eTipo;
    const IXVDF_Profiler* pDono;  // may be null
    SDataHora dataHora;           // local, when the record was built
    std::string_view sProcesso;
    std::string_view sUsuarioLocal;
    std::string sClasseFuncao;
    std::string_view sArquivoFonte;  // of an error; constant data
    int iLinhaFonte = 0;
    std::string sGuid;  // empty: entry and exit are not paired
    std::vector<std::pair<std::string_view, std::string>> listaParametros;  // the first nine are written
    XVUInt ulTicksInicio = 0;                                               // milliseconds, wrapping
    XVUInt ulTicksFim = 0;
    XVUInt64 uiMemoriaInicio = 0;  // private bytes of the process
    XVUInt64 uiMemoriaFim = 0;
    XVUInt64 uiPerdidosAntes = 0;  // records of this process that were lost and no other tells of
};

namespace XVProfilerLinha {

// The column names of the log that records of this kind go to, with the line's end.
const std::string& GetCabecalho(ETipoEvento eTipo);

// The record as one line, with the line's end. Tab, CR, LF and NUL inside a value become a blank; the
// tabs of an error record's "Log" text separate it over the columns that follow.
std::string MontaLinha(const SProfilerEvento& rEvento);

// Base name of the running program in lower case; local user of the process. Found once.
const std::string& GetNomeProcesso();
const std::string& GetUsuarioLocal();

// Tab, CR, LF and NUL replaced by blanks.
std::string Saneia(std::string_view sTexto);

}  // namespace XVProfilerLinha
