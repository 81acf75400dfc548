// CXVVerificacao: what is not of a day: journal, version, creation control, key map, date-times, leftovers.
#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoDiario.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVDiasDaLoja.h"
#include "middleware/verificacao/XVInicioArquivo.h"
#include "middleware/verificacao/XVPedacosEmRegistros.h"
#include "middleware/verificacao/XVTextosDoControle.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "middleware/verificacao/XVVersaoZero.h"

namespace {

// Files that stand in the directory by right and hold no data.
bool EhDeServico(const std::string& sNome) {
    static constexpr const char* k_apszNomes[] = {k_pszNomeDiario, k_pszArquivoSelos, k_pszArquivoSelosNovo,
                                                  "DFXXMARCA1",    "DFXXMARCA2",      "loggeral"};
    return XVIgualSemCaixa(XVNomeArquivo::GetExtensao(sNome), "log") ||
           std::any_of(std::begin(k_apszNomes), std::end(k_apszNomes),
                       [&](const char* psz) { return XVIgualSemCaixa(sNome, psz); });
}

XVUInt64 DiaDoNome(const std::string& sNome) {
    for (const char* pszPadrao : k_apszGrupos)
        if (const auto uiDia = XVNomeArquivo::NomeParaChave(sNome, pszPadrao)) return *uiDia;
    return 0;
}

}  // namespace

void CXVVerificacao::VerificaDiario() {
    switch (m_leitura.GetDiario()) {
        case EDiario::eAusente:
            return;
        case EDiario::eEmUso:
            return Anota({.eTipo = EAchado::eEmUso, .sArquivo = k_pszNomeDiario});
        case EDiario::eAConcluir:
            return Anota({.eTipo = EAchado::eDiarioAConcluir, .sArquivo = k_pszNomeDiario});
        case EDiario::eNaoConfere:
            return Anota({.eTipo = EAchado::eDiarioNaoConfere,
                          .sArquivo = k_pszNomeDiario,
                          .hr = E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS,
                          .sDetalhe = m_leitura.GetMotivoDiario()});
    }
}

// Whether the layouts of the days' files are those of this program. A version that cannot be read is told and
// taken for the present one.
bool CXVVerificacao::VerificaVersao() {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(k_pszArquivoVersao, &arquivo);
    if (!arquivo.bExiste && SUCCEEDED(hr) && !XVTemDados(m_leitura)) return true;
    REG_CR_MIDDLEWARE_VERSAO reg{};
    if (SUCCEEDED(hr) && SUCCEEDED(arquivo.hr) && arquivo.bExiste && arquivo.uiTamanho != sizeof(reg))
        arquivo.hr = E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA;
    if (SUCCEEDED(hr) && SUCCEEDED(arquivo.hr) && arquivo.bExiste)
        hr = m_leitura.Percorre(arquivo, sizeof(reg), [&](XVUInt64, std::span<const char> aBytes) {
            std::memcpy(&reg, aBytes.data(), sizeof(reg));
        });
    if (SUCCEEDED(hr) && SUCCEEDED(arquivo.hr) && arquivo.bCabecalho &&
        XVVersaoNaoConfere(reg, arquivo.regB.usVersaoArquivo))
        arquivo.hr = E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS;
    JulgaArquivo(arquivo, 0, hr);
    if (!arquivo.bExiste && SUCCEEDED(hr)) {
        if (XVEhVersaoZero(m_leitura, m_sDiretorio, m_rDono)) {
            VerificaOutraVersao(0);
            return false;
        }
        Anota({.eTipo = EAchado::eArquivoAusente, .sArquivo = k_pszArquivoVersao});
    }
    if (!arquivo.bExiste || FAILED(hr) || FAILED(arquivo.hr) || reg.usVersao == k_usVersaoAtualBase)
        return true;
    if (reg.usVersao < k_usVersaoAtualBase && !XVTemDados(m_leitura)) return true;
    VerificaOutraVersao(reg.usVersao);
    return false;
}

