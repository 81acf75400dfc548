#include "bench/XVBenchAmbienteDiario.h"

#include "contract/XVCR_BuffersPS.h"
#include "platform/XVAmbienteSO.h"
#include "support/XVAmbiente.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"

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

// A watcher of a file system that has nothing to do around an operation.
struct SNada {};

// The system's own, but for the general logs of the companies that have none. An open file is the system's.
class CXVSistemaSemLog final : public TXVSistemaArquivosEnvolto<TXVVigiaGuarda<SNada>> {
  public:
    CXVSistemaSemLog() : TXVSistemaArquivosEnvolto(XVPlataforma::SistemaArquivosNativo()) {}
    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override {
        if (!EhLogCalado(sCaminho)) return m_rInterno.Abre(sCaminho, rAbertura, pArquivo);
        pArquivo = std::make_unique<CXVArquivoNulo>();
        return {};
    }
};

std::string Texto(std::size_t uiTamanho) {
    std::string s = "{\"cliente\":\"Padaria Três Irmãos\",\"itens\":[";
    while (s.size() < uiTamanho) s += "{\"produto\":\"0000123\",\"quantidade\":2,\"valor\":12.50},";
    return s.substr(0, uiTamanho);
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
    reg.regRegistroJSON = CXVStringPS::Vista(XVTextosDiario().sJSON);
    reg.regMensagemIntegracao = CXVStringPS::Vista(XVTextosDiario().sMensagem);
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(XVTextosDiario().sRetorno);
    reg.uiChaveIntegracaoSistemaTerceiro = uiNumero + 1;
    reg.eSistemaIntegracao = Mercos;
    reg.eStatusIntegracao = 1 + uiNumero % 5;
    reg.eTipoIntegracao = 1 + uiNumero % 17;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    return reg;
}
