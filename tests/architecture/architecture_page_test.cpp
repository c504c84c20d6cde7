// Checks the page on the architecture against the sources. The page must list every room (a folder
// that holds sources) and no other folder. The files that the page names must exist, and its walks
// through the files must be short.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace morvex::test {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = MORVEX_SOURCE_ROOT;

std::vector<std::string> PageLines() {
  std::ifstream page(kRoot / "docs/architecture.md");
  std::vector<std::string> lines;
  for (std::string line; std::getline(page, line);) lines.push_back(line);
  return lines;
}

// The folders that hold sources.
std::set<std::string> Rooms() {
  std::set<std::string> rooms;
  for (const char* part : {"apps", "core", "host", "ui"}) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kRoot / part)) {
      const fs::path extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp") continue;
      rooms.insert(fs::relative(entry.path().parent_path(), kRoot).string());
    }
  }
  return rooms;
}

bool IsSource(const std::string& text) {
  const bool has_ending = text.ends_with(".cpp") || text.ends_with(".h");
  return has_ending && text.find('/') != std::string::npos;
}

// The texts between backticks in the line.
std::vector<std::string> Quoted(const std::string& line) {
  std::vector<std::string> quoted;
  for (std::size_t begin = line.find('`'); begin != std::string::npos;) {
    const std::size_t end = line.find('`', begin + 1);
    if (end == std::string::npos) break;
    quoted.push_back(line.substr(begin + 1, end - begin - 1));
    begin = line.find('`', end + 1);
  }
  return quoted;
}

// The source files that the page's section under `heading` names.
std::set<std::string> FilesIn(const std::string& heading) {
  std::set<std::string> files;
  bool is_inside = false;
  for (const std::string& line : PageLines()) {
    if (line.starts_with("##")) is_inside = line == heading;
    if (!is_inside) continue;
    for (const std::string& name : Quoted(line)) {
      if (IsSource(name)) files.insert(name);
    }
  }
  return files;
}

TEST(ArchitecturePage, ItsTreeHasEveryRoomAndNoOther) {
  std::set<std::string> listed;
  for (const std::string& line : PageLines()) {
    if (line.starts_with("##")) break;
    const std::string first = line.substr(0, line.find(' '));
    const bool is_room = first.starts_with("apps/") || first.starts_with("core/") ||
                         first.starts_with("host/") || first.starts_with("ui/");
    if (!is_room) continue;
    EXPECT_TRUE(listed.insert(first).second) << first << " is listed twice";
  }
  EXPECT_EQ(listed, Rooms());
}

TEST(ArchitecturePage, TheFilesThatItNamesExist) {
  std::size_t count = 0;
  for (const std::string& line : PageLines()) {
    for (const std::string& name : Quoted(line)) {
      if (!IsSource(name)) continue;
      ++count;
      EXPECT_TRUE(fs::is_regular_file(kRoot / name)) << name;
    }
  }
  EXPECT_GT(count, 20u);
}

TEST(ArchitecturePage, ItsWalksAreShort) {
  const std::map<std::string, std::size_t> most = {
      {"### The bytes of one file", 11}, {"### A row of the list", 8}, {"### A click on GO !", 6}};
  for (const auto& [heading, files] : most) {
    const std::size_t named = FilesIn(heading).size();
    EXPECT_GE(named, 3u) << heading;
    EXPECT_LE(named, files) << heading;
  }
}

}  // namespace
}  // namespace morvex::test
