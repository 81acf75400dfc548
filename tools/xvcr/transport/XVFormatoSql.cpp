// SQL that SQLite and PostgreSQL read alike. Numbers of 64 bits are texts: both have only signed ones. A text
// ends with its quotation mark and nothing but that mark is special in it, as the standard has it.
#include "support/values/XVCrc64.h"
#include "tools/xvcr/transport/XVFormatos.h"
#include "tools/xvcr/transport/XVValoresTabela.h"

namespace {

constexpr unsigned k_uiPorTransacao = 1000;  // rows
constexpr std::string_view k_sBase64 = "base64";

void AnexaLiteral(std::string& rPara, std::string_view sTexto) {
    rPara += '\'';
    for (std::size_t uiDe = 0; uiDe <= sTexto.size();) {
        const std::size_t uiAspa = std::min(sTexto.find('\'', uiDe), sTexto.size());
        rPara += sTexto.substr(uiDe, uiAspa - uiDe);
        if (uiAspa < sTexto.size()) rPara += "''";
        uiDe = uiAspa + 1;
    }
    rPara += '\'';
}

// sqlite3 reads the end of a line as a line feed, whichever it is: a carriage return in front of one would be
// lost. Something that the text does not hold stands for the pair, and the engine puts the pair in its place.
void AnexaTexto(std::string& rPara, std::string_view sTexto) {
    constexpr std::string_view k_sPar = "\r\n";
    std::size_t uiPar = sTexto.find(k_sPar);
    if (uiPar == std::string_view::npos) return AnexaLiteral(rPara, sTexto);
    std::string sMarca;
    for (XVUInt64 ui = XVCrc64(sTexto.data(), sTexto.size());; ++ui) {
        sMarca = '{' + std::to_string(ui) + '}';
        if (sTexto.find(sMarca) == std::string_view::npos) break;
    }
    std::string sMarcado;
    for (; uiPar != std::string_view::npos; uiPar = sTexto.find(k_sPar)) {
        sMarcado.append(sTexto.substr(0, uiPar)).append(sMarca);
        sTexto.remove_prefix(uiPar + k_sPar.size());
    }
    rPara += "replace(";
    AnexaLiteral(rPara, sMarcado.append(sTexto));
    rPara += ",'" + sMarca + "','\r'||'\n')";
}

std::string_view TipoSql(XVValoresTabela::ETipo eTipo) {
    switch (eTipo) {
        case XVValoresTabela::ETipo::eNumero:
            return "BIGINT";
        case XVValoresTabela::ETipo::eDataHora:
            return "TIMESTAMP WITH TIME ZONE";
        default:
            return "TEXT";
    }
}

template <class T>
void AnexaTabela(std::string_view sTabela, bool bTextos, std::string* psPara) {
    *psPara += "CREATE TABLE ";
    *psPara += sTabela;
    *psPara += " (\n";
    XVValoresTabela::Percorre(T(), bTextos, [&](std::string_view sNome, const auto& rValor) {
        *psPara += "  ";
        *psPara += sNome;
        *psPara += ' ';
        *psPara += TipoSql(rValor.eTipo);
        *psPara += sNome == "regDmc" ? " PRIMARY KEY,\n" : ",\n";
    });
    *psPara += "  ";
    *psPara += k_sBase64;
    *psPara += " TEXT\n);\n";
}

}  // namespace

void CXVFormatoSql::Comeca(const std::string&, std::string* psPara) {
    *psPara += "BEGIN;\n";
    AnexaTabela<CXVDadosCR_IntegracaoMiddleware>("integracao", m_bTextos, psPara);
    AnexaTabela<CXVDadosMapa>("mapa", true, psPara);
    AnexaTabela<CXVDadosDataHora>("datahora", true, psPara);
    m_uiNaTransacao = 0;
}

template <class T>
void CXVFormatoSql::Linha(std::string_view sTabela, const T& rDados, bool bTextos, std::string* psPara) {
    if (m_uiNaTransacao == k_uiPorTransacao) {
        *psPara += "COMMIT;\nBEGIN;\n";
        m_uiNaTransacao = 0;
    }
    ++m_uiNaTransacao;
    *psPara += "INSERT INTO ";
    *psPara += sTabela;
    *psPara += " VALUES(";
    std::string sEmBase64;
    XVValoresTabela::Percorre(rDados, bTextos, [&](std::string_view sNome, const auto& rValor) {
        using enum XVValoresTabela::ETipo;
        if (rValor.bBase64) sEmBase64 += (sEmBase64.empty() ? "" : " ") + std::string(sNome);
        if (rValor.eTipo == eNumero)
            *psPara += rValor.sTexto;
        else if (rValor.sTexto.empty())
            *psPara += "NULL";
        else
            AnexaTexto(*psPara, rValor.sTexto);
        *psPara += ',';
    });
    if (sEmBase64.empty())
        *psPara += "NULL";
    else
        AnexaTexto(*psPara, sEmBase64);
    *psPara += ");\n";
}

void CXVFormatoSql::Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) {
    if (rIntegracao.eTipo == SIntegracaoTransportada::ETipo::eInteira)
        Linha("integracao", rIntegracao.dados, m_bTextos, psPara);
}

void CXVFormatoSql::Inclui(const CXVDadosMapa& rDados, std::string* psPara) {
    Linha("mapa", rDados, true, psPara);
}

void CXVFormatoSql::Inclui(const CXVDadosDataHora& rDados, std::string* psPara) {
    Linha("datahora", rDados, true, psPara);
}

void CXVFormatoSql::Termina(std::string* psPara) {
    *psPara += "COMMIT;\n";
}
