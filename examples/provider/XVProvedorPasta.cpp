// A whole provider library, for system 16, on the standard library alone. The external system is a folder, so
// that everything can be looked at; a client of a web service has the same functions and asks over the
// network where this one opens files. The environment variable XVPROVEDOR_PASTA names the folder:
//
//   pendentes/ORIGIN/*.json   the pending items of a record of the suite, ORIGIN its key in decimal digits
//   recebidos/KEY.json        the documents that were sent, KEY the system's own key from 1
//   encerradas.txt            one line for each exchange that the suite has recorded
//
// A document that holds "recusar" is refused by the system. Not offered: RealizaOperacaoAnterior and the
// direct query. Every function may run on several threads at once, waits for nothing without an end of its
// own, and lets no exception out.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "suite/providers/XVProvedorPlugin.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t k_eSistema = 16;
constexpr std::uint32_t k_eSucesso = 3, k_eErro = 4, k_eCancelado = 5;  // XVSMiddleware_StatusIntegracao
constexpr std::int32_t k_iDadosInvalidos = static_cast<std::int32_t>(0x8007000DU);
constexpr std::int32_t k_iFalhaGravacao = static_cast<std::int32_t>(0x8007001DU);
constexpr std::int32_t k_iFalhaLeitura = static_cast<std::int32_t>(0x8007001EU);
constexpr std::int32_t k_iFalhaInesperada = static_cast<std::int32_t>(0x80004005U);

// No exception crosses the interface: the other side may be made by another compiler.
template <class TFuncao>
std::int32_t Protege(TFuncao fnFaz) noexcept {
    try {
        return fnFaz();
    } catch (...) {
        return k_iFalhaInesperada;
    }
}

fs::path Pasta() {
    const char* pszPasta = std::getenv("XVPROVEDOR_PASTA");
    return pszPasta != nullptr ? fs::path(pszPasta) : fs::path();
}
fs::path Documento(std::uint64_t uiChave) {
    return Pasta() / "recebidos" / (std::to_string(uiChave) + ".json");
}

std::optional<std::string> Le(const fs::path& rCaminho) {
    std::ifstream arquivo(rCaminho, std::ios::binary);
    if (!arquivo) return std::nullopt;
    std::string sTexto{std::istreambuf_iterator<char>(arquivo), {}};
    return arquivo.bad() ? std::nullopt : std::optional(std::move(sTexto));
}
bool Grava(const fs::path& rCaminho, std::string_view sTexto, std::ios::openmode eModo) {
    std::ofstream arquivo(rCaminho, std::ios::binary | eModo);
    arquivo.write(sTexto.data(), static_cast<std::streamsize>(sTexto.size()));
    return !!arquivo.flush();
}

// Buffers cross to the suite and come back through Libera.
void Preenche(XVProvedorBuffer* pBuffer, std::string_view sTexto) {
    pBuffer->pBytes = std::malloc(sTexto.size() + 1);
    if (pBuffer->pBytes == nullptr) throw std::bad_alloc();
    std::memcpy(pBuffer->pBytes, sTexto.data(), sTexto.size());
    pBuffer->uiTamanho = sTexto.size();
    pBuffer->bPreenchido = 1;
}
void XVPROVEDOR_CHAMADA Libera(void*, void* pBuffer) {
    std::free(pBuffer);
}

// The answer of the system to an exchange that took place, also where it refuses.
std::int32_t Responde(XVProvedorDados* pDados, std::uint32_t eStatus, std::string_view sMensagem,
                      std::string_view sJSON) {
    Preenche(&pDados->bufMensagemIntegracao, sMensagem);
    Preenche(&pDados->bufJSONRetornoIntegracao, sJSON);
    pDados->eStatusIntegracao = eStatus;
    return 0;
}
std::int32_t RespondeAusente(XVProvedorDados* pDados) {
    return Responde(pDados, k_eErro, "o sistema não tem o documento", "{}");
}

std::int32_t XVPROVEDOR_CHAMADA EnviaJson(void*, const XVProvedorDono*, XVProvedorDados* pDados) {
    return Protege([&] {
        const std::string_view sJSON(pDados->sRegistroJSON.pBytes,
                                     static_cast<std::size_t>(pDados->sRegistroJSON.uiTamanho));
        if (!sJSON.starts_with('{')) return k_iDadosInvalidos;  // never leaves this program
        if (sJSON.find("recusar") != std::string_view::npos)
            return Responde(pDados, k_eErro, "documento recusado", "{\"aceito\":false}");
        std::uint64_t uiChave = 1;
        while (fs::exists(Documento(uiChave))) ++uiChave;
        // Not written is not sent: a failure code, and nothing else of the answer counts.
        if (!Grava(Documento(uiChave), sJSON, std::ios::trunc)) return k_iFalhaGravacao;
        pDados->uiChaveIntegracaoSistemaTerceiro = uiChave;
        return Responde(pDados, k_eSucesso, "documento aceito", "{\"aceito\":true}");
    });
}

