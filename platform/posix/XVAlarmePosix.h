// What awakens a reader beside its input: a descriptor that is readable from the request on; -1 where none is
// observed.
#pragma once

int XVAlarme();
