// Bytes as text that can be shown anywhere.
#include "ui/commands/shown_text.h"

#include <gtest/gtest.h>

#include <random>

namespace morvex::test {
namespace {

using namespace std::string_literals;

TEST(ShownText, IsUtf8OrElseWindows1252WithControlsEscaped) {
  EXPECT_EQ(ShownText("M\xC3\xBCller"), "M\xC3\xBCller");
  EXPECT_EQ(ShownText("M\xFCller"), "M\xC3\xBCller");
  EXPECT_EQ(ShownText("a\r\n\tb\x1b[0m\0\x7F"s),
            "a\\x0D\\x0A\\x09"
            "b\\x1B[0m\\x00\\x7F");
  EXPECT_EQ(ShownText("\xC2\x85"), "\\u0085");
  EXPECT_EQ(ShownText(""), "");
}

TEST(ShownText, WhatTurnsTheOrderOfTextOrHasNoWidthIsEscaped) {
  EXPECT_EQ(ShownText("a\xE2\x80\xAE"
                      "b\xE2\x81\xA6\xE2\x80\xA8\xEF\xBB\xBF\xD8\x9C"),
            "a\\u202Eb\\u2066\\u2028\\uFEFF\\u061C");
  EXPECT_EQ(ShownPath("txt.\xE2\x80\xAE"
                      "exe"),
            "txt.\\u202Eexe");
}

TEST(ShownText, OfAPathOnlyWhatIsNoUtf8IsEscaped) {
  EXPECT_EQ(ShownPath("/a/M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80"),
            "/a/M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(ShownPath("/a/M\xFCller"), "/a/M\\xFCller");
  EXPECT_EQ(ShownPath("\xC3\nx\xC3"), "\\xC3\\x0Ax\\xC3");
}

TEST(ShownText, ABackslashStandsTwiceWhereItWouldBeTakenForAnEscape) {
  EXPECT_EQ(ShownPath("a\\x1B"), "a\\\\x1B");
  EXPECT_EQ(ShownPath("a\x1B"), "a\\x1B");
  EXPECT_EQ(ShownPath("a\\u202E"), "a\\\\u202E");
  EXPECT_EQ(ShownPath("a\\\x1B"), "a\\\\\\x1B");
  EXPECT_EQ(ShownPath("a\\\\b"), "a\\\\\\b");
  EXPECT_EQ(ShownText("a\\x1B"), "a\\\\x1B");
  EXPECT_EQ(ShownPiece("a\\x1B", Encoding::kWindows1252), "a\\\\x1B");
}

TEST(ShownText, TheSeparatorsOfAPathOnWindowsStayReadable) {
  for (const char* path : {"C:\\Users\\ada\\list.txt", "a\\x1b", "a\\xyz", "a\\u20", "a\\", "\\"}) {
    EXPECT_EQ(ShownPath(path), path);
  }
}

// Undoes ShownPath, as the page on it says it can be done.
std::string ReadBack(std::string_view shown) {
  std::string bytes;
  while (!shown.empty()) {
    const auto code = [&](std::size_t digits) {
      return static_cast<char32_t>(std::stoul(std::string(shown.substr(2, digits)), nullptr, 16));
    };
    const auto is_code = [&](char kind, std::size_t digits) {
      return shown.size() >= digits + 2 && shown[0] == '\\' && shown[1] == kind &&
             shown.substr(2, digits).find_first_not_of("0123456789ABCDEF") == std::string::npos;
    };
    std::size_t size = 1;
    if (shown.starts_with("\\\\")) {
      bytes += '\\';
      size = 2;
    } else if (is_code('x', 2)) {
      bytes += static_cast<char>(code(2));
      size = 4;
    } else if (is_code('u', 4)) {
      bytes += *Encode(code(4), Encoding::kUtf8);
      size = 6;
    } else {
      bytes += shown.front();
    }
    shown.remove_prefix(size);
  }
  return bytes;
}

TEST(ShownText, NoTwoPathsAreShownAlike) {
  const std::vector<std::string> parts = {"\\",      "\\",   "x",        "u",    "1",
                                          "B",       "2",    "0",        "E",    "/",
                                          "\x1B",    "\xFF", "\xC2\x85", "\x85", "\xE2\x80\xAE",
                                          "\xC3\xBC"};
  std::mt19937 random(22);
  for (int i = 0; i < 100'000; ++i) {
    std::string path;
    for (std::size_t count = random() % 9; count > 0; --count)
      path += parts[random() % parts.size()];
    ASSERT_EQ(ReadBack(ShownPath(path)), path) << ShownPath(path);
  }
}

TEST(ShownText, APieceLosesTheCharactersThatItsEndsCut) {
  EXPECT_EQ(ShownPiece("\xBC"
                       "ab\xC3",
                       Encoding::kUtf8),
            "ab");
  EXPECT_EQ(ShownPiece("\x82\xAC"
                       "ab\xE2\x82",
                       Encoding::kUtf8),
            "ab");
  EXPECT_EQ(ShownPiece("ab", Encoding::kUtf8), "ab");
  EXPECT_EQ(ShownPiece("", Encoding::kUtf8), "");
}

TEST(ShownText, APieceThatIsNoUtf8IsReadAsWindows1252) {
  EXPECT_EQ(ShownPiece("Br\xFC"
                       "ckner",
                       Encoding::kUtf8),
            "Br\xC3\xBC"
            "ckner");
  EXPECT_EQ(ShownPiece("Br\xFC"
                       "ckner",
                       Encoding::kBytes),
            "Br\xC3\xBC"
            "ckner");
  EXPECT_EQ(ShownPiece("M\xC3\xBC", Encoding::kWindows1252), "M\xC3\x83\xC2\xBC");
}

TEST(ShownText, APieceOfUtf16IsReadInItsByteOrder) {
  EXPECT_EQ(ShownPiece("M\0\xFC\0\n\0"s, Encoding::kUtf16Le), "M\xC3\xBC\\x0A");
  EXPECT_EQ(ShownPiece("\0M\0\xFC\0"s, Encoding::kUtf16Be), "M\xC3\xBC");
  EXPECT_EQ(ShownPiece("\x3D\xD8M\0"s, Encoding::kUtf16Le), "\xEF\xBF\xBDM");
  // A cut character at each end spoils none between them.
  EXPECT_EQ(ShownPiece("\0\xDE\x3D\xD8\0\xDE\x3D\xD8"s, Encoding::kUtf16Le),
            "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
}

}  // namespace
}  // namespace morvex::test
