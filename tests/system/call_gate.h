// A gate between a process and the system. Once the program is at work, the gate sees the file
// calls of the process. The gate makes the N-th of these calls fail, or kills the process at this
// call. The gate uses the system's call filter (seccomp), which needs no privilege.
#pragma once

#include <sys/types.h>

#include <string>

namespace morvex::system_test {

class CallGate {
 public:
  // The gate acts at file call number `call`, counted from 1. This call fails with the errno
  // `code`; if `code` is 0, the process is killed before the call.
  CallGate(int call, int code);
  ~CallGate();
  CallGate(const CallGate&) = delete;
  CallGate& operator=(const CallGate&) = delete;

  // Whether this system lets a process filter its own calls and another process answer them.
  static bool IsPossibleHere();

  // Call in the new process, before it becomes the program.
  void Install() const;
  // Call in the test's process; returns when `process` has ended. Counting starts when the program
  // installs its signal handlers, because earlier calls are the loader's.
  void Watch(pid_t process);

  // Returns the name of the call that was hit; empty if the process made fewer calls.
  const std::string& struck() const { return struck_; }

 private:
  // Answers a call, if one comes soon. Returns false if the process has ended.
  bool AnswerOne(int listener, pid_t process);

  const int wanted_;
  const int code_;
  int ends_[2] = {-1, -1};
  bool at_work_ = false;
  int calls_ = 0;
  std::string struck_;
};

}  // namespace morvex::system_test
