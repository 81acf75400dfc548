// The library of tests/middleware/exchange/XVGravador.h.
#include <cstdlib>
#include <cstring>

#include "tests/middleware/exchange/XVGravador.h"

namespace {

SGravador& Gravador() {
    static SGravador& s_rGravador = *new SGravador;
    return s_rGravador;
}

void* Aloca(std::size_t uiTamanho) {
    ++Gravador().lBuffersVivos;
    return std::calloc(1, uiTamanho + 1);
}

void Libera(void*, void* pBuffer) {
    --Gravador().lBuffersVivos;
    std::free(pBuffer);
}

void Preenche(XVProvedorBuffer* pBuffer, const std::string& sBytes) {
    pBuffer->pBytes = Aloca(sBytes.size());
    std::memcpy(pBuffer->pBytes, sBytes.data(), sBytes.size());
    pBuffer->uiTamanho = sBytes.size();
    pBuffer->bPreenchido = 1;
}

template <class TRegistro>
void Anota(const char* pszOperacao, const XVProvedorDono& rDono, const TRegistro& rRegistro) {
    std::ostringstream s;
    s << pszOperacao << ' ' << XVVista(rDono.sEmpresa) << '/' << rDono.ulUsuario << '/'
      << rDono.ulNumeroSessao << ' ' << XVDescreve(rRegistro);
    Gravador().listaChamadas.push_back(s.str());
}

constexpr char k_szAnterior[] = "Anterior";
constexpr char k_szEnviaJson[] = "EnviaJson";
constexpr char k_szBuscaDados[] = "BuscaDados";
constexpr char k_szExcluiDados[] = "ExcluiDados";

template <const char* pszOperacao>
std::int32_t Dados(void*, const XVProvedorDono* pDono, XVProvedorDados* pDados) {
    Anota(pszOperacao, *pDono, *pDados);
    const SRespostaDados& rResposta = Gravador().mapDados[pszOperacao];
    if (rResposta.bMuda) {
        *pDados = rResposta.reg;
        Preenche(&pDados->bufRegistroJSON, rResposta.sJSON);
        Preenche(&pDados->bufMensagemIntegracao, rResposta.sMensagem);
        Preenche(&pDados->bufJSONRetornoIntegracao, rResposta.sRetorno);
    }
    if (rResposta.fnDepois) rResposta.fnDepois();
    return rResposta.iResultado;
}

std::int32_t Posterior(void*, const XVProvedorDono* pDono, const XVProvedorParametros* pParametros) {
    Anota("Posterior", *pDono, *pParametros);
    return Gravador().mapParametros["Posterior"].iResultado;
}

std::int32_t Atualiza(void*, const XVProvedorDono* pDono, XVProvedorParametros* pParametros) {
    Anota("Atualiza", *pDono, *pParametros);
    const SRespostaParametros& rResposta = Gravador().mapParametros["Atualiza"];
    if (rResposta.bMuda) *pParametros = rResposta.reg;
    return rResposta.iResultado;
}

std::int32_t BuscaIntegracoes(void*, const XVProvedorDono* pDono, const XVProvedorParametros* pParametros,
                              XVProvedorListaPendencias* pLista) {
    Anota("BuscaIntegracoes", *pDono, *pParametros);
    const std::vector<SItemGravador>& rItens = Gravador().listaItens;
    if (rItens.empty()) return Gravador().iResultadoLista;
    pLista->pLista = static_cast<XVProvedorPendencia*>(Aloca(rItens.size() * sizeof(XVProvedorPendencia)));
    pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
    pLista->ulQuantidade = static_cast<std::uint32_t>(rItens.size());
    for (std::size_t i = 0; i < rItens.size(); ++i) {
        pLista->pLista[i] = rItens[i].reg;
        Preenche(&pLista->pLista[i].bufJSON, rItens[i].sJSON);
    }
    return Gravador().iResultadoLista;
}

std::int32_t Consulta(void*, const XVProvedorDono* pDono, const XVProvedorConsulta* pConsulta,
                      XVProvedorStatusConsulta* pStatus) {
    Anota("Consulta", *pDono, *pConsulta);
    const SRespostaConsulta& rResposta = Gravador().consulta;
    pStatus->eStatusConsulta = rResposta.eStatus;
    Preenche(&pStatus->bufMensagemRetorno, rResposta.sMensagem);
    Preenche(&pStatus->bufJSONRetorno, rResposta.sJSON);
    Preenche(&pStatus->bufDocumentoRetorno, rResposta.sDocumento);
    return 0;
}

}  // namespace

extern "C" {

XVPROVEDOR_EXPORTA SGravador* XVProvedorGravador();

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = ulVersao;
    pTabela->eSistema = XV_SISTEMA;
    pTabela->pfnLibera = Libera;
    pTabela->pfnRealizaOperacaoAnterior = Dados<k_szAnterior>;
    pTabela->pfnEnviaJson = Dados<k_szEnviaJson>;
    pTabela->pfnBuscaDados = Dados<k_szBuscaDados>;
    pTabela->pfnExcluiDados = Dados<k_szExcluiDados>;
    pTabela->pfnRealizaOperacaoPosterior = Posterior;
    pTabela->pfnAtualizaParametrosIntegracao = Atualiza;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    pTabela->pfnBuscaDadosSistemaTerceiro = Consulta;
    return 0;
}

SGravador* XVProvedorGravador() {
    return &Gravador();
}
}
