// Callers that wait for the device at the same time.
#include <array>
#include <atomic>
#include <functional>
#include <list>
#include <thread>

#include "tests/xvdatabase/XVCenarioDiario.h"

namespace {

// Three files, one for each caller, so that what one prepares depends on nothing that waits.
struct SBancoFila : SBancoComDiario {
    // As a store does: prepared under the callers' lock, again when it was in vain.
    HRESULT Grava(std::size_t uiFile, std::string_view sTexto, XVUInt64 uiChave) {
        while (true) {
            std::unique_lock bloqueio(mutexAlteracao);
            CXVOperacao operacao(&xvDB);
            operacao.SetChave(uiChave);
            HRESULT hr = operacao.Inicia();
            XVUInt uiPosicao = 0;
            if (SUCCEEDED(hr))
                hr =
                    aFiles[uiFile].PreparaColecao(operacao, uiPosicao, std::vector<std::string_view>{sTexto});
            if (FAILED(hr)) return hr;
            bool bRefaz = false;
            hr = diario.Executa(operacao, bloqueio, &bRefaz);
            if (!bRefaz) return hr;
            ++ulRefeitas;
        }
    }

    std::array<CXVTextFile, 3> aFiles{{{"A.dat", &xvDB}, {"B.dat", &xvDB}, {"C.dat", &xvDB}}};
    std::mutex mutexAlteracao;
    std::atomic<XVUInt> ulRefeitas = 0;
};

// While the device flushes for the first caller two more come and wait.
class FilaDoDiario : public CXVCenarioDiario {
  protected:
    void SetUp() override {
        SetDurabilidade(1);
        ASSERT_EQ(m_banco.Abre(m_Dono, PastaDados()), S_OK);
        for (std::size_t i = 0; i < 3; ++i) ASSERT_EQ(m_banco.Grava(i, "antes", i + 1), S_OK);
        m_listaPassos.clear();
    }
    // aoDescarregar: at each flush of the journal after the first, with its number.
    void GravamJuntos(const std::function<void(int)>& fnAoDescarregar = nullptr) {
        int iDescargas = 0;
        m_fnAoAlterar = [&](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao e) {
            if (e != CXVSistemaArquivosQueda::EAlteracao::eSincroniza || !sCaminho.ends_with(k_pszNomeDiario))
                return;
            if (++iDescargas > 1) {
                if (fnAoDescarregar) fnAoDescarregar(iDescargas);
                return;
            }
            // One behind the other, so that it is certain who is the newest.
            for (std::size_t i = 1; i < 3; ++i) {
                m_fios.emplace_back([this, i] {
                    const CXVCapturaTrace captura;
                    m_aCodigos[i] = m_banco.Grava(m_bNoMesmoArquivo ? 0 : i, m_aTextos[i], i + 1);
                });
                while (!m_banco.diario.TemNaFila(i + 1)) std::this_thread::yield();
            }
            EXPECT_TRUE(m_banco.diario.TemFila());
            EXPECT_FALSE(m_banco.diario.TemNaFila(4));
            if (m_fnComTodosNaFila) m_fnComTodosNaFila();
        };
        const CXVCapturaTrace captura;
        m_aCodigos[0] = m_banco.Grava(0, m_aTextos[0], 1);
        for (std::thread& rFio : m_fios) rFio.join();
        m_fnAoAlterar = nullptr;
        EXPECT_FALSE(m_banco.diario.TemFila());
    }
    // What was recorded, now and by whoever finds the store after a death.
    void Confere(const std::array<bool, 3>& rGravados) {
        const auto morte = Morre();
        ASSERT_EQ(m_banco.Fecha(m_Dono), S_OK);
        const auto depois = Morre();
        for (const auto& rRetrato : {depois, morte})
            ASSERT_NO_FATAL_FAILURE(ConfereRetrato(rRetrato, rGravados));
    }
    void ConfereRetrato(const CXVSistemaArquivosMemoria::TRetrato& rRetrato,
                        const std::array<bool, 3>& rGravados) {
        const CXVCapturaTrace captura;
        ASSERT_EQ(Reabre(rRetrato), S_OK);
        for (std::size_t i = 0; i < 3; ++i) {
            std::vector<std::string> esperados{"antes"};
            if (rGravados[i]) esperados.push_back(m_aTextos[i]);
            ASSERT_EQ(LeTextos(std::string(1, static_cast<char>('A' + i)) + ".dat"), esperados);
        }
    }

    void ConfereMesmoArquivo(const std::vector<std::string>& rTextos) {
        const auto morte = Morre();
        ASSERT_EQ(m_banco.Fecha(m_Dono), S_OK);
        ASSERT_EQ(Reabre(morte), S_OK);
        EXPECT_EQ(LeTextos("A.dat"), rTextos);
    }

