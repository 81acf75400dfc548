#include "bench/compare/XVBenchIntegracao.h"

#include <chrono>

namespace {

constexpr std::size_t k_uiInicioNumero = 11;  // behind {"pedido":"
constexpr std::size_t k_uiDigitos = 10;

std::string Texto(std::size_t uiTamanho) {
    std::string s = R"({"pedido":"0000000000","cliente":"Padaria Três Irmãos","itens":[)";
    while (s.size() < uiTamanho) s += R"({"produto":"0000123","quantidade":2,"valor":12.50},)";
    s.resize(uiTamanho);
    return s;
}

// Every text tells whose it is.
void PoeNumero(std::string& rTexto, unsigned uiNumero) {
    for (std::size_t i = k_uiDigitos; i-- > 0; uiNumero /= 10)
        rTexto[k_uiInicioNumero + i] = static_cast<char>('0' + uiNumero % 10);
}

XVUInt Status(unsigned uiNumero) {
    return uiNumero % 100 == 37 ? XVUInt{eXVSMiddleware_Pendente} : eXVSMiddleware_Enviado + uiNumero % 4;
}

}  // namespace

CXVGeradorBench::CXVGeradorBench(unsigned uiIntegracoes, unsigned uiDias, EOrdemBench eOrdem)
    : m_uiIntegracoes(uiIntegracoes),
      m_uiDias(uiDias),
      m_eOrdem(eOrdem),
      m_sJSON(Texto(k_uiBytesJSON)),
      m_sMensagem(Texto(k_uiBytesMensagem)),
      m_sRetorno(Texto(k_uiBytesRetorno)),
      m_sMensagemStatus(m_sMensagem),
      m_sRetornoStatus(m_sRetorno) {}

REG_XVDMA CXVGeradorBench::Data(unsigned uiDia) {
    using namespace std::chrono;
    const year_month_day ymd(sys_days(year(2025) / 1 / 1) + days(uiDia));
    return REG_XVDMA::Cria(static_cast<unsigned>(static_cast<int>(ymd.year())),
                           static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()));
}

REG_XVDMC CXVGeradorBench::Dmc(unsigned uiNumero, unsigned* puiDia) const {
    const bool bPorDia = m_eOrdem == EOrdemBench::ePorDia;
    const unsigned uiVolta = uiNumero / m_uiDias;
    // Once round the days, never in their order; the factors have no divisor in common with any number of
    // days that is used.
    *puiDia = bPorDia ? uiNumero / PorDia() : (uiNumero % m_uiDias * 17 + uiVolta * 31) % m_uiDias;
    return REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, (bPorDia ? uiNumero % PorDia() : uiVolta) + 1,
                           Data(*puiDia));
}

SIntegracaoBench CXVGeradorBench::Gera(unsigned uiNumero) {
    SIntegracaoBench integracao;
    integracao.regDmc = Dmc(uiNumero, &integracao.uiDia);
    integracao.uiChave = uiNumero + 1;
    integracao.eSistema = k_aeSistemasBench[uiNumero % std::size(k_aeSistemasBench)];
    integracao.eStatus = Status(uiNumero);
    integracao.eTipo = 1 + uiNumero % k_ulTiposBench;
    if (m_eOrdem == EOrdemBench::eEmbaralhados) return integracao;  // its searches look at no text
    for (std::string* p : {&m_sJSON, &m_sMensagem, &m_sRetorno}) PoeNumero(*p, uiNumero);
    integracao.sJSON = m_sJSON;
    integracao.sMensagem = m_sMensagem;
    integracao.sRetorno = m_sRetorno;
    return integracao;
}

SStatusBench CXVGeradorBench::GeraStatus(unsigned uiNumero, unsigned uiVez) {
    SStatusBench status;
    status.regDmc = Dmc(uiNumero, &status.uiDia);
    status.uiChave = uiNumero + 1;
    status.eSistema = k_aeSistemasBench[uiNumero % std::size(k_aeSistemasBench)];
    // Those that were pending stay it, or later rounds would search for less.
    const XVUInt eAtual = Status(uiNumero);
    status.eStatus = eAtual == eXVSMiddleware_Pendente ? eAtual : eXVSMiddleware_Enviado + uiVez % 4;
    PoeNumero(m_sMensagemStatus, uiVez);
    PoeNumero(m_sRetornoStatus, uiVez);
    status.sMensagem = m_sMensagemStatus;
    status.sRetorno = m_sRetornoStatus;
    return status;
}

std::vector<SFiltroBench> CXVGeradorBench::Filtros() const {
    const XVUInt64 uiQuantos = m_uiIntegracoes;
    const unsigned uiMeio = m_uiIntegracoes / 2;
    SFiltroBench tudo{"search (a)"};
    SFiltroBench pendentes{"search (b)"};
    pendentes.listaStatus = {eXVSMiddleware_Pendente};
    pendentes.listaSistemas = {OfficialBank};
    SFiltroBench faixa{"search (c)"};
    faixa.uiChaveInicial = uiQuantos * 25 / 100 + 1;
    faixa.uiChaveFinal = uiQuantos * 35 / 100;
    faixa.diaInicial = Data(m_uiDias * 30 / 100);
    faixa.diaFinal = Data(m_uiDias * 60 / 100 - 1);
    faixa.listaTipos = {eXVSMiddleware_CadastroTerceiros, eXVSMiddleware_CadastroProduto,
                        eXVSMiddleware_BuscaPedidos};
    SFiltroBench exata{"search (d)", uiMeio + 1ULL, uiMeio + 1ULL};
    exata.listaSistemas = {k_aeSistemasBench[uiMeio % std::size(k_aeSistemasBench)]};
    return {tudo, pendentes, faixa, exata};
}
