// What the console program asks of its terminal, and whether the user wants it to stop.
#pragma once

namespace morvex {

// Whether the stream (0 input, 1 output, 2 errors) is a terminal.
bool IsTerminal(int stream);

// Width in columns of the terminal that the output or error stream is connected to; 80 if there is
// none or its width is unknown.
int TerminalColumns();

// What the first stop signal does to a read or write that is blocked. kBreakOff interrupts it: a
// program that asks questions stops waiting for the answer. kGoOn lets it go on: a program that
// writes loses no bytes.
enum class WaitsAtStop { kBreakOff, kGoOn };

// From now on the first interrupt (Ctrl-C), termination or hang-up signal only sets a flag; the
// next one ends the process as usual. A signal that the process was started to ignore stays
// ignored. Call it once, before other threads run.
void InstallStopSignals(WaitsAtStop waits);

// Whether a stop signal has come. Any thread may call this at any time.
bool StopRequested();

}  // namespace morvex
