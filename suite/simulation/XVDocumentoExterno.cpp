#include "suite/simulation/XVDocumentoExterno.h"

#include <cstdio>
#include <limits>

#include "contract/XVCR_Enumeracoes.h"
#include "suite/simulation/XVNomesSimulacao.h"

bool SDocumentoExterno::Interpreta(const CXVDocumentoSimulacao& rDocumento, bool bCorpo,
                                   std::string* psErro) {
    constexpr XVUInt64 k_uiMaximo64 = std::numeric_limits<XVUInt64>::max();
    CXVLeitorCampos leitor(rDocumento);
    eStatus =
        leitor.Enumeracao("Status", XVNomesSimulacao::StatusIntegracao()).value_or(eXVSMiddleware_Sucesso);
    sMensagem = leitor.Texto("Mensagem").value_or(std::string());
    regOrigem = leitor.Dmc("Origem").value_or(REG_XVDMC{});
    eTipo = leitor.Enumeracao("Tipo", XVNomesSimulacao::TipoIntegracao()).value_or(0);
    eTransacao = leitor.Enumeracao("Transacao", XVNomesSimulacao::TipoTransacao()).value_or(0);
    ulFilial = leitor.Numero32("Filial", std::numeric_limits<XVUInt>::max()).value_or(0);
    uiBaseDados = leitor.Numero("BaseDados", k_uiMaximo64).value_or(0);
    uiChaveRegistro = leitor.Numero("ChaveRegistro", k_uiMaximo64).value_or(0);
    desfecho = SDesfechoSimulado::De(leitor);
    const auto uiEnviado = leitor.Numero("Enviado", k_uiMaximo64);
    if (bCorpo) {
        const std::string& sCorpo = rDocumento.GetCorpo();
        if (uiEnviado && *uiEnviado > sCorpo.size()) {
            leitor.Recusa("Enviado", "o corpo tem menos bytes");
        } else if (uiEnviado) {
            sEnviado = sCorpo.substr(0, static_cast<std::size_t>(*uiEnviado));
            sRetorno = sCorpo.substr(static_cast<std::size_t>(*uiEnviado));
        } else {
            sEnviado.clear();
            sRetorno = rDocumento.GetCorpoEscrito();
        }
        if (sRetorno.find('\0') != std::string::npos) leitor.Recusa("Enviado", "o corpo contém um byte zero");
    }
    return leitor.Termina(psErro);
}

CXVDocumentoSimulacao SDocumentoExterno::ComoDocumento() const {
    CXVDocumentoSimulacao documento;
    documento.Inclui("Status", eStatus);
    if (!sMensagem.empty()) documento.Inclui("Mensagem", sMensagem);
    if (!regOrigem.EhNulo()) documento.Inclui("Origem", regOrigem.ToString());
    if (eTipo != 0) documento.Inclui("Tipo", eTipo);
    if (eTransacao != 0) documento.Inclui("Transacao", eTransacao);
    if (ulFilial != 0) documento.Inclui("Filial", ulFilial);
    if (uiBaseDados != 0) documento.Inclui("BaseDados", uiBaseDados);
    if (uiChaveRegistro != 0) documento.Inclui("ChaveRegistro", uiChaveRegistro);
    if (desfecho.ulEspera != 0) documento.Inclui("Espera", desfecho.ulEspera);
    if (FAILED(desfecho.hrResultado)) {
        char szCodigo[16];
        std::snprintf(szCodigo, sizeof(szCodigo), "0x%08X", static_cast<unsigned>(desfecho.hrResultado));
        documento.Inclui("Resultado", szCodigo);
    }
    documento.Inclui("Enviado", sEnviado.size());
    documento.SetCorpo(sEnviado + sRetorno);
    return documento;
}
