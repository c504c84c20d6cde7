// The filter returns every offset at which a prefix stands, whichever way of searching it uses.
#include "core/engine/matching/candidate_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace morvex::test {
namespace {

std::vector<CompiledRow> PlainRows(const std::vector<std::string>& prefixes) {
  std::vector<CompiledRow> rows(prefixes.size());
  for (std::size_t row = 0; row < prefixes.size(); ++row) rows[row].prefix = prefixes[row];
  return rows;
}

class Filtered {
 public:
  explicit Filtered(const std::vector<std::string>& prefixes)
      : prefixes_(prefixes),
        rows_(PlainRows(prefixes_)),
        index_(rows_),
        filter_(index_, rows_, Kernel::kPortable) {}

  std::vector<std::size_t> Offsets(const std::string& text) {
    const std::string padded = text + std::string(ScanTables::kReadAhead, '\0');
    std::vector<std::uint16_t> offsets(CandidateFilter::kRoom);
    const std::size_t found = filter_.Find(reinterpret_cast<const std::uint8_t*>(padded.data()),
                                           text.size(), offsets.data());
    return {offsets.begin(), offsets.begin() + static_cast<std::ptrdiff_t>(found)};
  }

 private:
  std::vector<std::string> prefixes_;
  std::vector<CompiledRow> rows_;
  PrefixIndex index_;
  CandidateFilter filter_;
};

bool Holds(const std::vector<std::size_t>& offsets, std::size_t offset) {
  return std::binary_search(offsets.begin(), offsets.end(), offset);
}

TEST(CandidateFilter, WithoutPrefixesFindsNothing) {
  EXPECT_TRUE(Filtered({}).Offsets("abc").empty());
}

TEST(CandidateFilter, FindsPrefixesOfEveryLength) {
  std::string prefix;
  for (std::size_t length = 1; length <= 40; ++length) {
    prefix += static_cast<char>('a' + length % 26);
    Filtered filtered({prefix});
    EXPECT_TRUE(Holds(filtered.Offsets("?" + prefix + "?"), 1)) << prefix;
    EXPECT_TRUE(Holds(filtered.Offsets(prefix), 0)) << prefix;
  }
}

TEST(CandidateFilter, ShortAndLongPrefixesTogether) {
  Filtered filtered({"x", "yz", "abc", "longer key"});
  const std::vector<std::size_t> offsets = filtered.Offsets("x-yz-abc-longer key-");
  for (const std::size_t offset : {0U, 2U, 5U, 9U}) EXPECT_TRUE(Holds(offsets, offset)) << offset;
}

TEST(CandidateFilter, GoesOnFindingWhereEveryOffsetIsOne) {
  Filtered filtered({"aaaa"});
  const std::string dense(CandidateFilter::kBlock, 'a');
  // After a dense block, the filter skips the scan for the next blocks; for later blocks it tries
  // the scan again.
  for (int block = 0; block < 200; ++block) {
    EXPECT_EQ(filtered.Offsets(dense).size(), dense.size() - 3) << block;
  }
  EXPECT_EQ(filtered.Offsets("..aaaa.."), (std::vector<std::size_t>{2}));
}

TEST(CandidateFilter, ALongListHasALargerTable) {
  std::vector<std::string> prefixes;
  for (int i = 0; i < 5000; ++i) prefixes.push_back("key " + std::to_string(i) + "!");
  Filtered filtered(prefixes);
  for (const std::string& prefix : prefixes)
    ASSERT_TRUE(Holds(filtered.Offsets("." + prefix), 1)) << prefix;
}

}  // namespace
}  // namespace morvex::test
