// The page on reliability names a test for each of its promises. Checks that those tests exist.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace morvex::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFewestRows = 40;

std::string ReadText(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

bool IsOfAName(char byte) {
  return byte == '_' || std::isalnum(static_cast<unsigned char>(byte)) != 0;
}

// Removes the name at the start of the text and returns it.
std::string TakeName(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsOfAName);
  std::string name(text.begin(), end);
  text.remove_prefix(name.size());
  return name;
}

bool Take(std::string_view& text, std::string_view part) {
  if (!text.starts_with(part)) return false;
  text.remove_prefix(part.size());
  return true;
}

// Returns "Suite.Test" for each pair of names between `open` and `close`. `comma`, blanks and line
// breaks separate the two names.
std::set<std::string> Names(std::string_view text, std::string_view open, std::string_view comma,
                            std::string_view close) {
  std::set<std::string> names;
  for (std::size_t at = text.find(open); at != std::string_view::npos; at = text.find(open)) {
    text.remove_prefix(at + open.size());
    std::string_view rest = text;
    const std::string suite = TakeName(rest);
    if (!Take(rest, comma)) continue;
    rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(" \n")));
    const std::string test = TakeName(rest);
    if (!suite.empty() && !test.empty() && Take(rest, close)) names.insert(suite + "." + test);
  }
  return names;
}

TEST(ReliabilityPage, NamesTestsThatExist) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  std::set<std::string> tests;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "tests")) {
    if (entry.path().extension() != ".cpp") continue;
    const std::string source = ReadText(entry.path());
    for (const char* open : {"TEST(", "TEST_F(", "TEST_P("}) {
      tests.merge(Names(source, open, ",", ")"));
    }
  }
  const std::set<std::string> named =
      Names(ReadText(root / "docs/reliability.md"), "| `", ".", "` |");
  EXPECT_GE(named.size(), kFewestRows);
  for (const std::string& name : named) EXPECT_TRUE(tests.contains(name)) << name;
}

// A row of the page's table must name one test, and the result: passed, or skipped with a reason.
TEST(ReliabilityPage, GivesEveryRowATestAndAResult) {
  std::istringstream page(ReadText(fs::path(MORVEX_SOURCE_ROOT) / "docs/reliability.md"));
  std::size_t rows = 0;
  bool in_tests = false;
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("|")) in_tests = false;
    if (in_tests && !line.starts_with("|---")) {
      ++rows;
      EXPECT_EQ(std::count(line.begin(), line.end(), '|'), 5) << line;
      EXPECT_EQ(Names(line, "| `", ".", "` |").size(), 1u) << line;
      EXPECT_TRUE(line.ends_with("| passed |") || line.find("| skipped: ") != std::string::npos)
          << line;
    }
    if (line.ends_with("| test | result |")) in_tests = true;
  }
  EXPECT_GE(rows, kFewestRows);
}

}  // namespace
}  // namespace morvex::test
