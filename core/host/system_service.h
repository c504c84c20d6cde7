// What the program asks of the process and the machine: its own place, environment, clock and
// locale.
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

// How many bytes a character of a typed or stored text can take.
enum class TextCodec { kSingleByte, kUtf8 };

// The character of each byte as a UTF-16 unit. 0 stands for none, but for NUL itself.
using PageCharacters = std::array<char16_t, 256>;

class SystemService {
 public:
  virtual ~SystemService() = default;

  // The folder that holds the running executable, without a separator at its end unless it is a
  // root.
  virtual std::string ProgramFolder() = 0;
  // The executable's name without its folder and without ".exe".
  virtual std::string ExecutableName() = 0;
  // The arguments after the program's name, joined by one blank.
  virtual std::string CommandLineText() = 0;
  // The `index`-th entry NAME=VALUE of the environment, counted from 1; empty behind the last one.
  virtual std::string EnvironmentEntry(int index) = 0;

  virtual WallTime Now() = 0;
  virtual TimeOfDay LocalTimeOfDay() = 0;
  // Today and now, as the user's regional settings write them.
  virtual std::string ShortDate() = 0;
  virtual std::string TimeText() = 0;
  // Time that only moves forward, for delays and for pacing.
  virtual std::chrono::milliseconds SteadyTime() = 0;

  virtual TextCodec Codec() = 0;
  // Where the system has one code page for all programs, single-byte, for texts and names of files
  // alike; nothing where both go by the user's locale.
  virtual std::optional<PageCharacters> SystemPage() { return std::nullopt; }
  // True where writes into a protected program-files folder land in a store of the user's own.
  virtual bool HasRedirectedStore() = 0;
  // Opens the system's file browser on the folder of `file`. Failure is not reported.
  virtual void StartFileBrowser(const std::string& file) = 0;
};

}  // namespace morvex
