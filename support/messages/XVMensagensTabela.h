// The parts of the table of advice, for XVMensagens.cpp alone. Texts that several entries share are macros,
// so that they become part of the literals around them.
#pragma once

#include <algorithm>

#include "support/messages/XVMensagens.h"

// Ends the sentence of a damaged file; the files of a company belong together, so one alone is never
// restored.
#define XV_FRASE_DANO \
    "veja o dano com \"xvcr verifica\" e restaure o diretório inteiro da empresa ou use \"xvcr recupera\"."

#define XV_ACAO_DANO                                                                   \
    "Pare o que grava e guarde uma cópia do diretório da empresa como está. "       \
    "\"xvcr verifica\" diz o que está danificado. Havendo cópia de segurança, "     \
    "restaure o diretório inteiro, nunca um arquivo só; sem ela, \"xvcr recupera\" " \
    "monta outro diretório com tudo o que se lê."

#define XV_ACAO_SUPORTE                                                     \
    "Guarde o log de erros e avise o suporte; as linhas do mesmo instante " \
    "(\"xvcr registro\") dizem a função e o lugar."

consteval bool XVMensagensEmOrdem(std::span<const SMensagemCodigo> aMensagens) {
    return std::ranges::is_sorted(aMensagens, {}, [](const SMensagemCodigo& r) { return XVUInt(r.hr); });
}

namespace XVMensagensTabela {

std::span<const SMensagemCodigo> Sistema();   // 0x8000...., 0x8001...., 0x8004...., 0x8007...., 0x8008....
std::span<const SMensagemCodigo> Arquivos();  // 0x80043E8C to 0x80043F10
std::span<const SMensagemCodigo> Execucao();  // 0x8004EA60 to 0x8004EE47
std::span<const SMensagemCodigo> Base();      // 0x8108....

}  // namespace XVMensagensTabela
