// Handles belong to the process: the open members of all its stores share what there is of them.
#include <sys/resource.h>

#include "core/xvdatabase/XVGroupFileDynamic.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class HandlesProcesso : public CXVCenarioBanco {
  protected:
    static constexpr rlim_t k_uiHandles = 12;  // half of them for members

    HandlesProcesso() {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &m_anterior), 0);
        const rlimit apertado{k_uiHandles, m_anterior.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &apertado), 0);
        for (char c = '1'; c <= '6'; ++c)
            for (const char cGrupo : {'A', 'B'}) {
                const std::string sNome = std::string(1, cGrupo) + "000" + c + ".dat";
                Cria(sNome, ArquivoComCabecalho(sNome, Bytes(std::vector<REG_TESTE>{{1, 2, 3}})));
            }
    }
    ~HandlesProcesso() override { setrlimit(RLIMIT_NOFILE, &m_anterior); }

    struct SLoja {
        explicit SLoja(const char* pszGrupo) : grupo(pszGrupo, &xvDB, 2) {}
        // The members that are open after one more was used.
        std::string Usa(XVUInt64 uiChave) {
            REG_TESTE reg{};
            EXPECT_EQ(grupo.Le(uiChave, 1, &reg), S_OK);
            std::string sAbertos;
            for (XVUInt64 i = 1; i <= 6; ++i)
                if (grupo.TemArquivoAberto(i)) sAbertos += std::to_string(i);
            return sAbertos;
        }
        CXVDataBase xvDB{XV_DF};
        CXVGroupFileDynamic<REG_TESTE> grupo;
    };

  private:
    rlimit m_anterior{};
};

TEST_F(HandlesProcesso, MembrosDeTodasAsLojasContamECadaUmaFechaOsSeus) {
    SLoja a("A????.dat");
    SLoja b("B????.dat");
    ASSERT_EQ(a.xvDB.Inicializa(&m_Dono), S_OK);
    ASSERT_EQ(b.xvDB.Inicializa(&m_Dono), S_OK);
    for (XVUInt64 i = 1; i <= 3; ++i) a.Usa(i);
    for (XVUInt64 i = 1; i <= 2; ++i) b.Usa(i);
    EXPECT_EQ(b.Usa(3), "123") << "three and three";
    EXPECT_EQ(b.Usa(4).size(), 3U);
    EXPECT_EQ(a.Usa(4).size(), 3U);
    ASSERT_EQ(b.xvDB.Finaliza(), S_OK);
    for (XVUInt64 i = 1; i <= 5; ++i) a.Usa(i);
    EXPECT_EQ(a.Usa(6), "123456") << "a store that closed gives back what it had";
    ASSERT_EQ(a.xvDB.Finaliza(), S_OK);
}

}  // namespace
