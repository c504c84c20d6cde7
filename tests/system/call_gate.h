// A gate between a process and the system: it sees the calls on files that the process makes once
// it is at work, and lets the N-th of them fail, or kills the process there. The system's own
// filter of calls does it (seccomp), which needs no privilege.
#pragma once

#include <sys/types.h>

#include <string>

namespace morvex::system_test {

class CallGate {
 public:
  // `call` counts from 1. `code` is the errno that it fails with; 0 kills the process instead,
  // before the call is made.
  CallGate(int call, int code);
  ~CallGate();
  CallGate(const CallGate&) = delete;
  CallGate& operator=(const CallGate&) = delete;

  // Whether this system lets a process filter its own calls and another one answer them.
  static bool IsPossibleHere();

  // In the new process, before it becomes the program.
  void Install() const;
  // In the other one; returns when the process has ended. Calls count from the one with which the
  // program takes charge of interrupts: what lies before is its loader's.
  void Watch(pid_t process);

  // The name of the call that was struck; empty when the process made fewer.
  const std::string& struck() const { return struck_; }

 private:
  // Answers one call; false when the process is gone.
  bool AnswerOne(int listener, pid_t process);

  const int wanted_;
  const int code_;
  int ends_[2] = {-1, -1};
  bool at_work_ = false;
  int calls_ = 0;
  std::string struck_;
};

}  // namespace morvex::system_test
