#include "contract/XVRegistroInicializacao.h"

#include <cstddef>
#include <cstring>

#include "support/XVAmbiente.h"
#include "support/values/XVCrc64.h"

namespace {

constexpr std::size_t k_uiBytesSelados = offsetof(REG_DF_INICIALIZAPS, uiCRC);

template <std::size_t N>
bool Terminado(const char (&szTexto)[N]) {
    return std::memchr(szTexto, 0, N) != nullptr;
}

}  // namespace

namespace XVRegistroInicializacao {

void Sela(REG_DF_INICIALIZAPS* pReg) {
    pReg->usVersao = k_usVersaoRegistroInicializacao;
    pReg->cMarca = k_cMarcaRegistroInicializacao;
    pReg->uiCRC = XVCrc64(pReg, k_uiBytesSelados);
}

bool VersaoConfere(const REG_DF_INICIALIZAPS& reg) {
    return reg.usVersao == k_usVersaoRegistroInicializacao;
}

bool CRCConfere(const REG_DF_INICIALIZAPS& reg) {
    return XVCrc64(&reg, k_uiBytesSelados) == reg.uiCRC;
}

bool EstruturaConfere(const REG_DF_INICIALIZAPS& reg) {
    return reg.ulNumeroChamador != 0 && reg.szExecutavel[0] != 0 && reg.szModulo[0] != 0 &&
           reg.szIdentificacao[0] != 0 && reg.cMarca == k_cMarcaRegistroInicializacao;
}

bool TextosTerminados(const REG_DF_INICIALIZAPS& reg) {
    return Terminado(reg.szEmpresa) && Terminado(reg.szExecutavel) && Terminado(reg.szModulo) &&
           Terminado(reg.szIdentificacao) && Terminado(reg.szUsuarioLocal);
}

bool ChamadorAceito(const REG_DF_INICIALIZAPS& reg) {
    return GetUsuario(reg) != k_usUsuarioConversao && CAmbienteXV::EhEmpresaValida(GetEmpresa(reg));
}

}  // namespace XVRegistroInicializacao
