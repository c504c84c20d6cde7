// Random lists over random files. The list's texts are placed at every border that the engine
// knows: its blocks of offsets, its window, its writes, and the longest span. A failing case prints
// its seed; MORVEX_JUDGE_SEED=N runs only the case with the seed N, MORVEX_JUDGE_CASES=N runs the
// first N cases.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "tests/reference/judge.h"

namespace morvex::test {
namespace {

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }

  std::string Text(std::size_t least, std::size_t most) {
    std::string text(least + Below(most - least + 1), ' ');
    for (char& byte : text) byte = alphabet_[Below(alphabet_.size())];
    return text;
  }

  JudgedList List() {
    static const std::string kAlphabets[] = {
        "ab", "ab*", "aab**", "abcdefgh*", std::string("ab*\0", 4), "a*\xFF\r\n"};
    alphabet_ = kAlphabets[Below(std::size(kAlphabets))];
    JudgedList list;
    static constexpr char kWildcards[] = {'*', '*', '*', '*', 'a', 0};
    list.flags = list.tails = list.run = kWildcards[Below(std::size(kWildcards))];
    if (OneIn(8)) list.run = kWildcards[Below(std::size(kWildcards))];
    if (OneIn(16)) list.tails = kWildcards[Below(std::size(kWildcards))];
    const std::size_t rows = OneIn(10) ? 1 + Below(200) : 1 + Below(6);
    for (std::size_t row = 0; row < rows; ++row) {
      std::string left = Text(1, OneIn(6) ? 40 : 6);
      if (row > 0 && OneIn(3)) left = list.rows.back().first + Text(0, 3);
      list.rows.emplace_back(left, Text(0, OneIn(8) ? 40 : 4));
    }
    if (OneIn(20)) list.flagged_rows = Below(rows + 1);
    return list;
  }

  // Rows that almost match everywhere in the text of NearMisses: runs of one letter, most of them
  // with an end that is rare in that text. In that text, the engine changes from its index to the
  // automaton (its two ways to search) and back.
  JudgedList RowsOfOneLetter() {
    alphabet_ = "ab";
    JudgedList list;
    list.flags = list.tails = list.run = '*';
    static const std::string kEnds[] = {"", "b", "b", "b", "bb", "*b", "*bb"};
    for (std::size_t rows = 10 + Below(25); rows > 0; --rows) {
      list.rows.emplace_back(std::string(1 + Below(60), 'a') + kEnds[Below(std::size(kEnds))],
                             OneIn(3) ? "<*>" : Text(0, 3));
    }
    return list;
  }
  std::string NearMisses() {
    std::string file(5000 + Below(6000), 'a');
    for (std::size_t marks = Below(12); marks > 0; --marks) {
      const std::size_t place = Below(file.size());
      file.replace(place, 3, OneIn(4) ? std::string("\0--", 3) : Text(1, 3));
    }
    if (OneIn(2)) file.replace(0, Below(4000), std::string(Below(4000), '-'));
    return file;
  }

  // Returns bytes of the alphabet mixed with left texts whose wildcards are filled in.
  std::string Matter(const JudgedList& list, std::size_t parts) {
    std::string matter;
    for (; parts > 0; --parts) {
      if (OneIn(2)) {
        matter += Text(0, 6);
        continue;
      }
      for (const char byte : list.rows[Below(list.rows.size())].first) {
        matter += OneIn(5) ? Text(0, 3) : std::string(1, byte);
      }
    }
    return matter;
  }

  // Returns a file of filler bytes; no row begins with a filler byte. Bytes that Matter returns
  // stand in front of a border, across it and behind it.
  std::string AcrossBorder(const JudgedList& list) {
    static constexpr std::size_t kBorders[] = {4096, 8192, 32766, 32767, 98304, 131072, 163840};
    const std::size_t border = kBorders[Below(std::size(kBorders))];
    std::string file(border + 400, '-');
    for (const std::size_t place : {border - 40, border - Below(30), border + Below(30), border / 2,
                                    std::size_t{0}, border + 300}) {
      const std::string matter =
          Matter(list, 1 + Below(3)) + (OneIn(3) ? "" : std::string(1, '\0'));
      file.replace(place, std::min(matter.size(), file.size() - place),
                   matter.substr(0, file.size() - place));
    }
    if (OneIn(3)) file.resize(border - 2 + Below(5));
    return file;
  }

