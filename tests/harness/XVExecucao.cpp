#include "tests/harness/XVExecucao.h"

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"

SExecucao XVExecuta(const std::string& sPrograma, const std::vector<std::string>& listaArgumentos,
                    const std::string& sEntrada) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("entrada", sEntrada);
    CXVProcessoFilho filho(sPrograma, listaArgumentos,
                           {diretorio.Junta("entrada"), diretorio.Junta("saida"), diretorio.Junta("erro")});
    const int iSaida = filho.EsperaFim();
    return {iSaida, diretorio.LeConteudo("saida").value_or(""), diretorio.LeConteudo("erro").value_or("")};
}
