#include "tests/harness/XVSistemaArquivosMemoria.h"

#include <algorithm>

#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"
#include "tests/harness/XVArquivoMemoria.h"

namespace {

constexpr std::string_view k_sSeparadores = "/\\";

constexpr CXVErroArquivo Erro(ECausaArquivo eCausa) {
    return {eCausa, 0};
}

// "/a/b" for every way to write it; "" for the root.
std::string Normaliza(std::string_view sCaminho) {
    std::string sNormal;
    while (!sCaminho.empty()) {
        const std::size_t uiFim = std::min(sCaminho.find_first_of(k_sSeparadores), sCaminho.size());
        const std::string_view sParte = sCaminho.substr(0, uiFim);
        if (!sParte.empty() && sParte != ".") {
            sNormal.append(1, '/').append(sParte);
        }
        sCaminho.remove_prefix(std::min(uiFim + 1, sCaminho.size()));
    }
    return sNormal;
}

std::string Chave(std::string sNormal) {
    std::transform(sNormal.begin(), sNormal.end(), sNormal.begin(), XVMascara::Minuscula);
    return sNormal;
}

std::string DiretorioDe(const std::string& sNormal) {
    return sNormal.substr(0, sNormal.rfind('/'));
}
std::string NomeDe(const std::string& sNormal) {
    return sNormal.substr(sNormal.rfind('/') + 1);
}

}  // namespace

struct CXVSistemaArquivosMemoria::SEstado : SDiscoMemoria {
    struct SEntrada {
        std::string sNormal;                  // as created
        std::shared_ptr<SConteudo> pArquivo;  // null: a directory
    };
    std::map<std::string, SEntrada> mapaEntradas;

    SEntrada* Busca(const std::string& sNormal) {
        const auto it = mapaEntradas.find(Chave(sNormal));
        return it == mapaEntradas.end() ? nullptr : &it->second;
    }
    bool EhDiretorio(const std::string& sNormal) {
        const SEntrada* pEntrada = Busca(sNormal);
        return sNormal.empty() || (pEntrada != nullptr && !pEntrada->pArquivo);
    }
    CXVErroArquivo ErroDeAusente(const std::string& sNormal) {
        return Erro(EhDiretorio(DiretorioDe(sNormal)) ? ECausaArquivo::eArquivoNaoEncontrado
                                                      : ECausaArquivo::eCaminhoInvalido);
    }
    CXVErroArquivo CriaDiretorios(const std::string& sNormal) {
        for (std::size_t uiFim = 1; !sNormal.empty() && uiFim != std::string::npos;) {
            uiFim = sNormal.find('/', uiFim + 1);
            const std::string sParcial = sNormal.substr(0, uiFim);
            if (const SEntrada* pEntrada = Busca(sParcial)) {
                if (pEntrada->pArquivo) {
                    return Erro(ECausaArquivo::eCaminhoInvalido);
                }
                continue;
            }
            mapaEntradas[Chave(sParcial)] = {sParcial, nullptr};
        }
        return {};
    }
    // The file behind a name, ready to be deleted or moved.
    CXVErroArquivo Localiza(const std::string& sCaminho, std::string& sNormal, SEntrada*& pEntrada) {
        sNormal = Normaliza(sCaminho);
        pEntrada = Busca(sNormal);
        if (!XVCaminho::PodeNomearArquivo(sCaminho, k_sSeparadores)) {
            return Erro(ECausaArquivo::eCaminhoInvalido);
        }
        if (EhDiretorio(sNormal)) {
            return Erro(ECausaArquivo::eAcessoNegado);
        }
        return pEntrada == nullptr ? ErroDeAusente(sNormal) : CXVErroArquivo();
    }
};

CXVSistemaArquivosMemoria::CXVSistemaArquivosMemoria() : m_pEstado(std::make_shared<SEstado>()) {}
CXVSistemaArquivosMemoria::~CXVSistemaArquivosMemoria() = default;

CXVErroArquivo CXVSistemaArquivosMemoria::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                               std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    const std::lock_guard trava(m_pEstado->mutex);
    std::string sNormal;
    SEstado::SEntrada* pEntrada = nullptr;
    const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, sNormal, pEntrada);
    const bool bCria = erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado &&
                       rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente;
    if (!erro.Ok() && !bCria) {
        return erro;
    }
    if (bCria) {
        pEntrada = &m_pEstado->mapaEntradas[Chave(sNormal)];
        *pEntrada = {sNormal, std::make_shared<SConteudo>()};
    }
    SConteudo& rConteudo = *pEntrada->pArquivo;
    if (rAbertura.eAcesso != EAcessoArquivo::eLeitura && rConteudo.bSomenteLeitura) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (!rConteudo.PodeAbrir(rAbertura)) {
        return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    }
    pArquivo = std::make_unique<CXVArquivoMemoria>(m_pEstado, pEntrada->pArquivo, rAbertura);
    return {};
}

