#include "platform/posix/XVJanelaPosix.h"

#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits>
#include <new>

#include "platform/XVJanelaMemoria.h"

namespace XVJanelaPosix {
namespace {

constexpr XVUInt64 k_uiBloco = 512;  // bytes; the unit of st_blocks

class CXVJanelaPosix final : public CXVJanelaMemoria {
  public:
    CXVJanelaPosix(void* pInicio, std::size_t uiTamanho, std::atomic<unsigned>& rulJanelas)
        : CXVJanelaMemoria(pInicio, uiTamanho), m_rulJanelas(rulJanelas) {
        ++m_rulJanelas;
    }
    ~CXVJanelaPosix() override {
        munmap(GetInicio(), GetTamanho());
        --m_rulJanelas;
    }

  private:
    std::atomic<unsigned>& m_rulJanelas;
};

// A store through a mapping cannot report a failure: where it needs a block and the device has none, the
// process dies. So only file systems are accepted that write a block in its place and share their pages with
// the calls of every process. One that copies on writing may need a new block for an old byte (one that does
// not usually copy does so after a backup that shares blocks); an overlay or a network promises neither.
bool TemLugarFixo(int iDescritor) {
    constexpr decltype(std::declval<struct statfs>().f_type) k_aTipos[] = {EXT4_SUPER_MAGIC, TMPFS_MAGIC};
    struct statfs sistema;
    return fstatfs(iDescritor, &sistema) == 0 &&
           std::find(std::begin(k_aTipos), std::end(k_aTipos), sistema.f_type) != std::end(k_aTipos);
}

// Whether the file holds the bytes, with blocks behind them. Not every file system knows its holes, but all
// count their blocks.
bool TemBlocos(int iDescritor, XVUInt64 uiTamanho) {
    struct stat estado;
    if (fstat(iDescritor, &estado) != 0 || static_cast<XVUInt64>(estado.st_size) < uiTamanho ||
        static_cast<XVUInt64>(estado.st_blocks) * k_uiBloco < uiTamanho) {
        return false;
    }
    const off_t iBuraco = lseek(iDescritor, 0, SEEK_HOLE);
    return iBuraco >= 0 && static_cast<XVUInt64>(iBuraco) >= uiTamanho;
}

// Brings the pages in, so that a device that cannot read them says so here and not by a signal.
bool TrazPaginas(void* pInicio, std::size_t uiTamanho) {
    return madvise(pInicio, uiTamanho, MADV_POPULATE_READ) == 0 || errno == EINVAL;  // an older kernel
}

}  // namespace

std::unique_ptr<IXVJanela> AbreJanela(int iDescritor, XVUInt64 uiTamanho, std::atomic<unsigned>& rulJanelas) {
    if (uiTamanho == 0 || uiTamanho > std::numeric_limits<std::size_t>::max() / 2 ||
        !TemLugarFixo(iDescritor) || !TemBlocos(iDescritor, uiTamanho)) {
        return nullptr;
    }
    const std::size_t uiMapeados = static_cast<std::size_t>(uiTamanho);
    void* pInicio = mmap(nullptr, uiMapeados, PROT_READ | PROT_WRITE, MAP_SHARED, iDescritor, 0);
    if (pInicio == MAP_FAILED) {
        return nullptr;
    }
    if (!TrazPaginas(pInicio, uiMapeados)) {
        munmap(pInicio, uiMapeados);
        return nullptr;
    }
    std::unique_ptr<IXVJanela> pJanela(new (std::nothrow) CXVJanelaPosix(pInicio, uiMapeados, rulJanelas));
    if (pJanela == nullptr) {
        munmap(pInicio, uiMapeados);
    }
    return pJanela;
}

}  // namespace XVJanelaPosix