// Of layouts that are not of this program the headers are looked at, and nothing else.
void CXVVerificacao::VerificaOutraVersao(XVUShort usVersao) {
    Anota({.eTipo = usVersao < k_usVersaoAtualBase ? EAchado::eVersaoAnterior : EAchado::eVersaoPosterior,
           .sArquivo = k_pszArquivoVersao,
           .sDetalhe = "versão " + std::to_string(usVersao)});
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes())
        if (XVEhArquivoDaLoja(sNome) && !XVIgualSemCaixa(sNome, k_pszArquivoVersao) &&
            !XVNomeArquivo::EhIsento(sNome)) {
            SArquivoLoja arquivo;
            const HRESULT hr = m_leitura.Descreve(sNome, &arquivo);
            JulgaArquivo(arquivo, DiaDoNome(sNome), hr);
        }
}

void CXVVerificacao::VerificaControle() {
    std::vector<std::string> listaNomes;
    bool bPartida = false;
    const HRESULT hr = XVTextosDoControle::Le(m_leitura, &listaNomes, &bPartida);
    const std::string sControle(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS);
    if (FAILED(hr)) Anota({.eTipo = EAchado::eArquivoIlegivel, .sArquivo = sControle, .hr = hr});
    if (bPartida)
        Anota({.eTipo = EAchado::eCadeiaPartida,
               .sArquivo = sControle,
               .hr = E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA,
               .uiQuantidade = 1,
               .sDetalhe = "depois do nome " + std::to_string(listaNomes.size())});
    std::set<std::string> vistos;
    for (const std::string& rNome : listaNomes) {
        if (!vistos.insert(XVEmMinusculas(rNome)).second) {
            Anota({.eTipo = EAchado::eListadoDuasVezes, .sArquivo = rNome});
            continue;
        }
        SArquivoLoja arquivo;
        // The version file's absence is told with the version.
        if (XVIgualSemCaixa(rNome, k_pszArquivoVersao)) continue;
        // A link to nowhere has a name and is no file; a file that cannot be read is told by its name.
        const bool bLida = SUCCEEDED(m_leitura.Descreve(rNome, &arquivo));
        if (bLida ? !arquivo.bExiste : !m_leitura.TemNome(rNome))
            Anota({.eTipo = EAchado::eArquivoAusente,
                   .sArquivo = rNome,
                   .uiDia = DiaDoNome(rNome),
                   .hr = E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS});
    }
}

// What is told of no block: a sealed file that is gone, empty, without header, or an older one put in its
// place. Operations only add bytes, and only raise the counter. Where headers are off, nothing tells.
void CXVVerificacao::VerificaSelos() {
    if (CXVFileBase::CabecalhoDesabilitadoNaMaquina()) return;
    for (const auto& [sMinusculo, selo] : m_selos) {
        const auto itNome = m_leitura.GetNomes().find(sMinusculo);
        const std::string sNome = itNome != m_leitura.GetNomes().end() ? itNome->second : sMinusculo;
        const auto& rAchados = m_pVerificacao->listaAchados;
        const bool bDito = std::any_of(rAchados.begin(), rAchados.end(), [&](const SXVAchado& r) {
            return XVIgualSemCaixa(r.sArquivo, sNome) &&
                   XVDescreveAchado(r.eTipo).eGravidade == EGravidade::eDano;
        });
        SArquivoLoja arquivo;
        if (bDito || FAILED(m_leitura.Descreve(sNome, &arquivo)) || FAILED(arquivo.hr)) continue;
        const std::pair agora(XVUInt64{arquivo.regB.usVoltasContador},
                              XVUInt64{arquivo.regB.uiContadorAtualizacao});
        SXVAchado achado{.eTipo = EAchado::eBlocoAlterado, .sArquivo = sNome, .uiDia = DiaDoNome(sNome)};
        achado.uiQuantidade = selo.aSomas.size();
        if (!arquivo.bExiste)
            achado.eTipo = EAchado::eArquivoAusente;
        else if (!arquivo.bCabecalho)
            achado.sDetalhe = "o arquivo foi selado com cabeçalho e não o tem mais";
        else if (arquivo.uiTamanho < selo.uiTamanho)
            achado.sDetalhe = "o arquivo tem menos bytes do que quando foi selado";
        else if (agora < std::pair(selo.uiVoltas, selo.uiContador))
            achado.sDetalhe = "o arquivo é anterior ao que foi selado";
        else
            continue;
        Anota(std::move(achado));
    }
}

