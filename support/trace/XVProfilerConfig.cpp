#include "support/trace/XVProfilerConfig.h"

#include <algorithm>
#include <atomic>
#include <mutex>

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVPerfilPrivado.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVTextoAscii.h"
#include "support/values/XVTextoLargo.h"

namespace {

constexpr std::string_view k_sSecao = "Log";
constexpr std::size_t k_uiMaximoTexto = 259;
constexpr XVUInt64 k_uiMaximoArquivo = 64 * 1024;  // what stands beyond is not read

constinit std::atomic<bool> g_bCarregada = false;
constinit std::atomic<XVUInt> g_ulTicksCarga = 0;
constinit std::atomic<XVUInt> g_ulIntervalo = SConfiguracaoTrace::k_ulIntervaloPadrao;
constinit std::atomic<XVUInt> g_ulGeracao = 0;

struct SVigente {
    std::mutex mutex;  // held while the file is read
    std::shared_ptr<const SConfiguracaoTrace> pConfiguracao;
};

// Never destroyed: records may be written while the process ends.
SVigente& Vigente() {
    static SVigente& s_rVigente = *new SVigente;
    return s_rVigente;
}

XVUInt IntervaloDe(std::int64_t iSegundos) {
    if (iSegundos < 0 || iSegundos > static_cast<std::int64_t>(UINT32_MAX) / 1000)
        return SConfiguracaoTrace::k_ulIntervaloPadrao;
    return static_cast<XVUInt>(iSegundos) * 1000U;
}

enum class ELeitura { eLido, eAusente, eOcupado };

ELeitura LeArquivo(const std::string& sDiretorio, std::string* psConteudo) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pArquivo;
    const CXVErroArquivo erro = rSistema.Abre(
        rSistema.Junta(sDiretorio, "log.ini"),
        {EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente},
        pArquivo);
    if (!erro.Ok())
        return erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento ? ELeitura::eOcupado
                                                                           : ELeitura::eAusente;
    XVUInt64 uiTamanho = 0;
    if (!pArquivo->GetTamanho(uiTamanho).Ok()) return ELeitura::eOcupado;
    psConteudo->resize(static_cast<std::size_t>(std::min(uiTamanho, k_uiMaximoArquivo)));
    return pArquivo->Le(0, psConteudo->data(), psConteudo->size()).Ok() ? ELeitura::eLido
                                                                        : ELeitura::eOcupado;
}

// A file that someone is rewriting leaves the configuration as it was.
SConfiguracaoTrace LeConfiguracao(const SConfiguracaoTrace* pAnterior) {
    std::string sDiretorio;
    std::string sConteudo;
    ELeitura eLeitura = ELeitura::eAusente;
    if (SUCCEEDED(CAmbienteXV::GetDiretorioModulo(k_eModuloBase, &sDiretorio)))
        eLeitura = LeArquivo(sDiretorio, &sConteudo);
    SConfiguracaoTrace configuracao = eLeitura == ELeitura::eOcupado && pAnterior != nullptr
                                          ? *pAnterior
                                          : XVProfilerConfig::Interpreta(sConteudo);
    configuracao.sDiretorioModulo = std::move(sDiretorio);
    return configuracao;
}

// Precondition: the mutex is held.
void Carrega(SVigente& rVigente) {
    auto pNova = std::make_shared<const SConfiguracaoTrace>(LeConfiguracao(rVigente.pConfiguracao.get()));
    g_ulTicksCarga.store(XVPlataforma::Relogio().GetTicks(), std::memory_order_relaxed);
    g_ulIntervalo.store(pNova->ulIntervalo, std::memory_order_relaxed);
    g_ulGeracao.fetch_add(1, std::memory_order_relaxed);
    g_bCarregada.store(true, std::memory_order_release);
    XVProfiler::Interno::g_bRastreia.store(pNova->DeveRastrear(), std::memory_order_relaxed);
    rVigente.pConfiguracao = std::move(pNova);
}

}  // namespace

namespace XVProfilerConfig {

bool EstaVencida() {
    if (!g_bCarregada.load(std::memory_order_acquire)) return true;
    // Unsigned difference: right across the wrap of the tick counter.
    return XVPlataforma::Relogio().GetTicks() - g_ulTicksCarga.load(std::memory_order_relaxed) >
           g_ulIntervalo.load(std::memory_order_relaxed);
}

std::shared_ptr<const SConfiguracaoTrace> GetAtual() {
    SVigente& rVigente = Vigente();
    const std::lock_guard trava(rVigente.mutex);
    if (EstaVencida()) Carrega(rVigente);
    return rVigente.pConfiguracao;
}

std::shared_ptr<const SConfiguracaoTrace> Recarrega() {
    SVigente& rVigente = Vigente();
    const std::lock_guard trava(rVigente.mutex);
    Carrega(rVigente);
    return rVigente.pConfiguracao;
}

XVUInt GetGeracao() {
    return g_ulGeracao.load(std::memory_order_relaxed);
}

SConfiguracaoTrace Interpreta(std::string_view sConteudo) {
    const std::string sTexto = XVTextoDeArquivo(sConteudo);
    const CXVPerfilPrivado perfil(sTexto);
    const auto ligado = [&](std::string_view sChave) { return perfil.LeInteiro(k_sSecao, sChave, 0) == 1; };
    const auto texto = [&](std::string_view sChave, std::string_view sPadrao) {
        return perfil.LeTexto(k_sSecao, sChave).value_or(sPadrao).substr(0, k_uiMaximoTexto);
    };
    SConfiguracaoTrace configuracao;
    configuracao.bEntrada = ligado("Entrada");
    configuracao.bSaida = ligado("Saida");
    configuracao.bTrace = ligado("Trace");
    configuracao.bCoCreateInstance = ligado("CoCreateInstance");
    configuracao.bPerformance = ligado("Performance");
    configuracao.bMemory = ligado("Memory");
    configuracao.ulIntervalo = IntervaloDe(perfil.LeInteiro(k_sSecao, "TimeoutConfig", 600));
    configuracao.sProcessos = XVEmMinusculas(texto("Processos", "todos"));
    const std::string_view sXVDataBase = texto("XVDataBase", "0");
    configuracao.bLogaTudoXVDataBase = sXVDataBase == "1" || XVIgualSemCaixa(sXVDataBase, "todos");
    if (sXVDataBase != "0" && !configuracao.bLogaTudoXVDataBase) configuracao.sXVDataBase = sXVDataBase;
    return configuracao;
}

}  // namespace XVProfilerConfig

namespace XVProfiler::Interno {

constinit std::atomic<bool> g_bRastreia = false;

}  // namespace XVProfiler::Interno
