// Causes of failed file operations.
#include "support/messages/XVMensagensTabela.h"

namespace {

using enum EAssuntoMensagem;

#define XV_CAUSA_TENTATIVAS "A abertura tentou por uns 5 segundos. Nada foi mudado."

// clang-format off
constexpr SMensagemCodigo k_aArquivo[] = {
    {XVHResult(0x80043E8CU), "eBadSeek", eArquivos,
     "O posicionamento no arquivo falhou; verifique o disco e o log do sistema, depois rode \"xvcr "
     "verifica\".",
     "O sistema não chegou à posição pedida: dispositivo que saiu do ar ou arquivo danificado.",
     "Olhe o log do sistema e o disco, depois repita. Persistindo: " XV_ACAO_DANO},
    {XVHResult(0x80043E95U), "eEndOfFile", eArquivos,
     "O arquivo terminou antes do esperado: outro programa o encurtou; pare esse programa e rode \"xvcr "
     "verifica\".",
     "O arquivo encolheu enquanto era lido: outro programa grava nele.",
     "Ache e pare o programa que mexe no diretório de dados. Depois: " XV_ACAO_DANO},
    {XVHResult(0x80043EA7U), "eHardIO", eArquivos,
     "O dispositivo acusou um erro físico; pare de gravar e verifique o disco.",
     "O disco, o cabo ou o compartilhamento falhou. Não se sabe o que chegou ao disco.",
     "Pare o que grava, copie o diretório inteiro para outro disco e troque o dispositivo. Na cópia: "
     XV_ACAO_DANO},
    {XVHResult(0x80043EB7U), "eFileNotFound", eArquivos,
     "O arquivo não foi encontrado; confira se alguém o moveu e rode \"xvcr verifica\".",
     "O arquivo sumiu enquanto era usado. Na simulação: uma regra nomeia um documento que não está em "
     "documentos.",
     "Devolva o arquivo que o log de erros nomeia, ou corrija a regra da simulação, e repita."},
    {XVHResult(0x80043EBFU), "eBadPath", eArquivos,
     "O diretório não existe: confira a empresa e o diretório do módulo (--diretorio, XVCR_DIRETORIO ou o "
     "valor Path).",
     "O código da empresa está errado, pois quem só lê não cria a base; ou o diretório do módulo não está "
     "configurado; ou a unidade não está conectada.",
     "Confira a empresa (\"xvcr empresas\" lista as que existem) e o diretório do módulo; configure Path, "
     "ou use --diretorio, ou conecte a unidade. Uma base nova nasce na primeira gravação."},
    {XVHResult(0x80043EC7U), "eTooManyOpenFiles", eArquivos,
     "Há arquivos abertos demais no processo ou na máquina; feche programas ou aumente o limite.",
     "O processo ou o sistema ficou sem descritores. Nada foi mudado.",
     "Aumente o limite de arquivos abertos ou feche programas, e repita."},
    {XVHResult(0x80043ED0U), "eAccessDenied", eArquivos,
     "O acesso ao arquivo foi negado; verifique as permissões do usuário no diretório de dados.",
     "Faltam direitos no arquivo ou num diretório acima dele; ou o arquivo é um vínculo simbólico; ou há um "
     "diretório no lugar do arquivo. Nada foi mudado.",
     "Dê ao usuário do processo os direitos de ler, gravar, criar, apagar e renomear no diretório de dados; "
     "ponha o próprio arquivo no lugar do vínculo."},
    {XVHResult(0x80043ED1U), "eXVReadOnly", eArquivos,
     "O arquivo é somente leitura ou a base foi aberta só para leitura; retire o atributo ou abra a base "
     "para gravação.",
     "O arquivo tem o atributo somente leitura, ou a operação grava e a base foi aberta só para consulta. "
     "Um arquivo somente leitura nunca é tomado por ausente.",
     "Retire o atributo, ou abra para gravação (em xvcr, sem --leitura)."},
    {XVHResult(0x80043EE2U), "eInvalidFile", eArquivos,
     "A operação foi feita sobre um arquivo fechado ou que não é um arquivo; guarde o log de erros e "
     "avise o suporte.",
     "O descritor não é mais o de um arquivo: outra falha o fechou antes.", XV_ACAO_SUPORTE},
    {XVHResult(0x80043EE5U), "eDirectoryFull", eArquivos,
     "O diretório ou o arquivo não aceita mais registros; não retire arquivos de dados dele, avise o "
     "suporte.",
     "O sistema de arquivos não aceita mais nomes no diretório, ou um arquivo chegou a 4.294.967.295 "
     "registros. Nada foi mudado.",
     "Não mova arquivos de dados para fora: o índice conta com todos. Logs de meses passados podem sair. Se "
     "não basta, passe a gravar em outra empresa ou num sistema de arquivos com limite maior; o suporte "
     "ajuda."},
    {XVHResult(0x80043EEEU), "eSharingViolation", eArquivos,
     "O arquivo está em uso por outro processo; feche o outro programa ou aguarde e repita.",
     "Outro servidor, outro xvcr que grava, um antivírus ou uma cópia de segurança mantém a base aberta. "
     XV_CAUSA_TENTATIVAS,
     "Encerre o outro programa ou aguarde; tire o diretório de dados do antivírus. Para só consultar, use "
     "--leitura; para gravar enquanto o servidor está no ar, --servidor."},
    {XVHResult(0x80043F00U), "eLockViolation", eArquivos,
     "Uma região do arquivo está bloqueada por outro processo; aguarde e repita.",
     "Outro programa bloqueia parte do arquivo. " XV_CAUSA_TENTATIVAS,
     "Encerre o outro programa ou aguarde, e repita."},
    {XVHResult(0x80043F08U), "eDiskFull", eArquivos,
     "O disco está cheio ou a cota acabou; libere espaço e repita, nada foi perdido.",
     "Não há espaço. A operação foi desfeita em todos os arquivos; ler e buscar continuam a funcionar.",
     "Libere espaço (logs de meses passados podem sair, arquivos de dados não) e repita a operação."},
    {XVHResult(0x80043F10U), "eXVGenericError", eArquivos,
     "O acesso ao arquivo falhou por uma causa sem nome próprio; veja o log de erros e o log do sistema.",
     "O sistema recusou por um motivo que não tem código aqui.",
     "A linha do log de erros traz o arquivo e o número do sistema; veja também o log do sistema e o "
     "disco."},
};
// clang-format on

static_assert(XVMensagensEmOrdem(k_aArquivo), "the search needs ascending codes");

}  // namespace

std::span<const SMensagemCodigo> XVMensagensTabela::Arquivos() {
    return k_aArquivo;
}
