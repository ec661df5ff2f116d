#pragma once
// X errors of our own connections are swallowed (and counted); errors of every other connection in
// the process go on to whatever handler was there before, so the host's own handling stays intact.
// A lost connection of ours (the server went away) is marked instead of ending the process.
#include <X11/Xlib.h>

namespace Vinta::X11 {

// Adds a connection of ours; the process-wide handler is installed with the first.
void trapErrorsOf(Display* display);
// Removes it; with the last one gone our handler steps back if nobody has replaced it since.
void releaseErrorsOf(Display* display);
// Errors seen on our connections so far.
unsigned long getTrappedErrorCount();
// The server went away: nothing more may be asked of this connection but XCloseDisplay.
bool isConnectionLost(Display* display);

}  // namespace Vinta::X11
