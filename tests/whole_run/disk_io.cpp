// Says in words how two snapshots differ, and reads and changes files on the real disk.

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "disk.h"

namespace morvex::whole_run {
namespace {

// The number of bytes shown on each side of the first byte that differs.
constexpr std::size_t kShownBytes = 60;

[[noreturn]] void Fail(const std::string& what, const std::string& path) {
  throw std::runtime_error("test set-up: cannot " + what + " " + path);
}

const char* KindName(NodeKind kind) {
  switch (kind) {
    case NodeKind::kFolder:
      return "folder";
    case NodeKind::kFile:
      return "file";
    case NodeKind::kLink:
      return "link";
  }
  return "nothing";
}

std::string BytesDifference(const std::string& expected, const std::string& actual) {
  std::size_t at = 0;
  while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) {
    ++at;
  }
  const std::size_t from = at < kShownBytes ? 0 : at - kShownBytes;
  std::ostringstream text;
  text << "expected " << expected.size() << " bytes, found " << actual.size()
       << ", first difference at offset " << at << ", shown from " << from
       << "\n    expected: " << Escaped(std::string_view(expected).substr(from, 2 * kShownBytes))
       << "\n    found:    "
       << Escaped(std::string_view(actual).substr(std::min(from, actual.size()), 2 * kShownBytes));
  return text.str();
}

void CompareNodes(const std::string& path, const Node& expected, const Node& actual,
                  std::ostringstream* text) {
  if (expected.kind != actual.kind) {
    *text << "  " << Escaped(path) << ": expected a " << KindName(expected.kind) << ", found a "
          << KindName(actual.kind) << "\n";
    return;
  }
  if (expected.bytes != actual.bytes) {
    *text << "  " << Escaped(path) << ": " << BytesDifference(expected.bytes, actual.bytes) << "\n";
  }
  if (expected.permissions && actual.permissions && *expected.permissions != *actual.permissions) {
    *text << "  " << Escaped(path) << ": expected permission bits " << std::oct
          << *expected.permissions << ", found " << *actual.permissions << std::dec << "\n";
  }
  if (expected.modified_ns && actual.modified_ns && *expected.modified_ns != *actual.modified_ns) {
    *text << "  " << Escaped(path) << ": expected modification time " << *expected.modified_ns
          << ", found " << *actual.modified_ns << "\n";
  }
}

}  // namespace

std::string Escaped(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == '\n') {
      text += "\\n";
    } else if (byte == '\r') {
      text += "\\r";
    } else if (byte == '\t') {
      text += "\\t";
    } else if (byte == '\\') {
      text += "\\\\";
    } else if (code >= 0x20 && code < 0x7F) {
      text += byte;
    } else {
      std::array<char, 8> hex{};
      std::snprintf(hex.data(), hex.size(), "\\x%02X", static_cast<unsigned>(code));
      text += hex.data();
    }
  }
  return text;
}

std::string Differences(const Disk& expected, const Disk& actual) {
  std::ostringstream text;
  for (const auto& [path, node] : expected.nodes()) {
    const Node* found = actual.Find(path);
    if (found == nullptr) {
      text << "  " << Escaped(path) << ": expected a " << KindName(node.kind) << ", missing\n";
    } else {
      CompareNodes(path, node, *found, &text);
    }
  }
  for (const auto& [path, node] : actual.nodes()) {
    if (expected.Find(path) == nullptr) {
      text << "  " << Escaped(path) << ": unexpected " << KindName(node.kind) << " of "
           << node.bytes.size()
           << " bytes: " << Escaped(std::string_view(node.bytes).substr(0, 2 * kShownBytes))
           << "\n";
    }
  }
  return text.str();
}

std::string ReadWholeFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    Fail("read", path);
  }
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void WriteWholeFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) {
    Fail("write", path);
  }
}

void MakeFolders(const std::string& path) { std::filesystem::create_directories(path); }

void SetPermissions(const std::string& path, unsigned permissions) {
  if (chmod(path.c_str(), static_cast<mode_t>(permissions)) != 0) {
    Fail("set the permissions of", path);
  }
}

void SetModified(const std::string& path, std::int64_t modified_ns) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  timespec moment{};
  moment.tv_sec = static_cast<time_t>(modified_ns / kNanoseconds);
  moment.tv_nsec = static_cast<long>(modified_ns % kNanoseconds);
  const std::array<timespec, 2> times{moment, moment};
  if (utimensat(AT_FDCWD, path.c_str(), times.data(), 0) != 0) {
    Fail("set the time of", path);
  }
}

}  // namespace morvex::whole_run
