// What a verification found, for a person or for a program.
#pragma once

#include <string>

#include "middleware/verificacao/XVVerificacao.h"
#include "tools/xvcr/output/XVSaida.h"

void XVMostraVerificacao(CXVSaida& rSaida, const std::string& sEmpresa, const SVerificacao& rVerificacao);

// 412007 as "412.007".
std::string XVComPontos(XVUInt64 uiNumero);
// "1 integração", "412.007 integrações".
std::string XVContaIntegracoes(XVUInt64 uiQuantidade);
// Runs of integrations of a day: "20261121-5-1, 20261121-8-1 a 20261121-20-1", the first uiMaximo of them.
std::string XVFaixasEmTexto(XVUInt64 uiDia, const std::vector<SFaixa>& aFaixas, std::size_t uiMaximo);
// yyyymmdd as "21/11/2026".
std::string XVDiaEmTexto(XVUInt64 uiDia);
