// What a code says of a server that is ending, gone or not yet there, and of the call that was answered with
// it: the one table of these codes.
//
// Between a server and its successor a creation fails in many ways, which are all the same to the caller: it
// is tried again, for nothing was done. Of a call it must be known whether it took place, for a write that is
// repeated after all would be there twice:
//
// clang-format off
//   not executed, repeated whatever it was
//     0x800706BA  no server could be reached: the call never left. One cut off under way has 0x800706BE
//     0x800706B5  the server's runtime knows the interface no more and turned the call away before any of the
//                 server's code saw it
//     0x800706BB  the runtime had no place for the call and turned it away, as before
//     0x80010108  the runtime found the object disconnected before it handed the call on: what the idle rule
//                 of the server leaves behind
//     0x800401FD  the proxy itself is disconnected: the call never left
//     0x80010012  the server died before the call was handed on: the code says so, and has no other meaning
//   unknown, repeated if it only reads
//     0x800706BE  the answer did not come: the server may have died before, in or after the operation
//     0x800706BF  said to be "not executed", but the runtimes also give it when a connection breaks with the
//                 call sent: a name is no proof where a record would be doubled
//     0x80010007  the server died with the call under way
//     0x80080008  the server is stopping: given to activations, and nobody says how far a call was
//     0x80004005  anything; also a component's own answer, so only one that no longer answers at all is gone
// clang-format on
//
// Operations that come to a provider may be answered with any code by the provider itself, those above
// included, after something was sent: of them no code proves anything.
//
// Thread rule: any thread.
#pragma once

#include <optional>

#include "platform/XVTipos.h"

namespace XVCliente {

enum class EExecucao {
    eRespondida,    // the component answered
    eNaoExecutada,  // the server was not there, and nothing took place
    eIncerta,       // the server may be gone, and the operation may have taken place
    eSemPrograma,   // of a creation: the server's program file is not there, or nobody may read it, at the
                    // moment
};

EExecucao ExecucaoDaChamada(HRESULT hr);

// The same of a creation, which leaves nothing where it fails: no answer is uncertain.
EExecucao ExecucaoDaCriacao(HRESULT hr);

// The waiting of one operation: for the server, and between the repetitions of a call. Thread rule: one
// thread.
class CXVEsperaServidor {
  public:
    static constexpr XVUInt k_ulPrimeira = 25;  // ms: what an activation takes when the server is up
    static constexpr XVUInt k_ulMaior = 1000;   // ms; each wait is twice the one before, up to this
    // ms, from the first creation or the first failure: no attempt begins later. A server takes 22 s at
    // the most to end, and its successor has to start.
    static constexpr XVUInt k_ulTotal = 40000;
    // ms, in the same way, for a program file that is not there: an update is exchanging it, or there is
    // none.
    static constexpr XVUInt k_ulTotalSemPrograma = 3000;
    // So often is repeated what may have brought the server down itself.
    static constexpr unsigned k_uiIncertas = 2;

    // From here on the time counts; again: no effect. A call that succeeds reads no clock.
    void Comeca();
    // Sleeps before the next attempt; false, at once, where none is due after one that ended like this.
    bool Espera(EExecucao eExecucao);

  private:
    std::optional<XVUInt> m_ulInicio;
    XVUInt m_ulEspera = k_ulPrimeira;
    unsigned m_uiIncertas = 0;
};

}  // namespace XVCliente
