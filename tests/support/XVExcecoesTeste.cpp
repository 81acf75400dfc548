// Exceptions, errno and causes of file errors as HRESULTs; wide text.
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <new>
#include <stdexcept>

#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/codes/XVErrno.h"
#include "support/faults/XVExcecoes.h"
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
int g_iFins = 0;
template <class TExcecao>
class CContada : public TExcecao {
  public:
    using TExcecao::TExcecao;
    ~CContada() override { ++g_iFins; }
};

template <class TExcecao>
void Lanca(TExcecao* pExcecao) {
    throw pExcecao;
}

}  // namespace

TEST(Excecoes, CadaLinhaDaTabela) {
    const struct {
        std::function<void()> fnLanca;
        XVUInt ulEsperado;
        int iFins = 0;
    } aCasos[] = {
        {[] { throw CXVExceptionEx(XVHResult(0x81080A04U)); }, 0x81080A04U},
        {[] { Lanca<CXVException>(new CContada<CXVException>(0)); }, 0x8004EA61U, 1},
        {[] { Lanca<CXVException>(new CContada<CXVException>(0x1234)); }, 0x80041234U, 1},
        {[] { Lanca<CFileException>(new CContada<CFileException>(0x80005)); }, 0x80070005U, 1},
        {[] { throw new CFileException(0); }, 0},
        {[] { throw new CFileException(-2); }, 0xFFFFFFFEU},
        {[] { Lanca<CMemoryException>(new CContada<CMemoryException>); }, 0x8004EA62U, 1},
        {[] { Lanca<CInvalidArgException>(new CContada<CInvalidArgException>); }, 0x8004EA67U, 1},
        {[] { Lanca<CException>(new CContada<CException>); }, 0x8004EA63U, 1},
        {[] { throw static_cast<long>(XVHResult(0x81080A04U)); }, 0x81080A04U},
        {[] { throw std::bad_alloc(); }, 0x8004EA64U},
        {[] { throw std::runtime_error("x"); }, 0x8004EA65U},
        {[] { throw 0x1080A04; }, 0x8004EA66U},
    };
    for (const auto& r : aCasos) {
        g_iFins = 0;
        EXPECT_EQ(Traduz(r.fnLanca), XVHResult(r.ulEsperado));
        EXPECT_EQ(g_iFins, r.iFins) << r.ulEsperado;
    }
    CContada<CException> naPilha(false);
    EXPECT_EQ(Traduz([&] { Lanca<CException>(&naPilha); }), XVHResult(0x8004EA63U));
    EXPECT_EQ(g_iFins, 0) << "what is not on the heap is left alone";
}

// Windows numbers follow in order. Up to 34 every system gives an error the number that Windows gives it; the
// rest goes by name.
TEST(Errno, NumerosDesteSistemaPeloNome) {
    XVUInt ulEsperado = 0x8004EADCU;
    for (int i = -1; i <= 150; ++i) {
        const bool bTem = (i >= 1 && i <= 14) || (i >= 16 && i <= 25) || (i >= 27 && i <= 34) || i == 36 ||
                          (i >= 38 && i <= 42) || i == 80;
        EXPECT_EQ(XVHResultDeErrnoWindows(i), XVHResult(bTem ? ulEsperado++ : 0x8004EA60U)) << i;
    }
    for (int i = -1; i <= 34; ++i) EXPECT_EQ(XVHResultDeErrno(i), XVHResultDeErrnoWindows(i)) << i;
    EXPECT_EQ(ulEsperado, 0x8004EB03U);
    const std::pair<int, XVUInt> aCasos[] = {
        {ENOSPC, 0x8004EAF5U},   {ESPIPE, 0x8004EAF6U},       {EDEADLK, 0x8004EAFCU},
        {ENOLCK, 0x8004EAFEU},   {ENAMETOOLONG, 0x8004EAFDU}, {ENOSYS, 0x8004EAFFU},
        {EILSEQ, 0x8004EB01U},   {ENOTEMPTY, 0x8004EB00U},    {0, 0x8004EA60U},
        {ETIMEDOUT, 0x8004EA60U}};
    for (const auto& [iErrno, ulCodigo] : aCasos) {
        errno = iErrno;
        EXPECT_EQ(XVHResultDoErrnoAtual(), XVHResult(ulCodigo)) << iErrno;
    }
}

