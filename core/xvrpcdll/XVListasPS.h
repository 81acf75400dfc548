// Lists that arrive in interface records, read with distrust, and byte lists that leave in them.
#pragma once

#include <span>
#include <vector>

#include "contract/XVCR_RegistrosPS.h"

// The list's elements; valid while the record's buffer lives. No record: E_POINTER. A count above 0
// with a null pointer, more bytes than can be addressed, or a key that cannot be: E_INVALIDARG.
HRESULT XVListaDeBytes(const _REG_CR_LISTA_BYTESPS* pReg, std::span<const XVByte>* pLista);
HRESULT XVListaDeDmc(const _REG_DF_LISTA_XVDMCPS* pReg);

// Fills an output record with a copy of the bytes (none: null and 0).
HRESULT XVListaDeBytesToReg(std::span<const XVByte> lista, _REG_CR_LISTA_BYTESPS* pReg);

// Frees an array of integrations handed out by a read of many, with the texts of each, and clears both.
void XVLiberaIntegracoes(XVUInt* pulQuantidade, tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracao);
