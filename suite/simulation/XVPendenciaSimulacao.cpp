#include <limits>

#include "contract/XVCR_Enumeracoes.h"
#include "suite/simulation/XVNomesSimulacao.h"
#include "suite/simulation/XVProvedorSimulacao.h"

HRESULT CXVProvedorSimulacao::LePendencia(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                                          const std::string& sNome,
                                          const CXVDadosCR_ParametrosIntegracao& rParametros,
                                          std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) {
    constexpr XVUInt64 k_uiMaximo64 = std::numeric_limits<XVUInt64>::max();
    constexpr XVUInt k_ulMaximo32 = std::numeric_limits<XVUInt>::max();
    CXVDocumentoSimulacao documento;
    XV_CHECK_DONO(&rDono, rPasta.Le("pendentes", sNome, &documento));
    CXVLeitorCampos leitor(documento);
    const auto regOrigem = leitor.Dmc("Origem");
    if (!regOrigem) leitor.Recusa("Origem", "falta");
    const auto eTipo = leitor.Enumeracao("Tipo", XVNomesSimulacao::TipoIntegracao());
    const auto eTransacao = leitor.Enumeracao("Transacao", XVNomesSimulacao::TipoTransacao());
    CXVDadosCR_PendenciaIntegracaoSistema dados;
    dados.regDmcOrigem = leitor.Dmc("Registro").value_or(regOrigem.value_or(REG_XVDMC{}));
    dados.eSistemaIntegracao = leitor.Numero32("Sistema", k_ulMaximo32).value_or(SimulacaoSistemaTerceiro);
    dados.ulPonteiroFilial = leitor.Numero32("Filial", k_ulMaximo32).value_or(0);
    dados.uiBaseDadosTerceiro = leitor.Numero("BaseDados", k_uiMaximo64).value_or(0);
    dados.uiChaveRegistroSistemaTerceiro = leitor.Numero("ChaveRegistro", k_uiMaximo64).value_or(0);
    dados.cReconsultarIdTerceiros = static_cast<XVByte>(leitor.Numero("Reconsultar", 1).value_or(0));
    dados.sJSON = documento.GetCorpoEscrito();
    if (dados.sJSON.find('\0') != std::string::npos) leitor.Recusa("Origem", "o corpo contém um byte zero");
    std::string sErro;
    if (!leitor.Termina(&sErro)) return rPasta.Recusa(sNome, sErro);
    if (regOrigem == rParametros.regDmcOrigem && (!eTipo || eTipo == rParametros.eTipoIntegracao) &&
        (!eTransacao || eTransacao == rParametros.eTipoTransacao))
        listaDados.push_back(std::move(dados));
    return S_OK;
}