    SBancoFila m_banco;
    bool m_bNoMesmoArquivo = false;
    std::array<std::string, 3> m_aTextos{"depois", "depois", "depois"};
    std::function<void()> m_fnComTodosNaFila;
    std::vector<std::thread> m_fios;
    std::array<HRESULT, 3> m_aCodigos{E_FAIL, E_FAIL, E_FAIL};
};

TEST_F(FilaDoDiario, QuemEsperaJuntoDivideADescarga) {
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    EXPECT_EQ(Conta("=" + std::string(k_pszNomeDiario)), 2) << "one for the first, one for both others";
    EXPECT_EQ(m_banco.ulRefeitas, 0U);
    EXPECT_EQ(Campo<XVUInt64>(LeDiario(), 512) % 2, 0U);
    Confere({true, true, true});
}

TEST_F(FilaDoDiario, QuemAnexaAoMesmoArquivoContaComQuemEspera) {
    m_bNoMesmoArquivo = true;
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    ConfereMesmoArquivo({"antes", "depois", "depois", "depois"});
}

// They never began: an opening must not undo what they were prepared on top of.
TEST_F(FilaDoDiario, QuemAnexavaAtrasDeUmaQueFalhaFicaNulo) {
    m_bNoMesmoArquivo = true;
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eGrava});
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{eHardIO, S_OK, S_OK}));
    ConfereMesmoArquivo({"antes", "depois", "depois"});
}

// What was prepared on top of an operation that failed is prepared again, and its entries count for nothing.
TEST_F(FilaDoDiario, AtrasDeUmaQueFalhaTudoSePreparaDeNovo) {
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eGrava});
    // Dead while the newest is given up, while the next one is, and while the first is marked as to be
    // undone: what is left always follows from what is there.
    std::vector<CXVSistemaArquivosMemoria::TRetrato> mortes;
    GravamJuntos([&](int iDescarga) {
        if (iDescarga <= 4) mortes.push_back(Morre());
    });
    m_FalhasQueda.Limpa();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{eHardIO, S_OK, S_OK}));
    EXPECT_EQ(m_banco.ulRefeitas, 2U);
    Confere({false, true, true});
    ASSERT_EQ(mortes.size(), 3U);
    ASSERT_NO_FATAL_FAILURE(ConfereRetrato(mortes[0], {true, true, false}));
    ASSERT_NO_FATAL_FAILURE(ConfereRetrato(mortes[1], {true, false, false}));
    ASSERT_NO_FATAL_FAILURE(ConfereRetrato(mortes[2], {false, false, false}));
}

// Entries that cannot be marked as void hold everything up: what came behind them would not fit the files
// that an opening makes of them.
TEST_F(FilaDoDiario, EnquantoNaoSeAnulaNadaMaisSeGrava) {
    bool bFalha = false;
    m_FalhasQueda.SetFiltro([&bFalha](const std::string& s) {
        bFalha = bFalha || s.ends_with("A.dat");
        return bFalha && (s.ends_with("A.dat") || s.ends_with(k_pszNomeDiario));
    });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true});
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{eHardIO, eHardIO, eHardIO}));
    const auto morte = Morre();
    {
        const CXVCapturaTrace captura;
        EXPECT_EQ(m_banco.Grava(1, "recusada", 2), eHardIO);
    }
    m_FalhasQueda.Limpa();
    EXPECT_EQ(m_banco.Grava(1, "depois", 2), S_OK) << "the device works again";
    Confere({false, true, false});
    ConfereRetrato(morte, {true, true, true});
}

TEST_F(FilaDoDiario, DescargaQueFalhaFalhaParaTodosQueADividem) {
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = 2});
    GravamJuntos();
    m_FalhasQueda.Limpa();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, eHardIO, eHardIO}));
    EXPECT_EQ(m_banco.ulRefeitas, 0U);
    Confere({true, false, false});
}

