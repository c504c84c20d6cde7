// Lists of one or two short rows over small alphabets, and for each list all inputs of certain
// lengths. The right texts of two rows tell these rows apart and show what was captured.
#include <gtest/gtest.h>

#include "tests/reference/judge.h"

namespace morvex::test {
namespace {

// All texts of `least` to `most` bytes over the alphabet.
std::vector<std::string> AllTexts(const std::string& alphabet, std::size_t least,
                                  std::size_t most) {
  std::vector<std::string> all;
  std::vector<std::string> last = {""};
  for (std::size_t size = 0; size <= most; ++size) {
    if (size >= least) all.insert(all.end(), last.begin(), last.end());
    std::vector<std::string> next;
    for (const std::string& text : last) {
      for (const char byte : alphabet) next.push_back(text + byte);
    }
    last = std::move(next);
  }
  return all;
}

// Judges the list on each input. The engines keep nothing from one input to the next.
void ExpectAgreement(const JudgedList& list, const std::vector<std::string>& inputs,
                     Kernel kernel) {
  Judge judge(list, kernel);
  for (const std::string& input : inputs) {
    judge.Forget();
    const std::string differences = judge.Differences(input);
    ASSERT_EQ(differences, "");
  }
}

const std::string kNul(1, '\0');

class Exhaustive : public ::testing::TestWithParam<char> {};

TEST_P(Exhaustive, OneRow) {
  const char run = GetParam();
  const std::vector<std::string> inputs = AllTexts("ab*" + kNul, 0, 6);
  for (const std::string& left : AllTexts("ab*", 0, 4)) {
    for (const char* right : {"", "<*>", "**", "x"}) {
      JudgedList list{{{left, right}}, '*', '*', run};
      ASSERT_NO_FATAL_FAILURE(ExpectAgreement(list, inputs, BestKernel()));
    }
  }
}

TEST_P(Exhaustive, OneRowInATableThatIsWider) {
  const std::vector<std::string> inputs = AllTexts("ab*" + kNul, 0, 5);
  for (const std::string& left : AllTexts("ab*", 1, 4)) {
    JudgedList list{{{left, "<*>"}, {"zzzzzzzzz", "zzzzzzzzz"}}, '*', '*', GetParam()};
    ASSERT_NO_FATAL_FAILURE(ExpectAgreement(list, inputs, BestKernel()));
  }
}

TEST_P(Exhaustive, TwoRows) {
  const std::vector<std::string> inputs = AllTexts("ab*" + kNul, 0, 4);
  const std::vector<std::string> lefts = AllTexts("ab*", 1, 3);
  for (const std::string& first : lefts) {
    for (const std::string& second : lefts) {
      JudgedList list{{{first, "1*"}, {second, "*2"}}, '*', '*', GetParam()};
      ASSERT_NO_FATAL_FAILURE(ExpectAgreement(list, inputs, BestKernel()));
    }
  }
}

TEST_P(Exhaustive, TwoRowsOverLongerInputs) {
  const std::vector<std::string> inputs = AllTexts("ab", 6, 9);
  const std::vector<std::string> lefts = AllTexts("ab*", 1, 3);
  for (std::size_t at = 0; at < lefts.size(); ++at) {
    const std::string& second = lefts[(at * 7 + 5) % lefts.size()];
    JudgedList list{{{lefts[at], "1*"}, {second, "*2"}}, '*', '*', GetParam()};
    ASSERT_NO_FATAL_FAILURE(ExpectAgreement(list, inputs, BestKernel()));
  }
}

std::string Name(const ::testing::TestParamInfo<char>& wildcard) {
  if (wildcard.param == 0) return "None";
  return wildcard.param == '*' ? "TheLists" : "AnotherLetter";
}

// The wildcard of the run: the same as in the list's tables, the letter "a", or none.
INSTANTIATE_TEST_SUITE_P(Wildcards, Exhaustive, ::testing::Values('*', 'a', '\0'), Name);

TEST(ExhaustiveFlags, RowsBehindTheLastFlag) {
  const std::vector<std::string> inputs = AllTexts("ab*", 0, 4);
  for (const std::string& first : AllTexts("ab*", 1, 2)) {
    for (const std::string& second : AllTexts("ab*", 1, 3)) {
      for (const std::size_t flagged : {std::size_t{0}, std::size_t{1}}) {
        JudgedList list{{{first, "1*"}, {second, "*2"}}, '*', '*', '*', flagged};
        ASSERT_NO_FATAL_FAILURE(ExpectAgreement(list, inputs, BestKernel()));
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
