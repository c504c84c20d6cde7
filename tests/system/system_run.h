// Runs the console program on the real system, under faults: a test changes the new process before
// it becomes the program, or acts while the program works.
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
  std::function<void()> prepare;  // runs in the new process; may make only system calls
  std::function<void(pid_t process)> meanwhile;  // runs in the test once the process has started
  std::vector<std::string> arguments = {};       // come after "-if" and the settings file
};

// Maps the paths of files, relative to a folder, to the files' bytes.
using Files = std::map<std::string, std::string>;

// A scene with a source "src", a target "out", a list that replaces "ab" by "X", and a settings
// file "job.dat" that selects .txt files and turns the run log on.
class SystemTest : public ::testing::Test {
 protected:
  SystemTest();

  ProgramResult Run(const Start& start = {}) const;
  // Runs with another settings file than job.dat.
  ProgramResult RunJob(const std::string& settings, const Start& start = {}) const;

  // Creates files below the source, with times well before now.
  void Put(const Files& files) const;
  // Returns the files in the target, without links and folders.
  Files Target() const;
  Files Source() const;

  // Returns the files as a run copies them: in .txt files every "ab" is replaced by `right`, all
  // others are unchanged.
  static Files Copied(const Files& files, const std::string& right = "X");

  // Checks that every file of the target is a right copy, that the source is exactly `source`, and
  // that no work file is left.
  void ExpectNothingWrong(const Files& source) const;
  // Checks what ExpectNothingWrong checks, and that every file of `source` has its copy.
  void ExpectAllRight(const Files& source) const;

  // Returns the messages of the run log.
  std::vector<std::string> Log() const;

  Scene scene_;
};

// Returns what a run says without the messages that even a complete run may show: warnings about
// the list and the command line, a stale work file, a target that already contained files.
std::string WithoutRemarks(const std::string& errors);

// Returns the text with every "ab" replaced by `right`.
std::string Replaced(const std::string& text, const std::string& right);

// Returns the files below a folder; the path of the folder may have any length.
Files FilesBelow(const std::string& folder);

// Waits until `holds` returns true; after a few minutes the test fails. `what` names what the test
// waits for.
void Await(const std::string& what, const std::function<bool()>& holds);
// Waits until the process has a handler for the signal: without a handler, the signal would kill
// the process.
void AwaitHandler(pid_t process, int number);

// For Start::prepare: root becomes a user without privileges.
void BecomeNobody();
// If the tests run as root, gives the scene to the user of BecomeNobody.
void HandOver(const Scene& scene);

// Returns bytes with "ab" here and there, different from offset to offset.
std::string Text(std::size_t size);

}  // namespace morvex::system_test
