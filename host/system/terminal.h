// What the console program asks of its terminal, and whether the user wants the program to stop.
#pragma once

namespace morvex {

// Whether the stream (0 input, 1 output, 2 errors) is a terminal.
bool IsTerminal(int stream);

// Width in columns of the terminal that the output or error stream is connected to; 80 if there is
// none or its width is unknown.
int TerminalColumns();

// What the first stop signal does to a blocked read or write. With kBreakOff the signal interrupts
// the call: a program that asks questions stops waiting for the answer. With kGoOn the call goes
// on: a program that writes loses no bytes.
enum class WaitsAtStop { kBreakOff, kGoOn };

// From now on the first stop signal (interrupt by Ctrl-C, termination or hang-up) only sets a flag;
// the next one ends the process as usual. A signal that the process was started to ignore stays
// ignored. Call this function once, before other threads run.
void InstallStopSignals(WaitsAtStop waits);

// Whether a stop signal has come. Any thread may call this at any time.
bool StopRequested();

}  // namespace morvex
