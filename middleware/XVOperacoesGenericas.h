// Operations that the components of the suite have in common and that each component may offer: a call
// numbered by the caller, and changes of many fields of one master record or movement in one go. This
// component offers none of them: E_NOTIMPL.
#pragma once

#include <span>
#include <vector>

#include "support/values/XVDmc.h"

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
