// A store to be damaged, verified and recovered, and the ways in which it is damaged.
#pragma once

#include <gmock/gmock.h>

#include <functional>

#include "middleware/verificacao/XVRecuperacao.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRelatos.h"
#include "tests/middleware/XVRetratoLoja.h"

// Findings that are more than notes: "semJSON 20240315:2-3", "arquivoRecusado CRINDEXINTEG.dat".
inline std::string Achados(const SVerificacao& rVerificacao, EGravidade eDesde = EGravidade::eAviso) {
    std::string sTexto;
    for (const SXVAchado& rAchado : rVerificacao.listaAchados) {
        if (XVDescreveAchado(rAchado.eTipo).eGravidade < eDesde) continue;
        sTexto += std::string(sTexto.empty() ? "" : "; ") + XVDescreveAchado(rAchado.eTipo).pszNome + ' ';
        sTexto += rAchado.aFaixas.empty() ? rAchado.sArquivo : std::to_string(rAchado.uiDia) + ':';
        for (const SFaixa& rFaixa : rAchado.aFaixas)
            sTexto += (sTexto.back() == ':' ? "" : ",") + std::to_string(rFaixa.ulDe) +
                      (rFaixa.ulDe == rFaixa.ulAte ? "" : '-' + std::to_string(rFaixa.ulAte));
    }
    return sTexto;
}

class Verificacao : public CXVCenarioLoja {
  public:  // what a damage of the table below works with
    using CXVCenarioLoja::Conteudo;
    using CXVCenarioLoja::m_Arquivos;
    using CXVCenarioLoja::PastaDados;

    Verificacao() {
        EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
        m_original = XVRetrataLoja(*Abre());  // all files are listed from now on
        m_arquivos = ArquivosEm(PastaDados());
    }
    // The files of a directory by name; no other logs than the general ones.
    TBytesPorNome ArquivosEm(const std::string& sDiretorio) const {
        TBytesPorNome arquivos;
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata()) {
            const std::string sNome = sCaminho.substr(sCaminho.rfind('/') + 1);
            const bool bOutroLog = sNome.ends_with(".log") && !sNome.starts_with("XVLogGeral_");
            if (!sNome.empty() && !bOutroLog && sCaminho == sDiretorio + '/' + sNome)
                arquivos[sNome] = rArquivo.sConteudo;
        }
        return arquivos;
    }
    std::string Verifica(SVerificacao* pVerificacao = nullptr, EGravidade eDesde = EGravidade::eAviso) {
        SVerificacao verificacao;
        EXPECT_EQ(CXVVerificacao(PastaDados(), m_Dono).Executa(&verificacao), S_OK);
        if (pVerificacao != nullptr) *pVerificacao = verificacao;
        EXPECT_EQ(verificacao.EhIntegra(), Achados(verificacao, EGravidade::eDano).empty());
        return Achados(verificacao, eDesde);
    }
    HRESULT Sela() {
        SVerificacao verificacao;
        CXVVerificacao executor(PastaDados(), m_Dono);
        EXPECT_EQ(executor.Executa(&verificacao), S_OK);
        return executor.Sela();
    }
    // "20240315-3-1 perdida; 20240315-2-1 com faltas"; from now on the new store is the one that opens.
    std::string Recupera() {
        SRecuperacao& recuperacao = m_recuperacao;
        const std::string sDestino = "/nova/MATRIZ/DF";
        const std::string sSeparados = "/nova/MATRIZ/separados";
        CXVRecuperacao recupera({PastaDados(), sDestino, sSeparados}, m_Dono, true);
        EXPECT_EQ(recupera.Executa(&recuperacao), S_OK);
        m_sRelato = XVRelata(recuperacao) + XVRelataMudancas(m_arquivos, ArquivosEm(sDestino)) +
                    XVRelataMudancas({}, ArquivosEm(sSeparados));
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/nova");
        std::string sTexto;
        for (const SIntegracaoRecuperada& r : recuperacao.listaIntegracoes)
            sTexto += (sTexto.empty() ? "" : "; ") + r.regDmc.ToString() +
                      (r.bPerdida ? " perdida" : " com faltas");
        return sTexto.empty() && !recuperacao.TudoVoltou() ? "bytes" : sTexto;
    }
    void Muda(const std::string& sNome, const std::function<void(std::string&)>& fn) {
        std::string sBytes = Conteudo(sNome);
        fn(sBytes);
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    }
    // Changes the payload under a header that vouches for it.
    void MudaDados(const std::string& sNome, const std::function<void(std::string&)>& fn) {
        Muda(sNome, [&](std::string& rs) {
            rs.erase(0, 240);
            fn(rs);
            rs = XVArquivoDoTeste({.sNome = sNome}, rs);
        });
    }
    void Apaga(const std::string& sNome) { EXPECT_TRUE(m_Arquivos.Apaga(PastaDados(sNome)).Ok()); }

    TRetratoLoja m_original;
    TBytesPorNome m_arquivos;
    SRecuperacao m_recuperacao;
    std::string m_sRelato;  // of the last recovery: what it said, and every byte that it made otherwise
};

