#include "middleware/ConversaoDiario.h"

#include <cstring>
#include <memory>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVImagemArquivo.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/values/XVCrc64.h"

namespace {

constexpr const char* k_pszArquivoDiarioNovo = "CRMIDDLEWARECVN.srk";
constexpr XVUInt64 k_uiAssinatura = 0x32305643524B5653ULL;          // "SVKRCV02"
constexpr XVUInt64 k_uiAssinaturaSemSomas = 0x31305643524B5653ULL;  // "SVKRCV01"
// A step converts at most one file for each day, which makes some hundred bytes a file: a journal larger than
// this was not written by a conversion, and is refused before it is read into memory.
constexpr XVUInt64 k_uiTamanhoMaximo = 64ULL << 20;

template <class T>
void Anexa(std::string& sDiario, T valor) {
    sDiario.append(reinterpret_cast<const char*>(&valor), sizeof(valor));
}

// Takes a value off the front; false when too few bytes are left.
template <class T>
bool Tira(std::string_view& sDiario, T* pValor) {
    if (sDiario.size() < sizeof(T)) return false;
    std::memcpy(pValor, sDiario.data(), sizeof(T));
    sDiario.remove_prefix(sizeof(T));
    return true;
}

bool TiraNome(std::string_view& sDiario, std::string* psNome) {
    XVUInt ulTamanho = 0;
    if (!Tira(sDiario, &ulTamanho) || ulTamanho > sDiario.size()) return false;
    psNome->assign(sDiario.substr(0, ulTamanho));
    sDiario.remove_prefix(ulTamanho);
    return true;
}

bool TiraSoma(std::string_view& sDiario, SSomaArquivo* pSoma) {
    return Tira(sDiario, &pSoma->uiTamanho) && Tira(sDiario, &pSoma->uiCrcInicio) &&
           Tira(sDiario, &pSoma->uiCrcResto);
}

void AnexaSoma(std::string& sDiario, const SSomaArquivo& rSoma) {
    Anexa(sDiario, rSoma.uiTamanho);
    Anexa(sDiario, rSoma.uiCrcInicio);
    Anexa(sDiario, rSoma.uiCrcResto);
}

// Earlier programs wrote the journal in place: one that was cut off is shorter than the least that its
// own bytes announce, and its step had exchanged nothing yet.
bool EhComecoSemSomas(std::string_view sDiario) {
    std::string sAssinatura;
    Anexa(sAssinatura, k_uiAssinaturaSemSomas);
    return std::string_view(sAssinatura).starts_with(sDiario.substr(0, sAssinatura.size()));
}

}  // namespace

HRESULT CXVDiarioConversao::MontaPath(const char* pszNome, std::string* psPath) {
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), pszNome, psPath));
    return S_OK;
}

// Yields eInterrompido when the bytes end before the last announced name does.
CXVDiarioConversao::ELeitura CXVDiarioConversao::InterpretaEntradas(std::string_view sEntradas,
                                                                    XVUInt ulQuantidade) {
    for (XVUInt i = 0; i < ulQuantidade; ++i) {
        SEntradaDiario entrada;
        if (!TiraNome(sEntradas, &entrada.sNome)) return ELeitura::eInterrompido;
        if (m_bTemSomas && (!TiraSoma(sEntradas, &entrada.antigo) || !TiraSoma(sEntradas, &entrada.novo)))
            return ELeitura::eInterrompido;
        m_listaEntradas.push_back(std::move(entrada));
    }
    if (sEntradas.size() < sizeof(XVUInt64)) return ELeitura::eInterrompido;
    return sEntradas.size() == sizeof(XVUInt64) ? ELeitura::eValido : ELeitura::eInvalido;
}

CXVDiarioConversao::ELeitura CXVDiarioConversao::Interpreta(std::string_view sDiario, XVUShort* pusPasso) {
    const std::string_view sTodo = sDiario;
    XVUInt64 uiAssinatura = 0;
    XVUShort usZero = 0;
    XVUInt ulQuantidade = 0;
    if (!Tira(sDiario, &uiAssinatura))
        return EhComecoSemSomas(sTodo) ? ELeitura::eInterrompido : ELeitura::eInvalido;
    if (uiAssinatura != k_uiAssinatura && uiAssinatura != k_uiAssinaturaSemSomas) return ELeitura::eInvalido;
    m_bTemSomas = uiAssinatura == k_uiAssinatura;
    ELeitura eLeitura = ELeitura::eInterrompido;
    if (Tira(sDiario, pusPasso) && Tira(sDiario, &usZero) && Tira(sDiario, &ulQuantidade))
        eLeitura = InterpretaEntradas(sDiario, ulQuantidade);
    // A journal with sums is moved into its place whole: one that ends too early was not interrupted but
    // damaged.
    if (eLeitura == ELeitura::eInterrompido && m_bTemSomas) return ELeitura::eInvalido;
    if (eLeitura != ELeitura::eValido) return eLeitura;
    XVUInt64 uiCrc = 0;
    const std::size_t uiTamanho = sTodo.size() - sizeof(uiCrc);
    std::memcpy(&uiCrc, sTodo.data() + uiTamanho, sizeof(uiCrc));
    return usZero == 0 && uiCrc == XVCrc64(sTodo.data(), uiTamanho) ? ELeitura::eValido : ELeitura::eInvalido;
}

