// Runs of the console program on the real system, under faults: what is done to the new process
// before it becomes the program, and what happens around it while it works.
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
  std::function<void()> prepare;                 // in the new process; only system calls
  std::function<void(pid_t process)> meanwhile;  // in this one, once the other has started
  std::vector<std::string> arguments = {};       // after those that name the settings file
};

// Paths below a folder, and the files' bytes.
using Files = std::map<std::string, std::string>;

// A scene with a source "src", a target "out", the list "ab" to "X" and a settings file "job.dat"
// that selects .txt and logs.
class SystemTest : public ::testing::Test {
 protected:
  SystemTest();

  ProgramResult Run(const Start& start = {}) const;
  // The same for another settings file.
  ProgramResult RunJob(const std::string& settings, const Start& start = {}) const;

  // Puts files below the source, dated well before now.
  void Put(const Files& files) const;
  // What the target holds, links and folders left out.
  Files Target() const;
  Files Source() const;

  // The files as a run copies them: .txt with every "ab" replaced, everything else as it is.
  static Files Copied(const Files& files, const std::string& right = "X");

  // Every file of the target is one of `right`; nothing of a temporary file lies anywhere, unless
  // the run says that it was stopped. The source is `source`.
  void ExpectNothingWrong(const Files& source) const;
  // The same, and nothing is missing.
  void ExpectAllRight(const Files& source) const;

  // Messages of the run log.
  std::vector<std::string> Log() const;

  Scene scene_;
};

// What a run says, without what a run that did all there is to do may say too: warnings of the
// list, that it met the temporary file of an earlier run, that the target held files before.
std::string WithoutRemarks(const std::string& errors);

// The text with every "ab" replaced.
std::string Replaced(const std::string& text, const std::string& right);

// The files below a folder; its own path may be as long as it likes.
Files FilesBelow(const std::string& folder);

// Waits until it holds, for some minutes at most; the test fails when it still does not. `what`
// tells what is waited for.
void Await(const std::string& what, const std::function<bool()>& holds);
// Waits until the process has a handler for the signal: up to there it would die of it.
void AwaitHandler(pid_t process, int number);

// Becomes a user without privileges, when it is root. For Start::prepare.
void BecomeNobody();
// Hands the scene to that user, when this is root.
void HandOver(const Scene& scene);

// Bytes with "ab" here and there that differ from place to place.
std::string Text(std::size_t size);

}  // namespace morvex::system_test
