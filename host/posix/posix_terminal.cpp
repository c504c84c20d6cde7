// A stop signal sets a flag and restores the signals' default effect, so that a second signal ends
// even a run that no longer checks the flag.
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>

#include "host/system/terminal.h"

namespace morvex {
namespace {

constexpr int kUsualColumns = 80;

constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> stop_requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

bool IsIgnored(int number) {
  struct sigaction current {};
  return sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

void SetHandler(int number, void (*handler)(int), int flags = 0) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  for (const int other : kStopSignals) sigaddset(&action.sa_mask, other);
  sigaction(number, &action, nullptr);
}

extern "C" void NoteStopSignal(int) {
  const int code = errno;
  stop_requested = true;
  for (const int number : kStopSignals) {
    if (!IsIgnored(number)) SetHandler(number, SIG_DFL);
  }
  errno = code;
}

}  // namespace

bool IsTerminal(int stream) { return isatty(stream) == 1; }

int TerminalColumns() {
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    winsize size{};
    if (ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  }
  return kUsualColumns;
}

void InstallStopSignals(WaitsAtStop waits) {
  const int flags = waits == WaitsAtStop::kGoOn ? SA_RESTART : 0;
  for (const int number : kStopSignals) {
    if (!IsIgnored(number)) SetHandler(number, NoteStopSignal, flags);
  }
}

bool StopRequested() { return stop_requested; }

}  // namespace morvex
