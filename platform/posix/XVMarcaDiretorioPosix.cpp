// The exclusive mark: a locked file in the directory. The lock ends with the process, so a file left
// behind by one that was killed means nothing and is taken over.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/XVCaminho.h"
#include "platform/posix/XVCompartilhamentoPosix.h"
#include "platform/posix/XVDescritorPosix.h"
#include "platform/posix/XVErroPosix.h"
#include "platform/posix/XVSistemaArquivosPosix.h"

namespace {

class CXVMarcaDiretorioPosix final : public IXVMarcaDiretorio {
  public:
    CXVMarcaDiretorioPosix(CXVDescritor&& rDescritor, std::string sCaminho)
        : m_descritor(std::move(rDescritor)), m_sCaminho(std::move(sCaminho)) {}

    ~CXVMarcaDiretorioPosix() override {
        // The file goes before the lock; whoever opened it meanwhile finds it gone and begins again. A
        // mark that somebody removed by hand may already be another's under the same name.
        if (XVCompartilhamentoPosix::AindaEh(m_descritor.Get(), m_sCaminho)) {
            unlink(m_sCaminho.c_str());
        }
    }
    CXVMarcaDiretorioPosix(const CXVMarcaDiretorioPosix&) = delete;
    CXVMarcaDiretorioPosix& operator=(const CXVMarcaDiretorioPosix&) = delete;

  private:
    CXVDescritor m_descritor;
    std::string m_sCaminho;
};

CXVErroArquivo AbreMarca(const std::string& sCaminho, CXVDescritor& rDescritor) {
    constexpr int k_iOpcoes = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    constexpr mode_t k_modo = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP;
    rDescritor = XVAbreDescritor(sCaminho, k_iOpcoes, k_modo);
    if (!rDescritor.EhValido()) {
        return errno == ENOENT ? CXVErroArquivo(ECausaArquivo::eCaminhoInvalido, ENOENT)
                               : XVErroPosix::DeErrnoCaminho(errno, sCaminho);
    }
    struct stat estado;
    if (fstat(rDescritor.Get(), &estado) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    return S_ISREG(estado.st_mode) ? CXVErroArquivo() : CXVErroArquivo(ECausaArquivo::eArquivoInvalido, 0);
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosPosix::MarcaDiretorio(const std::string& sDiretorio,
                                                       const std::string& sMarca,
                                                       std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    pMarca.reset();
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !XVCaminho::EhNomeSimples(sMarca)) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    std::string sCaminho = Junta(sDiretorio, sMarca);
    while (true) {
        CXVDescritor descritor;
        const CXVErroArquivo erro = AbreMarca(sCaminho, descritor);
        if (!erro.Ok()) {
            return erro;
        }
        if (XVRepeteInterrompida([&] { return flock(descritor.Get(), LOCK_EX | LOCK_NB); }) != 0) {
            return errno == EWOULDBLOCK
                       ? CXVErroArquivo(ECausaArquivo::eViolacaoCompartilhamento, EWOULDBLOCK)
                       : XVErroPosix::DeErrno(errno);
        }
        if (XVCompartilhamentoPosix::AindaEh(descritor.Get(), sCaminho)) {
            pMarca = std::make_unique<CXVMarcaDiretorioPosix>(std::move(descritor), std::move(sCaminho));
            return {};
        }
    }
}
