// Contents that tell to whom they belong: every part of a text carries the number of its integration and the
// kind of the text, so that not even a fragment can stand under a strange key unseen.
#pragma once

#include <string>

#include "tests/harness/XVSorteio.h"
#include "tests/middleware/XVCenarioLoja.h"

// The three texts of an integration.
inline constexpr char k_cDonoJSON = 'J';
inline constexpr char k_cDonoMensagem = 'M';
inline constexpr char k_cDonoRetorno = 'R';

inline constexpr std::size_t k_uiMaiorTexto = 3000;

// A text of 0 to uiMaior bytes of any value but NUL, with a mark "[nnnnnnnX]" in each 64 of them.
std::string XVTextoComDono(unsigned uiDono, char cTipo, CXVSorteio& rSorteio,
                           std::size_t uiMaior = k_uiMaiorTexto);

// An input record all of whose fields and texts belong to uiDono. OfficialBank ones share one external key.
CXVIntegracaoTeste XVIntegracaoComDono(unsigned uiDono, XVUInt eSistema, XVUInt eStatus, CXVSorteio& rSorteio,
                                       std::size_t uiMaior = k_uiMaiorTexto);

// What in an integration that was read belongs to somebody else; empty: nothing. Bytes that belong to nobody
// (zeros that a device left) are no fault here.
std::string XVConteudoAlheio(const SIntegracaoLida& rLida, unsigned uiDono);

// The same for the key map and the date-times: their values are made from their keys.
XVUInt64 XVIdDoRegistro(unsigned uiRegistro, unsigned uiVersao);
bool XVEhIdDoRegistro(XVUInt64 uiId, unsigned uiRegistro);
REG_XVDMAHMSUTC XVDataHoraDaChave(XVUInt eTipo, XVUInt eSistema, XVUInt eData, unsigned uiVersao);
bool XVEhDataHoraDaChave(REG_XVDMAHMSUTC reg, XVUInt eTipo, XVUInt eSistema, XVUInt eData);
