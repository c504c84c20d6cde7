// Running the console program as a user's script would: its own folder, a current folder,
// arguments, no terminal, a time limit. A Scene is the temporary folder in which one such run takes
// place.

#ifndef MORVEX_TESTS_WHOLE_RUN_PROGRAM_RUN_H_
#define MORVEX_TESTS_WHOLE_RUN_PROGRAM_RUN_H_

#include <string>
#include <string_view>
#include <vector>

#include "disk.h"
#include "run_model.h"

namespace morvex::whole_run {

struct ProgramResult {
  std::string output;
  std::string errors;
  // Exit status; 128 and the signal's number when a signal ended it; -1 when time ran out.
  int status = 0;
};

// Runs `executable` in `current_folder` with LC_ALL=C and an empty standard input, and ends it
// after `limit_seconds`. MORVEX_UNDER="valgrind -q --error-exitcode=99" runs it under that.
ProgramResult RunProgram(const std::string& executable, const std::vector<std::string>& arguments,
                         const std::string& current_folder, int limit_seconds);

// A fresh temporary folder that holds "program" (the executable alone) and "work" (everything the
// run reads and writes, and the current folder). Removed at the end unless it is to be kept.
class Scene {
 public:
  // `executable_name` is the name that the copy of the program gets.
  explicit Scene(const std::string& executable_name = "morvex-cli");
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  const std::string& root() const { return root_; }
  std::string program_folder() const { return root_ + "/program"; }
  std::string work() const { return root_ + "/work"; }
  // A path below the work folder.
  std::string At(const std::string& name) const { return work() + "/" + name; }
  void Keep() { keep_ = true; }

  // Writes a file below the work folder, with the folders it needs, dated well before now.
  void Write(const std::string& name, std::string_view bytes) const;
  void MakeFolder(const std::string& name) const { MakeFolders(At(name)); }
  std::string Read(const std::string& name) const { return ReadWholeFile(At(name)); }
  bool Exists(const std::string& name) const;

  // Names in the program folder, sorted, without the executable.
  std::vector<std::string> ProgramFolderNames() const;
  std::string InitDat() const { return ReadWholeFile(program_folder() + "/Init.dat"); }
  // The run log's bytes; empty when there is no log.
  std::string RunLog() const;

  ProgramResult Run(const std::vector<std::string>& arguments) const;

  // The model's input for a run with the settings file of that name (below the work folder), as the
  // disk stands now.
  RunInput Input(const std::string& settings_name) const;

 private:
  std::string executable_name_;
  std::string root_;
  bool keep_ = false;
};

// Settings bytes in the usual form: three paths, log=1, separator "|", joker "*", ".txt" selected.
std::string UsualSettings(const std::string& source, const std::string& target,
                          const std::string& list);

// What is wrong with a finished run, as text for a person; empty when everything is as predicted.
// `old_log` is what the run log held before.
std::string Problems(const Scene& scene, const RunOutcome& expected, const ProgramResult& result,
                     const std::string& old_log = "");

// Runs the settings file of that name (below the work folder) and gives the problems found.
std::string RunAndCompare(const Scene& scene, const std::string& settings_name);

// The messages of a log's records, without the time of day. A record of another form gives an entry
// that starts with "malformed record".
std::vector<std::string> LogMessages(const std::string& log_bytes);

// What a run with -if said on standard error, without the warnings of its list and its command
// line: those have tests of their own.
std::string WithoutWarnings(const std::string& errors);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_PROGRAM_RUN_H_
