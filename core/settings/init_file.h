// The lines of a settings file as data: one value a line, the first six by their position, then the
// extension list.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex {

struct ExtensionLine {
  std::string extension;  // with its "."
  bool selected = false;
};

// A member is empty if the file lacks its line.
struct InitFile {
  std::optional<std::string> source;
  std::optional<std::string> target;
  std::optional<std::string> list;
  std::optional<std::int16_t> logging;  // also empty if 16 bits do not hold the number
  std::optional<std::string> separator;
  std::optional<std::string> wildcard;     // the text whose first character is the wildcard
  std::vector<ExtensionLine> extensions;   // up to the first empty line
  bool is_open = false;                    // the file could be opened
  ErrorNumber error = ErrorNumber::kNone;  // why it could not be opened or read to its end
};

InitFile ParseInitFile(FileService& files, const std::string& path);

}  // namespace morvex
