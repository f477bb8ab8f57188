// Ctrl-C as a flag that long work asks for, so that temporary files go before the program does.
#pragma once

namespace verdanth {

/// From here on an interrupt or a request to terminate sets the flag. A second one ends the process at once.
void CatchInterrupts();

/// The signal that came; 0 while none has.
int CaughtSignal();

} // namespace verdanth