std::int32_t XVPROVEDOR_CHAMADA BuscaDados(void*, const XVProvedorDono*, XVProvedorDados* pDados) {
    return Protege([&] {
        const auto sTexto = Le(Documento(pDados->uiChaveIntegracaoSistemaTerceiro));
        return sTexto ? Responde(pDados, k_eSucesso, "documento encontrado", *sTexto)
                      : RespondeAusente(pDados);
    });
}

std::int32_t XVPROVEDOR_CHAMADA ExcluiDados(void*, const XVProvedorDono*, XVProvedorDados* pDados) {
    return Protege([&] {
        return fs::remove(Documento(pDados->uiChaveIntegracaoSistemaTerceiro))
                   ? Responde(pDados, k_eCancelado, "documento excluído", "{}")
                   : RespondeAusente(pDados);
    });
}

// The suite's records know no branch where there is only one; the system counts it as 1.
std::int32_t XVPROVEDOR_CHAMADA AtualizaParametros(void*, const XVProvedorDono*,
                                                   XVProvedorParametros* pParametros) {
    if (pParametros->ulPonteiroFilial == 0) pParametros->ulPonteiroFilial = 1;
    return 0;
}

// Any positive result is a success.
std::int32_t XVPROVEDOR_CHAMADA OperacaoPosterior(void*, const XVProvedorDono*,
                                                  const XVProvedorParametros* pParametros) {
    return Protege([&] {
        const std::string sLinha = std::to_string(pParametros->uiDmcIntegracao) + '\n';
        return Grava(Pasta() / "encerradas.txt", sLinha, std::ios::app) ? 1 : k_iFalhaGravacao;
    });
}

// In the order of their names. What was made before a failure goes back all the same.
std::int32_t XVPROVEDOR_CHAMADA BuscaIntegracoes(void*, const XVProvedorDono*,
                                                 const XVProvedorParametros* pParametros,
                                                 XVProvedorListaPendencias* pLista) {
    return Protege([&]() -> std::int32_t {
        const fs::path pasta = Pasta() / "pendentes" / std::to_string(pParametros->uiDmcOrigem);
        std::vector<fs::path> listaArquivos;
        std::error_code erro;
        for (const auto& rEntrada : fs::directory_iterator(pasta, erro))
            listaArquivos.push_back(rEntrada.path());
        if (listaArquivos.empty()) return 0;
        std::sort(listaArquivos.begin(), listaArquivos.end());
        pLista->ulTamanhoElemento = sizeof(XVProvedorPendencia);
        pLista->pLista =
            static_cast<XVProvedorPendencia*>(std::calloc(listaArquivos.size(), sizeof(XVProvedorPendencia)));
        if (pLista->pLista == nullptr) return k_iFalhaInesperada;
        pLista->ulQuantidade = static_cast<std::uint32_t>(listaArquivos.size());
        for (std::size_t i = 0; i < listaArquivos.size(); ++i) {
            const auto sTexto = Le(listaArquivos[i]);
            if (!sTexto) return k_iFalhaLeitura;
            Preenche(&pLista->pLista[i].bufJSON, *sTexto);
            pLista->pLista[i].uiDmcOrigem = pParametros->uiDmcOrigem;
            pLista->pLista[i].eSistemaIntegracao = k_eSistema;
        }
        return 0;
    });
}

}  // namespace

extern "C" int32_t XVPROVEDOR_CHAMADA XVProvedorObtem(uint32_t ulVersao, XVProvedorTabela* pTabela) {
    if (ulVersao != XVPROVEDOR_VERSAO || pTabela->ulTamanho != sizeof(XVProvedorTabela))
        return static_cast<std::int32_t>(0x80070057U);
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = XVPROVEDOR_VERSAO;
    pTabela->eSistema = k_eSistema;
    pTabela->pfnLibera = Libera;
    pTabela->pfnEnviaJson = EnviaJson;
    pTabela->pfnBuscaDados = BuscaDados;
    pTabela->pfnExcluiDados = ExcluiDados;
    pTabela->pfnRealizaOperacaoPosterior = OperacaoPosterior;
    pTabela->pfnAtualizaParametrosIntegracao = AtualizaParametros;
    pTabela->pfnBuscaIntegracoes = BuscaIntegracoes;
    return 0;
}
