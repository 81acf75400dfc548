// What the commands share: who asks for what, where results go, and the open store.
#pragma once

#include <functional>
#include <memory>

#include "tools/xvcr/IXVOperacoes.h"
#include "tools/xvcr/output/XVSaida.h"
#include "tools/xvcr/text/XVErros.h"

enum class EUsoDaBase : bool { eLeitura, eGravacao };

class CXVContexto {
  public:
    SAcesso acesso;
    bool bServidor = false;
    CXVSaida saida;
    // What the command line asked for, set while it is read and run afterwards.
    std::function<void()> fAcao;
    ESaida eSaida = ESaida::eSucesso;  // of an action that ended without exception

    // The store of the options, opened at the first call. A failure is thrown as CXVErro.
    IXVOperacoes& Abre(EUsoDaBase eUso);
    // Directory and company from the options or the environment, without opening anything.
    void CompletaAcesso();
    void ExigeEmpresa() const;
    // Closes the store; a failure is thrown as CXVErro.
    void Fecha();

  private:
    std::unique_ptr<IXVOperacoes> m_pOperacoes;
};
