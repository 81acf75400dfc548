// Tells what a conversion does while it does it: one line for each file.
#pragma once

#include "middleware/ConversaoMiddleware.h"
#include "tools/xvcr/output/XVSaida.h"

class CXVSaidaConversao : public IXVObservadorConversao {
  public:
    explicit CXVSaidaConversao(CXVSaida& rSaida) : m_rSaida(rSaida) {}

    void OnInicioPasso(XVUShort usPasso, std::size_t uiQtdArquivos) override;
    void OnArquivoConvertido(XVUShort usPasso, const std::string& sNomeArquivo,
                             XVUInt64 uiQtdRegistros) override;
    void OnFimPasso(XVUShort usPasso) override;

    // The whole of it; usVersao: of the store before.
    void Resume(XVUShort usVersao);

  private:
    CXVSaida& m_rSaida;
    std::size_t m_uiArquivosPasso = 0;  // of the step in progress
    std::size_t m_uiFeitosPasso = 0;
    XVUInt64 m_uiRegistrosPasso = 0;
    std::size_t m_uiPassos = 0;
    std::size_t m_uiArquivos = 0;
    XVUInt64 m_uiRegistros = 0;
};
