#include "fuzz/XVLojaSa.h"

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVCR_Enumeracoes.h"

namespace {

constexpr unsigned k_uiIntegracoes = 4;

std::string Texto(unsigned uiQual) {
    return "{\"pedido\":" + std::to_string(uiQual) + '}';
}

tagREG_CR_INTEGRACAO_MIDDLEWAREPS Integracao(unsigned uiQual, const std::string& sTexto) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiro = 100 + uiQual;
    reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    reg.eStatusIntegracao = eXVSMiddleware_Pendente;
    reg.eSistemaIntegracao = Mercos;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    reg.ulPonteiroFilial = uiQual;
    reg.regRegistroJSON.ulQtdBytes = static_cast<XVUInt>(sTexto.size());
    reg.regRegistroJSON.pTexto = reinterpret_cast<XVByte*>(const_cast<char*>(sTexto.data()));
    return reg;
}

CXVSistemaArquivosMemoria::TRetrato Faz() {
    CXVBancadaFuzz bancada;
    const auto pLoja = CXVLojaSa::Abre(bancada);
    for (unsigned i = 0; i < k_uiIntegracoes; ++i) {
        if (i == k_uiIntegracoes / 2) bancada.GetRelogio().SetUTC({2024, 3, 16, 12, 0, 0});
        const std::string sTexto = Texto(i);
        const auto reg = Integracao(i, sTexto);
        REG_XVDMC regDmc;
        XV_EXIGE(SUCCEEDED(pLoja->GravaIntegracao(&regDmc, &reg)));
    }
    XV_EXIGE(SUCCEEDED(pLoja->GravaChaveRegistroTelvoParaTerceiro({7, {5ULL << 14 | 2}, 1, 6, Mercos, {}})));
    XV_EXIGE(SUCCEEDED(pLoja->GravaDataHoraIntegracaoTerceiro({{}, 9, Mercos, 1, {}})));
    XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    return bancada.GetDisco().Retrata();
}

bool ConfereUma(CBaseMiddleware& rLoja, REG_XVDMC regDmc, unsigned uiQual) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    const HRESULT hr = rLoja.LeIntegracao(regDmc, &reg, k_ullLeJSON);
    const bool bIgual = hr == S_OK && reg.ulPonteiroFilial == uiQual &&
                        reg.uiChaveIntegracaoSistemaTerceiro == 100 + uiQual &&
                        CXVStringPS::RegToString(reg.regRegistroJSON) == Texto(uiQual);
    XVLiberaBuffers(&reg);
    return bIgual;
}

}  // namespace

namespace {

// The disk before and after a status, seen while the store is open.
struct SMorte {
    CXVSistemaArquivosMemoria::TRetrato antes, depois;
};

SMorte FazMorte() {
    CXVBancadaFuzz bancada;
    CXVLojaSa::Poe(bancada);
    const auto pLoja = CXVLojaSa::Abre(bancada);
    // Opens the day's files, so that the two pictures differ by the operation alone.
    XV_EXIGE(CXVLojaSa::Confere(*pLoja));
    SMorte morte;
    std::string sMensagem = "aceito";
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiro = 100;
    reg.eSistemaIntegracao = Mercos;
    for (const XVUInt eStatus : {eXVSMiddleware_Enviado, eXVSMiddleware_Sucesso}) {
        sMensagem += '!';
        reg.eStatusIntegracao = eStatus;
        reg.regMensagemIntegracao.ulQtdBytes = static_cast<XVUInt>(sMensagem.size());
        reg.regMensagemIntegracao.pTexto = reinterpret_cast<XVByte*>(sMensagem.data());
        morte.antes = bancada.GetDisco().Retrata();
        XV_EXIGE(SUCCEEDED(pLoja->GravaStatusIntegracao(reg)));
    }
    morte.depois = bancada.GetDisco().Retrata();
    return morte;
}

}  // namespace

void CXVLojaSa::PoeMorta(CXVBancadaFuzz& rBancada, unsigned uiJaGravados) {
    static const SMorte s_morte = FazMorte();
    auto retrato = s_morte.depois;
    for (auto& [sNome, arquivo] : retrato) {
        if (!sNome.ends_with(".dat")) continue;
        if ((uiJaGravados & 1) == 0) arquivo = s_morte.antes.at(sNome);
        uiJaGravados >>= 1;
    }
    rBancada.GetDisco().Restaura(retrato);
}

void CXVLojaSa::Poe(CXVBancadaFuzz& rBancada) {
    static const auto s_retrato = Faz();
    rBancada.GetDisco().Restaura(s_retrato);
}

std::unique_ptr<CBaseMiddleware> CXVLojaSa::Abre(CXVBancadaFuzz& rBancada) {
    auto pLoja = std::make_unique<CBaseMiddleware>();
    return SUCCEEDED(pLoja->Inicializa(&rBancada.GetPerfil())) ? std::move(pLoja) : nullptr;
}

bool CXVLojaSa::Confere(CBaseMiddleware& rLoja) {
    _REG_DF_LISTA_XVDMCPS lista{};
    bool bIgual = rLoja.BuscaPonteiros({}, &lista) == S_OK && lista.ulQuantidade == k_uiIntegracoes;
    for (unsigned i = 0; bIgual && i < k_uiIntegracoes; ++i) bIgual = ConfereUma(rLoja, lista.pLista[i], i);
    XVLiberaBuffers(&lista);
    return bIgual;
}

bool CXVLojaSa::ConfereConcluida(CBaseMiddleware& rLoja) {
    _REG_DF_LISTA_XVDMCPS lista{};
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    const bool bConcluida = rLoja.BuscaPonteiros({}, &lista) == S_OK && lista.ulQuantidade > 0 &&
                            rLoja.LeIntegracao(lista.pLista[0], &reg, k_ullLeMensagem) == S_OK &&
                            reg.eStatusIntegracao == eXVSMiddleware_Sucesso &&
                            CXVStringPS::RegToString(reg.regMensagemIntegracao) == "aceito!!";
    XVLiberaBuffers(&lista);
    XVLiberaBuffers(&reg);
    return bConcluida;
}

bool CXVLojaSa::Grava(CBaseMiddleware& rLoja) {
    const std::string sTexto = Texto(k_uiIntegracoes);
    const auto reg = Integracao(k_uiIntegracoes, sTexto);
    REG_XVDMC regDmc;
    return rLoja.GravaIntegracao(&regDmc, &reg) == S_OK && ConfereUma(rLoja, regDmc, k_uiIntegracoes);
}

std::map<std::string, std::string> CXVLojaSa::Dados(const CXVBancadaFuzz& rBancada) {
    std::map<std::string, std::string> mapa;
    for (const auto& [sNome, arquivo] : rBancada.GetDisco().Retrata())
        if (sNome.ends_with(".dat") && !sNome.ends_with("XVDATABASE_FILE_CTRL.dat"))
            mapa[sNome] = arquivo.sConteudo;
    return mapa;
}
