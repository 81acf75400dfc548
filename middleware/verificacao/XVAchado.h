// What an examination of a store finds, in words for the people who use it: what is wrong, where, and what to
// do about it.
#pragma once

#include <string>
#include <vector>

#include "platform/XVTipos.h"

enum class EGravidade : std::uint8_t {
    eNota,   // worth knowing
    eAviso,  // to be looked at; nothing is lost
    eDano,   // the store is not sound
};

enum class EAchado : std::uint8_t {
    // Of integrations, in the order of EMotivo.
    eSemRegistro,
    eRegistroVazio,
    eRegistroImpossivel,
    eSemJSON,
    eSemMensagem,
    eSemRetorno,
    eTextoZerado,
    eTextoDeOutra,
    eSemIndice,
    eIndiceRepetido,
    eDiaRecusado,
    eAlterada,
    eIlegivel,
    eTextoIlegivel,
    eTextoDeduzido,
    eSemRegistroNemIndice,
    eTalvezSubstituida,
    // Of files.
    eArquivoRecusado,
    eArquivoIlegivel,
    eArquivoAusente,
    eSemCabecalho,
    eRegistroPelaMetade,
    eCadeiaPartida,
    eTextosDeslocados,
    eIndiceImpossivel,
    eLancamentoImpossivel,
    eLancamentoRepetido,
    eBlocoAlterado,
    eSelosInvalidos,
    eVersaoAnterior,
    eVersaoPosterior,
    eListadoDuasVezes,
    eCopiaDeixada,
    eConversaoInterrompida,
    eArquivoEstranho,
    eDiarioNaoConfere,
    eDiarioAConcluir,
    eEmUso,
    eQuantidade,
};

// Integrations of one day whose pointers follow each other.
struct SFaixa {
    XVUInt ulDe;
    XVUInt ulAte;
    bool operator==(const SFaixa&) const = default;
};

struct SXVAchado {
    EAchado eTipo = EAchado::eQuantidade;
    std::string sArquivo;
    XVUInt64 uiDia = 0;             // yyyymmdd; 0: of no day
    HRESULT hr = S_OK;              // what an opening of the file answers
    XVUInt64 uiQuantidade = 0;      // of integrations, records, texts, names or blocks
    std::vector<SFaixa> aFaixas{};  // the integrations
    std::string sDetalhe{};
};

struct SDescricaoAchado {
    const char* pszNome;  // for programs
    EGravidade eGravidade;
    const char* pszFrase;
    const char* pszFazer;  // what to do
};
const SDescricaoAchado& XVDescreveAchado(EAchado eTipo);

// What to do where the same store has files that could not be read (bHaIlegivel): damage beside them may be
// nothing but their missing, so nobody restores anything before they are read.
const char* XVOQueFazer(EAchado eTipo, bool bHaIlegivel);
