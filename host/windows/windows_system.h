// The process, the clock and the user's regional settings on Windows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/host/system_service.h"
#include "host/windows/windows_api.h"

namespace morvex {

// Text is in the system's code page. From the first object on, the C and C++ libraries pass the
// bytes of the standard streams unchanged. While an object lives, a console understands colours and
// shows text in the code page.
class WindowsSystemService : public SystemService {
 public:
  WindowsSystemService();
  WindowsSystemService(const WindowsSystemService&) = delete;
  WindowsSystemService& operator=(const WindowsSystemService&) = delete;
  ~WindowsSystemService() override;

  std::string ProgramFolder() override { return program_folder_; }
  std::string ExecutableName() override { return executable_name_; }
  std::string CommandLineText() override;
  std::string EnvironmentEntry(int index) override;

  // File times follow a coarser clock: a file written right after this call may have a time some
  // milliseconds earlier.
  WallTime Now() override;
  TimeOfDay LocalTimeOfDay() override;
  std::string ShortDate() override;
  std::string TimeText() override;
  std::chrono::milliseconds SteadyTime() override;

  TextCodec Codec() override { return TextCodec::kSingleByte; }
  std::optional<PageCharacters> SystemPage() override;
  bool HasRedirectedStore() override { return true; }
  // Starts the browser with the command line "explorer " and the file's path, in a minimised window
  // that takes the focus.
  void StartFileBrowser(const std::string& file) override;

 private:
  std::string program_folder_;
  std::string executable_name_;
  UINT console_output_ = 0;  // the console's code pages at the start; 0 without a console
  UINT console_input_ = 0;

  std::string time_text_;  // the text for the time of day in the members below
  WORD time_text_second_ = 60;
  WORD time_text_minute_ = 60;
  WORD time_text_hour_ = 24;
};

namespace windows {

// The arguments after the program's name in the system's command line `line`.
std::vector<std::string> ArgumentsOf(const wchar_t* line);

}  // namespace windows
}  // namespace morvex
