// The operations that change a store, each on a store where it has something to do.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "middleware/BaseMiddleware.h"

enum class ELojaInicial : std::uint8_t {
    eAusente,       // an empty data directory
    eComum,         // three days, every kind of content
    eSemCabecalho,  // the same, its files as the oldest programs wrote them
};

struct SOperacaoLoja {
    const char* pszNome;
    ELojaInicial eInicial;
    unsigned uiDia;  // of March 2024, when it takes place
    std::function<HRESULT(CBaseMiddleware&)> fnExecuta;
};

const std::vector<SOperacaoLoja>& XVOperacoesLoja();
const SOperacaoLoja& XVOperacaoLoja(std::string_view sNome);  // one of them

// Fills a new store on three days, the last of them the 15th. False: an operation failed.
bool XVPovoaLoja(CBaseMiddleware& rLoja, const std::function<void(unsigned uiDia)>& fnSetDia);
