// Foreign bytes in the place of the journal of operations beside a sound store: opening refuses the store or
// serves it. A journal that its checksums do not confirm explains nothing, and no data file is changed by it.
#include <cstdint>

#include "fuzz/XVLojaSa.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    CXVBancadaFuzz bancada;
    CXVLojaSa::Poe(bancada);
    const auto antes = CXVLojaSa::Dados(bancada);
    bancada.PoeArquivo("XVDATABASE_ABERTA.srk",
                       std::string(reinterpret_cast<const char*>(pDados), uiTamanho));
    auto pLoja = CXVLojaSa::Abre(bancada);
    XV_EXIGE(CXVLojaSa::Dados(bancada) == antes);
    if (pLoja != nullptr) {
        XV_EXIGE(CXVLojaSa::Confere(*pLoja) && CXVLojaSa::Grava(*pLoja));
        XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    }
    pLoja.reset();
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
