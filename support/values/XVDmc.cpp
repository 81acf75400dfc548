#include "support/values/XVDmc.h"

#include <charconv>

#include "support/values/XVTextoDecimal.h"

namespace {

constexpr XVUInt64 k_uiBitsReservados = 0x3FFCU;

template <class T>
bool TiraDecimal(std::string_view& sTexto, T* pNumero) {
    const auto [pszFim, erro] = std::from_chars(sTexto.data(), sTexto.data() + sTexto.size(), *pNumero);
    if (erro != std::errc()) return false;
    sTexto.remove_prefix(static_cast<std::size_t>(pszFim - sTexto.data()));
    return true;
}

// yyyymmdd to a day of the calendar; 0 to no date.
bool DataDaChave(XVUInt ulChave, REG_XVDMA* pDma) {
    if (ulChave == 0) {
        *pDma = REG_XVDMA();
        return true;
    }
    const unsigned uiAno = ulChave / 10000U;
    const unsigned uiMes = ulChave / 100U % 100U;
    const unsigned uiDia = ulChave % 100U;
    if (uiAno < 1848 || uiAno > 2359 || uiMes > 12 || uiDia > 31) return false;
    *pDma = REG_XVDMA::Cria(uiAno, uiMes, uiDia);
    return pDma->EhValida();
}

bool TiraTraco(std::string_view& sTexto) {
    if (sTexto.empty() || sTexto.front() != '-') return false;
    sTexto.remove_prefix(1);
    return true;
}

}  // namespace

bool REG_XVDMC::EhValido() const {
    if (EhNulo()) return true;
    return (uiValor & k_uiBitsReservados) == 0 && GetPonteiro() > 0 &&
           (GetDma().EhNula() || GetDma().EhValida());
}

std::string REG_XVDMC::ToString() const {
    std::string sTexto;
    AnexaA(sTexto);
    return sTexto;
}

void REG_XVDMC::AnexaA(std::string& rTexto) const {
    // A value that the text form cannot express stays recognisable as a number.
    if (EhNulo() || !EhValido()) return XVAnexaDecimal(rTexto, EhNulo() ? 0 : uiValor);
    XVAnexaDecimal(rTexto, GetDma().ToChave());
    rTexto += '-';
    XVAnexaDecimal(rTexto, XVUInt64{GetPonteiro()});
    rTexto += '-';
    XVAnexaDecimal(rTexto, XVUInt64{GetTipo()});
}

bool REG_XVDMC::DeString(std::string_view sTexto, REG_XVDMC* pDmc) {
    XVUInt64 uiNumero = 0;
    if (!TiraDecimal(sTexto, &uiNumero)) return false;
    if (sTexto.empty()) {
        *pDmc = REG_XVDMC{uiNumero};
        return true;
    }
    REG_XVDMA dma;
    XVUInt ulPonteiro = 0;
    unsigned uiTipo = 0;
    if (uiNumero > 99999999U || !DataDaChave(static_cast<XVUInt>(uiNumero), &dma)) return false;
    if (!TiraTraco(sTexto) || !TiraDecimal(sTexto, &ulPonteiro) || ulPonteiro == 0) return false;
    if (!TiraTraco(sTexto) || !TiraDecimal(sTexto, &uiTipo) || uiTipo > 3 || !sTexto.empty()) return false;
    *pDmc = Cria(uiTipo, ulPonteiro, dma);
    return true;
}