EExistencia CXVSistemaArquivosMemoria::Existe(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    if (!XVCaminho::PodeNomearDiretorio(sCaminho)) {
        return EExistencia::eAusente;
    }
    const std::string sNormal = Normaliza(sCaminho);
    if (m_pEstado->EhDiretorio(sNormal)) {
        return EExistencia::eDiretorio;
    }
    return m_pEstado->Busca(sNormal) != nullptr ? EExistencia::eArquivo : EExistencia::eAusente;
}

bool CXVSistemaArquivosMemoria::EhSomenteLeitura(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    const SEstado::SEntrada* pEntrada = m_pEstado->Busca(Normaliza(sCaminho));
    return pEntrada != nullptr && pEntrada->pArquivo && pEntrada->pArquivo->bSomenteLeitura;
}

CXVErroArquivo CXVSistemaArquivosMemoria::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sCaminho);
    const SEstado::SEntrada* pEntrada = m_pEstado->Busca(sNormal);
    if (pEntrada == nullptr || !XVCaminho::EhNomeSimples(NomeDe(sNormal))) {
        return Erro(ECausaArquivo::eArquivoNaoEncontrado);
    }
    sNomeReal = NomeDe(pEntrada->sNormal);
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Apaga(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    std::string sNormal;
    SEstado::SEntrada* pEntrada = nullptr;
    const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, sNormal, pEntrada);
    if (!erro.Ok()) {
        return erro;
    }
    if (pEntrada->pArquivo->bSomenteLeitura) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (!pEntrada->pArquivo->listaAberturas.empty()) {
        return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    }
    m_pEstado->uiOcupado -= pEntrada->pArquivo->sBytes.size();
    m_pEstado->mapaEntradas.erase(Chave(sNormal));
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    const std::lock_guard trava(m_pEstado->mutex);
    std::string sNormalOrigem;
    std::string sNormalDestino;
    SEstado::SEntrada* pOrigem = nullptr;
    SEstado::SEntrada* pDestino = nullptr;
    CXVErroArquivo erro = m_pEstado->Localiza(sOrigem, sNormalOrigem, pOrigem);
    if (!erro.Ok()) {
        return erro;
    }
    erro = m_pEstado->Localiza(sDestino, sNormalDestino, pDestino);
    if (!erro.Ok() && erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado) {
        return erro;
    }
    if (pDestino != nullptr && pDestino->pArquivo->bSomenteLeitura) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (!pOrigem->pArquivo->listaAberturas.empty() ||
        (pDestino != nullptr && !pDestino->pArquivo->listaAberturas.empty())) {
        return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    }
    if (pDestino != nullptr && pDestino != pOrigem) {
        m_pEstado->uiOcupado -= pDestino->pArquivo->sBytes.size();
    }
    const std::shared_ptr<SConteudo> pConteudo = pOrigem->pArquivo;
    m_pEstado->mapaEntradas.erase(Chave(sNormalOrigem));
    m_pEstado->mapaEntradas[Chave(sNormalDestino)] = {sNormalDestino, pConteudo};
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                                std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sDiretorio);
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !m_pEstado->EhDiretorio(sNormal)) {
        return Erro(ECausaArquivo::eCaminhoInvalido);
    }
    for (const auto& [sChave, rEntrada] : m_pEstado->mapaEntradas) {
        const std::string sNome = NomeDe(rEntrada.sNormal);
        if (rEntrada.pArquivo && DiretorioDe(sChave) == Chave(sNormal) &&
            XVMascara::Confere(sMascara, sNome)) {
            listaNomes.push_back(sNome);
        }
    }
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::CriaDiretorio(const std::string& sDiretorio) {
    const std::lock_guard trava(m_pEstado->mutex);
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio)) {
        return Erro(ECausaArquivo::eCaminhoInvalido);
    }
    return m_pEstado->CriaDiretorios(Normaliza(sDiretorio));
}

CXVErroArquivo CXVSistemaArquivosMemoria::SincronizaDiretorio(const std::string& sDiretorio) {
    const std::lock_guard trava(m_pEstado->mutex);
    return m_pEstado->EhDiretorio(Normaliza(sDiretorio)) ? CXVErroArquivo()
                                                         : Erro(ECausaArquivo::eCaminhoInvalido);
}

CXVErroArquivo CXVSistemaArquivosMemoria::MarcaDiretorio(const std::string& sDiretorio,
                                                         const std::string& sMarca,
                                                         std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    pMarca.reset();
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sDiretorio);
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !XVCaminho::EhNomeSimples(sMarca) ||
        !m_pEstado->EhDiretorio(sNormal)) {
        return Erro(ECausaArquivo::eCaminhoInvalido);
    }
    std::string sChave = Chave(sNormal + '/' + sMarca);
    if (!m_pEstado->conjuntoMarcas.insert(sChave).second) {
        return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    }
    pMarca = std::make_unique<CXVMarcaMemoria>(m_pEstado, std::move(sChave));
    return {};
}

std::string CXVSistemaArquivosMemoria::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return XVCaminho::Junta(sDiretorio, sNome, '/', k_sSeparadores);
}

