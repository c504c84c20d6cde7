// The host of the system that the program is built for: each of the folders beside this one
// implements what is declared here, and the build takes one of them. So a main function is the same
// source everywhere.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/host/file_service.h"
#include "core/host/system_service.h"

namespace morvex {

// The arguments behind the program's name, in the host's file-name encoding. `argc` and `argv` are
// those of main, here and below.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// To be made before anything is read from or written to a standard stream: bytes then pass all of
// them unchanged. One for each process.
std::unique_ptr<SystemService> MakeSystemService(int argc, char** argv);

std::unique_ptr<FileService> MakeFileService();

}  // namespace morvex
