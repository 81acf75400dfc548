// Exceptions and errors of the run time library inside a call.
#include "support/messages/XVMensagensTabela.h"

namespace {

using enum EAssuntoMensagem;

#define XV_CAUSA_INTEIRA "A operação está inteira ou ausente, nunca pela metade."

#define XV_CAUSA_ERRNO                                                                                   \
    "Uma função da biblioteca de execução, fora dos arquivos da base (que têm códigos próprios, " \
    "0x80043E8C a 0x80043F10), devolveu este erro. " XV_CAUSA_INTEIRA

#define XV_ACAO_ERRNO                                                          \
    "A linha do log de erros (\"xvcr registro\") diz a função e o arquivo. " \
    "Corrija o que a frase indica e repita; persistindo, avise o suporte."

#define XV_ACAO_FATAL                                                                                    \
    "Crie um componente novo e inicialize-o. Guarde o log de erros e o relatório de queda, se houver, " \
    "e avise o suporte; \"xvcr verifica\" confirma que a base está inteira."

// clang-format off
constexpr SMensagemCodigo k_aExecucao[] = {
    {XVHResult(0x8004EA60U), "E_XV_ERRNO_DESCONHECIDO", eExecucao,
     "A biblioteca de execução acusou um erro sem código conhecido; guarde o log de erros e avise o "
     "suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_SUPORTE},
    {XVHResult(0x8004EA61U), "E_XV_EXCECAO_SEM_CODIGO", eExecucao,
     "A operação foi interrompida por uma exceção do sistema sem código; guarde o log de erros e avise o "
     "suporte.",
     "Uma exceção saiu de uma função dentro da chamada. " XV_CAUSA_INTEIRA, XV_ACAO_SUPORTE},
    {XVHResult(0x8004EA62U), "E_XV_EXCECAO_MEMORIA", eExecucao,
     "A operação foi interrompida por falta de memória; feche outros programas e repita.",
     "A memória acabou dentro da chamada. " XV_CAUSA_INTEIRA,
     "Peça menos registros de cada vez, feche outros programas ou dê mais memória, e repita."},
    {XVHResult(0x8004EA63U), "E_XV_EXCECAO_GENERICA", eExecucao,
     "A operação foi interrompida por uma exceção da biblioteca de classes; guarde o log de erros e "
     "avise o suporte.",
     "Uma exceção saiu de uma função dentro da chamada. " XV_CAUSA_INTEIRA, XV_ACAO_SUPORTE},
    {XVHResult(0x8004EA64U), "E_XV_BAD_ALLOC", eExecucao,
     "Não houve memória para atender ao pedido; peça menos registros de cada vez ou feche outros "
     "programas.",
     "A memória acabou dentro da chamada. " XV_CAUSA_INTEIRA,
     "Peça menos registros de cada vez, feche outros programas ou dê mais memória, e repita."},
    {XVHResult(0x8004EA65U), "E_XV_STD_EXCEPTION", eExecucao,
     "A operação foi interrompida por uma exceção da biblioteca padrão; guarde o log de erros e avise o "
     "suporte.",
     "Uma exceção saiu de uma função dentro da chamada. " XV_CAUSA_INTEIRA, XV_ACAO_SUPORTE},
    {XVHResult(0x8004EA66U), "E_XV_EXCECAO_DESCONHECIDA", eExecucao,
     "A operação foi interrompida por uma exceção desconhecida; guarde o log de erros e avise o suporte.",
     "Uma exceção saiu de uma função dentro da chamada. " XV_CAUSA_INTEIRA, XV_ACAO_SUPORTE},
    {XVHResult(0x8004EA67U), "E_XV_EXCECAO_ARGUMENTO", eExecucao,
     "A operação foi interrompida porque um argumento não é aceito; confira os valores informados.",
     "Uma função recusou um valor da chamada. " XV_CAUSA_INTEIRA,
     "Confira os valores informados; se estão certos, guarde o log de erros e avise o suporte."},
    {XVHResult(0x8004EAC5U), "", eProcesso,
     "Erro fatal dentro do componente, que foi liberado; crie outro componente, guarde o log de erros e "
     "avise o suporte.",
     "O resultado diz que o componente não pode continuar: toda chamada seguinte responde 0x81080A04, "
     "também a inicialização. " XV_CAUSA_INTEIRA,
     XV_ACAO_FATAL, XVHResult(0x8004EADBU)},
    {XVHResult(0x8004EADCU), "E_XV_ERRNO_EPERM", eExecucao,
     "A operação não é permitida a este usuário; verifique as permissões.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EADDU), "E_XV_ERRNO_ENOENT", eExecucao,
     "O arquivo ou diretório não existe; confira o caminho.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EADEU), "E_XV_ERRNO_ESRCH", eExecucao,
     "O processo procurado não existe mais; repita a operação.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EADFU), "E_XV_ERRNO_EINTR", eExecucao,
     "A chamada foi interrompida pelo sistema; repita a operação.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE0U), "E_XV_ERRNO_EIO", eExecucao,
     "O dispositivo acusou erro de entrada ou saída; verifique o disco.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE1U), "E_XV_ERRNO_ENXIO", eExecucao,
     "O dispositivo ou endereço não existe; verifique a unidade configurada.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE2U), "E_XV_ERRNO_E2BIG", eExecucao,
     "A lista de argumentos é longa demais; reduza os parâmetros.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE3U), "E_XV_ERRNO_ENOEXEC", eExecucao,
     "O arquivo não é um programa executável; reinstale o programa.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE4U), "E_XV_ERRNO_EBADF", eExecucao,
     "Foi usado um arquivo que não está aberto; guarde o log de erros e avise o suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE5U), "E_XV_ERRNO_ECHILD", eExecucao,
     "Não há processo filho a aguardar; guarde o log de erros e avise o suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE6U), "E_XV_ERRNO_EAGAIN", eExecucao,
     "O recurso está ocupado neste momento; aguarde e repita.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE7U), "E_XV_ERRNO_ENOMEM", eExecucao,
     "Não há memória suficiente; feche outros programas e repita.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE8U), "E_XV_ERRNO_EACCES", eExecucao,
     "O acesso foi negado; verifique as permissões do usuário.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAE9U), "E_XV_ERRNO_EFAULT", eExecucao,
     "Foi usado um endereço de memória inválido; guarde o log de erros e avise o suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAEAU), "E_XV_ERRNO_EBUSY", eExecucao,
     "O dispositivo ou recurso está em uso; feche o outro programa e repita.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAEBU), "E_XV_ERRNO_EEXIST", eExecucao,
     "O arquivo já existe; confira o nome e de onde veio o existente.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAECU), "E_XV_ERRNO_EXDEV", eExecucao,
     "O arquivo não pode ser movido para outra unidade; confira para onde a operação move.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAEDU), "E_XV_ERRNO_ENODEV", eExecucao,
     "O dispositivo não existe; verifique a unidade configurada.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAEEU), "E_XV_ERRNO_ENOTDIR", eExecucao,
     "Parte do caminho não é um diretório; confira o caminho.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAEFU), "E_XV_ERRNO_EISDIR", eExecucao,
     "O caminho é um diretório e não um arquivo; confira o nome.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF0U), "E_XV_ERRNO_EINVAL", eExecucao,
     "Um argumento não é aceito; confira os valores informados.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF1U), "E_XV_ERRNO_ENFILE", eExecucao,
     "Há arquivos abertos demais na máquina; feche programas.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF2U), "E_XV_ERRNO_EMFILE", eExecucao,
     "Há arquivos abertos demais neste processo; reinicie-o ou aumente o limite.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF3U), "E_XV_ERRNO_ENOTTY", eExecucao,
     "A operação não se aplica a este dispositivo; guarde o log de erros e avise o suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF4U), "E_XV_ERRNO_EFBIG", eExecucao,
     "O arquivo passou do tamanho máximo que o sistema aceita; não retire arquivos de dados, avise o "
     "suporte.",
     XV_CAUSA_ERRNO,
     "Não mova arquivos de dados para fora: o índice conta com todos. Ponha o diretório num sistema de "
     "arquivos que aceita arquivos maiores, com tudo parado e o diretório inteiro."},
    {XVHResult(0x8004EAF5U), "E_XV_ERRNO_ENOSPC", eExecucao,
     "Não há espaço no disco; libere espaço e repita.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF6U), "E_XV_ERRNO_ESPIPE", eExecucao,
     "O arquivo não permite posicionamento; confira se não é um dispositivo.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF7U), "E_XV_ERRNO_EROFS", eExecucao,
     "A unidade é somente leitura; escolha outra ou libere a gravação.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF8U), "E_XV_ERRNO_EMLINK", eExecucao,
     "Há vínculos demais para o arquivo; confira quem os criou.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAF9U), "E_XV_ERRNO_EPIPE", eExecucao,
     "O outro lado da comunicação foi fechado; repita a operação.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFAU), "E_XV_ERRNO_EDOM", eExecucao,
     "Um valor está fora do domínio da função matemática; confira os valores informados.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFBU), "E_XV_ERRNO_ERANGE", eExecucao,
     "O resultado não cabe no destino; confira o tamanho dos valores informados.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFCU), "E_XV_ERRNO_EDEADLK", eExecucao,
     "A espera travaria o processo; repita a operação.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFDU), "E_XV_ERRNO_ENAMETOOLONG", eExecucao,
     "O nome do arquivo é longo demais; use um caminho mais curto.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFEU), "E_XV_ERRNO_ENOLCK", eExecucao,
     "Não há bloqueios disponíveis no sistema; aguarde e repita.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EAFFU), "E_XV_ERRNO_ENOSYS", eExecucao,
     "A função não é oferecida por este sistema; avise o suporte.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EB00U), "E_XV_ERRNO_ENOTEMPTY", eExecucao,
     "O diretório não está vazio; confira o que há nele.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EB01U), "E_XV_ERRNO_EILSEQ", eExecucao,
     "O texto contém uma sequência de caracteres inválida; corrija a codificação do texto.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EB02U), "E_XV_ERRNO_STRUNCATE", eExecucao,
     "O texto foi cortado por falta de espaço no destino; informe um texto menor.",
     XV_CAUSA_ERRNO, XV_ACAO_ERRNO},
    {XVHResult(0x8004EE47U), "", eProcesso,
     "Erro fatal dentro do componente, que foi liberado; crie outro componente, guarde o log de erros e "
     "avise o suporte.",
     "Como 0x8004EAC5: o componente não pode continuar. " XV_CAUSA_INTEIRA, XV_ACAO_FATAL},
};
// clang-format on

static_assert(XVMensagensEmOrdem(k_aExecucao), "the search needs ascending codes");

}  // namespace

std::span<const SMensagemCodigo> XVMensagensTabela::Execucao() {
    return k_aExecucao;
}
