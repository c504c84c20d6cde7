// The console program's commands as a script meets them: a shell, a folder with a case and a list,
// and what comes out.
#pragma once

#include <string>

#include "tests/whole_run/program_run.h"

namespace morvex::commands {

using whole_run::ProgramResult;

// A temporary folder whose "work" holds a copy of the example (case/, replacements.txt) and is the
// current one; "morvex-cli" is found by its name.
class CommandScene {
 public:
  CommandScene();

  // Runs a script of /bin/sh.
  ProgramResult Shell(const std::string& script) const;

  void Write(const std::string& name, const std::string& bytes) const { scene_.Write(name, bytes); }
  std::string Read(const std::string& name) const { return scene_.Read(name); }
  bool Exists(const std::string& name) const { return scene_.Exists(name); }
  const whole_run::Scene& scene() const { return scene_; }

 private:
  whole_run::Scene scene_;
};

// The text with every time a run took as "0 min 0 sec": a busy machine takes longer, and a second
// may end meanwhile.
std::string WithoutTimes(const std::string& text);

// The project's folder.
std::string SourceRoot();

}  // namespace morvex::commands
