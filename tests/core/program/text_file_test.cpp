// Text files line by line.
#include "core/program/text_file.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/memory_files.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

std::vector<std::string> LinesOf(MemoryFiles& files, const std::string& bytes) {
  files.AddFile("/file", bytes);
  LineReader reader;
  EXPECT_EQ(reader.Open(files, "/file"), ErrorNumber::kNone);
  std::vector<std::string> lines;
  for (std::string line; reader.Next(line);) lines.push_back(line);
  std::string behind = "something";
  EXPECT_FALSE(reader.Next(behind));
  EXPECT_EQ(behind, "");
  return lines;
}

struct LinesCase {
  std::string what;
  std::string bytes;
  std::vector<std::string> lines;
};

TEST(TextFile, ALineEndsAtLfWithOneCrBeforeItOrAtTheEndOfTheFile) {
  const std::vector<LinesCase> cases = {
      {"a line ends at LF", "a\nb\n", {"a", "b"}},
      {"an empty line counts", "\n\n", {"", ""}},
      {"one CR before the LF is not part of the line", "a\r\nb\r\n", {"a", "b"}},
      {"a second CR is", "a\r\r\n", {"a\r"}},
      {"and so is one without LF", "a\rb\n\r\n", {"a\rb", ""}},
      {"a last line without LF counts", "a\nb", {"a", "b"}},
      {"with its CR", "a\nb\r", {"a", "b\r"}},
      {"were it a CR alone", "\r", {"\r"}},
      {"an empty file has no line", "", {}},
      {"bytes are taken as they stand", "\0\xFF\x1A\n"s, {"\0\xFF\x1A"s}},
  };
  for (const LinesCase& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryFiles files;
    EXPECT_EQ(LinesOf(files, row.bytes), row.lines);
  }
}

TEST(TextFile, LinesOverTheBordersOfBlocksStayWhole) {
  constexpr std::size_t kBlock = std::size_t{256} << 10;
  for (std::size_t before = kBlock - 3; before <= kBlock + 1; ++before) {
    const std::string first(before, 'x');
    MemoryFiles files;
    const std::vector<std::string> lines = LinesOf(files, first + "\r\nsecond\r\nthird");
    ASSERT_EQ(lines.size(), 3u) << before;
    EXPECT_TRUE(lines[0] == first) << before;
    EXPECT_EQ(lines[1], "second") << before;
    EXPECT_EQ(lines[2], "third") << before;
  }
}

TEST(TextFile, ALineOfManyBlocksStaysWhole) {
  const std::string line(1'000'000, 'x');
  MemoryFiles files;
  const std::vector<std::string> lines = LinesOf(files, line + "\n" + line);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[0] == line && lines[1] == line);
}

TEST(TextFile, AFileThatCannotBeOpenedGivesItsErrorAndNoLine) {
  MemoryFiles files;
  LineReader reader;
  EXPECT_EQ(reader.Open(files, "/none"), ErrorNumber::kFileNotFound);
  std::string line = "something";
  EXPECT_FALSE(reader.Next(line));
  EXPECT_EQ(line, "");
}

TEST(TextFile, AReadErrorEndsTheLines) {
  MemoryFiles files;
  files.AddFile("/file", "a\nb\n");
  LineReader reader;
  ASSERT_EQ(reader.Open(files, "/file"), ErrorNumber::kNone);
  EXPECT_EQ(reader.error(), ErrorNumber::kNone);
  files.fail = [](const std::string&, const std::string&) { return ErrorNumber::kDeviceIo; };
  std::string line;
  EXPECT_FALSE(reader.Next(line));
  EXPECT_EQ(reader.error(), ErrorNumber::kDeviceIo);
  files.fail = nullptr;
  EXPECT_FALSE(reader.Next(line)) << "the error stays";
}

TEST(TextFile, ALineThatAReadErrorCutsIsNotGiven) {
  MemoryFiles files;
  files.AddFile("/file", "first\n" + std::string(500'000, 'x') + "\nlast\n");
  LineReader reader;
  ASSERT_EQ(reader.Open(files, "/file"), ErrorNumber::kNone);
  int reads = 0;
  files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads == 2 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  std::string line;
  ASSERT_TRUE(reader.Next(line));
  EXPECT_EQ(line, "first");
  EXPECT_FALSE(reader.Next(line));
  EXPECT_EQ(reader.error(), ErrorNumber::kDeviceIo);
}

}  // namespace
}  // namespace morvex::test
