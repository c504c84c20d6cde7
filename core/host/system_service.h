// What the program asks of the process and the machine: the program's folder, the environment, the
// clock and the locale.
#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

struct TimeOfDay {
  int hour = 0;    // 0 to 23
  int minute = 0;  // 0 to 59
  int second = 0;  // 0 to 60
};

// Whether a character of a typed or stored text is always one byte, or a UTF-8 sequence.
enum class TextCodec { kSingleByte, kUtf8 };

// For each byte value its character as a UTF-16 unit; 0 for NUL and for a byte without a character.
using PageCharacters = std::array<char16_t, 256>;

class SystemService {
 public:
  virtual ~SystemService() = default;

  // The folder of the running executable. Ends in a separator only if it is a root.
  virtual std::string ProgramFolder() = 0;
  // The executable's name without its folder and without ".exe".
  virtual std::string ExecutableName() = 0;
  // The arguments after the program's name, joined by single blanks.
  virtual std::string CommandLineText() = 0;
  // The `index`-th NAME=VALUE entry of the environment, counted from 1; empty after the last one.
  virtual std::string EnvironmentEntry(int index) = 0;

  virtual WallTime Now() = 0;
  virtual TimeOfDay LocalTimeOfDay() = 0;
  // The current date, and the current time of day, in the format of the user's regional settings.
  virtual std::string ShortDate() = 0;
  virtual std::string TimeText() = 0;
  // A clock that never goes back, for delays and pacing.
  virtual std::chrono::milliseconds SteadyTime() = 0;

  virtual TextCodec Codec() = 0;
  // The system's single-byte code page, if it has one for the texts and file names of all programs.
  // Empty if texts and file names follow the user's locale.
  virtual std::optional<PageCharacters> SystemPage() { return std::nullopt; }
  // True on systems that redirect writes into a protected program folder to a folder of the user.
  virtual bool HasRedirectedStore() = 0;
  // Opens the system's file browser on the folder of `file`. Failure is not reported.
  virtual void StartFileBrowser(const std::string& file) = 0;
};

}  // namespace morvex
