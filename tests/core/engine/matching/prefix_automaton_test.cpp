// Where the automaton finds keys, and which rows it finds there.
#include "core/engine/matching/prefix_automaton.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "core/engine/matching/prefix_index.h"

namespace morvex::test {
namespace {

struct Key {
  std::string text;
  bool plain = true;
};

struct Rows {
  std::int32_t plain = PrefixAutomaton::kNone;
  std::vector<std::int32_t> attempts;
  bool operator==(const Rows&) const = default;
};

std::string Said(const std::string& text) {
  std::string said;
  for (const char byte : text) {
    if (byte >= ' ' && byte <= '~') {
      said += byte;
    } else {
      said += "\\" + std::to_string(static_cast<std::uint8_t>(byte)) + ";";
    }
  }
  return said;
}

std::string Said(const std::vector<Key>& keys, const std::string& text) {
  std::string said = "text " + Said(text) + "\nkeys";
  for (const Key& key : keys) said += (key.plain ? " " : " attempt:") + Said(key.text);
  return said;
}

std::vector<CompiledRow> Compiled(const std::vector<Key>& keys) {
  std::vector<CompiledRow> rows(keys.size());
  int attempts = 0;
  for (std::size_t row = 0; row < keys.size(); ++row) {
    rows[row].prefix = keys[row].text;
    rows[row].attempt = keys[row].plain ? CompiledRow::kPlain : attempts++;
  }
  return rows;
}

PrefixAutomaton Automaton(const std::vector<Key>& keys) {
  const std::vector<CompiledRow> rows = Compiled(keys);
  return PrefixAutomaton(rows, PrefixIndex(rows).rows_by_prefix());
}

// What a look at every row in table order gives at a place of the text.
Rows LookAtAll(const std::vector<Key>& keys, const std::string& text, std::size_t place) {
  Rows rows;
  for (std::size_t row = 0; row < keys.size(); ++row) {
    if (text.compare(place, keys[row].text.size(), keys[row].text) != 0) continue;
    if (keys[row].plain) {
      rows.plain = static_cast<std::int32_t>(row);
      break;
    }
    rows.attempts.push_back(static_cast<std::int32_t>(row));
  }
  return rows;
}

std::vector<PrefixAutomaton::Found> Find(const PrefixAutomaton& automaton, const std::string& text,
                                         std::size_t count) {
  // Without a byte behind the text that could be read by mistake.
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  std::vector<PrefixAutomaton::Found> found;
  automaton.Find(bytes.data(), count, bytes.size(), found);
  return found;
}

std::vector<std::size_t> Places(const std::vector<PrefixAutomaton::Found>& found) {
  std::vector<std::size_t> places;
  places.reserve(found.size());
  for (const PrefixAutomaton::Found& each : found) places.push_back(each.offset);
  return places;
}

// With the root alone in the table, with some states, and with as many as a run has there.
constexpr std::array<std::size_t, 4> kTables = {1, 2, 5, PrefixAutomaton::kBySize};

// Holds what is found at the first `count` places of the text against a look at every row, and
// against the index.
void Check(const std::vector<Key>& keys, const std::string& text, std::size_t count) {
  const std::vector<CompiledRow> rows = Compiled(keys);
  const PrefixIndex index(rows);
  const std::string padded = text + std::string(16, '\0');
  std::vector<std::size_t> places;
  std::vector<Rows> wanted;
  for (std::size_t place = count; place-- > 0;) {
    Rows here = LookAtAll(keys, text, place);
    Rows indexed;
    indexed.plain = index.Find(reinterpret_cast<const std::uint8_t*>(padded.data()) + place,
                               text.size() - place, indexed.attempts);
    ASSERT_EQ(here, indexed) << "place " << place << "\n" << Said(keys, text);
    if (here == Rows()) continue;
    places.push_back(place);
    wanted.push_back(here);
  }
  for (const std::size_t states : kTables) {
    const PrefixAutomaton automaton(rows, index.rows_by_prefix(), states);
    const std::vector<PrefixAutomaton::Found> found = Find(automaton, text, count);
    ASSERT_EQ(Places(found), places) << "count " << count << ", " << states << " in the table\n"
                                     << Said(keys, text);
    for (std::size_t i = 0; i < found.size(); ++i) {
      Rows here;
      here.plain = automaton.RowsAt(found[i].state, here.attempts);
      ASSERT_EQ(here.plain, wanted[i].plain)
          << "place " << places[i] << ", " << states << " in the table\n"
          << Said(keys, text);
      ASSERT_EQ(here.attempts, wanted[i].attempts)
          << "place " << places[i] << ", " << states << " in the table\n"
          << Said(keys, text);
    }
  }
}

void Check(const std::vector<Key>& keys, const std::string& text) {
  Check(keys, text, text.size());
}

// All texts of so many letters, a or b.
std::vector<std::string> AllTexts(std::size_t size) {
  std::vector<std::string> texts;
  for (std::size_t bits = 0; bits < std::size_t{1} << size; ++bits) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += (bits >> i & 1) != 0 ? 'b' : 'a';
    texts.push_back(text);
  }
  return texts;
}

TEST(PrefixAutomaton, OfNoRowsFindsNothing) {
  Check({}, "");
  Check({}, "abc");
}

TEST(PrefixAutomaton, NothingIsFoundWhereNoPrefixStarts) {
  const PrefixAutomaton automaton = Automaton({{"abc"}, {"ca"}});
  EXPECT_TRUE(Find(automaton, "", 0).empty());
  EXPECT_TRUE(Find(automaton, "abababbacbc", 11).empty());
  EXPECT_TRUE(Find(automaton, "xyz", 3).empty());
}

TEST(PrefixAutomaton, PlacesComeFromTheLastToTheFirstBehindWhatIsThere) {
  const PrefixAutomaton automaton = Automaton({{"ab"}, {"b"}});
  const std::string text = "abxab";
  std::vector<PrefixAutomaton::Found> found = {{77, 0}};
  automaton.Find(reinterpret_cast<const std::uint8_t*>(text.data()), 5, 5, found);
  EXPECT_EQ(Places(found), (std::vector<std::size_t>{77, 4, 3, 1, 0}));
}

TEST(PrefixAutomaton, OneByteKeysAreFoundUpToTheLastByte) {
  Check({{"a"}}, "a");
  Check({{"a"}, {"b", false}, {"b"}}, "abxbba");
  Check({{"a", false}, {"aa"}}, "aaa");
}

TEST(PrefixAutomaton, RowsWithTheSameKeyComeInTableOrder) {
  Check({{"ab", false}, {"ab", false}, {"ab"}, {"b", false}, {"b", false}}, "abbab");
  const PrefixAutomaton automaton = Automaton({{"ab", false}, {"ab", false}, {"ab"}});
  const std::vector<PrefixAutomaton::Found> found = Find(automaton, "ab", 2);
  ASSERT_EQ(Places(found), (std::vector<std::size_t>{0}));
  std::vector<std::int32_t> attempts;
  EXPECT_EQ(automaton.RowsAt(found[0].state, attempts), 2);
  EXPECT_EQ(attempts, (std::vector<std::int32_t>{0, 1}));
}

TEST(PrefixAutomaton, AttemptsBehindThePlainRowAreLeftOut) {
  const std::vector<Key> keys = {{"abcd", false}, {"a", false}, {"abc"}, {"ab", false}, {"ab"}};
  Check(keys, "abcd abc ab a");
}

TEST(PrefixAutomaton, AKeyMayReachBeyondThePlacesAskedAbout) {
  const std::vector<Key> keys = {{"abcde"}, {"cd", false}, {"e"}};
  for (std::size_t count = 0; count <= 10; ++count) Check(keys, "abcdeabcde", count);
}

TEST(PrefixAutomaton, AKeyThatEndsBehindTheEndIsNotFound) {
  const PrefixAutomaton automaton = Automaton({{"abcde"}, {"b"}});
  const std::string text = "abcde";
  std::vector<PrefixAutomaton::Found> found;
  automaton.Find(reinterpret_cast<const std::uint8_t*>(text.data()), 2, 4, found);
  EXPECT_EQ(Places(found), (std::vector<std::size_t>{1}));
}

TEST(PrefixAutomaton, EveryByteValueCanBeOfAKeyAndANulIsOfNone) {
  std::vector<Key> keys;
  std::string text;
  for (int byte = 1; byte < 256; ++byte) {
    keys.push_back({std::string(1, static_cast<char>(byte)) + "\xFF"});
    text += static_cast<char>(byte);
    text += byte % 3 == 0 ? '\0' : '\xFF';
  }
  Check(keys, text + '\0');
}

// All keys of up to so many letters, plain and not.
std::vector<Key> AllKeys(std::size_t longest) {
  std::vector<Key> keys;
  for (std::size_t size = 1; size <= longest; ++size) {
    for (const std::string& text : AllTexts(size)) {
      keys.push_back({text, true});
      keys.push_back({text, false});
    }
  }
  return keys;
}

// Holds every text of four letters, and ends with a key's beginning.
constexpr const char* kAllFourLetters = "aaaabaabbababbbbaaaxbabxxaab";

TEST(PrefixAutomaton, FindsWhatALookAtEveryRowFindsInAllListsOfTwoRows) {
  for (const Key& first : AllKeys(3)) {
    Check({first}, kAllFourLetters);
    for (const Key& second : AllKeys(3)) {
      Check({first, second}, kAllFourLetters);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(PrefixAutomaton, FindsWhatALookAtEveryRowFindsInAllListsOfThreeRows) {
  for (const Key& first : AllKeys(2)) {
    for (const Key& second : AllKeys(2)) {
      for (const Key& third : AllKeys(2)) {
        Check({first, second, third}, kAllFourLetters);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(PrefixAutomaton, FindsWhatALookAtEveryRowFindsInRandomLists) {
  for (std::uint32_t seed = 0; seed < 600; ++seed) {
    std::mt19937 random(seed);
    const std::size_t letters = 1 + random() % 5;
    const auto text = [&random, letters](std::size_t size) {
      std::string made(size, ' ');
      for (char& byte : made) byte = static_cast<char>('a' + random() % letters);
      return made;
    };
    std::vector<Key> keys;
    for (std::size_t i = 1 + random() % 30; i > 0; --i) {
      // A part of them are ends of others with something in front.
      std::string key = text(1 + random() % 12);
      if (!keys.empty() && random() % 3 == 0) {
        const std::string& other = keys[random() % keys.size()].text;
        key += other.substr(random() % other.size());
      }
      keys.push_back({key, random() % 3 != 0});
    }
    std::string whole;
    while (whole.size() < 300) {
      whole += random() % 2 == 0 ? keys[random() % keys.size()].text : text(1 + random() % 10);
      if (random() % 10 == 0) whole += 'z';
    }
    whole.resize(whole.size() - random() % 10);
    Check(keys, whole, whole.size() - random() % 20);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(PrefixAutomaton, FindsWhatALookAtEveryRowFindsInALongList) {
  for (std::uint32_t seed = 0; seed < 3; ++seed) {
    std::mt19937 random(seed);
    std::vector<Key> keys;
    while (keys.size() < 300) {
      std::string key;
      for (std::size_t i = 1 + random() % 15; i > 0; --i) {
        key += static_cast<char>(1 + random() % 255);
      }
      if (!keys.empty() && random() % 2 == 0) {
        const std::string& other = keys[random() % keys.size()].text;
        key += other.substr(random() % other.size());
      }
      keys.push_back({key, random() % 4 != 0});
    }
    std::string whole;
    while (whole.size() < 3000) {
      const std::string& key = keys[random() % keys.size()].text;
      whole += random() % 2 == 0 ? key : key.substr(random() % key.size());
    }
    Check(keys, whole);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(PrefixAutomaton, ManyPlacesOfOneTextAreAllFound) {
  std::vector<Key> keys;
  for (std::size_t size = 40; size > 0; --size) keys.push_back({std::string(size, 'a')});
  for (const std::size_t size : {511U, 512U, 513U, 2000U}) Check(keys, std::string(size, 'a'));
}

TEST(PrefixAutomaton, FindsTheLongestKeysThereCanBe) {
  constexpr std::size_t kLongest = 32766;
  constexpr std::size_t kCount = 10;
  constexpr std::size_t kLetters = 40000;
  std::vector<Key> keys;
  for (std::size_t i = 0; i < kCount; ++i) {
    keys.push_back({std::string(kLongest - 1 - i, 'a') + "b", i % 2 == 0});
  }
  keys.push_back({"b" + std::string(kLongest - 1, 'a')});
  const std::vector<CompiledRow> rows = Compiled(keys);
  const PrefixIndex index(rows);
  const std::string text =
      std::string(kLetters, 'a') + "b" + std::string(kLongest - 1, 'a') + std::string(3, 'c');
  for (const std::size_t states : kTables) {
    const PrefixAutomaton automaton(rows, index.rows_by_prefix(), states);
    const std::vector<PrefixAutomaton::Found> found = Find(automaton, text, text.size());
    ASSERT_EQ(found.size(), kCount + 1);
    std::vector<std::int32_t> attempts;
    EXPECT_EQ(found[0].offset, kLetters);
    EXPECT_EQ(automaton.RowsAt(found[0].state, attempts), static_cast<std::int32_t>(kCount));
    for (std::size_t i = 0; i < kCount; ++i) {
      const PrefixAutomaton::Found& each = found[kCount - i];  // the longest key begins first
      EXPECT_EQ(each.offset, kLetters - (kLongest - 1 - i));
      attempts.clear();
      const std::int32_t plain = automaton.RowsAt(each.state, attempts);
      const auto row = static_cast<std::int32_t>(i);
      EXPECT_EQ(plain, keys[i].plain ? row : PrefixAutomaton::kNone);
      EXPECT_EQ(attempts, keys[i].plain ? std::vector<std::int32_t>{} : std::vector{row});
    }
    // Asked about the first places alone, the longest key must still be seen to its end.
    const std::size_t first = kLetters - (kLongest - 1);
    EXPECT_EQ(Places(Find(automaton, text, first + 1)), (std::vector<std::size_t>{first}));
  }
}

}  // namespace
}  // namespace morvex::test
