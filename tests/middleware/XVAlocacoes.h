// Replaces operator new of the program that it is linked into: it counts the bytes that live, and one chosen
// allocation is refused. Thread rule: one thread asks for it; allocations of any thread count.
#pragma once

#include <cstddef>

namespace XVAlocacoes {

// The allocation that will be refused, 1 for the next one; 0: none.
void Recusa(long iNumero);
// Whether it was refused since.
bool FoiRecusada();

std::size_t GetBytesVivos();
// The most that lived since ZeraPico, which answers what lives now.
std::size_t GetPico();
std::size_t ZeraPico();

// Meanwhile no allocation is refused or counts as the next one.
class CSuspensa {
  public:
    CSuspensa();
    ~CSuspensa();
    CSuspensa(const CSuspensa&) = delete;
    CSuspensa& operator=(const CSuspensa&) = delete;

  private:
    long m_iRestantes;
};

}  // namespace XVAlocacoes
