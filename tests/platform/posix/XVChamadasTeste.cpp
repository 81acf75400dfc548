// What the seam asks of the operating system, in which order, and what it makes of every answer.
#include "tests/platform/posix/XVChamadas.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/platform/XVCenarioArquivos.h"

namespace {

using TChamadas = std::vector<SChamada>;

class CXVChamadasTeste : public CXVCenarioArquivos {
  protected:
    ino_t Numero(const std::string& sNome) const {
        struct stat estado {};
        return stat(Caminho(sNome).c_str(), &estado) == 0 ? estado.st_ino : 0;
    }
    // The file of this name goes, and another one, which somebody holds open, takes its place.
    void PoeOutroNoLugar(const std::string& sNome) {
        Cria("outro", "alheio");
        std::rename(Caminho("outro").c_str(), Caminho(sNome).c_str());
        EXPECT_EQ(Abre(sNome, k_leitura, m_pAlheio), ECausa::eNenhuma);
    }
    // A flush of exactly this file and nothing else; interrupted, it is repeated; failed, it never is: it
    // would say that all is well, for the pages count as written by then.
    template <class TDescarga>
    void ConfereDescarga(const std::string& sNome, TDescarga fnDescarga) {
        CXVChamadas chamadas;
        chamadas.Falha(EChamada::eDescarrega, EINTR, 2);
        EXPECT_EQ(fnDescarga().GetCausa(), ECausa::eNenhuma);
        chamadas.Falha(EChamada::eDescarrega, EIO);
        EXPECT_EQ(fnDescarga().GetCausa(), ECausa::eErroFisico);
        EXPECT_EQ(chamadas.Filtra({EChamada::eDescarrega}),
                  TChamadas(4, {EChamada::eDescarrega, Numero(sNome)}));
    }

    std::unique_ptr<IXVArquivo> m_pAlheio;
};

}  // namespace

TEST_F(CXVChamadasTeste, SincronizarDescarregaOArquivoUmaVez) {
    for (const SAberturaArquivo& rAbertura : {k_criacao, k_anexacao}) {
        ASSERT_EQ(Abre("a.dat", rAbertura), ECausa::eNenhuma);
        ASSERT_EQ(Grava(0, "x"), ECausa::eNenhuma);
        ConfereDescarga("a.dat", [this] { return m_pArquivo->Sincroniza(); });
        m_pArquivo.reset();
    }
    ConfereDescarga("", [this] { return m_rSistema.SincronizaDiretorio(Caminho("")); });
}

TEST_F(CXVChamadasTeste, SubstituirDescarregaOConteudoAntesEOsDiretoriosDepois) {
    ASSERT_EQ(CriaDiretorio("sub"), ECausa::eNenhuma);
    // The second time the destination is there.
    for (const std::string sDestino : {"a.dat", "a.dat", "sub/a.dat", "sub/a.dat"}) {
        const bool bOutroDiretorio = sDestino.starts_with("sub/");
        Cria("a.tra", "novo");
        TChamadas lista{{EChamada::eDescarrega, Numero("a.tra")},
                        {EChamada::eRename},
                        {EChamada::eDescarrega, Numero(bOutroDiretorio ? "sub" : "")}};
        if (bOutroDiretorio) lista.push_back({EChamada::eDescarrega, Numero("")});
        CXVChamadas chamadas;
        EXPECT_EQ(Substitui("a.tra", sDestino), ECausa::eNenhuma);
        EXPECT_EQ(chamadas.Filtra({EChamada::eDescarrega, EChamada::eRename}), lista);
        EXPECT_EQ(Conteudo(sDestino), "novo");
    }
    // Every flush that fails is told; before the move it stops it.
    for (const unsigned ulPassam : {0U, 1U, 2U}) {
        Cria("a.tra", "novo");
        Cria("sub/a.dat", "antigo");
        CXVChamadas chamadas;
        chamadas.Falha(EChamada::eDescarrega, EIO, 1, ulPassam);
        EXPECT_EQ(Substitui("a.tra", "sub/a.dat"), ECausa::eErroFisico) << ulPassam;
        EXPECT_EQ(Conteudo("sub/a.dat"), ulPassam == 0 ? "antigo" : "novo");
        EXPECT_EQ(chamadas.Conta(EChamada::eRename), ulPassam == 0 ? 0U : 1U);
    }
    Cria("a.tra", "outro");
    CXVChamadas chamadas;
    chamadas.Falha(EChamada::eRename, ENOSPC);
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausa::eDiscoCheio);
    EXPECT_EQ(Conteudo("a.tra") + Conteudo("a.dat"), "outronovo");
}

