// JSON Lines, with counts and a sum at the end by which a reader knows that it has everything.
#include "support/values/XVCrc64.h"
#include "tools/xvcr/transport/XVFormatos.h"

void CXVFormatoLinhas::Comeca(const std::string& sEmpresa, std::string* psPara) {
    m_fim = {};
    Linha(SInicioExportacao{SInicioExportacao::k_ulVersao, sEmpresa}, psPara);
}

void CXVFormatoLinhas::Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) {
    m_fim.Conta(rIntegracao.eTipo);
    Linha(rIntegracao, psPara);
}

void CXVFormatoLinhas::Inclui(const CXVDadosMapa& rDados, std::string* psPara) {
    ++m_fim.ulMapa;
    Linha(rDados, psPara);
}

void CXVFormatoLinhas::Inclui(const CXVDadosDataHora& rDados, std::string* psPara) {
    ++m_fim.ulDatasHoras;
    Linha(rDados, psPara);
}

void CXVFormatoLinhas::Termina(std::string* psPara) {
    Linha(m_fim, psPara);
}

template <class T>
void CXVFormatoLinhas::Linha(const T& rDados, std::string* psPara) {
    const std::size_t uiDe = psPara->size();
    XVLinhaExportacao::Anexa(*psPara, rDados);
    *psPara += '\n';
    m_fim.uiSoma = XVCrc64(psPara->data() + uiDe, psPara->size() - uiDe, m_fim.uiSoma);
}
