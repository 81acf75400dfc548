// How a file is opened only to look at it: nobody is denied anything, and an absent file stays absent.
#pragma once

#include "platform/XVSistemaArquivos.h"

inline constexpr SAberturaArquivo k_aberturaConsulta{
    EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente};
