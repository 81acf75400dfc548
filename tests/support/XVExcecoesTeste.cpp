// Exceptions and errno as HRESULTs, and the invalid-parameter trap.
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <new>
#include <stdexcept>

#include "support/codes/XVCodigos.h"
#include "support/codes/XVErrno.h"
#include "support/faults/XVExcecoes.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVCapturaTrace.h"
#include "support/values/XVTextoLargo.h"

namespace {

HRESULT Traduz(const std::function<void()>& fnLanca) {
    try {
        fnLanca();
    } catch (...) {
        return XVTranslateThrownExceptionToHresult();
    }
    return S_OK;
}

// Counts its destructions: who translates ends the life of what was thrown by pointer.
class CArquivoContado : public CFileException {
  public:
    CArquivoContado(std::int32_t lErro, int* piFins, bool bApaga)
        : CFileException(lErro, bApaga), m_piFins(piFins) {}
    ~CArquivoContado() override { ++*m_piFins; }

  private:
    int* m_piFins;
};

}  // namespace

TEST(Excecoes, CadaLinhaDaTabela) {
    const struct {
        const char* pszCaso;
        std::function<void()> fnLanca;
        XVUInt ulEsperado;
    } aCasos[] = {
        {"CXVExceptionEx", [] { throw CXVExceptionEx(XVHResult(0x81080A04U)); }, 0x81080A04U},
        {"CXVException sem codigo", [] { throw new CXVException(0); }, 0x8004EA61U},
        {"CXVException com codigo", [] { throw new CXVException(0x1234); }, 0x80041234U},
        {"CFileException", [] { throw new CFileException(5); }, 0x80070005U},
        {"CFileException sem erro", [] { throw new CFileException(0); }, 0},
        {"CFileException negativo", [] { throw new CFileException(-2); }, 0xFFFFFFFEU},
        {"CMemoryException", [] { throw new CMemoryException; }, 0x8004EA62U},
        {"CInvalidArgException", [] { throw new CInvalidArgException; }, 0x8004EA67U},
        {"CException", [] { throw new CException; }, 0x8004EA63U},
        {"long", [] { throw static_cast<long>(0x81080A04L); }, 0x81080A04U},
        {"long negativo", [] { throw static_cast<long>(XVHResult(0x81080A04U)); }, 0x81080A04U},
        {"bad_alloc", [] { throw std::bad_alloc(); }, 0x8004EA64U},
        {"std::exception", [] { throw std::runtime_error("x"); }, 0x8004EA65U},
        {"int", [] { throw 0x1080A04; }, 0x8004EA66U},
        {"texto", [] { throw "x"; }, 0x8004EA66U},
    };
    for (const auto& r : aCasos) EXPECT_EQ(Traduz(r.fnLanca), XVHResult(r.ulEsperado)) << r.pszCaso;
}

TEST(Excecoes, ExcecaoPorPonteiroTemSuaVidaEncerradaUmaVez) {
    int iFins = 0;
    EXPECT_EQ(Traduz([&] { throw static_cast<CFileException*>(new CArquivoContado(2, &iFins, true)); }),
              XVHResult(0x80070002U));
    EXPECT_EQ(iFins, 1);
    {
        CArquivoContado naPilha(2, &iFins, false);
        EXPECT_EQ(Traduz([&] { throw static_cast<CException*>(&naPilha); }), XVHResult(0x8004EA63U));
        EXPECT_EQ(iFins, 1);
    }
    EXPECT_EQ(iFins, 2);
}

TEST(Errno, NumerosDoWindowsSeguemEmOrdem) {
    XVUInt ulEsperado = 0x8004EADCU;
    for (int i = -1; i <= 150; ++i) {
        const bool bTem = (i >= 1 && i <= 14) || (i >= 16 && i <= 25) || (i >= 27 && i <= 34) || i == 36 ||
                          (i >= 38 && i <= 42) || i == 80;
        EXPECT_EQ(XVHResultDeErrnoWindows(i), XVHResult(bTem ? ulEsperado++ : 0x8004EA60U)) << i;
    }
    EXPECT_EQ(ulEsperado, 0x8004EB03U);
}

TEST(Errno, NumerosDesteSistemaPeloNome) {
    const struct {
        int iErrno;
        XVUInt ulEsperado;
    } aCasos[] = {{EPERM, 0x8004EADCU},     {EFAULT, 0x8004EAE9U},  {EBUSY, 0x8004EAEAU},
                  {EINVAL, 0x8004EAF0U},    {ENOTTY, 0x8004EAF3U},  {EFBIG, 0x8004EAF4U},
                  {ERANGE, 0x8004EAFBU},    {EDEADLK, 0x8004EAFCU}, {ENAMETOOLONG, 0x8004EAFDU},
                  {ENOTEMPTY, 0x8004EB00U}, {EILSEQ, 0x8004EB01U},  {0, 0x8004EA60U},
                  {ETIMEDOUT, 0x8004EA60U}};
    for (const auto& r : aCasos) {
        errno = r.iErrno;
        EXPECT_EQ(XVHResultDoErrnoAtual(), XVHResult(r.ulEsperado)) << r.iErrno;
    }
}

TEST(TextoLargo, ViraUtf8) {
    EXPECT_EQ(XVTextoDeLargo(nullptr), "");
    EXPECT_EQ(XVTextoDeLargo(L"ação €"), "ação €");
    EXPECT_EQ(XVTextoDeLargo(L"\U0001F600"), "\xF0\x9F\x98\x80");
    const wchar_t aSolto[] = {static_cast<wchar_t>(0xD83D), L'x', static_cast<wchar_t>(0xDE00),
                              static_cast<wchar_t>(0xD83D), L'\0'};
    EXPECT_EQ(XVTextoDeLargo(aSolto), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD");
}

// With traps in one another the inner one tells, and once it is gone the outer one.
TEST(Trap, ParametroInvalidoTerminaOMetodoComOHResultDoErrnoEDizOMaisInterno) {
    constexpr SMetodoTrap k_metodo{nullptr, "CXVCR_Middleware::LeIntegracao", "XVCR_Middleware", 321,
                                   nullptr};
    const auto recusa = [] {
        errno = EINVAL;
        XVParametroInvalido(L"psz != nullptr", L"strcpy_s", L"fonte.c", 12U);
    };
    const CXVCapturaTrace captura;
    EXPECT_EQ(Traduz(recusa), XVHResult(0x8004EAF0U));
    EXPECT_TRUE(captura.GetFalhas().empty()) << "without a trap there is nobody to tell of";
    {
        const XVTrapParametroInvalido fora(k_metodo);
        EXPECT_EQ(Traduz([&] {
                      SMetodoTrap metodoDentro = k_metodo;
                      metodoDentro.iLinha = 5;
                      const XVTrapParametroInvalido dentro(metodoDentro);
                      recusa();
                  }),
                  XVHResult(0x8004EAF0U));
        EXPECT_EQ(Traduz(recusa), XVHResult(0x8004EAF0U));
    }
    ASSERT_EQ(captura.GetFalhas().size(), 2U);
    EXPECT_EQ(captura.GetFalhas()[0].iLinha, 5);
    const SFalhaCapturada& r = captura.GetFalhas()[1];
    EXPECT_EQ(r.sFuncao, k_metodo.pszFuncao);
    EXPECT_EQ(r.sFonte, "XVCR_Middleware");
    EXPECT_EQ(r.iLinha, 321);
    EXPECT_EQ(r.sMensagem, "Expression = psz != nullptr\tFunction = strcpy_s\tFile = fonte.c\tLine = 12");
}
