// A process that comes to a standstill with every change of a file under way on a thread of its own:
//   xv_filho_detido <directory> <0|1>     1: it does come to it
// Its output is one line, the changes that took place; then it ends like a process that was killed.
#include <windows.h>

#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/XVDetencao.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr SAberturaArquivo k_cria{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                                  ECriacaoArquivo::eCriaSeAusente};

std::string g_sDiretorio;

std::string Caminho(const char* pszNome) {
    return XVPlataforma::SistemaArquivos().Junta(g_sDiretorio, pszNome);
}

std::unique_ptr<IXVArquivo> Abre(const char* pszNome) {
    std::unique_ptr<IXVArquivo> pArquivo;
    XVPlataforma::SistemaArquivos().Abre(Caminho(pszNome), k_cria, pArquivo).Ignora();
    return pArquivo;
}

struct SMudanca {
    const char* pszNome;
    std::function<CXVErroArquivo()> fnFaz;
};

// What they need is open before.
std::vector<SMudanca> Mudancas() {
    static IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    static std::unique_ptr<IXVArquivo> pGrava = Abre("grava");
    static std::unique_ptr<IXVArquivo> pEncurta = Abre("encurta");
    static std::unique_ptr<IXVArquivo> pMapeado = Abre("mapeado");
    static std::unique_ptr<IXVArquivo> pFecha = Abre("fecha");
    static std::unique_ptr<IXVJanela> pJanela;
    static std::unique_ptr<IXVMarcaDiretorio> pMarca;
    static std::unique_ptr<IXVMarcaDiretorio> pOutraMarca;
    pMapeado->AbreJanela(8, pJanela).Ignora();
    rSistema.MarcaDiretorio(g_sDiretorio, "MARCA", pMarca).Ignora();
    return {{"grava", [] { return pGrava->Grava(0, "nova", 4); }},
            {"encurta", [] { return pEncurta->SetTamanho(1); }},
            {"janela", [] { return pJanela->Grava(0, "nova", 4); }},
            {"palavra", [] { return pJanela->GravaPalavra(0, 1); }},
            {"fecha", [] { return pFecha.reset(), CXVErroArquivo(); }},
            {"desmarca", [] { return pMarca.reset(), CXVErroArquivo(); }},
            {"marca", [] { return rSistema.MarcaDiretorio(g_sDiretorio, "OUTRA", pOutraMarca); }},
            {"cria", [] { return Abre("criado"), CXVErroArquivo(); }},
            {"diretorio", [] { return rSistema.CriaDiretorio(Caminho("diretorio")); }},
            {"apaga", [] { return rSistema.Apaga(Caminho("apaga")); }},
            {"troca", [] { return rSistema.Substitui(Caminho("origem"), Caminho("destino")); }}};
}

}  // namespace

int main(int, char** apszArgumentos) {
    g_sDiretorio = apszArgumentos[1];
    static std::vector<SMudanca> s_lista = Mudancas();
    static std::mutex s_mutex;
    static std::string s_sFeitas;
    if (std::string(apszArgumentos[2]) == "1") XVDetencao::Detem();
    static std::vector<std::thread> s_threads;  // neither waited for nor let go of
    for (const SMudanca& rMudanca : s_lista)
        s_threads.emplace_back([&rMudanca] {
            const bool bFez = rMudanca.fnFaz().Ok();
            const std::lock_guard trava(s_mutex);
            s_sFeitas += std::string(bFez ? "" : "!") + rMudanca.pszNome + " ";
        });
    ::Sleep(1000);
    {
        const XVDetencao::CIsencao isencao;
        Abre("log")->Grava(0, "linha", 5).Ignora();
    }
    {
        const std::lock_guard trava(s_mutex);
        std::cout << s_sFeitas << std::endl;
    }
    ::TerminateProcess(::GetCurrentProcess(), 0);
}
