#include "host/system/services.h"
#include "host/windows/windows_files.h"
#include "host/windows/windows_system.h"

namespace morvex {

// In the arguments of main, characters that the code page lacks are lost, so the system's command
// line is read instead.
std::vector<std::string> ProgramArguments(int, char**) {
  return windows::ArgumentsOf(GetCommandLineW());
}

std::unique_ptr<SystemService> MakeSystemService(int, char**) {
  return std::make_unique<WindowsSystemService>();
}

std::unique_ptr<FileService> MakeFileService() { return std::make_unique<WindowsFileService>(); }

}  // namespace morvex
