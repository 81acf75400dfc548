// Runs a fuzz target over the files of a corpus folder and over a fixed number of seeded mutations of
// each: the short form of fuzzing that every build can run.
//
// Usage: PROGRAM FOLDER [mutations per file]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho);

namespace {

using CBytes = std::vector<std::uint8_t>;

CBytes Le(const std::filesystem::path& caminho) {
    std::ifstream entrada(caminho, std::ios::binary);
    return {std::istreambuf_iterator<char>(entrada), std::istreambuf_iterator<char>()};
}

// One to four changes: a byte, a bit, a cut, a repeated piece.
CBytes Muda(CBytes bytes, std::mt19937& rSorteio) {
    const auto sorteia = [&](std::size_t uiLimite) { return uiLimite == 0 ? 0 : rSorteio() % uiLimite; };
    for (std::size_t i = 0, n = 1 + sorteia(4); i < n && !bytes.empty(); ++i) {
        const std::size_t uiLugar = sorteia(bytes.size());
        switch (sorteia(4)) {
            case 0:
                bytes[uiLugar] = static_cast<std::uint8_t>(rSorteio());
                break;
            case 1:
                bytes[uiLugar] ^= static_cast<std::uint8_t>(1U << sorteia(8));
                break;
            case 2:
                bytes.resize(uiLugar);
                break;
            default: {
                const CBytes pedaco(bytes.begin() + static_cast<std::ptrdiff_t>(uiLugar), bytes.end());
                bytes.insert(bytes.end(), pedaco.begin(), pedaco.end());
            }
        }
    }
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return EXIT_FAILURE;
    const int iMudancas = argc > 2 ? std::atoi(argv[2]) : 200;
    std::size_t uiEntradas = 0;
    for (const auto& item : std::filesystem::directory_iterator(argv[1])) {
        const CBytes bytes = Le(item.path());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        std::mt19937 sorteio(static_cast<unsigned>(bytes.size()));
        for (int i = 0; i < iMudancas; ++i) {
            const CBytes mudados = Muda(bytes, sorteio);
            LLVMFuzzerTestOneInput(mudados.data(), mudados.size());
            ++uiEntradas;
        }
        ++uiEntradas;
    }
    std::printf("%zu entradas\n", uiEntradas);
    return uiEntradas > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
