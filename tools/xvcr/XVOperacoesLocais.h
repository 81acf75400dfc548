// The store opened in this very process.
#pragma once

#include <memory>

#include "middleware/BaseMiddleware.h"
#include "tools/xvcr/IXVOperacoes.h"
#include "tools/xvcr/XVRegistroComDiretorio.h"

class CXVOperacoesLocais : public IXVOperacoes {
  public:
    ~CXVOperacoesLocais() override;

    HRESULT Inicializa(const SAcesso& rAcesso) override;
    HRESULT Finaliza() override;

    HRESULT GravaIntegracao(REG_XVDMC* pDmc, const SIntegracao& rDados) override;
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmc, const SIntegracao& rDados) override;
    HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem, const SIntegracao& rDados) override;
    HRESULT GravaStatusIntegracao(const SStatusIntegracao& rDados) override;
    HRESULT LeIntegracao(REG_XVDMC regDmc, XVUInt64 uiFlags, SIntegracao* pDados) override;
    HRESULT LeIntegracoes(const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                          std::vector<SIntegracao>* pLista) override;
    HRESULT BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<REG_XVDMC>* pLista) override;
    HRESULT GravaChaveRegistro(const SChaveRegistro& rDados) override;
    HRESULT GravaChaveRegistroPendente(const SChaveRegistro& rDados) override;
    HRESULT BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados) override;
    HRESULT GravaDataHora(const SDataHoraIntegracao& rDados) override;
    HRESULT BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados) override;
    HRESULT BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta,
                                      SRespostaConsulta* pResposta) override;

  private:
    std::unique_ptr<CXVRegistroComDiretorio> m_pRegistro;
    CBaseMiddleware m_Base;
};
