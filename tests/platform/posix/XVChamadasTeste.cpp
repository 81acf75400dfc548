// What the seam asks of the operating system, in which order, and what it makes of every answer.
#include "tests/platform/posix/XVChamadas.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "tests/platform/posix/XVCenarioPosix.h"

namespace {

class CXVChamadasTeste : public CXVCenarioPosix {
  protected:
    ino_t Numero(const std::string& sNome) const {
        struct stat estado {};
        return stat(Caminho(sNome).c_str(), &estado) == 0 ? estado.st_ino : 0;
    }
    // The file of this name goes, and another one, which somebody holds open, takes its place.
    void PoeOutroNoLugar(const std::string& sNome) {
        m_diretorio.CriaArquivo("outro", "alheio");
        std::rename(Caminho("outro").c_str(), Caminho(sNome).c_str());
        EXPECT_TRUE(m_rSistema.Abre(Caminho(sNome), k_leitura, m_pAlheio).Ok());
    }

    std::unique_ptr<IXVArquivo> m_pAlheio;
};

using TChamadas = std::vector<SChamada>;

}  // namespace

TEST_F(CXVChamadasTeste, SincronizarDescarregaOArquivoUmaVez) {
    for (const SAberturaArquivo& rAbertura : {k_criacao, k_anexacao}) {
        ASSERT_EQ(Abre("a.dat", rAbertura), ECausaArquivo::eNenhuma);
        ASSERT_TRUE(m_pArquivo->Grava(0, "x", 1).Ok());
        CXVChamadas chamadas;
        EXPECT_TRUE(m_pArquivo->Sincroniza().Ok());
        EXPECT_EQ(chamadas.Filtra({EChamada::eDescarrega}),
                  (TChamadas{{EChamada::eDescarrega, Numero("a.dat")}}));
        chamadas.Falha(EChamada::eDescarrega, EINTR, 2);
        chamadas.Esquece();
        EXPECT_TRUE(m_pArquivo->Sincroniza().Ok());
        EXPECT_EQ(chamadas.Conta(EChamada::eDescarrega), 3U);
        // Repeated, it would say that all is well: the pages count as written by then.
        chamadas.Falha(EChamada::eDescarrega, EIO);
        chamadas.Esquece();
        EXPECT_EQ(m_pArquivo->Sincroniza().GetCausa(), ECausaArquivo::eErroFisico);
        EXPECT_EQ(chamadas.Conta(EChamada::eDescarrega), 1U);
        m_pArquivo.reset();
    }
    CXVChamadas chamadas;
    EXPECT_TRUE(m_rSistema.SincronizaDiretorio(m_diretorio.GetCaminho()).Ok());
    EXPECT_EQ(chamadas.Filtra({EChamada::eDescarrega}), (TChamadas{{EChamada::eDescarrega, Numero("")}}));
    chamadas.Falha(EChamada::eDescarrega, EIO);
    EXPECT_EQ(m_rSistema.SincronizaDiretorio(m_diretorio.GetCaminho()).GetCausa(),
              ECausaArquivo::eErroFisico);
}

TEST_F(CXVChamadasTeste, SubstituirDescarregaOConteudoAntesEOsDiretoriosDepois) {
    ASSERT_TRUE(m_rSistema.CriaDiretorio(Caminho("sub")).Ok());
    // The second time the destination is there.
    for (const std::string sDestino : {"a.dat", "a.dat", "sub/a.dat", "sub/a.dat"}) {
        const bool bOutroDiretorio = sDestino.starts_with("sub/");
        m_diretorio.CriaArquivo("a.tra", "novo");
        TChamadas lista{{EChamada::eDescarrega, Numero("a.tra")},
                        {EChamada::eRename},
                        {EChamada::eDescarrega, Numero(bOutroDiretorio ? "sub" : "")}};
        if (bOutroDiretorio) {
            lista.push_back({EChamada::eDescarrega, Numero("")});
        }
        CXVChamadas chamadas;
        EXPECT_EQ(Substitui("a.tra", sDestino), ECausaArquivo::eNenhuma);
        EXPECT_EQ(chamadas.Filtra({EChamada::eDescarrega, EChamada::eRename}), lista);
        EXPECT_EQ(Conteudo(sDestino), "novo");
    }
    // Every flush that fails is told; before the move it stops it.
    for (const unsigned ulPassam : {0U, 1U, 2U}) {
        m_diretorio.CriaArquivo("a.tra", "novo");
        m_diretorio.CriaArquivo("sub/a.dat", "antigo");
        CXVChamadas chamadas;
        chamadas.Falha(EChamada::eDescarrega, EIO, 1, ulPassam);
        EXPECT_EQ(Substitui("a.tra", "sub/a.dat"), ECausaArquivo::eErroFisico) << ulPassam;
        EXPECT_EQ(Conteudo("sub/a.dat"), ulPassam == 0 ? "antigo" : "novo");
        EXPECT_EQ(chamadas.Conta(EChamada::eRename), ulPassam == 0 ? 0U : 1U);
    }
    m_diretorio.CriaArquivo("a.tra", "outro");
    CXVChamadas chamadas;
    chamadas.Falha(EChamada::eRename, ENOSPC);
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausaArquivo::eDiscoCheio);
    EXPECT_EQ(Conteudo("a.tra") + Conteudo("a.dat"), "outronovo");
}

