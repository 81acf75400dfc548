// The standstill of a process that reports a fault: its memory cannot be trusted any more, so nothing of what
// it has under way may reach a file. Nobody ever comes out of it but by the end of the process. Systems whose
// signals end a process by themselves have none.
//
// Thread rule: any thread.
#pragma once

namespace XVDetencao {

// From now on Espera does not return.
void Detem();
// Is called by whoever is about to change a file of a store or to let go of one, and at both ends of the
// calls of other processes. While nothing is held up it costs the reading of one word.
void Espera();

// Whether this thread passes; answers what held before.
bool SetIsenta(bool bIsenta);

// While it lives its thread passes. For logs: the fault's own line is one of them, and whoever held the lock
// of a log would hold that line up as well.
class CIsencao {
  public:
    CIsencao() : m_bAntes(SetIsenta(true)) {}
    ~CIsencao() { SetIsenta(m_bAntes); }
    CIsencao(const CIsencao&) = delete;
    CIsencao& operator=(const CIsencao&) = delete;

  private:
    bool m_bAntes;
};

}  // namespace XVDetencao
