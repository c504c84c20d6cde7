// Bytes as text that a terminal may show.
#include "core/text/shown_text.h"

#include <gtest/gtest.h>

#include <random>

#include "core/text/utf8.h"

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

// Undoes ShownPath, by the rules in its header.
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
  // One half of a surrogate pair at each end does not spoil the character between them.
  EXPECT_EQ(ShownPiece("\0\xDE\x3D\xD8\0\xDE\x3D\xD8"s, Encoding::kUtf16Le),
            "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
}

TEST(Printable, ControlCharactersAreWrittenOutSoThatANameCannotSteerTheTerminal) {
  EXPECT_EQ(Printable("a\x1B[31mb"), "a\\x1B[31mb");
  EXPECT_EQ(Printable("line\nbreak"), "line\\x0Abreak");
  EXPECT_EQ(Printable(std::string("\0\x7F", 2)), "\\x00\\x7F");
}

TEST(Printable, ANameCannotBreakItsLine) {
  EXPECT_EQ(Printable("a\r\nAll is well."), "a\\x0D\\x0AAll is well.");
}

TEST(Printable, TheControlCharactersBehindAsciiAreWrittenOutToo) {
  EXPECT_EQ(Printable("\xC2\x9B"
                      "31m"),
            "\xC2\\x9B31m");
  EXPECT_EQ(Printable("\xC2\xA0\xC3\x9B"), "\xC2\xA0\xC3\x9B");
}

TEST(Printable, ABadByteOfUtf8CannotSteerATerminalEither) {
  EXPECT_EQ(Printable("\x9B"
                      "31m"),
            "\\x9B31m");
  // A truncated sequence; a stray byte after a whole sequence; a byte that leads no sequence.
  EXPECT_EQ(Printable("\xE2\x82"), "\xE2\\x82");
  EXPECT_EQ(Printable("\xC3\x9B\x9B"), "\xC3\x9B\\x9B");
  EXPECT_EQ(Printable("\xF5\x80\x80\x80"), "\xF5\\x80\\x80\\x80");
  // Overlong forms and surrogates count as sequences (see Utf8Sequence), so they stay as they are.
  EXPECT_EQ(Printable("\xE0\x82\x80 \xED\xA0\x80"), "\xE0\x82\x80 \xED\xA0\x80");
  EXPECT_EQ(Printable("\xE2\x82\xAC \xF0\x9F\x98\x80"), "\xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(PrintableLines, CrLfIsALineBreakAndALoneCrIsNot) {
  EXPECT_EQ(PrintableLines("path\r\nmessage"), "path\nmessage");
  EXPECT_EQ(PrintableLines("\r\n"), "\n");
  EXPECT_EQ(PrintableLines("a\rb\r"), "a\\x0Db\\x0D");
}

TEST(PrintableLines, ACrLfInAPathIsNoLineBreak) {
  EXPECT_EQ(PrintableLines("/a\r\nAll is well.\r\nmessage"), "/a\\x0D\\x0AAll is well.\nmessage");
}

TEST(Printable, OtherBytesStay) { EXPECT_EQ(Printable("Zo\xC3\xAB \xFF"), "Zo\xC3\xAB \xFF"); }

// A control character is always escaped, whatever bytes stand beside it.
TEST(Printable, NoControlCharacterIsLeft) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
      const std::string shown = Printable(bytes);
      for (std::string_view rest = shown; !rest.empty();) {
        const Utf8Sequence sequence = ReadUtf8(rest);
        const char32_t code = sequence.character.value_or(static_cast<unsigned char>(rest.front()));
        ASSERT_FALSE(code < 0x20 || (code >= 0x7F && code <= 0x9F)) << first << " " << second;
        rest.remove_prefix(sequence.size);
      }
      EXPECT_EQ(Printable(shown), shown) << first << " " << second;
    }
  }
}

}  // namespace
}  // namespace morvex::test
