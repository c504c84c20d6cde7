#include "core/settings/init_file.h"

#include "core/program/text_file.h"
#include "core/settings/numbers.h"

namespace morvex {
namespace {

// Returns what follows the first "="; the whole line if it has no "=".
std::string ValueOf(const std::string& line) {
  const std::size_t equals = line.find('=');
  return equals == std::string::npos ? line : line.substr(equals + 1);
}

std::optional<std::string> NextLine(LineReader& reader) {
  std::string line;
  if (!reader.Next(line)) return std::nullopt;
  return line;
}

std::optional<std::string> NextValue(LineReader& reader) {
  const std::optional<std::string> line = NextLine(reader);
  if (!line) return std::nullopt;
  return ValueOf(*line);
}

std::optional<std::int16_t> NextNumber(LineReader& reader) {
  const std::optional<std::string> value = NextValue(reader);
  if (!value) return std::nullopt;
  const Result<std::int16_t> number = LeadingInteger16(*value);
  if (!number) return std::nullopt;
  return number.value;
}

}  // namespace

InitFile ParseInitFile(FileService& files, const std::string& path) {
  InitFile file;
  LineReader reader;
  file.is_open = reader.Open(files, path) == ErrorNumber::kNone;
  file.source = NextLine(reader);
  file.target = NextLine(reader);
  file.list = NextLine(reader);
  file.logging = NextNumber(reader);
  file.separator = NextValue(reader);
  file.wildcard = NextValue(reader);
  for (std::string line; reader.Next(line) && !line.empty();) {
    file.extensions.push_back({line.substr(1), line.front() != '0'});
  }
  file.error = reader.error();
  return file;
}

}  // namespace morvex
