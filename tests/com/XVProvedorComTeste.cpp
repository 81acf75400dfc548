// Provider libraries inside the real server: the example, one that hangs, one that crashes.
#include <cstring>
#include <filesystem>
#include <optional>

#include "middleware/XVOperacoesGenericas.h"
#include "server/XVExclusividade.h"
#include "support/codes/XVCodigos.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

namespace fs = std::filesystem;
using namespace XVAmbienteCom;

const REG_XVDMC k_regOrigem = REG_XVDMC::Cria(2, 15, REG_XVDMA::Cria(2024, 3, 1));

// The libraries lie beside the server's program while the object lives, and a server that was started by
// hand, with the example's folder in its environment, has loaded them or will.
class CXVProvedorCom : public testing::Test {
  protected:
    CXVProvedorCom() {
        XVServidores::Mata();
        EsqueceServidorMorto();
        const fs::path testes = fs::path(XVAmbienteSO::GetDiretorioExecutavel()).parent_path();
        Instala(testes / "provider" / "exemplo" / "XVProvedor16.dll");
        Instala(testes / "com" / "provedor" / "XVProvedor8.dll");
        // Without the system's minidumps, of which one takes all the time that a report gets.
        m_Sistema.CriaArquivo("dbghelp.dll", "no library");
        Instala(m_Sistema.Junta("dbghelp.dll"));
        fs::create_directories(m_Sistema.Junta("recebidos"));
        SetEspera(1);
        ::SetEnvironmentVariableW(L"XVPROVEDOR_PASTA", fs::path(m_Sistema.GetCaminho()).c_str());
        m_Servidor.emplace(XVServidores::Programa(), std::vector<std::string>{});
        for (int i = 0; i < 1000 && CXVExclusividade().Toma(0); ++i) ::Sleep(20);
    }
    ~CXVProvedorCom() override {
        XVServidores::Mata();
        EsqueceServidorMorto();
        ::SetEnvironmentVariableW(L"XVPROVEDOR_PASTA", nullptr);
        ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, CValorDaRegistry::k_pszChave, L"EsperaProvedor");
        for (const fs::path& rCopia : m_listaCopias) fs::remove(rCopia);
    }
    static void SetEspera(DWORD ulSegundos) {
        ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, CValorDaRegistry::k_pszChave, L"EsperaProvedor", REG_DWORD,
                          &ulSegundos, sizeof(ulSegundos));
    }
    void Instala(const fs::path& rBiblioteca) {
        m_listaCopias.push_back(fs::path(XVServidores::Programa()).parent_path() / rBiblioteca.filename());
        fs::remove(m_listaCopias.back());  // of a run that was killed
        fs::copy_file(rBiblioteca, m_listaCopias.back());
    }

    HRESULT Troca(XVCliente::CXVCliente& rCliente, XVUInt eSistema, XVUInt ulAuxiliar = 0) {
        REG_XVDMC regDmc;
        return rCliente.GravaIntegracaoInstantanea(&regDmc, {.regDmcIntegracaoOrigem = k_regOrigem,
                                                             .eTipoIntegracao = eXVSMiddleware_BuscaPedidos,
                                                             .eSistemaIntegracao = eSistema,
                                                             .eTipoTransacao = eXVSMiddleware_Inclusao,
                                                             .ulPonteiroAuxiliar = ulAuxiliar});
    }
    static std::vector<REG_XVDMC> Gravadas(XVCliente::CXVCliente& rCliente) {
        std::vector<REG_XVDMC> lista;
        EXPECT_EQ(rCliente.UltimasGravadas(&lista), S_OK);
        return lista;
    }
    static std::string Le(XVCliente::CXVCliente& rCliente, REG_XVDMC regDmc) {
        CXVDadosCR_IntegracaoMiddleware dados;
        EXPECT_EQ(rCliente.LeIntegracao(regDmc, 7, &dados), S_OK);
        return std::to_string(dados.uiChaveIntegracaoSistemaTerceiro) + ' ' +
               std::to_string(dados.eStatusIntegracao) + ' ' + dados.sRegistroJSON + ' ' +
               dados.sMensagemIntegracao;
    }

    const std::string m_sEmpresa = NovaEmpresa();
    CXVDiretorioTeste m_Sistema;
    std::vector<fs::path> m_listaCopias;
    std::optional<CXVProcessoFilho> m_Servidor;
};

