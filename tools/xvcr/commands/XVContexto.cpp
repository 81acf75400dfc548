#include "tools/xvcr/commands/XVContexto.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "tools/xvcr/XVFabricaOperacoes.h"

void CXVContexto::CompletaAcesso() {
    if (acesso.sDiretorio.empty())
        acesso.sDiretorio = XVAmbienteSO::GetVariavelAmbiente("XVCR_DIRETORIO").value_or("");
    if (acesso.sEmpresa.empty())
        acesso.sEmpresa = XVAmbienteSO::GetVariavelAmbiente("XVCR_EMPRESA").value_or("");
    // The store would create a mistyped directory.
    if (acesso.sDiretorio.empty()) return;
    const EExistencia eExistencia = XVPlataforma::SistemaArquivos().Existe(acesso.sDiretorio);
    if (eExistencia == EExistencia::eSemAcesso)
        XVFalha(XVDescreveCodigo(eAccessDenied) + " Diretório do módulo: " + acesso.sDiretorio);
    if (eExistencia != EExistencia::eDiretorio)
        XVFalha("o diretório do módulo \"" + acesso.sDiretorio + "\" não existe");
}

void CXVContexto::ExigeEmpresa() const {
    if (acesso.sEmpresa.empty())
        XVErroDeUso("falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA");
    if (!CAmbienteXV::EhEmpresaValida(acesso.sEmpresa))
        XVErroDeUso(
            "--empresa: \"" + acesso.sEmpresa +
            "\" não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de dispositivo)");
}

IXVOperacoes& CXVContexto::Abre(EUsoDaBase eUso) {
    if (m_pOperacoes != nullptr) return *m_pOperacoes;
    if (eUso == EUsoDaBase::eGravacao && acesso.bSomenteLeitura)
        XVErroDeUso("--leitura não vale para um comando que grava");
    CompletaAcesso();
    ExigeEmpresa();
    // What only reads leaves the store as it is, and works beside whoever writes.
    if (eUso == EUsoDaBase::eLeitura && !bServidor) acesso.bSomenteLeitura = true;
    std::unique_ptr<IXVOperacoes> pOperacoes = XVCriaOperacoes(bServidor);
    XVConfere(pOperacoes->Inicializa(acesso));
    m_pOperacoes = std::move(pOperacoes);
    return *m_pOperacoes;
}

void CXVContexto::Fecha() {
    if (m_pOperacoes == nullptr) return;
    const std::unique_ptr<IXVOperacoes> pOperacoes = std::move(m_pOperacoes);
    XVConfere(pOperacoes->Finaliza());
}
