// What the test that kills and the process that is killed agree on: the request, the machine around the
// store, and the entries of the map and of the date-times that bear a version.
#pragma once

#include <string>
#include <vector>

#include "tests/middleware/XVCenarioLoja.h"

// What the writer is asked to do; travels as its arguments.
struct SPedidoMorte {
    std::string sDiretorio;  // module directory
    XVUInt64 uiSemente = 0;
    XVUInt64 uiPrimeiraVersao = 1;  // each operation takes the next one
    unsigned uiOperacoes = 0;       // of each thread
    unsigned uiThreads = 1;
    unsigned uiVida = 0;  // how many writers there were before: sets day and time of day
    XVUInt ulDurabilidade = 0;

    std::vector<std::string> Argumentos() const;
    bool DeArgumentos(const std::vector<std::string>& lista);
    // The date-time at which this writer performs everything.
    XVUInt64 Agora() const;
};

// The module directory, the durability and the clock of a request in force for the life of the object.
class CXVMaquinaMorte {
  public:
    explicit CXVMaquinaMorte(const SPedidoMorte& rPedido);
    const CXVDonoFixo& GetDono() const { return m_dono; }

  private:
    CXVRegistroFalso m_registro;
    CXVRelogioFalso m_relogio;
    CXVGuardaRegistro m_guardaRegistro{m_registro};
    CXVGuardaRelogio m_guardaRelogio{m_relogio};
    CXVDonoFixo m_dono{"MATRIZ"};
};

// One of a few records of the map that belong to a thread.
constexpr XVUInt64 XVRegistroDoMapa(XVUInt64 uiSorteado, unsigned uiThread, unsigned uiThreads) {
    return 1 + uiSorteado % 5 * uiThreads + uiThread;
}
tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS XVMapaDaVersao(XVUInt64 uiRegistro, XVUInt64 uiVersao);
tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS XVDataHoraDaVersao(unsigned uiThread, XVUInt64 uiVersao);
