#include "tests/middleware/XVRoteiro.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/middleware/XVCenarioLoja.h"

namespace {

constexpr XVUInt k_aSistemas[] = {Mercos, OfficialBank, SimulacaoSistemaTerceiro};

bool Inclui(CBaseMiddleware& rLoja, unsigned n, std::vector<REG_XVDMC>& lista) {
    CXVIntegracaoTeste integracao(n % 7 == 0 ? 0 : 500 + n % 40, k_aSistemas[n % 3], n % 6);
    integracao.reg.eTipoIntegracao = n % 18;
    integracao.reg.eTipoTransacao = n % 4;
    integracao.reg.uiBaseDadosTerceiro = n % 5;
    const std::string sTexto = "{\"pedido\":" + std::to_string(n) + ",\"cliente\":\"Padaria Três Irmãos\"}";
    integracao.Textos(sTexto, n % 3 == 0 ? "" : "Situação " + std::to_string(n),
                      n % 4 == 0 ? sTexto + sTexto : "");
    REG_XVDMC regDmc;
    if (FAILED(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()))) return false;
    lista.push_back(regDmc);
    return true;
}

bool Altera(CBaseMiddleware& rLoja, unsigned n, const std::vector<REG_XVDMC>& lista) {
    REG_XVDMC regDmc = lista[n * 7 % lista.size()];
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    // A bank integration may have passed its index record on.
    if (FAILED(rLoja.LeIntegracao(regDmc, &reg, 0))) return true;
    const std::string sMensagem = "alterada " + std::to_string(n);
    if (n % 2 == 0) {
        tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS status{};
        status.regDmc = regDmc;
        status.eStatusIntegracao = n % 6;
        status.regMensagemIntegracao = XVTextoPS(sMensagem);
        return SUCCEEDED(rLoja.GravaStatusIntegracao(status));
    }
    reg.eStatusIntegracao = eXVSMiddleware_Erro;
    reg.regMensagemIntegracao = XVTextoPS(sMensagem);
    return SUCCEEDED(rLoja.GravaIntegracao(&regDmc, &reg));
}

bool Mapeia(CBaseMiddleware& rLoja, unsigned n) {
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{
        n * 3, {XVChaveDmc(0, n % 9 + 1, 2)}, n % 2, 6, Mercos, {}};
    const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS dataHora{
        REG_XVDMAHMSUTC::Agora(), n % 4 + 1, OfficialBank, n % 2 + 1, {}};
    return SUCCEEDED(n % 3 == 0 ? rLoja.GravaChaveRegistroTelvoParaTerceiroPendente(chave)
                                : rLoja.GravaChaveRegistroTelvoParaTerceiro(chave)) &&
           SUCCEEDED(rLoja.GravaDataHoraIntegracaoTerceiro(dataHora));
}

bool Executa(CXVRelogioFalso& rRelogio) {
    std::vector<REG_XVDMC> lista;
    for (unsigned uiSessao = 1; uiSessao <= 2; ++uiSessao) {
        CBaseMiddleware loja;
        const CXVDonoFixo dono("MATRIZ", static_cast<XVUShort>(uiSessao), uiSessao);
        if (FAILED(loja.Inicializa(&dono))) return false;
        for (unsigned n = uiSessao * 100; n < uiSessao * 100 + 60; ++n) {
            rRelogio.Avanca(XVUInt64{n} * 150000);
            if (!Inclui(loja, n, lista) || !Altera(loja, n, lista)) return false;
            if (n % 2 == 0 && !Mapeia(loja, n)) return false;
        }
        if (FAILED(loja.Finaliza())) return false;
    }
    return true;
}

std::string SemComputador(std::string sBytes, const std::string& sNome) {
    const bool bCabecalho =
        sNome.ends_with(".dat") && sNome != "XVDATABASE_FILE_CTRL.dat" && sBytes.size() >= 240;
    if (bCabecalho) {
        std::fill(sBytes.begin() + 184, sBytes.begin() + 216, '\0');
        std::fill(sBytes.begin() + 232, sBytes.begin() + 240, '\0');
    }
    return sBytes;
}

}  // namespace

std::string XVExecutaRoteiro(const std::string& sDiretorio) {
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", sDiretorio);
    CXVRelogioFalso relogio;
    const CXVGuardaRegistry guardaRegistry(registry);
    const CXVGuardaRelogio guardaRelogio(relogio);
    {
        const CXVCapturaTrace captura;  // the error log names the process
        if (!Executa(relogio)) return {};
    }
    std::vector<std::string> linhas;
    const std::u8string sPasta(sDiretorio.begin(), sDiretorio.end());
    for (const auto& entrada :
         std::filesystem::directory_iterator(std::filesystem::path(sPasta) / "MATRIZ" / "DF")) {
        std::ifstream arquivo(entrada.path(), std::ios::binary);
        std::ostringstream bytes;
        bytes << arquivo.rdbuf();
        const std::string sNome = entrada.path().filename().string();
        char szLinha[128];
        std::snprintf(szLinha, sizeof(szLinha), "%s %zu %016llx\n", sNome.c_str(), bytes.str().size(),
                      static_cast<unsigned long long>(CrcBitABit(SemComputador(bytes.str(), sNome))));
        linhas.emplace_back(szLinha);
    }
    std::sort(linhas.begin(), linhas.end());
    std::string sLista;
    for (const auto& sLinha : linhas) sLista += sLinha;
    return sLista;
}
