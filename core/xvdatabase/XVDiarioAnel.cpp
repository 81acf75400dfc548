#include "core/xvdatabase/XVDiarioAnel.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

#include "platform/XVJanelaPorChamadas.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr XVUInt64 k_uiTamanhoUsual = 1U << 20;
std::atomic<XVUInt64> g_uiTamanhoAnel = k_uiTamanhoUsual;

bool Sobrepoem(XVUInt64 uiInicio1, XVUInt64 uiTamanho1, XVUInt64 uiInicio2, XVUInt64 uiTamanho2) {
    return uiInicio1 < uiInicio2 + uiTamanho2 && uiInicio2 < uiInicio1 + uiTamanho1;
}

// With the filler that the parts of an entry have.
std::size_t Cheio(std::size_t uiTamanho) {
    return XVAlinha(uiTamanho, 8);
}

// Copies with a filler of zeros; gives where the next goes.
std::byte* Copia(std::byte* pDestino, const void* pDados, std::size_t uiTamanho) {
    if (uiTamanho == 0) return pDestino;
    std::byte* pFim = pDestino + Cheio(uiTamanho);
    std::memset(pDestino + uiTamanho, 0, static_cast<std::size_t>(pFim - pDestino) - uiTamanho);
    std::memcpy(pDestino, pDados, uiTamanho);
    return pFim;
}

}  // namespace

void CXVDiarioAnel::SetTamanhoAnel(XVUInt64 uiTamanho) {
    g_uiTamanhoAnel = uiTamanho;
}

// Zeros first, then the words, the head last: a file that its maker did not finish has no head.
CXVErroArquivo CXVDiarioAnel::Prepara(IXVArquivo& rArquivo, XVUInt64 uiSessao, bool bMapeia) {
    Fecha();
    const XVUInt64 uiTamanhoAnel = g_uiTamanhoAnel;
    const XVUInt64 uiTotal = k_uiTamanhoPaginaDiario + uiTamanhoAnel;
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = rArquivo.GetTamanho(uiTamanho);
    if (erro.Ok()) {
        // Written, not only lengthened: a place without a block could not be filled on a full disk. What is
        // there of another session may stay.
        const std::vector<std::byte> aZeros(
            static_cast<std::size_t>(uiTamanho >= uiTotal ? k_uiTamanhoPaginaDiario : uiTotal));
        erro = rArquivo.Grava(0, aZeros.data(), aZeros.size());
    }
    if (!erro.Ok()) return erro;
    m_pArquivo = &rArquivo;
    m_uiTamanhoAnel = uiTamanhoAnel;
    m_uiSessao = uiSessao;
    REG_XVDIARIO_CABECALHO reg{k_uiAssinaturaDiario, uiSessao, uiTamanhoAnel, 0};
    reg.uiSoma = XVSoma64(&reg, offsetof(REG_XVDIARIO_CABECALHO, uiSoma));
    std::unique_ptr<IXVJanela> pJanela;
    if (bMapeia)
        erro = rArquivo.AbreJanela(uiTotal, pJanela);
    else
        pJanela = std::make_unique<CXVJanelaPorChamadas>(rArquivo, uiTotal);
    if (erro.Ok()) erro = pJanela->GravaPalavra(k_uiOffsetPrimeira, m_uiPrimeira);
    if (erro.Ok()) erro = pJanela->Grava(0, &reg, sizeof(reg));
    if (erro.Ok()) m_pJanela = std::move(pJanela);
    return erro;
}

void CXVDiarioAnel::Fecha() {
    m_pJanela.reset();
    m_pArquivo = nullptr;
    m_uiUltima = 0;
    m_uiPrimeira = 1;
    m_uiProximo = k_uiTamanhoPaginaDiario;
    m_listaVivas.clear();
}

CXVErroArquivo CXVDiarioAnel::Invalida(IXVArquivo& rArquivo) {
    constexpr REG_XVDIARIO_CABECALHO k_regVazio{};
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = rArquivo.GetTamanho(uiTamanho);
    if (!erro.Ok() || uiTamanho < k_uiTamanhoPaginaDiario) return erro;
    erro = rArquivo.Grava(0, &k_regVazio, sizeof(k_regVazio));
    return erro.Ok() ? rArquivo.Sincroniza() : erro;
}

