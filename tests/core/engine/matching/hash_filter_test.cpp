// The filter passes every offset where a prefix begins, and few others.
#include "core/engine/matching/hash_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

namespace morvex::test {
namespace {

const std::uint8_t* Bytes(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::uint64_t Begin(const std::string& prefix, std::size_t bytes) {
  return Load64(Bytes(prefix + std::string(8, '\0'))) & FirstBytesMask(bytes);
}

HashFilter FilterOf(const std::vector<std::string>& prefixes) {
  std::map<std::size_t, PrefixStarts> by_length;
  for (const std::string& prefix : prefixes) {
    const std::size_t bytes = std::min<std::size_t>(prefix.size(), 8);
    by_length[bytes].bytes = bytes;
    by_length[bytes].distinct.push_back(Begin(prefix, bytes));
  }
  std::vector<PrefixStarts> begins;
  for (const auto& [bytes, each] : by_length) begins.push_back(each);
  return HashFilter(begins);
}

bool MayHold(const HashFilter& filter, const std::string& text) {
  const std::string padded = text + std::string(16, '\0');
  switch (filter.form()) {
    case HashFilter::Form::kBytes:
      return filter.MayHold<HashFilter::Form::kBytes>(Bytes(padded)) != 0;
    case HashFilter::Form::kBits:
      return filter.MayHold<HashFilter::Form::kBits>(Bytes(padded)) != 0;
    case HashFilter::Form::kLengths:
      return filter.MayHold<HashFilter::Form::kLengths>(Bytes(padded)) != 0;
  }
  return false;
}

std::vector<std::string> RandomPrefixes(std::size_t count, std::size_t least, std::size_t most) {
  std::mt19937 random(1);
  std::vector<std::string> prefixes(count);
  for (std::string& prefix : prefixes) {
    prefix.resize(least + random() % (most - least + 1));
    for (char& byte : prefix) byte = static_cast<char>('a' + random() % 26);
  }
  return prefixes;
}

TEST(HashFilter, WithoutPrefixesPassesNothing) { EXPECT_FALSE(MayHold(FilterOf({}), "abc")); }

TEST(HashFilter, OfEachFormPassesEveryPrefixAndFewOtherOffsets) {
  struct Case {
    std::size_t prefixes, least, most;
    HashFilter::Form form;
  };
  for (const Case& each :
       {Case{100, 6, 6, HashFilter::Form::kBytes}, Case{3000, 8, 20, HashFilter::Form::kBits},
        Case{50'000, 8, 8, HashFilter::Form::kBits}, Case{500, 4, 12, HashFilter::Form::kLengths},
        Case{50'000, 5, 9, HashFilter::Form::kLengths}}) {
    const std::vector<std::string> prefixes = RandomPrefixes(each.prefixes, each.least, each.most);
    const HashFilter filter = FilterOf(prefixes);
    EXPECT_EQ(filter.form(), each.form) << each.prefixes;
    for (const std::string& prefix : prefixes)
      ASSERT_TRUE(MayHold(filter, prefix + "...")) << prefix;
    std::mt19937 random(2);
    int passed = 0;
    for (int i = 0; i < 1000; ++i) {
      std::string other(8, ' ');
      for (char& byte : other) byte = static_cast<char>('A' + random() % 26);
      if (MayHold(filter, other)) ++passed;
    }
    EXPECT_LT(passed, 250) << each.prefixes << " keys";
  }
}

TEST(HashFilter, LooksBehindEightBytesWhereAllPrefixesAreLonger) {
  const std::vector<std::string> prefixes = {"patient-0012", "patient-0034 of ward 7"};
  HashFilter filter = FilterOf(prefixes);
  EXPECT_FALSE(filter.has_second_probe());
  filter.AddSecondProbe({prefixes.begin(), prefixes.end()}, 12);
  ASSERT_TRUE(filter.has_second_probe());
  for (const std::string& prefix : prefixes)
    EXPECT_TRUE(filter.PassesSecondProbe(Bytes(prefix + "0123456789")));
  int passed = 0;
  for (int i = 1000; i < 2000; ++i) {
    if (filter.PassesSecondProbe(Bytes("patient-" + std::to_string(i) + "....")) != 0) ++passed;
  }
  EXPECT_LT(passed, 50);
}

}  // namespace
}  // namespace morvex::test
