// The house stays as it is drawn: a room includes only itself and the rooms below it, the core
// includes the C++ standard library and nothing else, and system headers are met in host/ alone.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace morvex::test {
namespace {

namespace fs = std::filesystem;

// From the top down; a room may include what stands below it.
const std::vector<std::string> kRooms = {"apps/morvex",        "apps/morvex-cli",
                                         "host/posix",         "host/windows",
                                         "host/system",        "ui/qt",
                                         "ui/commands",        "ui/console",
                                         "core/run",           "core/settings",
                                         "core/list",          "core/leftovers",
                                         "core/engine/passes", "core/engine/matching",
                                         "core/program",       "core/tables",
                                         "core/forms",         "core/text",
                                         "core/host"};

// The hosts, one for each system. A main function knows them only through host/system.
const std::set<std::string> kHosts = {"host/posix", "host/windows"};

// Those that may include the toolkit's headers.
const std::set<std::string> kToolkitRooms = {"apps/morvex", "ui/qt"};

// Libraries of headers alone, and the room that may include them.
const std::set<std::string> kHeaderLibraries = {"CLI/CLI.hpp", "nlohmann/json.hpp"};
constexpr const char* kHeaderLibrariesRoom = "ui/commands";

// The forms of the scan that use vector instructions.
const std::set<std::string> kVectorFiles = {"core/engine/matching/scan_avx2.cpp",
                                            "core/engine/matching/scan_ssse3.cpp"};

// Of the standard library, what only a user interface uses.
const std::set<std::string> kThreadHeaders = {"condition_variable", "mutex", "thread"};

// Headers of the C++ standard library that the program uses.
const std::set<std::string> kStandardHeaders = {
    "algorithm",     "array",       "bit",
    "charconv",      "chrono",      "clocale",
    "cmath",         "compare",     "condition_variable",
    "mutex",         "cstddef",     "cstdint",
    "cstdlib",       "cstring",     "cwchar",
    "deque",         "functional",  "iostream",
    "istream",       "iterator",    "limits",
    "map",           "memory",      "optional",
    "ostream",       "set",         "streambuf",
    "string",        "string_view", "thread",
    "unordered_map", "utility",     "vector",
    "system_error"};

struct Include {
  std::string file;  // that includes
  std::string name;  // what it includes
  bool own = false;  // "name" rather than <name>
};

std::vector<Include> IncludesOf(const std::string& room) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  std::vector<Include> includes;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / room)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      if (!line.starts_with("#include ")) continue;
      const bool own = line.at(9) == '"';
      const std::size_t end = line.find(own ? '"' : '>', 10);
      includes.push_back(
          {fs::relative(entry.path(), root).string(), line.substr(10, end - 10), own});
    }
  }
  return includes;
}

std::size_t RoomOf(const std::string& header) {
  const auto room = std::find_if(kRooms.begin(), kRooms.end(), [&](const std::string& name) {
    return header.starts_with(name + "/");
  });
  return static_cast<std::size_t>(room - kRooms.begin());
}

TEST(Layers, EveryRoomOfTheProgramIsKnown) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  for (const char* part : {"apps", "core", "host", "ui"}) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / part)) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with(".h") && !name.ends_with(".cpp")) continue;
      const std::string file = fs::relative(entry.path(), root).string();
      EXPECT_LT(RoomOf(file), kRooms.size()) << file << " lies in no room";
    }
  }
}

TEST(Layers, NoTwoHeadersHaveTheSameName) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  std::map<std::string, std::string> paths;
  for (const char* part : {"apps", "core", "host", "ui"}) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / part)) {
      if (entry.path().extension() != ".h") continue;
      const std::string path = fs::relative(entry.path(), root).string();
      const auto [other, is_new] = paths.try_emplace(entry.path().filename().string(), path);
      EXPECT_TRUE(is_new) << path << " and " << other->second;
    }
  }
}

TEST(Layers, ARoomIncludesOnlyItselfAndRoomsBelow) {
  for (std::size_t room = 0; room < kRooms.size(); ++room) {
    const std::vector<Include> includes = IncludesOf(kRooms[room]);
    ASSERT_FALSE(includes.empty()) << kRooms[room];
    for (const Include& include : includes) {
      if (!include.own) continue;
      ASSERT_LT(RoomOf(include.name), kRooms.size())
          << include.file << " includes " << include.name;
      EXPECT_GE(RoomOf(include.name), room) << include.file << " includes " << include.name;
    }
  }
}

TEST(Layers, TextUsesNothingButItselfAndErrors) {
  for (const Include& include : IncludesOf("core/text")) {
    if (!include.own) continue;
    EXPECT_TRUE(include.name.starts_with("core/text/") || include.name == "core/host/error.h")
        << include.file << " includes " << include.name;
  }
}

TEST(Layers, TheHostImplementsOnlyTheHostsInterface) {
  for (const std::string& host : kHosts) {
    for (const Include& include : IncludesOf(host)) {
      if (!include.own) continue;
      EXPECT_TRUE(include.name.starts_with(host + "/") ||
                  include.name.starts_with("host/system/") ||
                  include.name.starts_with("core/host/"))
          << include.file << " includes " << include.name;
    }
  }
}

TEST(Layers, ProgramsAreTheSameSourcesOnEverySystem) {
  for (const char* program : {"apps/morvex", "apps/morvex-cli"}) {
    for (const Include& include : IncludesOf(program)) {
      EXPECT_FALSE(kHosts.contains(include.name.substr(0, include.name.rfind('/'))))
          << include.file << " includes " << include.name;
    }
  }
}

TEST(Layers, UserInterfacesDoNotKnowTheSystem) {
  for (const char* room : {"ui/commands", "ui/console", "ui/qt"}) {
    for (const Include& include : IncludesOf(room)) {
      EXPECT_FALSE(include.name.starts_with("host/"))
          << include.file << " includes " << include.name;
    }
  }
}

TEST(Layers, OnlyTheHostIncludesSystemHeaders) {
  for (const std::string& room : kRooms) {
    if (kHosts.contains(room)) continue;
    for (const Include& include : IncludesOf(room)) {
      if (include.own) continue;
      if (room == kHeaderLibrariesRoom && kHeaderLibraries.contains(include.name)) continue;
      if (kToolkitRooms.contains(room) && include.name.starts_with("Q")) continue;
      // The compiler's own header of vector instructions.
      if (kVectorFiles.contains(include.file) && include.name == "immintrin.h") continue;
      EXPECT_TRUE(kStandardHeaders.contains(include.name))
          << include.file << " includes <" << include.name << ">";
    }
  }
}

TEST(Layers, TheCoreStartsNoThread) {
  for (const std::string& room : kRooms) {
    if (!room.starts_with("core/")) continue;
    for (const Include& include : IncludesOf(room)) {
      EXPECT_FALSE(kThreadHeaders.contains(include.name))
          << include.file << " includes <" << include.name << ">";
    }
  }
}

}  // namespace
}  // namespace morvex::test
