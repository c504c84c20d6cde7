// What a command uses: the host's services, the standard streams, and which of them are terminals.
#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include "core/host/host.h"

namespace morvex {

// Everything that it refers to must outlive the command.
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
  std::function<int()> columns;  // width of the terminal
  // Makes an interrupt set `stop_requested` instead of ending the process. `asks`: the command asks
  // questions, and the first interrupt breaks off the wait for an answer. Without questions, writes
  // under way are completed.
  std::function<void(bool asks)> note_stop_requests;
  std::function<bool()> stop_requested;
  // Standard input and output as files of bytes. Whoever opens them uses `input` or `output` no
  // more.
  std::function<std::unique_ptr<InputFile>()> open_input;
  std::function<std::unique_ptr<OutputFile>()> open_output;
};

// The exit statuses of the commands.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;     // the command line is wrong
inline constexpr int kExitFindings = 3;  // run: files without a copy; check: leftovers

}  // namespace morvex
