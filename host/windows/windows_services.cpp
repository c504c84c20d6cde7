#include "host/system/services.h"
#include "host/windows/windows_files.h"
#include "host/windows/windows_system.h"

namespace morvex {

// What main is given has been bent to the code page, so the command line is read anew.
std::vector<std::string> ProgramArguments(int, char**) {
  return windows::ArgumentsOf(GetCommandLineW());
}

std::unique_ptr<SystemService> MakeSystemService(int, char**) {
  return std::make_unique<WindowsSystemService>();
}

std::unique_ptr<FileService> MakeFileService() { return std::make_unique<WindowsFileService>(); }

}  // namespace morvex
