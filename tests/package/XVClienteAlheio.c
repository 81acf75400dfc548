/* A client of another language than the component's: it knows the installed interface definition, and nothing
 * else. It goes on when the server goes away under it, as a caller does that has to live through an update.
 *
 *   alheio grava <company> <file>     records integrations until the file exists; one line for each that was
 *                                     acknowledged: its key and its number
 *   alheio confere <company> <list>   reads each integration of such a list back; the exit code is 1 where
 *                                     one is missing or another
 *   alheio segura <file> <end>        has the file open, to read it, so that it cannot be renamed, until the other
 *                                     file exists
 */
#define COBJMACROS
#define __USE_MINGW_ANSI_STDIO 1
#include <windows.h>

#include <ole2.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "com/XVCR_Middleware_idl.h"

#define XV_TAMANHO(registro, tamanho) _Static_assert(sizeof(struct registro) == (tamanho), #registro);
#define XV_OFFSET(registro, campo, posicao) \
    _Static_assert(offsetof(struct registro, campo) == (posicao), #registro "." #campo);
#include "contract/XVCR_LayoutRegistros.inc"

/* {78415b84-1d9e-4939-b37a-87f6aa9d6516} */
static const CLSID k_clsid = {0x78415b84, 0x1d9e, 0x4939, {0xb3, 0x7a, 0x87, 0xf6, 0xaa, 0x9d, 0x65, 0x16}};

static unsigned __int64 CRC64(const unsigned char* pBytes, size_t uiQuantidade) {
    unsigned __int64 uiCRC = 0;
    for (size_t i = 0; i < uiQuantidade; ++i) {
        uiCRC ^= pBytes[i];
        for (int iBit = 0; iBit < 8; ++iBit) uiCRC = (uiCRC >> 1) ^ ((uiCRC & 1) ? 0xC96C5795D7870F42ULL : 0);
    }
    return uiCRC;
}

static HRESULT Conecta(const char* pszEmpresa, IXVCR_Middleware** ppComponente) {
    REG_DF_INICIALIZAPS reg;
    HRESULT hr = CoCreateInstance(&k_clsid, NULL, CLSCTX_LOCAL_SERVER, &IID_IXVCR_Middleware, (void**)ppComponente);
    if (FAILED(hr)) return hr;
    memset(&reg, 0, sizeof(reg));
    reg.ulUsuario = 21;
    reg.ulNumeroChamador = 1;
    reg.usVersao = 127;
    reg.cMarca = 'B';
    strncpy((char*)reg.szEmpresa, pszEmpresa, sizeof(reg.szEmpresa) - 1);
    strcpy((char*)reg.szExecutavel, "alheio.exe");
    strcpy((char*)reg.szModulo, "alheio");
    strcpy((char*)reg.szIdentificacao, "alheio");
    reg.uiCRC = CRC64((const unsigned char*)&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
    hr = IXVCR_Middleware_Inicializa(*ppComponente, &reg);
    if (SUCCEEDED(hr)) return hr;
    IXVCR_Middleware_Release(*ppComponente);
    *ppComponente = NULL;
    return hr;
}

static HRESULT Inclui(IXVCR_Middleware* pComponente, const char* pszTexto, REG_XVDMC* pDmc) {
    REG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    memset(&reg, 0, sizeof(reg));
    reg.regRegistroJSON.ulQtdBytes = (unsigned)strlen(pszTexto);
    reg.regRegistroJSON.pTexto = (byte*)pszTexto;
    reg.eTipoIntegracao = 9;
    reg.eStatusIntegracao = 1;
    reg.eSistemaIntegracao = 2;
    reg.eTipoTransacao = 1;
    pDmc->uiValor = 0;
    return IXVCR_Middleware_GravaIntegracao(pComponente, pDmc, &reg);
}

/* A failing step is tried again on another component for two minutes: a server may be on its way out. A write
 * without an answer is made anew, under another number, because nobody knows whether it took place. */
static int Grava(const char* pszEmpresa, const char* pszFim) {
    IXVCR_Middleware* pComponente = NULL;
    HRESULT hr = S_OK;
    int iNumero = 0;
    for (ULONGLONG ullUltimo = GetTickCount64(); GetTickCount64() - ullUltimo < 120000;) {
        char szTexto[32];
        REG_XVDMC regDmc;
        hr = pComponente != NULL ? S_OK : Conecta(pszEmpresa, &pComponente);
        snprintf(szTexto, sizeof(szTexto), "{\"n\":%d}", ++iNumero);
        if (SUCCEEDED(hr)) hr = Inclui(pComponente, szTexto, &regDmc);
        if (SUCCEEDED(hr)) {
            printf("%llu %d\n", regDmc.uiValor, iNumero);
            fflush(stdout);
            ullUltimo = GetTickCount64();
            if (GetFileAttributesA(pszFim) != INVALID_FILE_ATTRIBUTES) break;
            continue;
        }
        fprintf(stderr, "%d: 0x%08lX\n", iNumero, (unsigned long)hr);
        if (pComponente != NULL) IXVCR_Middleware_Release(pComponente);
        pComponente = NULL;
        Sleep(150);
    }
    if (pComponente != NULL) IXVCR_Middleware_Release(pComponente);
    return FAILED(hr);
}

static int Confere(const char* pszEmpresa, const char* pszLista) {
    IXVCR_Middleware* pComponente = NULL;
    FILE* pLista = fopen(pszLista, "r");
    unsigned __int64 uiDmc;
    int iNumero, iLidas = 0, iPerdidas = 0;
    HRESULT hr = Conecta(pszEmpresa, &pComponente);
    if (FAILED(hr) || pLista == NULL) {
        fprintf(stderr, "Inicializa: 0x%08lX\n", (unsigned long)hr);
        return 1;
    }
    while (fscanf(pLista, "%llu %d", &uiDmc, &iNumero) == 2) {
        char szTexto[32];
        REG_CR_INTEGRACAO_MIDDLEWAREPS reg;
        snprintf(szTexto, sizeof(szTexto), "{\"n\":%d}", iNumero);
        hr = IXVCR_Middleware_LeIntegracao(pComponente, uiDmc, &reg, 1);
        ++iLidas;
        if (FAILED(hr) || reg.regRegistroJSON.ulQtdBytes != strlen(szTexto) ||
            memcmp(reg.regRegistroJSON.pTexto, szTexto, strlen(szTexto)) != 0) {
            fprintf(stderr, "%d: 0x%08lX\n", iNumero, (unsigned long)hr);
            ++iPerdidas;
        }
        if (SUCCEEDED(hr)) CoTaskMemFree(reg.regRegistroJSON.pTexto);
    }
    fclose(pLista);
    IXVCR_Middleware_Release(pComponente);
    printf("%d %d\n", iLidas, iPerdidas);
    return iLidas == 0 || iPerdidas != 0;
}

static int Segura(const char* pszArquivo, const char* pszFim) {
    const HANDLE h = CreateFileA(pszArquivo, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    if (h == INVALID_HANDLE_VALUE) return 1;
    for (int i = 0; i < 1200 && GetFileAttributesA(pszFim) == INVALID_FILE_ATTRIBUTES; ++i) Sleep(100);
    CloseHandle(h);
    return 0;
}

int main(int argc, char** argv) {
    int iSaida;
    if (argc != 4 || FAILED(CoInitializeEx(NULL, COINIT_MULTITHREADED))) return 2;
    if (strcmp(argv[1], "grava") == 0)
        iSaida = Grava(argv[2], argv[3]);
    else if (strcmp(argv[1], "segura") == 0)
        iSaida = Segura(argv[2], argv[3]);
    else
        iSaida = Confere(argv[2], argv[3]);
    CoUninitialize();
    return iSaida;
}
