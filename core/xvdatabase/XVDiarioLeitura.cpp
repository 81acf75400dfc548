#include "core/xvdatabase/XVDiarioLeitura.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVCaminho.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr XVUInt64 k_uiTamanhoMaximoAnel = 1U << 30;

// How many bytes may be summed for each byte of the file. The entries of a writer do not overlap, and those
// that a power failure tore overlap a few times at most. A file made up of overlapping entries would cost
// time without end, so reading it stops here.
constexpr XVUInt64 k_uiSomasPorByte = 16;

// Takes uiTamanho bytes and their filler off the front; false when they are not there.
bool Tira(std::string_view& rsResto, XVUInt64 uiTamanho, std::string_view* psParte) {
    if (uiTamanho > rsResto.size()) return false;
    const std::size_t uiCheio = XVAlinha(static_cast<std::size_t>(uiTamanho), 8);
    if (uiCheio > rsResto.size()) return false;
    *psParte = rsResto.substr(0, static_cast<std::size_t>(uiTamanho));
    rsResto.remove_prefix(uiCheio);
    return true;
}

bool EhNomeDeArquivo(std::string_view sNome) {
    return XVCaminho::EhNomeSimples(sNome) && sNome.find('.') != std::string_view::npos;
}

// Offsets and lengths that an operation can have: no gap between the file and what is written.
bool EhPossivel(const SParteLida& rParte) {
    const XVUInt64 uiFim = rParte.uiOffset + rParte.sNovos.size();
    return uiFim >= rParte.uiOffset && rParte.uiOffset <= rParte.uiTamanhoAntes &&
           rParte.uiTamanhoDepois == std::max(rParte.uiTamanhoAntes, uiFim) &&
           rParte.sAntigos.size() ==
               std::min<XVUInt64>(rParte.sNovos.size(), rParte.uiTamanhoAntes - rParte.uiOffset);
}

bool InterpretaParte(std::string_view sParte, SParteLida* pParte) {
    std::string_view sReg;
    REG_XVDIARIO_PARTE reg;
    if (!Tira(sParte, sizeof(reg), &sReg)) return false;
    std::memcpy(&reg, sReg.data(), sizeof(reg));
    if (!Tira(sParte, reg.usTamanhoNome, &pParte->sNome) || !EhNomeDeArquivo(pParte->sNome)) return false;
    if ((reg.ucMarcas & k_ucParteCabecalho) != 0) {
        std::string_view sAntes;
        std::string_view sDepois;
        if (!Tira(sParte, sizeof(REG_XVCABECALHO_B), &sAntes) ||
            !Tira(sParte, sizeof(REG_XVCABECALHO_B), &sDepois))
            return false;
        pParte->pAntes = reinterpret_cast<const REG_XVCABECALHO_B*>(sAntes.data());
        pParte->pDepois = reinterpret_cast<const REG_XVCABECALHO_B*>(sDepois.data());
    }
    if (!Tira(sParte, reg.uiNovos, &pParte->sNovos) || !Tira(sParte, reg.uiAntigos, &pParte->sAntigos))
        return false;
    pParte->uiOffset = reg.uiOffset;
    pParte->uiTamanhoAntes = reg.uiTamanhoAntes;
    pParte->uiTamanhoDepois = reg.uiTamanhoDepois;
    pParte->bCria = (reg.ucMarcas & k_ucParteCria) != 0;
    return sParte.empty() && EhPossivel(*pParte);
}

}  // namespace

CXVErroArquivo CXVDiarioLeitura::Le(IXVArquivo& rArquivo) {
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = rArquivo.GetTamanho(uiTamanho);
    if (!erro.Ok() || uiTamanho < k_uiTamanhoPaginaDiario) return erro;
    erro = LeAte(rArquivo, k_uiTamanhoPaginaDiario);
    const auto reg = erro.Ok() ? Palavra<REG_XVDIARIO_CABECALHO>(0) : REG_XVDIARIO_CABECALHO{};
    if (reg.uiAssinatura != k_uiAssinaturaDiario ||
        reg.uiSoma != XVSoma64(&reg, offsetof(REG_XVDIARIO_CABECALHO, uiSoma)) ||
        reg.uiTamanhoAnel > k_uiTamanhoMaximoAnel || reg.uiTamanhoAnel > uiTamanho - k_uiTamanhoPaginaDiario)
        return erro;
    m_uiSessao = reg.uiSessao;
    m_uiPalavra = Palavra<XVUInt64>(static_cast<std::size_t>(k_uiOffsetSequencia));
    const XVUInt64 uiFimAnel = k_uiTamanhoPaginaDiario + reg.uiTamanhoAnel;
    erro = LeAte(rArquivo, uiFimAnel);
    // Behind the ring there is one entry, or what is left of one; its length is believed as far as the file
    // goes.
    if (erro.Ok() && uiTamanho >= uiFimAnel + sizeof(REG_XVDIARIO_ENTRADA)) {
        erro = LeAte(rArquivo, uiFimAnel + sizeof(REG_XVDIARIO_ENTRADA));
        const auto regLonga = erro.Ok() ? Palavra<REG_XVDIARIO_ENTRADA>(static_cast<std::size_t>(uiFimAnel))
                                        : REG_XVDIARIO_ENTRADA{};
        if (regLonga.uiSessao == m_uiSessao && regLonga.uiTamanho <= uiTamanho - uiFimAnel)
            erro = LeAte(rArquivo, std::max(uiFimAnel + regLonga.uiTamanho, XVUInt64{m_sBytes.size()}));
    }
    if (erro.Ok()) Interpreta(static_cast<std::size_t>(uiFimAnel));
    return erro;
}

