#include "middleware/verificacao/XVExameDia.h"

#include <algorithm>
#include <cstring>

#include "contract/XVCR_Enumeracoes.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVInicioArquivo.h"
#include "middleware/verificacao/XVPedacosEmRegistros.h"

const std::array<const char*, CXVExameDia::k_uiTextos> k_apszGruposDeTextos{
    k_pszArquivoJSONIntegracao, k_pszArquivoMensagemIntegracao, k_pszArquivoJSONRetornoIntegracao};

namespace {
using TRegistro = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
}

std::array<XVUInt, CXVExameDia::k_uiTextos> XVPonteirosDeTextos(const TRegistro& reg) {
    return {reg.ulPonteiroJSONRegistro, reg.ulPonteiroMensagemRetorno, reg.ulPonteiroJSONRetornoIntegracao};
}

bool XVEhRegistroVago(const TRegistro& reg) {
    static constexpr TRegistro k_regVago{};
    return std::memcmp(&reg, &k_regVago, sizeof(reg)) == 0;
}

CXVExameDia::CXVExameDia(CXVLeituraLoja& rLeitura, const TSelos& rSelos, XVUInt64 uiDia, EAlcance eAlcance)
    : m_rLeitura(rLeitura), m_rSelos(rSelos), m_uiDia(uiDia), m_eAlcance(eAlcance) {}

REG_XVDMC CXVExameDia::GetDmc(XVUInt ulPonteiro) const {
    return REG_XVDMC::Cria(
        REG_XVDMC::k_uiTipoIntegracao, ulPonteiro,
        REG_XVDMA::Cria(static_cast<unsigned>(m_uiDia / 10000), static_cast<unsigned>(m_uiDia / 100 % 100),
                        static_cast<unsigned>(m_uiDia % 100)));
}

// Texts are appended before the record that names them is written, so a length taken before the records were
// read tells which texts a record could know of.
void CXVExameDia::ExaminaRegistros(std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite) {
    for (std::size_t i = 0; i < k_uiTextos; ++i)
        XVIgnora(m_rLeitura.Descreve(XVNomeArquivo::ChaveParaNome(m_uiDia, k_apszGruposDeTextos[i]),
                                     &m_aArquivosTextos[i]));
    m_aFalhas[k_uiTextos] = LeRegistros();
    JulgaIndice(aEntradas, ulLimite);
    JulgaCabecalho();
}

void CXVExameDia::ExaminaTextos() {
    for (std::size_t i = 0; i < k_uiTextos; ++i) ExaminaTexto(i);
    JulgaTextos();
}

HRESULT CXVExameDia::LeRegistros() {
    HRESULT hr =
        m_rLeitura.Descreve(XVNomeArquivo::ChaveParaNome(m_uiDia, k_pszArquivoIntegracao), &m_arquivo);
    if (FAILED(hr)) return hr;
    XVDecideInicioDosRegistros<TRegistro>(m_rLeitura, &m_arquivo);
    CXVConferenciaSelo conferencia(m_rSelos, m_arquivo, false);
    TXVPedacosEmRegistros<TRegistro> pedacos;
    CXVBuracos buracos;
    const XVUInt64 uiAte = Alcance(m_arquivo);
    m_aRegistros.reserve(static_cast<std::size_t>(uiAte / sizeof(TRegistro)));
    const auto toma = [&](const TRegistro& reg, bool bRegistroAlterado) {
        const XVUInt64 uiDe = m_aRegistros.size() * sizeof(TRegistro);
        const bool bIlegivel = buracos.Toca(uiDe, uiDe + sizeof(TRegistro));
        m_aRegistros.push_back(bIlegivel ? TRegistro{} : reg);
        m_aMotivos.push_back(bIlegivel ? eMotivo_Ilegivel : bRegistroAlterado ? eMotivo_Alterada : 0U);
    };
    hr = m_rLeitura.Percorre(
        m_arquivo, uiAte,
        [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
            pedacos.Toma(aBytes, conferencia.Confere(uiOffset, aBytes), toma);
        },
        &buracos);
    m_uiSobra = pedacos.GetSobra();
    m_uiBlocosAlterados = conferencia.GetAlterados();
    m_selo = conferencia.GetNovo();
    return hr;
}

