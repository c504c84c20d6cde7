// Where a run's report is written. The report takes a free path or replaces an older report, and
// never replaces anything that the run reads or writes. A report in the source or target folder
// draws a warning, because it could be handed over with the copies.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

class ReportPlace {
 public:
  // `settings_file` may be empty. All arguments must outlive the object.
  ReportPlace(Program& program, const std::string& path, const std::string& settings_file,
              CommandMessages& messages)
      : program_(program), path_(path), settings_file_(settings_file), messages_(messages) {}

  // Call it before the run, when source, target and list are set in `program`. Returns false, after
  // an error message, when no report may be written at the path.
  bool MayHold();

  // Call it after the run. Writes the report, whole or not at all. A file that appeared at the path
  // during the run is kept, and the report is written beside it. Returns false, after an error
  // message, when the report is not at its path.
  bool Put(const std::string& report);

 private:
  bool Refuse(const std::string& why);
  bool SparesOwnPlaces();
  bool MayReplace();
  bool HasRoom();
  ErrorNumber Probe(const std::string& path);
  bool PutBeside(const std::string& report);

  Program& program_;
  const std::string& path_;
  const std::string& settings_file_;
  CommandMessages& messages_;
  bool replaces_ = false;  // there is an older report at the path
};

}  // namespace morvex
