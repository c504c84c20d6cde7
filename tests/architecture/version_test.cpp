// The version is written once, in the root CMakeLists.txt, and generated wherever it is shown.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace morvex::test {
namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Version, StandsInNoFileOfThePrograms) {
  const fs::path root = MORVEX_SOURCE_ROOT;
  const std::string version = MORVEX_VERSION;
  int generated = 0;
  for (const char* part : {"apps", "cmake", "core", "host", "packaging", "ui"}) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / part)) {
      // A drawing has coordinates that may read like a version.
      if (!entry.is_regular_file() || entry.path().extension() == ".svg") continue;
      const std::string text = ReadText(entry.path());
      EXPECT_EQ(text.find(version), std::string::npos) << entry.path();
      if (text.find("MORVEX_VERSION") != std::string::npos ||
          text.find("PROJECT_VERSION") != std::string::npos) {
        ++generated;
      }
    }
  }
  EXPECT_GE(generated, 6) << "few files show the version: were they all looked at?";
  EXPECT_NE(ReadText(root / "CMakeLists.txt").find("VERSION " + version), std::string::npos);
}

}  // namespace
}  // namespace morvex::test
