// Which rows the index finds at an offset.
#include "core/engine/matching/prefix_index.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace morvex::test {
namespace {

struct Prefix {
  std::string text;
  bool plain = true;
};

struct Found {
  std::int32_t plain = PrefixIndex::kNone;
  std::vector<std::int32_t> attempts;
  bool operator==(const Found&) const = default;
};

// Returns what trying every row in table order finds at the start of the text.
Found TryAll(const std::vector<Prefix>& prefixes, const std::string& text) {
  Found found;
  for (std::size_t row = 0; row < prefixes.size(); ++row) {
    if (!text.starts_with(prefixes[row].text)) continue;
    if (prefixes[row].plain) {
      found.plain = static_cast<std::int32_t>(row);
      break;
    }
    found.attempts.push_back(static_cast<std::int32_t>(row));
  }
  return found;
}

class Index {
 public:
  explicit Index(const std::vector<Prefix>& prefixes)
      : prefixes_(prefixes), rows_(Rows(prefixes_)), index_(rows_) {}

  // Returns what the index finds at the start of the text. Find and LookUp must agree.
  Found At(const std::string& text) const {
    const std::string padded = text + std::string(PrefixIndex::kReadAhead, '\0');
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
    Found found;
    found.plain = index_.Find(bytes, text.size(), found.attempts);
    const std::uint16_t here = 0;
    std::int32_t row = 0;
    index_.LookUp(bytes, text.size(), &here, 1, &row);
    if (found.attempts.empty()) {
      EXPECT_EQ(row, found.plain) << text;
    } else if (row != PrefixIndex::kUndecided) {
      EXPECT_EQ(found.plain, PrefixIndex::kNone) << text;
      EXPECT_EQ(found.attempts, (std::vector<std::int32_t>{PrefixIndex::OnlyAttempt(row)})) << text;
    }
    return found;
  }
  const PrefixIndex& index() const { return index_; }

 private:
  static std::vector<CompiledRow> Rows(const std::vector<Prefix>& prefixes) {
    std::vector<CompiledRow> rows(prefixes.size());
    int attempts = 0;
    for (std::size_t row = 0; row < prefixes.size(); ++row) {
      rows[row].prefix = prefixes[row].text;
      rows[row].attempt = prefixes[row].plain ? CompiledRow::kPlain : attempts++;
    }
    return rows;
  }

  std::vector<Prefix> prefixes_;
  std::vector<CompiledRow> rows_;
  PrefixIndex index_;
};

TEST(PrefixIndex, OfNoRowsFindsNothing) {
  const Index index({});
  EXPECT_EQ(index.At("abc"), Found());
  EXPECT_TRUE(index.index().rows_by_prefix().empty());
}

TEST(PrefixIndex, TheFirstPlainRowInTableOrderIsFound) {
  const Index longer_first({{"Jansens"}, {"Jansen"}});
  EXPECT_EQ(longer_first.At("Jansens!").plain, 0);
  EXPECT_EQ(longer_first.At("Jansen!").plain, 1);
  const Index shorter_first({{"Jansen"}, {"Jansens"}});
  EXPECT_EQ(shorter_first.At("Jansens!").plain, 0);
}

TEST(PrefixIndex, ARowThatAnEarlierOneShadowsIsLeftOut) {
  EXPECT_EQ(Index({{"ab"}, {"abc"}, {"ab"}, {"b"}}).index().rows_by_prefix(),
            (std::vector<std::int32_t>{0, 3}));
  EXPECT_EQ(Index({{"ab", false}, {"abc"}, {"ab"}}).index().rows_by_prefix(),
            (std::vector<std::int32_t>{0, 2, 1}));
}

TEST(PrefixIndex, AttemptsComeInTableOrderAndOnlyInFrontOfThePlainRow) {
  const Index index({{"abcdefgh", false}, {"a", false}, {"abc"}, {"ab", false}});
  EXPECT_EQ(index.At("abcdefgh!"), (Found{2, {0, 1}}));
  EXPECT_EQ(index.At("abX"), (Found{PrefixIndex::kNone, {1, 3}}));
}

TEST(PrefixIndex, APrefixThatEndsBehindTheEndIsNotFound) {
  for (const char* prefix : {"abcdef", "abcdefghijkl", "abcdefghijklmnopqrstuvwxyz"}) {
    const std::string text = prefix;
    const Index index({{text}, {"abX"}});
    EXPECT_EQ(index.At(text).plain, 0);
    EXPECT_EQ(index.At(text.substr(0, text.size() - 1)).plain, PrefixIndex::kNone);
  }
}

TEST(PrefixIndex, ManyRowsThatBeginAlikeAreToldApart) {
  std::vector<Prefix> prefixes;
  for (int i = 0; i < 5000; ++i) prefixes.push_back({"employee-record-" + std::to_string(i * 3)});
  const Index index(prefixes);
  EXPECT_EQ(index.At("employee-record-14997.").plain, 4999);
  EXPECT_EQ(index.At("employee-record-14998.").plain,
            TryAll(prefixes, "employee-record-14998.").plain);
  EXPECT_EQ(index.At("employee-record-x").plain, PrefixIndex::kNone);
}

TEST(PrefixIndex, OffsetsLookedUpTogetherGetWhatEachGetsAlone) {
  for (std::uint32_t seed = 0; seed < 500; ++seed) {
    std::mt19937 random(seed);
    const std::uint32_t letters = seed % 2 == 0 ? 1 : 3;
    std::string text;
    for (int i = 0; i < 200; ++i) text += static_cast<char>('a' + random() % letters);
    // In some lists, all steps start at the root and take the same number of bytes. Other lists
    // have steps of several sizes, and nodes far below the root.
    const std::size_t count = 1 + random() % 40;
    const std::size_t shortest = 1 + random() % 12;
    std::vector<Prefix> prefixes;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t length = shortest + random() % 20;
      prefixes.push_back({text.substr(random() % 150, length), random() % 4 != 0});
    }
    const Index index(prefixes);
    const std::string padded = text + std::string(PrefixIndex::kReadAhead, '\0');
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
    std::uint16_t offsets[PrefixIndex::kBatch];
    for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
      offsets[i] = static_cast<std::uint16_t>(i * (1 + seed % 12));
    }
    std::int32_t together[PrefixIndex::kBatch];
    index.index().LookUp(bytes, text.size(), offsets, PrefixIndex::kBatch, together);
    for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
      std::int32_t alone = 0;
      index.index().LookUp(bytes, text.size(), offsets + i, 1, &alone);
      ASSERT_EQ(together[i], alone) << "seed " << seed << " at " << offsets[i];
      index.At(text.substr(offsets[i]));
    }
  }
}

