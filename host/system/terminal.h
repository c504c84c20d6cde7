// What the console asks of its terminal, and the wish of the person in front of it to stop.
#pragma once

namespace morvex {

// Whether the stream (0 input, 1 output, 2 errors) is a terminal.
bool IsTerminal(int stream);

// Columns of the terminal that the output or error stream goes to; 80 when neither is a terminal or
// it does not tell.
int TerminalColumns();

// From now on the first interrupt (Ctrl-C), termination or hang-up signal is only noted; the next
// one ends the process as usual. A signal that the process was started to ignore stays ignored. To
// be called once, before other threads run.
//
// A read or a write that waits while the first signal comes is broken off, or goes on: one who asks
// questions does not wait for an answer any more, one who writes loses nothing of it.
enum class WaitsAtStop { kBreakOff, kGoOn };
void InstallStopSignals(WaitsAtStop waits);

// Whether such a signal has come. May be asked from any thread, as often as one likes.
bool StopRequested();

}  // namespace morvex
