// The code of a text's first character, in both kinds of text codec.
#include "core/settings/character_code.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(CharacterCode, OfAnEmptyTextIsZero) {
  TestProgram test;
  EXPECT_EQ(CharacterCode(test.program, ""), 0);
  test.system.codec = TextCodec::kUtf8;
  EXPECT_EQ(CharacterCode(test.program, ""), 0);
}

TEST(CharacterCode, EveryByteIsItsOwnCodeInASingleByteCodec) {
  TestProgram test;
  for (int code = 0; code < 256; ++code) {
    const std::string text = {static_cast<char>(code), 'x'};
    EXPECT_EQ(CharacterCode(test.program, text), code);
  }
}

TEST(CharacterCode, OnlyTheFirstCharacterCounts) {
  TestProgram test;
  EXPECT_EQ(CharacterCode(test.program, "ab"), 'a');
  EXPECT_EQ(CharacterCode(test.program, std::string("\0b", 2)), 0);
}

TEST(CharacterCode, ACharacterOfSeveralBytesHasNoneInUtf8) {
  TestProgram test;
  test.system.codec = TextCodec::kUtf8;
  const std::vector<std::string> wide = {
      "\xC2\x80",     "\xC3\xA9",     "\xC3\xA9tude",     "\xDF\xBF",         "\xE0\xA0\x80",
      "\xE2\x82\xAC", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF",
  };
  for (const std::string& text : wide) {
    EXPECT_EQ(CharacterCode(test.program, text), 0) << text;
  }
}

TEST(CharacterCode, TheSameBytesGiveTheirFirstInASingleByteCodec) {
  TestProgram test;
  EXPECT_EQ(CharacterCode(test.program, "\xC3\xA9"), 0xC3);
  EXPECT_EQ(CharacterCode(test.program, "\xE2\x82\xAC"), 0xE2);
}

TEST(CharacterCode, AsciiHasItsCodeInUtf8) {
  TestProgram test;
  test.system.codec = TextCodec::kUtf8;
  for (int code = 0; code < 128; ++code) {
    EXPECT_EQ(CharacterCode(test.program, std::string(1, static_cast<char>(code))), code);
  }
}

// A wildcard that was set under another codec can be a byte that starts no whole sequence. Such a
// wildcard must not be lost.
TEST(CharacterCode, AByteThatStartsNoWholeSequenceIsItsOwnCodeInUtf8) {
  TestProgram test;
  test.system.codec = TextCodec::kUtf8;
  const std::vector<std::string> broken = {
      "\x80", "\xBF\x80", "\xC0\x80",  "\xC1\xBF",     "\xC3",          "\xC3x",
      "\xE9", "\xE2\x82", "\xE2\x82x", "\xF0\x9F\x98", "\xF0\x9F\x98x", "\xF5\x80\x80\x80",
      "\xFF"};
  for (const std::string& text : broken) {
    EXPECT_EQ(CharacterCode(test.program, text), static_cast<unsigned char>(text[0])) << text;
  }
}

}  // namespace
}  // namespace morvex::test