// The text is a run of one letter. At each of its offsets, the look-up follows as many steps at
// once as it ever can. It must find what trying every row finds.
TEST(PrefixIndex, HasRoomForAllStepsThatAnOffsetHasUnderWay) {
  std::vector<Prefix> prefixes;
  const auto run = [](std::size_t size) { return std::string(size, 'a'); };
  std::string others;
  for (int code = 2; code < 256; ++code) {
    if (code != 'a') others += static_cast<char>(code);
  }
  const auto comb = [&](const std::string& begin) {
    for (std::size_t more = 7; more > 0; --more) {
      for (char end = 'b'; end <= 'j'; ++end) prefixes.push_back({begin + run(more) + end});
    }
    prefixes.push_back({begin + "a"});
    prefixes.push_back({begin + "z"});
  };
  for (int i = 0; i < 100; ++i) {
    const std::string end = {static_cast<char>('b' + i % 20), static_cast<char>('b' + i / 20)};
    prefixes.push_back({run(23) + end});
  }
  for (const std::size_t depth : {16U, 9U, 8U, 2U, 1U, 0U}) {
    comb(run(depth));
    for (const char other : others) {
      prefixes.push_back({run(depth) + other + "12"});
      prefixes.push_back({run(depth) + other + "2345678", depth % 2 == 0});
    }
    prefixes.push_back({run(depth) + "\x01"});
  }
  for (const char other : others) {
    for (char digit = '0'; digit < '8'; ++digit) {
      prefixes.push_back({std::string(1, other) + digit + "1"});
    }
  }
  const Index index(prefixes);
  const std::string text = run(100);
  const std::string padded = text + std::string(PrefixIndex::kReadAhead, '\0');
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
  std::uint16_t offsets[PrefixIndex::kBatch];
  for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i)
    offsets[i] = static_cast<std::uint16_t>(i * 6);
  std::int32_t found[PrefixIndex::kBatch];
  index.index().LookUp(bytes, text.size(), offsets, PrefixIndex::kBatch, found);
  for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
    EXPECT_EQ(found[i], TryAll(prefixes, text.substr(offsets[i])).plain) << offsets[i];
  }
}

TEST(PrefixIndex, FindsWhatTryingEveryRowFinds) {
  for (std::uint32_t seed = 0; seed < 2000; ++seed) {
    std::mt19937 random(seed);
    const auto text = [&random](std::size_t size) {
      std::string made(size, ' ');
      for (char& byte : made) byte = random() % 8 == 0 ? 'b' : 'a';
      return made;
    };
    std::vector<Prefix> prefixes;
    for (std::size_t i = 1 + random() % 12; i > 0; --i) {
      prefixes.push_back({text(1 + random() % 30), random() % 3 != 0});
    }
    const Index index(prefixes);
    for (int i = 0; i < 40; ++i) {
      std::string offset = random() % 2 == 0 ? prefixes[random() % prefixes.size()].text : "";
      offset += text(random() % 30);
      const Found found = index.At(offset);
      const Found wanted = TryAll(prefixes, offset);
      ASSERT_EQ(found.plain, wanted.plain) << "seed " << seed << " at " << offset;
      ASSERT_EQ(found.attempts, wanted.attempts) << "seed " << seed << " at " << offset;
      if (wanted == Found() || offset.size() < 16) continue;
      const HashFilter& filter = index.index().filter();
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(offset.data());
      bool may_hold = false;
      switch (filter.form()) {
        case HashFilter::Form::kBytes:
          may_hold = filter.MayHold<HashFilter::Form::kBytes>(bytes) != 0;
          break;
        case HashFilter::Form::kBits:
          may_hold = filter.MayHold<HashFilter::Form::kBits>(bytes) != 0;
          break;
        case HashFilter::Form::kLengths:
          may_hold = filter.MayHold<HashFilter::Form::kLengths>(bytes) != 0;
          break;
      }
      may_hold = may_hold && (!filter.has_second_probe() || filter.PassesSecondProbe(bytes) != 0);
      ASSERT_TRUE(may_hold) << "seed " << seed << " at " << offset;
    }
  }
}

}  // namespace
}  // namespace morvex::test
