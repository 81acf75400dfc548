#include "bench/XVBenchAmbienteDiario.h"

#include "platform/XVAmbienteSO.h"
#include "support/XVAmbiente.h"

namespace {

// Takes everything and keeps nothing.
class CXVArquivoNulo final : public IXVArquivo {
  public:
    CXVErroArquivo Le(XVUInt64, void*, std::size_t) override { return {ECausaArquivo::eFimDeArquivo, 0}; }
    CXVErroArquivo Grava(XVUInt64, const void*, std::size_t) override { return {}; }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        uiTamanho = 1;
        return {};
    }
    CXVErroArquivo SetTamanho(XVUInt64) override { return {}; }
    CXVErroArquivo Sincroniza() override { return {}; }
};

bool EhLogCalado(const std::string& sCaminho) {
    return sCaminho.find("/SEMLOG") != std::string::npos && sCaminho.find("XVLogGeral") != std::string::npos;
}

// The system's own, but for the general logs of the companies that have none. An open file is the system's.
class CXVSistemaSemLog final : public IXVSistemaArquivos {
  public:
    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override {
        if (!EhLogCalado(sCaminho)) return m_rSistema.Abre(sCaminho, rAbertura, pArquivo);
        pArquivo = std::make_unique<CXVArquivoNulo>();
        return {};
    }
    EExistencia Existe(const std::string& sCaminho) override { return m_rSistema.Existe(sCaminho); }
    bool EhSomenteLeitura(const std::string& sCaminho) override {
        return m_rSistema.EhSomenteLeitura(sCaminho);
    }
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override {
        return m_rSistema.BuscaNomeReal(sCaminho, sNomeReal);
    }
    CXVErroArquivo Apaga(const std::string& sCaminho) override { return m_rSistema.Apaga(sCaminho); }
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override {
        return m_rSistema.Substitui(sOrigem, sDestino);
    }
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override {
        return m_rSistema.Lista(sDiretorio, sMascara, listaNomes);
    }
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override {
        return m_rSistema.CriaDiretorio(sDiretorio);
    }
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override {
        return m_rSistema.SincronizaDiretorio(sDiretorio);
    }
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override {
        return m_rSistema.MarcaDiretorio(sDiretorio, sMarca, pMarca);
    }
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override {
        return m_rSistema.Junta(sDiretorio, sNome);
    }

  private:
    IXVSistemaArquivos& m_rSistema = XVPlataforma::SistemaArquivosNativo();
};

std::string Texto(std::size_t uiTamanho) {
    std::string s = "{\"cliente\":\"Padaria Três Irmãos\",\"itens\":[";
    while (s.size() < uiTamanho) s += "{\"produto\":\"0000123\",\"quantidade\":2,\"valor\":12.50},";
    return s.substr(0, uiTamanho);
}

_REG_DF_TEXTOPS TextoPS(const std::string& sTexto) {
    _REG_DF_TEXTOPS reg{};
    reg.ulQtdBytes = static_cast<XVUInt>(sTexto.size());
    reg.pTexto = reinterpret_cast<XVByte*>(const_cast<char*>(sTexto.data()));
    return reg;
}

}  // namespace

CXVAmbienteDiario::CXVAmbienteDiario(const std::string& sPasta)
    : m_pSemLogGeral(std::make_unique<CXVSistemaSemLog>()) {
    const std::filesystem::path raiz =
        sPasta.empty() ? std::filesystem::temp_directory_path() : std::filesystem::path(sPasta);
    m_pasta = raiz / ("xvbench-" + XVAmbienteSO::NovoGuid());
    std::filesystem::create_directories(m_pasta);
    XVPlataforma::TrocaRegistry(this);
    XVPlataforma::TrocaSistemaArquivos(m_pSemLogGeral.get());
}

CXVAmbienteDiario::~CXVAmbienteDiario() {
    XVPlataforma::TrocaSistemaArquivos(nullptr);
    XVPlataforma::TrocaRegistry(nullptr);
    std::error_code erro;
    std::filesystem::remove_all(m_pasta, erro);
}

std::string CXVAmbienteDiario::Pasta(const std::string& sNome) const {
    std::filesystem::create_directories(m_pasta / sNome);
    return (m_pasta / sNome).string();
}

std::string CXVAmbienteDiario::PastaDados(const CXVDonoBench& rDono) const {
    return Pasta(std::string(rDono.GetEmpresa()) + "/" + std::string(CAmbienteXV::GetSiglaModulo(XV_DF)));
}

std::optional<std::string> CXVAmbienteDiario::LeTexto(std::string_view, std::string_view sValor) {
    if (sValor != "Path") return std::nullopt;
    return m_pasta.string();
}

std::optional<XVUInt> CXVAmbienteDiario::LeNumero(std::string_view, std::string_view sValor) {
    if (sValor != "Durabilidade") return std::nullopt;
    return m_ulDurabilidade;
}

const STextosBench& XVTextosDiario() {
    static const STextosBench textos{Texto(1500), Texto(80), Texto(600)};
    return textos;
}

tagREG_CR_INTEGRACAO_MIDDLEWAREPS XVIntegracaoDiario(unsigned uiNumero) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regRegistroJSON = TextoPS(XVTextosDiario().sJSON);
    reg.regMensagemIntegracao = TextoPS(XVTextosDiario().sMensagem);
    reg.regJSONRetornoIntegracao = TextoPS(XVTextosDiario().sRetorno);
    reg.uiChaveIntegracaoSistemaTerceiro = uiNumero + 1;
    reg.eSistemaIntegracao = Mercos;
    reg.eStatusIntegracao = 1 + uiNumero % 5;
    reg.eTipoIntegracao = 1 + uiNumero % 17;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    return reg;
}
