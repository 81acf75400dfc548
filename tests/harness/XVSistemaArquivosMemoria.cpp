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
        if (!sParte.empty() && sParte != ".") sNormal.append(1, '/').append(sParte);
        sCaminho.remove_prefix(std::min(uiFim + 1, sCaminho.size()));
    }
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
    struct SLugar {
        std::string sNormal;
        std::shared_ptr<SConteudo> pConteudo;

        bool EstaAberto() const { return pConteudo && !pConteudo->listaAberturas.empty(); }
        bool EhSomenteLeitura() const { return pConteudo && pConteudo->bSomenteLeitura; }
    };

    // Null for a directory as well as for nothing.
    std::shared_ptr<SConteudo> Conteudo(const std::string& sNormal) const {
        const auto it = mapaEntradas.find(sNormal);
        return it == mapaEntradas.end() ? nullptr : it->second;
    }
    bool EhDiretorio(const std::string& sNormal) const {
        return sNormal.empty() || (mapaEntradas.contains(sNormal) && !Conteudo(sNormal));
    }
    // False when a file is in the way.
    bool CriaDiretorios(const std::string& sNormal) {
        return sNormal.empty() ||
               (CriaDiretorios(DiretorioDe(sNormal)) && !mapaEntradas.try_emplace(sNormal).first->second);
    }
    // The file that a path names.
    CXVErroArquivo Localiza(const std::string& sCaminho, SLugar& rLugar) const {
        if (!XVCaminho::PodeNomearArquivo(sCaminho, k_sSeparadores))
            return Erro(ECausaArquivo::eCaminhoInvalido);
        rLugar.sNormal = Normaliza(sCaminho);
        rLugar.pConteudo = Conteudo(rLugar.sNormal);
        if (EhDiretorio(rLugar.sNormal)) return Erro(ECausaArquivo::eAcessoNegado);
        if (rLugar.pConteudo) return {};
        return Erro(EhDiretorio(DiretorioDe(rLugar.sNormal)) ? ECausaArquivo::eArquivoNaoEncontrado
                                                             : ECausaArquivo::eCaminhoInvalido);
    }
};

CXVSistemaArquivosMemoria::CXVSistemaArquivosMemoria() : m_pEstado(std::make_shared<SEstado>()) {}
CXVSistemaArquivosMemoria::~CXVSistemaArquivosMemoria() = default;

CXVErroArquivo CXVSistemaArquivosMemoria::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                               std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    const std::lock_guard trava(m_pEstado->mutex);
    SEstado::SLugar lugar;
    const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, lugar);
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado &&
        rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente)
        lugar.pConteudo = m_pEstado->mapaEntradas[lugar.sNormal] = std::make_shared<SConteudo>();
    else if (!erro.Ok())
        return erro;
    if (rAbertura.eAcesso != EAcessoArquivo::eLeitura && lugar.EhSomenteLeitura())
        return Erro(ECausaArquivo::eAcessoNegado);
    if (!lugar.pConteudo->PodeAbrir(rAbertura)) return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    pArquivo = std::make_unique<CXVArquivoMemoria>(m_pEstado, std::move(lugar.pConteudo), rAbertura);
    return {};
}

EExistencia CXVSistemaArquivosMemoria::Existe(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sCaminho);
    if (!XVCaminho::PodeNomearDiretorio(sCaminho)) return EExistencia::eAusente;
    if (m_pEstado->EhDiretorio(sNormal)) return EExistencia::eDiretorio;
    return m_pEstado->Conteudo(sNormal) ? EExistencia::eArquivo : EExistencia::eAusente;
}

bool CXVSistemaArquivosMemoria::EhSomenteLeitura(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
    return pConteudo && pConteudo->bSomenteLeitura;
}

CXVErroArquivo CXVSistemaArquivosMemoria::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sCaminho);
    const auto it = m_pEstado->mapaEntradas.find(sNormal);
    if (it == m_pEstado->mapaEntradas.end() || !XVCaminho::EhNomeSimples(NomeDe(sNormal)))
        return Erro(ECausaArquivo::eArquivoNaoEncontrado);
    sNomeReal = NomeDe(it->first);
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Apaga(const std::string& sCaminho) {
    const std::lock_guard trava(m_pEstado->mutex);
    SEstado::SLugar lugar;
    const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, lugar);
    if (!erro.Ok()) return erro;
    if (lugar.EhSomenteLeitura()) return Erro(ECausaArquivo::eAcessoNegado);
    if (lugar.EstaAberto()) return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    m_pEstado->mapaEntradas.erase(lugar.sNormal);
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    const std::lock_guard trava(m_pEstado->mutex);
    SEstado::SLugar origem;
    SEstado::SLugar destino;
    CXVErroArquivo erro = m_pEstado->Localiza(sOrigem, origem);
    if (!erro.Ok()) return erro;
    erro = m_pEstado->Localiza(sDestino, destino);
    if (!erro.Ok() && erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado) return erro;
    if (destino.EhSomenteLeitura()) return Erro(ECausaArquivo::eAcessoNegado);
    if (origem.EstaAberto() || destino.EstaAberto()) return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    m_pEstado->mapaEntradas.erase(origem.sNormal);
    m_pEstado->mapaEntradas.erase(destino.sNormal);
    m_pEstado->mapaEntradas[destino.sNormal] = origem.pConteudo;
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                                std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sDiretorio);
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !m_pEstado->EhDiretorio(sNormal))
        return Erro(ECausaArquivo::eCaminhoInvalido);
    for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
        if (pConteudo && XVMascara::NomesIguais(DiretorioDe(sCaminho), sNormal) &&
            XVMascara::Confere(sMascara, NomeDe(sCaminho)))
            listaNomes.push_back(NomeDe(sCaminho));
    std::reverse(listaNomes.begin(), listaNomes.end());  // no directory promises the order of the names
    return {};
}

