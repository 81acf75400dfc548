// Foreign bytes in the version file, a group member, the key map and the journal of a conversion: the
// conversion ends with a code, holds no file open, and run again ends with the same code and files.
#include "fuzz/XVBancadaFuzz.h"
#include "fuzz/XVCabecalhoReparado.h"
#include "middleware/ConversaoMiddleware.h"

namespace {

constexpr const char* k_apszNomes[] = {"CRMIDDLEWAREVS.dat", "CRINTEGMID20240115.dat", "CRCHAVEREGTER.dat",
                                       "CRMIDDLEWARECV.srk", "CRINTEGMID20240115.tra", "CRDTHRINTEG.dat"};

HRESULT Converte(CXVBancadaFuzz& rBancada) {
    CXVConversaoMiddleware conversao(nullptr);
    XV_EXIGE(SUCCEEDED(conversao.Inicializa(&rBancada.GetPerfil())));
    const HRESULT hr = conversao.ExecutaConversao();
    XVIgnora(conversao.Finaliza());
    return hr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    CXVBancadaFuzz bancada;
    // Each piece: a byte that names the file and how far its header is put right, two bytes of length, then
    // the content.
    while (uiTamanho >= 3) {
        const std::size_t uiNome = pDados[0] % std::size(k_apszNomes);
        const std::size_t uiPedido = pDados[1] + 256U * pDados[2];
        const std::size_t uiPedaco = std::min(uiPedido, uiTamanho - 3);
        std::string sConteudo(reinterpret_cast<const char*>(pDados) + 3, uiPedaco);
        const std::size_t uiReparo =
            pDados[0] / std::size(k_apszNomes) % static_cast<std::size_t>(EReparo::eQuantidade);
        XVReparaCabecalho(sConteudo, static_cast<EReparo>(uiReparo), k_apszNomes[uiNome]);
        bancada.PoeArquivo(k_apszNomes[uiNome], std::move(sConteudo));
        pDados += 3 + uiPedaco;
        uiTamanho -= 3 + uiPedaco;
    }
    const HRESULT hr = Converte(bancada);
    const auto retrato = bancada.GetDisco().Retrata();
    const HRESULT hr2 = Converte(bancada);
    XV_EXIGE(hr2 == hr);
    XV_EXIGE(bancada.GetDisco().Retrata() == retrato);
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
