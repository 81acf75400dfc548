#include "tools/xvcr/commands/XVLojaParaVer.h"

namespace {

const std::string& Confere(CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: este comando lê os arquivos da própria base");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    return rContexto.loja.sDiretorio;
}

}  // namespace

CXVLojaParaVer::CXVLojaParaVer(CXVContexto& rContexto)
    : m_Diretorio(Confere(rContexto)), m_Chamador(rContexto.identificacao) {
    XVConfere(m_Base.Inicializa(&m_Chamador));
}
