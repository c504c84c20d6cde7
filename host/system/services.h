// The host services of the system that the program is built for. Each folder beside this one
// implements these declarations and the build picks one, so main functions are the same everywhere.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/host/file_service.h"
#include "core/host/system_service.h"

namespace morvex {

// The arguments after the program's name, in the encoding of the host's file names. Here and below
// `argc` and `argv` are those of main.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Create one per process, before any standard stream is used: from then on all standard streams
// pass bytes unchanged.
std::unique_ptr<SystemService> MakeSystemService(int argc, char** argv);

std::unique_ptr<FileService> MakeFileService();

}  // namespace morvex
