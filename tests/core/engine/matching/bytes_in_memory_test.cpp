// Bytes in memory, read and written like the bytes of files.
#include "core/engine/matching/bytes_in_memory.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

TEST(MemorySource, GivesWhatStandsAtAnOffsetAndNothingBehindTheEnd) {
  MemorySource file("abcde");
  std::string into(3, '.');
  const auto read = [&](std::uint64_t offset) {
    const Result<std::size_t> count = file.ReadAt(offset, into.data(), into.size());
    EXPECT_TRUE(count);
    return into.substr(0, count.value);
  };
  EXPECT_EQ(read(0), "abc");
  EXPECT_EQ(read(3), "de");
  EXPECT_EQ(read(5), "");
  EXPECT_EQ(read(99), "");
}

TEST(MemorySink, KeepsWhatIsWrittenLastAtEveryOffset) {
  MemorySink file;
  EXPECT_EQ(file.WriteAt(2, "cde"), ErrorNumber::kNone);
  EXPECT_EQ(file.WriteAt(0, "ABC"), ErrorNumber::kNone);
  EXPECT_EQ(file.WriteAt(9, ""), ErrorNumber::kNone);
  EXPECT_EQ(file.Close(), ErrorNumber::kNone);
  EXPECT_EQ(file.bytes(), std::string("ABCde\0\0\0\0", 9));
}

}  // namespace
}  // namespace morvex::test
