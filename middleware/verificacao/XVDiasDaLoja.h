// Walks the days of a store in order: those that files stand for and those that the index names.
#pragma once

#include <span>
#include <vector>

#include "middleware/verificacao/XVExameIndice.h"

struct SDiaListado {
    XVUInt64 uiDia;
    XVUInt ulRegistros;  // when the directory was listed, before the index was read
};

// The days of which a file of any group is there, with the lengths of their records.
std::vector<SDiaListado> XVListaDias(CXVLeituraLoja& rLeitura);

// Whether the directory holds any file of data. A new store has none, of whatever version it is while it is
// made.
bool XVTemDados(const CXVLeituraLoja& rLeitura);

// Whether a name is that of a file of a store: data, version or creation control.
bool XVEhArquivoDaLoja(const std::string& sNome);

// fn(day, index records of the day, records that the day had when it was listed).
template <class TFn>
void XVPercorreDias(const std::vector<SDiaListado>& rDias, const std::vector<SEntradaIndice>& rEntradas,
                    TFn fn) {
    auto itEntrada = rEntradas.begin();
    auto itDia = rDias.begin();
    while (itEntrada != rEntradas.end() || itDia != rDias.end()) {
        const bool bListado =
            itDia != rDias.end() && (itEntrada == rEntradas.end() || itDia->uiDia <= itEntrada->GetDia());
        const XVUInt64 uiDia = bListado ? itDia->uiDia : itEntrada->GetDia();
        auto itFim = itEntrada;
        while (itFim != rEntradas.end() && itFim->GetDia() == uiDia) ++itFim;
        fn(uiDia, std::span<const SEntradaIndice>(itEntrada, itFim), bListado ? itDia->ulRegistros : 0U);
        itEntrada = itFim;
        if (bListado) ++itDia;
    }
}
