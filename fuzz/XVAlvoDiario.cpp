// The journal of operations: foreign bytes in its place beside a sound store, and the true journal of a store
// whose process died, changed here and there under checksums that hold. Opening refuses or serves the store;
// no data file is changed that the journal does not name, and none at all by a journal without its checksums.
#include <cstring>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "fuzz/XVLojaSa.h"
#include "support/values/XVSoma64.h"

namespace {

template <class T>
T Le(const std::string& sBytes, std::size_t uiOffset) {
    T valor;
    std::memcpy(&valor, sBytes.data() + uiOffset, sizeof(valor));
    return valor;
}

template <class T>
void Poe(std::string& rsBytes, std::size_t uiOffset, const T& rValor) {
    std::memcpy(rsBytes.data() + uiOffset, &rValor, sizeof(rValor));
}

// Makes the checksums of the head and of every entry hold.
void Repara(std::string& rsDiario) {
    if (rsDiario.size() < k_uiTamanhoPaginaDiario) return;
    auto cabecalho = Le<REG_XVDIARIO_CABECALHO>(rsDiario, 0);
    cabecalho.uiSoma = XVSoma64(&cabecalho, offsetof(REG_XVDIARIO_CABECALHO, uiSoma));
    Poe(rsDiario, 0, cabecalho);
    for (std::size_t i = k_uiTamanhoPaginaDiario; i + sizeof(REG_XVDIARIO_ENTRADA) <= rsDiario.size();
         i += k_uiAlinhamentoEntrada) {
        auto entrada = Le<REG_XVDIARIO_ENTRADA>(rsDiario, i);
        if (entrada.uiAssinatura != k_uiAssinaturaEntrada || entrada.uiTamanho < sizeof(entrada) ||
            entrada.uiTamanho > rsDiario.size() - i)
            continue;
        const XVUInt64 uiEstado = entrada.uiEstado;
        entrada.uiSoma = entrada.uiEstado = 0;
        Poe(rsDiario, i, entrada);
        entrada.uiSoma = XVSoma64(rsDiario.data() + i, static_cast<std::size_t>(entrada.uiTamanho));
        entrada.uiEstado = uiEstado;
        Poe(rsDiario, i, entrada);
    }
}

// Where the first part of the journal that is not zero lies behind its head, to aim the changes at.
std::size_t Alvo(const std::string& sDiario, std::size_t uiOnde) {
    constexpr std::size_t k_uiEntradas = 4096;
    return uiOnde < 1024
               ? uiOnde
               : std::min(k_uiTamanhoPaginaDiario + (uiOnde - 1024) % k_uiEntradas, sDiario.size() - 1);
}

bool Nomeia(const std::string& sDiario, const std::string& sCaminho) {
    return sDiario.find(sCaminho.substr(sCaminho.find_last_of('/') + 1)) != std::string::npos;
}

void Estranho(const std::string& sDiario) {
    CXVBancadaFuzz bancada;
    CXVLojaSa::Poe(bancada);
    const auto antes = CXVLojaSa::Dados(bancada);
    bancada.PoeArquivo(k_pszNomeDiario, sDiario);
    auto pLoja = CXVLojaSa::Abre(bancada);
    XV_EXIGE(CXVLojaSa::Dados(bancada) == antes);
    if (pLoja != nullptr) {
        XV_EXIGE(CXVLojaSa::Confere(*pLoja) && CXVLojaSa::Grava(*pLoja));
        XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    }
    pLoja.reset();
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
}

// Each change: two bytes say where, one what.
void Mudado(unsigned uiJaGravados, const std::uint8_t* pMudancas, std::size_t uiTamanho) {
    CXVBancadaFuzz bancada;
    CXVLojaSa::PoeMorta(bancada, uiJaGravados);
    const auto antes = CXVLojaSa::Dados(bancada);
    std::string sDiario = bancada.LeArquivo(k_pszNomeDiario);
    for (; uiTamanho >= 3; pMudancas += 3, uiTamanho -= 3)
        sDiario[Alvo(sDiario, pMudancas[0] + 256U * pMudancas[1])] = static_cast<char>(pMudancas[2]);
    const bool bIntacto = sDiario == bancada.LeArquivo(k_pszNomeDiario);
    Repara(sDiario);
    bancada.PoeArquivo(k_pszNomeDiario, sDiario);
    auto pLoja = CXVLojaSa::Abre(bancada);
    const auto depois = CXVLojaSa::Dados(bancada);
    for (const auto& [sNome, sConteudo] : antes) {
        const auto it = depois.find(sNome);
        XV_EXIGE((it != depois.end() && it->second == sConteudo) || Nomeia(sDiario, sNome));
    }
    // Left as it is, the journal concludes the operation.
    XV_EXIGE(!bIntacto ||
             (pLoja != nullptr && CXVLojaSa::ConfereConcluida(*pLoja) && CXVLojaSa::Grava(*pLoja)));
    if (pLoja != nullptr) XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    pLoja.reset();
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    if (uiTamanho < 2 || pDados[0] % 4 == 0)
        Estranho(std::string(reinterpret_cast<const char*>(pDados), uiTamanho));
    else
        Mudado(pDados[0] / 4U + 64U * pDados[1], pDados + 2, uiTamanho - 2);
    return 0;
}
