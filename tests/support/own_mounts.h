// Runs code in a process with its own mounts. Root may start such a process; other users may do so
// only if the system allows it.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>

namespace morvex::test {

class OwnMounts {
 public:
  // Runs `work` in a new process, which may mount what it likes. An expectation that fails in
  // `work` fails the calling test. Returns false, without running `work`, where the system does not
  // allow such a process.
  static bool Run(const std::function<void()>& work) {
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      if (!LeaveTheMountsOfOthers()) _exit(kNotAllowed);
      work();
      fflush(nullptr);
      _exit(::testing::Test::HasFailure() ? kFailed : 0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_NE(WEXITSTATUS(status), kFailed) << "see the failures above";
    return WEXITSTATUS(status) != kNotAllowed;
  }

 private:
  static constexpr int kFailed = 1;
  static constexpr int kNotAllowed = 2;

  static bool LeaveTheMountsOfOthers() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    if (user != 0 && !BecomeRootHere(user, group)) return false;
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  }

  static bool BecomeRootHere(uid_t user, gid_t group) {
    return Write("/proc/self/setgroups", "deny") &&
           Write("/proc/self/gid_map", "0 " + std::to_string(group) + " 1\n") &&
           Write("/proc/self/uid_map", "0 " + std::to_string(user) + " 1\n");
  }

  static bool Write(const char* path, const std::string& line) {
    std::ofstream file(path);
    file << line << std::flush;
    return file.good();
  }
};

}  // namespace morvex::test