// By cause: the code, then the one in an open file, of an opening that ends at once, and of the last attempt.
TEST(CodigosArquivo, TabelaInteira) {
    using namespace XVCodigosArquivo;
    const struct {
        ECausaArquivo eCausa;
        HRESULT hr;
        const char* pszNome;
        bool bEmArquivoAberto, bImediata, bFinal;  // whether the code holds there
    } aCasos[] = {
        {ECausaArquivo::eArquivoNaoEncontrado, eFileNotFound, "eFileNotFound", true, false, false},
        {ECausaArquivo::eCaminhoInvalido, eBadPath, "eBadPath", true, true, false},
        {ECausaArquivo::eMuitosArquivosAbertos, eTooManyOpenFiles, "eTooManyOpenFiles", false, false, true},
        {ECausaArquivo::eAcessoNegado, eAccessDenied, "eAccessDenied", true, false, true},
        {ECausaArquivo::eArquivoInvalido, eInvalidFile, "eInvalidFile", true, true, false},
        {ECausaArquivo::eDiretorioCheio, eDirectoryFull, "eDirectoryFull", false, true, false},
        {ECausaArquivo::ePosicionamentoInvalido, eBadSeek, "eBadSeek", true, false, false},
        {ECausaArquivo::eErroFisico, eHardIO, "eHardIO", true, false, false},
        {ECausaArquivo::eViolacaoCompartilhamento, eSharingViolation, "eSharingViolation", true, false, true},
        {ECausaArquivo::eViolacaoBloqueio, eLockViolation, "eLockViolation", true, false, true},
        {ECausaArquivo::eDiscoCheio, eDiskFull, "eDiskFull", true, false, true},
        {ECausaArquivo::eFimDeArquivo, eEndOfFile, "eEndOfFile", true, false, false},
        {ECausaArquivo::eGenerica, eXVGenericError, "eXVGenericError", true, false, true}};
    for (const auto& r : aCasos) {
        EXPECT_EQ(XVCodigoArquivo({r.eCausa, 0}), r.hr) << r.pszNome;
        EXPECT_STREQ(De(r.eCausa).pszNome, r.pszNome);
        EXPECT_EQ(CodigoDeExcecao({r.eCausa, 0}), r.bEmArquivoAberto ? r.hr : eXVGenericError) << r.pszNome;
        EXPECT_EQ(DeAberturaImediata(r.eCausa).hr, r.bImediata ? r.hr : S_OK) << r.pszNome;
        EXPECT_EQ(DeAberturaFinal(r.eCausa, false).hr, r.bFinal ? r.hr : eXVGenericError) << r.pszNome;
        EXPECT_EQ(DeAberturaFinal(r.eCausa, true).hr,
                  r.hr == eAccessDenied ? eXVReadOnly : DeAberturaFinal(r.eCausa, false).hr);
    }
    EXPECT_EQ(CodigoDeExcecao({}), S_OK);
}

TEST(TextoLargo, ViraUtf8) {
    EXPECT_EQ(XVTextoDeLargo(nullptr), "");
    EXPECT_EQ(XVTextoDeLargo(L"ação €"), "ação €");
    EXPECT_EQ(XVTextoDeLargo(L"\U0001F600"), "\xF0\x9F\x98\x80");
    if constexpr (sizeof(wchar_t) == 4) {
        const wchar_t aFora[] = {static_cast<wchar_t>(0x10FFFF), static_cast<wchar_t>(0x110000), L'\0'};
        EXPECT_EQ(XVTextoDeLargo(aFora), "\xF4\x8F\xBF\xBF\xEF\xBF\xBD");
    }
    const wchar_t aSolto[] = {static_cast<wchar_t>(0xD83D),
                              L'x',
                              static_cast<wchar_t>(0xDE00),
                              static_cast<wchar_t>(0xD83D),
                              static_cast<wchar_t>(0xDBFF),
                              static_cast<wchar_t>(0xDFFF),
                              L'\0'};
    EXPECT_EQ(XVTextoDeLargo(aSolto), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD\xF4\x8F\xBF\xBF");
}
