// Where a record of the error log comes from. The unit is the name under which the log's readers know the
// place; templates and parts of a class stand in other files than the unit says, so file and line of the
// source are kept beside it.
#pragma once

struct SFonteTrace {
    // A unit's name converts, so that every place that names its unit is found without naming its file.
    constexpr SFonteTrace(const char* pszUnidadeFonte,  // NOLINT: see above
                          const char* pszArquivoFonte = __builtin_FILE(), int iLinhaFonte = __builtin_LINE())
        : pszUnidade(pszUnidadeFonte), pszArquivo(DaRaiz(pszArquivoFonte)), iLinha(iLinhaFonte) {}

    const char* pszUnidade;  // path without drive and extension
    const char* pszArquivo;  // path from the root of the sources, with '/'
    int iLinha;              // in that file

  private:
    // A compiler that is called with paths relative to its build folder tells them so.
    static constexpr const char* DaRaiz(const char* psz) {
        while (psz[0] == '.' && psz[1] == '.' && psz[2] == '/') psz += 3;
        return psz;
    }
};