// Reads on, up to a length of the file.
CXVErroArquivo CXVDiarioLeitura::LeAte(IXVArquivo& rArquivo, XVUInt64 uiFim) {
    const std::size_t uiInicio = m_sBytes.size();
    m_sBytes.resize(static_cast<std::size_t>(uiFim));
    return rArquivo.Le(uiInicio, m_sBytes.data() + uiInicio, m_sBytes.size() - uiInicio);
}

template <class T>
T CXVDiarioLeitura::Palavra(std::size_t uiOffset) const {
    T valor;
    std::memcpy(&valor, m_sBytes.data() + uiOffset, sizeof(valor));
    return valor;
}

void CXVDiarioLeitura::Interpreta(std::size_t uiFimAnel) {
    for (std::size_t i = k_uiTamanhoPaginaDiario; i < uiFimAnel;) i += Examina(i, uiFimAnel);
    Examina(uiFimAnel, m_sBytes.size());
    Encadeia(Palavra<XVUInt64>(static_cast<std::size_t>(k_uiOffsetPrimeira)));
}

// Whether an entry of this session begins here, and whether it is complete. Gives the distance to the next
// place where one may begin: what lies inside of a complete one is data, whatever it looks like.
std::size_t CXVDiarioLeitura::Examina(std::size_t uiOffset, std::size_t uiFim) {
    if (uiFim < uiOffset + sizeof(REG_XVDIARIO_ENTRADA)) return k_uiAlinhamentoEntrada;
    const auto reg = Palavra<REG_XVDIARIO_ENTRADA>(uiOffset);
    if (reg.uiAssinatura != k_uiAssinaturaEntrada || reg.uiSessao != m_uiSessao)
        return k_uiAlinhamentoEntrada;
    SEntradaLida entrada;
    entrada.uiNumero = reg.uiNumero;
    entrada.eTipo = reg.eTipo;
    for (const EEstadoEntrada e :
         {EEstadoEntrada::eRefazer, EEstadoEntrada::eDesfazer, EEstadoEntrada::eNula})
        if (reg.uiEstado == XVEstadoEntrada(reg.uiNumero, e)) entrada.eEstado = e;
    const bool bCompleta =
        reg.uiTamanho >= sizeof(reg) && reg.uiTamanho <= uiFim - uiOffset && SomaConfere(uiOffset, reg) &&
        InterpretaPartes(std::string_view(m_sBytes).substr(uiOffset, static_cast<std::size_t>(reg.uiTamanho)),
                         reg.ulPartes, &entrada);
    if (!bCompleta) {
        m_uiMaiorInacabada = std::max(m_uiMaiorInacabada, entrada.uiNumero);
        return k_uiAlinhamentoEntrada;
    }
    m_listaEntradas.push_back(std::move(entrada));
    return XVAlinha(static_cast<std::size_t>(reg.uiTamanho), k_uiAlinhamentoEntrada);
}

// The sum takes two fields as zero: they are zero in the journal's copy while it is taken.
bool CXVDiarioLeitura::SomaConfere(std::size_t uiOffset, const REG_XVDIARIO_ENTRADA& reg) {
    m_uiSomados += reg.uiTamanho;
    if (m_uiSomados > k_uiSomasPorByte * m_sBytes.size()) {
        m_bLacuna = true;
        return false;
    }
    REG_XVDIARIO_ENTRADA regSomado = reg;
    regSomado.uiSoma = regSomado.uiEstado = 0;
    char* pEntrada = m_sBytes.data() + uiOffset;
    std::memcpy(pEntrada, &regSomado, sizeof(regSomado));
    const XVUInt64 uiSoma = XVSoma64(pEntrada, static_cast<std::size_t>(reg.uiTamanho));
    std::memcpy(pEntrada, &reg, sizeof(reg));
    return uiSoma == reg.uiSoma;
}

bool CXVDiarioLeitura::TemEstadoDesconhecido() const {
    return std::any_of(m_listaEntradas.begin(), m_listaEntradas.end(),
                       [](const SEntradaLida& rEntrada) { return !rEntrada.eEstado.has_value(); });
}

bool CXVDiarioLeitura::InterpretaPartes(std::string_view sEntrada, XVUInt ulPartes, SEntradaLida* pEntrada) {
    std::string_view sPartes = sEntrada.substr(sizeof(REG_XVDIARIO_ENTRADA));
    for (XVUInt i = 0; i < ulPartes; ++i) {
        XVUInt64 uiTamanho = 0;
        if (sPartes.size() < sizeof(uiTamanho)) return false;
        std::memcpy(&uiTamanho, sPartes.data(), sizeof(uiTamanho));
        std::string_view sParte;
        SParteLida parte;
        if (uiTamanho % 8 != 0 || !Tira(sPartes, uiTamanho, &sParte) || !InterpretaParte(sParte, &parte))
            return false;
        pEntrada->listaPartes.push_back(parte);
    }
    return sPartes.empty();
}

// Keeps the needed entries in order, and sees whether all are there.
void CXVDiarioLeitura::Encadeia(XVUInt64 uiPrimeira) {
    std::erase_if(m_listaEntradas, [uiPrimeira](const SEntradaLida& e) { return e.uiNumero < uiPrimeira; });
    std::sort(m_listaEntradas.begin(), m_listaEntradas.end(),
              [](const SEntradaLida& e1, const SEntradaLida& e2) { return e1.uiNumero < e2.uiNumero; });
    XVUInt64 uiEsperada = uiPrimeira;
    for (const SEntradaLida& rEntrada : m_listaEntradas) m_bLacuna |= rEntrada.uiNumero != uiEsperada++;
    m_bInacabada = m_uiMaiorInacabada == uiEsperada;
}
