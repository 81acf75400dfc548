#include "support/trace/XVProfilerArquivo.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mutex>

#include "platform/XVDetencao.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

namespace {

constexpr int k_iTentativas = 19;
// Attempts that themselves take long, because a foreign program keeps the file locked, end after this time: a
// call waits for its log no longer.
constexpr XVUInt k_ulEsperaMaxima = 200;  // milliseconds

// Causes that another attempt will not cure.
bool EhDefinitiva(ECausaArquivo eCausa) {
    return eCausa == ECausaArquivo::eArquivoNaoEncontrado || eCausa == ECausaArquivo::eCaminhoInvalido ||
           eCausa == ECausaArquivo::eArquivoInvalido || eCausa == ECausaArquivo::eErroFisico;
}

// Lets the process that holds the file finish its line; never sleeps.
void CedeProcessador(int iVezes) {
    for (int i = 0; i <= iVezes; ++i) XVPlataforma::Relogio().Dorme(0);
}

CXVErroArquivo AbreParaAnexar(const std::string& sCaminho, std::unique_ptr<IXVArquivo>& pArquivo) {
    const XVUInt ulInicio = XVPlataforma::Relogio().GetTicks();
    CXVErroArquivo erro;
    for (int i = 0; i < k_iTentativas; ++i) {
        erro = XVPlataforma::SistemaArquivos().Abre(
            sCaminho,
            {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
             ECriacaoArquivo::eCriaSeAusente},
            pArquivo);
        if (erro.Ok() || EhDefinitiva(erro.GetCausa())) break;
        if (XVPlataforma::Relogio().GetTicks() - ulInicio > k_ulEsperaMaxima) break;
        if (erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento) CedeProcessador(i * i);
    }
    return erro;
}

// Whether the last line lacks its end, as a write leaves it that the death of its process cut.
bool TerminaNoMeioDaLinha(IXVArquivo& rArquivo, XVUInt64 uiFim) {
    char cUltimo = '\n';
    return uiFim > 0 && rArquivo.Le(uiFim - 1, &cUltimo, 1).Ok() && cUltimo != '\n';
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
    return GetCaminhoProgramas(rConfiguracao, rEvento);
}

std::string GetCaminhoProgramas(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento) {
    return XVPlataforma::SistemaArquivos().Junta(rConfiguracao.sDiretorioModulo,
                                                 NomeMensal("XVProfilerErros_Pgms_", rEvento.dataHora));
}

EAnexo Anexa(const std::string& sCaminho, std::string_view sCabecalho, std::string_view sLinha) {
    if (sCaminho.empty()) return EAnexo::ePerdida;
    // The attempts are there for other processes; the threads of this one wait for each other.
    static std::mutex& s_rMutex = *new std::mutex;
    const XVDetencao::CIsencao isencao;
    const std::lock_guard trava(s_rMutex);
    std::unique_ptr<IXVArquivo> pArquivo;
    const CXVErroArquivo erro = AbreParaAnexar(sCaminho, pArquivo);
    if (erro.GetCausa() == ECausaArquivo::eCaminhoInvalido) return EAnexo::eSemDiretorio;
    XVUInt64 uiFim = 0;
    if (!erro.Ok() || !pArquivo->GetTamanho(uiFim).Ok()) return EAnexo::ePerdida;
    std::string sTexto;
    if (TerminaNoMeioDaLinha(*pArquivo, uiFim)) sTexto += '\n';
    // A file that is shorter than the header was cut within it.
    if (uiFim < sCabecalho.size()) sTexto += sCabecalho;
    sTexto += sLinha;
    if (pArquivo->Grava(uiFim, sTexto.data(), sTexto.size()).Ok()) return EAnexo::eEscrita;
    pArquivo->SetTamanho(uiFim).Ignora();  // no half line stays behind
    return EAnexo::ePerdida;
}

}  // namespace XVProfilerArquivo
