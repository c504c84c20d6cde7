// Runs the console program as a user's script would: with its own folder, a current folder,
// arguments, no terminal and a time limit. A Scene is the temporary folder for such a run.

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
  // The exit status; 128 plus the signal's number if a signal ended the program; -1 if its time ran
  // out.
  int status = 0;
};

// Runs `executable` in `current_folder` with LC_ALL=C and an empty standard input. Kills it if it
// still runs after `limit_seconds`. If MORVEX_UNDER holds a command line such as "valgrind -q
// --error-exitcode=99", that command runs `executable`.
ProgramResult RunProgram(const std::string& executable, const std::vector<std::string>& arguments,
                         const std::string& current_folder, int limit_seconds);

// A new temporary folder that holds "program" and "work". "program" at first holds only the
// executable; a run writes Init.dat and the run log there. "work" is the current folder and holds
// everything else that a run reads and writes. The destructor deletes the temporary folder unless
// Keep was called.
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
  // Returns a path below the work folder.
  std::string At(const std::string& name) const { return work() + "/" + name; }
  void Keep() { keep_ = true; }

  // Writes a file below the work folder, and creates missing parent folders. The file's
  // modification time is an hour before now.
  void Write(const std::string& name, std::string_view bytes) const;
  void MakeFolder(const std::string& name) const { MakeFolders(At(name)); }
  std::string Read(const std::string& name) const { return ReadWholeFile(At(name)); }
  bool Exists(const std::string& name) const;

  // Returns the names in the program folder, sorted, without the executable.
  std::vector<std::string> ProgramFolderNames() const;
  std::string InitDat() const { return ReadWholeFile(program_folder() + "/Init.dat"); }
  // Returns the run log's bytes; empty if there is no log.
  std::string RunLog() const;

  ProgramResult Run(const std::vector<std::string>& arguments) const;

  // Returns the model's input for a run with this settings file (below the work folder) on the disk
  // as it is now.
  RunInput Input(const std::string& settings_name) const;

 private:
  std::string executable_name_;
  std::string root_;
  bool keep_ = false;
};

// Returns settings bytes in the usual form: three paths, log=1, separator "|", wildcard "*", ".txt"
// selected.
std::string UsualSettings(const std::string& source, const std::string& target,
                          const std::string& list);

// Returns what is wrong with a finished run, as text for a person; empty if everything is as
// predicted. `old_log` holds the bytes of the run log before the run.
std::string Problems(const Scene& scene, const RunOutcome& expected, const ProgramResult& result,
                     const std::string& old_log = "");

// Runs the program with this settings file (below the work folder) and returns the problems found.
std::string RunAndCompare(const Scene& scene, const std::string& settings_name);

// Returns the messages of a log's records, without the time of day. For a record of another form,
// the message starts with "malformed record".
std::vector<std::string> LogMessages(const std::string& log_bytes);

// Returns what a run with -if wrote to standard error, without the warnings about its list and its
// command line, which have tests of their own.
std::string WithoutWarnings(const std::string& errors);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_PROGRAM_RUN_H_
