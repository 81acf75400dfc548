#include "support/messages/XVMensagens.h"

#include <algorithm>
#include <iterator>

#include "support/values/XVTextoAscii.h"

namespace {

// Sorted by code. Each sentence says what happened and what the operator can do.
// clang-format off
constexpr SMensagemCodigo k_aMensagens[] = {
    {XVHResult(0x80004001U), "E_NOTIMPL",
     "A operação não é oferecida neste caso (por exemplo, não há provedor instalado para o "
     "sistema de terceiro); escolha outra operação ou instale o provedor."},
    {XVHResult(0x80004003U), "E_POINTER",
     "O programa chamador passou um ponteiro nulo onde é exigido um valor; corrija o programa "
     "chamador."},
    {XVHResult(0x80004005U), "E_FAIL",
     "A operação falhou sem uma causa mais precisa; veja as linhas anteriores do log de erros."},
    {XVHResult(0x8000FFFFU), "E_UNEXPECTED",
     "Ocorreu uma situação que o programa não previa; guarde o log de erros e avise o suporte."},
    {XVHResult(0x80040154U), "REGDB_E_CLASSNOTREG",
     "O componente não está registrado nesta máquina; registre o servidor com a opção "
     "RegServer."},
    {XVHResult(0x80043E8CU), "eBadSeek",
     "O posicionamento no arquivo falhou; o arquivo pode estar danificado ou grande demais para o "
     "disco."},
    {XVHResult(0x80043E95U), "eEndOfFile",
     "O arquivo terminou antes do esperado; está truncado, restaure-o de uma cópia."},
    {XVHResult(0x80043EA7U), "eHardIO",
     "O dispositivo acusou um erro físico; verifique o disco antes de continuar."},
    {XVHResult(0x80043EB7U), "eFileNotFound",
     "O arquivo não foi encontrado; confira o nome e a empresa."},
    {XVHResult(0x80043EBFU), "eBadPath",
     "O diretório não existe ou não está configurado; confira o diretório do módulo na "
     "configuração."},
    {XVHResult(0x80043EC7U), "eTooManyOpenFiles",
     "Há arquivos abertos demais no processo ou na máquina; feche programas ou aumente o limite."},
    {XVHResult(0x80043ED0U), "eAccessDenied",
     "O acesso ao arquivo foi negado; verifique as permissões do usuário no diretório de dados."},
    {XVHResult(0x80043ED1U), "eXVReadOnly",
     "O arquivo é somente leitura ou a base foi aberta só para leitura; retire o atributo ou abra a base "
     "para gravação."},
    {XVHResult(0x80043EE2U), "eInvalidFile",
     "A operação foi feita sobre um arquivo fechado ou que não é um arquivo; veja as linhas "
     "anteriores do log."},
    {XVHResult(0x80043EE5U), "eDirectoryFull",
     "O diretório não aceita mais arquivos; mova arquivos antigos para outro lugar."},
    {XVHResult(0x80043EEEU), "eSharingViolation",
     "O arquivo está em uso por outro processo; feche o outro programa ou aguarde e repita."},
    {XVHResult(0x80043F00U), "eLockViolation",
     "Uma região do arquivo está bloqueada por outro processo; aguarde e repita."},
    {XVHResult(0x80043F08U), "eDiskFull",
     "O disco está cheio ou a cota acabou; libere espaço e repita, nada foi perdido."},
    {XVHResult(0x80043F10U), "eXVGenericError",
     "O acesso ao arquivo falhou por uma causa sem nome próprio; veja o log de erros e o registro "
     "do sistema."},
    {XVHResult(0x8004EA60U), "E_XV_ERRNO_DESCONHECIDO",
     "A biblioteca de execução acusou um erro sem código conhecido; guarde o log de erros e "
     "avise o suporte."},
    {XVHResult(0x8004EA61U), "E_XV_EXCECAO_SEM_CODIGO",
     "A operação foi interrompida por uma exceção do sistema sem código; guarde o log de "
     "erros e avise o suporte."},
    {XVHResult(0x8004EA62U), "E_XV_EXCECAO_MEMORIA",
     "A operação foi interrompida por falta de memória; feche outros programas e repita."},
    {XVHResult(0x8004EA63U), "E_XV_EXCECAO_GENERICA",
     "A operação foi interrompida por uma exceção da biblioteca de classes; guarde o log de "
     "erros e avise o suporte."},
    {XVHResult(0x8004EA64U), "E_XV_BAD_ALLOC",
     "Não houve memória para atender ao pedido; peça menos registros de cada vez ou feche "
     "outros programas."},
    {XVHResult(0x8004EA65U), "E_XV_STD_EXCEPTION",
     "A operação foi interrompida por uma exceção da biblioteca padrão; guarde o log de erros "
     "e avise o suporte."},
    {XVHResult(0x8004EA66U), "E_XV_EXCECAO_DESCONHECIDA",
     "A operação foi interrompida por uma exceção desconhecida; guarde o log de erros e avise "
     "o suporte."},
    {XVHResult(0x8004EA67U), "E_XV_EXCECAO_ARGUMENTO",
     "A operação foi interrompida porque um argumento não é aceito; confira os valores "
     "informados."},
    {XVHResult(0x8004EADCU), "E_XV_ERRNO_EPERM",
     "A operação não é permitida a este usuário; verifique as permissões."},
    {XVHResult(0x8004EADDU), "E_XV_ERRNO_ENOENT",
     "O arquivo ou diretório não existe; confira o caminho."},
    {XVHResult(0x8004EADEU), "E_XV_ERRNO_ESRCH",
     "O processo procurado não existe mais; repita a operação."},
    {XVHResult(0x8004EADFU), "E_XV_ERRNO_EINTR",
     "A chamada foi interrompida pelo sistema; repita a operação."},
    {XVHResult(0x8004EAE0U), "E_XV_ERRNO_EIO",
     "O dispositivo acusou erro de entrada ou saída; verifique o disco."},
    {XVHResult(0x8004EAE1U), "E_XV_ERRNO_ENXIO",
     "O dispositivo ou endereço não existe; verifique a unidade configurada."},
    {XVHResult(0x8004EAE2U), "E_XV_ERRNO_E2BIG",
     "A lista de argumentos é longa demais; reduza os parâmetros."},
    {XVHResult(0x8004EAE3U), "E_XV_ERRNO_ENOEXEC",
     "O arquivo não é um programa executável; reinstale o programa."},
    {XVHResult(0x8004EAE4U), "E_XV_ERRNO_EBADF",
     "Foi usado um arquivo que não está aberto; guarde o log de erros e avise o suporte."},
    {XVHResult(0x8004EAE5U), "E_XV_ERRNO_ECHILD",
     "Não há processo filho a aguardar; guarde o log de erros e avise o suporte."},
    {XVHResult(0x8004EAE6U), "E_XV_ERRNO_EAGAIN",
     "O recurso está ocupado neste momento; aguarde e repita."},
    {XVHResult(0x8004EAE7U), "E_XV_ERRNO_ENOMEM",
     "Não há memória suficiente; feche outros programas e repita."},
    {XVHResult(0x8004EAE8U), "E_XV_ERRNO_EACCES",
     "O acesso foi negado; verifique as permissões do usuário."},
    {XVHResult(0x8004EAE9U), "E_XV_ERRNO_EFAULT",
     "Foi usado um endereço de memória inválido; guarde o log de erros e avise o suporte."},
    {XVHResult(0x8004EAEAU), "E_XV_ERRNO_EBUSY",
     "O dispositivo ou recurso está em uso; feche o outro programa e repita."},
    {XVHResult(0x8004EAEBU), "E_XV_ERRNO_EEXIST",
     "O arquivo já existe; escolha outro nome ou retire o existente."},
    {XVHResult(0x8004EAECU), "E_XV_ERRNO_EXDEV",
     "O arquivo não pode ser movido para outra unidade; copie-o e apague o original."},
    {XVHResult(0x8004EAEDU), "E_XV_ERRNO_ENODEV",
     "O dispositivo não existe; verifique a unidade configurada."},
    {XVHResult(0x8004EAEEU), "E_XV_ERRNO_ENOTDIR",
     "Parte do caminho não é um diretório; confira o caminho."},
    {XVHResult(0x8004EAEFU), "E_XV_ERRNO_EISDIR",
     "O caminho é um diretório e não um arquivo; confira o nome."},
    {XVHResult(0x8004EAF0U), "E_XV_ERRNO_EINVAL",
     "Um argumento não é aceito; confira os valores informados."},
    {XVHResult(0x8004EAF1U), "E_XV_ERRNO_ENFILE",
     "Há arquivos abertos demais na máquina; feche programas."},
    {XVHResult(0x8004EAF2U), "E_XV_ERRNO_EMFILE",
     "Há arquivos abertos demais neste processo; reinicie-o ou aumente o limite."},
    {XVHResult(0x8004EAF3U), "E_XV_ERRNO_ENOTTY",
     "A operação não se aplica a este dispositivo; guarde o log de erros e avise o suporte."},
    {XVHResult(0x8004EAF4U), "E_XV_ERRNO_EFBIG",
     "O arquivo passou do tamanho máximo; arquive os dados antigos."},
    {XVHResult(0x8004EAF5U), "E_XV_ERRNO_ENOSPC",
     "Não há espaço no disco; libere espaço e repita."},
    {XVHResult(0x8004EAF6U), "E_XV_ERRNO_ESPIPE",
     "O arquivo não permite posicionamento; confira se não é um dispositivo."},
    {XVHResult(0x8004EAF7U), "E_XV_ERRNO_EROFS",
     "A unidade é somente leitura; escolha outra ou libere a gravação."},
    {XVHResult(0x8004EAF8U), "E_XV_ERRNO_EMLINK",
     "Há vínculos demais para o arquivo; retire os que não são usados."},
    {XVHResult(0x8004EAF9U), "E_XV_ERRNO_EPIPE",
     "O outro lado da comunicação foi fechado; repita a operação."},
    {XVHResult(0x8004EAFAU), "E_XV_ERRNO_EDOM",
     "Um valor está fora do domínio da função matemática; confira os valores informados."},
    {XVHResult(0x8004EAFBU), "E_XV_ERRNO_ERANGE",
     "O resultado não cabe no destino; confira o tamanho dos valores informados."},
    {XVHResult(0x8004EAFCU), "E_XV_ERRNO_EDEADLK",
     "A espera travaria o processo; repita a operação."},
    {XVHResult(0x8004EAFDU), "E_XV_ERRNO_ENAMETOOLONG",
     "O nome do arquivo é longo demais; use um caminho mais curto."},
    {XVHResult(0x8004EAFEU), "E_XV_ERRNO_ENOLCK",
     "Não há bloqueios disponíveis no sistema; aguarde e repita."},
    {XVHResult(0x8004EAFFU), "E_XV_ERRNO_ENOSYS",
     "A função não é oferecida por este sistema; avise o suporte."},
    {XVHResult(0x8004EB00U), "E_XV_ERRNO_ENOTEMPTY",
     "O diretório não está vazio; retire os arquivos antes."},
    {XVHResult(0x8004EB01U), "E_XV_ERRNO_EILSEQ",
     "O texto contém uma sequência de caracteres inválida; corrija a codificação do texto."},
    {XVHResult(0x8004EB02U), "E_XV_ERRNO_STRUNCATE",
     "O texto foi cortado por falta de espaço no destino; informe um texto menor."},
    {XVHResult(0x80070005U), "E_ACCESSDENIED",
     "O usuário do processo não tem permissão para a operação; verifique as permissões do "
     "diretório e do componente."},
    {XVHResult(0x8007000DU), "ERROR_INVALID_DATA",
     "Um documento da simulação não segue as regras; o log de erros diz qual documento e qual linha "
     "ou campo."},
    {XVHResult(0x8007000EU), "E_OUTOFMEMORY",
     "Não há memória suficiente para a operação; feche outros programas ou peça menos "
     "registros de cada vez."},
    {XVHResult(0x80070057U), "E_INVALIDARG",
     "Um dos valores informados não é aceito (empresa, data, chave, enumeração ou tamanho de "
     "texto); corrija o valor e repita."},
    {XVHResult(0x800705B4U), "ERROR_TIMEOUT",
     "O sistema de terceiro não respondeu no tempo esperado; confira o que foi gravado e repita mais "
     "tarde."},
    {XVHResult(0x800706BAU), "RPC_S_SERVER_UNAVAILABLE",
     "O servidor do componente não está no ar; repita a chamada e, se persistir, verifique o "
     "serviço e a rede."},
    {XVHResult(0x800706BEU), "RPC_S_CALL_FAILED",
     "A chamada ao servidor do componente foi interrompida; confira se o processo do servidor "
     "continua no ar antes de repetir."},
    {XVHResult(0x810809C7U), "E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA",
     "A base de dados foi gravada por uma versão mais nova do sistema; atualize o programa antes "
     "de abrir esta base."},
    {XVHResult(0x810809CAU), "E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE",
     "Foi pedida uma posição sem quantidade ou uma quantidade sem posição; informe as duas ou "
     "nenhuma."},
    {XVHResult(0x810809CBU), "E_XVCR_ARQUIVO_TRA_ENCONTRADO",
     "Existe um arquivo de transação (.tra) ao lado do arquivo de dados; uma conversão ou "
     "gravação não terminou, e a inicialização da base precisa concluí-la."},
    {XVHResult(0x810809D6U), "E_XVCR_RENOMEACAO_ARQUIVO",
     "O arquivo não pôde ser renomeado; verifique se outro programa o mantém aberto e se há "
     "permissão no diretório."},
    {XVHResult(0x810809D7U), "E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO",
     "O arquivo do grupo para a data pedida não existe; confira a data da chave do registro."},
    {XVHResult(0x810809D8U), "E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA",
     "O tamanho do arquivo não é múltiplo do tamanho do registro; o arquivo está truncado ou "
     "é de outro tipo, restaure-o de uma cópia."},
    {XVHResult(0x810809D9U), "E_XVCR_TENTATIVA_LER_POSICAO_ZERO",
     "Foi pedida a leitura da posição zero: o registro não está no arquivo; confira a chave "
     "informada."},
    {XVHResult(0x810809DAU), "E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO",
     "A posição pedida fica depois do último registro do arquivo; confira a chave do registro."},
    {XVHResult(0x810809DBU), "E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO",
     "A gravação foi pedida para uma posição depois do fim do arquivo; nada foi gravado, "
     "confira a chave do registro."},
    {XVHResult(0x810809E3U), "E_XVCR_ARQUIVO_NAO_EXISTE",
     "O arquivo de dados não existe; confira a empresa e o diretório de dados."},
    {XVHResult(0x810809E7U), "E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA",
     "O arquivo de registro único não tem o tamanho da sua estrutura; está truncado ou é de "
     "outro tipo, restaure-o de uma cópia."},
    {XVHResult(0x810809F1U), "E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO",
     "O nome dado para o grupo de arquivos não tem a parte variável (sinais de interrogação); "
     "é uma falha do programa, avise o suporte."},
    {XVHResult(0x810809F2U), "E_XVCR_DELECAO_ARQUIVO",
     "O arquivo não pôde ser apagado; verifique se outro programa o mantém aberto e se ele é "
     "somente leitura."},
    {XVHResult(0x81080A04U), "E_XVCR_COMPONENTE_NAO_INICIALIZADO",
     "O componente não está inicializado; chame a inicialização com empresa, usuário e "
     "sessão antes das outras operações."},
    {XVHResult(0x81080A3EU), "E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA",
     "O cabeçalho do arquivo é de uma versão mais nova do sistema; atualize o programa."},
    {XVHResult(0x81080A3FU), "E_XVCR_CRC_CABECALHO_NAO_CONFERE",
     "O cabeçalho do arquivo está danificado (CRC não confere); o arquivo não foi alterado, "
     "restaure-o de uma cópia."},
    {XVHResult(0x81080A43U), "E_XVCR_NOME_ARQUIVO_NAO_CONFERE",
     "O nome gravado no cabeçalho não é o nome do arquivo; o arquivo foi renomeado ou trocado, "
     "devolva-lhe o nome original."},
    {XVHResult(0x81080A50U), "E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS",
     "O arquivo consta do controle de criação, mas não está no diretório; foi apagado ou "
     "movido por fora, restaure-o de uma cópia."},
    {XVHResult(0x81080AA9U), "E_XVCR_COLUNA_INDEXACAO_INVALIDA",
     "Foi usado um índice que o arquivo não tem; é uma falha do programa, avise o suporte."},
    {XVHResult(0x81080AAAU), "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA",
     "Nenhum registro tem a chave procurada; confira a chave e o sistema de terceiro."},
    {XVHResult(0x81080AACU), "E_XVCR_INDEXACAO_COM_POSICAO_ZERO",
     "O registro tem a chave zerada e este índice não aceita chave zero; nada foi gravado, "
     "informe a chave."},
    {XVHResult(0x81080AADU), "E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA",
     "Já existe um registro com esta chave e ela não pode se repetir; nada foi gravado."},
    {XVHResult(0x81080BB1U), "E_XVCR_PARAMETRO_INVALIDO_RUNTIME",
     "Uma função recebeu um parâmetro inválido e a chamada foi interrompida; guarde o log de "
     "erros e avise o suporte."},
    {XVHResult(0x81080BFDU), "E_XVCR_VERSAO_INCOMPATIVEL",
     "O registro de inicialização, ou a base aberta só para leitura, é de uma versão que não é aceita; "
     "atualize o programa chamador ou abra a base uma vez para gravação, o que a converte."},
    {XVHResult(0x81080C07U), "E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE",
     "O cabeçalho do arquivo não tem o tamanho esperado; o arquivo está truncado, restaure-o de "
     "uma cópia."},
    {XVHResult(0x81080C08U), "E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE",
     "O tamanho do arquivo não é o que o cabeçalho registra; a última gravação não terminou "
     "ou o arquivo foi alterado por fora, restaure-o de uma cópia."},
    {XVHResult(0x81080C09U), "E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO",
     "O arquivo foi criado por uma versão mais nova do sistema; atualize o programa."},
    {XVHResult(0x81080C0AU), "E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO",
     "O arquivo foi modificado por uma versão mais nova do sistema; atualize o programa."},
    {XVHResult(0x81080C17U), "E_XVCR_CRC_INICIALIZACAO_INVALIDO",
     "O registro de inicialização chegou danificado (CRC não confere); o programa chamador deve "
     "remontá-lo e repetir."},
    {XVHResult(0x81080C19U), "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA",
     "O registro de inicialização tem campos impossíveis; corrija o programa chamador."},
    {XVHResult(0x81080C5EU), "E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA",
     "Um texto do arquivo declara mais caracteres do que o arquivo tem; o arquivo está truncado "
     "ou danificado, restaure-o de uma cópia."},
    {XVHResult(0x81080C67U), "E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA",
     "A integração só pode ficar sem a chave do sistema de terceiro enquanto pendente, com erro "
     "ou cancelada; informe a chave."},
    {XVHResult(0x81080C69U), "E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA",
     "O status foi informado sem a chave da integração e sem a chave do sistema de terceiro; "
     "informe uma das duas."},
    {XVHResult(0x81080CEBU), "E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA",
     "A chave do registro está zerada; informe a chave do registro a que a operação se refere."},
    {XVHResult(0x81080D06U), "E_XVCR_ARQUIVO_CAB_ENCONTRADO",
     "Existe uma cópia (.cab) deixada por uma inclusão de cabeçalho que não terminou; confira "
     "os dois arquivos e retire a cópia antes de repetir."},
};
// clang-format on

constexpr XVUInt Codigo(const SMensagemCodigo& r) {
    return static_cast<XVUInt>(r.hr);
}

static_assert(std::ranges::is_sorted(k_aMensagens, {}, Codigo), "the search needs ascending codes");

}  // namespace

const SMensagemCodigo* XVBuscaMensagem(HRESULT hr) {
    const auto* p = std::ranges::lower_bound(k_aMensagens, static_cast<XVUInt>(hr), {}, Codigo);
    return p != std::end(k_aMensagens) && p->hr == hr ? p : nullptr;
}

const SMensagemCodigo* XVBuscaMensagemPorNome(std::string_view sNome) {
    const auto bIgual = [&](const SMensagemCodigo& r) { return XVIgualSemCaixa(r.sNome, sNome); };
    const auto* p = std::ranges::find_if(k_aMensagens, bIgual);
    return p != std::end(k_aMensagens) ? p : nullptr;
}
