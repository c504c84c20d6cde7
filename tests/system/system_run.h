// Runs the console program on the real system, under faults: changes the new process before it
// becomes the program, or acts while it works.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/whole_run/program_run.h"

namespace morvex::system_test {

using whole_run::ProgramResult;
using whole_run::Scene;

struct Start {
  std::function<void()> prepare;                 // runs in the new process; only system calls
  std::function<void(pid_t process)> meanwhile;  // runs here once the new process has started
  std::vector<std::string> arguments = {};       // follow those that name the settings file
};

// Maps paths below a folder to the files' bytes.
using Files = std::map<std::string, std::string>;

// A scene with a source "src", a target "out", a list that replaces "ab" by "X", and a settings
// file "job.dat" that selects .txt and logs.
class SystemTest : public ::testing::Test {
 protected:
  SystemTest();

  ProgramResult Run(const Start& start = {}) const;
  // The same with another settings file.
  ProgramResult RunJob(const std::string& settings, const Start& start = {}) const;

  // Creates files below the source, with times well before now.
  void Put(const Files& files) const;
  // The files in the target, without links and folders.
  Files Target() const;
  Files Source() const;

  // The files as a run copies them: in .txt files every "ab" is replaced, all others are unchanged.
  static Files Copied(const Files& files, const std::string& right = "X");

  // Checks that every file of the target is one of `right`, that no work file is left unless the
  // run says that it was stopped, and that the source is `source`.
  void ExpectNothingWrong(const Files& source) const;
  // The same, and that no file is missing.
  void ExpectAllRight(const Files& source) const;

  // The messages of the run log.
  std::vector<std::string> Log() const;

  Scene scene_;
};

// What a run says, without messages that even a complete run may show: warnings about the list, a
// stale work file, a target that already contained files.
std::string WithoutRemarks(const std::string& errors);

// The text with every "ab" replaced.
std::string Replaced(const std::string& text, const std::string& right);

// The files below a folder, whose own path may have any length.
Files FilesBelow(const std::string& folder);

// Waits until `holds` returns true, a few minutes at most; then the test fails. `what` names what
// is waited for.
void Await(const std::string& what, const std::function<bool()>& holds);
// Waits until the process has a handler for the signal, which would kill it before.
void AwaitHandler(pid_t process, int number);

// For Start::prepare: root becomes a user without privileges.
void BecomeNobody();
// If this is root, gives the scene to that user.
void HandOver(const Scene& scene);

// Bytes with "ab" here and there, different from offset to offset.
std::string Text(std::size_t size);

}  // namespace morvex::system_test
