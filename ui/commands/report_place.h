// Where a run's report may lie: where nothing is, or in the place of an older report, but never of
// anything that the run reads or makes; and better in neither of its folders, for what lies there
// is handed over.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

class ReportPlace {
 public:
  // `settings_file` may be empty. All must outlive the object.
  ReportPlace(Program& program, const std::string& path, const std::string& settings_file,
              CommandMessages& messages)
      : program_(program), path_(path), settings_file_(settings_file), messages_(messages) {}

  // To be called before the run, when source, target and list stand in the program. False, after a
  // message, when no report may lie there. A report in the source's or the target's folder is
  // warned of.
  bool MayHold();

  // After the run: puts the report there, whole or not at all. What came there in the meantime
  // stays, and the report then lies beside it. False, after a message, when it does not lie in its
  // place.
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
  bool replaces_ = false;  // an older report
};

}  // namespace morvex
