// The first stop event sets a flag. The next one is left to the system, so that even a run that no
// longer checks the flag can be ended.
#include <array>
#include <atomic>
#include <cstddef>

#include "host/system/terminal.h"
#include "host/windows/windows_api.h"

namespace morvex {
namespace {

constexpr int kUsualColumns = 80;

// When the console is closed, the system ends the process as soon as the handler returns, and in
// any case after this time.
constexpr DWORD kTimeToEnd = 5000;  // ms

std::atomic<bool> stop_requested = false;

BOOL WINAPI NoteStopEvent(DWORD event) {
  if (stop_requested.exchange(true)) return FALSE;
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(kTimeToEnd);
  return TRUE;
}

void* StreamHandle(int stream) {
  constexpr std::array<DWORD, 3> kStreams = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  if (stream < 0 || stream >= static_cast<int>(kStreams.size())) return nullptr;
  return GetStdHandle(kStreams[static_cast<std::size_t>(stream)]);
}

}  // namespace

bool IsTerminal(int stream) {
  DWORD mode = 0;
  return GetConsoleMode(StreamHandle(stream), &mode) != 0;
}

int TerminalColumns() {
  for (const int stream : {1, 2}) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(StreamHandle(stream), &info) == 0) continue;
    const int columns = info.srWindow.Right - info.srWindow.Left + 1;
    if (columns > 0) return columns;
  }
  return kUsualColumns;
}

// This program cannot choose what a stop event does to a blocked read or write, so `waits` has no
// effect.
void InstallStopSignals(WaitsAtStop /*waits*/) { SetConsoleCtrlHandler(NoteStopEvent, TRUE); }

bool StopRequested() { return stop_requested; }

}  // namespace morvex
