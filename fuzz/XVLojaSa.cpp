#include "fuzz/XVLojaSa.h"

#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

// The disk of a store at one moment, and what the store shows then.
struct SMomento {
    CXVSistemaArquivosMemoria::TRetrato disco;
    TRetratoLoja retrato;
};

// The sound store, closed; and the disk before and after one more operation, seen while it is open.
struct SMomentos {
    SMomento sa, antes, depois;
};

SMomento Momento(CXVBancadaFuzz& rBancada, CBaseMiddleware& rLoja) {
    return {rBancada.GetDisco().Retrata(), XVRetrataLoja(rLoja)};
}

HRESULT GravaMais(CBaseMiddleware& rLoja, XVUInt64 uiChave, REG_XVDMC* pDmc) {
    CXVIntegracaoTeste integracao(uiChave);
    return rLoja.GravaIntegracao(pDmc, integracao.Textos("{\"mais\":1}", "mais", "").Ptr());
}

SMomentos Faz() {
    CXVBancadaFuzz bancada;
    SMomentos momentos;
    auto pLoja = CXVLojaSa::Abre(bancada);
    XV_EXIGE(XVPovoaLoja(*pLoja, [&](unsigned uiDia) {
        bancada.GetRelogio().SetUTC({2024, 3, static_cast<XVByte>(uiDia), 12, 0, 0});
    }));
    XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
    momentos.sa.disco = bancada.GetDisco().Retrata();
    pLoja = CXVLojaSa::Abre(bancada);
    momentos.sa.retrato = XVRetrataLoja(*pLoja);
    // The first operation makes the journal and opens the day's files: the two pictures differ by the second
    // alone.
    REG_XVDMC regDmc{};
    XV_EXIGE(SUCCEEDED(GravaMais(*pLoja, 6, &regDmc)));
    momentos.antes = Momento(bancada, *pLoja);
    XV_EXIGE(SUCCEEDED(GravaMais(*pLoja, 7, &regDmc)));
    momentos.depois = Momento(bancada, *pLoja);
    return momentos;
}

const SMomentos& Momentos() {
    static const SMomentos s_momentos = Faz();
    return s_momentos;
}

}  // namespace

void CXVLojaSa::PoeMorta(CXVBancadaFuzz& rBancada, unsigned uiJaGravados) {
    auto disco = Momentos().depois.disco;
    for (auto& [sNome, arquivo] : disco) {
        if (!sNome.ends_with(".dat")) continue;
        if ((uiJaGravados & 1) == 0) arquivo = Momentos().antes.disco.at(sNome);
        uiJaGravados >>= 1;
    }
    rBancada.GetDisco().Restaura(disco);
}

void CXVLojaSa::Poe(CXVBancadaFuzz& rBancada) {
    rBancada.GetDisco().Restaura(Momentos().sa.disco);
}

std::unique_ptr<CBaseMiddleware> CXVLojaSa::Abre(CXVBancadaFuzz& rBancada) {
    auto pLoja = std::make_unique<CBaseMiddleware>();
    return SUCCEEDED(pLoja->Inicializa(&rBancada.GetPerfil())) ? std::move(pLoja) : nullptr;
}

bool CXVLojaSa::Confere(CBaseMiddleware& rLoja) {
    return XVRetrataLoja(rLoja) == Momentos().sa.retrato;
}

bool CXVLojaSa::ConfereConcluida(CBaseMiddleware& rLoja) {
    return XVRetrataLoja(rLoja) == Momentos().depois.retrato;
}

bool CXVLojaSa::Grava(CBaseMiddleware& rLoja) {
    REG_XVDMC regDmc;
    return GravaMais(rLoja, 99, &regDmc) == S_OK && XVLe(rLoja, regDmc).sJSON == "{\"mais\":1}";
}

std::map<std::string, std::string> CXVLojaSa::Dados(const CXVBancadaFuzz& rBancada) {
    std::map<std::string, std::string> mapa;
    for (const auto& [sNome, arquivo] : rBancada.GetDisco().Retrata())
        if (sNome.ends_with(".dat") && !sNome.ends_with("XVDATABASE_FILE_CTRL.dat"))
            mapa[sNome] = arquivo.sConteudo;
    return mapa;
}
