// A real process that writes a store on a real directory is killed at moments that nobody chose, again and
// again. After each death the store opens by itself, what was acknowledged is there, and each integration
// belongs to one version as a whole: the old or the new one.
//
// XV_MORTES: number of kills (50); XV_MORTES_SEMENTE: seed of the run (1). The seed fixes what the writers
// do and about when they are killed; the very instant is the machine's.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <sstream>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTeste.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/middleware/XVIntegracaoMarcada.h"
#include "tests/middleware/XVProtocoloMorte.h"

namespace {

namespace fs = std::filesystem;
using XVIntegracaoMarcada::Chave;

// An operation that was asked for and not acknowledged.
struct SPendente {
    char chOperacao;
    XVUInt64 uiNumero;
    XVUInt64 uiVersao;
};

// What the store must hold, as far as the writers told.
struct SEsperado {
    std::map<XVUInt64, SIntegracaoMarcada> mapaIntegracoes;  // by number
    std::map<XVUInt64, XVUInt64> mapaMapa;                   // version by record
    std::map<XVUInt64, XVUInt64> mapaDataHora;               // version by thread
    std::map<unsigned, SPendente> mapaPendentes;             // by thread
    XVUInt64 uiAgora = 0;                                    // of the last writer
};

constexpr XVUShort k_usUsuario = 7;

// Keeps the expected state from the writer's lines.
class CNarracao {
  public:
    explicit CNarracao(SEsperado& rEsperado) : m_rEsperado(rEsperado) {}

    void Ouve(const std::string& sLinha) {
        std::istringstream entrada(sLinha);
        std::string sVerbo;
        entrada >> sVerbo;
        m_sUltimas += sLinha + '\n';
        if (sVerbo == "pede") {
            unsigned uiThread = 0;
            SPendente pendente{};
            entrada >> uiThread >> pendente.chOperacao >> pendente.uiNumero >> pendente.uiVersao;
            m_rEsperado.mapaPendentes[uiThread] = pendente;
        } else if (sVerbo == "feito") {
            unsigned uiThread = 0;
            XVUInt ulResultado = 0;
            REG_XVDMC regDmc;
            entrada >> uiThread >> ulResultado >> regDmc.uiValor;
            EXPECT_EQ(ulResultado, 0U) << "an operation failed without any death:\n" << m_sUltimas;
            const SPendente pendente = m_rEsperado.mapaPendentes.at(uiThread);
            m_rEsperado.mapaPendentes.erase(uiThread);
            if (ulResultado == 0) Aplica(pendente, regDmc);
        } else if (sVerbo == "aberta" || sVerbo == "fim") {
            EXPECT_EQ(sLinha, sVerbo + " 0") << m_sUltimas;
        }
    }

    // The pending operation took place.
    void Aplica(const SPendente& rPendente, REG_XVDMC regDmc) {
        const XVUInt64 uiNumero = rPendente.uiNumero;
        switch (rPendente.chOperacao) {
            case 'M':
                m_rEsperado.mapaMapa[uiNumero] = rPendente.uiVersao;
                break;
            case 'D':
                m_rEsperado.mapaDataHora[uiNumero] = rPendente.uiVersao;
                break;
            default:
                m_rEsperado.mapaIntegracoes[uiNumero] = Depois(rPendente, regDmc);
        }
    }

    // The integration as the pending operation leaves it.
    SIntegracaoMarcada Depois(const SPendente& rPendente, REG_XVDMC regDmc) const {
        using namespace XVIntegracaoMarcada;
        if (rPendente.chOperacao == 'N') {
            SIntegracaoMarcada nova = Nova(rPendente.uiNumero, rPendente.uiVersao);
            nova.regDmc = regDmc;
            return nova;
        }
        const SIntegracaoMarcada& rAntes = m_rEsperado.mapaIntegracoes.at(rPendente.uiNumero);
        return rPendente.chOperacao == 'S'
                   ? ComStatus(rAntes, rPendente.uiVersao, m_rEsperado.uiAgora, k_usUsuario)
                   : Alterada(rAntes, rPendente.uiVersao, m_rEsperado.uiAgora);
    }