CXVErroArquivo CXVSistemaArquivosMemoria::CriaDiretorio(const std::string& sDiretorio) {
    const std::lock_guard trava(m_pEstado->mutex);
    return XVCaminho::PodeNomearDiretorio(sDiretorio) && m_pEstado->CriaDiretorios(Normaliza(sDiretorio))
               ? CXVErroArquivo()
               : Erro(ECausaArquivo::eCaminhoInvalido);
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
        !m_pEstado->EhDiretorio(sNormal))
        return Erro(ECausaArquivo::eCaminhoInvalido);
    if (!m_pEstado->conjuntoMarcas.insert(sNormal + '/' + sMarca).second)
        return Erro(ECausaArquivo::eViolacaoCompartilhamento);
    pMarca = std::make_unique<CXVMarcaMemoria>(m_pEstado, sNormal + '/' + sMarca);
    return {};
}

std::string CXVSistemaArquivosMemoria::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return XVCaminho::Junta(sDiretorio, sNome, '/', k_sSeparadores);
}

void CXVSistemaArquivosMemoria::CriaArquivo(const std::string& sCaminho, std::string sConteudo) {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::string sNormal = Normaliza(sCaminho);
    m_pEstado->CriaDiretorios(DiretorioDe(sNormal));
    std::shared_ptr<SConteudo>& rpConteudo = m_pEstado->mapaEntradas[sNormal];
    if (!rpConteudo) rpConteudo = std::make_shared<SConteudo>();
    rpConteudo->sBytes = std::move(sConteudo);
}

std::optional<std::string> CXVSistemaArquivosMemoria::LeConteudo(const std::string& sCaminho) const {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
    return pConteudo ? std::optional(pConteudo->sBytes) : std::nullopt;
}

void CXVSistemaArquivosMemoria::SetSomenteLeitura(const std::string& sCaminho, bool bSomenteLeitura) {
    const std::lock_guard trava(m_pEstado->mutex);
    const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
    if (pConteudo) pConteudo->bSomenteLeitura = bSomenteLeitura;
}

void CXVSistemaArquivosMemoria::LimitaEspaco(std::optional<XVUInt64> uiBytes) {
    const std::lock_guard trava(m_pEstado->mutex);
    m_pEstado->uiLimite = uiBytes;
}

std::size_t CXVSistemaArquivosMemoria::GetQuantidadeAberta() const {
    const std::lock_guard trava(m_pEstado->mutex);
    std::size_t uiQuantidade = m_pEstado->conjuntoMarcas.size();
    for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
        uiQuantidade += pConteudo ? pConteudo->listaAberturas.size() : 0;
    return uiQuantidade;
}

CXVSistemaArquivosMemoria::TRetrato CXVSistemaArquivosMemoria::Retrata() const {
    const std::lock_guard trava(m_pEstado->mutex);
    TRetrato retrato;
    for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
        if (pConteudo)
            retrato[sCaminho] = {pConteudo->sBytes, pConteudo->bSomenteLeitura};
        else
            retrato[sCaminho + '/'] = {};
    return retrato;
}

void CXVSistemaArquivosMemoria::Restaura(const TRetrato& rRetrato) {
    const std::lock_guard trava(m_pEstado->mutex);
    m_pEstado->mapaEntradas.clear();
    for (const auto& [sCaminho, rArquivo] : rRetrato) {
        std::shared_ptr<SConteudo>& rpConteudo = m_pEstado->mapaEntradas[Normaliza(sCaminho)];
        if (sCaminho.back() == '/') continue;
        rpConteudo = std::make_shared<SConteudo>(SConteudo{rArquivo.sConteudo, rArquivo.bSomenteLeitura, {}});
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
    for (const auto& [sCaminho, rArquivo] : rObtido)
        if (!rEsperado.contains(sCaminho)) sDiferenca += sCaminho + ": unexpected\n";
    return sDiferenca;
}
