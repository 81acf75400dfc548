#include "tools/xvcr/logs/XVLinhaLog.h"

#include <algorithm>

namespace {

constexpr std::string_view k_sIgual = " = ";

std::vector<std::string_view> Separa(std::string_view sLinha) {
    std::vector<std::string_view> listaCelulas;
    for (;;) {
        const std::size_t uiTab = sLinha.find('\t');
        listaCelulas.push_back(sLinha.substr(0, uiTab));
        if (uiTab == std::string_view::npos) return listaCelulas;
        sLinha.remove_prefix(uiTab + 1);
    }
}

// "dd/mm/yyyy" and "hh:mm:ss" in the order that sorts.
bool LeDataHora(std::string_view sData, std::string_view sHora, std::string* psDataHora) {
    if (sData.size() != 10 || sHora.size() != 8 || sData[2] != '/' || sData[5] != '/') return false;
    *psDataHora = std::string(sData.substr(6)) + '-' + std::string(sData.substr(3, 2)) + '-' +
                  std::string(sData.substr(0, 2)) + 'T' + std::string(sHora);
    return true;
}

// "U007" to "7".
std::string SemLetra(std::string_view sCelula) {
    if (!sCelula.empty()) sCelula.remove_prefix(1);
    while (sCelula.size() > 1 && sCelula.front() == '0') sCelula.remove_prefix(1);
    return std::string(sCelula);
}

// What follows "name = ", or the whole cell.
std::string_view SemNome(std::string_view sCelula, std::string_view sNome) {
    const bool bTem = sCelula.size() >= sNome.size() + k_sIgual.size() && sCelula.starts_with(sNome) &&
                      sCelula.substr(sNome.size(), k_sIgual.size()) == k_sIgual;
    return bTem ? sCelula.substr(sNome.size() + k_sIgual.size()) : sCelula;
}

// "hr = 0X81080AAA text" of the cell after the expression, or in the expression's place.
bool LeCodigo(std::string_view sCelula, SLinhaLog* pLinha) {
    sCelula = SemNome(sCelula, "hr");
    if (!sCelula.starts_with("0X") && !sCelula.starts_with("0x")) return false;
    const std::size_t uiFim = std::min(sCelula.find(' '), sCelula.size());
    pLinha->sCodigo = "0x" + std::string(sCelula.substr(2, uiFim - 2));
    pLinha->sMensagem = sCelula.substr(std::min(uiFim + 1, sCelula.size()));
    return true;
}

}  // namespace

CXVCabecalhoLog::CXVCabecalhoLog(std::string_view sLinha) {
    for (const std::string_view sNome : Separa(sLinha)) m_listaNomes.emplace_back(sNome);
}

bool CXVCabecalhoLog::EhCabecalho(std::string_view sLinha) {
    return sLinha.starts_with("Data\tHora\t");
}

std::string_view CXVCabecalhoLog::Coluna(const std::vector<std::string_view>& listaCelulas,
                                         std::string_view sNome) const {
    const auto pNome = std::find(m_listaNomes.begin(), m_listaNomes.end(), sNome);
    const auto uiColuna = static_cast<std::size_t>(pNome - m_listaNomes.begin());
    if (pNome == m_listaNomes.end() || uiColuna >= listaCelulas.size()) return {};
    return SemNome(listaCelulas[uiColuna], sNome);
}

bool CXVCabecalhoLog::Le(std::string_view sLinha, SLinhaLog* pLinha) const {
    const std::vector<std::string_view> listaCelulas = Separa(sLinha);
    const auto coluna = [&](std::string_view sNome) { return std::string(Coluna(listaCelulas, sNome)); };
    SLinhaLog linha;
    if (!LeDataHora(coluna("Data"), coluna("Hora"), &linha.sDataHora)) return false;
    linha.sProcesso = coluna("Processo");
    linha.sUsuarioLocal = coluna("UsuarioLocal");
    linha.sFuncao = coluna("ClasseFuncao");
    linha.sEmpresa = coluna("Empresa").erase(0, 1);
    linha.sUsuario = SemLetra(Coluna(listaCelulas, "Usuario"));
    linha.sSessao = SemLetra(Coluna(listaCelulas, "Sessao"));
    linha.sThread = SemLetra(Coluna(listaCelulas, "ThreadID"));
    linha.sTipo = coluna("Tipo");
    linha.sArquivo = coluna("Arquivo");
    linha.sLinha = coluna("Linha");
    linha.sDuracao = coluna("Duracao");
    linha.sMemoria = coluna("MemoriaComponente");
    linha.sDeltaMemoria = coluna("DeltaMemoria");
    linha.sGuid = coluna("Guid");
    linha.sPerdidas = SemNome(Coluna(listaCelulas, "Filler"), "Perdidas");
    linha.sExpressao = SemNome(Coluna(listaCelulas, "Log"), "hr");
    const auto pPrimeiro = std::find(m_listaNomes.begin(), m_listaNomes.end(), "Parameter1");
    for (auto i = static_cast<std::size_t>(pPrimeiro - m_listaNomes.begin()); i < listaCelulas.size(); ++i)
        if (!listaCelulas[i].empty()) linha.listaParametros.emplace_back(listaCelulas[i]);
    if (linha.sTipo == "ERRO") {
        const std::string sPrimeiro = linha.listaParametros.empty() ? "" : linha.listaParametros.front();
        if (!LeCodigo(sPrimeiro, &linha)) {
            if (LeCodigo(linha.sExpressao, &linha))  // of a record or a text that cannot be read
                linha.sMensagem = SemNome(sPrimeiro, "Descrição");
            else
                linha.sMensagem = std::move(linha.sExpressao);
            linha.sExpressao.clear();
        }
    }
    *pLinha = std::move(linha);
    return true;
}
