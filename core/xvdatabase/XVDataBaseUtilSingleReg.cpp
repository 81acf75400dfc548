// CXVDataBaseUtil: single records read and written without a schema.
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseControleCriacaoArquivos.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVFileSingleReg.h"
#include "core/xvdatabase/XVImagemArquivo.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

namespace {

// The file in a short-lived database that changes nothing on disk.
class CXVDataBaseSingleReg : public CXVDataBase {
  public:
    XV_CLASSE("CXVDataBaseUtil", "XVDataBaseUtil")

    CXVDataBaseSingleReg(EModulo eModulo, const std::string& sNomeArquivo)
        : CXVDataBase(eModulo), m_xvFile(sNomeArquivo, this) {
        SetSomenteLeituraSemBloqueio(true);
    }
    ~CXVDataBaseSingleReg() override { XVIgnora(Finaliza()); }

    HRESULT Abre(const IXVDF_Profiler* pDono) {
        XV_CHECK(Inicializa(pDono));
        XV_CHECK(m_xvFile.ConfereCabecalho());
        return S_OK;
    }
    CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>& GetArquivo() { return m_xvFile; }

    // Believed, a version below that of the header would have the steps that the store went through done once
    // more, to records that they do not fit.
    HRESULT ConfereVersao(const REG_CR_MIDDLEWARE_VERSAO& reg) {
        const XVUShort usCarimbo = m_xvFile.GetVersaoArquivo();
        if (!XVVersaoNaoConfere(reg, usCarimbo)) return S_OK;
        std::string sPath;
        XV_CHECK(
            CXVDataBaseUtil::GetPathArquivo(GetModulo(), GetEmpresa(), m_xvFile.GetNomeArquivo(), &sPath));
        XVProfiler::RecordError(this, "CXVDataBaseUtil::LeSingleReg", "XVDataBaseUtil", __LINE__,
                                "Versão %u no registro e %u no cabeçalho: %s\t"
                                "E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS",
                                unsigned{reg.usVersao}, unsigned{usCarimbo}, sPath.c_str());
        return XVArquivoRecusado::Anota(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, sPath, this);
    }

  private:
    CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO> m_xvFile;
};

}  // namespace

HRESULT CXVDataBaseUtil::LeSingleReg(const IXVDF_Profiler* pDono, EModulo eModulo,
                                     REG_CR_MIDDLEWARE_VERSAO* pReg, const std::string& sNomeArquivo) {
    *pReg = {};
    CXVDataBaseSingleReg xvDB(eModulo, sNomeArquivo);
    XV_CHECK_DONO(pDono, xvDB.Abre(pDono));
    if (xvDB.GetArquivo().ExisteArquivo()) {
        XV_CHECK_DONO(pDono, xvDB.GetArquivo().Le(*pReg));
        return xvDB.ConfereVersao(*pReg);
    }
    CXVDataBaseControleCriacaoArquivos controle(eModulo, sNomeArquivo);
    XV_CHECK_DONO(pDono, controle.Inicializa(pDono));
    XV_CHECK_DONO(pDono, controle.ConfereArquivoControlado());
    return S_OK;
}

HRESULT CXVDataBaseUtil::GravaSingleReg(const IXVDF_Profiler* pDono, EModulo eModulo,
                                        const REG_CR_MIDDLEWARE_VERSAO& reg,
                                        const std::string& sNomeArquivo) {
    REG_XVCABECALHO regCabecalho;
    bool bTemCabecalho = false;
    {
        CXVDataBaseSingleReg xvDB(eModulo, sNomeArquivo);
        XV_CHECK_DONO(pDono, xvDB.Abre(pDono));
        CXVFileSingleReg<REG_CR_MIDDLEWARE_VERSAO>& xvFile = xvDB.GetArquivo();
        if (!xvFile.PrecisaGravar(reg)) return S_OK;
        bTemCabecalho = xvFile.GerenciarCabecalho();
        xvFile.ProximoCabecalho(&regCabecalho, sizeof(reg));
        regCabecalho.regB.usVersaoArquivo = reg.usVersao;
        XVCabecalho::Sela(regCabecalho.regB);
    }
    const std::string sNomeCopia = XVNomeArquivo::TrocaExtensao(sNomeArquivo, "srk");
    CXVImagemArquivo xvImagem(eModulo, sNomeCopia);
    XV_CHECK_DONO(pDono, xvImagem.Inicializa(pDono));
    XV_CHECK_DONO(pDono, xvImagem.AbreArquivo());
    if (bTemCabecalho) XV_CHECK_DONO(pDono, xvImagem.Grava(&regCabecalho, sizeof(regCabecalho)));
    XV_CHECK_DONO(pDono, xvImagem.Grava(&reg, sizeof(reg)));
    XV_CHECK_DONO(pDono, xvImagem.Conclui());

    std::string sPathArquivo;
    XV_CHECK_DONO(pDono, GetPathArquivo(eModulo, pDono->GetEmpresa(), sNomeArquivo, &sPathArquivo));
    XV_CHECK_DONO(pDono, MovePath(pDono, XVNomeArquivo::TrocaExtensao(sPathArquivo, "srk"), sPathArquivo));
    xvImagem.Libera();
    CXVDataBaseControleCriacaoArquivos controle(eModulo, sNomeArquivo);
    XV_CHECK_DONO(pDono, controle.Inicializa(pDono));
    XV_CHECK_DONO(pDono,
                  controle.GerenciaControleCriacaoArquivos(EXVDataBase_ModoAbertura::eModoLeituraGravacao));
    return S_OK;
}
