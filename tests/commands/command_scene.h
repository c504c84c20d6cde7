// Runs the console program's commands from shell scripts, in a folder with the example's files.
#pragma once

#include <string>

#include "tests/whole_run/program_run.h"

namespace morvex::commands {

using whole_run::ProgramResult;

// A temporary folder with a copy of the example (case/ and replacements.txt) in its folder "work".
// Scripts run in "work" and find the program as "morvex-cli".
class CommandScene {
 public:
  CommandScene();

  // Runs `script` with /bin/sh.
  ProgramResult Shell(const std::string& script) const;

  void Write(const std::string& name, const std::string& bytes) const { scene_.Write(name, bytes); }
  std::string Read(const std::string& name) const { return scene_.Read(name); }
  bool Exists(const std::string& name) const { return scene_.Exists(name); }
  const whole_run::Scene& scene() const { return scene_; }

 private:
  whole_run::Scene scene_;
};

// Returns the text with every duration of a run as "0 min 0 sec", since durations differ from run
// to run.
std::string WithoutTimes(const std::string& text);

// Returns the project's folder.
std::string SourceRoot();

}  // namespace morvex::commands