    const std::string& GetUltimas() const { return m_sUltimas; }

  private:
    SEsperado& m_rEsperado;
    std::string m_sUltimas;
};

// Compares a store with the expected state. bAdota: what was pending is settled by what is found.
class CConferencia {
  public:
    CConferencia(CBaseMiddleware& rLoja, SEsperado& rEsperado, bool bAdota)
        : m_rLoja(rLoja), m_rEsperado(rEsperado), m_narracao(rEsperado), m_bAdota(bAdota) {}

    void Executa() {
        const auto pendentes = m_rEsperado.mapaPendentes;
        if (m_bAdota) m_rEsperado.mapaPendentes.clear();
        for (const auto& [uiThread, pendente] : pendentes) ConferePendente(pendente);
        for (const auto& [uiNumero, integracao] : m_rEsperado.mapaIntegracoes) {
            if (m_conjuntoPendentes.contains(uiNumero)) continue;
            EXPECT_EQ(XVIntegracaoMarcada::Confere(m_rLoja, integracao), "") << "number " << uiNumero;
            m_listaDmc.push_back(integracao.regDmc.uiValor);
        }
        std::sort(m_listaDmc.begin(), m_listaDmc.end());
        EXPECT_EQ(XVBusca(m_rLoja), m_listaDmc) << "an integration too many or too few";
        for (const auto& [uiRegistro, uiVersao] : m_rEsperado.mapaMapa) {
            EXPECT_TRUE(m_conjuntoMapa.contains(uiRegistro) || MapaTem(uiRegistro, uiVersao)) << uiRegistro;
        }
        for (const auto& [uiThread, uiVersao] : m_rEsperado.mapaDataHora) {
            EXPECT_TRUE(m_conjuntoDataHora.contains(uiThread) || DataHoraTem(uiThread, uiVersao)) << uiThread;
        }
    }

  private:
    void ConferePendente(const SPendente& rPendente) {
        const auto versao = [](const auto& rMapa, XVUInt64 uiQual) -> XVUInt64 {
            const auto it = rMapa.find(uiQual);
            return it == rMapa.end() ? 0 : it->second;
        };
        const XVUInt64 uiNumero = rPendente.uiNumero;
        bool bNova = false;
        if (rPendente.chOperacao == 'M') {
            m_conjuntoMapa.insert(uiNumero);
            bNova = MapaTem(uiNumero, rPendente.uiVersao);
            EXPECT_TRUE(bNova || MapaTem(uiNumero, versao(m_rEsperado.mapaMapa, uiNumero)));
        } else if (rPendente.chOperacao == 'D') {
            m_conjuntoDataHora.insert(uiNumero);
            const auto uiThread = static_cast<unsigned>(uiNumero);
            bNova = DataHoraTem(uiThread, rPendente.uiVersao);
            EXPECT_TRUE(bNova || DataHoraTem(uiThread, versao(m_rEsperado.mapaDataHora, uiNumero)));
        } else {
            m_conjuntoPendentes.insert(uiNumero);
            return rPendente.chOperacao == 'N' ? ConfereNovaPendente(rPendente)
                                               : ConfereAlteracaoPendente(rPendente);
        }
        if (bNova && m_bAdota) m_narracao.Aplica(rPendente, {});
    }

    void ConfereNovaPendente(const SPendente& rPendente) {
        const TListaDmc lista = XVBusca(
            m_rLoja, {.de = Chave(rPendente.uiNumero, 0), .ate = Chave(rPendente.uiNumero + 1, 0) - 1});
        ASSERT_LE(lista.size(), 1U);
        if (lista.empty()) return;  // the old state: not there
        const REG_XVDMC regDmc{lista.front()};
        EXPECT_EQ(XVIntegracaoMarcada::Confere(m_rLoja, m_narracao.Depois(rPendente, regDmc)), "")
            << "half of a new integration";
        m_listaDmc.push_back(regDmc.uiValor);
        if (m_bAdota) m_narracao.Aplica(rPendente, regDmc);
    }

