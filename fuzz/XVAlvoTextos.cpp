// Foreign bytes in the texts that people write: log.ini, the registry file, simulation documents, DMCs and
// date-times. Whatever is accepted must come back the same from its own written form.
#include "fuzz/XVBancadaFuzz.h"
#include "platform/XVRegistryTexto.h"
#include "suite/simulation/XVDocumentoSimulacao.h"
#include "support/trace/XVPerfilPrivado.h"
#include "support/values/XVDmc.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    const std::string_view sTexto(reinterpret_cast<const char*>(pDados), uiTamanho);

    const CXVPerfilPrivado perfil(sTexto);
    static_cast<void>(perfil.LeTexto("Log", "Processos"));
    static_cast<void>(perfil.LeInteiro("Log", "TimeoutConfig", 600));
    static_cast<void>(CXVRegistryTexto::ConverteNumero(std::string(sTexto.substr(0, 40))));

    CXVDocumentoSimulacao documento;
    std::string sErro;
    if (documento.Interpreta(sTexto, &sErro)) {
        CXVDocumentoSimulacao outro;
        XV_EXIGE(outro.Interpreta(documento.Monta(), &sErro));
        XV_EXIGE(outro.GetCorpo() == documento.GetCorpo());
    }
    REG_XVDMC regDmc;
    if (REG_XVDMC::DeString(sTexto.substr(0, 40), &regDmc)) {
        REG_XVDMC regOutro;
        XV_EXIGE(REG_XVDMC::DeString(regDmc.ToString(), &regOutro));
        XV_EXIGE(regOutro == regDmc || regDmc.EhNulo());
    }
    REG_XVDMAHMSUTC regDataHora;
    if (REG_XVDMAHMSUTC::DeISO8601(sTexto.substr(0, 40), &regDataHora)) {
        REG_XVDMAHMSUTC regOutra;
        XV_EXIGE(REG_XVDMAHMSUTC::DeISO8601(regDataHora.ToISO8601(), &regOutra));
        XV_EXIGE(regOutra == regDataHora);
    }
    return 0;
}
