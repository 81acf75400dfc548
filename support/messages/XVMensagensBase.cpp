// Codes of the store itself.
#include "support/messages/XVMensagensTabela.h"

namespace {

using enum EAssuntoMensagem;

// clang-format off
constexpr SMensagemCodigo k_aBase[] = {
    {XVHResult(0x810809C7U), "E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA", eAbertura,
     "A base de dados foi gravada por uma versão mais nova do sistema; atualize o programa antes de abrir "
     "esta base.",
     "Um programa mais novo converteu a base. Tudo está inteiro e nada foi mudado.",
     "Atualize o programa. Não há conversão de volta: para o programa antigo resta uma cópia de segurança "
     "do diretório inteiro, feita antes da conversão."},
    {XVHResult(0x810809CAU), "E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE", eChamada,
     "Foi pedida uma posição sem quantidade ou uma quantidade sem posição; é uma falha do programa, avise o "
     "suporte.",
     "O programa pediu registros de forma contraditória. Nada foi gravado.", XV_ACAO_SUPORTE},
    {XVHResult(0x810809CBU), "E_XVCR_ARQUIVO_TRA_ENCONTRADO", eAbertura,
     "Ao lado do arquivo há uma cópia (.tra) que nenhuma conversão em andamento explica; guarde-a em outro "
     "lugar e abra a base de novo.",
     "A cópia foi posta ali à mão ou restaurada, ou é de um programa antigo interrompido. A abertura não a "
     "usa nem a apaga. O arquivo de dados está como estava.",
     "Compare as datas dos dois arquivos e descubra de onde veio a cópia. Mova a cópia (.tra), e só ela, "
     "para fora do diretório e abra de novo. XVDATABASE_FILE_CTRL.tra pode ser apagada. As cópias de uma "
     "conversão interrompida não dão este código: a próxima abertura as conclui sozinha."},
    {XVHResult(0x810809D6U), "E_XVCR_RENOMEACAO_ARQUIVO", eArquivos,
     "O arquivo não pôde ser renomeado; verifique se outro programa o mantém aberto e se há permissão no "
     "diretório.",
     "O sistema recusou a mudança de nome 50 vezes em meio segundo. Os dois arquivos estão inteiros.",
     "A linha do log de erros traz o número do erro do sistema (DW). Feche o programa que mantém o arquivo "
     "aberto, ou corrija a permissão, e abra a base de novo."},
    {XVHResult(0x810809D7U), "E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO", eChamada,
     "O arquivo do dia pedido não existe; confira a data do DMC e, se ela está certa, rode \"xvcr "
     "verifica\".",
     "O DMC é de um dia sem integrações, ou o arquivo do dia saiu do diretório: foi movido, apagado, ou o "
     "índice é de outro momento. Nada foi gravado.",
     "Confira o DMC. Se ele está certo, procure o arquivo que o log de erros nomeia e devolva-o; se não "
     "existe mais, restaure o diretório inteiro da empresa. \"xvcr verifica\" diz o que falta e \"xvcr "
     "recupera\" monta outro diretório com o resto."},
    {XVHResult(0x810809D8U), "E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA", eAbertura,
     "O tamanho do arquivo não é múltiplo do tamanho do registro; " XV_FRASE_DANO,
     "O arquivo foi truncado ou trocado por outro. Os registros inteiros do começo se leem.", XV_ACAO_DANO},
    {XVHResult(0x810809D9U), "E_XVCR_TENTATIVA_LER_POSICAO_ZERO", eChamada,
     "A integração pedida não está no índice: foi pedida a posição zero; confira a chave informada.",
     "Não há na empresa integração com esse DMC: o DMC está errado ou é de outra empresa. Nada foi gravado.",
     "Confira a empresa e o DMC. Se a integração devia existir, rode \"xvcr verifica\"."},
    {XVHResult(0x810809DAU), "E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO", eChamada,
     "A posição pedida fica depois do último registro do arquivo; confira o DMC e, se está certo, rode "
     "\"xvcr verifica\".",
     "O ponteiro do DMC não existe nesse dia, ou os arquivos do diretório são de momentos diferentes.",
     "Confira o DMC. Se ele está certo: " XV_ACAO_DANO},
    {XVHResult(0x810809DBU), "E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO", eChamada,
     "A gravação foi pedida para uma posição depois do fim do arquivo; nada foi gravado, avise o suporte.",
     "O programa quis gravar onde não há registro, ou os arquivos são de momentos diferentes. Nada foi "
     "gravado.",
     "Rode \"xvcr verifica\"; se a base está inteira, guarde o log de erros e avise o suporte."},
    {XVHResult(0x810809E3U), "E_XVCR_ARQUIVO_NAO_EXISTE", eChamada,
     "O arquivo de dados não existe; confira o DMC e, se está certo, rode \"xvcr verifica\".",
     "A integração ou o texto pedido é de um arquivo que o diretório não tem. Nada foi gravado.",
     "Confira a empresa e o DMC. Se estão certos, o arquivo que o log de erros nomeia saiu do diretório: "
     "devolva-o ou restaure o diretório inteiro."},
    {XVHResult(0x810809E7U), "E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA", eAbertura,
     "O arquivo de registro único não tem o tamanho da sua estrutura; " XV_FRASE_DANO,
     "O arquivo de versão foi truncado ou trocado por outro. Os arquivos de dados não foram tocados.",
     XV_ACAO_DANO},
    {XVHResult(0x810809F1U), "E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO", eChamada,
     "O nome dado para o grupo de arquivos não tem a parte variável (sinais de interrogação); é uma falha "
     "do programa, avise o suporte.",
     "O programa declarou um grupo de arquivos de forma errada. Nada foi gravado.", XV_ACAO_SUPORTE},
    {XVHResult(0x810809F2U), "E_XVCR_DELECAO_ARQUIVO", eArquivos,
     "O arquivo não pôde ser apagado; verifique se outro programa o mantém aberto e se ele é somente "
     "leitura.",
     "O sistema recusou a exclusão 50 vezes em meio segundo. Os dados estão inteiros: só cópias "
     "transitórias são apagadas.",
     "A linha do log de erros traz o número do erro do sistema (DW). Feche o programa que mantém o arquivo "
     "aberto, ou retire o atributo, e abra a base de novo."},
    {XVHResult(0x81080A04U), "E_XVCR_COMPONENTE_NAO_INICIALIZADO", eChamada,
     "O componente não está inicializado, ou um erro fatal anterior o liberou; crie outro componente e "
     "inicialize-o.",
     "O programa chamou antes de inicializar, depois de uma inicialização recusada ou finalizada, ou depois "
     "de um resultado fatal (0x8004EAC5 a 0x8004EADB, 0x8004EE47). Um componente liberado não volta: também "
     "a inicialização dele responde este código.",
     "Crie um componente novo e inicialize-o. Havendo um erro fatal antes, no log de erros, trate dele "
     "primeiro."},
    {XVHResult(0x81080A3EU), "E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA", eAbertura,
     "O cabeçalho do arquivo é de uma versão mais nova do sistema; atualize o programa.",
     "Um programa mais novo fez o arquivo. Tudo está inteiro e nada foi mudado.", "Atualize o programa."},
    {XVHResult(0x81080A3FU), "E_XVCR_CRC_CABECALHO_NAO_CONFERE", eAbertura,
     "O cabeçalho do arquivo está danificado (CRC não confere); " XV_FRASE_DANO,
     "Um dos dois blocos do cabeçalho mudou no disco; ou o arquivo não tem cabeçalho e o conteúdo não é de "
     "nenhum programa deste sistema. O conteúdo pode estar inteiro: o arquivo não foi nem será alterado.",
     XV_ACAO_DANO},
    {XVHResult(0x81080A43U), "E_XVCR_NOME_ARQUIVO_NAO_CONFERE", eAbertura,
     "O nome gravado no cabeçalho não é o nome do arquivo; o arquivo foi renomeado ou trocado, "
     "devolva-lhe o nome original.",
     "Alguém renomeou o arquivo ou pôs outro em seu lugar. O conteúdo está inteiro.",
     "Devolva ao arquivo o seu nome e procure onde ficou o verdadeiro; \"xvcr verifica\" diz os dois nomes. "
     "Não o encontrando, restaure o diretório inteiro."},
    {XVHResult(0x81080A50U), "E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS", eAbertura,
     "Os arquivos da base não combinam: um deles falta ou é de outro momento; o log de erros diz qual e "
     "\"xvcr verifica\" mostra tudo.",
     "Um arquivo que o controle nomeia saiu do diretório; ou os arquivos são de momentos diferentes (um só "
     "restaurado, queda de energia com Durabilidade 0); ou falta o arquivo de versão. Nada foi mudado e "
     "nada vazio foi criado no lugar.",
     "Leia a linha do log de erros, que nomeia o arquivo. Se ele foi movido ou está na quarentena do "
     "antivírus, devolva-o. Se não: " XV_ACAO_DANO},
    {XVHResult(0x81080AA9U), "E_XVCR_COLUNA_INDEXACAO_INVALIDA", eChamada,
     "Foi usado um índice que o arquivo não tem; é uma falha do programa, avise o suporte.",
     "O programa pediu um índice que não foi declarado. Nada foi gravado.", XV_ACAO_SUPORTE},
    {XVHResult(0x81080AAAU), "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA", eChamada,
     "Nenhum registro tem a chave procurada; confira a chave e o sistema externo.",
     "Não há integração com esse DMC ou com essa chave externa nessa empresa. No OfficialBank, uma "
     "integração nova com a mesma chave toma o lugar da anterior no índice.",
     "Confira a empresa, o DMC ou a chave e o sistema; \"xvcr busca\" mostra as integrações que existem."},
    {XVHResult(0x81080AACU), "E_XVCR_INDEXACAO_COM_POSICAO_ZERO", eChamada,
     "O registro tem a chave zerada e este índice não aceita chave zero; nada foi gravado, informe a chave.",
     "A gravação veio sem uma chave obrigatória. Se o código vem da abertura, um registro do arquivo perdeu "
     "a chave: alguém o mudou por fora.",
     "Informe a chave. Se a base não abre: " XV_ACAO_DANO},
    {XVHResult(0x81080AADU), "E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA", eChamada,
     "Já existe um registro com esta chave e ela não pode se repetir; nada foi gravado, confira a chave.",
     "A chave já está gravada. Se o código vem da abertura, dois registros do arquivo têm a mesma chave: "
     "alguém o mudou por fora.",
     "Altere o registro que existe em vez de incluir outro. Se a base não abre: " XV_ACAO_DANO},
    {XVHResult(0x81080BB1U), "E_XVCR_PARAMETRO_INVALIDO_RUNTIME", eProcesso,
     "Uma função recebeu um parâmetro inválido e a chamada foi interrompida; guarde o log de erros e "
     "avise o suporte.",
     "A biblioteca de execução recusou um parâmetro dentro da chamada. A operação está inteira ou ausente.",
     XV_ACAO_SUPORTE},
    {XVHResult(0x81080BFDU), "E_XVCR_VERSAO_INCOMPATIVEL", eAbertura,
     "A versão não é aceita: a base aberta só para leitura é de versão anterior (converta-a com \"xvcr "
     "converte\"), ou o programa chamador é de outra versão (atualize-o).",
     "Quem só consulta não converte, e esta base ainda não foi convertida; ou o registro de inicialização "
     "que o programa chamador enviou é de outra versão. Tudo está inteiro.",
     "Em xvcr: faça uma cópia de segurança e rode \"xvcr converte\" (ou abra a base uma vez para "
     "gravação), ou consulte com o programa antigo. Na inicialização do componente: atualize o programa "
     "chamador."},
    {XVHResult(0x81080C07U), "E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE", eAbertura,
     "O cabeçalho do arquivo não tem o tamanho esperado; " XV_FRASE_DANO,
     "O arquivo tem menos de 240 bytes com um cabeçalho começado, ou o cabeçalho é de outro sistema.",
     XV_ACAO_DANO},
    {XVHResult(0x81080C08U), "E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE", eAbertura,
     "O tamanho do arquivo não é o que o cabeçalho registra; " XV_FRASE_DANO,
     "Queda de energia com Durabilidade 0, disco danificado ou outro programa mudou o arquivo; a morte do "
     "processo não faz isto. Tudo até o menor dos dois tamanhos está inteiro.",
     XV_ACAO_DANO},
    {XVHResult(0x81080C09U), "E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO", eAbertura,
     "O arquivo foi criado por uma versão mais nova do sistema; atualize o programa.",
     "Um programa mais novo fez o arquivo. Tudo está inteiro e nada foi mudado.", "Atualize o programa."},
    {XVHResult(0x81080C0AU), "E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO", eAbertura,
     "O arquivo foi modificado por uma versão mais nova do sistema; atualize o programa.",
     "Um programa mais novo gravou no arquivo. Tudo está inteiro e nada foi mudado.", "Atualize o "
     "programa."},
    {XVHResult(0x81080C17U), "E_XVCR_CRC_INICIALIZACAO_INVALIDO", eChamada,
     "O registro de inicialização chegou danificado (CRC não confere); o programa chamador deve "
     "remontá-lo e repetir.",
     "O CRC do registro de inicialização não é o dos seus bytes. Nada foi aberto.",
     "Corrija ou atualize o programa chamador."},
    {XVHResult(0x81080C19U), "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", eChamada,
     "O registro de inicialização tem campos impossíveis; corrija o programa chamador.",
     "Um texto sem fim, um número obrigatório zerado ou um campo reservado usado. Nada foi aberto.",
     "Corrija ou atualize o programa chamador."},
    {XVHResult(0x81080C5EU), "E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA", eAbertura,
     "Um texto do arquivo declara mais caracteres do que o arquivo tem; " XV_FRASE_DANO,
     "O arquivo de textos foi truncado ou danificado. Os textos anteriores estão inteiros. Em "
     "XVDATABASE_FILE_CTRL.dat, nenhum arquivo abre mais.",
     XV_ACAO_DANO},
    {XVHResult(0x81080C67U), "E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA",
     eChamada,
     "A integração só pode ficar sem a chave do sistema externo enquanto pendente, com erro ou "
     "cancelada; informe a chave.",
     "A alteração deixaria a integração sem chave externa num status que a exige. Nada foi gravado.",
     "Informe a chave (--chave), ou use o status Pendente, Erro ou Cancelado."},
    {XVHResult(0x81080C69U), "E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA", eChamada,
     "O status foi informado sem a chave da integração e sem a chave do sistema externo; informe uma "
     "das duas.",
     "Não se sabe de qual integração é o status. Nada foi gravado.",
     "Informe o DMC, ou a chave externa e o sistema."},
    {XVHResult(0x81080CEBU), "E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA", eChamada,
     "A chave do registro está zerada; informe a chave do registro a que a operação se refere.",
     "Uma ligação precisa do registro do sistema. Nada foi gravado.", "Informe o registro (--registro)."},
    {XVHResult(0x81080D06U), "E_XVCR_ARQUIVO_CAB_ENCONTRADO", eAbertura,
     "Há ao lado do arquivo uma cópia (.cab) que o diário não conhece; mova-a para outro lugar e abra a "
     "base de novo.",
     "A cópia foi posta ali à mão, ou é de um programa antigo que morreu ao incluir o cabeçalho. O "
     "arquivo de dados está completo, sem cabeçalho.",
     "Mova a cópia (.cab), e só ela, para fora do diretório e abra de novo: a abertura faz o cabeçalho "
     "outra vez."},
    {XVHResult(0x81080D20U), "E_XVCR_PROVEDOR_SEM_RESPOSTA", eChamada,
     "O provedor do sistema externo não respondeu no prazo (EsperaProvedor); confira no sistema externo se a "
     "troca foi feita antes de mandar de novo.",
     "A chamada do provedor foi abandonada: só o sistema externo sabe se recebeu o que ela mandava. O que já "
     "estava gravado está inteiro, e os itens anteriores da mesma operação ficam gravados.",
     "O log de erros nomeia sistema e função, e também a resposta que chegar depois. Achando o documento no "
     "sistema externo, grave-o à mão (\"xvcr grava\"). Sendo o provedor só lento, aumente EsperaProvedor."},
    {XVHResult(0x81080D21U), "E_XVCR_PROVEDOR_SUSPENSO", eChamada,
     "O provedor do sistema externo não foi chamado, porque uma chamada anterior dele ainda não voltou.",
     "Uma chamada abandonada (0x81080D20) continua presa no provedor. Por esta chamada nada foi enviado nem "
     "gravado; os itens anteriores da mesma operação ficam gravados.",
     "Espere que a chamada presa volte, o que o log de erros diz, ou encerre o processo que o chama e "
     "avise quem mantém o provedor."},
};
// clang-format on

static_assert(XVMensagensEmOrdem(k_aBase), "the search needs ascending codes");

}  // namespace

std::span<const SMensagemCodigo> XVMensagensTabela::Base() {
    return k_aBase;
}
