// What the console program asks of its terminal, and whether the user wants it to stop.
#pragma once

namespace morvex {

// Whether the stream (0 input, 1 output, 2 errors) is a terminal.
bool IsTerminal(int stream);

// Width in columns of the terminal that the output or error stream is connected to; 80 if there is
// none or its width is unknown.
int TerminalColumns();

// From now on the first interrupt (Ctrl-C), termination or hang-up signal only sets a flag; the
// next one ends the process as usual. A signal that the process was started to ignore stays
// ignored. Call it once, before other threads run.
//
// A read or write that is blocked when the first signal comes is interrupted or goes on: a program
// that asks questions stops waiting for the answer, and one that writes loses no bytes.
enum class WaitsAtStop { kBreakOff, kGoOn };
void InstallStopSignals(WaitsAtStop waits);

// Whether such a signal has come. Any thread may call it at any time.
bool StopRequested();

}  // namespace morvex
