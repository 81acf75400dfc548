// Faults inside of a call, in a library that the server loaded and in the server by its doing.
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVComponenteCru.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVDiretorioTemporario.h"

namespace {

namespace fs = std::filesystem;
using namespace XVAmbienteCom;

// A copy of the server, registered while this lives, with the library beside it that does the faults.
class CServidorComProvedorFalho {
  public:
    explicit CServidorComProvedorFalho(bool bRelatorioDemorado = false) {
        EXPECT_TRUE(XVServidores::Espera(0));
        const fs::path original = fs::path(XVServidores::Programa()).parent_path();
        for (const auto& rEntrada : fs::directory_iterator(original))
            if (rEntrada.path().extension() == ".exe" || rEntrada.path().extension() == ".dll")
                fs::copy_file(rEntrada.path(), m_pasta.Junta(rEntrada.path().filename().string()));
        const fs::path falho = original / ".." / "tests" / "com" / "XVProvedorFalho.dll";
        fs::copy_file(falho, m_pasta.Junta("XVProvedor16.dll"));
        // Without the system's minidumps, which take seconds each, and nobody knows how many.
        if (bRelatorioDemorado)
            fs::copy_file(falho, m_pasta.Junta("dbghelp.dll"));
        else
            m_pasta.CriaArquivo("dbghelp.dll", "no library");
        EXPECT_EQ(XVExecuta(m_pasta.Junta("XVCR_Middleware.exe"), {"/RegServer"}).iSaida, 0);
    }
    ~CServidorComProvedorFalho() {
        EXPECT_EQ(XVServidores::Executa({"/Stop"}).iSaida, 0);
        EXPECT_EQ(XVServidores::Executa({"/RegServer"}).iSaida, 0);
    }
    CServidorComProvedorFalho(const CServidorComProvedorFalho&) = delete;
    CServidorComProvedorFalho& operator=(const CServidorComProvedorFalho&) = delete;

  private:
    CXVDiretorioTeste m_pasta;
};

struct SRastro {
    int iRelatorios = 0;
    int iLinhas = 0;  // of the error log
    bool operator==(const SRastro&) const = default;
};

// What the servers that crashed have left in the module directory.
SRastro Rastro() {
    SRastro rastro;
    for (const auto& rEntrada : fs::directory_iterator(DiretorioModulo())) {
        if (!rEntrada.is_regular_file()) continue;
        if (rEntrada.path().filename().string().starts_with("XVCR_Middleware_")) ++rastro.iRelatorios;
        std::ifstream arquivo{rEntrada.path(), std::ios::binary};
        for (std::string sLinha; std::getline(arquivo, sLinha);)
            if (sLinha.find("o servidor termina. Relat") != std::string::npos) ++rastro.iLinhas;
    }
    return rastro;
}

HRESULT Provoca(IXVCR_Middleware& rComponente, const std::string& sFalha) {
    tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
    consulta.eTipoConsulta = 1;
    std::string sChave = sFalha;
    consulta.regChaveConsulta.ulQtdBytes = static_cast<XVUInt>(sChave.size());
    consulta.regChaveConsulta.pTexto = reinterpret_cast<XVByte*>(sChave.data());
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS status{};
    return rComponente.BuscaDadosSistemaTerceiro(&consulta, &status);
}

HRESULT Provoca(const std::string& sEmpresa, const std::string& sFalha) {
    const XVComponenteCru::PComponente p = XVComponenteCru::Cria();
    if (p == nullptr) return E_POINTER;
    EXPECT_EQ(XVComponenteCru::Inicializa(*p, sEmpresa), S_OK);
    return Provoca(*p, sFalha);
}

}  // namespace

TEST(FalhasServidor, EncerramOProcessoComRelatorioEOProximoAtendeComALojaInteira) {
    const CServidorComProvedorFalho servidor;
    const std::string sEmpresa = NovaEmpresa();
    std::size_t uiGravadas = 0;
    EXPECT_EQ(Provoca(sEmpresa, "nenhuma"), S_OK);
    for (const char* pszFalha :
         {"nulo", "memcpy", "chamada", "abort", "terminate", "pilha", "thread", "servidor"}) {
        SCOPED_TRACE(pszFalha);
        {
            XVCliente::CXVCliente cliente;
            ASSERT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
            EXPECT_EQ(XVPortaTeste::Conta(cliente), uiGravadas);
            REG_XVDMC regDmc;
            EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
            ++uiGravadas;
            const SRastro antes = Rastro();
            const HRESULT hr = Provoca(sEmpresa, pszFalha);
            EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
            EXPECT_TRUE(XVServidores::Espera(0));
            EXPECT_EQ(Rastro(), (SRastro{antes.iRelatorios + 1, antes.iLinhas + 1}));
            XVServidores::Mata();
        }
        EsqueceServidorMorto();
    }
}