namespace XVDanos {

inline constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";
inline constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";
inline constexpr const char* k_pszDia = "CRINTEGMID20240315.dat";
inline constexpr const char* k_pszJSON = "CRINTEGMIDJSON20240315.dat";
inline constexpr const char* k_pszMensagem = "CRINTEGMIDMENS20240315.dat";

// What is done to a file: to its payload under a header that vouches for it, or to the whole file.
using TMuda = std::function<void(std::string&)>;
inline auto NosDados(const char* pszNome, TMuda fn) {
    return [=](Verificacao& r) { r.MudaDados(pszNome, fn); };
}
inline auto NoArquivo(const char* pszNome, TMuda fn) {
    return [=](Verificacao& r) { r.Muda(pszNome, fn); };
}
inline auto Zera(const char* pszNome, std::size_t uiDe, std::size_t uiBytes) {
    return NosDados(pszNome, [=](std::string& rs) { rs.replace(uiDe, uiBytes, uiBytes, '\0'); });
}
inline auto ZeraFim(const char* pszNome, std::size_t ui) {
    return NosDados(pszNome, [=](std::string& rs) { rs.replace(rs.size() - ui, ui, ui, '\0'); });
}
inline auto Poe(const char* pszNome, std::size_t uiOnde, char c) {
    return NosDados(pszNome, [=](std::string& rs) { rs[uiOnde] = c; });
}
inline auto Vira(const char* pszNome, std::size_t uiOnde) {
    return NoArquivo(pszNome, [=](std::string& rs) { rs[uiOnde] = static_cast<char>(rs[uiOnde] ^ 1); });
}
inline auto Corta(const char* pszNome, std::size_t uiBytes) {
    return NoArquivo(pszNome, [=](std::string& rs) { rs.resize(rs.size() - uiBytes); });
}
inline auto Lixo(const char* pszNome) {
    return NoArquivo(pszNome, [](std::string& rs) { rs.replace(0, 240, 240, '#'); });
}
inline auto Some(const char* pszNome) {
    return [=](Verificacao& r) { r.Apaga(pszNome); };
}
// The content of another file.
inline auto Troca(const char* pszNome, const char* pszPor) {
    return [=](Verificacao& r) { r.m_Arquivos.CriaArquivo(r.PastaDados(pszNome), r.Conteudo(pszPor)); };
}
// The same payload under a name of its own.
inline auto Copia(const char* pszNome, const char* pszDe) {
    return [=](Verificacao& r) {
        r.m_Arquivos.CriaArquivo(r.PastaDados(pszNome),
                                 XVArquivoDoTeste({.sNome = pszNome}, r.Conteudo(pszDe).substr(240)));
    };
}

inline auto Cria(std::vector<std::string> listaNomes) {
    return [=](Verificacao& r) {
        for (const std::string& rNome : listaNomes) r.m_Arquivos.CriaArquivo(r.PastaDados(rNome), "x");
    };
}

inline const std::string k_sDeDoisRegistros = XVCabecalhoDoTeste({.sNome = k_pszDia}, 2 * 88);
inline void AtrasaCabecalho(std::string& rs) {
    rs.replace(0, 240, k_sDeDoisRegistros);
}
// The first text's length is lost, and the second ends in what is a text as well.
inline void FazDuasCadeias(std::string& rs) {
    rs[3] = '\x7f';
    rs.replace(rs.find("{\"outra") - 12, 4, std::string("\4\0\0\0", 4));
}
inline void ListaMais(std::string& rs) {
    rs += CXVBytes().Texto("crdthrinteg.DAT").Texto("CRINTEGMID20240310.dat").Texto("Y.dat").Str();
}

}  // namespace XVDanos