void CXVSistemaArquivosMemoria::CriaArquivo(const std::string& sCaminho, std::string sConteudo) {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sCaminho);
    m_pEstado->CriaDiretorios(DiretorioDe(sNormal)).Ignora();
    SEstado::SEntrada& rEntrada = m_pEstado->mapaEntradas[Chave(sNormal)];
    if (!rEntrada.pArquivo) {
        rEntrada = {sNormal, std::make_shared<SConteudo>()};
    }
    m_pEstado->uiOcupado += sConteudo.size() - rEntrada.pArquivo->sBytes.size();
    rEntrada.pArquivo->sBytes = std::move(sConteudo);
}

std::optional<std::string> CXVSistemaArquivosMemoria::LeConteudo(const std::string& sCaminho) const {
    const std::lock_guard trava(m_pEstado->mutex);
    const SEstado::SEntrada* pEntrada = m_pEstado->Busca(Normaliza(sCaminho));
    if (pEntrada == nullptr || !pEntrada->pArquivo) {
        return std::nullopt;
    }
    return pEntrada->pArquivo->sBytes;
}

void CXVSistemaArquivosMemoria::SetSomenteLeitura(const std::string& sCaminho, bool bSomenteLeitura) {
    const std::lock_guard trava(m_pEstado->mutex);
    const SEstado::SEntrada* pEntrada = m_pEstado->Busca(Normaliza(sCaminho));
    if (pEntrada != nullptr && pEntrada->pArquivo) {
        pEntrada->pArquivo->bSomenteLeitura = bSomenteLeitura;
    }
}

void CXVSistemaArquivosMemoria::LimitaEspaco(std::optional<XVUInt64> uiBytes) {
    const std::lock_guard trava(m_pEstado->mutex);
    m_pEstado->uiLimite = uiBytes;
}

std::size_t CXVSistemaArquivosMemoria::GetQuantidadeAberta() const {
    const std::lock_guard trava(m_pEstado->mutex);
    std::size_t uiQuantidade = m_pEstado->conjuntoMarcas.size();
    for (const auto& [sChave, rEntrada] : m_pEstado->mapaEntradas) {
        uiQuantidade += rEntrada.pArquivo ? rEntrada.pArquivo->listaAberturas.size() : 0;
    }
    return uiQuantidade;
}

CXVSistemaArquivosMemoria::TRetrato CXVSistemaArquivosMemoria::Retrata() const {
    const std::lock_guard trava(m_pEstado->mutex);
    TRetrato retrato;
    for (const auto& [sChave, rEntrada] : m_pEstado->mapaEntradas) {
        if (rEntrada.pArquivo) {
            retrato[rEntrada.sNormal] = {rEntrada.pArquivo->sBytes, rEntrada.pArquivo->bSomenteLeitura};
        } else {
            retrato[rEntrada.sNormal + '/'] = {};
        }
    }
    return retrato;
}

void CXVSistemaArquivosMemoria::Restaura(const TRetrato& rRetrato) {
    const std::lock_guard trava(m_pEstado->mutex);
    m_pEstado->mapaEntradas.clear();
    m_pEstado->uiOcupado = 0;
    for (const auto& [sCaminho, rArquivo] : rRetrato) {
        const std::string sNormal = Normaliza(sCaminho);
        SEstado::SEntrada& rEntrada = m_pEstado->mapaEntradas[Chave(sNormal)];
        rEntrada.sNormal = sNormal;
        if (sCaminho.back() != '/') {
            rEntrada.pArquivo = std::make_shared<SConteudo>();
            rEntrada.pArquivo->sBytes = rArquivo.sConteudo;
            rEntrada.pArquivo->bSomenteLeitura = rArquivo.bSomenteLeitura;
            m_pEstado->uiOcupado += rArquivo.sConteudo.size();
        }
    }
}

std::string CXVSistemaArquivosMemoria::Diferenca(const TRetrato& rEsperado, const TRetrato& rObtido) {
    std::string sDiferenca;
    for (const auto& [sCaminho, rArquivo] : rEsperado) {
        const auto it = rObtido.find(sCaminho);
        if (it == rObtido.end()) {
            sDiferenca += sCaminho + ": missing\n";
        } else if (!(it->second == rArquivo)) {
            const std::string& s1 = rArquivo.sConteudo;
            const std::string& s2 = it->second.sConteudo;
            const auto par = std::mismatch(s1.begin(), s1.end(), s2.begin(), s2.end());
            sDiferenca += sCaminho + ": " + std::to_string(s1.size()) + " and " + std::to_string(s2.size()) +
                          " bytes, equal up to " + std::to_string(par.first - s1.begin()) +
                          (rArquivo.bSomenteLeitura == it->second.bSomenteLeitura ? "\n" : ", attribute\n");
        }
    }
    for (const auto& [sCaminho, rArquivo] : rObtido) {
        if (!rEsperado.contains(sCaminho)) {
            sDiferenca +=
                sCaminho + ": unexpected, " + std::to_string(rArquivo.sConteudo.size()) + " bytes\n";
        }
    }
    return sDiferenca;
}