HRESULT CXVDiarioConversao::LeBytes(const std::string& sPath, std::string* psDiario) {
    std::unique_ptr<IXVArquivo> pArquivo;
    XV_CHECK(XVConversaoArquivo::Abre(this, sPath, &pArquivo));
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = pArquivo == nullptr ? CXVErroArquivo(ECausaArquivo::eArquivoNaoEncontrado, 0)
                                              : pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho > k_uiTamanhoMaximo)
        return XVConversaoArquivo::Recusa(this, sPath, "Diário da conversão grande demais");
    if (erro.Ok()) {
        psDiario->resize(static_cast<std::size_t>(uiTamanho));
        if (!psDiario->empty()) erro = pArquivo->Le(0, psDiario->data(), psDiario->size());
    }
    if (!erro.Ok()) XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sPath, this));
    return S_OK;
}

HRESULT CXVDiarioConversao::Le(XVUShort usPasso) {
    m_listaEntradas.clear();
    m_bEmCurso = false;
    m_bTemSomas = true;
    std::string sPath;
    XV_CHECK(MontaPath(k_pszDiarioConversao, &sPath));
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
    if (!bExiste) return S_OK;
    std::string sDiario;
    XV_CHECK(LeBytes(sPath, &sDiario));
    XVUShort usPassoDiario = 0;
    const ELeitura eLeitura = Interpreta(sDiario, &usPassoDiario);
    const bool bPassou = eLeitura == ELeitura::eValido && usPassoDiario < usPasso;
    if (eLeitura == ELeitura::eInvalido || (eLeitura == ELeitura::eValido && usPassoDiario > usPasso))
        XV_CHECK(XVConversaoArquivo::Recusa(this, sPath, "Diário da conversão danificado ou de outro passo"));
    m_bEmCurso = eLeitura == ELeitura::eValido && !bPassou;
    if (!m_bEmCurso) m_listaEntradas.clear();
    // In a journal without sums only the stamps in the headers prove which file is which, and they count for
    // nothing while headers are switched off.
    const bool bSomas = eLeitura == ELeitura::eValido && m_bTemSomas;
    if (!bSomas && !bPassou && CXVFileBase::CabecalhoDesabilitadoNaMaquina())
        XV_CHECK(
            XVConversaoArquivo::Recusa(this, sPath, "Diário da conversão sem somas e cabeçalhos desligados"));
    return S_OK;
}

HRESULT CXVDiarioConversao::Grava(XVUShort usPasso) {
    std::string sDiario;
    Anexa(sDiario, k_uiAssinatura);
    Anexa(sDiario, usPasso);
    Anexa(sDiario, XVUShort{0});
    Anexa(sDiario, static_cast<XVUInt>(m_listaEntradas.size()));
    for (const SEntradaDiario& rEntrada : m_listaEntradas) {
        Anexa(sDiario, static_cast<XVUInt>(rEntrada.sNome.size()));
        sDiario += rEntrada.sNome;
        AnexaSoma(sDiario, rEntrada.antigo);
        AnexaSoma(sDiario, rEntrada.novo);
    }
    Anexa(sDiario, XVCrc64(sDiario.data(), sDiario.size()));

    std::string sPath;
    std::string sPathNovo;
    XV_CHECK(MontaPath(k_pszDiarioConversao, &sPath));
    XV_CHECK(MontaPath(k_pszArquivoDiarioNovo, &sPathNovo));
    CXVImagemArquivo xvDiario(XV_DF, k_pszArquivoDiarioNovo);
    XV_CHECK(xvDiario.Inicializa(this));
    XV_CHECK(xvDiario.AbreArquivo());
    XV_CHECK(xvDiario.Grava(sDiario.data(), sDiario.size()));
    XV_CHECK(xvDiario.Conclui());
    XV_CHECK(CXVDataBaseUtil::MovePath(this, sPathNovo, sPath));
    xvDiario.Libera();
    return S_OK;
}

HRESULT CXVDiarioConversao::Remove() {
    for (const char* pszNome : {k_pszDiarioConversao, k_pszArquivoDiarioNovo}) {
        std::string sPath;
        XV_CHECK(MontaPath(pszNome, &sPath));
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
        if (!bExiste) continue;
        const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Apaga(sPath);
        // Another process may have been faster.
        if (erro.Ok() || erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado) continue;
        XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sPath, this));
    }
    return S_OK;
}
