// The store behind the component's server: every operation goes through a client of its interface.
#include "client/XVCliente.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/XVFabricaOperacoes.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

XVCliente::SIntegracao ParaCliente(const SIntegracao& r) {
    XVCliente::SIntegracao dados;
    dados.sRegistroJSON = r.sRegistroJSON;
    dados.sMensagemIntegracao = r.sMensagemIntegracao;
    dados.sJSONRetornoIntegracao = r.sJSONRetornoIntegracao;
    dados.uiDmc = r.regDmc.uiValor;
    dados.uiDmcIntegracaoOrigem = r.regDmcIntegracaoOrigem.uiValor;
    dados.uiDmcMovimentoOrigem = r.regDmcMovimentoOrigem.uiValor;
    dados.uiDataHoraInclusao = r.regDataHoraInclusao.uiValor;
    dados.uiDataHoraAlteracaoStatus = r.regDataHoraAlteracaoStatus.uiValor;
    dados.uiChaveIntegracaoSistemaTerceiro = r.uiChaveIntegracaoSistemaTerceiro;
    dados.uiChaveRegistroSistemaTerceiro = r.uiChaveRegistroSistemaTerceiro;
    dados.uiBaseDadosTerceiro = r.uiBaseDadosTerceiro;
    dados.eTipoIntegracao = r.eTipoIntegracao;
    dados.eStatusIntegracao = r.eStatusIntegracao;
    dados.eSistemaIntegracao = r.eSistemaIntegracao;
    dados.eTipoTransacao = r.eTipoTransacao;
    dados.ulPonteiroFilial = r.ulPonteiroFilial;
    dados.ulPonteiroUsuarioInclusao = r.ulPonteiroUsuarioInclusao;
    dados.ulPonteiroUsuarioCancelamento = r.ulPonteiroUsuarioCancelamento;
    dados.ulPonteiroAuxiliar = r.ulPonteiroAuxiliar;
    dados.cReconsultarIdTerceiros = r.cReconsultarIdTerceiros;
    dados.ucTipoPonteiroAuxiliar = r.ucTipoPonteiroAuxiliar;
    return dados;
}

SIntegracao DeCliente(XVCliente::SIntegracao&& r) {
    SIntegracao dados;
    dados.sRegistroJSON = std::move(r.sRegistroJSON);
    dados.sMensagemIntegracao = std::move(r.sMensagemIntegracao);
    dados.sJSONRetornoIntegracao = std::move(r.sJSONRetornoIntegracao);
    dados.regDmc = {r.uiDmc};
    dados.regDmcIntegracaoOrigem = {r.uiDmcIntegracaoOrigem};
    dados.regDmcMovimentoOrigem = {r.uiDmcMovimentoOrigem};
    dados.regDataHoraInclusao = {r.uiDataHoraInclusao};
    dados.regDataHoraAlteracaoStatus = {r.uiDataHoraAlteracaoStatus};
    dados.uiChaveIntegracaoSistemaTerceiro = r.uiChaveIntegracaoSistemaTerceiro;
    dados.uiChaveRegistroSistemaTerceiro = r.uiChaveRegistroSistemaTerceiro;
    dados.uiBaseDadosTerceiro = r.uiBaseDadosTerceiro;
    dados.eTipoIntegracao = r.eTipoIntegracao;
    dados.eStatusIntegracao = r.eStatusIntegracao;
    dados.eSistemaIntegracao = r.eSistemaIntegracao;
    dados.eTipoTransacao = r.eTipoTransacao;
    dados.ulPonteiroFilial = r.ulPonteiroFilial;
    dados.ulPonteiroUsuarioInclusao = r.ulPonteiroUsuarioInclusao;
    dados.ulPonteiroUsuarioCancelamento = r.ulPonteiroUsuarioCancelamento;
    dados.ulPonteiroAuxiliar = r.ulPonteiroAuxiliar;
    dados.cReconsultarIdTerceiros = r.cReconsultarIdTerceiros;
    dados.ucTipoPonteiroAuxiliar = r.ucTipoPonteiroAuxiliar;
    return dados;
}

