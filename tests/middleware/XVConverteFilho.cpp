// Converts the store of company MATRIZ below the module directory given, telling every file converted
// and every step ended by a line; "fim <hresult>" at the end.
#include <cstdio>

#include "middleware/ConversaoMiddleware.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

class CXVNarrador final : public IXVObservadorConversao {
  public:
    void OnInicioPasso(XVUShort usPasso, std::size_t) override { Diz("inicio", usPasso); }
    void OnArquivoConvertido(XVUShort usPasso, const std::string&, XVUInt64) override {
        Diz("arquivo", usPasso);
    }
    void OnFimPasso(XVUShort usPasso) override { Diz("passo", usPasso); }

  private:
    static void Diz(const char* pszO, unsigned uiPasso) {
        std::printf("%s %u\n", pszO, uiPasso);
        std::fflush(stdout);
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    CXVRegistroFalso registro;
    registro.SetTexto(CAmbienteXV::GetChaveRegistro(XV_DF), "Path", argv[1]);
    const CXVGuardaRegistro guarda(registro);
    const CXVDonoFixo dono("MATRIZ");
    CXVNarrador narrador;
    CXVConversaoMiddleware conversao(&narrador);
    HRESULT hr = conversao.Inicializa(&dono);
    if (SUCCEEDED(hr)) hr = conversao.ExecutaConversao();
    std::printf("fim %08x\n", static_cast<unsigned>(hr));
    return SUCCEEDED(hr) ? 0 : 1;
}
