// When a stream pauses, UnfinishedPrefixes finds the first offset from which the bytes up to the
// pause begin a prefix without finishing it.
#include "core/engine/matching/unfinished_prefixes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/engine/matching/bytes_in_memory.h"

namespace morvex::test {
namespace {

// Returns FirstOffset for each offset of `from`, all from one object.
std::vector<std::uint64_t> FirstOffsets(std::vector<std::string> prefixes, const std::string& bytes,
                                        const std::vector<std::uint64_t>& from) {
  std::sort(prefixes.begin(), prefixes.end());
  std::vector<CompiledRow> rows(prefixes.size());
  std::vector<std::int32_t> in_order;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    rows[row].prefix = prefixes[row];
    in_order.push_back(static_cast<std::int32_t>(row));
  }
  UnfinishedPrefixes unfinished(rows, in_order);
  MemorySource source(bytes);
  InputWindow window;
  window.Open(source);
  EXPECT_EQ(window.MoveTo(0), ErrorNumber::kNone);
  std::vector<std::uint64_t> found;
  for (const std::uint64_t offset : from) found.push_back(unfinished.FirstOffset(window, offset));
  return found;
}

using Offsets = std::vector<std::uint64_t>;

TEST(UnfinishedPrefixes, TheFirstOffsetFromWhichTheBytesBeginAPrefixIsFound) {
  EXPECT_EQ(FirstOffsets({"Jansen", "nsx"}, "..Jans", {0, 3, 5}), (Offsets{2, 4, 6}));
}

TEST(UnfinishedPrefixes, AWholePrefixIsNotUnfinished) {
  EXPECT_EQ(FirstOffsets({"ab"}, "..ab", {0}), (Offsets{4}));
  EXPECT_EQ(FirstOffsets({"ab", "abc"}, "..ab", {0}), (Offsets{2}));
}

TEST(UnfinishedPrefixes, WithoutPrefixesEverythingIsSettled) {
  EXPECT_EQ(FirstOffsets({}, "abc", {0, 2}), (Offsets{3, 3}));
}

}  // namespace
}  // namespace morvex::test
