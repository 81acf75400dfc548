#include "tools/xvcr/commands/XVSaidaConversao.h"

void CXVSaidaConversao::OnInicioPasso(XVUShort usPasso, std::size_t uiQtdArquivos) {
    m_uiArquivosPasso = uiQtdArquivos;
    m_uiFeitosPasso = 0;
    m_uiRegistrosPasso = 0;
    if (!m_rSaida.EhJson())
        m_rSaida.Linha("passo " + std::to_string(usPasso) + ": " + std::to_string(uiQtdArquivos) +
                       " arquivo(s)");
    m_rSaida.Termina();
}

void CXVSaidaConversao::OnArquivoConvertido(XVUShort usPasso, const std::string& sNomeArquivo,
                                            XVUInt64 uiQtdRegistros) {
    ++m_uiFeitosPasso;
    m_uiRegistrosPasso += uiQtdRegistros;
    if (m_rSaida.EhJson())
        m_rSaida.LinhaJson(
            XVJson{{"passo", usPasso}, {"arquivo", sNomeArquivo}, {"registros", uiQtdRegistros}});
    else
        m_rSaida.Linha("  " + std::to_string(m_uiFeitosPasso) + '/' + std::to_string(m_uiArquivosPasso) +
                       "  " + sNomeArquivo + "  " + std::to_string(uiQtdRegistros) + " registros");
    m_rSaida.Termina();
}

void CXVSaidaConversao::OnFimPasso(XVUShort usPasso) {
    ++m_uiPassos;
    m_uiArquivos += m_uiFeitosPasso;
    m_uiRegistros += m_uiRegistrosPasso;
    if (!m_rSaida.EhJson())
        m_rSaida.Linha("passo " + std::to_string(usPasso) +
                       " concluído: " + std::to_string(m_uiRegistrosPasso) + " registros");
    m_rSaida.Termina();
}

void CXVSaidaConversao::Resume(XVUShort usVersao) {
    if (m_rSaida.EhJson()) {
        m_rSaida.LinhaJson(XVJson{{"versaoAnterior", usVersao},
                                  {"versao", k_usVersaoAtualBase},
                                  {"passos", m_uiPassos},
                                  {"arquivos", m_uiArquivos},
                                  {"registros", m_uiRegistros}});
    } else if (m_uiPassos == 0) {
        m_rSaida.Linha("a base já está na versão " + std::to_string(k_usVersaoAtualBase));
    } else {
        m_rSaida.Linha("convertida da versão " + std::to_string(usVersao) + " para a " +
                       std::to_string(k_usVersaoAtualBase) + ": " + std::to_string(m_uiArquivos) +
                       " arquivo(s), " + std::to_string(m_uiRegistros) + " registros");
    }
}