XVCliente::SChaveRegistro ParaCliente(const SChaveRegistro& r) {
    return {r.uiChaveRegistroSistemaTerceiro,
            r.regDmcRegistroTelvo.uiValor,
            r.uiBaseDadosTerceiro,
            r.eTipoIntegracao,
            r.eSistemaIntegracao,
            r.regDmcOrigemIntegracao.uiValor};
}

XVCliente::SDataHoraIntegracao ParaCliente(const SDataHoraIntegracao& r) {
    return {r.regDataHora.uiValor, r.eTipoIntegracao, r.eSistemaIntegracao, r.eTipoData};
}

XVCliente::SFiltroIntegracao ParaCliente(const SFiltroIntegracao& r) {
    return {r.uiChaveIntegracaoSistemaTerceiroInicial,
            r.uiChaveIntegracaoSistemaTerceiroFinal,
            r.regDataHoraInicialInclusao.uiValor,
            r.regDataHoraFinalInclusao.uiValor,
            r.regDataHoraInicialAlteracaoStatus.uiValor,
            r.regDataHoraFinalAlteracaoStatus.uiValor,
            r.listaTipoIntegracao,
            r.listaStatusIntegracao,
            r.listaSistemaIntegracao,
            r.listaTipoTransacao};
}

class CXVOperacoesServidor final : public IXVOperacoes {
  public:
    HRESULT Inicializa(const SAcesso& rAcesso) override {
        if (!rAcesso.sDiretorio.empty())
            XVErroDeUso(
                "--diretorio não vale com --servidor: o servidor usa o diretório configurado na máquina");
        if (m_Apartamento.GetResultado() < 0) return m_Apartamento.GetResultado();
        return Explica(m_Cliente.Conecta({.sEmpresa = rAcesso.sEmpresa,
                                          .usUsuario = rAcesso.usUsuario,
                                          .ulNumeroSessao = rAcesso.ulNumeroSessao}));
    }
    HRESULT Finaliza() override {
        m_Cliente.Desconecta();
        return S_OK;
    }

