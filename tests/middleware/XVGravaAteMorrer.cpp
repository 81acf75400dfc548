// Records, updates and sets statuses in the store of company MATRIZ below the module directory given until
// it is killed or has done all. Each line is on its way before the next step is taken:
//   "abre"                          about to open the store
//   "aberta <hresult>"              opened
//   "pede <thread> <op> <number> <version>"   about to perform; op N new, A update, S status, M map, D
//   date-time "feito <thread> <hresult> <dmc>"          performed "fim <hresult>"                 closed
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/middleware/XVIntegracaoMarcada.h"
#include "tests/middleware/XVProtocoloMorte.h"

namespace {

struct SConhecida {
    REG_XVDMC regDmc;
    XVUInt64 uiNumero;
};

void Diz(const std::string& sLinha) {
    // One write of the system for one line, so that lines of several threads do not mix.
    std::fputs((sLinha + '\n').c_str(), stdout);
    std::fflush(stdout);
}

// The integrations that one thread of the writer may change.
std::vector<SConhecida> Conhecidas(CBaseMiddleware& rLoja, unsigned uiThread, unsigned uiThreads) {
    std::vector<SConhecida> lista;
    for (const XVUInt64 uiDmc : XVBusca(rLoja)) {
        const XVUInt64 uiNumero =
            XVIntegracaoMarcada::Numero(XVLe(rLoja, {uiDmc}, 0).reg.uiChaveIntegracaoSistemaTerceiro);
        if (uiNumero % uiThreads == uiThread) lista.push_back({{uiDmc}, uiNumero});
    }
    return lista;
}

class CEscritor {
  public:
    CEscritor(CBaseMiddleware& rLoja, const SPedidoMorte& rPedido, unsigned uiThread)
        : m_rLoja(rLoja),
          m_rPedido(rPedido),
          m_uiThread(uiThread),
          m_sorteio(rPedido.uiSemente * 31 + uiThread),
          m_lista(Conhecidas(rLoja, uiThread, rPedido.uiThreads)),
          m_uiVersao(rPedido.uiPrimeiraVersao + uiThread) {}

    void Executa() {
        const CXVCapturaTrace captura;
        for (unsigned i = 0; i < m_rPedido.uiOperacoes; ++i, m_uiVersao += m_rPedido.uiThreads) Passo();
    }

  private:
    void Passo() {
        const unsigned uiEscolha = m_lista.empty() ? 0 : static_cast<unsigned>(m_sorteio() % 10);
        if (uiEscolha < 3) return GravaNova();
        if (uiEscolha == 8) return GravaMapa();
        if (uiEscolha == 9) return GravaDataHora();
        const SConhecida& rConhecida = m_lista[m_sorteio() % m_lista.size()];
        const bool bStatus = uiEscolha < 6;
        Pede(bStatus ? 'S' : 'A', rConhecida.uiNumero);
        Feito(bStatus ? XVIntegracaoMarcada::GravaStatus(m_rLoja, rConhecida.regDmc, m_uiVersao)
                      : XVIntegracaoMarcada::GravaAlterada(m_rLoja, rConhecida.regDmc, rConhecida.uiNumero,
                                                           m_uiVersao),
              rConhecida.regDmc);
    }

    void GravaNova() {
        // The version is new and of this thread alone: it names the integration, too.
        REG_XVDMC regDmc;
        Pede('N', m_uiVersao);
        const HRESULT hr = XVIntegracaoMarcada::GravaNova(m_rLoja, m_uiVersao, m_uiVersao, &regDmc);
        Feito(hr, regDmc);
        if (SUCCEEDED(hr)) m_lista.push_back({regDmc, m_uiVersao});
    }

    void GravaMapa() {
        const XVUInt64 uiRegistro = XVRegistroDoMapa(m_sorteio(), m_uiThread, m_rPedido.uiThreads);
        Pede('M', uiRegistro);
        Feito(m_rLoja.GravaChaveRegistroTelvoParaTerceiro(XVMapaDaVersao(uiRegistro, m_uiVersao)), {});
    }

    void GravaDataHora() {
        Pede('D', m_uiThread);
        Feito(m_rLoja.GravaDataHoraIntegracaoTerceiro(XVDataHoraDaVersao(m_uiThread, m_uiVersao)), {});
    }

    void Pede(char chOperacao, XVUInt64 uiNumero) const {
        Diz("pede " + std::to_string(m_uiThread) + ' ' + chOperacao + ' ' + std::to_string(uiNumero) + ' ' +
            std::to_string(m_uiVersao));
    }
    void Feito(HRESULT hr, REG_XVDMC regDmc) const {
        Diz("feito " + std::to_string(m_uiThread) + ' ' + std::to_string(static_cast<XVUInt>(hr)) + ' ' +
            std::to_string(regDmc.uiValor));
    }

    CBaseMiddleware& m_rLoja;
    const SPedidoMorte& m_rPedido;
    const unsigned m_uiThread;
    std::mt19937_64 m_sorteio;
    std::vector<SConhecida> m_lista;
    XVUInt64 m_uiVersao;
};

void Escreve(CBaseMiddleware& rLoja, const SPedidoMorte& rPedido) {
    std::vector<std::unique_ptr<CEscritor>> escritores;
    for (unsigned i = 0; i < rPedido.uiThreads; ++i)
        escritores.push_back(std::make_unique<CEscritor>(rLoja, rPedido, i));
    std::vector<std::thread> threads;
    for (const auto& pEscritor : escritores) threads.emplace_back([&pEscritor] { pEscritor->Executa(); });
    for (std::thread& rThread : threads) rThread.join();
}

}  // namespace

int main(int argc, char** argv) {
    SPedidoMorte pedido;
    if (!pedido.DeArgumentos({argv + 1, argv + argc})) return 2;
    const CXVCapturaTrace captura;
    const CXVMaquinaMorte maquina(pedido);
    CBaseMiddleware loja;
    Diz("abre");
    const HRESULT hr = loja.Inicializa(&maquina.GetDono());
    Diz("aberta " + std::to_string(static_cast<XVUInt>(hr)));
    if (FAILED(hr)) return 1;
    Escreve(loja, pedido);
    const HRESULT hrFim = loja.Finaliza();
    Diz("fim " + std::to_string(static_cast<XVUInt>(hrFim)));
    return SUCCEEDED(hrFim) ? 0 : 1;
}
