#include "tools/xvcr/commands/XVContexto.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVConsole.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"

void CXVContexto::CompletaAcesso() {
    if (loja.sDiretorio.empty())
        loja.sDiretorio = XVAmbienteSO::GetVariavelAmbiente("XVCR_DIRETORIO").value_or("");
    if (identificacao.sEmpresa.empty())
        identificacao.sEmpresa = XVAmbienteSO::GetVariavelAmbiente("XVCR_EMPRESA").value_or("");
    // The store would create a mistyped directory.
    if (loja.sDiretorio.empty()) return;
    const EExistencia eExistencia = XVPlataforma::SistemaArquivos().Existe(loja.sDiretorio);
    if (eExistencia == EExistencia::eSemAcesso)
        XVFalha(XVCliente::DescreveCodigo(eAccessDenied) + " Diretório do módulo: " + loja.sDiretorio);
    if (eExistencia != EExistencia::eDiretorio)
        XVFalha("o diretório do módulo \"" + loja.sDiretorio +
                (eExistencia == EExistencia::eAusente ? "\" não existe" : "\" não é um diretório"));
}

void CXVContexto::ExigeAlgumaEmpresa() const {
    if (identificacao.sEmpresa.empty())
        XVErroDeUso("falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA");
}

void CXVContexto::ExigeEmpresa() const {
    ExigeAlgumaEmpresa();
    if (!CAmbienteXV::EhEmpresaValida(identificacao.sEmpresa))
        XVErroDeUso(
            "--empresa: \"" + identificacao.sEmpresa +
            "\" não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de dispositivo)");
}

std::string CXVContexto::GetDiretorioModulo() const {
    std::string sDiretorio = loja.sDiretorio;
    if (sDiretorio.empty() && FAILED(CAmbienteXV::GetDiretorioModulo(k_eModuloBase, &sDiretorio)))
        XVFalha(
            XVCliente::CodigoEmTexto(eBadPath) +
            " eBadPath: nenhum diretório do módulo está configurado; use --diretorio PASTA, a variável de "
            "ambiente XVCR_DIRETORIO ou o valor Path da chave " +
            CAmbienteXV::GetChaveRegistry(k_eModuloBase));
    return sDiretorio;
}

std::string CXVContexto::GetDiretorioQueExiste() const {
    std::string sDiretorio = GetDiretorioModulo();
    if (XVPlataforma::SistemaArquivos().Existe(sDiretorio) == EExistencia::eAusente)
        XVFalha(
            XVCliente::CodigoEmTexto(eBadPath) + " eBadPath: o diretório do módulo configurado, \"" +
            sDiretorio +
            "\", não existe; use --diretorio PASTA ou a variável de ambiente XVCR_DIRETORIO, ou corrija o "
            "valor Path da chave " +
            CAmbienteXV::GetChaveRegistry(k_eModuloBase));
    return sDiretorio;
}

void CXVContexto::ExigeBase() const {
    ExigeEmpresa();
    const std::string sDiretorio = GetDiretorioModulo();
    const std::string sBase = CAmbienteXV::MontaPathDados(k_eModuloBase, sDiretorio, identificacao.sEmpresa);
    if (XVPlataforma::SistemaArquivos().Existe(sBase) == EExistencia::eAusente)
        XVFalha(XVCliente::CodigoEmTexto(eBadPath) + " eBadPath: a empresa \"" + identificacao.sEmpresa +
                "\" não tem base em \"" + sDiretorio + "\"; \"xvcr empresas\" lista as que têm");
}

HRESULT CXVContexto::Conecta() {
    if (!bServidor) return m_Cliente.ConectaLocal(identificacao, loja);
    if (!XVCliente::TemServidor())
        XVErroDeUso("--servidor: este programa foi feito sem o cliente do servidor");
    if (!loja.sDiretorio.empty())
        XVErroDeUso("--diretorio não vale com --servidor: o servidor usa o diretório configurado na máquina");
    m_Apartamento.emplace();
    const HRESULT hr = m_Apartamento->GetResultado();
    return FAILED(hr) ? hr : m_Cliente.Conecta(identificacao);
}

XVCliente::CXVCliente& CXVContexto::Abre(EUsoDaBase eUso) {
    if (m_Cliente.EstaConectado()) return m_Cliente;
    if (eUso == EUsoDaBase::eGravacao && loja.bSomenteLeitura)
        XVErroDeUso("--leitura não vale para um comando que grava");
    CompletaAcesso();
    ExigeEmpresa();
    if (!bServidor) static_cast<void>(GetDiretorioModulo());
    // What only reads leaves the store as it is, and works beside whoever writes.
    if (eUso == EUsoDaBase::eLeitura && !bServidor) {
        ExigeBase();
        loja.bSomenteLeitura = true;
    }
    if (eUso == EUsoDaBase::eGravacao) XVConsole::CanoSemLeitorEhFalha();
    XVConfere(Conecta());
    return m_Cliente;
}

void CXVContexto::Fecha() {
    XVConfere(m_Cliente.Desconecta());
}
