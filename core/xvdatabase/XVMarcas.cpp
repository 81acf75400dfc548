#include "core/xvdatabase/XVMarcas.h"

#include <memory>

#include "platform/XVPlataforma.h"
#include "suite/XVAcessoEmpresarial.h"

std::string XVMarcas::Nome(EModulo eModulo, IXVArqMarcaEnum eMarca) {
    return std::string(CAmbienteXV::GetSiglaModulo(eModulo)) + "XXMARCA" +
           std::to_string(static_cast<unsigned>(eMarca));
}

void XVMarcas::RetiraSemDono(EModulo eModulo, const std::string& sDiretorio) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    for (const std::string& sMarca :
         {Nome(eModulo, IXVArqMarcaEnum::ControleCriacaoArquivosInMemory),
          Nome(eModulo, IXVArqMarcaEnum::Conversao), std::string(CXVAcessoEmpresarial::k_pszMarcaCriacao)}) {
        if (rSistema.Existe(rSistema.Junta(sDiretorio, sMarca)) != EExistencia::eArquivo) continue;
        // Whoever comes to hold it takes it along when it is given back.
        std::unique_ptr<IXVMarcaDiretorio> pMarca;
        rSistema.MarcaDiretorio(sDiretorio, sMarca, pMarca).Ignora();
    }
}
