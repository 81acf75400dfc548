// Foreign bytes in the place of the control file beside a sound store: opening refuses the store or serves it
// whole, and no data file is changed by it.
#include "fuzz/XVLojaSa.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    CXVBancadaFuzz bancada;
    CXVLojaSa::Poe(bancada);
    const auto antes = CXVLojaSa::Dados(bancada);
    bancada.PoeArquivo("XVDATABASE_FILE_CTRL.dat",
                       std::string(reinterpret_cast<const char*>(pDados), uiTamanho));
    if (auto pLoja = CXVLojaSa::Abre(bancada)) {
        XV_EXIGE(CXVLojaSa::Confere(*pLoja));
        XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
        XV_EXIGE(CXVLojaSa::Dados(bancada) == antes);
        // What the opening wrote into the list is a list that the next one reads.
        pLoja = CXVLojaSa::Abre(bancada);
        XV_EXIGE(pLoja != nullptr && CXVLojaSa::Confere(*pLoja));
    }
    XV_EXIGE(CXVLojaSa::Dados(bancada) == antes);
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
