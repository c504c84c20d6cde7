// Compares the search with a slow search that tries every text at every offset, on random lists and
// files.
#include <algorithm>
#include <random>

#include "core/leftovers/leftover_search.h"
#include "tests/core/leftovers/leftovers_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;
using Finds = std::vector<FoundLeftover>;

// Returns what is found by trying every row, in every encoding, at every offset. Findings of one
// row in one encoding do not overlap. In Windows-1252, a finding of ASCII bytes does not count,
// because it is a finding in UTF-8, too.
Finds FoundByTrying(const Rows& rows, const std::string& bytes) {
  Finds found;
  Alphabet alphabet;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::u32string text = *Decode(rows[row].first, Encoding::kUtf8);
    for (const Encoding encoding :
         {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le, Encoding::kUtf16Be}) {
      const std::optional<Spelling> spelling = alphabet.Spell(text, encoding);
      if (!spelling) continue;
      for (std::size_t at = 0; at < bytes.size();) {
        const std::optional<Standing> standing =
            StandsAt(*spelling, std::string_view(bytes).substr(at));
        if (!standing) {
          ++at;
          continue;
        }
        const auto line =
            1 + std::count(bytes.begin(), bytes.begin() + static_cast<long>(at), '\n');
        const std::string_view there = std::string_view(bytes).substr(at, standing->size);
        const bool is_ascii_there =
            std::all_of(there.begin(), there.end(), [](char c) { return (c & 0x80) == 0; });
        if (!is_ascii_there || encoding != Encoding::kWindows1252) {
          found.push_back({at, line, static_cast<std::int64_t>(row), encoding, standing->as_written,
                           standing->size});
        }
        at += standing->size;
      }
    }
  }
  return found;
}

Finds Sorted(Finds found) {
  std::sort(found.begin(), found.end(), [](const FoundLeftover& a, const FoundLeftover& b) {
    return std::tuple(a.offset, a.row, a.encoding) < std::tuple(b.offset, b.row, b.encoding);
  });
  return found;
}

std::string Made(std::mt19937& random, const std::vector<std::string>& of, std::size_t most) {
  std::string made;
  for (std::size_t n = 1 + random() % most; n > 0; --n) made += of[random() % of.size()];
  return made;
}

void ExpectToFindWhatTryingFinds(const Rows& rows, const std::string& bytes, int round) {
  const SoughtList list(rows);
  const Finds expected = Sorted(FoundByTrying(rows, bytes));
  for (const Kernel kernel : {Kernel::kPortable, Kernel::kSsse3, Kernel::kAvx2}) {
    if (!IsSupported(kernel)) continue;
    ASSERT_EQ(Sorted(list.Find(bytes, 100, kernel)), expected) << "round " << round;
  }
}

// The texts have few different letters, so that they occur often. They have no NUL, because with
// NULs both byte orders would match.
TEST(LeftoverSearchRandomTest, ItFindsWhatTryingEverythingFinds) {
  std::mt19937 random(20240117);
  const std::vector<std::string> letters = {"a",        "A",        "b", "\xC3\xBC", "\xC3\x9C",
                                            "\xC5\x82", "\xC3\x9F", "s", "\n"};
  const std::vector<std::string> pieces = {"a",        "A",    "b",    "B",        "\xC3\xBC",
                                           "\xC3\x9C", "\xFC", "\xDC", "\xC5\x82", "\xC5\x81",
                                           "\xC3\x9F", "ss",   "S",    "\n",       "\xC3"};
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 12; n > 0; --n) {
      rows.push_back({Made(random, letters, 5), "x"});
    }
    ExpectToFindWhatTryingFinds(rows, Made(random, pieces, 600), round);
  }
}

// The list, the file or both have rare forms of letters, far from each other and close together.
TEST(LeftoverSearchRandomTest, RareFormsOfLettersAreFoundAsWell) {
  std::mt19937 random(20240118);
  const std::vector<std::string> letters = {"i", "I", "\xC4\xB1", "\xC4\xB0", "s",           "t",
                                            "f", "S", "\xC3\x9F", "\xCE\xBC", "\xEF\xAC\x81"};
  std::vector<std::string> pieces = letters;
  for (const char* piece : {"i\xCC\x87", "\xC2\xB5", "\xB5", "\xDF", "\xE1\xBA\x9E", "\xEF\xAC\x86",
                            "\xEF\xAC\x83", "ss", "st", "fi", "\n"}) {
    pieces.emplace_back(piece);
  }
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 8; n > 0; --n) {
      const std::string before = random() % 4 == 0 ? std::string(random() % 150, 's') : "";
      rows.push_back({before + Made(random, letters, 5), "x"});
    }
    std::string bytes;
    for (int part = 0; part < 4; ++part) {
      bytes += std::string(random() % 300, part % 2 == 0 ? 's' : '.');
      bytes += Made(random, pieces, 40);
      bytes += rows[random() % rows.size()].first;
    }
    ExpectToFindWhatTryingFinds(rows, bytes, round);
  }
}

// A chain of occurrences: the first part of a wildcard row, then none, some or all of the next
// parts, in the row's order.
struct Chain {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool as_written = true;
  bool in_other_order = false;
};

