#include "host/posix/posix_files.h"
#include "host/posix/posix_system.h"
#include "host/system/services.h"

namespace morvex {

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::unique_ptr<SystemService> MakeSystemService(int argc, char** argv) {
  return std::make_unique<PosixSystemService>(argc, argv);
}

std::unique_ptr<FileService> MakeFileService() { return std::make_unique<PosixFileService>(); }

}  // namespace morvex
