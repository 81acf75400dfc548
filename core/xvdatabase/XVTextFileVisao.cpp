// CXVTextFile: viewing. Texts are only ever appended: where those known lie stays true, and what a writer has
// added since is found behind them.
#include <algorithm>
#include <cstring>
#include <mutex>
#include <optional>

#include "core/xvdatabase/XVArquivoVisto.h"
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVTextFile.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

namespace {

// More than this behind the texts that are known is added to the table, not read for one text.
constexpr XVUInt64 k_uiMaiorResto = 256U << 10;

// The text uiIndice (0 is the first) of a run as it lies on disk.
bool BuscaTexto(std::string_view sResto, XVUInt64 uiIndice, std::string& sTexto) {
    XVUInt ulTexto = 0;
    while (sResto.size() >= sizeof(ulTexto)) {
        std::memcpy(&ulTexto, sResto.data(), sizeof(ulTexto));
        sResto.remove_prefix(sizeof(ulTexto));
        if (ulTexto > sResto.size()) return false;
        if (uiIndice-- == 0) {
            sTexto = sResto.substr(0, std::min(sResto.find('\0'), std::size_t{ulTexto}));
            return true;
        }
        sResto.remove_prefix(ulTexto);
    }
    return false;
}

}  // namespace

// A writer may have put a header in front of the texts since: where the payload begins is of the moment of
// each reading. Texts that are known do not change, so a long one need not be of the moment of the call,
// which may not last so long.
CXVErroArquivo CXVTextFile::LePayloadVisto(CXVVisao& rVisao, XVUInt64 uiOffsetDados, void* pDados,
                                           std::size_t uiTamanho) const {
    std::optional<CXVMomento::CAtivo> suspende;
    if (uiTamanho > CXVArquivoVisto::k_uiPedaco) suspende.emplace(nullptr);
    CXVErroArquivo erro;
    for (std::size_t i = 0; erro.Ok() && i < uiTamanho;) {
        const std::size_t uiParte = std::min(uiTamanho - i, CXVArquivoVisto::k_uiPedaco);
        erro = rVisao.NoMomento([&](CXVMomento& rMomento) {
            SAreaVista area;
            const CXVErroArquivo erroArea = rMomento.GetArea(GetNomeArquivo(), &area);
            return erroArea.Ok() ? rMomento.Le(GetNomeArquivo(), area.uiSeek + uiOffsetDados + i,
                                               static_cast<char*>(pDados) + i, uiParte)
                                 : erroArea;
        });
        i += uiParte;
    }
    return erro;
}

HRESULT CXVTextFile::CarregaNovos() {
    const CXVMomento::CAtivo suspende(nullptr);
    const std::unique_lock lock(GetLock());
    const CXVArquivoVisto arquivo(*GetDataBase()->GetVisao(), GetNomeArquivo());
    SAreaVista area;
    const CXVErroArquivo erro = arquivo.GetArea(&area);
    if (const CXVErroArquivo* pEx = erro.GetFalha()) XV_CHECK(CatchInicializacao(pEx));
    if (area.uiTamanho <= area.uiSeek + m_uiFim) return S_OK;
    if (!ExisteArquivo()) XV_CHECK(AbreArquivo());
    XV_CHECK(Recusa(CarregaTabela(area.uiTamanho - area.uiSeek)));
    return S_OK;
}

// A text behind those that are known: read in the moment of the record that names it.
HRESULT CXVTextFile::LeVisto(XVUInt uiPosicao, std::string& sTexto) const {
    for (int i = 0; i < 2; ++i) {
        std::string sResto;
        XVUInt64 uiResto = 0;
        XVUInt64 uiQtd = 0;
        const CXVErroArquivo erro = GetDataBase()->GetVisao()->NoMomento([&](CXVMomento& rMomento) {
            const std::shared_lock lock(GetLock());
            uiQtd = m_aOffsets.size();
            SAreaVista area;
            CXVErroArquivo erroLe = rMomento.GetArea(GetNomeArquivo(), &area);
            const XVUInt64 uiInicio = area.uiSeek + m_uiFim;
            uiResto = area.uiTamanho > uiInicio ? area.uiTamanho - uiInicio : 0;
            sResto.resize(uiResto > k_uiMaiorResto ? 0 : static_cast<std::size_t>(uiResto));
            if (erroLe.Ok() && !sResto.empty())
                erroLe = rMomento.Le(GetNomeArquivo(), uiInicio, sResto.data(), sResto.size());
            return erroLe;
        });
        if (const CXVErroArquivo* pEx = erro.GetFalha()) XV_CHECK(CatchInicializacao(pEx));
        if (uiPosicao > uiQtd && BuscaTexto(sResto, uiPosicao - uiQtd - 1, sTexto)) return S_OK;
        if (uiResto <= k_uiMaiorResto && uiPosicao > uiQtd) break;
        // What a viewer keeps in memory is a copy of the disk: adding to it changes nothing.
        XV_CHECK(const_cast<CXVTextFile*>(this)->CarregaNovos());
        const std::shared_lock lock(GetLock());
        if (uiPosicao <= m_aOffsets.size()) {
            XV_CHECK(LeTexto(uiPosicao - 1, sTexto));
            sTexto.resize(std::min(sTexto.find('\0'), sTexto.size()));
            return S_OK;
        }
    }
    XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
}
