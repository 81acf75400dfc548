#include "middleware/copia/XVCopia.h"

#include <algorithm>
#include <cstring>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/ConversaoDiario.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVDiasDaLoja.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVSoma64.h"

namespace {
// Each pass reads what has changed during the one before it.
constexpr int k_iPassadas = 100;

std::pair<XVUInt64, XVUInt64> Contador(const REG_XVCABECALHO_B& regB) {
    const XVUInt64 uiVoltas = regB.usVoltasContador;  // the record is packed: no reference to its fields
    const XVUInt64 uiContador = regB.uiContadorAtualizacao;
    return {uiVoltas, uiContador};
}

bool EhDeTextos(const std::string& sNome) {
    return std::any_of(std::begin(k_apszGrupos) + 1, std::end(k_apszGrupos),
                       [&](const char* psz) { return XVNomeArquivo::NomeParaChave(sNome, psz).has_value(); });
}
}  // namespace

CXVCopia::CXVCopia(const std::string& sOrigem, CXVDestinoCopia::SPastas destino)
    : m_sOrigem(sOrigem), m_leitura(sOrigem), m_destino(std::move(destino)) {}

HRESULT CXVCopia::Recusa(ERecusaCopia eRecusa, HRESULT hr) {
    m_eRecusa = eRecusa;
    return hr;
}

HRESULT CXVCopia::Executa(SCopia* pCopia) {
    *pCopia = {};
    m_leitura.m_fnProgresso = [this](const std::string&, XVUInt64 uiBytes) {
        if (m_seguidor) m_seguidor->Olha();
        if (m_fnProgresso) m_fnProgresso(uiBytes);
    };
    HRESULT hr = m_leitura.Abre();
    if (SUCCEEDED(hr)) hr = m_destino.Confere();
    if (SUCCEEDED(hr)) hr = m_destino.Prepara();
    if (FAILED(hr)) return hr;
    hr = ConfereOrigem();
    if (SUCCEEDED(hr)) hr = CopiaDeUmMomento();
    if (SUCCEEDED(hr)) hr = CopiaLogs();
    if (SUCCEEDED(hr)) hr = Conta(pCopia);
    if (SUCCEEDED(hr)) hr = m_destino.Troca(m_nomes, &m_bTrocando);
    if (FAILED(hr) && !m_bTrocando) m_destino.Desiste();
    return hr;
}

// The copy of before must be one of this store, and of an earlier moment.
HRESULT CXVCopia::ConfereOrigem() {
    for (const auto& [sNome, arquivo] : m_destino.GetArquivos()) {
        if (!XVEhArquivoDaLoja(sNome)) {
            if (m_destino.Existe(sNome)) m_nomes.insert(sNome);  // a log; the source may have lost it since
            continue;
        }
        if (!XVNomeArquivo::EhIsento(sNome)) m_mapaFeitos.emplace(sNome, arquivo);
        const HRESULT hr = ConfereComAnterior(sNome);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT CXVCopia::ConfereComAnterior(const std::string& sNome) {
    SArquivoLoja arquivo;
    const HRESULT hr = m_leitura.Descreve(sNome, &arquivo);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sOrigem, sNome);
    if (!arquivo.bExiste)
        return Recusa(ERecusaCopia::eArquivoSumiu,
                      XVNotaCaminho(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, m_sOrigem, sNome));
    REG_XVCABECALHO reg;
    if (!arquivo.bCabecalho || !m_destino.LeCabecalho(sNome, &reg) || !XVCabecalho::CrcConfere(reg.regB))
        return S_OK;
    const bool bMesmoArquivo =
        std::memcmp(&reg.regB.regCriacao, &arquivo.regB.regCriacao, sizeof(reg.regB.regCriacao)) == 0;
    if (!bMesmoArquivo && sNome == k_pszArquivoIndexIntegracao)
        return Recusa(ERecusaCopia::eOutraBase, XVNotaCaminho(eInvalidFile, m_sOrigem, sNome));
    if (bMesmoArquivo && Contador(reg.regB) > Contador(arquivo.regB))
        return Recusa(ERecusaCopia::eCopiaMaisNova, XVNotaCaminho(eInvalidFile, m_sOrigem, sNome));
    return S_OK;
}

HRESULT CXVCopia::CopiaDeUmMomento() {
    for (int i = 0; i < k_iPassadas; ++i) {
        bool bPronta = false;
        const HRESULT hr = Passada(i == 0, &bPronta);
        if (FAILED(hr) || bPronta) return hr;
    }
    return Recusa(ERecusaCopia::eSemSossego, eSharingViolation);
}

// All files once. The copy is of one moment when the operations that came could be followed, or when two
// passes in succession found the same files.
HRESULT CXVCopia::Passada(bool bPrimeira, bool* pbPronta) {
    m_bMudou = false;
    m_seguidor.emplace(m_leitura.GetVisao());
    bool bSegue = m_seguidor->Inicia();
    HRESULT hr = m_leitura.Abre();  // after it: every file that is missing in the list comes by an operation
    if (FAILED(hr)) return hr;
    if (m_leitura.GetDiario() == EDiario::eNaoConfere)
        return Recusa(
            ERecusaCopia::eOrigemDanificada,
            XVNotaCaminho(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, m_sOrigem, k_pszNomeDiario));
    if (m_leitura.TemNome(k_pszDiarioConversao))
        return Recusa(ERecusaCopia::eConversao,
                      XVNotaCaminho(eSharingViolation, m_sOrigem, k_pszDiarioConversao));
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes()) {
        if (FAILED(hr)) return hr;
        // A file that is being replaced by a copy beside it is replaced by no operation.
        bSegue = bSegue && !sMinusculo.ends_with(".cab") && !sMinusculo.ends_with(".tra");
        if (XVEhArquivoDaLoja(sNome)) hr = CopiaArquivo(sNome);
    }
    if (FAILED(hr)) return hr;
    *pbPronta = bSegue && m_seguidor->Confirma() && PodeAplicar();
    m_momento = XVPlataforma::Relogio().AgoraUTC();
    if (*pbPronta) return Aplica();
    *pbPronta = !bPrimeira && !m_bMudou;
    return S_OK;
}