TEST_F(CXVChamadasTeste, SubstituirNaoPisaEmArquivoQueApareceuNoDestino) {
    m_diretorio.CriaArquivo("a.tra", "novo");
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eRename, [this] { PoeOutroNoLugar("a.dat"); });
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Conteudo("a.dat"), "alheio");
    EXPECT_EQ(Conteudo("a.tra"), "novo");
    m_pAlheio.reset();
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Conteudo("a.dat"), "novo");
    // Where the file system cannot promise an absent destination the move is still made.
    for (const int iErrno : {EINVAL, ENOSYS}) {
        chamadas.Falha(EChamada::eRename, iErrno);
        EXPECT_EQ(Substitui("a.dat", "b.dat"), ECausaArquivo::eNenhuma);
        EXPECT_EQ(Substitui("b.dat", "a.dat"), ECausaArquivo::eNenhuma);
    }
}

TEST_F(CXVChamadasTeste, NomeQueMudaDeArquivoAntesDoPortaoEVistoDeNovo) {
    CXVChamadas chamadas;
    const auto fnPrepara = [&](EChamada eChamada) {
        m_pAlheio.reset();
        m_diretorio.CriaArquivo("a.dat", "meu");
        m_diretorio.CriaArquivo("a.tra", "novo");
        chamadas.Antes(eChamada, [this] { PoeOutroNoLugar("a.dat"); });
    };
    fnPrepara(EChamada::eFlock);
    EXPECT_EQ(Apaga("a.dat"), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Conteudo("a.dat"), "alheio");
    fnPrepara(EChamada::eFlock);
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Conteudo("a.dat"), "alheio");
    fnPrepara(EChamada::eFlock);
    ASSERT_EQ(Abre("a.dat", k_leitura), ECausaArquivo::eNenhuma);
    std::string sLido(6, '?');
    EXPECT_TRUE(m_pArquivo->Le(0, sLido.data(), sLido.size()).Ok());
    EXPECT_EQ(sLido, "alheio") << "not a file that nobody can find any more";
}

TEST_F(CXVChamadasTeste, MarcaNuncaTemDoisDonos) {
    std::unique_ptr<IXVMarcaDiretorio> pAlheia;
    // The holder goes, and another comes, between the opening of the mark and its lock.
    ASSERT_EQ(Marca("M", pAlheia), ECausaArquivo::eNenhuma);
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eFlock, [&] {
        pAlheia.reset();
        EXPECT_EQ(Marca("M", pAlheia), ECausaArquivo::eNenhuma);
    });
    EXPECT_EQ(Marca("M"), ECausaArquivo::eViolacaoCompartilhamento);
    // While the holder goes: taken before its file is removed, the mark would be another's without a file.
    chamadas.Antes(EChamada::eUnlink,
                   [&] { EXPECT_EQ(Marca("M"), ECausaArquivo::eViolacaoCompartilhamento); });
    pAlheia.reset();
    EXPECT_EQ(chamadas.Conta(EChamada::eUnlink), 2U);
    // A mark that was removed by hand and made anew by another is not the first holder's to remove.
    ASSERT_EQ(Marca("M"), ECausaArquivo::eNenhuma);
    ASSERT_EQ(unlink(Caminho("M").c_str()), 0);
    ASSERT_EQ(Marca("M", pAlheia), ECausaArquivo::eNenhuma);
    m_pMarca.reset();
    EXPECT_NE(Numero("M"), 0U);
    EXPECT_EQ(Marca("M"), ECausaArquivo::eViolacaoCompartilhamento);
    // What hinders the lock is no other holder.
    chamadas.Falha(EChamada::eFlock, ENOLCK);
    EXPECT_EQ(Marca("M"), ECausaArquivo::eGenerica);
}