// Room for uiTamanho more bytes of the entry, a multiple of 8; what stands there is to be written over.
std::byte* CXVDiarioAnel::Estende(std::size_t uiTamanho) {
    const std::size_t uiFim = m_uiTamanhoEntrada + uiTamanho;
    if (uiFim > m_aEntrada.size()) m_aEntrada.resize(std::max(uiFim, m_aEntrada.size() * 2));
    return m_aEntrada.data() + std::exchange(m_uiTamanhoEntrada, uiFim);
}

void CXVDiarioAnel::IniciaEntrada(ETipoEntrada eTipo) {
    REG_XVDIARIO_ENTRADA reg{};
    reg.uiAssinatura = k_uiAssinaturaEntrada;
    reg.uiSessao = m_uiSessao;
    reg.uiNumero = m_uiUltima + 1;
    reg.eTipo = eTipo;
    m_uiTamanhoEntrada = 0;
    Copia(Estende(sizeof(reg)), &reg, sizeof(reg));
}

void CXVDiarioAnel::IncluiParte(std::string_view sNomeArquivo, const SGravacao& g) {
    const std::size_t uiCabecalhos =
        g.bTemCabecalho ? Cheio(sizeof(g.regAntes)) + Cheio(sizeof(g.regDepois)) : 0;
    REG_XVDIARIO_PARTE reg{};
    reg.uiTamanhoParte =
        sizeof(reg) + Cheio(sNomeArquivo.size()) + uiCabecalhos + Cheio(g.uiNovos) + Cheio(g.uiAntigos);
    reg.uiOffset = g.uiOffset;
    reg.uiTamanhoAntes = g.uiTamanhoAntes;
    reg.uiTamanhoDepois = g.uiTamanhoDepois;
    reg.uiNovos = g.uiNovos;
    reg.uiAntigos = g.uiAntigos;
    reg.usTamanhoNome = static_cast<XVUShort>(sNomeArquivo.size());
    if (g.bCria) reg.ucMarcas |= k_ucParteCria;
    if (g.bTemCabecalho) reg.ucMarcas |= k_ucParteCabecalho;
    std::byte* p = Estende(static_cast<std::size_t>(reg.uiTamanhoParte));
    p = Copia(p, &reg, sizeof(reg));
    p = Copia(p, sNomeArquivo.data(), sNomeArquivo.size());
    if (g.bTemCabecalho) {
        p = Copia(p, &g.regAntes, sizeof(g.regAntes));
        p = Copia(p, &g.regDepois, sizeof(g.regDepois));
    }
    p = Copia(p, g.pNovos, g.uiNovos);
    Copia(p, g.pAntigos, g.uiAntigos);
    ++reinterpret_cast<REG_XVDIARIO_ENTRADA*>(m_aEntrada.data())->ulPartes;
}

// The place of the next entry. The entries lie in the order of their age behind each other, but for one that
// did not fit the ring.
CXVDiarioAnel::SLugar CXVDiarioAnel::Planeja() const {
    const XVUInt64 uiTamanho = XVAlinha(m_uiTamanhoEntrada, k_uiAlinhamentoEntrada);
    const bool bLonga = uiTamanho > m_uiTamanhoAnel / 2;
    SLugar lugar;
    XVUInt64 uiPulado = 0;  // bytes at the end of the ring that stay behind
    if (bLonga) {
        lugar.uiOffset = GetFimAnel();
    } else if (m_uiProximo + uiTamanho > GetFimAnel()) {
        lugar.uiOffset = k_uiTamanhoPaginaDiario;
        uiPulado = GetFimAnel() - m_uiProximo;
    } else {
        lugar.uiOffset = m_uiProximo;
    }
    // What lies ahead in the ring are the oldest entries, so the list is looked at from its front. One entry
    // that did not fit the ring may stand between them at any age, which is why one more is looked at after a
    // miss.
    for (std::size_t i = 0; i < m_listaVivas.size() && (bLonga || i <= lugar.uiSubstituidas + 1); ++i) {
        const SViva& rViva = m_listaVivas[i];
        if (Sobrepoem(lugar.uiOffset, uiTamanho, rViva.uiOffset, rViva.uiTamanho) ||
            Sobrepoem(m_uiProximo, uiPulado, rViva.uiOffset, rViva.uiTamanho))
            lugar.uiSubstituidas = i + 1;
    }
    return lugar;
}

