// Several processes: clients side by side, clients and servers that die, and the life of the server process.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVProcesso.h"

namespace {

using namespace XVAmbienteCom;

std::wstring Largo(const std::string& sTexto) {
    return {sTexto.begin(), sTexto.end()};
}

std::size_t Conta(XVCliente::CXVCliente& rCliente) {
    std::vector<REG_XVDMC> lista;
    EXPECT_EQ(rCliente.BuscaPonteiros({}, &lista), S_OK);
    return lista.size();
}

// The lines of the company's general log that a user left.
int LinhasDoUsuario(const std::string& sEmpresa, const std::string& sUsuario) {
    int iLinhas = 0;
    for (const auto& rEntrada : std::filesystem::directory_iterator(DiretorioEmpresa(sEmpresa))) {
        if (rEntrada.path().filename().string().rfind("XVLogGeral_", 0) != 0) continue;
        std::ifstream arquivo{rEntrada.path(), std::ios::binary};
        for (std::string sLinha; std::getline(arquivo, sLinha);)
            if (sLinha.find("\t" + sEmpresa + "\t" + sUsuario + "\t") != std::string::npos) ++iLinhas;
    }
    return iLinhas;
}

// A client process that is inside the server when the constructor returns.
class CClientePreso {
  public:
    CClientePreso(const std::wstring& sModo, const std::string& sEmpresa)
        : m_hEvento(::CreateEventW(nullptr, TRUE, FALSE, NomeEvento().c_str())),
          m_processo(XVProcessos::Filho(sModo + L" " + Largo(sEmpresa) + L" " + NomeEvento())) {
        m_bDentro = ::WaitForSingleObject(m_hEvento, 60000) == WAIT_OBJECT_0;
    }
    ~CClientePreso() { ::CloseHandle(m_hEvento); }
    CClientePreso(const CClientePreso&) = delete;
    CClientePreso& operator=(const CClientePreso&) = delete;
    bool EstaDentro() const { return m_bDentro; }
    void Mata() { m_processo.Mata(); }

  private:
    static std::wstring NomeEvento() { return L"XVComTeste_" + std::to_wstring(::GetCurrentProcessId()); }

    HANDLE m_hEvento;
    CXVProcesso m_processo;
    bool m_bDentro = false;
};

class CValorDaRegistry {
  public:
    CValorDaRegistry(const wchar_t* pszValor, DWORD ulNumero) : m_pszValor(pszValor) {
        GravaValor(pszValor, ulNumero);
    }
    ~CValorDaRegistry() { ApagaValor(m_pszValor); }
    CValorDaRegistry(const CValorDaRegistry&) = delete;
    CValorDaRegistry& operator=(const CValorDaRegistry&) = delete;

  private:
    const wchar_t* m_pszValor;
};

}  // namespace

TEST(Processos, QuatroClientesNumaEmpresaEEmDuas) {
    const std::string asEmpresas[] = {NovaEmpresa(), NovaEmpresa()};
    for (const bool bDuas : {false, true}) {
        std::vector<CXVProcesso> lista;
        for (int i = 0; i < 4; ++i)
            lista.push_back(XVProcessos::Filho(L"grava " + Largo(asEmpresas[bDuas ? i % 2 : 0]) + L" 25 " +
                                               std::to_wstring(11 + i)));
        for (const CXVProcesso& rFilho : lista) EXPECT_EQ(rFilho.GetCodigo(), 0U) << rFilho.GetErros();
    }
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = asEmpresas[0]}), S_OK);
    EXPECT_EQ(Conta(cliente), 150U);
    // Servers that were started beside the first one wait for a moment and leave.
    EXPECT_TRUE(XVProcessos::EsperaServidores(1, 20000));
    XVCliente::CXVCliente outro;
    ASSERT_EQ(outro.Conecta({.sEmpresa = asEmpresas[1]}), S_OK);
    EXPECT_EQ(Conta(outro), 50U);
    // One store, four callers: each line of the log bears the one who called.
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[0], "11"), 50);
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[0], "12"), 25);
    EXPECT_EQ(LinhasDoUsuario(asEmpresas[1], "14"), 25);
}

TEST(Processos, ClienteDeExemplo) {
    const auto construcao = std::filesystem::path(XVProcessos::ProgramaAtual()).parent_path() / ".." / "..";
    const auto exemplo = (construcao / "examples" / "client" / "xv_exemplo_cliente.exe").lexically_normal();
    const std::string sEmpresa = NovaEmpresa();
    const CXVProcesso processo(exemplo.wstring(), Largo(sEmpresa));
    EXPECT_EQ(processo.GetCodigo(), 0U) << processo.GetErros();
    EXPECT_EQ(LinhasDoUsuario(sEmpresa, "7"), 2);
}