 private:
  std::mt19937_64 random_;
  std::string alphabet_ = "ab";
};

void JudgeSeed(std::uint64_t seed) {
  Generator generator(seed);
  const JudgedList list = generator.List();
  const std::vector<Kernel> kernels = SupportedKernels();
  Judge judge(list, kernels[generator.Below(kernels.size())]);
  for (std::size_t files = 1 + generator.Below(3); files > 0; --files) {
    const std::string file = generator.OneIn(40) ? generator.AcrossBorder(list)
                                                 : generator.Matter(list, 1 + generator.Below(12));
    const std::string differences = judge.Differences(file);
    ASSERT_EQ(differences, "") << "MORVEX_JUDGE_SEED=" << seed;
  }
}

TEST(RandomJudge, FindsNoDifferenceWhereRowsNearlyMatchEverywhere) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    Generator generator(seed);
    Judge judge(generator.RowsOfOneLetter(), BestKernel());
    for (int files = 0; files < 2; ++files) {
      ASSERT_EQ(judge.Differences(generator.NearMisses()), "") << "seed " << seed;
    }
  }
}

// The file has two parts. Each part begins with so many letters "a" that the engine changes from
// its index to the automaton. Then follows about as much other text as the automaton searches
// before the engine changes back.
TEST(RandomJudge, FindsNoDifferenceWhereTheSearchChangesToAndFro) {
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    Generator generator(seed);
    JudgedList list;
    list.flags = list.tails = list.run = '*';
    for (std::size_t length = 4; length < 16; ++length) {
      list.rows.emplace_back(std::string(length, 'a') + (length % 4 == 0 ? "*b" : "b"), "<*>");
    }
    std::string file;
    for (int part = 0; part < 2; ++part) {
      file += std::string(6000 + generator.Below(500), 'a') + "b";
      file += std::string(60'000 + generator.Below(12'000), '-') + "aaaaab-aaaaaaaaxb";
    }
    Judge judge(list, BestKernel());
    ASSERT_EQ(judge.Differences(file), "") << "seed " << seed;
  }
}

TEST(Judge, AWildcardTriedInVainStaysCaughtBehindARowThatCatchesNothing) {
  // The wildcard was changed between the editor's opening and its OK.
  JudgedList list;
  list.rows = {{"ac*x", "<*>"}, {"b*y", "[*]"}, {"q", "[*]"}};
  list.flags = 'c';
  list.tails = list.run = '*';
  Judge judge(list, BestKernel());
  EXPECT_EQ(judge.Differences("b--b--ac0--ac1--ac2--b--q" + std::string(40'000, '-')), "");
}

TEST(RandomJudge, FindsNoDifference) {
  if (const char* seed = std::getenv("MORVEX_JUDGE_SEED")) {
    JudgeSeed(std::strtoull(seed, nullptr, 10));
    return;
  }
  const char* const wanted = std::getenv("MORVEX_JUDGE_CASES");
  const std::uint64_t cases = wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : 20'000;
  for (std::uint64_t seed = 1; seed <= cases; ++seed) {
    ASSERT_NO_FATAL_FAILURE(JudgeSeed(seed));
  }
}

TEST(Judge, SeesDifferentBytesHitsAndCaptures) {
  const auto differs = [](const JudgedList& one, const JudgedList& other, const char* file) {
    return !Judge(one, other, BestKernel()).Differences(file).empty();
  };
  const JudgedList list{{{"ab", "X"}}};
  EXPECT_FALSE(differs(list, list, "..ab.."));
  EXPECT_TRUE(differs(list, {{{"ab", "Y"}}}, "..ab.."));
  // Both lists produce the same bytes, but the second list has two hits instead of one.
  EXPECT_TRUE(differs({{{"ab", "ab"}}}, {{{"a", "a"}, {"b", "b"}}}, "..ab.."));
  // Both lists produce the same bytes and no hits, but their rows capture different bytes.
  EXPECT_TRUE(differs({{{"a*q", ""}}, '*', '*', '*'}, {{{"b*q", ""}}, '*', '*', '*'}, "aXbY"));
}

}  // namespace
}  // namespace morvex::test
