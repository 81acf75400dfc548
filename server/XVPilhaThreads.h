// Room on the stack of every thread of the process for what happens once it is full: the system hands the
// fault to this program on that same stack.
#pragma once

// From now on for the calling thread and those that begin later, those of the runtime of remote calls
// included.
void XVReservaPilha();