// A privileged user passes the system's own look at the rights: the file that lost them is refused all the
// same.
TEST_F(CXVChamadasTeste, OpcoesDoArquivoSaoVistasDepoisDeAberto) {
    m_diretorio.CriaArquivo("a.dat", "x");
    CXVChamadas chamadas;
    chamadas.Antes(EChamada::eFstat, [&] { m_diretorio.SetSomenteLeitura("a.dat", true); });
    EXPECT_EQ(Abre("a.dat", k_criacao), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(Abre("a.dat", k_leitura), ECausaArquivo::eNenhuma);
    chamadas.Falha(EChamada::eFstat, EIO);
    EXPECT_EQ(Abre("a.dat", k_leitura), ECausaArquivo::eErroFisico);
    m_diretorio.SetSomenteLeitura("a.dat", false);
    chamadas.Falha(EChamada::eUnlink, EPERM);
    EXPECT_EQ(Apaga("a.dat"), ECausaArquivo::eAcessoNegado) << "the deletion itself may be refused";
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

// Two moves that cross would otherwise wait for each other for ever.
TEST_F(CXVChamadasTeste, PortoesDeDoisArquivosTemUmaSoOrdem) {
    m_diretorio.CriaArquivo("a.dat", "a");
    m_diretorio.CriaArquivo("b.dat", "b");
    const auto fnOrdem = [this](const std::string& sOrigem, const std::string& sDestino) {
        CXVChamadas chamadas;
        chamadas.Falha(EChamada::eRename, EIO);
        EXPECT_EQ(Substitui(sOrigem, sDestino), ECausaArquivo::eErroFisico);
        return chamadas.Filtra({EChamada::eFlock});
    };
    const TChamadas listaIda = fnOrdem("a.dat", "b.dat");
    EXPECT_EQ(listaIda.size(), 2U);
    EXPECT_EQ(fnOrdem("b.dat", "a.dat"), listaIda);
}

TEST_F(CXVChamadasTeste, ChamadaInterrompidaERepetida) {
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausaArquivo::eNenhuma);
    CXVChamadas chamadas;
    char cByte = 0;
    chamadas.Falha(EChamada::ePwrite, EINTR, 2);
    EXPECT_TRUE(m_pArquivo->Grava(0, "x", 1).Ok());
    chamadas.Falha(EChamada::ePread, EINTR, 2);
    EXPECT_TRUE(m_pArquivo->Le(0, &cByte, 1).Ok());
    chamadas.Falha(EChamada::eFtruncate, EINTR, 2);
    EXPECT_TRUE(m_pArquivo->SetTamanho(2).Ok());
    chamadas.Falha(EChamada::eFtruncate, EINVAL);
    EXPECT_EQ(m_pArquivo->SetTamanho(3).GetCausa(), ECausaArquivo::ePosicionamentoInvalido)
        << "beyond what the file system holds";
    m_pArquivo.reset();
    chamadas.Falha(EChamada::eOpen, EINTR, 2);
    chamadas.Falha(EChamada::eFlock, EINTR, 2);
    EXPECT_EQ(Abre("a.dat", k_anexacao), ECausaArquivo::eNenhuma);
    chamadas.Falha(EChamada::eWrite, EINTR, 2);
    EXPECT_TRUE(m_pArquivo->Grava(0, "y", 1).Ok());
    EXPECT_EQ(Conteudo("a.dat"), std::string("x\0y", 3));
    // But for one: the number is free by then, and another's at once.
    chamadas.Esquece();
    chamadas.Falha(EChamada::eClose, EINTR);
    m_pArquivo.reset();
    EXPECT_EQ(chamadas.Conta(EChamada::eClose), 1U);
    chamadas.Falha(EChamada::eNanosleep, EINTR);
    XVPlataforma::RelogioNativo().Dorme(3003);
    const TChamadas lista = chamadas.Filtra({EChamada::eNanosleep});
    ASSERT_EQ(lista.size(), 2U);
    EXPECT_EQ(lista[0].lNanossegundos, 3003000000L);
    EXPECT_EQ(lista[1].lNanossegundos, 1001000000L) << "the rest";
}

TEST_F(CXVChamadasTeste, TransferenciaCurtaContinua) {
    std::string sDados;
    for (int i = 0; i < 100; ++i) {
        sDados += static_cast<char>('!' + i % 90);
    }
    CXVChamadas chamadas;
    chamadas.LimitaTransferencias(7);
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausaArquivo::eNenhuma);
    EXPECT_TRUE(m_pArquivo->Grava(3, sDados.data(), sDados.size()).Ok());
    EXPECT_EQ(chamadas.Conta(EChamada::ePwrite), 15U);
    std::string sLido(sDados.size(), '?');
    EXPECT_TRUE(m_pArquivo->Le(3, sLido.data(), sLido.size()).Ok());
    EXPECT_EQ(sLido, sDados);
    chamadas.Falha(EChamada::ePwrite, ENOSPC, 1, 2);
    EXPECT_EQ(m_pArquivo->Grava(3, sDados.data(), sDados.size()).GetCausa(), ECausaArquivo::eDiscoCheio);
    chamadas.Falha(EChamada::ePread, EIO, 1, 2);
    EXPECT_EQ(m_pArquivo->Le(3, sLido.data(), sLido.size()).GetCausa(), ECausaArquivo::eErroFisico);
    m_pArquivo.reset();
    ASSERT_EQ(Abre("log", k_anexacao), ECausaArquivo::eNenhuma);
    EXPECT_TRUE(m_pArquivo->Grava(0, sDados.data(), sDados.size()).Ok());
    EXPECT_EQ(Conteudo("log"), sDados);
}

