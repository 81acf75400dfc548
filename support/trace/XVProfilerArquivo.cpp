#include "support/trace/XVProfilerArquivo.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mutex>

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

namespace {

constexpr int k_iTentativas = 19;

// Causes that another attempt will not cure.
bool EhDefinitiva(ECausaArquivo eCausa) {
    return eCausa == ECausaArquivo::eArquivoNaoEncontrado || eCausa == ECausaArquivo::eCaminhoInvalido ||
           eCausa == ECausaArquivo::eArquivoInvalido || eCausa == ECausaArquivo::eErroFisico;
}

// Lets the process that holds the file finish its line; never sleeps.
void CedeProcessador(int iVezes) {
    for (int i = 0; i <= iVezes; ++i) XVPlataforma::Relogio().Dorme(0);
}

std::unique_ptr<IXVArquivo> AbreParaAnexar(const std::string& sCaminho) {
    std::unique_ptr<IXVArquivo> pArquivo;
    for (int i = 0; i < k_iTentativas; ++i) {
        const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(
            sCaminho,
            {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
             ECriacaoArquivo::eCriaSeAusente},
            pArquivo);
        if (erro.Ok() || EhDefinitiva(erro.GetCausa())) break;
        if (erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento) CedeProcessador(i * i);
    }
    return pArquivo;
}

std::string NomeMensal(std::string_view sPrefixo, const SDataHora& rDataHora) {
    char szAnoMes[16];
    std::snprintf(szAnoMes, sizeof szAnoMes, "%04u%02u", std::clamp<unsigned>(rDataHora.usAno, 1848U, 4717U),
                  std::min<unsigned>(rDataHora.ucMes, 99U));
    return std::string(sPrefixo) + szAnoMes + ".log";
}

}  // namespace

namespace XVProfilerArquivo {

std::string GetCaminho(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento) {
    const std::string& rDiretorio = rConfiguracao.sDiretorioModulo;
    if (rDiretorio.empty()) return {};
    const IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    if (rEvento.eTipo != ETipoEvento::eErro) return rSistema.Junta(rDiretorio, "XVProfiler.log");
    // Records go to the programs' log where the company's text could not name a directory, and where their
    // owner only views the store and must not write into the company's directory.
    if (rEvento.pDono != nullptr && !rEvento.pDono->EhConsulta() &&
        CAmbienteXV::EhEmpresaValida(rEvento.pDono->GetEmpresa()))
        return rSistema.Junta(
            CAmbienteXV::MontaPathDados(k_eModuloBase, rDiretorio, rEvento.pDono->GetEmpresa()),
            NomeMensal("XVProfilerErros_Base_", rEvento.dataHora));
    return rSistema.Junta(rDiretorio, NomeMensal("XVProfilerErros_Pgms_", rEvento.dataHora));
}

bool Anexa(const std::string& sCaminho, std::string_view sCabecalho, std::string_view sLinha) {
    if (sCaminho.empty()) return false;
    // The attempts are there for other processes; the threads of this one wait for each other.
    static std::mutex& s_rMutex = *new std::mutex;
    const std::lock_guard trava(s_rMutex);
    const std::unique_ptr<IXVArquivo> pArquivo = AbreParaAnexar(sCaminho);
    XVUInt64 uiFim = 0;
    if (pArquivo == nullptr || !pArquivo->GetTamanho(uiFim).Ok()) return false;
    std::string sTexto;
    if (uiFim == 0) sTexto = sCabecalho;
    sTexto += sLinha;
    if (pArquivo->Grava(uiFim, sTexto.data(), sTexto.size()).Ok()) return true;
    pArquivo->SetTamanho(uiFim).Ignora();  // no half line stays behind
    return false;
}

}  // namespace XVProfilerArquivo
