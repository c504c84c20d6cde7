// What an unattended run leaves behind, predicted from what lay on the disk before it: the disk
// afterwards, the log, the result labels, the messages and the exit status. The model shares no
// code with the program; it is small, slow and follows the rules one at a time.

#ifndef MORVEX_TESTS_WHOLE_RUN_RUN_MODEL_H_
#define MORVEX_TESTS_WHOLE_RUN_RUN_MODEL_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "disk.h"
#include "settings_model.h"

namespace morvex::whole_run {

struct RunInput {
  Disk disk;
  std::string current_folder;
  std::string settings_bytes;
  // The settings file's path as the summary names it.
  std::string settings_path;
  // Name of the running executable, without its folder.
  std::string executable_name = "morvex-cli";
  // A file with this time or a later one counts as changed after arming.
  std::int64_t armed_ns = 0;
  int delay_ms = 0;
};

enum class LogKind {
  kExact,       // the message is `text`
  kHeader,      // 25 dashes, a short date, 25 dashes
  kElapsed,     // `text` followed by a time as minutes and seconds
  kErrorNumber  // "Error N: TEXT" with whatever number the file system gave
};

struct LogLine {
  LogKind kind = LogKind::kExact;
  std::string text;
};

struct RunOutcome {
  Disk disk;
  std::string init_dat;
  std::vector<LogLine> log;
  // Captions of the three result labels. An elapsed time is given as kElapsedCaption.
  std::array<std::string, 3> captions;
  // What the message boxes say, line breaks as LF; empty when there was none.
  std::string messages;
  // Whether the run gives occasion for remarks of the console's own behind the message boxes: it
  // failed, it left something out, or it replaced nothing. A run that did all that can be meant by
  // its settings is silent.
  bool occasion_for_remarks = false;
  // How many files in the target the run has not put there; the console says so unless there are
  // none.
  std::int64_t other_files = 0;
  int exit_status = 0;
};

inline constexpr char kElapsedCaption[] = "(elapsed)";

RunOutcome PredictRun(const RunInput& input);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RUN_MODEL_H_
