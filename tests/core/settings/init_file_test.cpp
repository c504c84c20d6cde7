// The lines of a settings file as data.
#include "core/settings/init_file.h"

#include <gtest/gtest.h>

#include "tests/support/memory_files.h"

namespace morvex::test {
namespace {

InitFile Parsed(const std::string& bytes) {
  MemoryFiles files;
  files.AddFile("/Init.dat", bytes);
  const InitFile file = ParseInitFile(files, "/Init.dat");
  EXPECT_TRUE(file.is_open);
  EXPECT_EQ(file.error, ErrorNumber::kNone);
  return file;
}

// Returns one line for each extension, as in "1.txt".
std::vector<std::string> ExtensionsOf(const InitFile& file) {
  std::vector<std::string> lines;
  for (const ExtensionLine& line : file.extensions) {
    lines.push_back((line.selected ? "1" : "0") + line.extension);
  }
  return lines;
}

TEST(ParseInitFile, TakesEveryValueByItsLine) {
  const InitFile file = Parsed("/s\r\n/t\r\n/l.txt\r\nlog=1\r\nsep=a=b\r\njok=*\r\n1.txt\r\n0.doc");
  EXPECT_EQ(file.source, "/s");
  EXPECT_EQ(file.target, "/t");
  EXPECT_EQ(file.list, "/l.txt");
  EXPECT_EQ(file.logging, 1);
  EXPECT_EQ(file.separator, "a=b");
  EXPECT_EQ(file.wildcard, "*");
  EXPECT_EQ(ExtensionsOf(file), (std::vector<std::string>{"1.txt", "0.doc"}));
}

TEST(ParseInitFile, ALineThatIsMissingHasNoValue) {
  const InitFile file = Parsed("/s\n\n/l.txt\n");
  EXPECT_EQ(file.source, "/s");
  EXPECT_EQ(file.target, "") << "an empty line is a value";
  EXPECT_EQ(file.list, "/l.txt");
  EXPECT_EQ(file.logging, std::nullopt);
  EXPECT_EQ(file.separator, std::nullopt);
  EXPECT_EQ(file.wildcard, std::nullopt);
  EXPECT_TRUE(file.extensions.empty());
}

TEST(ParseInitFile, ANumberThatIsTooLargeIsNoValue) {
  EXPECT_EQ(Parsed("\n\n\nlog=99999\n").logging, std::nullopt);
  EXPECT_EQ(Parsed("\n\n\nlog=x\n").logging, 0);
  EXPECT_EQ(Parsed("\n\n\n2\n").logging, 2);
}

TEST(ParseInitFile, AnEmptyLineEndsTheExtensions) {
  EXPECT_EQ(ExtensionsOf(Parsed("\n\n\n\n\n\nx.txt\n0\n\n1.doc\n")),
            (std::vector<std::string>{"1.txt", "0"}));
}

TEST(ParseInitFile, AFileThatCannotBeReadHasItsErrorAndNoValues) {
  MemoryFiles files;
  const InitFile none = ParseInitFile(files, "/none");
  EXPECT_FALSE(none.is_open);
  EXPECT_EQ(none.error, ErrorNumber::kFileNotFound);
  files.AddFile("/Init.dat", "/s\n/t\n");
  files.fail = [](const std::string& call, const std::string&) {
    return call == "ReadAt" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  const InitFile unread = ParseInitFile(files, "/Init.dat");
  EXPECT_TRUE(unread.is_open);
  EXPECT_EQ(unread.error, ErrorNumber::kDeviceIo);
  EXPECT_EQ(unread.source, std::nullopt);
}

}  // namespace
}  // namespace morvex::test
