// Exports of the messages library.
#include "support/XVLMensagem.h"

#include <string_view>
#include <type_traits>

#include "support/XVMensagens.h"

namespace {

// Facility of the component's own codes (0x8108....).
constexpr XVUInt k_ulFacilitySuite = 0x108;

// Length of the longest start of sTexto of at most uiMaximo bytes that ends between two characters.
std::size_t CorteUtf8(std::string_view sTexto, std::size_t uiMaximo) {
    if (sTexto.size() <= uiMaximo) return sTexto.size();
    std::size_t uiCorte = uiMaximo;
    while (uiCorte > 0 && (static_cast<unsigned char>(sTexto[uiCorte]) & 0xC0U) == 0x80U) --uiCorte;
    return uiCorte;
}

}  // namespace

extern "C" {

XVUInt XVGetDescricaoHRESULT(HRESULT hr, char* pszTexto, XVUInt ulTamanho);
int EhFacilityMT(XVUInt ulFacility);

XVUInt XVGetDescricaoHRESULT(HRESULT hr, char* pszTexto, XVUInt ulTamanho) {
    const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr);
    const std::string_view sTexto = pMensagem != nullptr ? pMensagem->sDescricao : std::string_view();
    if (pszTexto == nullptr || ulTamanho == 0) return static_cast<XVUInt>(sTexto.size());
    const std::size_t uiCopia = CorteUtf8(sTexto, ulTamanho - 1);
    sTexto.copy(pszTexto, uiCopia);
    pszTexto[uiCopia] = '\0';
    return static_cast<XVUInt>(uiCopia);
}

int EhFacilityMT(XVUInt ulFacility) {
    return ulFacility == k_ulFacilitySuite ? 1 : 0;
}

}  // extern "C"

// The exports have the types that callers use.
static_assert(std::is_same_v<decltype(&XVGetDescricaoHRESULT), PFuncaoXVGetDescricaoHRESULT>);
static_assert(std::is_same_v<decltype(&EhFacilityMT), PFuncaoEhFacilityMT>);