XVUInt64 CXVDiarioAnel::GetSubstituida() const {
    const std::size_t uiSubstituidas = Planeja().uiSubstituidas;
    return uiSubstituidas == 0 ? 0 : m_listaVivas[uiSubstituidas - 1].uiNumero;
}

CXVErroArquivo CXVDiarioAnel::Dispensa(XVUInt64 uiNumero) {
    if (uiNumero >= m_uiPrimeira) {
        const CXVErroArquivo erro = m_pJanela->GravaPalavra(k_uiOffsetPrimeira, uiNumero + 1);
        if (!erro.Ok()) return erro;
        m_uiPrimeira = uiNumero + 1;
    }
    while (!m_listaVivas.empty() && m_listaVivas.front().uiNumero <= uiNumero) m_listaVivas.pop_front();
    return {};
}

CXVErroArquivo CXVDiarioAnel::GravaBytes(XVUInt64 uiOffset) {
    if (uiOffset == GetFimAnel()) return m_pArquivo->Grava(uiOffset, m_aEntrada.data(), m_uiTamanhoEntrada);
    return m_pJanela->Grava(uiOffset, m_aEntrada.data(), m_uiTamanhoEntrada);
}

CXVErroArquivo CXVDiarioAnel::GravaEntrada(XVUInt64& uiNumero) {
    const SLugar lugar = Planeja();
    const XVUInt64 uiTamanho = XVAlinha(m_uiTamanhoEntrada, k_uiAlinhamentoEntrada);
    if (lugar.uiSubstituidas > 0) {
        const CXVErroArquivo erro = Dispensa(m_listaVivas[lugar.uiSubstituidas - 1].uiNumero);
        if (!erro.Ok()) return erro;
    }
    uiNumero = m_uiUltima + 1;
    m_listaVivas.push_back({uiNumero, lugar.uiOffset, uiTamanho});
    auto* pEntrada = reinterpret_cast<REG_XVDIARIO_ENTRADA*>(m_aEntrada.data());
    pEntrada->uiTamanho = m_uiTamanhoEntrada;
    pEntrada->uiSoma = XVSoma64(m_aEntrada.data(), m_uiTamanhoEntrada);
    pEntrada->uiEstado = XVEstadoEntrada(uiNumero, EEstadoEntrada::eRefazer);
    const CXVErroArquivo erro = GravaBytes(lugar.uiOffset);
    if (!erro.Ok()) {
        m_listaVivas.pop_back();
        // Should all of it have been written in spite of the error, it is no entry all the same.
        std::memset(m_aEntrada.data(), 0, sizeof(REG_XVDIARIO_ENTRADA));
        m_uiTamanhoEntrada = sizeof(REG_XVDIARIO_ENTRADA);
        GravaBytes(lugar.uiOffset).Ignora();
        return erro;
    }
    m_uiUltima = uiNumero;
    if (lugar.uiOffset != GetFimAnel()) m_uiProximo = lugar.uiOffset + uiTamanho;
    return {};
}

const CXVDiarioAnel::SViva* CXVDiarioAnel::Busca(XVUInt64 uiNumero) const {
    const auto it = std::find_if(m_listaVivas.rbegin(), m_listaVivas.rend(),
                                 [uiNumero](const SViva& viva) { return viva.uiNumero == uiNumero; });
    return it == m_listaVivas.rend() ? nullptr : &*it;
}

CXVErroArquivo CXVDiarioAnel::MarcaEstado(XVUInt64 uiNumero, EEstadoEntrada eEstado) {
    const SViva* pViva = Busca(uiNumero);
    if (pViva == nullptr) return {};
    const XVUInt64 uiOffset = pViva->uiOffset + offsetof(REG_XVDIARIO_ENTRADA, uiEstado);
    const XVUInt64 uiEstado = XVEstadoEntrada(uiNumero, eEstado);
    if (pViva->uiOffset == GetFimAnel()) return m_pArquivo->Grava(uiOffset, &uiEstado, sizeof(uiEstado));
    return m_pJanela->GravaPalavra(uiOffset, uiEstado);
}

CXVErroArquivo CXVDiarioAnel::MarcaEmCurso(XVUInt64 uiNumero) {
    return m_pJanela->GravaPalavra(k_uiOffsetSequencia, uiNumero * 2 - 1);
}

CXVErroArquivo CXVDiarioAnel::MarcaConcluida(XVUInt64 uiNumero) {
    return m_pJanela->GravaPalavra(k_uiOffsetSequencia, uiNumero * 2);
}
