// Terminals and stop signals. Signals are tested in separate processes.
#include <sys/ioctl.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

#include "host/system/terminal.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

using namespace posix_test;

// Restores the default effect of signals, because a shell makes background jobs ignore some
// signals.
void TakeSignals() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
}

// Runs `work` in a new process. Returns the exit status of this process or, if a signal ended the
// process, the negative number of the signal.
int EndOf(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    TakeSignals();
    _exit(work());
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

// The two ends of a pseudo terminal. Both are negative if the system has no pseudo terminals.
struct Terminal {
  Terminal() : control(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (control >= 0 && grantpt(control) == 0 && unlockpt(control) == 0) {
      screen = open(ptsname(control), O_RDWR | O_NOCTTY);
    }
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (screen >= 0) close(screen);
    if (control >= 0) close(control);
  }

  int control;
  int screen = -1;
};

TEST(PosixTerminalTest, OnlyATerminalIsATerminal) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_FALSE(IsTerminal(ends[0]));
  EXPECT_FALSE(IsTerminal(-1));
  close(ends[0]);
  close(ends[1]);
  const Terminal terminal;
  if (terminal.screen < 0) GTEST_SKIP() << "no pseudo terminals here";
  EXPECT_TRUE(IsTerminal(terminal.screen));
}

TEST(PosixTerminalTest, ColumnsAreThoseOfTheTerminal) {
  EXPECT_EQ(EndOf([] {
              close(STDOUT_FILENO);
              close(STDERR_FILENO);
              return TerminalColumns();
            }),
            80);
  const Terminal terminal;
  if (terminal.screen < 0) GTEST_SKIP() << "no pseudo terminals here";
  winsize size{};
  EXPECT_EQ(EndOf([&] {
              dup2(terminal.screen, STDOUT_FILENO);
              return TerminalColumns();
            }),
            80);
  size.ws_col = 132;
  ASSERT_EQ(ioctl(terminal.control, TIOCSWINSZ, &size), 0);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    EXPECT_EQ(EndOf([&] {
                close(STDOUT_FILENO);
                close(STDERR_FILENO);
                dup2(terminal.screen, stream);
                return TerminalColumns();
              }),
              132);
  }
}

TEST(PosixStopTest, NoSignalIsNoStop) {
  EXPECT_EQ(EndOf([] {
              InstallStopSignals(WaitsAtStop::kBreakOff);
              return StopRequested() ? 1 : 0;
            }),
            0);
}

TEST(PosixStopTest, TheFirstSignalIsNotedAndTheSecondEnds) {
  for (const int first : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EQ(EndOf([&] {
                InstallStopSignals(WaitsAtStop::kBreakOff);
                raise(first);
                return StopRequested() ? 42 : 0;
              }),
              42);
    for (const int second : {SIGINT, SIGTERM, SIGHUP}) {
      EXPECT_EQ(EndOf([&] {
                  InstallStopSignals(WaitsAtStop::kBreakOff);
                  raise(first);
                  raise(second);
                  return 0;
                }),
                -second);
    }
  }
}

TEST(PosixStopTest, AnIgnoredSignalStaysIgnored) {
  EXPECT_EQ(EndOf([] {
              signal(SIGHUP, SIG_IGN);
              InstallStopSignals(WaitsAtStop::kBreakOff);
              raise(SIGHUP);
              if (StopRequested()) return 1;
              raise(SIGINT);
              raise(SIGHUP);
              return StopRequested() ? 42 : 2;
            }),
            42);
}

// Returns the letter by which the system reports a process's state, such as 'S' for sleeping.
char StateOf(pid_t process) {
  const std::string text = Content("/proc/" + std::to_string(process) + "/stat");
  const std::size_t name_end = text.rfind(')');
  return name_end == std::string::npos ? '?' : text[name_end + 2];
}

TEST(PosixStopTest, ASignalBreaksOffAWaitForInput) {
  int input[2] = {};
  ASSERT_EQ(pipe(input), 0);
  const pid_t child = fork();
  if (child == 0) {
    TakeSignals();
    InstallStopSignals(WaitsAtStop::kBreakOff);
    close(input[1]);
    close(STDIN_FILENO);
    char byte = 0;
    const ssize_t size = read(input[0], &byte, 1);
    _exit(size < 0 && errno == EINTR && StopRequested() ? 42 : 1);
  }
  // Waits until the child sleeps, which it does only in read. An earlier signal could end the child
  // before it has installed its signal handler.
  int status = 0;
  for (int tries = 0; tries < 6000 && StateOf(child) != 'S'; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  kill(child, SIGTERM);
  close(input[0]);
  ASSERT_EQ(waitpid(child, &status, 0), child);
  close(input[1]);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 42);
}

TEST(PosixStopTest, AWaitForAReaderGoesOnWhereNothingMayBeLost) {
  int output[2] = {};
  ASSERT_EQ(pipe(output), 0);
  const std::string bytes(1 << 20, 'x');  // more than the pipe holds
  const pid_t child = fork();
  if (child == 0) {
    TakeSignals();
    InstallStopSignals(WaitsAtStop::kGoOn);
    close(output[0]);
    FILE* const stream = fdopen(output[1], "w");
    const bool whole = fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    _exit(whole && fclose(stream) == 0 && StopRequested() ? 42 : 1);
  }
  close(output[1]);
  for (int tries = 0; tries < 6000 && StateOf(child) != 'S'; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  kill(child, SIGINT);
  std::string read_bytes(bytes.size(), '?');
  std::size_t size = 0;
  for (ssize_t read = 1; read > 0; size += static_cast<std::size_t>(read)) {
    read = ::read(output[0], read_bytes.data() + size, read_bytes.size() - size);
  }
  close(output[0]);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 42);
  EXPECT_EQ(size, bytes.size());
}

}  // namespace
}  // namespace morvex
