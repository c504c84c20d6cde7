// The process, the clock and the user's locale on a POSIX system.
#pragma once

#include <locale.h>

#include <string>

#include "core/host/system_service.h"

namespace morvex {

// The constructor reads the locale from the environment (LC_ALL, LC_CTYPE, LC_TIME, LANG); a locale
// that is not installed counts as "C". The locale of the C and C++ libraries stays unchanged. The
// constructor makes the process ignore SIGXFSZ: writing beyond the file size limit then fails with
// an error and does not end the process. The constructor also occupies the descriptor numbers of
// the standard streams that the process was started without, so that no file can get them.
class PosixSystemService : public SystemService {
 public:
  // `argc` and `argv` are those of main.
  PosixSystemService(int argc, char** argv);
  PosixSystemService(const PosixSystemService&) = delete;
  PosixSystemService& operator=(const PosixSystemService&) = delete;
  ~PosixSystemService() override;

  std::string ProgramFolder() override { return program_folder_; }
  std::string ExecutableName() override { return executable_name_; }
  std::string CommandLineText() override { return command_line_; }
  std::string EnvironmentEntry(int index) override;

  // File times follow a coarser clock: a file written right after this call may have a time a few
  // milliseconds earlier.
  WallTime Now() override;
  TimeOfDay LocalTimeOfDay() override;
  std::string ShortDate() override;
  std::string TimeText() override;
  std::chrono::milliseconds SteadyTime() override;

  TextCodec Codec() override;
  bool HasRedirectedStore() override { return false; }
  void StartFileBrowser(const std::string& file) override;

 private:
  // Returns the current time in strftime's `format` and the user's locale; empty if that fails.
  std::string FormatNow(const char* format) const;

  std::string time_text_;  // the text for the second time_text_second_
  time_t time_text_second_ = 0;

  std::string program_folder_;
  std::string executable_name_;
  std::string command_line_;
  locale_t locale_;  // owned by this object
};

namespace posix {

// Returns the path of the running program. `shown` is the text of the system's link to the program.
// If the program's file was deleted or replaced since the start, the system appends " (deleted)" to
// that text; this function removes it.
std::string ProgramPathFromLink(const std::string& shown);

// Returns the path of the program that was started as `name`, for systems that do not report the
// program's path. A name with a separator is a path; any other name is searched in the folders of
// PATH. If none of these folders has the name, the program counts as being in the current folder.
std::string ProgramPathFromName(const std::string& name);

}  // namespace posix
}  // namespace morvex
