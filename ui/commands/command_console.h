// What the commands stand on: the host's services, its streams, and whether people look at them.
#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include "core/host/host.h"

namespace morvex {

// Everything must outlive the command.
struct CommandConsole {
  FileService& files;
  SystemService& system;
  std::istream& input;
  std::ostream& output;
  std::ostream& error;
  std::string version;  // of the program
  bool input_is_terminal = false;
  bool output_is_terminal = false;
  bool error_is_terminal = false;
  std::function<int()> columns;  // of the terminal
  // From now on, instead of ending the process. The first one breaks off a wait for an answer; one
  // who asks nothing says so and loses nothing of what is being written.
  std::function<void(bool asks)> note_stop_requests;
  std::function<bool()> stop_requested;  // one has been noted
  // Standard input and output byte by byte; nothing else may then be read or written there.
  std::function<std::unique_ptr<InputFile>()> open_input;
  std::function<std::unique_ptr<OutputFile>()> open_output;
};

// The exit statuses of the commands.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;     // the command line is wrong
inline constexpr int kExitFindings = 3;  // of run: files without a copy; of check: leftovers

}  // namespace morvex
