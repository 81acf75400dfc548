#include "core/xvdatabase/XVSeguidorDiario.h"

#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"

namespace {

// Bytes of operations that are kept; who has so many to lay over the files reads them again sooner.
constexpr XVUInt64 k_uiMaximo = 256U << 20;

CXVErroArquivo AbreDiario(const std::string& sDiretorio, std::unique_ptr<IXVArquivo>& rpArquivo) {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    return rSistema.Abre(rSistema.Junta(sDiretorio, k_pszNomeDiario), k_aberturaConsulta, rpArquivo);
}

}  // namespace

bool CXVSeguidorDiario::Inicia() {
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVDiarioLeitura diario;
    if (!AbreDiario(m_rVisao.GetDiretorio(), pArquivo).Ok() || !diario.Le(*pArquivo).Ok()) return false;
    if (diario.GetSessao() == 0 || diario.GetPalavra() == k_uiPalavraConclusao || !m_rVisao.TemEscritor())
        return false;
    m_uiSessao = diario.GetSessao();
    m_uiUltima = diario.GetPalavra() / 2;
    m_bPerdeu = false;
    return true;
}

void CXVSeguidorDiario::Olha() {
    std::unique_ptr<IXVArquivo> pArquivo;
    XVUInt64 uiPalavra = 0;
    if (m_bPerdeu) return;
    if (AbreDiario(m_rVisao.GetDiretorio(), pArquivo).Ok() &&
        pArquivo->Le(k_uiOffsetSequencia, &uiPalavra, sizeof(uiPalavra)).Ok() && uiPalavra / 2 == m_uiUltima)
        return;
    m_bPerdeu = pArquivo == nullptr || !Le(*pArquivo, &uiPalavra);
}

bool CXVSeguidorDiario::Le(IXVArquivo& rArquivo, XVUInt64* puiPalavra) {
    CXVDiarioLeitura diario;
    if (!diario.Le(rArquivo).Ok() || diario.GetSessao() != m_uiSessao ||
        diario.GetPalavra() == k_uiPalavraConclusao)
        return false;
    *puiPalavra = diario.GetPalavra();
    return Toma(diario);
}

// Whether an operation took place is certain once the word says that it is over: its entry is void then, or
// was concluded.
bool CXVSeguidorDiario::Toma(const CXVDiarioLeitura& rDiario) {
    const XVUInt64 uiAte = rDiario.GetPalavra() / 2;
    for (const SEntradaLida& rEntrada : rDiario.GetEntradas()) {
        if (rEntrada.uiNumero <= m_uiUltima) continue;
        // A file that is being replaced by a copy is replaced by no operation.
        if (rEntrada.eTipo != ETipoEntrada::eGravacao) return false;
        if (rEntrada.uiNumero > uiAte) continue;
        if (rEntrada.uiNumero != m_uiUltima + 1 || !TomaEntrada(rEntrada)) return false;
        m_uiUltima = rEntrada.uiNumero;
    }
    return m_uiUltima == uiAte;
}

bool CXVSeguidorDiario::TomaEntrada(const SEntradaLida& rEntrada) {
    if (rEntrada.eEstado == EEstadoEntrada::eNula) return true;
    if (rEntrada.eEstado != EEstadoEntrada::eRefazer) return false;
    for (const SParteLida& rParte : rEntrada.listaPartes) {
        SMudancaArquivo& rMudanca = m_mapa[std::string(rParte.sNome)];
        rMudanca.bCriado = rMudanca.bCriado || rParte.bCria;
        rMudanca.uiTamanho = rParte.uiTamanhoDepois;
        rMudanca.faixas.Mescla(rParte.uiOffset, rParte.sNovos);
        if (rParte.pDepois != nullptr) rMudanca.regCabecalho = *rParte.pDepois;
        m_uiBytes += rParte.sNovos.size();
    }
    return m_uiBytes <= k_uiMaximo;
}

// An operation in flight may have been seen whole already, in what was read last: it has to be over.
bool CXVSeguidorDiario::Confirma() {
    constexpr int k_iEsperas = 200;
    XVUInt64 uiAte = 0;
    for (int i = 0; !m_bPerdeu && (i == 0 || m_uiUltima < uiAte); ++i) {
        if (i > 0) XVPlataforma::Relogio().Dorme(1);
        std::unique_ptr<IXVArquivo> pArquivo;
        XVUInt64 uiPalavra = 0;
        m_bPerdeu = i == k_iEsperas || !AbreDiario(m_rVisao.GetDiretorio(), pArquivo).Ok() ||
                    !Le(*pArquivo, &uiPalavra);
        if (i == 0) uiAte = uiPalavra / 2 + uiPalavra % 2;
    }
    return !m_bPerdeu && m_rVisao.TemEscritor();
}