TEST_F(CXVChamadasTeste, SubstituirNaoPisaEmArquivoQueApareceuNoDestino) {
    Cria("a.tra", "novo");
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eRename, [this] { PoeOutroNoLugar("a.dat"); });
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausa::eViolacaoCompartilhamento);
    EXPECT_EQ(Conteudo("a.dat") + Conteudo("a.tra"), "alheionovo");
    m_pAlheio.reset();
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("a.dat"), "novo");
    // Where the file system cannot promise an absent destination the move is still made.
    for (const int iErrno : {EINVAL, ENOSYS}) {
        chamadas.Falha(EChamada::eRename, iErrno);
        EXPECT_EQ(Substitui("a.dat", "b.dat"), ECausa::eNenhuma);
        EXPECT_EQ(Substitui("b.dat", "a.dat"), ECausa::eNenhuma);
    }
}

TEST_F(CXVChamadasTeste, NomeQueMudaDeArquivoAntesDoPortaoEVistoDeNovo) {
    CXVChamadas chamadas;
    Cria("a.tra", "novo");
    const std::function<void()> afnPassos[] = {
        [this] { EXPECT_EQ(Apaga("a.dat"), ECausa::eViolacaoCompartilhamento); },
        [this] { EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausa::eViolacaoCompartilhamento); },
        [this] {
            ASSERT_EQ(Abre("a.dat", k_leitura), ECausa::eNenhuma);
            EXPECT_EQ(Le(0, 6), ECausa::eNenhuma);
            EXPECT_EQ(m_sLido, "alheio") << "not a file that nobody can find any more";
        }};
    for (const auto& fnPasso : afnPassos) {
        m_pAlheio.reset();
        Cria("a.dat", "meu");
        chamadas.Antes(EChamada::eFlock, [this] { PoeOutroNoLugar("a.dat"); });
        fnPasso();
        EXPECT_EQ(Conteudo("a.dat"), "alheio");
    }
}

TEST_F(CXVChamadasTeste, MarcaNuncaTemDoisDonos) {
    std::unique_ptr<IXVMarcaDiretorio> pAlheia;
    // The holder goes, and another comes, between the opening of the mark and its lock.
    ASSERT_EQ(Marca("M", pAlheia), ECausa::eNenhuma);
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eFlock, [&] {
        pAlheia.reset();
        EXPECT_EQ(Marca("M", pAlheia), ECausa::eNenhuma);
    });
    EXPECT_EQ(Marca("M"), ECausa::eViolacaoCompartilhamento);
    // While the holder goes: taken before its file is removed, the mark would be another's without a file.
    chamadas.Antes(EChamada::eUnlink, [&] { EXPECT_EQ(Marca("M"), ECausa::eViolacaoCompartilhamento); });
    pAlheia.reset();
    EXPECT_EQ(chamadas.Conta(EChamada::eUnlink), 2U);
    // A mark that was removed by hand and made anew by another is not the first holder's to remove.
    ASSERT_EQ(Marca("M"), ECausa::eNenhuma);
    ASSERT_EQ(unlink(Caminho("M").c_str()), 0);
    ASSERT_EQ(Marca("M", pAlheia), ECausa::eNenhuma);
    m_pMarca.reset();
    EXPECT_NE(Numero("M"), 0U);
    EXPECT_EQ(Marca("M"), ECausa::eViolacaoCompartilhamento);
    // What hinders the lock is no other holder.
    chamadas.Falha(EChamada::eFlock, ENOLCK);
    EXPECT_EQ(Marca("M"), ECausa::eGenerica);
}

