// Foreign bytes in the version file, a group member, the key map and the journal of a conversion: the
// conversion ends with a code, holds no file open, and run again ends with the same code and files.
#include <cstdint>

#include "fuzz/XVBancadaFuzz.h"
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
    // Each piece: a byte that names the file, two bytes of length, then the content.
    while (uiTamanho >= 3) {
        const std::size_t uiNome = pDados[0] % std::size(k_apszNomes);
        const std::size_t uiPedido = pDados[1] + 256U * pDados[2];
        const std::size_t uiPedaco = std::min(uiPedido, uiTamanho - 3);
        bancada.PoeArquivo(k_apszNomes[uiNome],
                           std::string(reinterpret_cast<const char*>(pDados) + 3, uiPedaco));
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
