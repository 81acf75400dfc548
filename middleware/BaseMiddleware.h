// The integration store's operations: record, update, read and search integrations of one company.
//
// All results are HRESULTs; a failure has left one line per failing step in the error log. The first
// failing step ends an operation, which then has changed nothing, in no file and not in memory. Thread rule:
// after Inicializa every operation may be called from any thread; operations that change the store are
// serialised per store, reads run beside them. Output records own their buffers (XVLiberaBuffers).
#pragma once

#include <span>
#include <vector>

#include "contract/XVCR_RegistrosPS.h"
#include "contract/XVDadosCR.h"
#include "contract/XVListaAchadas.h"
#include "core/xvdatabase/XVDataBaseFacade.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/XVFiltroBusca.h"
#include "middleware/XVIntegracaoSaida.h"
#include "middleware/XVOperacoesGenericas.h"
#include "middleware/XVTransporte.h"
#include "middleware/XVUltimasGravadas.h"
#include "suite/XVMiddlewareFacade.h"

class CBaseMiddleware : public CXVDataBaseFacade<CXVDataBase_CR_Middleware, CXVBaseParaRotinas>,
                        public CXVOperacoesGenericas {
  public:
    XV_CLASSE("CBaseMiddleware", "BaseMiddleware")

    CBaseMiddleware() = default;
    ~CBaseMiddleware() override;

    // Records an integration: a null DMC (or pointer content) means a new one, whose DMC is returned in
    // *pRegDmc; otherwise the named integration is updated.
    // E_INVALIDARG: impossible enumeration, date-time or DMC, or a text record that is not valid.
    // E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA: update to key 0 in a status
    // other than pending, error or cancelled. E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: no such integration.
    HRESULT GravaIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps);

    // Adds a new integration; returns its DMC.
    HRESULT GravaInternalIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps);

    // Performs the exchange at once for every pending item of the record and records the results. *pDmc in:
    // the integration to change or delete (null for inclusions); out: the last integration recorded. A system
    // in the record restricts the exchange to what its provider has pending.
    // Refused before anything is exchanged: E_NOTIMPL, a system without provider; E_INVALIDARG, a system, an
    // origin or a clock that cannot be recorded; the code of reading the integration that *pDmc names. The
    // first item that fails ends the call; items already recorded stay, and an exchange that was made and not
    // recorded is told in the error log with system, key and origin.
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmcRegistroIndex,
                                       tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS);

    // Records every pending item of the origin as a pending integration, without exchange. Refused as above
    // before anything is recorded.
    HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmcIntegracaoOrigem,
                                     tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS);

    // Records status and return texts of the integration named by DMC or, when it is null, by external key
    // and system.
    HRESULT GravaStatusIntegracao(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS regStatusIntegracaoPS);

    // Reads one integration. ullFlagLeitura: k_ullLe... bits; the output is cleared first.
    HRESULT LeIntegracao(REG_XVDMC regDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracaoPS,
                         XVUInt64 ullFlagLeitura);

    // Reads each integration of a list into a new array of *pulQuantidade records (AlocaSaida; each record
    // owns its texts). Flags 8 and 16 query the external systems once for the whole list. A list with a key
    // that the store does not have, or of more keys than it can have, costs no memory.
    HRESULT LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rListaPS, XVUInt* pulQuantidade,
                          tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracaoPS, XVUInt64 ullFlagLeitura);

    // Searches; the keys found are grouped by date.
    HRESULT BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& rFiltroPS,
                           _REG_DF_LISTA_XVDMCPS* pRegListaPonteirosPS);

    // Key map. Insert or update; insert as pending if absent; find by external id or by record of the suite.
    HRESULT GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS);
    HRESULT GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS);
    HRESULT BuscaChaveRegistroTelvoParaTerceiro(
        const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regFiltroPS,
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegRetornoFiltro);

    // Date-times per system, integration type and date kind.
    HRESULT GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& regPS);
    HRESULT BuscaDataHoraIntegracaoTerceiro(
        const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS& regFiltroPS,
        tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegRetorno);

    // All of the key map and of the date-times, in the order of their positions.
    HRESULT ListaChavesRegistro(std::vector<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>* pLista);
    HRESULT ListaDatasHoras(std::vector<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1>* pLista);

    // From one store to another. The index as it stands; the days that have records; how many of them, those
    // included that the index does not know.
    HRESULT ListaIndice(std::vector<REG_CR_INDEX_INTEGRACAO_V1>* pLista);
    HRESULT ListaDias(std::vector<XVUInt64>* pLista);
    HRESULT ContaRegistrosDoDia(XVUInt64 uiDia, XVUInt* pulQuantidade);
    // Records of a few days with their texts, all of one moment. A vacant place is no failure.
    HRESULT LeTransportadas(std::span<const REG_XVDMC> aDmcs, std::vector<SIntegracaoTransportada>* pLista);
    // Records an integration under the key that it brings, where that is the next one of its day. Whatever
    // *peImportada tells beside eNova is a success that has changed nothing. E_INVALIDARG: the store could
    // not have recorded it itself.
    HRESULT ImportaIntegracao(const SIntegracaoTransportada& rIntegracao, EImportada* peImportada);
    // Gives a recorded integration its origin where that got its own key only later. Nothing else of it
    // changes, and the general log has no line for it.
    HRESULT PoeOrigem(REG_XVDMC regDmc, REG_XVDMC regDmcOrigem);
    static REG_CR_INTEGRACAO_MIDDLEWARE_V2 MontaRegistro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg);
    static REG_CR_INDEX_INTEGRACAO_V1 MontaIndice(const CXVDadosCR_IntegracaoMiddleware& rDados);

    // Direct query of an external system; nothing is stored.
    HRESULT BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& regConsultaPS,
                                      tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pRegStatusPS);

    // k_ulFuncaoUltimasGravadas; E_INVALIDARG: with an input.
    HRESULT OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                             std::vector<XVByte>& saida) override;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;
    HRESULT ExecutaConversao() override;
    HRESULT RecusaVersaoPosterior() override;
    HRESULT ValidaVersaoSomenteLeitura() override;
    // The first integration that this process records in the store on a day; the ones before are over. Any
    // thread, inside of the call that recorded it: what takes time is done elsewhere.
    virtual void AoComecarDia(XVUInt64 /*uiDia*/) noexcept {}

  private:
    using CListaDmc = std::vector<REG_XVDMC>;
    using CVistaDmcs = std::span<const REG_XVDMC>;
    using CListaPendencias = std::vector<CXVDadosCR_PendenciaIntegracaoSistema>;

    HRESULT ValidaAcesso() const;
    HRESULT ValidaAcessoGravacao() const;
    HRESULT ValidaRegistro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) const;
    void GravaLinhaLogGeral(const char* pszOperacao, REG_XVDMC regDmcIntegracao,
                            XVUInt64 uiChaveSistemaTerceiro, REG_XVDMC regDmcMovimentoOrigem) noexcept;

    // Recording: what an operation is to write. The lock of changes is held. S_FALSE: the operation must be
    // alone; rbSozinha, false at first, keeps that this was answered.
    HRESULT PreparaAlteracao(CXVOperacao& operacao, REG_XVDMC regDmc,
                             const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps, bool& rbSozinha);
    HRESULT PreparaInclusao(CXVOperacao& operacao, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps,
                            bool& rbSozinha, REG_XVDMC* pRegDmc);
    static XVUInt64 ChaveNaFila(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regps);
    HRESULT PreparaStatus(CXVOperacao& operacao, const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                          REG_CR_INDEX_INTEGRACAO_V1 regIndex, XVUInt uiPosicaoIndex,
                          REG_XVDMC* pRegDmcMovimentoOrigem);
    HRESULT PreparaChaveRegistro(CXVOperacao& operacao, REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg);
    HRESULT PreparaChaveRegistroPendente(CXVOperacao& operacao,
                                         const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS);
    HRESULT PreparaImportacao(CXVOperacao& operacao, const SIntegracaoTransportada& rIntegracao,
                              EImportada* peImportada);
    HRESULT PreparaImportada(CXVOperacao& operacao, const SIntegracaoTransportada& rIntegracao);
    // The texts that an operation is about to add to; the message always.
    HRESULT ConfereTextosDoDia(XVUInt64 uiChaveNomeArquivo, bool bJSON, bool bJSONRetorno);
    HRESULT ValidaPosicaoLivre(REG_XVDMC regDmc);
    HRESULT BuscaPosicaoIndexSistemaTerceiro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps,
                                             XVUInt& uiPosicao, REG_XVDMC regDmcIntegracao);
    // First index record with this key and system; uiPosicao 0: none.
    HRESULT LocalizaIndexSistemaTerceiro(XVUInt64 uiChaveIntegracaoSistemaTerceiro, XVUInt eSistemaIntegracao,
                                         REG_CR_INDEX_INTEGRACAO_V1* pregIndex, XVUInt& uiPosicao);
    HRESULT LocalizaIndexDoStatus(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                                  REG_CR_INDEX_INTEGRACAO_V1* pregIndex, XVUInt& uiPosicaoIndex);

    // Exchange with external systems. No lock is held.
    // The items that have something to send and somebody to send it to; S_OK: each could be recorded.
    HRESULT GetListaDadosIntegracaoPendente(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS,
                                            CListaPendencias& listaDados);
    HRESULT ValidaItens(const CListaPendencias& listaDados) const;
    HRESULT ValidaDestino(REG_XVDMC regDmc, XVUInt eTipoTransacao);
    HRESULT ValidaArquivoDoDia(CXVGroupFileBase& rGrupo, XVUInt64 uiChaveNomeArquivo);
    HRESULT TrocaItem(CXVMiddlewareFacade& facade, const CXVDadosCR_PendenciaIntegracaoSistema& rItem,
                      const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS, REG_XVDMC* pDmc);
    HRESULT ExecutaTransacao(CXVDadosCR_IntegracaoMiddleware& rDados, REG_XVDMC* pDmc);
    void CompletaRespostaSemChave(CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64 uiChaveAnterior) const;
    HRESULT GravaItemPendente(CXVMiddlewareFacade& facade, const CXVDadosCR_PendenciaIntegracaoSistema& rItem,
                              const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS);

    // Reading.
    // TDados: SIntegracaoSaida, or CXVDadosCR_IntegracaoMiddleware.
    template <class TDados>
    HRESULT LeDados(REG_XVDMC regDmc, TDados* pDados, XVUInt64 ullFlagLeitura);
    template <class TDados>
    HRESULT LeRegistros(REG_XVDMC regDmc, TDados* pDados, XVUInt64 ullFlagLeitura);
    template <class TDados>
    HRESULT LeDoRegistro(REG_XVDMC regDmc, const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg, TDados* pDados,
                         XVUInt64 ullFlagLeitura);
    HRESULT LeTransportada(REG_XVDMC regDmc, SIntegracaoTransportada* pIntegracao);
    template <class TDados>
    HRESULT LeTextos(XVUInt64 uiChaveNomeArquivo, const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg, TDados* pDados,
                     XVUInt64 ullFlagLeitura);
    HRESULT ConsultaSistemaTerceiro(CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64 ullFlagLeitura);
    HRESULT CompletaComSistemaTerceiro(CXVDadosCR_IntegracaoMiddleware& rDados, bool bOperacaoPosterior);
    HRESULT ConfereLista(const _REG_DF_LISTA_XVDMCPS& rListaPS);
    template <class TDados>
    HRESULT LeDadosDaLista(const _REG_DF_LISTA_XVDMCPS& rListaPS, std::vector<TDados>& listaDados,
                           XVUInt64 ullFlagLeitura);
    HRESULT ConsultaSistemaTerceiro(std::vector<CXVDadosCR_IntegracaoMiddleware>& listaDados,
                                    XVUInt64 ullFlagLeitura);
    template <class TDados>
    HRESULT EntregaLista(std::vector<TDados>& listaDados, XVUInt* pulQuantidade,
                         tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracaoPS);
    HRESULT Entrega(SIntegracaoSaida& rSaida, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg);
    HRESULT Entrega(CXVDadosCR_IntegracaoMiddleware& rDados, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg);

    // Searching.
    HRESULT ValidaFiltroNivel1(const CXVFiltroBusca& dadosFiltro, CXVListaAchadas& listaPonteiros);
    HRESULT ValidaFiltroNivel2(const CXVFiltroBusca& dadosFiltro, XVUInt64 uiChaveArquivoAtual,
                               CVistaDmcs listaDmc, CXVListaAchadas& listaPonteiros);
    HRESULT BuscaRegistroIndexComChaveSistema(const CXVFiltroBusca& dadosFiltro,
                                              CXVListaAchadas& listaPonteiros);
    HRESULT ConfirmaAchadas(const CXVFiltroBusca& dadosFiltro, CXVListaAchadas& listaPonteiros);
    HRESULT PassaNaVista(const CXVFiltroBusca& dadosFiltro, REG_XVDMC regDmc, bool* pbPassa);
    HRESULT FiltraPorArquivo(const CXVFiltroBusca& dadosFiltro, CVistaDmcs aOrdenadas,
                             CXVListaAchadas& listaPonteiros);

    // Key map and date-times.
    HRESULT GetPonteiroIndexChaveRegistroParaTerceiro(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg,
                                                      XVUInt& uiPonteiro);
    HRESULT GetPonteiroIndexDataHoraIntegracao(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg,
                                               XVUInt& uiPonteiro);

    CXVUltimasGravadas m_ultimasGravadas;
};