void CXVVerificacao::VerificaSobras() {
    const bool bConversao = m_leitura.TemNome(k_pszDiarioConversao);
    const auto& rConhecidas = m_leitura.GetCopiasConhecidas();
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes()) {
        if (XVEhArquivoDaLoja(sNome) || EhDeServico(sNome)) continue;
        const std::string_view sExtensao = XVNomeArquivo::GetExtensao(sMinusculo);
        const bool bCopia = (sExtensao == "cab" || sExtensao == "tra") &&
                            XVEhArquivoDaLoja(XVNomeArquivo::TrocaExtensao(sNome, "dat"));
        const bool bConhecida = (bConversao && sExtensao == "tra") ||
                                m_leitura.GetDiario() == EDiario::eEmUso ||
                                std::find(rConhecidas.begin(), rConhecidas.end(), sNome) != rConhecidas.end();
        const bool bDaConversao = sExtensao == "srk" && sMinusculo.starts_with("crmiddleware");
        const EAchado eTipo = bCopia && !bConhecida    ? EAchado::eCopiaDeixada
                              : bCopia || bDaConversao ? EAchado::eConversaoInterrompida
                                                       : EAchado::eArquivoEstranho;
        Anota({.eTipo = eTipo, .sArquivo = sNome});
    }
}

template <class T>
void CXVVerificacao::VerificaLancamentos(const char* pszNome, XVUInt ulColunas) {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(pszNome, &arquivo);
    const CXVDataBase_CR_Middleware esquema;
    if (SUCCEEDED(hr)) XVDecideInicioDosRegistros<T>(m_leitura, &arquivo);
    CXVConferenciaSelo conferencia(m_selos, arquivo, false);
    TXVPedacosEmRegistros<T> pedacos;
    CXVBuracos buracos;
    SXVAchado impossivel{.eTipo = EAchado::eLancamentoImpossivel, .sArquivo = pszNome};
    std::vector<XVUInt64> aChaves;
    XVUInt ulPosicao = 0;
    const auto examina = [&](const T& reg, bool) {
        const XVUInt64 uiDe = XVUInt64{ulPosicao++} * sizeof(T);
        bool bBom = !buracos.Toca(uiDe, uiDe + sizeof(T)) && TXVPlausibilidade<T>::EhPlausivel(reg);
        for (XVUInt ul = 0; ul < ulColunas; ++ul) bBom = bBom && esquema.GetChaveIndex(reg, ul) != 0;
        if (bBom) aChaves.push_back(esquema.GetChaveIndex(reg, 0));
        if (!bBom && ++impossivel.uiQuantidade == 1)
            impossivel.sDetalhe = "o primeiro deles na posição " + std::to_string(ulPosicao);
    };
    if (SUCCEEDED(hr))
        hr = m_leitura.Percorre(
            arquivo, arquivo.GetTamanhoDados(),
            [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
                pedacos.Toma(aBytes, conferencia.Confere(uiOffset, aBytes), examina);
            },
            &buracos);
    JulgaArquivo(arquivo, 0, hr);
    AnotaSelo(arquivo, conferencia.GetNovo(), conferencia.GetAlterados(), 0);
    if (pedacos.GetSobra() != 0)
        Anota({.eTipo = EAchado::eRegistroPelaMetade, .sArquivo = pszNome, .uiQuantidade = 1});
    if (impossivel.uiQuantidade > 0) Anota(impossivel);
    const std::size_t uiTodas = aChaves.size();
    std::sort(aChaves.begin(), aChaves.end());
    aChaves.erase(std::unique(aChaves.begin(), aChaves.end()), aChaves.end());
    if (aChaves.size() != uiTodas)
        Anota({.eTipo = EAchado::eLancamentoRepetido,
               .sArquivo = pszNome,
               .uiQuantidade = uiTodas - aChaves.size()});
}
template void CXVVerificacao::VerificaLancamentos<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2>(const char*,
                                                                                                XVUInt);
template void CXVVerificacao::VerificaLancamentos<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1>(const char*,
                                                                                           XVUInt);
