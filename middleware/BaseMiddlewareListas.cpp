// CBaseMiddleware: the whole key map, all date-times and the index, in the order of their positions.
#include "middleware/BaseMiddleware.h"

namespace {

template <class T>
auto AnexaA(std::vector<T>* pLista) {
    return [pLista](std::span<const T> aRegistros, std::size_t, const TXVResumo<T>*) {
        pLista->insert(pLista->end(), aRegistros.begin(), aRegistros.end());
    };
}

}  // namespace

HRESULT CBaseMiddleware::ListaChavesRegistro(
    std::vector<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>* pLista) {
    XV_ESCOPO();
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    return LeDeUmMomento([&] {
        pLista->clear();
        return m_pDataBase->m_ChaveRegistroParaTerceiro.Percorre(AnexaA(pLista));
    });
}

HRESULT CBaseMiddleware::ListaDatasHoras(std::vector<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1>* pLista) {
    XV_ESCOPO();
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    return LeDeUmMomento([&] {
        pLista->clear();
        return m_pDataBase->m_DataHoraIntegracao.Percorre(AnexaA(pLista));
    });
}

HRESULT CBaseMiddleware::ListaIndice(std::vector<REG_CR_INDEX_INTEGRACAO_V1>* pLista) {
    XV_ESCOPO();
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    return LeDeUmMomento([&] {
        pLista->clear();
        return m_pDataBase->m_IndexIntegracao.Percorre(AnexaA(pLista));
    });
}