TEST_F(CXVChamadasTeste, CadaErroDoSistemaTemSuaCausa) {
    const std::map<ECausaArquivo, std::vector<int>> mapaCasos{
        {ECausaArquivo::eArquivoNaoEncontrado, {ENOENT}},
        {ECausaArquivo::eCaminhoInvalido, {ENOTDIR, ENAMETOOLONG, ELOOP, EILSEQ}},
        {ECausaArquivo::eMuitosArquivosAbertos, {EMFILE, ENFILE}},
        {ECausaArquivo::eAcessoNegado, {EACCES, EPERM, EROFS, EISDIR}},
        {ECausaArquivo::eArquivoInvalido, {EBADF, ENXIO, ENODEV}},
        {ECausaArquivo::eDiretorioCheio, {EMLINK}},
        {ECausaArquivo::ePosicionamentoInvalido, {ESPIPE, EFBIG, EOVERFLOW}},
        {ECausaArquivo::eErroFisico, {EIO}},
        {ECausaArquivo::eViolacaoCompartilhamento, {ETXTBSY, EBUSY}},
        {ECausaArquivo::eViolacaoBloqueio, {EAGAIN, EDEADLK}},
        {ECausaArquivo::eDiscoCheio, {ENOSPC, EDQUOT}},
        {ECausaArquivo::eGenerica, {EINVAL}},
    };
    for (const auto& [eCausa, listaErrnos] : mapaCasos) {
        for (const int iErrno : listaErrnos) {
            CXVChamadas chamadas;
            chamadas.Falha(EChamada::eOpen, iErrno);
            const CXVErroArquivo erro = m_rSistema.Abre(Caminho("a.dat"), k_criacao, m_pArquivo);
            EXPECT_EQ(static_cast<int>(erro.GetCausa()), static_cast<int>(eCausa)) << iErrno;
            EXPECT_EQ(erro.GetErroSistema(), static_cast<XVUInt>(iErrno));
            EXPECT_EQ(m_pArquivo, nullptr);
        }
    }
}

TEST_F(CXVChamadasTeste, BuscaQueNaoPodeOlharNaoDizAusente) {
    m_diretorio.CriaArquivo("INDEX.DAT", "x");
    std::string sNome = "sobra";
    std::vector<std::string> listaNomes;
    CXVChamadas chamadas;
    for (const EChamada eChamada : {EChamada::eOpen, EChamada::eReaddir}) {
        const int iErrno = eChamada == EChamada::eOpen ? EMFILE : EIO;
        const ECausaArquivo eCausa =
            eChamada == EChamada::eOpen ? ECausaArquivo::eMuitosArquivosAbertos : ECausaArquivo::eErroFisico;
        chamadas.Falha(eChamada, iErrno);
        EXPECT_EQ(m_rSistema.BuscaNomeReal(Caminho("index.dat"), sNome).GetCausa(), eCausa);
        EXPECT_EQ(sNome, "");
        chamadas.Falha(eChamada, iErrno);
        EXPECT_EQ(m_rSistema.Lista(m_diretorio.GetCaminho(), "*", listaNomes).GetCausa(), eCausa);
        EXPECT_TRUE(listaNomes.empty());
    }
}
