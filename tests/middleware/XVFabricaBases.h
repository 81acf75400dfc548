// Stores as versions 0 to 4 left them, and what their records are at version 5; all byte by byte.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/middleware/XVBytesBase.h"

using TArquivos = std::map<std::string, std::string>;  // name in the data directory -> bytes

struct SRegistroAntigo {
    unsigned uiTipo = 0;
    unsigned uiNumero = 0;  // every other field follows from it
};

class CXVFabricaBases {
  public:
    // bCabecalho: with headers, as all but the oldest programs wrote them.
    CXVFabricaBases(unsigned uiVersao, bool bCabecalho) : m_uiVersao(uiVersao), m_bCabecalho(bCabecalho) {}

    // A store of uiMembros dates with uiRegistros integrations each, key map, date-times, index, texts.
    TArquivos Cria(unsigned uiMembros = 3, unsigned uiRegistros = 4) const;
    // Empty and missing files, foreign names beside the group's, leftovers of a step that was given up.
    TArquivos CriaComSujeira() const;
    // Payloads (without header) of the converted files at version 5.
    TArquivos DadosConvertidos(unsigned uiMembros = 3, unsigned uiRegistros = 4,
                               bool bFilialComoBase = false) const;

    static unsigned Renumerado(unsigned uiTipo);
    static std::string NomeMembro(unsigned uiMembro);

    // Payloads, by the version that reads them.
    static std::string Integracao(const SRegistroAntigo& rReg, unsigned uiVersao,
                                  bool bFilialComoBase = false);
    static std::string Chave(const SRegistroAntigo& rReg, unsigned uiVersao);
    static std::string DataHora(const SRegistroAntigo& rReg, unsigned uiVersao);

  private:
    std::string Arquivo(const std::string& sNome, const std::string& sDados) const;
    // Types 0 to 19 and beyond, so that every line of the renumbering is met.
    static unsigned Tipo(unsigned uiNumero) { return uiNumero % 23; }

    unsigned m_uiVersao;
    bool m_bCabecalho;
};
