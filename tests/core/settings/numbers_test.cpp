// Numbers in texts, converted to 16 bits.
#include "core/settings/numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace morvex::test {
namespace {

struct NumberCase {
  std::string text;
  int value;
};

const std::string kManyZeros(400, '0');
const std::string kTooManyZeros(6000, '0');  // beyond the range of every floating-point type

const std::vector<NumberCase> kWholeNumbers = {
    {"0", 0},
    {"7", 7},
    {"+7", 7},
    {"-7", -7},
    {"-0", 0},
    {"00012", 12},
    {"3000", 3000},
    {"32767", 32767},
    {"-32768", -32768},
    {" 12", 12},
    {"12 ", 12},
    {"  12  ", 12},
    {"\t12\t", 12},
    {" -5 ", -5},
    {".4", 0},
    {"1.", 1},
    {"12.25", 12},
    {"1e3", 1000},
    {"1E3", 1000},
    {"1e+3", 1000},
    {"25e-1", 2},
    {"327.67e2", 32767},
    {"1e-400", 0},
    {"0." + kManyZeros + "1", 0},
    {"-." + kManyZeros + "9", 0},
    {"0." + kManyZeros + "1e20", 0},
    {"0." + kTooManyZeros + "1", 0},
    {"-0." + kTooManyZeros + "1e999", 0},
    {kTooManyZeros + "." + kTooManyZeros + "9", 0},
    {"0e999", 0},
    {"1e-99999999999999999999", 0},
    {"1" + kManyZeros + "e-400", 1},
};

TEST(ToInteger16, TakesDecimalNumbersWithBlanksSignFractionAndExponent) {
  for (const NumberCase& number : kWholeNumbers) {
    const Result<std::int16_t> result = ToInteger16(number.text);
    EXPECT_EQ(result.error, ErrorNumber::kNone) << number.text;
    EXPECT_EQ(result.value, number.value) << number.text;
  }
}

// Both signs of every number are tried.
const std::vector<NumberCase> kHalves = {
    {"0.5", 0},  {"1.5", 2},    {"2.5", 2},    {"3.5", 4},     {"0.49", 0},
    {"0.51", 1}, {"2.501", 3},  {"25e-1", 2},  {"35e-1", 4},   {"32766.5", 32766},
    {".5", 0},   {".50001", 1}, {"99.5", 100}, {"100.5", 100}, {"32767.4999", 32767},
};

TEST(ToInteger16, RoundsHalvesToTheEvenNeighbourOnBothSidesOfZero) {
  for (const NumberCase& number : kHalves) {
    const Result<std::int16_t> positive = ToInteger16(number.text);
    EXPECT_EQ(positive.error, ErrorNumber::kNone) << number.text;
    EXPECT_EQ(positive.value, number.value) << number.text;
    const Result<std::int16_t> negative = ToInteger16("-" + number.text);
    EXPECT_EQ(negative.error, ErrorNumber::kNone) << "-" << number.text;
    EXPECT_EQ(negative.value, -number.value) << "-" << number.text;
  }
}

TEST(ToInteger16, TheLowestHalfStillFitsAndTheHighestDoesNot) {
  EXPECT_EQ(ToInteger16("-32768.5").error, ErrorNumber::kNone);
  EXPECT_EQ(ToInteger16("-32768.5").value, -32768);
  EXPECT_EQ(ToInteger16("32767.5").error, ErrorNumber::kOverflow);
}

TEST(ToInteger16, OverflowsOutsideOf16Bits) {
  const std::vector<std::string> outside = {"32768",
                                            "-32769",
                                            "32767.5",
                                            "-32768.51",
                                            "1e5",
                                            "-1e5",
                                            "1e400",
                                            "-1e400",
                                            "1e99999999999999999999",
                                            "1" + kManyZeros,
                                            "-9" + kManyZeros + ".5",
                                            "1" + kManyZeros + "e-100",
                                            "1" + kTooManyZeros,
                                            "-" + kTooManyZeros + "1" + kTooManyZeros + ".5",
                                            "1" + kTooManyZeros + "e-100"};
  for (const std::string& text : outside) {
    EXPECT_EQ(ToInteger16(text).error, ErrorNumber::kOverflow) << text;
  }
}

TEST(ToInteger16, AnythingElseIsATypeMismatch) {
  const std::vector<std::string> garbage = {"",
                                            " ",
                                            "\t",
                                            "abc",
                                            "12abc",
                                            "a12",
                                            "1 2",
                                            "--1",
                                            "+-1",
                                            "-",
                                            "+",
                                            "- 1",
                                            ".",
                                            "-.",
                                            "e5",
                                            "1e",
                                            "1e+",
                                            "inf",
                                            "nan",
                                            "-inf",
                                            "0x10",
                                            "1,5",
                                            "1.2.3",
                                            "12;",
                                            "\n5",
                                            "5\r",
                                            std::string(1, '\0'),
                                            std::string("5\0", 2)};
  for (const std::string& text : garbage) {
    EXPECT_EQ(ToInteger16(text).error, ErrorNumber::kTypeMismatch) << "[" << text << "]";
  }
}

const std::vector<NumberCase> kLeadingNumbers = {
    {"1", 1},      {"0", 0},          {"2", 2},
    {"-1", -1},    {"+1", 1},         {"1abc", 1},
    {" 1", 1},     {"\t1", 1},        {"12 34", 12},
    {"1.5x", 2},   {"2.5x", 2},       {"0.5", 0},
    {"-2.5,", -2}, {"1e2z", 100},     {"1ex", 1},
    {"1e+", 1},    {"1..2", 1},       {"1,9", 1},
    {"", 0},       {" ", 0},          {"abc", 0},
    {"x1", 0},     {"-", 0},          {"--1", 0},
    {".", 0},      {".x", 0},         {"e5", 0},
    {"inf", 0},    {"nan", 0},        {"0x10", 0},
    {"=1", 0},     {"32767z", 32767}, {"-32768.5z", -32768},
};

TEST(LeadingInteger16, TakesTheNumberThatTheTextStartsWith) {
  for (const NumberCase& number : kLeadingNumbers) {
    const Result<std::int16_t> result = LeadingInteger16(number.text);
    EXPECT_EQ(result.error, ErrorNumber::kNone) << "[" << number.text << "]";
    EXPECT_EQ(result.value, number.value) << "[" << number.text << "]";
  }
}

TEST(LeadingInteger16, OverflowsOutsideOf16Bits) {
  for (const char* text : {"32768", "-32769", "32767.5", "40000 files", "1e9", "1e400x"}) {
    EXPECT_EQ(LeadingInteger16(text).error, ErrorNumber::kOverflow) << text;
  }
}

TEST(LeadingInteger16, ANumberTooNearToZeroIsZero) {
  const Result<std::int16_t> result = LeadingInteger16("0." + kManyZeros + "1x");
  EXPECT_EQ(result.error, ErrorNumber::kNone);
  EXPECT_EQ(result.value, 0);
}

}  // namespace
}  // namespace morvex::test
