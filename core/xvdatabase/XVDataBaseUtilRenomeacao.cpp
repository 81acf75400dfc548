// CXVDataBaseUtil: the replacement of live files by their converted copies.
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseControleCriacaoArquivos.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "support/trace/XVProfiler.h"

HRESULT CXVDataBaseUtil::RenomeiaArquivoUnico(const IXVDF_Profiler* pDono, EModulo eModulo,
                                              const std::string& sNomeArquivo, std::string_view sExtensao,
                                              XVUShort usVersaoArquivo) {
    std::string sPathArquivo;
    XV_CHECK_DONO(pDono, GetPathArquivo(eModulo, pDono->GetEmpresa(), sNomeArquivo, &sPathArquivo));
    const std::string sPathOrigem = XVNomeArquivo::TrocaExtensao(sPathArquivo, sExtensao);
    bool bExiste = false;
    XV_CHECK_DONO(pDono, Existe(pDono, sPathOrigem, &bExiste));
    if (!bExiste) {
        XV_CHECK_DONO(pDono, Existe(pDono, sPathArquivo, &bExiste));
        if (!bExiste) return S_OK;  // a listed file that vanished stays listed
        return DeletaArquivo(
            pDono, eModulo, sNomeArquivo,
            XVNomeArquivo::EhArquivoControle(sNomeArquivo) ? eMantemNoControle : eRemoveDoControle);
    }
    XV_CHECK_DONO(pDono, MovePath(pDono, sPathOrigem, sPathArquivo));
    XV_CHECK_DONO(pDono, ConcluiRenomeacao(pDono, eModulo, sNomeArquivo, usVersaoArquivo));
    return S_OK;
}

HRESULT CXVDataBaseUtil::ConcluiRenomeacao(const IXVDF_Profiler* pDono, EModulo eModulo,
                                           const std::string& sNomeArquivo, XVUShort usVersaoArquivo) {
    CXVDataBaseControleCriacaoArquivos controle(eModulo, sNomeArquivo);
    XV_CHECK_DONO(pDono, controle.Inicializa(pDono));
    XV_CHECK_DONO(pDono,
                  controle.GerenciaControleCriacaoArquivos(EXVDataBase_ModoAbertura::eModoLeituraGravacao));

    CXVDataBase xvDB(eModulo);
    CXVFileBase xvFile(sNomeArquivo, &xvDB);
    XV_CHECK_DONO(pDono, xvDB.Inicializa(pDono));
    const HRESULT hr = XV_REGISTRA_DONO(pDono, xvFile.GravaVersaoArquivo(usVersaoArquivo));
    xvFile.FechaArquivo();  // finalising an open file would rewrite the header that was just written
    XVIgnora(xvDB.Finaliza());
    return hr;
}

HRESULT CXVDataBaseUtil::RenomeiaArquivoEXT(const IXVDF_Profiler* pDono, EModulo eModulo,
                                            const std::string& sNomeArquivo, std::string_view sExtensao,
                                            XVUShort usVersaoArquivo) {
    XV_ESCOPO_DONO(pDono, {"sNomeArquivo", sNomeArquivo}, {"sExtensao", sExtensao});
    if (!XVNomeArquivo::EhPadraoGrupo(sNomeArquivo))
        return RenomeiaArquivoUnico(pDono, eModulo, sNomeArquivo, sExtensao, usVersaoArquivo);
    std::vector<std::pair<XVUInt64, std::string>> listaMembros;
    XV_CHECK_DONO(pDono, ListaMembros(pDono, eModulo, sNomeArquivo, &listaMembros));
    for (const auto& membro : listaMembros)
        XV_CHECK_DONO(pDono, RenomeiaArquivoUnico(pDono, eModulo, membro.second, sExtensao, usVersaoArquivo));
    return S_OK;
}

HRESULT CXVDataBaseUtil::RenomeiaArquivoTRA(const IXVDF_Profiler* pDono, EModulo eModulo,
                                            const std::string& sNomeArquivo, XVUShort usVersaoArquivo) {
    return RenomeiaArquivoEXT(pDono, eModulo, sNomeArquivo, "tra", usVersaoArquivo);
}

HRESULT CXVDataBaseUtil::RenomeiaArquivoTRAGroupFile(const IXVDF_Profiler* pDono, EModulo eModulo,
                                                     const std::string& sPadrao, XVUShort usVersaoArquivo) {
    if (!XVNomeArquivo::EhPadraoGrupo(sPadrao)) XV_CHECK_DONO(pDono, E_XVCR_NOME_ARQUIVO_GROUP_INVALIDO);
    return RenomeiaArquivoEXT(pDono, eModulo, sPadrao, "tra", usVersaoArquivo);
}
