// The process, the clock and the user's locale on a POSIX system.
#pragma once

#include <locale.h>

#include <string>

#include "core/host/system_service.h"

namespace morvex {

// Reads the locale from the environment (LC_ALL, LC_CTYPE, LC_TIME, LANG) when it is made, without
// touching the one that the C and C++ libraries use; a locale that is not installed counts as "C".
// From then on the process ignores SIGXFSZ, so that writing past the greatest file size allowed to
// it fails with an error instead of ending it, and standard streams that it was started without
// are no numbers that its files can get.
class PosixSystemService : public SystemService {
 public:
  // The arguments are those of main.
  PosixSystemService(int argc, char** argv);
  PosixSystemService(const PosixSystemService&) = delete;
  PosixSystemService& operator=(const PosixSystemService&) = delete;
  ~PosixSystemService() override;

  std::string ProgramFolder() override { return program_folder_; }
  std::string ExecutableName() override { return executable_name_; }
  std::string CommandLineText() override { return command_line_; }
  std::string EnvironmentEntry(int index) override;

  // The file system's stamps follow a coarser clock: that of a file written right after this call
  // can lie a few milliseconds before it.
  WallTime Now() override;
  TimeOfDay LocalTimeOfDay() override;
  std::string ShortDate() override;
  std::string TimeText() override;
  std::chrono::milliseconds SteadyTime() override;

  TextCodec Codec() override;
  bool HasRedirectedStore() override { return false; }
  void StartFileBrowser(const std::string& file) override;

 private:
  // The present moment in the locale's `format`; empty when it cannot be had.
  std::string FormatNow(const char* format) const;

  std::string time_text_;  // of the second time_text_second_
  time_t time_text_second_ = 0;

  std::string program_folder_;
  std::string executable_name_;
  std::string command_line_;
  locale_t locale_;  // own
};

namespace posix {

// The running program's path out of what the system shows for it: one that was deleted or exchanged
// since it started is shown with a mark behind its name.
std::string ProgramPathFromLink(const std::string& shown);

// Where the program that was started as `name` lies, for a system that does not say so itself: a
// name with a separator is a path, any other is looked for in the folders of PATH. The current
// folder counts when it lies in none of them.
std::string ProgramPathFromName(const std::string& name);

}  // namespace posix
}  // namespace morvex