// Returns what is found of one wildcard row in one byte order by trying every part at every offset.
// The last part is taken at the first offset where all other parts stand in front of it, in their
// order. Of each other part, the last occurrence that ends in front of the next part is taken. No
// two findings overlap. A match is left out if all its parts stand at odd offsets and each part
// also stands one byte away in the other byte order.
Finds FoundByParts(std::int64_t row, const std::vector<Spelling>& parts,
                   const std::vector<Spelling>& others, const std::string& bytes) {
  Finds found;
  const bool is_little = parts.front().encoding == Encoding::kUtf16Le;
  const std::string_view all = bytes;
  std::vector<std::vector<Chain>> chains(parts.size());
  std::size_t not_before = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (std::size_t number = 0; number < parts.size(); ++number) {
      const std::optional<Standing> standing = StandsAt(parts[number], all.substr(at));
      if (!standing || (number == 0 && at < not_before)) continue;
      const std::size_t aside = is_little ? at - 1 : at + 1;
      Chain chain{at, at + standing->size, standing->as_written,
                  at % 2 == 1 && aside < all.size() && StandsAt(others[number], all.substr(aside))};
      if (number > 0) {
        const std::vector<Chain>& begun = chains[number - 1];
        const auto last = std::find_if(begun.rbegin(), begun.rend(),
                                       [at](const Chain& each) { return each.end <= at; });
        if (last == begun.rend()) continue;
        chain.begin = last->begin;
        chain.as_written = chain.as_written && last->as_written;
        chain.in_other_order = chain.in_other_order && last->in_other_order;
      }
      chains[number].push_back(chain);
    }
    if (chains.back().empty()) continue;
    const Chain chain = chains.back().front();
    const auto line =
        1 + std::count(bytes.begin(), bytes.begin() + static_cast<long>(chain.begin), '\n');
    if (!chain.in_other_order) {
      found.push_back({chain.begin, line, row, parts.front().encoding, chain.as_written,
                       chain.end - chain.begin});
    }
    not_before = chain.end;
    for (std::vector<Chain>& each : chains) each.clear();
  }
  return found;
}

// The rows have few letters and the files many NULs, so that the two byte orders overlap in every
// way.
TEST(LeftoverSearchRandomTest, WildcardRowsInUtf16AreFoundAsByTryingEveryPartAtEveryPlace) {
  std::mt19937 random(20240119);
  const std::vector<std::string> letters = {"a", "b", "A", "ab", "\xC4\x81"};
  const std::vector<std::string> pieces = {"a\0"s, "\0a"s, "b\0"s, "\0b"s,  "\0"s,
                                           "a",    "x",    "A\0"s, "\1\1"s, "\n"};
  std::size_t seen = 0;
  std::size_t seen_odd = 0;
  for (int round = 0; round < 2000; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 3; n > 0; --n) {
      std::string left = Made(random, letters, 3) + "*" + Made(random, letters, 2);
      if (random() % 3 == 0) left += "*" + Made(random, letters, 2);
      rows.push_back({left, "-"});
    }
    const std::string bytes = Made(random, pieces, 60);
    Finds expected;
    Alphabet alphabet;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      std::vector<Spelling> little;
      std::vector<Spelling> big;
      std::string_view rest = rows[row].first;
      while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('*'), rest.size());
        const std::u32string part = *Decode(rest.substr(0, end), Encoding::kUtf8);
        little.push_back(*alphabet.Spell(part, Encoding::kUtf16Le));
        big.push_back(*alphabet.Spell(part, Encoding::kUtf16Be));
        rest.remove_prefix(std::min(end + 1, rest.size()));
      }
      const auto number = static_cast<std::int64_t>(row);
      for (const Finds& each :
           {FoundByParts(number, little, big, bytes), FoundByParts(number, big, little, bytes)}) {
        expected.insert(expected.end(), each.begin(), each.end());
      }
    }
    const SoughtList list(rows);
    Finds found = list.Find(bytes, 16);
    std::erase_if(found,
                  [](const FoundLeftover& each) { return each.encoding == Encoding::kUtf8; });
    ASSERT_EQ(Sorted(found), Sorted(expected)) << "round " << round;
    seen += expected.size();
    seen_odd += static_cast<std::size_t>(
        std::count_if(expected.begin(), expected.end(),
                      [](const FoundLeftover& each) { return each.offset % 2 == 1; }));
  }
  EXPECT_GT(seen, 1000u);
  EXPECT_GT(seen_odd, 100u);
}

// The search looks for the long s and the Kelvin sign only if the list contains them.
TEST(LeftoverSearchRandomTest, TheLongSAndTheKelvinSignAreFoundAsByTryingEverything) {
  std::mt19937 random(20240120);
  const std::vector<std::string> letters = {"s", "S",       "\xC5\xBF", "k", "\xE2\x84\xAA",
                                            "t", "\xC3\x9F"};
  std::vector<std::string> pieces = letters;
  pieces.insert(pieces.end(), {"K", "\xEF\xAC\x85", "st", "\n", "\xDF", "ss"});
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 8; n > 0; --n) {
      rows.push_back({Made(random, letters, 7), "x"});
    }
    std::string bytes = Made(random, pieces, 300);
    bytes += rows[random() % rows.size()].first;
    ExpectToFindWhatTryingFinds(rows, bytes, round);
  }
}

}  // namespace
}  // namespace morvex::test
