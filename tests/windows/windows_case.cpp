#include "tests/windows/windows_case.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <set>

namespace morvex::whole_run {
namespace {

constexpr int kPathLines = 3;
constexpr std::int64_t kStep = 100;  // nanoseconds, the unit of Windows file times

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

// Changes names to names that Windows can hold. Names that differ only in letter case all become
// the first of these names.
class Spellings {
 public:
  std::string Of(const std::string& name) {
    const std::string fit = Fitting(name);
    return first_.emplace(Lower(fit), fit).first->second;
  }

  std::string OfPath(const std::string& path) {
    std::string result;
    std::size_t start = 0;
    while (start <= path.size()) {
      const std::size_t end = std::min(path.find('/', start), path.size());
      if (start > 0) result += '/';
      result += Of(path.substr(start, end - start));
      start = end + 1;
    }
    return result;
  }

 private:
  static std::string Fitting(std::string name) {
    if (name.empty() || name == "." || name == "..") return name;
    for (char& byte : name) {
      if (byte == '\\') byte = '-';
      if (static_cast<unsigned char>(byte) >= 0x80) byte = 'e';
    }
    if (name.back() == '.' || name.back() == ' ') name += 'x';
    return name;
  }

  std::map<std::string, std::string> first_;  // the key is the name in lower case
};

std::string ChangedPaths(const std::string& bytes,
                         const std::function<std::string(const std::string&)>& change) {
  std::string result;
  std::size_t start = 0;
  for (int line = 0; line < kPathLines && start < bytes.size(); ++line) {
    const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
    const bool has_return = end > start && bytes[end - 1] == '\r';
    const std::size_t text_end = has_return ? end - 1 : end;
    result += change(bytes.substr(start, text_end - start));
    result += bytes.substr(text_end, end + 1 - text_end);
    start = std::min(end + 1, bytes.size());
  }
  return result + bytes.substr(start);
}

}  // namespace

RandomCase ForWindows(RandomCase made) {
  Spellings spellings;
  for (Entry& entry : made.entries) {
    if (entry.name != made.settings_name) continue;
    entry.bytes =
        ChangedPaths(entry.bytes, [&](const std::string& path) { return spellings.OfPath(path); });
  }
  std::vector<Entry> entries;
  std::set<std::string> used;
  for (Entry& entry : made.entries) {
    const bool is_settings = entry.name == made.settings_name;
    if (!is_settings) entry.name = spellings.OfPath(entry.name);
    entry.modified_ns -= entry.modified_ns % kStep;
    if (used.insert(Lower(entry.name)).second) entries.push_back(std::move(entry));
  }
  made.entries = std::move(entries);
  return made;
}

std::string WindowsPath(const std::string& path) {
  std::string result = path.starts_with('/') ? kDrive + path : path;
  std::replace(result.begin(), result.end(), '/', '\\');
  return result;
}

std::string WindowsSettings(const std::string& bytes) { return ChangedPaths(bytes, WindowsPath); }

std::string ModelText(std::string text) {
  const std::string root = std::string(kDrive) + "\\";
  for (std::size_t at = text.find(root); at != std::string::npos; at = text.find(root, at)) {
    text.erase(at, root.size() - 1);
  }
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}

std::string ModelSettings(const std::string& bytes) { return ChangedPaths(bytes, ModelText); }

bool ComesBefore(const std::string& one, const std::string& other) {
  const auto upper = [](char letter) { return std::toupper(static_cast<unsigned char>(letter)); };
  return std::lexicographical_compare(
      one.begin(), one.end(), other.begin(), other.end(),
      [&](char first, char second) { return upper(first) < upper(second); });
}

}  // namespace morvex::whole_run