// A privileged user passes the system's own look at the rights: the file that lost them is refused all the
// same.
TEST_F(CXVChamadasTeste, OpcoesDoArquivoSaoVistasDepoisDeAberto) {
    Cria("a.dat", "x");
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eFstat, [&] { SetSomenteLeitura("a.dat"); });
    EXPECT_EQ(Abre("a.dat", k_criacao), ECausa::eAcessoNegado);
    EXPECT_EQ(Abre("a.dat", k_leitura), ECausa::eNenhuma);
    chamadas.Falha(EChamada::eFstat, EIO);
    EXPECT_EQ(Abre("a.dat", k_leitura), ECausa::eErroFisico);
    m_diretorio.SetSomenteLeitura("a.dat", false);
    chamadas.Falha(EChamada::eUnlink, EPERM);
    EXPECT_EQ(Apaga("a.dat"), ECausa::eAcessoNegado) << "the deletion itself may be refused";
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

// Two moves that cross would otherwise wait for each other for ever.
TEST_F(CXVChamadasTeste, PortoesDeDoisArquivosTemUmaSoOrdem) {
    Cria("a.dat", "a");
    Cria("b.dat", "b");
    const auto fnOrdem = [this](const std::string& sOrigem, const std::string& sDestino) {
        CXVChamadas chamadas;
        chamadas.Falha(EChamada::eRename, EIO);
        EXPECT_EQ(Substitui(sOrigem, sDestino), ECausa::eErroFisico);
        return chamadas.Filtra({EChamada::eFlock});
    };
    const TChamadas listaIda = fnOrdem("a.dat", "b.dat");
    EXPECT_EQ(listaIda.size(), 2U);
    EXPECT_EQ(fnOrdem("b.dat", "a.dat"), listaIda);
}

TEST_F(CXVChamadasTeste, ChamadaInterrompidaERepetida) {
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausa::eNenhuma);
    CXVChamadas chamadas;
    for (const EChamada eChamada : {EChamada::ePwrite, EChamada::ePread, EChamada::eFtruncate,
                                    EChamada::eOpen, EChamada::eFlock, EChamada::eWrite})
        chamadas.Falha(eChamada, EINTR, 2);
    EXPECT_EQ(Grava(0, "x"), ECausa::eNenhuma);
    EXPECT_EQ(Le(0, 1), ECausa::eNenhuma);
    EXPECT_TRUE(m_pArquivo->SetTamanho(2).Ok());
    chamadas.Falha(EChamada::eFtruncate, EINVAL);
    EXPECT_EQ(m_pArquivo->SetTamanho(3).GetCausa(), ECausa::ePosicionamentoInvalido)
        << "beyond what the file system holds";
    m_pArquivo.reset();
    EXPECT_EQ(Abre("a.dat", k_anexacao), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, "y"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("a.dat"), std::string("x\0y", 3));
    // But for one: the number is free by then, and another's at once.
    chamadas.Esquece();
    chamadas.Falha(EChamada::eClose, EINTR);
    m_pArquivo.reset();
    EXPECT_EQ(chamadas.Conta(EChamada::eClose), 1U);
    chamadas.Falha(EChamada::eNanosleep, EINTR);
    XVPlataforma::RelogioNativo().Dorme(3003);
    EXPECT_EQ(chamadas.Filtra({EChamada::eNanosleep}),
              (TChamadas{{EChamada::eNanosleep, 0, 3003000000L}, {EChamada::eNanosleep, 0, 1001000000L}}))
        << "the rest";
}

