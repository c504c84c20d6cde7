// The page on reliability names a test for each of its promises: those tests exist.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

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

// Every match's groups one and two, joined by a point.
std::set<std::string> Names(const std::string& text, const std::regex& pattern) {
  std::set<std::string> names;
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    names.insert((*at)[1].str() + "." + (*at)[2].str());
  }
  return names;
}

TEST(ReliabilityPage, NamesTestsThatExist) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  std::set<std::string> tests;
  const std::regex definition(R"(TEST(?:_F|_P)?\((\w+),\s*(\w+)\))");
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "tests")) {
    if (entry.path().extension() == ".cpp") tests.merge(Names(ReadText(entry.path()), definition));
  }
  const std::set<std::string> named =
      Names(ReadText(root / "docs/reliability.md"), std::regex(R"(\| `(\w+)\.(\w+)` \|)"));
  EXPECT_GE(named.size(), kFewestRows);
  for (const std::string& name : named) EXPECT_TRUE(tests.contains(name)) << name;
}

}  // namespace
}  // namespace morvex::test
