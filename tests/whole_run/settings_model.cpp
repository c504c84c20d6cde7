// Reads settings and list files. A value that cannot be read leaves the setting as it was.

#include "settings_model.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace morvex::whole_run {
namespace {

std::string AfterFirstEquals(const std::string& line) {
  const std::size_t at = line.find('=');
  return at == std::string::npos ? line : line.substr(at + 1);
}

bool IsDigitAt(const std::string& text, std::size_t at) {
  return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0;
}

// Returns the number at a text's beginning (0 if there is none), rounded to the nearest whole
// number with halves to the even neighbour. Returns nothing if 16 bits cannot hold it.
std::optional<int> LeadingNumber(const std::string& text) {
  std::size_t at = 0;
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) {
    ++at;
  }
  std::string number;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    number += text[at++];
  }
  if (!IsDigitAt(text, at)) {
    return 0;
  }
  while (IsDigitAt(text, at)) {
    number += text[at++];
  }
  if (at < text.size() && text[at] == '.') {
    number += text[at++];
    while (IsDigitAt(text, at)) {
      number += text[at++];
    }
  }
  const double value = std::nearbyint(std::strtod(number.c_str(), nullptr));
  if (value < -32768.0 || value > 32767.0) {
    return std::nullopt;
  }
  return static_cast<int>(value);
}

void ReadExtensions(const std::vector<std::string>& lines, Settings* settings) {
  for (std::size_t at = 6; at < lines.size() && !lines[at].empty(); ++at) {
    settings->extensions.push_back({lines[at].substr(1), lines[at].front() != '0'});
  }
}

}  // namespace

std::vector<std::string> TextLines(std::string_view bytes) {
  std::vector<std::string> lines;
  std::string line;
  for (const char byte : bytes) {
    if (byte != '\n') {
      line += byte;
      continue;
    }
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    lines.push_back(line);
    line.clear();
  }
  if (!line.empty()) {
    lines.push_back(line);
  }
  return lines;
}

Settings ReadSettings(std::string_view bytes) {
  const std::vector<std::string> lines = TextLines(bytes);
  Settings settings;
  if (!lines.empty()) {
    settings.source = lines[0];
  }
  if (lines.size() > 1) {
    settings.target = lines[1];
  }
  if (lines.size() > 2) {
    settings.list_path = lines[2];
  }
  if (lines.size() > 3) {
    const std::optional<int> value = LeadingNumber(AfterFirstEquals(lines[3]));
    if (value && *value >= 0 && *value <= 2) {
      settings.logging_box = *value;
    }
  }
  if (lines.size() > 4) {
    settings.separator = AfterFirstEquals(lines[4]);
  }
  if (lines.size() > 5) {
    const std::string value = AfterFirstEquals(lines[5]);
    settings.joker = value.empty() ? 0 : static_cast<unsigned char>(value.front());
  }
  ReadExtensions(lines, &settings);
  return settings;
}

std::string InitDatBytes(const Settings& settings) {
  std::string bytes;
  bytes += settings.source + "\r\n";
  bytes += settings.target + "\r\n";
  bytes += settings.list_path + "\r\n";
  bytes += "log=" + std::to_string(settings.logging_box) + "\r\n";
  bytes += "sep=" + (settings.separator.empty() ? "|" : settings.separator) + "\r\n";
  bytes += "jok=";
  bytes += static_cast<char>(settings.joker);
  bytes += "\r\n";
  for (const ExtensionEntry& entry : settings.extensions) {
    bytes += (entry.selected ? "1" : "0") + entry.text + "\r\n";
  }
  return bytes;
}

std::vector<Row> ReadGrid(std::string_view list_bytes, const std::string& separator) {
  std::vector<Row> rows(1);
  if (separator.empty()) {
    return rows;
  }
  const std::string doubled = separator + separator;
  bool final_row_seen = false;
  std::size_t at = 0;  // the index of the row that takes the next line
  for (const std::string& line : TextLines(list_bytes)) {
    const std::size_t cut = line.find(separator);
    if (cut == std::string::npos) {
      continue;
    }
    if (line == doubled + separator) {
      if (at > 0 && at + 1 == rows.size()) {
        rows.pop_back();
      }
      break;
    }
    if (line.find(doubled) != std::string::npos) {
      final_row_seen = true;
    }
    if (at < rows.size()) {
      rows[at].left = line.substr(0, cut);
      rows[at].right = line.substr(cut + separator.size());
      if (final_row_seen) {
        const std::size_t size = rows[at].right.size();
        rows[at].right.resize(size < 2 ? 0 : size - 2);
      } else {
        rows.emplace_back();
      }
    }
    ++at;
  }
  return rows;
}

}  // namespace morvex::whole_run
