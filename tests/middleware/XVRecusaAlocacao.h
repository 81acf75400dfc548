// Replaces operator new of the program that it is linked into: one chosen allocation is refused. Thread rule:
// one thread asks for it; allocations of any thread count.
#pragma once

namespace XVRecusaAlocacao {

// The allocation that will be refused, 1 for the next one; 0: none.
void Programa(long iNumero);
// Whether it was refused since Programa.
bool Ocorreu();

// Meanwhile no allocation counts or is refused.
class CSuspensa {
  public:
    CSuspensa();
    ~CSuspensa();
    CSuspensa(const CSuspensa&) = delete;
    CSuspensa& operator=(const CSuspensa&) = delete;

  private:
    long m_iRestantes;
};

}  // namespace XVRecusaAlocacao