HRESULT CXVCopia::CopiaArquivo(const std::string& sNome) {
    SArquivoLoja arquivo;
    m_seguidor->Olha();
    HRESULT hr = m_leitura.Descreve(sNome, &arquivo);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sOrigem, sNome);
    if (!arquivo.bExiste) return S_OK;
    if (FAILED(arquivo.hr))
        return Recusa(ERecusaCopia::eOrigemDanificada, XVNotaCaminho(arquivo.hr, m_sOrigem, sNome));
    m_nomes.insert(sNome);
    SArquivoCopiado agora{arquivo.uiInicio + arquivo.GetTamanhoDados(), 0};
    const REG_XVCABECALHO reg{XVCabecalho::BlocoA(), arquivo.regB};
    if (!arquivo.bCabecalho) {  // nothing but its bytes tells whether it has changed
        arquivo.uiInicio = 0;
        arquivo.uiTamanho = agora.uiTamanho;
        hr = CopiaBytes(arquivo, 0, &agora.uiSoma);
    } else {
        agora.uiSoma = XVSoma64(&reg, sizeof(reg));
        const auto it = m_mapaFeitos.find(sNome);
        if (it != m_mapaFeitos.end() && it->second == agora) return S_OK;
        // Texts are only ever appended: those that were copied in a pass before stay, unless the file has
        // been given its header since.
        REG_XVCABECALHO regPalco;
        const bool bAnexa = EhDeTextos(sNome) && it != m_mapaFeitos.end() && m_destino.EstaNoPalco(sNome) &&
                            m_destino.LeCabecalho(sNome, &regPalco);
        XVUInt64 uiSoma = 0;
        hr = CopiaBytes(arquivo, bAnexa ? it->second.uiTamanho - k_uiTamanhoCabecalho : 0, &uiSoma);
    }
    if (FAILED(hr)) return hr;
    m_bMudou = m_bMudou || !m_mapaFeitos.contains(sNome) || m_mapaFeitos[sNome] != agora;
    m_mapaFeitos[sNome] = agora;
    return S_OK;
}

// The payload from uiDe on, and the header, where there is one.
HRESULT CXVCopia::CopiaBytes(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64* puiSoma) {
    std::unique_ptr<IXVArquivo> pArquivo;
    HRESULT hr = m_destino.AbreNoPalco(rArquivo.sNome, &pArquivo);
    if (FAILED(hr)) return hr;
    const XVUInt64 uiAte = rArquivo.GetTamanhoDados();
    CXVErroArquivo erro = pArquivo->SetTamanho(rArquivo.uiInicio + uiAte);
    hr = m_leitura.Percorre(rArquivo, uiDe, uiAte, [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
        if (erro.Ok()) erro = pArquivo->Grava(rArquivo.uiInicio + uiOffset, aBytes.data(), aBytes.size());
        const XVUInt64 aSomas[] = {*puiSoma, XVSoma64(aBytes.data(), aBytes.size())};
        *puiSoma = XVSoma64(aSomas, sizeof(aSomas));
    });
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sOrigem, rArquivo.sNome);
    const REG_XVCABECALHO reg{XVCabecalho::BlocoA(), rArquivo.regB};
    if (erro.Ok() && rArquivo.bCabecalho) erro = pArquivo->Grava(0, &reg, sizeof(reg));
    return m_destino.Nota(erro, rArquivo.sNome);
}

