// Operations that the components of the suite have in common and that each component may offer: a call
// numbered by the caller, and changes of many fields of one master record or movement in one go. What a
// component does not offer is E_NOTIMPL.
#pragma once

#include <span>
#include <vector>

#include "support/values/XVDmc.h"

// No input. Answers the keys (8 bytes each, in their order) that the exchange operations of the component
// have recorded since the last of them began, also where it failed.
inline constexpr XVUInt k_ulFuncaoUltimasGravadas = 100;

class CXVOperacoesGenericas {
  public:
    virtual ~CXVOperacoesGenericas() = default;

    // saida: what the function answers, empty on entry.
    virtual HRESULT OnFuncaoGenerica(XVUInt /*ulFuncao*/, std::span<const XVByte> /*entrada*/,
                                     std::vector<XVByte>& /*saida*/) {
        return E_NOTIMPL;
    }
    virtual HRESULT OnAlteracaoMultiplaCadastro(XVUInt /*ulPonteiro*/,
                                                std::span<const XVByte> /*listaAlteracoes*/) {
        return E_NOTIMPL;
    }
    virtual HRESULT OnAlteracaoMultiplaMovimento(REG_XVDMC /*regDMC*/,
                                                 std::span<const XVByte> /*listaAlteracoes*/) {
        return E_NOTIMPL;
    }
};
