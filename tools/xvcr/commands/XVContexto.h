// What the commands share: who asks for what, where results go, and the client of the store.
#pragma once

#include <functional>
#include <optional>

#include "client/XVCliente.h"
#include "tools/xvcr/output/XVSaida.h"
#include "tools/xvcr/text/XVErros.h"

enum class EUsoDaBase : bool { eLeitura, eGravacao };

class CXVContexto {
  public:
    XVCliente::SIdentificacao identificacao;
    XVCliente::SLojaLocal loja;
    bool bServidor = false;  // by the server instead of the store's files
    CXVSaida saida;
    // What the command line asked for, set while it is read and run afterwards.
    std::function<void()> fAcao;
    ESaida eSaida = ESaida::eSucesso;  // of an action that ended without exception

    // The client, connected by the door of the options at the first call. A failure is thrown as CXVErro.
    XVCliente::CXVCliente& Abre(EUsoDaBase eUso);
    // Directory and company from the options or the environment, without opening anything.
    void CompletaAcesso();
    void ExigeEmpresa() const;
    void ExigeAlgumaEmpresa() const;  // the same of a text that may name several
    // The module directory of the options or of the installation; none is thrown as CXVErro.
    std::string GetDiretorioModulo() const;
    // The same; one that is configured and does not exist is thrown too.
    std::string GetDiretorioQueExiste() const;
    // A company that has a store, for what would only look at one or would make one by mistake.
    void ExigeBase() const;
    // Disconnects; a failure of closing the store is thrown as CXVErro.
    void Fecha();

  private:
    HRESULT Conecta();

    std::optional<XVCliente::CApartamento> m_Apartamento;  // where the server is used
    XVCliente::CXVCliente m_Cliente;
};
