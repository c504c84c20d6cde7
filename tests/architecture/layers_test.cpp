// Which headers a room (a folder of sources) may include. Of the program's headers, a room includes
// only its own and those that kRooms permits. The core includes no other headers but those of the
// C++ standard library and, in one file, the compiler's header of vector instructions. Only host/
// includes system headers.

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

// A room, and the other rooms, or single headers of other rooms, that it may include.
struct Room {
  std::string name;
  std::vector<std::string> may_include;
};

// From the top down: every room stands above the rooms that it may include.
const std::vector<Room> kRooms = {
    {"apps/morvex", {"host/system", "ui/qt", "core/run", "core/settings", "core/text"}},
    {"apps/morvex-cli",
     {"host/system", "ui/commands", "ui/console", "core/run", "core/settings", "core/program",
      "core/text"}},
    {"host/posix", {"host/system", "core/host"}},
    {"host/windows", {"host/system", "core/host"}},
    {"host/system", {"core/host"}},
    {"ui/qt",
     {"core/run", "core/settings", "core/list", "core/program", "core/forms", "core/text",
      "core/host"}},
    {"ui/commands",
     {"ui/console", "core/run", "core/settings", "core/list", "core/leftovers",
      "core/engine/passes", "core/program", "core/engine/matching", "core/tables", "core/text",
      "core/host"}},
    {"ui/console", {"core/run", "core/list", "core/engine/passes", "core/program", "core/text"}},
    {"core/run", {"core/settings", "core/list", "core/engine/passes", "core/program"}},
    {"core/settings", {"core/list", "core/program", "core/forms", "core/text", "core/host"}},
    {"core/list",
     {"core/program", "core/forms", "core/engine/matching", "core/tables", "core/text",
      "core/host"}},
    {"core/leftovers", {"core/engine/matching", "core/tables", "core/text"}},
    {"core/engine/passes", {"core/program", "core/engine/matching", "core/host"}},
    {"core/program", {"core/forms", "core/engine/matching", "core/tables", "core/host"}},
    {"core/forms", {"core/host"}},
    {"core/engine/matching", {"core/tables", "core/host/error.h"}},
    {"core/tables", {"core/host/error.h"}},
    {"core/text", {}},
    {"core/host", {}},
};

// The rooms that may include system headers.
const std::set<std::string> kHosts = {"host/posix", "host/windows"};

// The rooms that may include the toolkit's headers.
const std::set<std::string> kToolkitRooms = {"apps/morvex", "ui/qt"};

// The libraries that consist of headers only, and the room that may include these headers.
const std::set<std::string> kHeaderLibraries = {"CLI/CLI.hpp", "nlohmann/json.hpp"};
constexpr const char* kHeaderLibrariesRoom = "ui/commands";

// The files that may include the compiler's header of vector instructions.
const std::set<std::string> kVectorFiles = {"core/engine/matching/scan_forms.h"};

// Headers of the standard library that the core may not include.
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
  std::string file;  // the file that includes
  std::string name;  // the header that it includes
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

// The index of the room that holds the file; kRooms.size() if no room holds the file.
std::size_t RoomOf(const std::string& file) {
  const auto room = std::find_if(kRooms.begin(), kRooms.end(), [&](const Room& candidate) {
    return file.starts_with(candidate.name + "/");
  });
  return static_cast<std::size_t>(room - kRooms.begin());
}

// Whether `permitted` is the header itself or the room that holds the header.
bool IsOf(const std::string& header, const std::string& permitted) {
  return header == permitted || header.starts_with(permitted + "/");
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

TEST(Layers, ARoomIncludesOnlyItselfAndWhatItMay) {
  for (const Room& room : kRooms) {
    const std::vector<Include> includes = IncludesOf(room.name);
    ASSERT_FALSE(includes.empty()) << room.name;
    for (const Include& include : includes) {
      if (!include.own || IsOf(include.name, room.name)) continue;
      EXPECT_TRUE(
          std::any_of(room.may_include.begin(), room.may_include.end(),
                      [&](const std::string& permitted) { return IsOf(include.name, permitted); }))
          << include.file << " includes " << include.name;
    }
  }
}

TEST(Layers, WhatARoomMayIncludeLiesBelowItAndIsIncluded) {
  for (std::size_t above = 0; above < kRooms.size(); ++above) {
    const Room& room = kRooms[above];
    const std::vector<Include> includes = IncludesOf(room.name);
    for (const std::string& permitted : room.may_include) {
      const std::size_t below = RoomOf(permitted + "/");
      EXPECT_GT(below, above) << room.name << " may include " << permitted;
      EXPECT_LT(below, kRooms.size()) << permitted << " is no room";
      EXPECT_TRUE(std::any_of(
          includes.begin(), includes.end(),
          [&](const Include& include) { return include.own && IsOf(include.name, permitted); }))
          << room.name << " includes nothing of " << permitted;
    }
  }
}

TEST(Layers, OnlyTheHostIncludesSystemHeaders) {
  for (const Room& room : kRooms) {
    if (kHosts.contains(room.name)) continue;
    for (const Include& include : IncludesOf(room.name)) {
      if (include.own) continue;
      if (room.name == kHeaderLibrariesRoom && kHeaderLibraries.contains(include.name)) continue;
      if (kToolkitRooms.contains(room.name) && include.name.starts_with("Q")) continue;
      // The compiler's own header of vector instructions.
      if (kVectorFiles.contains(include.file) && include.name == "immintrin.h") continue;
      EXPECT_TRUE(kStandardHeaders.contains(include.name))
          << include.file << " includes <" << include.name << ">";
    }
  }
}

TEST(Layers, TheCoreStartsNoThread) {
  for (const Room& room : kRooms) {
    if (!room.name.starts_with("core/")) continue;
    for (const Include& include : IncludesOf(room.name)) {
      EXPECT_FALSE(kThreadHeaders.contains(include.name))
          << include.file << " includes <" << include.name << ">";
    }
  }
}

}  // namespace
}  // namespace morvex::test
