#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/XVFluxoEntrada.h"
#include "platform/posix/XVAlarmePosix.h"
#include "platform/posix/XVDescritorPosix.h"

namespace {

class CXVFluxoEntradaPosix : public IXVFluxoEntrada {
  public:
    // A descriptor below 0 is the standard input, which stays open.
    explicit CXVFluxoEntradaPosix(CXVDescritor aberto) : m_Aberto(std::move(aberto)) {
        struct stat estado {};
        m_bArquivo = ::fstat(Descritor(), &estado) == 0 && S_ISREG(estado.st_mode);
        const off_t iPosicao = m_bArquivo ? ::lseek(Descritor(), 0, SEEK_CUR) : 0;
        if (m_bArquivo && iPosicao >= 0 && iPosicao < estado.st_size)
            m_uiTamanho = static_cast<std::uint64_t>(estado.st_size - iPosicao);
    }

    bool Le(char* pDados, std::size_t uiTamanho, std::size_t* puiLidos) override {
        *puiLidos = 0;
        for (;;) {
            pollfd aEspera[] = {{Descritor(), POLLIN, 0}, {XVAlarme(), POLLIN, 0}};
            if (XVRepeteInterrompida([&] { return ::poll(aEspera, 2, -1); }) < 0) return false;
            if (aEspera[1].revents != 0) return true;
            const ssize_t iLidos = ::read(Descritor(), pDados, uiTamanho);
            // A writer on the same terminal may have taken the waiting out of it.
            if (iLidos < 0 && (errno == EINTR || errno == EAGAIN)) continue;
            if (iLidos > 0) *puiLidos = static_cast<std::size_t>(iLidos);
            return iLidos >= 0;
        }
    }
    bool EhArquivo() const override { return m_bArquivo; }
    std::uint64_t GetTamanho() const override { return m_uiTamanho; }

  private:
    int Descritor() const { return m_Aberto.EhValido() ? m_Aberto.Get() : STDIN_FILENO; }

    CXVDescritor m_Aberto;
    bool m_bArquivo = false;
    std::uint64_t m_uiTamanho = 0;
};

}  // namespace

std::unique_ptr<IXVFluxoEntrada> XVFluxoEntradaPadrao() {
    return std::make_unique<CXVFluxoEntradaPosix>(CXVDescritor());
}

std::unique_ptr<IXVFluxoEntrada> XVAbreFluxoEntrada(const std::string& sCaminho) {
    CXVDescritor aberto = XVAbreDescritor(sCaminho, O_RDONLY);
    if (!aberto.EhValido()) return nullptr;
    return std::make_unique<CXVFluxoEntradaPosix>(std::move(aberto));
}
