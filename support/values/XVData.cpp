#include "support/values/XVData.h"

#include <chrono>
#include <cstdio>

#include "platform/XVPlataforma.h"

namespace {

constexpr XVUInt k_ulSegundosDoDia = 86400;
constexpr XVUInt k_ulLimiteData = 1U << 18;

// Takes exactly uiDigitos decimal digits from the front of sTexto.
bool TiraNumero(std::string_view& sTexto, std::size_t uiDigitos, unsigned* puiNumero) {
    if (sTexto.size() < uiDigitos) return false;
    unsigned uiNumero = 0;
    for (std::size_t i = 0; i < uiDigitos; ++i) {
        if (sTexto[i] < '0' || sTexto[i] > '9') return false;
        uiNumero = uiNumero * 10 + static_cast<unsigned>(sTexto[i] - '0');
    }
    sTexto.remove_prefix(uiDigitos);
    *puiNumero = uiNumero;
    return true;
}

bool TiraSinal(std::string_view& sTexto, char cSinal) {
    if (sTexto.empty() || sTexto.front() != cSinal) return false;
    sTexto.remove_prefix(1);
    return true;
}

// hh:mm with optional :ss.
bool TiraHora(std::string_view& sTexto, XVUInt* pulSegundos) {
    unsigned uiHora = 0;
    unsigned uiMinuto = 0;
    unsigned uiSegundo = 0;
    if (!TiraNumero(sTexto, 2, &uiHora) || !TiraSinal(sTexto, ':') || !TiraNumero(sTexto, 2, &uiMinuto))
        return false;
    if (TiraSinal(sTexto, ':') && !TiraNumero(sTexto, 2, &uiSegundo)) return false;
    if (uiHora > 23 || uiMinuto > 59 || uiSegundo > 59) return false;
    *pulSegundos = uiHora * 3600 + uiMinuto * 60 + uiSegundo;
    return true;
}

}  // namespace

bool REG_XVDMA::EhValida() const {
    if (m_ulValor >= k_ulLimiteData) return false;
    const std::chrono::year_month_day dia{std::chrono::year(static_cast<int>(GetAno())),
                                          std::chrono::month(GetMes()), std::chrono::day(GetDia())};
    return dia.ok();
}

REG_XVDMAHMSUTC REG_XVDMAHMSUTC::De(const SDataHora& rDataHora) {
    return Cria(REG_XVDMA::Cria(rDataHora.usAno, rDataHora.ucMes, rDataHora.ucDia),
                rDataHora.ucHora * 3600U + rDataHora.ucMinuto * 60U + rDataHora.ucSegundo);
}

REG_XVDMAHMSUTC REG_XVDMAHMSUTC::Agora() {
    return De(XVPlataforma::Relogio().AgoraUTC());
}

bool REG_XVDMAHMSUTC::EhValida() const {
    return EhNula() || (GetDma().EhValida() && GetSegundos() < k_ulSegundosDoDia);
}

std::string REG_XVDMAHMSUTC::ToISO8601() const {
    if (EhNula()) return {};
    const REG_XVDMA dma = GetDma();
    const XVUInt ulSegundos = GetSegundos();
    char szTexto[64];
    const int iTamanho =
        std::snprintf(szTexto, sizeof szTexto, "%04u-%02u-%02uT%02u:%02u:%02uZ", dma.GetAno(), dma.GetMes(),
                      dma.GetDia(), ulSegundos / 3600U, ulSegundos / 60U % 60U, ulSegundos % 60U);
    return std::string(szTexto, static_cast<std::size_t>(iTamanho));
}

bool REG_XVDMAHMSUTC::DeISO8601(std::string_view sTexto, REG_XVDMAHMSUTC* pDataHora) {
    unsigned uiAno = 0;
    unsigned uiMes = 0;
    unsigned uiDia = 0;
    XVUInt ulSegundos = 0;
    if (!TiraNumero(sTexto, 4, &uiAno) || !TiraSinal(sTexto, '-') || !TiraNumero(sTexto, 2, &uiMes) ||
        !TiraSinal(sTexto, '-') || !TiraNumero(sTexto, 2, &uiDia))
        return false;
    if (TiraSinal(sTexto, 'T') && !TiraHora(sTexto, &ulSegundos)) return false;
    TiraSinal(sTexto, 'Z');
    // Outside these bounds the fields would run into each other.
    if (!sTexto.empty() || uiAno < 1848 || uiMes > 12 || uiDia > 31) return false;
    const REG_XVDMA dma = REG_XVDMA::Cria(uiAno, uiMes, uiDia);
    if (!dma.EhValida()) return false;
    *pDataHora = Cria(dma, ulSegundos);
    return true;
}
