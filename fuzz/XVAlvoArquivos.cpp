// Foreign bytes in the place of each kind of database file: opening either refuses the file and leaves it
// byte for byte as found, or serves it, takes one more record and serves that too after reopening.
#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVFileSingleReg.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "core/xvdatabase/XVTextFile.h"
#include "fuzz/XVBancadaFuzz.h"
#include "fuzz/XVCabecalhoReparado.h"
#include "middleware/XVResumoIndex.h"

namespace {

using CArquivoRegistros = CXVFile<REG_CR_INDEX_INTEGRACAO_V1>;
using CArquivoVersao = CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>;

constexpr const char* k_pszNome = "ALVO.dat";

template <class TArquivo>
struct SBase {
    CXVDataBase db{XV_DF};
    TArquivo arquivo{k_pszNome, &db};
    ~SBase() { XVIgnora(db.Finaliza()); }
};

HRESULT Le(CArquivoRegistros& rArquivo, XVUInt64 uiPosicao) {
    REG_CR_INDEX_INTEGRACAO_V1 reg;
    return rArquivo.Le(static_cast<XVUInt>(uiPosicao), &reg);
}
HRESULT Le(CXVTextFile& rArquivo, XVUInt64 uiPosicao) {
    std::string sTexto;
    return rArquivo.Le(static_cast<XVUInt>(uiPosicao), sTexto);
}

template <class TArquivo>
void Confere(TArquivo& rArquivo, XVUInt64 uiQtd) {
    for (XVUInt64 i = 1; i <= uiQtd; ++i) XV_EXIGE(SUCCEEDED(Le(rArquivo, i)));
    XV_EXIGE(FAILED(Le(rArquivo, uiQtd + 1)));
}

HRESULT Acrescenta(CArquivoRegistros& rArquivo) {
    XVUInt uiPosicao = 0;
    return rArquivo.Grava(uiPosicao, {1, REG_XVDMC{uiPosicao + 1ULL}, 2, 3});
}

HRESULT Acrescenta(CXVTextFile& rArquivo) {
    XVUInt uiPosicao = 0;
    return rArquivo.Grava(uiPosicao, "mais um texto");
}

template <class TArquivo>
void Exercita(CXVBancadaFuzz& rBancada, const std::string& sConteudo) {
    XVUInt64 uiQtd = 0;
    {
        SBase<TArquivo> base;
        if (FAILED(base.db.Inicializa(&rBancada.GetPerfil()))) {
            // A header may have been put in front of the content before the content was refused.
            XV_EXIGE(rBancada.LeArquivo(k_pszNome).ends_with(sConteudo));
            return;
        }
        uiQtd = base.arquivo.GetQtdRegistros();
        Confere(base.arquivo, uiQtd);
        XV_EXIGE(SUCCEEDED(Acrescenta(base.arquivo)));
    }
    SBase<TArquivo> base;
    XV_EXIGE(SUCCEEDED(base.db.Inicializa(&rBancada.GetPerfil())));
    Confere(base.arquivo, uiQtd + 1);
}

void ExercitaVersao(CXVBancadaFuzz& rBancada) {
    SBase<CArquivoVersao> base;
    REG_CR_MIDDLEWARE_VERSAO reg;
    if (SUCCEEDED(base.db.Inicializa(&rBancada.GetPerfil()))) XV_EXIGE(SUCCEEDED(base.arquivo.Le(reg)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    if (uiTamanho == 0) return 0;
    CXVBancadaFuzz bancada;
    std::string sConteudo(reinterpret_cast<const char*>(pDados) + 1, uiTamanho - 1);
    // The first byte chooses the kind of file and how far its header is put right.
    XVReparaCabecalho(sConteudo, static_cast<EReparo>(pDados[0] / 3 % static_cast<int>(EReparo::eQuantidade)),
                      k_pszNome);
    bancada.PoeArquivo(k_pszNome, sConteudo);
    switch (pDados[0] % 3) {
        case 0:
            Exercita<CArquivoRegistros>(bancada, sConteudo);
            break;
        case 1:
            Exercita<CXVTextFile>(bancada, sConteudo);
            break;
        default:
            ExercitaVersao(bancada);
            break;
    }
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