TEST(Processos, ServidorSaiComOUltimoClienteEVoltaComOProximo) {
    const std::string sEmpresa = NovaEmpresa();
    for (int i = 0; i < 3; ++i) {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
        REG_XVDMC regDmc;
        EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
        EXPECT_EQ(Conta(cliente), static_cast<std::size_t>(i + 1));
        cliente.Desconecta();
        // The second time round without waiting: a creation beside a server that is ending.
        if (i == 0) {
            EXPECT_TRUE(XVProcessos::EsperaServidores(0, 10000));
        }
    }
    EXPECT_TRUE(XVProcessos::EsperaServidores(0, 10000));
}

TEST(Processos, AtivadoSemClienteSaiEPelaMaoSoHaUm) {
    ASSERT_TRUE(XVProcessos::EsperaServidores(0, 20000));
    {
        const CValorDaRegistry espera(L"EsperaPrimeiroCliente", 1);
        EXPECT_EQ(XVProcessos::ExecutaServidor(L"-Embedding"), 0U);
    }
    CXVProcesso primeiro(XVProcessos::ProgramaServidor(), L"");
    EXPECT_FALSE(primeiro.Espera(1500));
    std::string sErros;
    EXPECT_EQ(XVProcessos::ExecutaServidor(L"", &sErros), 0x800700B7U);
    EXPECT_NE(sErros.find("já há outro"), std::string::npos) << sErros;
    // It serves, and leaves with its only client.
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = NovaEmpresa()}), S_OK);
    cliente.Desconecta();
    EXPECT_TRUE(primeiro.Espera(10000));
    EXPECT_EQ(primeiro.GetCodigo(), 0U);
}

// The clients' processes are gone without a word: their components are cut off after the idle time, the
// others work on, and the server leaves when only the dead were left.
TEST(Processos, ClientesMortosEntreChamadasENoMeioDeUma) {
    ASSERT_TRUE(XVProcessos::EsperaServidores(0, 20000));
    const CValorDaRegistry inatividade(L"InatividadeMaximaComponente", 3);
    const std::string sEmpresa = NovaEmpresa();
    std::size_t uiAntes = 0;
    {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
        for (const wchar_t* pszModo : {L"espera", L"chama"}) {
            CClientePreso preso(pszModo, sEmpresa);
            ASSERT_TRUE(preso.EstaDentro());
            ::Sleep(200);
            preso.Mata();
            REG_XVDMC regDmc;
            EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{\"vivo\":1}")), S_OK);
            CXVDadosCR_IntegracaoMiddleware lida;
            EXPECT_EQ(cliente.LeIntegracao(regDmc, 7, &lida), S_OK);
            EXPECT_EQ(lida.sRegistroJSON, "{\"vivo\":1}");
        }
        uiAntes = Conta(cliente);
    }
    EXPECT_TRUE(XVProcessos::EsperaServidores(0, 20000));
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    EXPECT_EQ(Conta(cliente), uiAntes);
}

TEST(Processos, ServidorMortoDaCodigoClaroEOProximoAbreALoja) {
    const std::string sEmpresa = NovaEmpresa();
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    REG_XVDMC regDmc;
    ASSERT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{\"antes\":1}")), S_OK);
    XVProcessos::MataServidores();
    REG_XVDMC regPerdida;
    const HRESULT hr = cliente.GravaIntegracao(&regPerdida, IntegracaoPendente("{}"));
    EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
    EXPECT_FALSE(cliente.EstaConectado());
    EsqueceServidorMorto();
    CXVDadosCR_IntegracaoMiddleware lida;
    EXPECT_EQ(cliente.LeIntegracao(regDmc, 7, &lida), S_OK);  // connects again by itself
    EXPECT_EQ(lida.sRegistroJSON, "{\"antes\":1}");
    EXPECT_TRUE(cliente.EstaConectado());
}

TEST(Processos, FimPedidoFechaLojasComClientesConectados) {
    const std::string sEmpresa = NovaEmpresa();
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    REG_XVDMC regDmc;
    ASSERT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
    XVProcessos::PedeFimAosServidores();
    EXPECT_TRUE(XVProcessos::EsperaServidores(0, 10000));
    CXVDadosCR_IntegracaoMiddleware lida;
    EXPECT_EQ(cliente.LeIntegracao(regDmc, 7, &lida), S_OK);  // a new server
    EXPECT_EQ(lida.sRegistroJSON, "{}");
}