    void ConfereAlteracaoPendente(const SPendente& rPendente) {
        const SIntegracaoMarcada antes = m_rEsperado.mapaIntegracoes.at(rPendente.uiNumero);
        m_listaDmc.push_back(antes.regDmc.uiValor);
        const std::string sAntes = XVIntegracaoMarcada::Confere(m_rLoja, antes);
        const std::string sDepois =
            XVIntegracaoMarcada::Confere(m_rLoja, m_narracao.Depois(rPendente, antes.regDmc));
        EXPECT_TRUE(sAntes.empty() || sDepois.empty())
            << "half of operation " << rPendente.chOperacao << " on number " << rPendente.uiNumero
            << "\nagainst the old:" << sAntes << "\nagainst the new:" << sDepois;
        if (sDepois.empty() && m_bAdota) m_narracao.Aplica(rPendente, antes.regDmc);
    }

    // Version 0: not there.
    bool MapaTem(XVUInt64 uiRegistro, XVUInt64 uiVersao) {
        const auto esperado = XVMapaDaVersao(uiRegistro, uiVersao);
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
        EXPECT_EQ(m_rLoja.BuscaChaveRegistroTelvoParaTerceiro({0,
                                                               esperado.regDmcRegistroTelvo,
                                                               esperado.uiBaseDadosTerceiro,
                                                               esperado.eTipoIntegracao,
                                                               esperado.eSistemaIntegracao,
                                                               {}},
                                                              &reg),
                  S_OK);
        if (uiVersao == 0) return reg.regDmcRegistroTelvo.EhNulo();
        return reg.uiChaveRegistroSistemaTerceiro == uiVersao &&
               reg.regDmcOrigemIntegracao.uiValor == esperado.regDmcOrigemIntegracao.uiValor;
    }
    bool DataHoraTem(XVUInt64 uiThread, XVUInt64 uiVersao) {
        const auto esperado = XVDataHoraDaVersao(static_cast<unsigned>(uiThread), uiVersao);
        tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{};
        EXPECT_EQ(m_rLoja.BuscaDataHoraIntegracaoTerceiro(
                      {{}, esperado.eTipoIntegracao, esperado.eSistemaIntegracao, esperado.eTipoData}, &reg),
                  S_OK);
        return reg.regDataHora.uiValor == (uiVersao == 0 ? 0 : esperado.regDataHora.uiValor);
    }

    CBaseMiddleware& m_rLoja;
    SEsperado& m_rEsperado;
    CNarracao m_narracao;
    const bool m_bAdota;
    std::set<XVUInt64> m_conjuntoPendentes, m_conjuntoMapa, m_conjuntoDataHora;
    TListaDmc m_listaDmc;
};

// One store and the writers that die on it.
class CVidas {
  public:
    CVidas(XVUInt64 uiSemente, XVUInt ulDurabilidade, unsigned uiThreads) : m_sorteio(uiSemente) {
        m_pedido.sDiretorio = m_diretorio.GetCaminho();
        m_pedido.ulDurabilidade = ulDurabilidade;
        m_pedido.uiThreads = uiThreads;
    }

    void MataUm() {
        m_pedido.uiSemente = m_sorteio();
        m_pedido.uiOperacoes = 1 + static_cast<unsigned>(m_sorteio() % 40);
        m_esperado.uiAgora = m_pedido.Agora();
        m_narracao.emplace(m_esperado);
        const unsigned uiLinhas =
            static_cast<unsigned>(m_sorteio() % (2 * m_pedido.uiOperacoes * m_pedido.uiThreads + 4));
        MataDepoisDe(m_pedido, uiLinhas);
        m_pedido.uiPrimeiraVersao += m_pedido.uiOperacoes * m_pedido.uiThreads;
        if (m_sorteio() % 4 == 0) Confere(true);
        for (auto i = m_sorteio() % 3; i > 0; --i) MataAbertura();
        Confere(false);
        ++m_pedido.uiVida;
    }

