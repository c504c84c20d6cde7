// The host services of the system that the program is built for. Each of the other folders of host
// implements these declarations for one system, and the build picks one of those folders, so the
// main functions are the same on every system.
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
