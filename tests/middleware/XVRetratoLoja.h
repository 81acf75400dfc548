// Everything that a store answers to its reading operations, as lines that can be compared: what two objects
// show is equal exactly when nobody can tell their stores apart.
#pragma once

#include "tests/middleware/XVCenarioLoja.h"

// Question -> answer. A question that fails is answered by k_pszRecusa and its code.
using TRetratoLoja = std::map<std::string, std::string>;
inline constexpr const char* k_pszRecusa = "hr ";

// What the tests store in the key map and the date-times: the questions range over all of it.
inline constexpr unsigned k_uiRegistrosMapa = 8;  // pointers 1 to 8 of the suite's records
inline constexpr XVUInt k_eTipoMapa = eXVSMiddleware_CadastroProduto;
inline constexpr XVUInt k_aTiposDataHora[] = {eXVSMiddleware_BuscaPedidos, eXVSMiddleware_BuscaUsuarios};
// Keys and ids that are asked for even where nobody has them (any more).
inline constexpr XVUInt64 k_aChavesPerguntadas[] = {1, 2, 3, 500};
inline constexpr XVUInt64 k_aIdsPerguntados[] = {100, 101, 102, 200};

REG_XVDMC XVRegistroMapa(unsigned uiPonteiro);

// All integrations with every field and text, every search that tells some of them from others, the key map
// by record and by external id, and the date-times.
TRetratoLoja XVRetrataLoja(CBaseMiddleware& rLoja);

// The picture of a store that did not open: equal to no other.
TRetratoLoja XVRetratoRecusado(HRESULT hr);

// One integration as the picture shows it: every field and text, or the code of the failure.
std::string XVDescreveIntegracao(const SIntegracaoLida& rLida);
std::string XVRetrataIntegracao(CBaseMiddleware& rLoja, REG_XVDMC regDmc);

// The first answers that differ; empty when none does.
std::string XVDiferenca(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido);
