// Following one company: what its general log tells, read from its store and written as JSON Lines.
//
// A line is written after the log told of it, with what the store holds then or later; the token in it says
// how far the log is told by this line and all before it. So what comes twice is harmless, and nothing that
// the log told is left out.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/xvcr/commands/XVContexto.h"
#include "tools/xvcr/logs/XVLogGeral.h"

// What the commands of all companies share.
struct SAcompanha {
    CXVContexto& rContexto;
    std::string sDiretorio;  // of the module
    XVUInt64 uiFlags;        // which texts are read
    std::function<bool()> fParar;
};

class CXVAcompanhamento {
  public:
    // Goes on from the position of ficha.
    CXVAcompanhamento(const SAcompanha& rTudo, SFicha ficha);
    // Begins: where the log ends now, or with a pass over the whole store.
    CXVAcompanhamento(const SAcompanha& rTudo, const std::string& sEmpresa, bool bPassagem);

    const std::string& GetEmpresa() const { return m_Ficha.sEmpresa; }
    // Writes what has come since the last round, or until it is told to stop. A failure is thrown as CXVErro,
    // and the next round goes on where this one failed.
    void Rodada();
    bool Escreveu() const { return m_bEscreveu; }  // in the last round

  private:
    struct SPedido {
        REG_XVDMC regDmc;
        bool bNova;
        SFicha depois;
    };

    void LeTudo();
    void Comeca();
    void Passa();
    void EscrevePedidos(const std::vector<SPedido>& rPedidos, bool bAusentes);
    void EscreveUm(const SPedido& rPedido, HRESULT hr, const CXVDadosCR_IntegracaoMiddleware& rDados);
    void Escreve(const char* pszEvento, const SFicha& rFicha, XVJson&& rMais = XVJson::object());
    std::vector<SPedido> Junta(const std::vector<SLinhaLogGeral>& rLinhas, const CPosicoesLog& rFim) const;
    XVJson DmcsDaChave(const CXVDadosCR_IntegracaoMiddleware& rDados);
    XVCliente::CXVCliente& Cliente();
    bool Parar() const { return m_rTudo.fParar(); }

    const SAcompanha& m_rTudo;
    SFicha m_Ficha;
    enum class EComeco : std::uint8_t { eNenhum, eNoFim, ePassagem } m_eComeco;
    const CXVLogGeral m_Log;
    std::unique_ptr<XVCliente::CXVCliente> m_pCliente;
    bool m_bEscreveu = false;
};
