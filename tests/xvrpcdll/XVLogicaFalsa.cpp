#include "tests/xvrpcdll/XVLogicaFalsa.h"

#include <new>

namespace {
SControleLogica* g_pControle = nullptr;
}

SControleLogica::SControleLogica() {
    g_pControle = this;
}
SControleLogica::~SControleLogica() {
    g_pControle = nullptr;
}
SControleLogica& SControleLogica::Atual() {
    return *g_pControle;
}

CLogicaFalsa::CLogicaFalsa() {
    if (SControleLogica::Atual().bConstrucaoLanca) throw std::bad_alloc();
    ++SControleLogica::Atual().iVivas;
}

CLogicaFalsa::~CLogicaFalsa() {
    XVIgnora(Finaliza());
    --SControleLogica::Atual().iVivas;
}

HRESULT CLogicaFalsa::OnInicializa() {
    return SControleLogica::Atual().hrInicializa;
}

HRESULT CLogicaFalsa::OnFinaliza() {
    ++SControleLogica::Atual().iFinalizacoes;
    SControleLogica::Atual().fnFinaliza();
    return S_OK;
}

// The reads fill their outputs before they answer, success or not: nothing of a failure may reach the caller.
HRESULT CLogicaFalsa::LeIntegracao(REG_XVDMC regDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg,
                                   XVUInt64 ullFlags) {
    XVIgnora(CXVStringPS::StringToReg("{\"n\":1}", &pReg->regRegistroJSON));
    pReg->ulPonteiroFilial = 9;
    return Opera("LeIntegracao", regDmc, ullFlags);
}

HRESULT CLogicaFalsa::LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rLista, XVUInt* pulQuantidade,
                                    tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppReg, XVUInt64 ullFlags) {
    const std::size_t uiBytes = rLista.ulQuantidade * sizeof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS);
    *ppReg = static_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(XVAmbienteSO::AlocaSaida(uiBytes));
    for (XVUInt i = 0; i < rLista.ulQuantidade; ++i) {
        (*ppReg)[i] = {};
        XVIgnora(CXVStringPS::StringToReg("mensagem", &(*ppReg)[i].regMensagemIntegracao));
    }
    *pulQuantidade = rLista.ulQuantidade;
    return Opera("LeIntegracoes", rLista, ullFlags);
}

HRESULT CLogicaFalsa::BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg,
                                     _REG_DF_LISTA_XVDMCPS* pLista) {
    XVIgnora(XVListaToReg({REG_XVDMC{1}, REG_XVDMC{2}}, pLista));
    return Opera("BuscaPonteiros", reg);
}

HRESULT CLogicaFalsa::BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& reg,
                                                tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) {
    XVIgnora(CXVStringPS::StringToReg("resposta", &pReg->regJSONRetorno));
    pReg->eStatusConsulta = 2;
    return Opera("BuscaDadosSistemaTerceiro", reg);
}

HRESULT CLogicaFalsa::OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                                       std::vector<XVByte>& saida) {
    saida.assign(entrada.rbegin(), entrada.rend());
    saida.push_back(static_cast<XVByte>(ulFuncao));
    return Opera("FuncaoGenerica", ulFuncao);
}

REG_DF_INICIALIZAPS RegistroValido() {
    REG_DF_INICIALIZAPS reg{};
    reg.ulUsuario = 7;
    reg.ulNumeroSessao = 42;
    reg.ulNumeroChamador = 1;
    std::memcpy(reg.szEmpresa, "EMPRESA", 7);
    std::memcpy(reg.szExecutavel, "teste.exe", 9);
    std::memcpy(reg.szModulo, "teste.dll", 9);
    std::memcpy(reg.szIdentificacao, "testes", 6);
    XVRegistroInicializacao::Sela(&reg);
    return reg;
}