TEST_F(CXVChamadasTeste, TransferenciaCurtaContinua) {
    std::string sDados;
    for (int i = 0; i < 100; ++i) sDados += static_cast<char>('!' + i % 90);
    CXVChamadas chamadas;
    chamadas.LimitaTransferencias(7);
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausa::eNenhuma);
    EXPECT_EQ(Grava(3, sDados), ECausa::eNenhuma);
    EXPECT_EQ(chamadas.Conta(EChamada::ePwrite), 15U);
    EXPECT_EQ(Le(3, sDados.size()), ECausa::eNenhuma);
    EXPECT_EQ(m_sLido, sDados);
    chamadas.Falha(EChamada::ePwrite, ENOSPC, 1, 2);
    EXPECT_EQ(Grava(3, sDados), ECausa::eDiscoCheio);
    chamadas.Falha(EChamada::ePread, EIO, 1, 2);
    EXPECT_EQ(Le(3, sDados.size()), ECausa::eErroFisico);
    ASSERT_EQ(Abre("log", k_anexacao), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, sDados), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("log"), sDados);
}

TEST_F(CXVChamadasTeste, CadaErroDoSistemaTemSuaCausa) {
    const std::map<ECausa, std::vector<int>> mapaCasos{
        {ECausa::eArquivoNaoEncontrado, {ENOENT}},
        {ECausa::eCaminhoInvalido, {ENOTDIR, ENAMETOOLONG, ELOOP, EILSEQ}},
        {ECausa::eMuitosArquivosAbertos, {EMFILE, ENFILE}},
        {ECausa::eAcessoNegado, {EACCES, EPERM, EROFS, EISDIR}},
        {ECausa::eArquivoInvalido, {EBADF, ENXIO, ENODEV}},
        {ECausa::eDiretorioCheio, {EMLINK}},
        {ECausa::ePosicionamentoInvalido, {ESPIPE, EFBIG, EOVERFLOW}},
        {ECausa::eErroFisico, {EIO}},
        {ECausa::eViolacaoCompartilhamento, {ETXTBSY, EBUSY}},
        {ECausa::eViolacaoBloqueio, {EAGAIN, EDEADLK}},
        {ECausa::eDiscoCheio, {ENOSPC, EDQUOT}},
        {ECausa::eGenerica, {EINVAL}},
    };
    for (const auto& [eCausa, listaErrnos] : mapaCasos) {
        for (const int iErrno : listaErrnos) {
            CXVChamadas chamadas;
            chamadas.Falha(EChamada::eOpen, iErrno);
            const CXVErroArquivo erro = m_rSistema.Abre(Caminho("a.dat"), k_criacao, m_pArquivo);
            EXPECT_EQ(erro.GetCausa(), eCausa) << iErrno;
            EXPECT_EQ(erro.GetErroSistema(), static_cast<XVUInt>(iErrno));
        }
    }
}

TEST_F(CXVChamadasTeste, BuscaQueNaoPodeOlharNaoDizAusente) {
    Cria("INDEX.DAT", "x");
    CXVChamadas chamadas;
    const struct {
        EChamada eChamada;
        int iErrno;
        ECausa eCausa;
    } aCasos[] = {{EChamada::eOpen, EMFILE, ECausa::eMuitosArquivosAbertos},
                  {EChamada::eReaddir, EIO, ECausa::eErroFisico}};
    for (const auto& [eChamada, iErrno, eCausa] : aCasos) {
        chamadas.Falha(eChamada, iErrno);
        EXPECT_EQ(BuscaNomeReal("index.dat"), eCausa);
        EXPECT_EQ(m_sNomeReal, "");
        chamadas.Falha(eChamada, iErrno);
        EXPECT_EQ(Lista(""), eCausa);
        EXPECT_TRUE(m_listaNomes.empty());
    }
}