// Where an operation changed a file that is as it was in the copy of before, the next pass copies it.
bool CXVCopia::PodeAplicar() const {
    for (const auto& [sNome, mudanca] : m_seguidor->GetMudancas())
        if (!XVEhArquivoDaLoja(sNome) || !(mudanca.bCriado || m_destino.EstaNoPalco(sNome))) return false;
    return true;
}

HRESULT CXVCopia::Aplica() {
    for (const auto& [sNome, mudanca] : m_seguidor->GetMudancas()) {
        const HRESULT hr = AplicaArquivo(sNome, mudanca);
        if (FAILED(hr)) return hr;
        m_nomes.insert(sNome);
    }
    return S_OK;
}

HRESULT CXVCopia::AplicaArquivo(const std::string& sNome, const SMudancaArquivo& rMudanca) {
    std::unique_ptr<IXVArquivo> pArquivo;
    const HRESULT hr = m_destino.AbreNoPalco(sNome, &pArquivo);
    if (FAILED(hr)) return hr;
    CXVErroArquivo erro = pArquivo->SetTamanho(rMudanca.uiTamanho);
    for (auto it = rMudanca.faixas.begin(); it != rMudanca.faixas.end() && erro.Ok(); ++it)
        erro = pArquivo->Grava(it->first, it->second.data(), it->second.size());
    if (erro.Ok() && rMudanca.regCabecalho) {
        const REG_XVCABECALHO reg{XVCabecalho::BlocoA(), *rMudanca.regCabecalho};
        erro = pArquivo->Grava(0, &reg, sizeof(reg));
    }
    return m_destino.Nota(erro, sNome);
}

HRESULT CXVCopia::CopiaLogs() {
    for (const auto& [sMinusculo, sNome] : m_leitura.GetNomes())
        if (sMinusculo.starts_with("xvloggeral_") && sMinusculo.ends_with(".log"))
            if (const HRESULT hr = CopiaLog(sNome); FAILED(hr)) return hr;
    return S_OK;
}

// A line that is being written is none yet.
HRESULT CXVCopia::CopiaLog(const std::string& sNome) {
    SArquivoLoja arquivo;
    HRESULT hr = m_leitura.Descreve(sNome, &arquivo);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_sOrigem, sNome);
    const auto& rAnteriores = m_destino.GetArquivos();
    const auto it = rAnteriores.find(sNome);
    arquivo.uiTamanho += arquivo.uiInicio;
    arquivo.uiInicio = 0;
    if (!arquivo.bExiste || (it != rAnteriores.end() && it->second.uiTamanho == arquivo.uiTamanho))
        return S_OK;
    m_nomes.insert(sNome);
    XVUInt64 uiSoma = 0;
    hr = CopiaBytes(arquivo, 0, &uiSoma);
    return SUCCEEDED(hr) ? m_destino.CortaLinhaPartida(sNome) : hr;
}

HRESULT CXVCopia::Conta(SCopia* pCopia) const {
    pCopia->momento = m_momento;
    for (const std::string& rNome : m_nomes) {
        SArquivoCopiado arquivo;
        const HRESULT hr = m_destino.Resume(rNome, &arquivo);
        if (FAILED(hr)) return hr;
        ++pCopia->uiArquivos;
        const bool bCopiado = m_destino.EstaNoPalco(rNome);
        pCopia->uiCopiados += bCopiado ? 1U : 0U;
        (bCopiado ? pCopia->uiBytesCopiados : pCopia->uiBytesIguais) += arquivo.uiTamanho;
        if (rNome != k_pszArquivoIndexIntegracao) continue;
        REG_XVCABECALHO reg;
        if (m_destino.LeCabecalho(rNome, &reg)) arquivo.uiTamanho -= sizeof(reg);
        pCopia->uiIntegracoes = arquivo.uiTamanho / sizeof(REG_CR_INDEX_INTEGRACAO_V1);
    }
    return S_OK;
}
