// Predicts what an unattended run leaves behind: the disk, the log, the result labels, the messages
// and the exit status. The prediction starts from the disk as it is before the run. The model
// shares no code with the program. It is small and slow, and follows the rules one at a time.

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
  // The name of the running executable, without its folder.
  std::string executable_name = "morvex-cli";
  // The time at which the run was made ready (armed), in nanoseconds since 1970. A file that was
  // modified at this time or later counts as changed after arming.
  std::int64_t armed_ns = 0;
  int delay_ms = 0;
};

enum class LogKind {
  kExact,       // the message is `text`
  kHeader,      // 25 dashes, a short date, 25 dashes
  kElapsed,     // `text` followed by a time as minutes and seconds
  kErrorNumber  // "Error N: TEXT" with any number and any text
};

struct LogLine {
  LogKind kind = LogKind::kExact;
  std::string text;
};

struct RunOutcome {
  Disk disk;
  std::string init_dat;
  std::vector<LogLine> log;
  // The captions of the three result labels. An elapsed time is shown as kElapsedCaption.
  std::array<std::string, 3> captions;
  // The texts of the message boxes, with LF as line break; empty if there was none.
  std::string messages;
  // Whether the console may add remarks of its own behind the message boxes. It may do so if the
  // run failed, left something out or replaced nothing, or if `other_files` is not 0.
  bool occasion_for_remarks = false;
  // The number of files in the target that the run did not put there. The console reports this
  // number if it is not 0.
  std::int64_t other_files = 0;
  int exit_status = 0;
};

inline constexpr char kElapsedCaption[] = "(elapsed)";

RunOutcome PredictRun(const RunInput& input);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_RUN_MODEL_H_
