#include "middleware/verificacao/XVAchado.h"

#include <cstddef>
#include <iterator>

namespace {

constexpr const char* k_pszRestaura =
    "Antes de tudo, copie o diretório inteiro da empresa como está. Depois restaure o diretório inteiro da "
    "empresa da cópia de segurança, ou use xvcr recupera.";
constexpr const char* k_pszNada = "Nada.";

constexpr SDescricaoAchado k_aDescricoes[] = {
    {"semRegistro", EGravidade::eDano,
     "o índice conhece a integração, mas o arquivo do dia não tem o registro dela", k_pszRestaura},
    {"registroVazio", EGravidade::eDano, "o registro da integração está vazio (só zeros)", k_pszRestaura},
    {"registroImpossivel", EGravidade::eDano, "o registro da integração tem datas ou chaves impossíveis",
     k_pszRestaura},
    {"semJSON", EGravidade::eDano, "falta o JSON enviado", k_pszRestaura},
    {"semMensagem", EGravidade::eDano, "falta a mensagem de retorno", k_pszRestaura},
    {"semRetorno", EGravidade::eDano, "falta o JSON retornado", k_pszRestaura},
    {"textoZerado", EGravidade::eDano, "um texto da integração tem zeros no lugar do que foi gravado",
     k_pszRestaura},
    {"textoDeOutra", EGravidade::eDano,
     "duas integrações apontam o mesmo texto: uma delas mostra o texto da outra",
     "Compare as duas com o sistema externo; se houver dúvida, restaure o diretório inteiro da "
     "empresa da cópia de segurança."},
    {"semIndice", EGravidade::eDano, "a integração está no arquivo do dia e não no índice: ninguém a acha",
     k_pszRestaura},
    {"indiceRepetido", EGravidade::eDano, "o índice traz a integração mais de uma vez", k_pszRestaura},
    {"diaRecusado", EGravidade::eDano, "um arquivo do dia é recusado, e a integração não pode ser lida",
     k_pszRestaura},
    {"alterada", EGravidade::eDano,
     "os bytes em volta da integração não são mais os selados, e nenhuma operação os mudou",
     "Compare com a cópia de segurança; examine o disco."},
    {"ilegivel", EGravidade::eDano, "o registro da integração está num trecho do disco que não pôde ser lido",
     k_pszRestaura},
    {"textoIlegivel", EGravidade::eDano,
     "um texto da integração está num trecho do disco que não pôde ser lido", k_pszRestaura},
    {"textoDeduzido", EGravidade::eDano,
     "um texto da integração está depois de um trecho danificado: só a contagem a partir do fim diz que é "
     "dela",
     k_pszRestaura},
    {"semRegistroNemIndice", EGravidade::eDano,
     "o cabeçalho do arquivo do dia conta a integração, mas nem o arquivo nem o índice a têm", k_pszRestaura},
    {"talvezSubstituida", EGravidade::eAviso,
     "o registro não está no índice; se foi substituído por outro do banco com a mesma chave, isso é o "
     "normal",
     "Nada, se o banco (OfficialBank) repete chaves; o log geral do mês não está mais aqui para dizer."},
    {"arquivoRecusado", EGravidade::eDano, "o arquivo é recusado na abertura", k_pszRestaura},
    {"arquivoIlegivel", EGravidade::eDano, "o arquivo não pôde ser lido até o fim",
     "Confira as permissões e o disco, e verifique de novo."},
    {"arquivoAusente", EGravidade::eDano, "o arquivo devia estar na pasta e não está",
     "Procure-o (outra pasta, lixeira, quarentena do antivírus) e devolva-o; senão, copie o "
     "diretório da empresa como está e restaure o diretório inteiro dela, ou use xvcr recupera."},
    {"semCabecalho", EGravidade::eAviso, "o arquivo, de um programa antigo, ainda não tem cabeçalho",
     "Nada: a próxima abertura para gravar o cria."},
    {"registroPelaMetade", EGravidade::eDano, "o arquivo termina no meio de um registro", k_pszRestaura},
    {"cadeiaPartida", EGravidade::eDano,
     "a sequência de textos se parte: um texto diz ter mais bytes do que há", k_pszRestaura},
    {"textosDeslocados", EGravidade::eDano,
     "há zeros no lugar de textos: os seguintes mudaram de posição, e integrações mostram o texto de outras",
     k_pszRestaura},
    {"indiceImpossivel", EGravidade::eDano, "o índice tem registros que não nomeiam integração alguma",
     k_pszRestaura},
    {"lancamentoImpossivel", EGravidade::eDano, "o arquivo tem registros impossíveis ou sem chave",
     k_pszRestaura},
    {"lancamentoRepetido", EGravidade::eAviso,
     "o arquivo tem mais de um registro com a mesma chave; vale o primeiro",
     "Nada a temer; se o valor que aparece não é o esperado, grave-o de novo."},
    {"blocoAlterado", EGravidade::eDano,
     "há blocos de 64 KiB que não são mais os selados, e nenhuma operação os mudou",
     "Compare com a cópia de segurança; examine o disco."},
    {"selosInvalidos", EGravidade::eAviso, "o arquivo dos selos não confere: nada foi comparado com ele",
     "Sele de novo com xvcr verifica --sela."},
    {"versaoAnterior", EGravidade::eDano,
     "a base é de uma versão anterior: só os cabeçalhos foram verificados",
     "Faça uma cópia de segurança do diretório inteiro da empresa, converta com xvcr converte e verifique de "
     "novo."},
    {"versaoPosterior", EGravidade::eDano, "a base é de um programa mais novo", "Atualize o programa."},
    {"listadoDuasVezes", EGravidade::eAviso, "o controle de criação traz o nome mais de uma vez", k_pszNada},
    {"copiaDeixada", EGravidade::eDano, "uma cópia transitória que ninguém conhece está ao lado do arquivo",
     "Leve-a para outra pasta, depois de saber de onde veio, e abra de novo."},
    {"conversaoInterrompida", EGravidade::eNota, "uma conversão ou troca de arquivo ficou pelo meio",
     "Nada: a próxima abertura para gravar a conclui."},
    {"arquivoEstranho", EGravidade::eNota, "o arquivo não é da base", k_pszNada},
    {"diarioNaoConfere", EGravidade::eDano,
     "o processo que gravava terminou sem fechar a base, e o diário dele não explica os arquivos",
     k_pszRestaura},
    {"diarioAConcluir", EGravidade::eNota,
     "o processo que gravava terminou sem fechar a base; o que ele deixou é visto aqui já concluído",
     "Nada: o próximo uso conclui."},
    {"emUso", EGravidade::eNota, "a base está em uso por outro processo; só operações inteiras são vistas",
     k_pszNada},
};
static_assert(std::size(k_aDescricoes) == static_cast<std::size_t>(EAchado::eQuantidade));

}  // namespace

const SDescricaoAchado& XVDescreveAchado(EAchado eTipo) {
    return k_aDescricoes[static_cast<std::size_t>(eTipo)];
}

const char* XVOQueFazer(EAchado eTipo, bool bHaIlegivel) {
    const char* pszFazer = XVDescreveAchado(eTipo).pszFazer;
    return bHaIlegivel && pszFazer == k_pszRestaura
               ? "Primeiro torne legível o arquivo acima e verifique de novo."
               : pszFazer;
}
