// Bytes as operations of a whole store, each compared with the model.
#include <cstdint>
#include <cstdio>

#include "fuzz/XVLojaSa.h"
#include "tests/model/XVPassosModelo.h"

namespace {

// One byte, or two for a limit above 256, for each choice; 0 at the end of the input.
class CDecisoesBytes final : public IXVDecisoes {
  public:
    CDecisoesBytes(const std::uint8_t* pDados, std::size_t uiTamanho)
        : m_pDados(pDados), m_uiResta(uiTamanho) {}
    XVUInt64 Escolhe(XVUInt64 uiLimite) override {
        XVUInt64 ui = Byte();
        if (uiLimite > 256) ui = ui << 8 | Byte();
        return ui % uiLimite;
    }
    bool Acabou() const { return m_uiResta == 0; }

  private:
    std::uint8_t Byte() {
        if (m_uiResta == 0) return 0;
        --m_uiResta;
        return *m_pDados++;
    }

    const std::uint8_t* m_pDados;
    std::size_t m_uiResta;
};

void Exige(const std::string& sErro) {
    if (!sErro.empty()) std::fprintf(stderr, "%s\n", sErro.c_str());
    XV_EXIGE(sErro.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    constexpr unsigned k_uiPassosPorDia = 8;
    constexpr unsigned k_uiPassosPorAbertura = 24;
    CXVBancadaFuzz bancada;
    CXVDiasModelo dias(bancada.GetRelogio());
    CDecisoesBytes decisoes(pDados, uiTamanho);
    CXVPassosModelo passos(decisoes, {});
    std::unique_ptr<CBaseMiddleware> pLoja;
    for (unsigned i = 0; !decisoes.Acabou(); ++i) {
        if (i % k_uiPassosPorDia == 0) passos.SetAgora(dias.Sorteia(decisoes));
        if (i % k_uiPassosPorAbertura == 0) {
            pLoja.reset();
            pLoja = CXVLojaSa::Abre(bancada);
            XV_EXIGE(pLoja != nullptr);
            Exige(passos.ConfereTudo(*pLoja));
        }
        Exige(passos.Passo(*pLoja));
    }
    pLoja.reset();
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
