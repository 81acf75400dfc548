// CXVConversaoMiddleware: the journal of a conversion step.
//
// u64 signature, u16 step, u16 zero, u32 number of names, then each name as u32 length and bytes, then the
// CRC-64 of everything before it. All integers little-endian.
#include <algorithm>
#include <cstring>
#include <memory>

#include "core/xvdatabase/XVCodigosArquivo.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVImagemArquivo.h"
#include "middleware/ConversaoMiddleware.h"
#include "platform/XVPlataforma.h"
#include "support/XVArquivoRecusado.h"
#include "support/XVCrc64.h"

namespace {

constexpr const char* k_pszArquivoDiario = "CRMIDDLEWARECV.srk";
constexpr XVUInt64 k_uiAssinatura = 0x31305643524B5653ULL;
// A step converts one file a day at the most: a larger journal is none of ours.
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

bool Interpreta(std::string_view sDiario, XVUShort usPassoEsperado, std::vector<std::string>* plistaNomes) {
    if (sDiario.size() < sizeof(XVUInt64)) return false;
    std::string_view sCrc = sDiario.substr(sDiario.size() - sizeof(XVUInt64));
    sDiario.remove_suffix(sizeof(XVUInt64));
    XVUInt64 uiCrc = 0;
    if (!Tira(sCrc, &uiCrc) || uiCrc != XVCrc64(sDiario.data(), sDiario.size())) return false;
    XVUInt64 uiAssinatura = 0;
    XVUShort usPasso = 0;
    XVUShort usZero = 0;
    XVUInt ulQuantidade = 0;
    if (!Tira(sDiario, &uiAssinatura) || uiAssinatura != k_uiAssinatura || !Tira(sDiario, &usPasso) ||
        usPasso != usPassoEsperado || !Tira(sDiario, &usZero) || !Tira(sDiario, &ulQuantidade))
        return false;
    for (XVUInt i = 0; i < ulQuantidade; ++i) {
        XVUInt ulTamanho = 0;
        if (!Tira(sDiario, &ulTamanho) || ulTamanho > sDiario.size()) return false;
        plistaNomes->emplace_back(sDiario.substr(0, ulTamanho));
        sDiario.remove_prefix(ulTamanho);
    }
    return sDiario.empty();
}

}  // namespace

HRESULT CXVConversaoMiddleware::GravaDiario(XVUShort usPasso, const CListaNomes& listaNomes) {
    std::string sDiario;
    Anexa(sDiario, k_uiAssinatura);
    Anexa(sDiario, usPasso);
    Anexa(sDiario, XVUShort{0});
    Anexa(sDiario, static_cast<XVUInt>(listaNomes.size()));
    for (const std::string& sNome : listaNomes) {
        Anexa(sDiario, static_cast<XVUInt>(sNome.size()));
        sDiario += sNome;
    }
    Anexa(sDiario, XVCrc64(sDiario.data(), sDiario.size()));

    CXVImagemArquivo xvDiario(XV_DF, k_pszArquivoDiario);
    XV_CHECK(xvDiario.Inicializa(this));
    XV_CHECK(xvDiario.AbreArquivo());
    XV_CHECK(xvDiario.Grava(sDiario.data(), sDiario.size()));
    XV_CHECK(xvDiario.Conclui());
    xvDiario.Libera();
    return S_OK;
}

HRESULT CXVConversaoMiddleware::LeDiario(XVUShort usPasso, CListaNomes* plistaNomes, bool* pbValido) {
    plistaNomes->clear();
    *pbValido = false;
    std::string sPath;
    XV_CHECK(MontaPath(k_pszArquivoDiario, &sPath));
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
    if (!bExiste) return S_OK;
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaEscrita,
                                          ECriacaoArquivo::eSomenteExistente};
    std::unique_ptr<IXVArquivo> pArquivo;
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(sPath, k_abertura, pArquivo);
    if (erro.Ok()) erro = pArquivo->GetTamanho(uiTamanho);
    std::string sDiario;
    if (erro.Ok() && uiTamanho <= k_uiTamanhoMaximo) {
        sDiario.resize(static_cast<std::size_t>(uiTamanho));
        if (!sDiario.empty()) erro = pArquivo->Le(0, sDiario.data(), sDiario.size());
    }
    if (!erro.Ok())
        XV_CHECK_TEXTO(XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, sPath, this),
                       "LeDiario(usPasso, plistaNomes)");
    // A name that is no file of the step makes it none of ours.
    *pbValido = Interpreta(sDiario, usPasso, plistaNomes) &&
                std::all_of(plistaNomes->begin(), plistaNomes->end(),
                            [usPasso](const std::string& sNome) { return EhArquivoDoPasso(usPasso, sNome); });
    return S_OK;
}

HRESULT CXVConversaoMiddleware::RemoveDiario() {
    std::string sPath;
    XV_CHECK(MontaPath(k_pszArquivoDiario, &sPath));
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
    if (!bExiste) return S_OK;
    const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Apaga(sPath);
    // Another process may have been faster.
    if (erro.Ok() || erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado) return S_OK;
    XV_CHECK_TEXTO(XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, sPath, this),
                   "Apaga(sPath)");
    return S_OK;
}
