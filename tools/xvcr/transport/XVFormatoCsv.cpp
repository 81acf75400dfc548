// Comma-separated values, as RFC 4180 has them: CR LF, and quotation marks where a value needs them.
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVTextoTela.h"
#include "tools/xvcr/transport/XVFormatos.h"
#include "tools/xvcr/transport/XVValoresTabela.h"

namespace {

using CXVDados = CXVDadosCR_IntegracaoMiddleware;

// What stands in the column of a text that is not valid UTF-8 is its base64, and the last column says so.
constexpr std::string_view k_sColunaBase64 = "base64";

void AnexaCelula(std::string& rPara, std::string_view sValor) {
    if (sValor.find_first_of("\",\r\n") == std::string_view::npos) {
        rPara += sValor;
        return;
    }
    rPara += '"';
    for (const char c : sValor) {
        if (c == '"') rPara += '"';
        rPara += c;
    }
    rPara += '"';
}

}  // namespace

void CXVFormatoCsv::Comeca(const std::string&, std::string* psPara) {
    XVValoresTabela::Percorre(CXVDados(), m_bTextos, [&](std::string_view sNome, const auto&) {
        *psPara += sNome;
        *psPara += ',';
    });
    *psPara += k_sColunaBase64;
    *psPara += "\r\n";
}

void CXVFormatoCsv::Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) {
    if (rIntegracao.eTipo != SIntegracaoTransportada::ETipo::eInteira) return;
    std::string sEmBase64;
    XVValoresTabela::Percorre(rIntegracao.dados, m_bTextos, [&](std::string_view sNome, const auto& rValor) {
        if (rValor.bBase64) sEmBase64 += (sEmBase64.empty() ? "" : " ") + std::string(sNome);
        AnexaCelula(*psPara, rValor.sTexto);
        *psPara += ',';
    });
    *psPara += sEmBase64 + "\r\n";
}
