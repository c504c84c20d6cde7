// No place where a key stands is left out, whatever way the filter goes.
#include "core/engine/matching/candidate_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace morvex::test {
namespace {

std::vector<CompiledRow> PlainRows(const std::vector<std::string>& keys) {
  std::vector<CompiledRow> rows(keys.size());
  for (std::size_t row = 0; row < keys.size(); ++row) rows[row].prefix = keys[row];
  return rows;
}

class Filtered {
 public:
  explicit Filtered(const std::vector<std::string>& keys)
      : keys_(keys),
        rows_(PlainRows(keys_)),
        index_(rows_),
        filter_(index_, rows_, Kernel::kPortable) {}

  std::vector<std::size_t> Places(const std::string& text) {
    const std::string padded = text + std::string(ScanTables::kReadAhead, '\0');
    std::vector<std::uint16_t> places(CandidateFilter::kRoom);
    const std::size_t found = filter_.Find(reinterpret_cast<const std::uint8_t*>(padded.data()),
                                           text.size(), places.data());
    return {places.begin(), places.begin() + static_cast<std::ptrdiff_t>(found)};
  }

 private:
  std::vector<std::string> keys_;
  std::vector<CompiledRow> rows_;
  PrefixIndex index_;
  CandidateFilter filter_;
};

bool Holds(const std::vector<std::size_t>& places, std::size_t place) {
  return std::binary_search(places.begin(), places.end(), place);
}

TEST(CandidateFilter, WithoutKeysFindsNothing) { EXPECT_TRUE(Filtered({}).Places("abc").empty()); }

TEST(CandidateFilter, FindsKeysOfEveryLength) {
  std::string key;
  for (std::size_t length = 1; length <= 40; ++length) {
    key += static_cast<char>('a' + length % 26);
    Filtered filtered({key});
    EXPECT_TRUE(Holds(filtered.Places("?" + key + "?"), 1)) << key;
    EXPECT_TRUE(Holds(filtered.Places(key), 0)) << key;
  }
}

TEST(CandidateFilter, ShortAndLongKeysTogether) {
  Filtered filtered({"x", "yz", "abc", "longer key"});
  const std::vector<std::size_t> places = filtered.Places("x-yz-abc-longer key-");
  for (const std::size_t place : {0U, 2U, 5U, 9U}) EXPECT_TRUE(Holds(places, place)) << place;
}

TEST(CandidateFilter, GoesOnFindingWhereEveryPlaceIsOne) {
  Filtered filtered({"aaaa"});
  const std::string dense(CandidateFilter::kBlock, 'a');
  // The scan is left out after a dense block, and tried again later.
  for (int block = 0; block < 200; ++block) {
    EXPECT_EQ(filtered.Places(dense).size(), dense.size() - 3) << block;
  }
  EXPECT_EQ(filtered.Places("..aaaa.."), (std::vector<std::size_t>{2}));
}

TEST(CandidateFilter, ALongListHasALargerTable) {
  std::vector<std::string> keys;
  for (int i = 0; i < 5000; ++i) keys.push_back("key " + std::to_string(i) + "!");
  Filtered filtered(keys);
  for (const std::string& key : keys) ASSERT_TRUE(Holds(filtered.Places("." + key), 1)) << key;
}

}  // namespace
}  // namespace morvex::test
