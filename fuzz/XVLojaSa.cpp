#include "fuzz/XVLojaSa.h"

#include "tests/middleware/XVCenarioLoja.h"

namespace {

constexpr unsigned k_uiIntegracoes = 4;

std::string Texto(unsigned uiQual) {
    return "{\"pedido\":" + std::to_string(uiQual) + '}';
}

CXVIntegracaoTeste Integracao(unsigned uiQual) {
    CXVIntegracaoTeste integracao(100 + uiQual);
    integracao.reg.ulPonteiroFilial = uiQual;
    return integracao.Textos(Texto(uiQual), "", "");
}

CXVSistemaArquivosMemoria::TRetrato Faz() {
    CXVBancadaFuzz bancada;
    const auto pLoja = CXVLojaSa::Abre(bancada);
    for (unsigned i = 0; i < k_uiIntegracoes; ++i) {
        if (i == k_uiIntegracoes / 2) bancada.GetRelogio().SetUTC({2024, 3, 16, 12, 0, 0});
        REG_XVDMC regDmc;
        XV_EXIGE(SUCCEEDED(pLoja->GravaIntegracao(&regDmc, Integracao(i).Ptr())));
    }
    XV_EXIGE(SUCCEEDED(pLoja->GravaChaveRegistroTelvoParaTerceiro({7, {5ULL << 14 | 2}, 1, 6, Mercos, {}})));
    XV_EXIGE(SUCCEEDED(pLoja->GravaDataHoraIntegracaoTerceiro({{}, 9, Mercos, 1, {}})));
    XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    return bancada.GetDisco().Retrata();
}

bool ConfereUma(CBaseMiddleware& rLoja, REG_XVDMC regDmc, unsigned uiQual) {
    const SIntegracaoLida lida = XVLe(rLoja, regDmc, k_ullLeJSON);
    return lida.hr == S_OK && lida.reg.ulPonteiroFilial == uiQual &&
           lida.reg.uiChaveIntegracaoSistemaTerceiro == 100 + uiQual && lida.sJSON == Texto(uiQual);
}

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
        reg.regMensagemIntegracao = XVTextoPS(sMensagem);
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
    const SBuscaFeita feita = XVBuscaComCodigo(rLoja, {});
    bool bIgual = feita.hr == S_OK && feita.lista.size() == k_uiIntegracoes;
    for (unsigned i = 0; bIgual && i < k_uiIntegracoes; ++i) bIgual = ConfereUma(rLoja, {feita.lista[i]}, i);
    return bIgual;
}

bool CXVLojaSa::ConfereConcluida(CBaseMiddleware& rLoja) {
    const SBuscaFeita feita = XVBuscaComCodigo(rLoja, {});
    if (feita.hr != S_OK || feita.lista.empty()) return false;
    const SIntegracaoLida lida = XVLe(rLoja, {feita.lista[0]}, k_ullLeMensagem);
    return lida.hr == S_OK && lida.reg.eStatusIntegracao == eXVSMiddleware_Sucesso &&
           lida.sMensagem == "aceito!!";
}

bool CXVLojaSa::Grava(CBaseMiddleware& rLoja) {
    REG_XVDMC regDmc;
    return rLoja.GravaIntegracao(&regDmc, Integracao(k_uiIntegracoes).Ptr()) == S_OK &&
           ConfereUma(rLoja, regDmc, k_uiIntegracoes);
}

std::map<std::string, std::string> CXVLojaSa::Dados(const CXVBancadaFuzz& rBancada) {
    std::map<std::string, std::string> mapa;
    for (const auto& [sNome, arquivo] : rBancada.GetDisco().Retrata())
        if (sNome.ends_with(".dat") && !sNome.ends_with("XVDATABASE_FILE_CTRL.dat"))
            mapa[sNome] = arquivo.sConteudo;
    return mapa;
}