void CXVExameDia::JulgaIndice(std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite) {
    m_aNoIndice.assign(m_aRegistros.size(), false);
    for (const SEntradaIndice& rEntrada : aEntradas) {
        const XVUInt ulPonteiro = rEntrada.GetPonteiro();
        if (ulPonteiro > m_aRegistros.size()) {
            m_aAusentes.push_back(rEntrada);
            continue;
        }
        XVUInt& rulMotivos = m_aMotivos[ulPonteiro - 1];
        if (m_aNoIndice[ulPonteiro - 1]) rulMotivos |= eMotivo_IndiceRepetido;
        if (rEntrada.bAlterada) rulMotivos |= eMotivo_Alterada;
        m_aNoIndice[ulPonteiro - 1] = true;
    }
    for (std::size_t i = 0; i < m_aRegistros.size(); ++i) {
        const bool bVago = XVEhRegistroVago(m_aRegistros[i]);
        if ((m_aMotivos[i] & eMotivo_Ilegivel) != 0) continue;
        if (!m_aNoIndice[i]) {
            m_uiVagos += bVago ? 1 : 0;
            if (!bVago && i < ulLimite) m_aSemIndice.push_back(static_cast<XVUInt>(i + 1));
        } else if (bVago) {
            m_aMotivos[i] |= eMotivo_RegistroVazio;
        } else if (!TXVPlausibilidade<TRegistro>::EhPlausivel(m_aRegistros[i])) {
            m_aMotivos[i] |= eMotivo_RegistroImpossivel;
        }
        if (m_aNoIndice[i] && FAILED(m_arquivo.hr)) m_aMotivos[i] |= eMotivo_DiaRecusado;
    }
}

XVUInt CXVExameDia::GetContadosNoCabecalho() const {
    if (!m_arquivo.bCabecalho || !XVCabecalho::NomeConfere(m_arquivo.regB, m_arquivo.sNome)) return 0;
    // Far more than a day ever has: a forged header must not fill memory and disk.
    constexpr XVUInt64 k_uiMaximo = 1U << 22;
    return static_cast<XVUInt>(std::min(m_arquivo.regB.uiTamanhoDados / sizeof(TRegistro), k_uiMaximo));
}

void CXVExameDia::JulgaCabecalho() {
    const XVUInt ulContados = GetContadosNoCabecalho();
    auto itAusente = m_aAusentes.begin();
    for (XVUInt64 ui = m_aRegistros.size() + 1; ui <= ulContados; ++ui) {
        while (itAusente != m_aAusentes.end() && itAusente->GetPonteiro() < ui) ++itAusente;
        if (itAusente == m_aAusentes.end() || itAusente->GetPonteiro() != ui)
            m_aSoNoCabecalho.push_back(static_cast<XVUInt>(ui));
    }
}

void CXVExameDia::JuntaDoBanco(std::span<const SEntradaIndice> aEntradas,
                               std::vector<TChaveDmc>* paDoBanco) const {
    constexpr XVUInt k_ulNaoVale =
        eMotivo_RegistroVazio | eMotivo_RegistroImpossivel | eMotivo_IndiceRepetido | eMotivo_Ilegivel;
    for (const SEntradaIndice& rEntrada : aEntradas)
        if (rEntrada.reg.eSistemaIntegracao == OfficialBank &&
            rEntrada.GetPonteiro() <= m_aRegistros.size() &&
            (m_aMotivos[rEntrada.GetPonteiro() - 1] & k_ulNaoVale) == 0)
            paDoBanco->emplace_back(rEntrada.reg.uiChaveIntegracaoSistemaTerceiro,
                                    REG_XVDMC(rEntrada.reg.regDmcIntegracao).uiValor);
}

// Of the returned texts the last may be named no more; the last of the others always is.
XVUInt CXVExameDia::UltimaApontada(std::size_t uiQual) const {
    if (uiQual + 1 == k_uiTextos || FAILED(m_aFalhas[k_uiTextos]) || FAILED(m_arquivo.hr) || m_uiSobra != 0 ||
        !m_aAusentes.empty())
        return 0;
    XVUInt ulUltima = 0;
    for (const TRegistro& reg : m_aRegistros) {
        if (XVEhRegistroVago(reg) || !TXVPlausibilidade<TRegistro>::EhPlausivel(reg)) return 0;
        ulUltima = std::max(ulUltima, XVPonteirosDeTextos(reg)[uiQual]);
    }
    return ulUltima;
}

