#include "tests/harness/XVSistemaArquivosQueda.h"

#include <algorithm>

#include "platform/XVMascara.h"

namespace {

std::string Chave(std::string sCaminho) {
    std::ranges::transform(sCaminho, sCaminho.begin(), XVMascara::Minuscula);
    return sCaminho;
}

std::string DiretorioDe(const std::string& sCaminho) {
    return sCaminho.substr(0, sCaminho.rfind('/'));
}

}  // namespace

CXVDispositivoQueda::CXVDispositivoQueda(const CXVSistemaArquivosMemoria& rMemoria) {
    for (const auto& [sCaminho, rArquivo] : rMemoria.Retrata())
        if (sCaminho.back() != '/')
            m_mapaNomes[Chave(sCaminho)] = {
                sCaminho, std::make_shared<CXVConteudoQueda>(rArquivo.sConteudo), {}};
}

bool CXVDispositivoQueda::Altera(const SOperacaoArquivo& rOperacao) const {
    switch (rOperacao.eOperacao) {
        case EOperacaoArquivo::eAbre: {
            const std::lock_guard trava(m_mutex);
            return rOperacao.bAltera && !Atual(rOperacao.sCaminho);
        }
        case EOperacaoArquivo::eCriaDiretorio:
        case EOperacaoArquivo::eMarca:
            return false;
        default:
            return rOperacao.bAltera || rOperacao.eOperacao == EOperacaoArquivo::eSincroniza;
    }
}

void CXVDispositivoQueda::Segue(const SOperacaoArquivo& rOperacao) {
    const std::string& sCaminho = rOperacao.sCaminho;
    const TConteudo pConteudo = Atual(sCaminho);
    switch (rOperacao.eOperacao) {
        case EOperacaoArquivo::eAbre:
            if (!pConteudo) Nomeia(sCaminho, std::make_shared<CXVConteudoQueda>());
            return;
        case EOperacaoArquivo::eGrava:
            return pConteudo->Grava(rOperacao.uiOffset, rOperacao.sDados);
        case EOperacaoArquivo::eSetTamanho:
            return pConteudo->SetTamanho(static_cast<std::size_t>(rOperacao.uiOffset));
        case EOperacaoArquivo::eSincroniza:
            return pConteudo ? pConteudo->Sincroniza() : SincronizaNomes(sCaminho);
        case EOperacaoArquivo::eApaga:
            return Nomeia(sCaminho, nullptr);
        case EOperacaoArquivo::eSubstitui: {
            const std::string sOrigem(rOperacao.sDados);
            const TConteudo pMovido = Atual(sOrigem);
            pMovido->Sincroniza();
            Nomeia(sOrigem, nullptr);
            Nomeia(sCaminho, pMovido);
            SincronizaNomes(DiretorioDe(sOrigem));
            return SincronizaNomes(DiretorioDe(sCaminho));
        }
        default:
            return;
    }
}

CXVDispositivoQueda::TConteudo CXVDispositivoQueda::Atual(const std::string& sCaminho) const {
    const auto it = m_mapaNomes.find(Chave(sCaminho));
    return it == m_mapaNomes.end() ? nullptr : it->second.Atual();
}

void CXVDispositivoQueda::Nomeia(const std::string& sCaminho, TConteudo pConteudo) {
    SNome& rNome = m_mapaNomes[Chave(sCaminho)];
    if (pConteudo) rNome.sCaminho = sCaminho;
    rNome.listaPendentes.push_back(std::move(pConteudo));
}

void CXVDispositivoQueda::SincronizaNomes(const std::string& sDiretorio) {
    for (auto& [sChave, rNome] : m_mapaNomes) {
        if (DiretorioDe(sChave) != Chave(sDiretorio)) continue;
        rNome.pNoDispositivo = rNome.Atual();
        rNome.listaPendentes.clear();
    }
}

void CXVDispositivoQueda::Corta(CXVSorteio& rSorteio, CXVSistemaArquivosMemoria::TRetrato& rRetrato) const {
    const std::lock_guard trava(m_mutex);
    std::erase_if(rRetrato, [](const auto& it) { return it.first.back() != '/'; });
    for (const auto& [sChave, rNome] : m_mapaNomes) {
        const std::size_t uiMomento = rSorteio.Ate(rNome.listaPendentes.size() + 1);
        const TConteudo& pConteudo =
            uiMomento == 0 ? rNome.pNoDispositivo : rNome.listaPendentes[uiMomento - 1];
        if (pConteudo) rRetrato[rNome.sCaminho] = {pConteudo->Sobrevive(rSorteio), false};
    }
}

CXVSistemaArquivosQueda::TRetrato CXVSistemaArquivosQueda::Corta(XVUInt64 uiSemente) const {
    CXVSorteio sorteio(uiSemente);
    TRetrato retrato = m_rMemoria.Retrata();
    m_pVigia->Corta(sorteio, retrato);
    return retrato;
}
