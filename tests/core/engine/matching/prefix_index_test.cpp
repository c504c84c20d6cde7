// Which rows the index finds at a place.
#include "core/engine/matching/prefix_index.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace morvex::test {
namespace {

struct Key {
  std::string text;
  bool plain = true;
};

struct Found {
  std::int32_t plain = PrefixIndex::kNone;
  std::vector<std::int32_t> attempts;
  bool operator==(const Found&) const = default;
};

// What a look at every row in table order gives.
Found LookAtAll(const std::vector<Key>& keys, const std::string& text) {
  Found found;
  for (std::size_t row = 0; row < keys.size(); ++row) {
    if (!text.starts_with(keys[row].text)) continue;
    if (keys[row].plain) {
      found.plain = static_cast<std::int32_t>(row);
      break;
    }
    found.attempts.push_back(static_cast<std::int32_t>(row));
  }
  return found;
}

class Index {
 public:
  explicit Index(const std::vector<Key>& keys) : keys_(keys), rows_(Rows(keys_)), index_(rows_) {}

  // The two ways to look say the same.
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
  static std::vector<CompiledRow> Rows(const std::vector<Key>& keys) {
    std::vector<CompiledRow> rows(keys.size());
    int attempts = 0;
    for (std::size_t row = 0; row < keys.size(); ++row) {
      rows[row].prefix = keys[row].text;
      rows[row].attempt = keys[row].plain ? CompiledRow::kPlain : attempts++;
    }
    return rows;
  }

  std::vector<Key> keys_;
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

TEST(PrefixIndex, AKeyThatEndsBehindTheEndIsNotFound) {
  for (const char* key : {"abcdef", "abcdefghijkl", "abcdefghijklmnopqrstuvwxyz"}) {
    const std::string text = key;
    const Index index({{text}, {"abX"}});
    EXPECT_EQ(index.At(text).plain, 0);
    EXPECT_EQ(index.At(text.substr(0, text.size() - 1)).plain, PrefixIndex::kNone);
  }
}

TEST(PrefixIndex, ManyRowsThatBeginAlikeAreToldApart) {
  std::vector<Key> keys;
  for (int i = 0; i < 5000; ++i) keys.push_back({"employee-record-" + std::to_string(i * 3)});
  const Index index(keys);
  EXPECT_EQ(index.At("employee-record-14997.").plain, 4999);
  EXPECT_EQ(index.At("employee-record-14998.").plain,
            LookAtAll(keys, "employee-record-14998.").plain);
  EXPECT_EQ(index.At("employee-record-x").plain, PrefixIndex::kNone);
}

TEST(PrefixIndex, PlacesLookedAtTogetherGetWhatEachGetsAlone) {
  for (std::uint32_t seed = 0; seed < 500; ++seed) {
    std::mt19937 random(seed);
    const std::uint32_t letters = seed % 2 == 0 ? 1 : 3;
    std::string text;
    for (int i = 0; i < 200; ++i) text += static_cast<char>('a' + random() % letters);
    // One list has a single step for all keys, another steps of several lengths and deep nodes.
    const std::size_t count = 1 + random() % 40;
    const std::size_t shortest = 1 + random() % 12;
    std::vector<Key> keys;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t length = shortest + random() % 20;
      keys.push_back({text.substr(random() % 150, length), random() % 4 != 0});
    }
    const Index index(keys);
    const std::string padded = text + std::string(PrefixIndex::kReadAhead, '\0');
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
    std::uint16_t places[PrefixIndex::kBatch];
    for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
      places[i] = static_cast<std::uint16_t>(i * (1 + seed % 12));
    }
    std::int32_t together[PrefixIndex::kBatch];
    index.index().LookUp(bytes, text.size(), places, PrefixIndex::kBatch, together);
    for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
      std::int32_t alone = 0;
      index.index().LookUp(bytes, text.size(), places + i, 1, &alone);
      ASSERT_EQ(together[i], alone) << "seed " << seed << " at " << places[i];
      index.At(text.substr(places[i]));
    }
  }
}

// Every way to go on in a run of one letter is there at every depth: in groups and nodes, behind
// short steps and long ones. As many steps are under way at once as there can be.
TEST(PrefixIndex, HasRoomForAllStepsThatAPlaceHasUnderWay) {
  std::vector<Key> keys;
  const auto run = [](std::size_t size) { return std::string(size, 'a'); };
  std::string others;
  for (int code = 2; code < 256; ++code) {
    if (code != 'a') others += static_cast<char>(code);
  }
  const auto comb = [&](const std::string& begin) {
    for (std::size_t more = 7; more > 0; --more) {
      for (char end = 'b'; end <= 'j'; ++end) keys.push_back({begin + run(more) + end});
    }
    keys.push_back({begin + "a"});
    keys.push_back({begin + "z"});
  };
  for (int i = 0; i < 100; ++i) {
    const std::string end = {static_cast<char>('b' + i % 20), static_cast<char>('b' + i / 20)};
    keys.push_back({run(23) + end});
  }
  for (const std::size_t depth : {16U, 9U, 8U, 2U, 1U, 0U}) {
    comb(run(depth));
    for (const char other : others) {
      keys.push_back({run(depth) + other + "12"});
      keys.push_back({run(depth) + other + "2345678", depth % 2 == 0});
    }
    keys.push_back({run(depth) + "\x01"});
  }
  for (const char other : others) {
    for (char digit = '0'; digit < '8'; ++digit) {
      keys.push_back({std::string(1, other) + digit + "1"});
    }
  }
  const Index index(keys);
  const std::string text = run(100);
  const std::string padded = text + std::string(PrefixIndex::kReadAhead, '\0');
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(padded.data());
  std::uint16_t places[PrefixIndex::kBatch];
  for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i)
    places[i] = static_cast<std::uint16_t>(i * 6);
  std::int32_t found[PrefixIndex::kBatch];
  index.index().LookUp(bytes, text.size(), places, PrefixIndex::kBatch, found);
  for (std::size_t i = 0; i < PrefixIndex::kBatch; ++i) {
    EXPECT_EQ(found[i], LookAtAll(keys, text.substr(places[i])).plain) << places[i];
  }
}

TEST(PrefixIndex, FindsWhatALookAtEveryRowFinds) {
  for (std::uint32_t seed = 0; seed < 2000; ++seed) {
    std::mt19937 random(seed);
    const auto text = [&random](std::size_t size) {
      std::string made(size, ' ');
      for (char& byte : made) byte = random() % 8 == 0 ? 'b' : 'a';
      return made;
    };
    std::vector<Key> keys;
    for (std::size_t i = 1 + random() % 12; i > 0; --i) {
      keys.push_back({text(1 + random() % 30), random() % 3 != 0});
    }
    const Index index(keys);
    for (int i = 0; i < 40; ++i) {
      std::string place = random() % 2 == 0 ? keys[random() % keys.size()].text : "";
      place += text(random() % 30);
      const Found found = index.At(place);
      const Found wanted = LookAtAll(keys, place);
      ASSERT_EQ(found.plain, wanted.plain) << "seed " << seed << " at " << place;
      ASSERT_EQ(found.attempts, wanted.attempts) << "seed " << seed << " at " << place;
      if (wanted == Found() || place.size() < 16) continue;
      const HashFilter& filter = index.index().filter();
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(place.data());
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
      ASSERT_TRUE(may_hold) << "seed " << seed << " at " << place;
    }
  }
}

}  // namespace
}  // namespace morvex::test
