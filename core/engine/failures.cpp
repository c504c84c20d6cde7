#include "core/engine/failures.h"

#include "core/program/run_log.h"

namespace morvex {

void LogError(const Program& program, const std::string& path, ErrorNumber error) {
  gLog(program, path);
  gLog(program, ErrorLine(error));
}

void CountFailure(Program& program, const std::string& path, ErrorNumber error) {
  if (program.run.failed_files++ == 0) program.run.first_failure = {path, error};
}

}  // namespace morvex
