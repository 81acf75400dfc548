// Codes of the system and of COM that a person meets around the component.
#include "support/messages/XVMensagensTabela.h"

namespace {

using enum EAssuntoMensagem;

#define XV_CAUSA_SERVIDOR "A operação em andamento está inteira ou ausente, nunca pela metade."

#define XV_ACAO_SERVIDOR                                                             \
    "Se a operação gravava, veja antes se ela ficou gravada (\"xvcr busca\", log " \
    "geral). Depois repita: um cliente novo sobe o servidor. Havendo relatório de " \
    "queda no diretório do módulo, envie-o ao suporte."

// clang-format off
constexpr SMensagemCodigo k_aSistema[] = {
    {XVHResult(0x80004001U), "E_NOTIMPL", eChamada,
     "A operação não é oferecida neste caso (por exemplo, não há provedor instalado para o sistema "
     "externo); escolha outra operação ou instale o provedor.",
     "O sistema externo pedido, ou o de um item pendente, não tem provedor, ou o provedor não oferece esta "
     "troca. Nada foi enviado nem gravado.",
     "\"xvcr provedores\" diz quais estão carregados, quais foram recusados e por quê. Instale o provedor "
     "ao lado do programa, ou escolha outra operação."},
    {XVHResult(0x80004003U), "E_POINTER", eChamada,
     "O programa chamador passou um ponteiro nulo onde é exigido um valor; corrija o programa chamador.",
     "Falta um argumento da chamada. Nada foi gravado.", "Corrija o programa chamador."},
    {XVHResult(0x80004005U), "E_FAIL", eProcesso,
     "A operação falhou sem uma causa mais precisa; veja as linhas anteriores do log de erros.",
     "Quem falhou (um provedor, o COM ou outra biblioteca) não disse mais do que isso.", XV_ACAO_SUPORTE},
    {XVHResult(0x8000FFFFU), "E_UNEXPECTED", eProcesso,
     "Ocorreu uma situação que o programa não previa; guarde o log de erros e avise o suporte.",
     "Um estado que não devia existir. A operação está inteira ou ausente.", XV_ACAO_SUPORTE},
    {XVHResult(0x80010108U), "RPC_E_DISCONNECTED", eProcesso,
     "O servidor cortou este cliente ou terminou; conecte de novo.",
     "O componente ficou sem uso além de InatividadeMaximaComponente, ou o servidor terminou. "
     XV_CAUSA_SERVIDOR,
     XV_ACAO_SERVIDOR},
    {XVHResult(0x80040154U), "REGDB_E_CLASSNOTREG", eProcesso,
     "O componente não está registrado nesta máquina; registre o servidor com a opção RegServer.",
     "As chaves do componente não estão no registro do Windows, ou estão só para outro usuário.",
     "Como administrador: XVCR_Middleware.exe /RegServer (ou /RegServerPerUser para o usuário atual)."},
    {XVHResult(0x800401FDU), "CO_E_OBJNOTCONNECTED", eProcesso,
     "O objeto não está mais ligado ao servidor; conecte de novo.",
     "O servidor terminou ou liberou o objeto que o cliente ainda usava. " XV_CAUSA_SERVIDOR,
     XV_ACAO_SERVIDOR},
    {XVHResult(0x80070005U), "E_ACCESSDENIED", eProcesso,
     "O usuário do processo não tem permissão para a operação; verifique as permissões do diretório e do "
     "componente.",
     "O Windows recusou a chamada ao componente, o registro do servidor ou o acesso a um recurso. Nada foi "
     "mudado.",
     "Rode o registro do servidor como administrador; confira quem pode iniciar e chamar o componente "
     "(DCOM) e as permissões do diretório de dados."},
    {XVHResult(0x8007000DU), "ERROR_INVALID_DATA", eProcesso,
     "Os dados não seguem o formato esperado: um documento da simulação, ou uma chave do servidor no "
     "registro do Windows; o log de erros diz qual.",
     "Um documento da simulação foge das regras; ou, ao registrar o servidor, o que foi lido de volta não "
     "é o que foi escrito; ou um provedor respondeu este código. A base está inteira.",
     "Na simulação, corrija o documento e a linha que o log de erros nomeia. No registro do servidor, "
     "repita como administrador. De um provedor, veja a documentação dele."},
    {XVHResult(0x8007000EU), "E_OUTOFMEMORY", eProcesso,
     "Não há memória suficiente para a operação; feche outros programas ou peça menos registros de cada "
     "vez.",
     "A memória acabou. O que está no disco está inteiro; a operação foi desfeita.",
     "Peça menos de cada vez; dê mais memória a um índice grande."},
    {XVHResult(0x80070057U), "E_INVALIDARG", eChamada,
     "Um dos valores informados não é aceito (empresa, data, chave, enumeração ou tamanho de texto); "
     "corrija o valor e repita.",
     "Empresa fora da regra, usuário 65535, enumeração sem nome, data fora de 1848 a 2359, DMC impossível "
     "ou texto não aceito; ou a consulta ao sistema externo de uma integração que não tem sistema. Nada foi "
     "gravado.",
     "Corrija o valor; o log de erros diz qual foi conferido. De uma integração sem sistema, leia sem a "
     "consulta (sem --consulta-terceiro), ou dê a ela o sistema."},
    {XVHResult(0x800700B7U), "ERROR_ALREADY_EXISTS", eProcesso,
     "O servidor já está no ar; nada há a fazer.",
     "O servidor foi iniciado à mão enquanto outro roda. É só o código de saída do segundo.",
     "Nada: o que está no ar atende."},
    {XVHResult(0x800703E6U), "ERROR_NOACCESS", eProcesso,
     "Uma chamada usou um endereço de memória inválido; guarde o log de erros e o relatório de queda e "
     "avise o suporte.",
     "Falha de programa no componente, num provedor ou no chamador. " XV_CAUSA_SERVIDOR, XV_ACAO_SUPORTE},
    {XVHResult(0x800705B4U), "ERROR_TIMEOUT", eProcesso,
     "O sistema externo não respondeu no tempo esperado; confira o que foi gravado e repita mais tarde.",
     "O sistema externo demorou demais. O que foi gravado antes fica; a troca pode ter acontecido.",
     "Procure a chave e a origem no sistema externo antes de enviar outra vez."},
    {XVHResult(0x800706B5U), "RPC_S_UNKNOWN_IF", eProcesso,
     "O servidor não conhece a interface pedida; ele está terminando, ou é de outra versão: repita e "
     "confira o registro.",
     "A chamada chegou a um servidor que está saindo, ou XVCR_MiddlewarePS.dll não é a deste servidor.",
     "Repita. Persistindo, registre de novo o servidor (/RegServer) com a biblioteca que veio com ele."},
    {XVHResult(0x800706BAU), "RPC_S_SERVER_UNAVAILABLE", eProcesso,
     "O servidor do componente não está no ar; repita a chamada e, se persistir, verifique o serviço e a "
     "rede.",
     "O processo do servidor terminou, ou a máquina não responde. " XV_CAUSA_SERVIDOR, XV_ACAO_SERVIDOR},
    {XVHResult(0x800706BEU), "RPC_S_CALL_FAILED", eProcesso,
     "A chamada ao servidor do componente foi interrompida; confira se a operação ficou gravada antes de "
     "repetir.",
     "O servidor terminou durante a chamada. " XV_CAUSA_SERVIDOR, XV_ACAO_SERVIDOR},
    {XVHResult(0x80080005U), "CO_E_SERVER_EXEC_FAILURE", eProcesso,
     "O Windows não conseguiu iniciar o servidor do componente; confira o registro do servidor e o "
     "caminho do programa.",
     "O programa registrado não está no caminho, não pôde ser executado, ou não se apresentou a tempo.",
     "Confira se XVCR_Middleware.exe está onde foi registrado e roda à mão; registre-o de novo. Veja o "
     "log do sistema e relatórios de queda."},
};
// clang-format on

static_assert(XVMensagensEmOrdem(k_aSistema), "the search needs ascending codes");

}  // namespace

std::span<const SMensagemCodigo> XVMensagensTabela::Sistema() {
    return k_aSistema;
}