XVUInt64 CXVExameDia::RegistrosPerdidos() const {
    const XVUInt64 uiPeloCabecalho =
        m_arquivo.bCabecalho ? m_arquivo.regB.uiTamanhoDados / sizeof(TRegistro) : XVUInt64{0};
    const XVUInt64 uiTodos = std::max<XVUInt64>(uiPeloCabecalho, m_aRegistros.size() + m_aAusentes.size());
    const auto uiPossiveis = std::count_if(m_aRegistros.begin(), m_aRegistros.end(), [](const TRegistro& r) {
        return !XVEhRegistroVago(r) && TXVPlausibilidade<TRegistro>::EhPlausivel(r);
    });
    return uiTodos - static_cast<XVUInt64>(uiPossiveis);
}

void CXVExameDia::ExaminaTexto(std::size_t uiQual) {
    SArquivoLoja& rArquivo = m_aArquivosTextos[uiQual];
    const XVUInt64 uiTamanhoAntes = rArquivo.uiTamanho;
    CXVExameTextos& rTextos = m_aTextos[uiQual];
    HRESULT hr =
        m_rLeitura.Descreve(XVNomeArquivo::ChaveParaNome(m_uiDia, k_apszGruposDeTextos[uiQual]), &rArquivo);
    const bool bMesmo = uiTamanhoAntes == rArquivo.uiTamanho;
    XVUInt ulMaior = 0;
    for (const TRegistro& reg : m_aRegistros) ulMaior = std::max(ulMaior, XVPonteirosDeTextos(reg)[uiQual]);
    if (SUCCEEDED(hr)) XVDecideInicioDosTextos(m_rLeitura, ulMaior, &rArquivo);
    if (SUCCEEDED(hr)) hr = rTextos.Examina(m_rLeitura, rArquivo, Alcance(rArquivo), m_rSelos);
    // Of a store that was not closed the device may have the records and not the last texts.
    const bool bFechada = m_rLeitura.GetDiario() == EDiario::eAusente;
    const XVUInt ulUltima = bMesmo && bFechada ? UltimaApontada(uiQual) : 0;
    if (ulUltima != 0) rTextos.Emenda(m_rLeitura, rArquivo, ulUltima);
    m_aFalhas[uiQual] = hr;
    for (std::size_t i = 0; i < m_aRegistros.size(); ++i) {
        // What a record says that cannot be one is held against no text.
        if (!TXVPlausibilidade<TRegistro>::EhPlausivel(m_aRegistros[i])) continue;
        const XVUInt ulPonteiro = XVPonteirosDeTextos(m_aRegistros[i])[uiQual];
        if (ulPonteiro != 0 && !rTextos.Aponta(ulPonteiro)) m_aMotivos[i] |= eMotivo_SemJSON << uiQual;
    }
    // Returned texts are given up by an update without one; of the others the last is always named.
    if (uiQual + 1 < k_uiTextos && bMesmo) rTextos.MarcaZerosNoFim(RegistrosPerdidos());
}

void CXVExameDia::JulgaTextos() {
    for (std::size_t i = 0; i < m_aRegistros.size(); ++i) {
        const auto aPonteiros = XVPonteirosDeTextos(m_aRegistros[i]);
        for (std::size_t uiQual = 0; uiQual < k_uiTextos; ++uiQual) {
            const XVUInt ulPonteiro = aPonteiros[uiQual];
            if (ulPonteiro == 0) continue;
            if (FAILED(m_aArquivosTextos[uiQual].hr)) m_aMotivos[i] |= eMotivo_DiaRecusado;
            if (ulPonteiro > m_aTextos[uiQual].GetQuantidade()) continue;
            const XVByte ucMarcas = m_aTextos[uiQual].GetMarcas(ulPonteiro);
            if ((ucMarcas & (eTexto_Zerado | eTexto_ZerosNoFim)) != 0) m_aMotivos[i] |= eMotivo_TextoZerado;
            if ((ucMarcas & eTexto_Repetido) != 0) m_aMotivos[i] |= eMotivo_TextoDeOutra;
            if ((ucMarcas & eTexto_Alterado) != 0) m_aMotivos[i] |= eMotivo_Alterada;
            if ((ucMarcas & eTexto_Ilegivel) != 0) m_aMotivos[i] |= eMotivo_TextoIlegivel;
            if ((ucMarcas & eTexto_Deduzido) != 0) m_aMotivos[i] |= eMotivo_TextoDeduzido;
        }
    }
    // Of a record that nobody can find nothing is missed but its place in the index.
    for (const XVUInt ulPonteiro : m_aSemIndice)
        if (!TXVPlausibilidade<TRegistro>::EhPlausivel(m_aRegistros[ulPonteiro - 1]))
            m_aMotivos[ulPonteiro - 1] = eMotivo_RegistroImpossivel;
}
