// Where the automaton finds prefixes, and which rows it finds there.
#include "core/engine/matching/prefix_automaton.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "core/engine/matching/prefix_index.h"

namespace morvex::test {
namespace {

struct Prefix {
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

std::string Said(const std::vector<Prefix>& prefixes, const std::string& text) {
  std::string said = "text " + Said(text) + "\nkeys";
  for (const Prefix& prefix : prefixes)
    said += (prefix.plain ? " " : " attempt:") + Said(prefix.text);
  return said;
}

std::vector<CompiledRow> Compiled(const std::vector<Prefix>& prefixes) {
  std::vector<CompiledRow> rows(prefixes.size());
  int attempts = 0;
  for (std::size_t row = 0; row < prefixes.size(); ++row) {
    rows[row].prefix = prefixes[row].text;
    rows[row].attempt = prefixes[row].plain ? CompiledRow::kPlain : attempts++;
  }
  return rows;
}

PrefixAutomaton Automaton(const std::vector<Prefix>& prefixes) {
  const std::vector<CompiledRow> rows = Compiled(prefixes);
  return PrefixAutomaton(rows, PrefixIndex(rows).rows_by_prefix());
}

// Returns what trying every row in table order finds at an offset of the text.
Rows TryAll(const std::vector<Prefix>& prefixes, const std::string& text, std::size_t offset) {
  Rows rows;
  for (std::size_t row = 0; row < prefixes.size(); ++row) {
    if (text.compare(offset, prefixes[row].text.size(), prefixes[row].text) != 0) continue;
    if (prefixes[row].plain) {
      rows.plain = static_cast<std::int32_t>(row);
      break;
    }
    rows.attempts.push_back(static_cast<std::int32_t>(row));
  }
  return rows;
}

std::vector<PrefixAutomaton::Found> Find(const PrefixAutomaton& automaton, const std::string& text,
                                         std::size_t count) {
  // A copy without any byte behind the text, so that memory checkers notice reading too far.
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  std::vector<PrefixAutomaton::Found> found;
  automaton.Find(bytes.data(), count, bytes.size(), found);
  return found;
}

std::vector<std::size_t> Offsets(const std::vector<PrefixAutomaton::Found>& found) {
  std::vector<std::size_t> offsets;
  offsets.reserve(found.size());
  for (const PrefixAutomaton::Found& each : found) offsets.push_back(each.offset);
  return offsets;
}

// How many states are in the automaton's table: the root alone, a few, and as many as in a run.
constexpr std::array<std::size_t, 4> kTables = {1, 2, 5, PrefixAutomaton::kBySize};

// Checks that the index and the automaton find at the first `count` offsets of the text what trying
// every row finds there.
void Check(const std::vector<Prefix>& prefixes, const std::string& text, std::size_t count) {
  const std::vector<CompiledRow> rows = Compiled(prefixes);
  const PrefixIndex index(rows);
  const std::string padded = text + std::string(16, '\0');
  std::vector<std::size_t> offsets;
  std::vector<Rows> wanted;
  for (std::size_t offset = count; offset-- > 0;) {
    Rows here = TryAll(prefixes, text, offset);
    Rows indexed;
    indexed.plain = index.Find(reinterpret_cast<const std::uint8_t*>(padded.data()) + offset,
                               text.size() - offset, indexed.attempts);
    ASSERT_EQ(here, indexed) << "place " << offset << "\n" << Said(prefixes, text);
    if (here == Rows()) continue;
    offsets.push_back(offset);
    wanted.push_back(here);
  }
  for (const std::size_t states : kTables) {
    const PrefixAutomaton automaton(rows, index.rows_by_prefix(), states);
    const std::vector<PrefixAutomaton::Found> found = Find(automaton, text, count);
    ASSERT_EQ(Offsets(found), offsets) << "count " << count << ", " << states << " in the table\n"
                                       << Said(prefixes, text);
    for (std::size_t i = 0; i < found.size(); ++i) {
      Rows here;
      here.plain = automaton.RowsAt(found[i].state, here.attempts);
      ASSERT_EQ(here.plain, wanted[i].plain)
          << "place " << offsets[i] << ", " << states << " in the table\n"
          << Said(prefixes, text);
      ASSERT_EQ(here.attempts, wanted[i].attempts)
          << "place " << offsets[i] << ", " << states << " in the table\n"
          << Said(prefixes, text);
    }
  }
}

void Check(const std::vector<Prefix>& prefixes, const std::string& text) {
  Check(prefixes, text, text.size());
}

// Returns all texts of `size` letters; each letter is a or b.
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

TEST(PrefixAutomaton, OffsetsComeFromTheLastToTheFirstBehindWhatIsThere) {
  const PrefixAutomaton automaton = Automaton({{"ab"}, {"b"}});
  const std::string text = "abxab";
  std::vector<PrefixAutomaton::Found> found = {{77, 0}};
  automaton.Find(reinterpret_cast<const std::uint8_t*>(text.data()), 5, 5, found);
  EXPECT_EQ(Offsets(found), (std::vector<std::size_t>{77, 4, 3, 1, 0}));
}

TEST(PrefixAutomaton, OneBytePrefixesAreFoundUpToTheLastByte) {
  Check({{"a"}}, "a");
  Check({{"a"}, {"b", false}, {"b"}}, "abxbba");
  Check({{"a", false}, {"aa"}}, "aaa");
}

TEST(PrefixAutomaton, RowsWithTheSamePrefixComeInTableOrder) {
  Check({{"ab", false}, {"ab", false}, {"ab"}, {"b", false}, {"b", false}}, "abbab");
  const PrefixAutomaton automaton = Automaton({{"ab", false}, {"ab", false}, {"ab"}});
  const std::vector<PrefixAutomaton::Found> found = Find(automaton, "ab", 2);
  ASSERT_EQ(Offsets(found), (std::vector<std::size_t>{0}));
  std::vector<std::int32_t> attempts;
  EXPECT_EQ(automaton.RowsAt(found[0].state, attempts), 2);
  EXPECT_EQ(attempts, (std::vector<std::int32_t>{0, 1}));
}

TEST(PrefixAutomaton, AttemptsBehindThePlainRowAreLeftOut) {
  const std::vector<Prefix> prefixes = {
      {"abcd", false}, {"a", false}, {"abc"}, {"ab", false}, {"ab"}};
  Check(prefixes, "abcd abc ab a");
}

TEST(PrefixAutomaton, APrefixMayReachBeyondTheOffsetsAskedAbout) {
  const std::vector<Prefix> prefixes = {{"abcde"}, {"cd", false}, {"e"}};
  for (std::size_t count = 0; count <= 10; ++count) Check(prefixes, "abcdeabcde", count);
}

TEST(PrefixAutomaton, APrefixThatEndsBehindTheEndIsNotFound) {
  const PrefixAutomaton automaton = Automaton({{"abcde"}, {"b"}});
  const std::string text = "abcde";
  std::vector<PrefixAutomaton::Found> found;
  automaton.Find(reinterpret_cast<const std::uint8_t*>(text.data()), 2, 4, found);
  EXPECT_EQ(Offsets(found), (std::vector<std::size_t>{1}));
}

TEST(PrefixAutomaton, EveryByteValueCanBeOfAPrefixAndANulIsOfNone) {
  std::vector<Prefix> prefixes;
  std::string text;
  for (int byte = 1; byte < 256; ++byte) {
    prefixes.push_back({std::string(1, static_cast<char>(byte)) + "\xFF"});
    text += static_cast<char>(byte);
    text += byte % 3 == 0 ? '\0' : '\xFF';
  }
  Check(prefixes, text + '\0');
}

// Returns all prefixes of 1 to `longest` letters, each once for a plain row and once for a row that
// is not plain.
std::vector<Prefix> AllPrefixes(std::size_t longest) {
  std::vector<Prefix> prefixes;
  for (std::size_t size = 1; size <= longest; ++size) {
    for (const std::string& text : AllTexts(size)) {
      prefixes.push_back({text, true});
      prefixes.push_back({text, false});
    }
  }
  return prefixes;
}

// Contains every text of four letters, each of them a or b. The last two letters begin longer
// prefixes, which the end of the text cuts off.
constexpr const char* kAllFourLetters = "aaaabaabbababbbbaaaxbabxxaab";

TEST(PrefixAutomaton, FindsWhatTryingEveryRowFindsInAllListsOfTwoRows) {
  for (const Prefix& first : AllPrefixes(3)) {
    Check({first}, kAllFourLetters);
    for (const Prefix& second : AllPrefixes(3)) {
      Check({first, second}, kAllFourLetters);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(PrefixAutomaton, FindsWhatTryingEveryRowFindsInAllListsOfThreeRows) {
  for (const Prefix& first : AllPrefixes(2)) {
    for (const Prefix& second : AllPrefixes(2)) {
      for (const Prefix& third : AllPrefixes(2)) {
        Check({first, second, third}, kAllFourLetters);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(PrefixAutomaton, FindsWhatTryingEveryRowFindsInRandomLists) {
  for (std::uint32_t seed = 0; seed < 600; ++seed) {
    std::mt19937 random(seed);
    const std::size_t letters = 1 + random() % 5;
    const auto text = [&random, letters](std::size_t size) {
      std::string made(size, ' ');
      for (char& byte : made) byte = static_cast<char>('a' + random() % letters);
      return made;
    };
    std::vector<Prefix> prefixes;
    for (std::size_t i = 1 + random() % 30; i > 0; --i) {
      // Some prefixes end with the end of an earlier prefix.
      std::string prefix = text(1 + random() % 12);
      if (!prefixes.empty() && random() % 3 == 0) {
        const std::string& other = prefixes[random() % prefixes.size()].text;
        prefix += other.substr(random() % other.size());
      }
      prefixes.push_back({prefix, random() % 3 != 0});
    }
    std::string whole;
    while (whole.size() < 300) {
      whole +=
          random() % 2 == 0 ? prefixes[random() % prefixes.size()].text : text(1 + random() % 10);
      if (random() % 10 == 0) whole += 'z';
    }
    whole.resize(whole.size() - random() % 10);
    Check(prefixes, whole, whole.size() - random() % 20);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(PrefixAutomaton, FindsWhatTryingEveryRowFindsInALongList) {
  for (std::uint32_t seed = 0; seed < 3; ++seed) {
    std::mt19937 random(seed);
    std::vector<Prefix> prefixes;
    while (prefixes.size() < 300) {
      std::string prefix;
      for (std::size_t i = 1 + random() % 15; i > 0; --i) {
        prefix += static_cast<char>(1 + random() % 255);
      }
      if (!prefixes.empty() && random() % 2 == 0) {
        const std::string& other = prefixes[random() % prefixes.size()].text;
        prefix += other.substr(random() % other.size());
      }
      prefixes.push_back({prefix, random() % 4 != 0});
    }
    std::string whole;
    while (whole.size() < 3000) {
      const std::string& prefix = prefixes[random() % prefixes.size()].text;
      whole += random() % 2 == 0 ? prefix : prefix.substr(random() % prefix.size());
    }
    Check(prefixes, whole);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(PrefixAutomaton, ManyOffsetsOfOneTextAreAllFound) {
  std::vector<Prefix> prefixes;
  for (std::size_t size = 40; size > 0; --size) prefixes.push_back({std::string(size, 'a')});
  for (const std::size_t size : {511U, 512U, 513U, 2000U}) Check(prefixes, std::string(size, 'a'));
}

TEST(PrefixAutomaton, FindsTheLongestPrefixesThereCanBe) {
  constexpr std::size_t kLongest = 32766;
  constexpr std::size_t kCount = 10;
  constexpr std::size_t kLetters = 40000;
  std::vector<Prefix> prefixes;
  for (std::size_t i = 0; i < kCount; ++i) {
    prefixes.push_back({std::string(kLongest - 1 - i, 'a') + "b", i % 2 == 0});
  }
  prefixes.push_back({"b" + std::string(kLongest - 1, 'a')});
  const std::vector<CompiledRow> rows = Compiled(prefixes);
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
      // `found` is in descending order of offsets. Of the prefixes that end at the "b", prefix 0 is
      // the longest, so it begins at the lowest offset.
      const PrefixAutomaton::Found& each = found[kCount - i];
      EXPECT_EQ(each.offset, kLetters - (kLongest - 1 - i));
      attempts.clear();
      const std::int32_t plain = automaton.RowsAt(each.state, attempts);
      const auto row = static_cast<std::int32_t>(i);
      EXPECT_EQ(plain, prefixes[i].plain ? row : PrefixAutomaton::kNone);
      EXPECT_EQ(attempts, prefixes[i].plain ? std::vector<std::int32_t>{} : std::vector{row});
    }
    // Only the offsets up to `first` are searched, but the prefix that begins there must be
    // compared up to its end.
    const std::size_t first = kLetters - (kLongest - 1);
    EXPECT_EQ(Offsets(Find(automaton, text, first + 1)), (std::vector<std::size_t>{first}));
  }
}

}  // namespace
}  // namespace morvex::test