// The time of the kept store passes while the report is written: whoever closed it would write what a memory
// says that cannot be trusted, and delete the journal.
TEST(FalhasServidor, EnquantoSeRelatamNenhumaLojaEFechada) {
    const CServidorComProvedorFalho servidor(true);
    const CValorDaRegistry permanencia(L"PermanenciaServidor", 120);
    const std::string sMantida = NovaEmpresa();
    {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.Conecta({.sEmpresa = sMantida}), S_OK);
        REG_XVDMC regDmc;
        EXPECT_EQ(cliente.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
    }
    const SRastro antes = Rastro();
    const HRESULT hr = Provoca(NovaEmpresa(), "nulo");
    EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
    EXPECT_TRUE(XVServidores::Espera(0));
    EXPECT_EQ(Rastro(), (SRastro{antes.iRelatorios + 1, antes.iLinhas + 1}));
    EXPECT_TRUE(fs::exists(DiretorioEmpresa(sMantida) + "\\XVDATABASE_ABERTA.srk"));
    XVServidores::Mata();
    EsqueceServidorMorto();
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sMantida}), S_OK);
    EXPECT_EQ(XVPortaTeste::Conta(cliente), 1U);
}

// What closes the store is no method of the component: the client's last release, and its second
// initialisation, which lets the old store go.
TEST(FalhasServidor, AoFecharALojaEncerramDoMesmoModo) {
    const CServidorComProvedorFalho servidor;
    const std::string sEmpresa = NovaEmpresa();
    for (const bool bInicializaDeNovo : {false, true}) {
        SCOPED_TRACE(bInicializaDeNovo);
        const SRastro antes = Rastro();
        {
            const XVComponenteCru::PComponente p = XVComponenteCru::Cria();
            ASSERT_NE(p, nullptr);
            EXPECT_EQ(XVComponenteCru::Inicializa(*p, sEmpresa), S_OK);
            EXPECT_EQ(Provoca(*p, "fechamento"), S_OK);
            if (bInicializaDeNovo) {
                const HRESULT hr = XVComponenteCru::Inicializa(*p, sEmpresa);
                EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hr)) << std::hex << hr;
            }
        }
        EXPECT_TRUE(XVServidores::Espera(0));
        EXPECT_EQ(Rastro(), (SRastro{antes.iRelatorios + 1, antes.iLinhas + 1}));
        XVServidores::Mata();
        EsqueceServidorMorto();
        XVCliente::CXVCliente cliente;
        EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
        EXPECT_EQ(XVPortaTeste::Conta(cliente), 0U);
    }
}

// The end cuts the call off in the end, and the server that the next client needs waits for it, within what
// COM gives it.
TEST(FalhasServidor, ChamadaQueNaoVoltaNaoSeguraOFimEOSucessorEsperaPorEle) {
    const CServidorComProvedorFalho servidor;
    const std::string sEmpresa = NovaEmpresa();
    const HANDLE hDentro = ::CreateEventW(nullptr, TRUE, FALSE, L"Local\\XVProvedorFalho");
    HRESULT hrPresa = S_OK;
    std::thread presa([&] {
        const XVCliente::CApartamento apartamento;
        hrPresa = Provoca(sEmpresa, "demora");
    });
    EXPECT_EQ(::WaitForSingleObject(hDentro, 30000), WAIT_OBJECT_0);
    const std::vector<DWORD> listaPrimeiro = XVServidores::Lista();
    XVServidores::PedeFim();
    ::Sleep(1500);  // until its class is withdrawn
    XVCliente::CXVCliente cliente;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa}), S_OK);
    EXPECT_EQ(XVPortaTeste::Conta(cliente), 0U);
    EXPECT_NE(XVServidores::Lista(), listaPrimeiro);
    presa.join();
    EXPECT_TRUE(XVCliente::ServidorFoiEmbora(hrPresa)) << std::hex << hrPresa;
    ::CloseHandle(hDentro);
}
