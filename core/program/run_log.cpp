#include "core/program/run_log.h"

#include <string>

#include "core/program/paths.h"

namespace morvex {
namespace {

void WriteRecord(const Program& program, const char* log_name, std::string_view message) {
  const std::string path = Normaliseer(program, InProgramFolder(program, log_name));
  std::string record;
  if (!message.empty()) {
    record.append("\"").append(program.host.system.TimeText());
    record.append(" ").append(message).append("\"\r\n");
  }
  program.host.files.AppendToFile(path, record);
}

}  // namespace

void gLog(const Program& program, std::string_view message) {
  if (program.run.LoggingOn) WriteRecord(program, kRunLogName, message);
}

void gDebug(const Program& program, std::string_view message) {
  WriteRecord(program, kDebugLogName, message);
}

}  // namespace morvex
