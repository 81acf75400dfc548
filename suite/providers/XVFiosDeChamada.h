// Threads on which code of other makers runs, so that who asks for it can stop waiting. A thread that has
// finished is kept for the next work: handing work over costs a change of threads, not a start.
//
// Thread rule: any thread. The threads end with the process, whatever they run then.
#pragma once

#include <memory>

class IXVTrabalho {
  public:
    virtual ~IXVTrabalho() = default;
    // Runs once, beside whoever handed the work over.
    virtual void Trabalha() noexcept = 0;
};

namespace XVFiosDeChamada {
// False: the system gives no further thread, and the work will not run.
bool Entrega(std::shared_ptr<IXVTrabalho> pTrabalho);
}  // namespace XVFiosDeChamada
