// A sound store to put foreign files beside: the one of the sweeps (three days, every kind of content),
// closed in order.
#pragma once

#include "fuzz/XVBancadaFuzz.h"
#include "middleware/BaseMiddleware.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

class CXVLojaSa {
  public:
    // Puts the store's files on the bench's disk; they are made once for the process.
    static void Poe(CXVBancadaFuzz& rBancada) { rBancada.GetDisco().Restaura(Momentos().sa.disco); }
    // Opens the store; null when it is refused.
    static std::unique_ptr<CBaseMiddleware> Abre(CXVBancadaFuzz& rBancada) {
        auto pLoja = std::make_unique<CBaseMiddleware>();
        return SUCCEEDED(pLoja->Inicializa(&rBancada.GetPerfil())) ? std::move(pLoja) : nullptr;
    }
    // It shows all that was recorded, whole, and nothing else.
    static bool Confere(CBaseMiddleware& rLoja) { return XVRetrataLoja(rLoja) == Momentos().sa.retrato; }
    // So it does after the operation of PoeMorta, which took place in every file.
    static bool ConfereConcluida(CBaseMiddleware& rLoja) {
        return XVRetrataLoja(rLoja) == Momentos().depois.retrato;
    }
    // A new integration is taken and read back.
    static bool Grava(CBaseMiddleware& rLoja) {
        REG_XVDMC regDmc;
        return GravaMais(rLoja, 99, &regDmc) == S_OK && XVLe(rLoja, regDmc).sJSON == "{\"mais\":1}";
    }
    // Puts a store whose process died in the middle of an operation: the journal names it, and each data file
    // has it (bit of uiJaGravados by the order of names) or does not.
    static void PoeMorta(CXVBancadaFuzz& rBancada, unsigned uiJaGravados) {
        auto disco = Momentos().depois.disco;
        for (auto& [sNome, arquivo] : disco) {
            if (!sNome.ends_with(".dat")) continue;
            if ((uiJaGravados & 1) == 0) arquivo = Momentos().antes.disco.at(sNome);
            uiJaGravados >>= 1;
        }
        rBancada.GetDisco().Restaura(disco);
    }
    // The data files of the bench's disk: all "dat" but the control file.
    static std::map<std::string, std::string> Dados(const CXVBancadaFuzz& rBancada) {
        std::map<std::string, std::string> mapa;
        for (const auto& [sNome, arquivo] : rBancada.GetDisco().Retrata())
            if (sNome.ends_with(".dat") && !sNome.ends_with("XVDATABASE_FILE_CTRL.dat"))
                mapa[sNome] = arquivo.sConteudo;
        return mapa;
    }

  private:
    // The disk of a store at one moment, and what the store shows then.
    struct SMomento {
        CXVSistemaArquivosMemoria::TRetrato disco;
        TRetratoLoja retrato;
    };

    // The sound store, closed; and the disk before and after one more operation, seen while it is open.
    struct SMomentos {
        SMomento sa, antes, depois;
    };

    static SMomento Momento(CXVBancadaFuzz& rBancada, CBaseMiddleware& rLoja) {
        return {rBancada.GetDisco().Retrata(), XVRetrataLoja(rLoja)};
    }

    static HRESULT GravaMais(CBaseMiddleware& rLoja, XVUInt64 uiChave, REG_XVDMC* pDmc) {
        CXVIntegracaoTeste integracao(uiChave);
        return rLoja.GravaIntegracao(pDmc, integracao.Textos("{\"mais\":1}", "mais", "").Ptr());
    }

    static SMomentos Faz() {
        CXVBancadaFuzz bancada;
        SMomentos momentos;
        auto pLoja = Abre(bancada);
        XV_EXIGE(XVPovoaLoja(*pLoja, [&](unsigned uiDia) {
            bancada.GetRelogio().SetUTC({2024, 3, static_cast<XVByte>(uiDia), 12, 0, 0});
        }));
        XV_EXIGE(SUCCEEDED(pLoja->Finaliza()));
        momentos.sa.disco = bancada.GetDisco().Retrata();
        pLoja = Abre(bancada);
        momentos.sa.retrato = XVRetrataLoja(*pLoja);
        // The first operation makes the journal and opens the day's files: the two pictures differ by the
        // second alone.
        REG_XVDMC regDmc{};
        XV_EXIGE(SUCCEEDED(GravaMais(*pLoja, 6, &regDmc)));
        momentos.antes = Momento(bancada, *pLoja);
        XV_EXIGE(SUCCEEDED(GravaMais(*pLoja, 7, &regDmc)));
        momentos.depois = Momento(bancada, *pLoja);
        return momentos;
    }

    static const SMomentos& Momentos() {
        static const SMomentos s_momentos = Faz();
        return s_momentos;
    }
};
