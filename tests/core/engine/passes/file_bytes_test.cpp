// Open files as the source and the sink of a substitution.
#include "core/engine/passes/file_bytes.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/byte_streams.h"
#include "tests/support/memory_files.h"

namespace morvex::test {
namespace {

TEST(FileSource, ReadsTheFile) {
  MemoryFiles files;
  files.AddFile("/file", "abcde");
  const auto file = std::move(files.OpenForReading("/file").value);
  FileSource source(*file);
  std::string into(3, '.');
  EXPECT_EQ(source.ReadAt(2, into.data(), into.size()).value, 3u);
  EXPECT_EQ(into, "cde");
  EXPECT_FALSE(source.MustWait());
  files.fail = [](const std::string&, const std::string&) { return ErrorNumber::kDeviceIo; };
  EXPECT_EQ(source.ReadAt(0, into.data(), 1).error, ErrorNumber::kDeviceIo);
}

TEST(FileSource, PausesWhereTheFileDoes) {
  const auto next_size = [] { return 2; };
  PiecesInput stream("abcd", next_size);
  FileSource source(stream);
  EXPECT_TRUE(source.MustWait());
  char into = ' ';
  EXPECT_EQ(source.ReadAt(0, &into, 1).value, 1u);
  EXPECT_FALSE(source.MustWait());
}

TEST(FileSink, WritesAndClosesTheFile) {
  MemoryFiles files;
  const auto file = std::move(files.CreateWorkFile("/file", 0600).value);
  FileSink sink(*file);
  EXPECT_EQ(sink.WriteAt(0, "abc"), ErrorNumber::kNone);
  EXPECT_EQ(sink.WriteAt(1, "X"), ErrorNumber::kNone);
  files.fail = [](const std::string& call, const std::string&) {
    return call == "Close" ? ErrorNumber::kDiskFull : ErrorNumber::kNone;
  };
  EXPECT_EQ(sink.Close(), ErrorNumber::kDiskFull);
  EXPECT_EQ(files.Bytes("/file"), "aXc");
}

}  // namespace
}  // namespace morvex::test
