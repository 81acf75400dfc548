// Result codes of the engine, the store and the component. Names and values are fixed: they travel to
// clients and stand in logs. The sentence for a person is found through support/messages/XVMensagens.h.
#pragma once

#include "platform/XVTipos.h"

// Record files, text files, single-record files.
inline constexpr HRESULT E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA = XVHResult(0x810809C7U);
inline constexpr HRESULT E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE = XVHResult(0x810809CAU);
inline constexpr HRESULT E_XVCR_ARQUIVO_TRA_ENCONTRADO = XVHResult(0x810809CBU);
inline constexpr HRESULT E_XVCR_RENOMEACAO_ARQUIVO = XVHResult(0x810809D6U);
inline constexpr HRESULT E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO = XVHResult(0x810809D7U);
inline constexpr HRESULT E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA = XVHResult(0x810809D8U);
inline constexpr HRESULT E_XVCR_TENTATIVA_LER_POSICAO_ZERO = XVHResult(0x810809D9U);
inline constexpr HRESULT E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO = XVHResult(0x810809DAU);
inline constexpr HRESULT E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO = XVHResult(0x810809DBU);
inline constexpr HRESULT E_XVCR_ARQUIVO_NAO_EXISTE = XVHResult(0x810809E3U);
inline constexpr HRESULT E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA = XVHResult(0x810809E7U);
inline constexpr HRESULT E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO = XVHResult(0x810809F1U);
inline constexpr HRESULT E_XVCR_DELECAO_ARQUIVO = XVHResult(0x810809F2U);
inline constexpr HRESULT E_XVCR_COMPONENTE_NAO_INICIALIZADO = XVHResult(0x81080A04U);
inline constexpr HRESULT E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA = XVHResult(0x81080A3EU);
inline constexpr HRESULT E_XVCR_CRC_CABECALHO_NAO_CONFERE = XVHResult(0x81080A3FU);
inline constexpr HRESULT E_XVCR_NOME_ARQUIVO_NAO_CONFERE = XVHResult(0x81080A43U);
inline constexpr HRESULT E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS = XVHResult(0x81080A50U);
inline constexpr HRESULT E_XVCR_COLUNA_INDEXACAO_INVALIDA = XVHResult(0x81080AA9U);
inline constexpr HRESULT E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA = XVHResult(0x81080AAAU);
inline constexpr HRESULT E_XVCR_INDEXACAO_COM_POSICAO_ZERO = XVHResult(0x81080AACU);
inline constexpr HRESULT E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA = XVHResult(0x81080AADU);
inline constexpr HRESULT E_XVCR_PARAMETRO_INVALIDO_RUNTIME = XVHResult(0x81080BB1U);
inline constexpr HRESULT E_XVCR_VERSAO_INCOMPATIVEL = XVHResult(0x81080BFDU);
inline constexpr HRESULT E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE = XVHResult(0x81080C07U);
inline constexpr HRESULT E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE = XVHResult(0x81080C08U);
inline constexpr HRESULT E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO = XVHResult(0x81080C09U);
inline constexpr HRESULT E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO = XVHResult(0x81080C0AU);
inline constexpr HRESULT E_XVCR_CRC_INICIALIZACAO_INVALIDO = XVHResult(0x81080C17U);
inline constexpr HRESULT E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA = XVHResult(0x81080C19U);
inline constexpr HRESULT E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA = XVHResult(0x81080C5EU);
inline constexpr HRESULT E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA =
    XVHResult(0x81080C67U);
inline constexpr HRESULT E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA = XVHResult(0x81080C69U);
inline constexpr HRESULT E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA = XVHResult(0x81080CEBU);
inline constexpr HRESULT E_XVCR_ARQUIVO_CAB_ENCONTRADO = XVHResult(0x81080D06U);

// Exchange with external systems.
inline constexpr HRESULT E_XVCR_PROVEDOR_SEM_RESPOSTA = XVHResult(0x81080D20U);
inline constexpr HRESULT E_XVCR_PROVEDOR_SUSPENSO = XVHResult(0x81080D21U);

// File-exception causes, under the names that traces show.
inline constexpr HRESULT eBadSeek = XVHResult(0x80043E8CU);
inline constexpr HRESULT eEndOfFile = XVHResult(0x80043E95U);
inline constexpr HRESULT eHardIO = XVHResult(0x80043EA7U);
inline constexpr HRESULT eFileNotFound = XVHResult(0x80043EB7U);
inline constexpr HRESULT eBadPath = XVHResult(0x80043EBFU);
inline constexpr HRESULT eTooManyOpenFiles = XVHResult(0x80043EC7U);
inline constexpr HRESULT eAccessDenied = XVHResult(0x80043ED0U);
inline constexpr HRESULT eXVReadOnly = XVHResult(0x80043ED1U);
inline constexpr HRESULT eInvalidFile = XVHResult(0x80043EE2U);
inline constexpr HRESULT eDirectoryFull = XVHResult(0x80043EE5U);
inline constexpr HRESULT eSharingViolation = XVHResult(0x80043EEEU);
inline constexpr HRESULT eLockViolation = XVHResult(0x80043F00U);
inline constexpr HRESULT eDiskFull = XVHResult(0x80043F08U);
inline constexpr HRESULT eXVGenericError = XVHResult(0x80043F10U);

// Generic codes of the suite: exception classes and errno values (support/faults/XVExcecoes.h).
inline constexpr HRESULT E_XV_ERRNO_DESCONHECIDO = XVHResult(0x8004EA60U);
inline constexpr HRESULT E_XV_EXCECAO_SEM_CODIGO = XVHResult(0x8004EA61U);
inline constexpr HRESULT E_XV_EXCECAO_MEMORIA = XVHResult(0x8004EA62U);
inline constexpr HRESULT E_XV_EXCECAO_GENERICA = XVHResult(0x8004EA63U);
inline constexpr HRESULT E_XV_BAD_ALLOC = XVHResult(0x8004EA64U);
inline constexpr HRESULT E_XV_STD_EXCEPTION = XVHResult(0x8004EA65U);
inline constexpr HRESULT E_XV_EXCECAO_DESCONHECIDA = XVHResult(0x8004EA66U);
inline constexpr HRESULT E_XV_EXCECAO_ARGUMENTO = XVHResult(0x8004EA67U);
inline constexpr HRESULT E_XV_ERRNO_PRIMEIRO = XVHResult(0x8004EADCU);
