// What a command uses: the host's services, the standard streams, and which of them are terminals.
#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include "core/host/host.h"

namespace morvex {

// Everything that this object refers to must outlive the command.
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
  std::function<int()> columns;  // width of the terminal, in columns
  // After this call, the first interrupt does not end the process: it makes `stop_requested` return
  // true. If `asks` is true (the command asks questions), the interrupt also breaks off the wait
  // for an answer; if `asks` is false, writes under way go on.
  std::function<void(bool asks)> note_stop_requests;
  std::function<bool()> stop_requested;
  // Standard input and output as files of bytes. After opening one of them, do not use `input` or
  // `output` any more.
  std::function<std::unique_ptr<InputFile>()> open_input;
  std::function<std::unique_ptr<OutputFile>()> open_output;
};

// The exit statuses of the commands.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;     // the command line is wrong
inline constexpr int kExitFindings = 3;  // run: files without a copy; check: leftovers

}  // namespace morvex