    const std::string& GetUltimas() const { return m_narracao->GetUltimas(); }

  private:
    void MataDepoisDe(const SPedidoMorte& rPedido, unsigned uiLinhas) {
        CXVProcessoFilho filho(XVProgramaVizinho("xv_grava_ate_morrer"), rPedido.Argumentos());
        std::string sLinha = "inicio";
        const auto le = [&] {
            sLinha = filho.LeLinha();
            if (!sLinha.empty()) m_narracao->Ouve(sLinha);
        };
        for (unsigned i = 0; i < uiLinhas && !sLinha.empty(); ++i) le();
        Demora();
        filho.Mata();
        while (!sLinha.empty()) le();  // what it had said before it died
    }

    // Dies while it opens, or while it closes what it has just opened.
    void MataAbertura() {
        SPedidoMorte pedido = m_pedido;
        pedido.uiOperacoes = 0;
        MataDepoisDe(pedido, 1);
    }

    // A short time that differs from kill to kill: between nothing and some milliseconds of one processor.
    void Demora() {
        std::atomic<XVUInt64> uiVoltas = 0;
        for (const XVUInt64 uiFim = m_sorteio() >> (44 + m_sorteio() % 12); uiVoltas < uiFim;) ++uiVoltas;
    }

    void Confere(bool bSomenteLeitura) {
        const CXVCapturaTrace captura;
        const CXVMaquinaMorte maquina(m_pedido);
        if (bSomenteLeitura &&
            !fs::exists(fs::path(m_diretorio.Junta("MATRIZ")) / "DF" / "CRMIDDLEWAREVS.dat"))
            return;
        CBaseMiddleware loja;
        loja.SetSomenteLeitura(bSomenteLeitura);
        ASSERT_EQ(loja.Inicializa(&maquina.GetDono()), S_OK)
            << (bSomenteLeitura ? "viewing after a death" : "an opening that needs a person") << '\n'
            << m_narracao->GetUltimas();
        CConferencia(loja, m_esperado, !bSomenteLeitura).Executa();
        ASSERT_EQ(loja.Finaliza(), S_OK);
        if (!bSomenteLeitura) ConfereRestos();
    }

    void ConfereRestos() const {
        for (const auto& rEntrada : fs::directory_iterator(fs::path(m_diretorio.Junta("MATRIZ")) / "DF")) {
            const std::string sExtensao = rEntrada.path().extension().string();
            EXPECT_TRUE(sExtensao == ".dat" || sExtensao == ".log") << rEntrada.path() << " was left behind";
        }
    }

    const CXVDiretorioTeste m_diretorio;
    SPedidoMorte m_pedido;
    std::mt19937_64 m_sorteio;
    SEsperado m_esperado;
    std::optional<CNarracao> m_narracao;
};

XVUInt64 DoAmbiente(const char* pszNome, XVUInt64 uiPadrao) {
    const char* pszValor = std::getenv(pszNome);
    return pszValor == nullptr ? uiPadrao : std::strtoull(pszValor, nullptr, 10);
}

TEST(MortesReais, SoOVelhoOuONovoEOQueFoiConfirmadoEsta) {
    constexpr XVUInt64 k_uiPorLoja = 25;
    const XVUInt64 uiMortes = DoAmbiente("XV_MORTES", 50);
    const XVUInt64 uiSemente = DoAmbiente("XV_MORTES_SEMENTE", 1);
    std::optional<CVidas> vidas;
    for (XVUInt64 i = 0; i < uiMortes; ++i) {
        const XVUInt64 uiLoja = i / k_uiPorLoja;
        if (i % k_uiPorLoja == 0)
            vidas.emplace(uiSemente * 1000003 + uiLoja, static_cast<XVUInt>(uiLoja % 2),
                          uiLoja / 2 % 2 == 0 ? 1 : 4);
        vidas->MataUm();
        ASSERT_FALSE(HasFailure()) << "kill " << i << " of seed " << uiSemente << "; the writer had said:\n"
                                   << vidas->GetUltimas();
    }
}

}  // namespace