TEST_F(CXVProvedorCom, ExemploPresoEFaltaPeloServidor) {
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.Conecta({.sEmpresa = m_sEmpresa, .usUsuario = 7}), S_OK);
    const std::string sPendentes = "pendentes/" + std::to_string(k_regOrigem.uiValor);
    fs::create_directories(m_Sistema.Junta(sPendentes));
    m_Sistema.CriaArquivo(sPendentes + "/1.json", "{\"p\":1}");
    m_Sistema.CriaArquivo(sPendentes + "/2.json", "{\"p\":\"recusar\"}");
    m_Sistema.CriaArquivo(sPendentes + "/3.json", "não é JSON");
    EXPECT_EQ(Troca(cliente, Mercos), XVHResult(0x8007000DU)) << "the third fails";
    const std::vector<REG_XVDMC> lista = Gravadas(cliente);
    ASSERT_EQ(lista.size(), 2U);
    EXPECT_EQ(Le(cliente, lista[0]), "1 3 {\"p\":1} documento aceito");
    EXPECT_EQ(Le(cliente, lista[1]), "0 4 {\"p\":\"recusar\"} documento recusado");

    const HANDLE hSolta = ::CreateEventW(nullptr, TRUE, FALSE, L"xv_provedor_dificil");
    EXPECT_EQ(Troca(cliente, OfficialBank, 2), E_XVCR_PROVEDOR_SEM_RESPOSTA);
    EXPECT_EQ(Troca(cliente, OfficialBank, 3), E_XVCR_PROVEDOR_SUSPENSO);
    EXPECT_EQ(Troca(cliente, Mercos), XVHResult(0x8007000DU)) << "another system goes on";
    ::SetEvent(hSolta);
    HRESULT hr = E_XVCR_PROVEDOR_SUSPENSO;
    for (int i = 0; i < 200 && hr == E_XVCR_PROVEDOR_SUSPENSO; ++i) {
        ::Sleep(20);
        hr = Troca(cliente, OfficialBank, 3);
    }
    EXPECT_EQ(hr, S_OK);
    ::CloseHandle(hSolta);
    ASSERT_EQ(Gravadas(cliente).size(), 1U);
    EXPECT_EQ(Le(cliente, Gravadas(cliente)[0]), "3 3 {} ");

    SetEspera(60);  // the report takes longer than a second
    hr = Troca(cliente, OfficialBank, 1);
    EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
    std::vector<REG_XVDMC> gravadas;
    EXPECT_TRUE(FAILED(cliente.UltimasGravadas(&gravadas))) << "nobody is left who knows";
    EXPECT_EQ(static_cast<unsigned>(m_Servidor->EsperaFim()), 0xC0000005U);
    unsigned uiRelatorios = 0;
    for (const auto& rEntrada : fs::directory_iterator(DiretorioModulo()))
        if (rEntrada.path().filename().string().starts_with("XVCR_Middleware_")) {
            ++uiRelatorios;
            fs::remove(rEntrada.path());
        }
    EXPECT_EQ(uiRelatorios, 1U);
    XVCliente::CXVCliente seguinte;
    ASSERT_EQ(
        seguinte.ConectaLocal({.sEmpresa = m_sEmpresa, .usUsuario = 7}, {.sDiretorio = DiretorioModulo()}),
        S_OK)
        << "the store is free and sound";
    EXPECT_EQ(XVPortaTeste::Conta(seguinte), 5U);
    EXPECT_EQ(Le(seguinte, lista[0]), "1 3 {\"p\":1} documento aceito");
}

}  // namespace
