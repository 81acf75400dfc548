// CXVConversaoMiddleware: the exchange of a step's live files for their copies, and what is checked before
// an exchange that was interrupted goes on.
#include <algorithm>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"

bool CXVConversaoMiddleware::EhArquivoDoPasso(XVUShort usPasso, const std::string& sNome) {
    if (usPasso == 2) return sNome == k_pszArquivoChaveRegistroParaTerceiro;
    if (usPasso == 5)
        return sNome == k_pszArquivoDataHoraIntegracao || sNome == k_pszArquivoChaveRegistroParaTerceiro;
    return XVNomeArquivo::NomeParaChave(sNome, k_pszArquivoIntegracao).has_value();
}

HRESULT CXVConversaoMiddleware::MontaPaths(const std::string& sNome, std::string* psPath,
                                           std::string* psPathCopia) {
    XV_CHECK(MontaPath(sNome, psPath));
    *psPathCopia = XVNomeArquivo::TrocaExtensao(*psPath, "tra");
    return S_OK;
}

// Copies left by a step that did not come to its journal; the live files were not touched yet.
HRESULT CXVConversaoMiddleware::RemoveCopias(const CListaNomes& listaNomes) {
    for (const std::string& sNome : listaNomes) {
        std::string sPath;
        std::string sPathCopia;
        XV_CHECK(MontaPaths(sNome, &sPath, &sPathCopia));
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPathCopia, &bExiste));
        if (!bExiste) continue;
        const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Apaga(sPathCopia);
        if (!erro.Ok())
            XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sPathCopia, this));
    }
    return S_OK;
}

// Nothing is moved until all of it fits.
HRESULT CXVConversaoMiddleware::ConfereTroca(XVUShort usPasso, const CXVDiarioConversao& rDiario) {
    CListaNomes listaNomes;
    for (const SEntradaDiario& rEntrada : rDiario.GetEntradas()) {
        std::string sPath;
        std::string sPathCopia;
        // The journal's own names become paths only when they are names of this step.
        if (!EhArquivoDoPasso(usPasso, rEntrada.sNome))
            return XVConversaoArquivo::Recusa(this, rEntrada.sNome,
                                              "Diário da conversão com arquivo de outro passo");
        XV_CHECK(MontaPaths(rEntrada.sNome, &sPath, &sPathCopia));
        if (rDiario.TemSomas())
            XV_CHECK(ConfereSomas(rEntrada, sPath, sPathCopia));
        else
            XV_CHECK(ConfereCarimbos(usPasso, rEntrada.sNome, sPath, sPathCopia));
        listaNomes.push_back(rEntrada.sNome);
    }
    XV_CHECK(ConfereForaDoDiario(usPasso, listaNomes));
    return S_OK;
}

// Before its move a file is the one that was converted and its copy the one that was written; after it
// the file is that copy.
HRESULT CXVConversaoMiddleware::ConfereSomas(const SEntradaDiario& rEntrada, const std::string& sPath,
                                             const std::string& sPathCopia) {
    bool bTemCopia = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathCopia, &bTemCopia));
    SSomaArquivo somaVivo;
    XV_CHECK(XVConversaoArquivo::Soma(this, sPath, &somaVivo));
    if (somaVivo != (bTemCopia ? rEntrada.antigo : rEntrada.novo))
        return XVConversaoArquivo::Recusa(this, sPath, "Arquivo não é o do diário da conversão");
    if (!bTemCopia) return S_OK;
    SSomaArquivo somaCopia;
    XV_CHECK(XVConversaoArquivo::Soma(this, sPathCopia, &somaCopia));
    if (somaCopia != rEntrada.novo)
        return XVConversaoArquivo::Recusa(this, sPathCopia, "Cópia não é a do diário da conversão");
    return S_OK;
}

// A journal without sums proves less: each copy must hold by its own header and carry the step's stamp,
// beside a file that does not carry it yet; and a file without copy must carry it.
HRESULT CXVConversaoMiddleware::ConfereCarimbos(XVUShort usPasso, const std::string& sNome,
                                                const std::string& sPath, const std::string& sPathCopia) {
    SArquivoConversao vivo;
    SArquivoConversao copia;
    XV_CHECK(XVConversaoArquivo::Descreve(this, sPath, sNome, &vivo));
    XV_CHECK(XVConversaoArquivo::Descreve(this, sPathCopia, sNome, &copia));
    if (!vivo.bExiste)
        return XVConversaoArquivo::Recusa(this, sPath, "Arquivo do diário da conversão ausente");
    if (copia.bExiste && !(copia.bIntegro && copia.usCarimbo == usPasso))
        return XVConversaoArquivo::Recusa(this, sPathCopia, "Cópia sem o carimbo do passo da conversão");
    // In step 1 old and new carry the same stamp and hold the same records.
    if (copia.bExiste && usPasso > 1 && vivo.usCarimbo >= usPasso)
        return XVConversaoArquivo::Recusa(this, sPath, "Arquivo já convertido ao lado de sua cópia");
    if (!copia.bExiste && !(vivo.bIntegro && vivo.usCarimbo >= usPasso))
        return XVConversaoArquivo::Recusa(this, sPath,
                                          "Arquivo sem cópia e sem o carimbo do passo da conversão");
    return S_OK;
}

// A file that came to the directory after the journal was written would never be converted.
HRESULT CXVConversaoMiddleware::ConfereForaDoDiario(XVUShort usPasso, const CListaNomes& listaConvertidos) {
    CListaNomes listaNomes;
    XV_CHECK(ListaArquivosDoPasso(usPasso, &listaNomes));
    for (const std::string& sNome : listaNomes) {
        if (std::find(listaConvertidos.begin(), listaConvertidos.end(), sNome) != listaConvertidos.end())
            continue;
        std::string sPath;
        XV_CHECK(MontaPath(sNome, &sPath));
        SArquivoConversao arquivo;
        XV_CHECK(XVConversaoArquivo::Descreve(this, sPath, sNome, &arquivo));
        if (arquivo.PrecisaDoPasso(usPasso))
            return XVConversaoArquivo::Recusa(this, sPath, "Arquivo que o diário da conversão não conhece");
    }
    return S_OK;
}

// The copies that still stand beside their files take their place; the others have done so already.
HRESULT CXVConversaoMiddleware::ConcluiTroca(XVUShort usPasso, const CXVDiarioConversao& rDiario) {
    for (const SEntradaDiario& rEntrada : rDiario.GetEntradas()) {
        const std::string& sNome = rEntrada.sNome;
        std::string sPath;
        std::string sPathCopia;
        XV_CHECK(MontaPaths(sNome, &sPath, &sPathCopia));
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPathCopia, &bExiste));
        if (bExiste) {
            XV_CHECK(CXVDataBaseUtil::RenomeiaArquivoTRA(this, XV_DF, sNome, usPasso));
            continue;
        }
        XV_CHECK(CXVDataBaseUtil::ConcluiRenomeacao(this, XV_DF, sNome, usPasso));
    }
    return S_OK;
}