// Others come while the device works for whoever empties the queue: they are carried out as well. Until that
// caller has its turn each flush finds one more waiting behind it.
TEST_F(FilaDoDiario, QuemEsvaziaLevaTambemOsQueChegamEnquantoODispositivoTrabalha) {
    std::atomic<std::thread::id> idEsvazia;
    std::mutex mutexFios;
    std::list<std::thread> fios;
    XVUInt64 uiChegados = 0;
    bool bVezDele = false;
    const auto comeca = [&](auto fnFaz) {
        const std::lock_guard lock(mutexFios);
        fios.emplace_back(fnFaz);
    };
    m_fnAoAlterar = [&](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao e) {
        if (e != CXVSistemaArquivosQueda::EAlteracao::eSincroniza || !sCaminho.ends_with(k_pszNomeDiario) ||
            bVezDele || uiChegados == 200)
            return;
        bVezDele = std::this_thread::get_id() == idEsvazia.load();
        const XVUInt64 uiChave = ++uiChegados;
        comeca([this, uiChave] {
            const CXVCapturaTrace captura;
            EXPECT_EQ(m_banco.Grava(0, "chegou", uiChave), S_OK);
        });
        while (!m_banco.diario.TemNaFila(uiChave)) std::this_thread::yield();
        if (uiChegados > 1) return;
        comeca([this, &idEsvazia] {
            std::unique_lock bloqueio(m_banco.mutexAlteracao);
            idEsvazia = std::this_thread::get_id();
            m_banco.diario.EsvaziaFila(bloqueio);
            EXPECT_FALSE(m_banco.diario.TemFila());
        });
    };
    EXPECT_EQ(m_banco.Grava(1, "depois", 999), S_OK);
    while (true) {  // nobody starts another one but those that go on
        std::list<std::thread> um;
        {
            const std::lock_guard lock(mutexFios);
            if (fios.empty()) break;
            um.splice(um.end(), fios, fios.begin());
        }
        um.front().join();
    }
    m_fnAoAlterar = nullptr;
    EXPECT_TRUE(bVezDele);
    std::vector<std::string> esperados(static_cast<std::size_t>(uiChegados) + 1, "chegou");
    esperados[0] = "antes";
    ConfereMesmoArquivo(esperados);
}

class FilaEmAnelPequeno : public FilaDoDiario {
  protected:
    void SetUp() override {
        CXVDiarioAnel::SetTamanhoAnel(4096);
        FilaDoDiario::SetUp();
    }
};

// The ring is full of what waits: an entry for a copy would take the place of the oldest.
TEST_F(FilaEmAnelPequeno, CopiaNaoTomaOLugarDeQuemEspera) {
    m_aTextos = {std::string(588, 'a'), std::string(588, 'b'), std::string(1100, 'c')};
    HRESULT hrCopia = S_OK;
    XVUInt64 uiCopia = 1;
    XVUInt64 uiPrimeira = 0;
    m_fnComTodosNaFila = [&] {
        const CXVCapturaTrace captura;
        hrCopia = m_banco.diario.IniciaCopia(&m_Dono, "X.tra", &uiCopia);
        uiPrimeira = Campo<XVUInt64>(LeDiario(), 520);
    };
    GravamJuntos();
    EXPECT_EQ(hrCopia, eDiskFull);
    EXPECT_EQ(uiCopia, 0U);
    EXPECT_EQ(uiPrimeira, 4U) << "three are over, three wait";
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    Confere({true, true, true});
}

// Its last header would take the place of one that waits: it goes without, and says nothing of a full disk.
TEST_F(FilaEmAnelPequeno, ArquivoQueFechaSemLugarNoDiarioNaoFalha) {
    m_bNoMesmoArquivo = true;
    m_aTextos = {std::string(588, 'a'), std::string(588, 'b'), std::string(1100, 'c')};
    m_fnComTodosNaFila = [&] {
        const CXVCapturaTrace captura;
        EXPECT_EQ(m_banco.aFiles[1].Finaliza(), S_OK);
        EXPECT_TRUE(captura.GetFalhas().empty());
    };
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    ConfereMesmoArquivo({"antes", m_aTextos[0], m_aTextos[1], m_aTextos[2]});
    EXPECT_EQ(LeTextos("B.dat"), std::vector<std::string>{"antes"});
}

TEST_F(FilaEmAnelPequeno, EntradaNaoTomaOLugarDeQuemEspera) {
    m_aTextos = {std::string(588, 'a'), std::string(588, 'b'), std::string(1100, 'c')};
    m_fnComTodosNaFila = [&] {
        m_fios.emplace_back([this] {
            const CXVCapturaTrace captura;
            EXPECT_EQ(m_banco.Grava(1, std::string(1100, 'd'), 4), S_OK);
        });
        while (m_banco.ulRefeitas == 0 && !m_banco.diario.TemNaFila(4)) std::this_thread::yield();
        EXPECT_FALSE(m_banco.diario.TemNaFila(4)) << "there is no place for it yet";
    };
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    ASSERT_EQ(m_banco.Fecha(m_Dono), S_OK);
    EXPECT_EQ(LeTextos("B.dat"), (std::vector<std::string>{"antes", m_aTextos[1], std::string(1100, 'd')}));
}

}  // namespace