    HRESULT GravaIntegracao(REG_XVDMC* pDmc, const SIntegracao& rDados) override {
        return Explica(m_Cliente.GravaIntegracao(&pDmc->uiValor, ParaCliente(rDados)));
    }
    HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmc, const SIntegracao& rDados) override {
        return Explica(m_Cliente.GravaIntegracaoInstantanea(&pDmc->uiValor, ParaCliente(rDados)));
    }
    HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem, const SIntegracao& rDados) override {
        return Explica(m_Cliente.GravaPendenciaIntegracao(regDmcOrigem.uiValor, ParaCliente(rDados)));
    }
    HRESULT GravaStatusIntegracao(const SStatusIntegracao& r) override {
        return Explica(m_Cliente.GravaStatusIntegracao(
            {r.regDmc.uiValor, r.sMensagemIntegracao, r.sJSONRetornoIntegracao,
             r.uiChaveIntegracaoSistemaTerceiro, r.eStatusIntegracao, r.eSistemaIntegracao}));
    }

    HRESULT LeIntegracao(REG_XVDMC regDmc, XVUInt64 uiFlags, SIntegracao* pDados) override {
        XVCliente::SIntegracao dados;
        const HRESULT hr = Explica(m_Cliente.LeIntegracao(regDmc.uiValor, uiFlags, &dados));
        if (SUCCEEDED(hr)) *pDados = DeCliente(std::move(dados));
        return hr;
    }
    HRESULT LeIntegracoes(const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                          std::vector<SIntegracao>* pLista) override {
        std::vector<std::uint64_t> listaDmc;
        listaDmc.reserve(lista.size());
        for (const REG_XVDMC regDmc : lista) listaDmc.push_back(regDmc.uiValor);
        std::vector<XVCliente::SIntegracao> listaDados;
        const HRESULT hr = Explica(m_Cliente.LeIntegracoes(listaDmc, uiFlags, &listaDados));
        if (FAILED(hr)) return hr;
        pLista->clear();
        for (XVCliente::SIntegracao& rDados : listaDados) pLista->push_back(DeCliente(std::move(rDados)));
        return hr;
    }
    HRESULT BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<REG_XVDMC>* pLista) override {
        std::vector<std::uint64_t> listaDmc;
        const HRESULT hr = Explica(m_Cliente.BuscaPonteiros(ParaCliente(rFiltro), &listaDmc));
        if (FAILED(hr)) return hr;
        pLista->clear();
        for (const std::uint64_t uiDmc : listaDmc) pLista->push_back({uiDmc});
        return hr;
    }

    HRESULT GravaChaveRegistro(const SChaveRegistro& rDados) override {
        return Explica(m_Cliente.GravaChaveRegistro(ParaCliente(rDados)));
    }
    HRESULT GravaChaveRegistroPendente(const SChaveRegistro& rDados) override {
        return Explica(m_Cliente.GravaChaveRegistroPendente(ParaCliente(rDados)));
    }
    HRESULT BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados) override {
        XVCliente::SChaveRegistro r;
        const HRESULT hr = Explica(m_Cliente.BuscaChaveRegistro(ParaCliente(rFiltro), &r));
        if (SUCCEEDED(hr))
            *pDados = {r.uiChaveRegistroSistemaTerceiro,
                       {r.uiDmcRegistroTelvo},
                       r.uiBaseDadosTerceiro,
                       r.eTipoIntegracao,
                       r.eSistemaIntegracao,
                       {r.uiDmcOrigemIntegracao}};
        return hr;
    }

    HRESULT GravaDataHora(const SDataHoraIntegracao& rDados) override {
        return Explica(m_Cliente.GravaDataHora(ParaCliente(rDados)));
    }
    HRESULT BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados) override {
        XVCliente::SDataHoraIntegracao r;
        const HRESULT hr = Explica(m_Cliente.BuscaDataHora(ParaCliente(rFiltro), &r));
        if (SUCCEEDED(hr)) *pDados = {{r.uiDataHora}, r.eTipoIntegracao, r.eSistemaIntegracao, r.eTipoData};
        return hr;
    }

    HRESULT BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta,
                                      SRespostaConsulta* pResposta) override {
        XVCliente::SRespostaConsulta r;
        const HRESULT hr = Explica(m_Cliente.BuscaDadosSistemaTerceiro(
            {rConsulta.sChaveConsulta, rConsulta.eTipoConsulta, rConsulta.ulPonteiroAuxiliar,
             rConsulta.ucTipoPonteiroAuxiliar},
            &r));
        if (SUCCEEDED(hr))
            *pResposta = {std::move(r.sMensagemRetorno), std::move(r.sJSONRetorno),
                          std::move(r.sDocumentoRetorno), r.eStatusConsulta};
        return hr;
    }

  private:
    // The file that the server refused, as its last error names it, goes with the code.
    HRESULT Explica(HRESULT hr) {
        CXVArquivosRecusados* pRecusados = CXVArquivosRecusados::GetAtual();
        XVCliente::SUltimoErro erro;
        if (SUCCEEDED(hr) || pRecusados == nullptr || m_Cliente.GetUltimoErro(&erro) < 0 || erro.hrErro != hr)
            return hr;
        const std::string_view sPath = XVArquivoRecusado::PathDaMensagem(erro.sMensagem);
        if (!sPath.empty()) pRecusados->Inclui(hr, sPath);
        return hr;
    }

    XVCliente::CApartamento m_Apartamento;
    XVCliente::CXVCliente m_Cliente;
};

}  // namespace

std::unique_ptr<IXVOperacoes> XVCriaOperacoesServidor() {
    return std::make_unique<CXVOperacoesServidor>();
}
