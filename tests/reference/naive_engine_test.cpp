// Random lists over random files: the engine and the naive engine must agree in every byte, in the
// hits and in what they keep for the next file.
#include "tests/reference/naive_engine.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

constexpr std::uint32_t kFirstSeed = 20261121;
constexpr std::uint32_t kCases = 20'000;

struct RandomCase {
  Rows rows;
  Wildcards jokers;
  std::vector<std::string> files;
};

class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  RandomCase Make() {
    alphabet_ = Pick<std::string>({"ab", "abc*", "aab**", std::string("ab*\0", 4), "a*\xFF\r\n"});
    RandomCase made;
    const char joker = Pick<char>({'*', '*', '*', 'a', '\xFF', 0});
    made.jokers = {joker, joker, joker};
    if (OneIn(6)) made.jokers.run = Pick<char>({'*', 'a', 'b', 0});
    if (OneIn(12)) made.jokers.tails = made.jokers.run;
    for (std::size_t rows = 1 + Below(4); rows > 0; --rows) {
      made.rows.emplace_back(OneIn(30) ? "" : LeftText(joker), Text(5));
    }
    if (OneIn(2)) made.rows.emplace_back("a row that is wide", OneIn(2) ? "on both sides" : "");
    for (std::size_t count = OneIn(3) ? 2 : 1; count > 0; --count) {
      made.files.push_back(File(made.rows));
    }
    return made;
  }

 private:
  std::size_t Below(std::size_t bound) { return random_() % bound; }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class T>
  T Pick(const std::vector<T>& choices) {
    return choices[Below(choices.size())];
  }
  char Byte() { return alphabet_[Below(alphabet_.size())]; }
  std::string Text(std::size_t longest) {
    std::string text(Below(longest + 1), ' ');
    for (char& byte : text) byte = Byte();
    return text;
  }
  std::string LeftText(char joker) {
    std::string text = Byte() + Text(5);
    if (joker != 0 && OneIn(2)) text[Below(text.size())] = joker;
    return text;
  }
  // Returns random bytes mixed with left texts whose wildcards are filled in.
  std::string File(const Rows& rows) {
    std::string file;
    for (std::size_t parts = Below(8); parts > 0; --parts) {
      if (OneIn(2)) {
        file += Text(6);
        continue;
      }
      for (const char byte : rows[Below(rows.size())].first) {
        file += OneIn(4) ? Text(3) : std::string(1, byte);
      }
    }
    return file;
  }

  std::mt19937 random_;
  std::string alphabet_;
};

std::string Described(std::uint32_t seed, const RandomCase& made) {
  std::ostringstream text;
  text << "seed " << seed << "\nwildcards: flags " << int{made.jokers.flags} << ", tails "
       << int{made.jokers.tails} << ", run " << int{made.jokers.run};
  for (const auto& [left, right] : made.rows) {
    text << "\nrow " << ::testing::PrintToString(left) << " -> " << ::testing::PrintToString(right);
  }
  return text.str();
}

TEST(SubstitutionRandom, AgreesWithTheNaiveEngine) {
  std::int64_t hits = 0;
  for (std::uint32_t seed = kFirstSeed; seed < kFirstSeed + kCases; ++seed) {
    const RandomCase made = Generator(seed).Make();
    EngineProgram engine(made.rows, made.jokers);
    NaiveEngine naive(engine.program.tables, engine.program.settings.gJoker);
    for (const std::string& file : made.files) {
      const std::string expected = naive.Process(file);
      const std::string output = engine.Process(file);
      const CaptureState& kept = engine.program.capture;
      ASSERT_TRUE(output == expected && engine.hits() == naive.hits &&
                  kept.CaptureBuffer == naive.CaptureBuffer && !naive.Joker_SET)
          << Described(seed, made) << "\ninput  " << ::testing::PrintToString(file) << "\nengine "
          << ::testing::PrintToString(output) << ", hits " << engine.hits() << ", kept "
          << ::testing::PrintToString(kept.CaptureBuffer) << "\nnaive  "
          << ::testing::PrintToString(expected) << ", hits " << naive.hits << ", kept "
          << ::testing::PrintToString(naive.CaptureBuffer) << " " << naive.Joker_SET;
      hits += naive.hits;
    }
  }
  // The cases are worth their time only when rows match in the files.
  EXPECT_GT(hits, std::int64_t{kCases});
}

TEST(SubstitutionRandom, TheNaiveEngineKnowsTheExamples) {
  EngineProgram program({{"a*c", "[*]"}, {"x", "<*>"}}, '*');
  NaiveEngine naive(program.program.tables, '*');
  EXPECT_EQ(naive.Process("aXYcZ"), "[XY]Z");
  EXPECT_EQ(naive.hits, 1);
  EXPECT_EQ(naive.Process("x"), "<X");
}

}  // namespace
}  // namespace morvex::test
