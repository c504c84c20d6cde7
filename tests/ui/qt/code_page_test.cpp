// Bytes and their shown text: conversion both ways without loss, and offsets in bytes.
#include "ui/qt/code_page.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QString>
#include <QTemporaryDir>
#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <string>

#include "tests/ui/qt/file_names.h"
#include "tests/ui/qt/variable.h"

namespace morvex::test {
namespace {

std::string Hex(const std::string& bytes) {
  return QByteArray::fromStdString(bytes).toHex(' ').toStdString();
}

std::string Bytes(std::initializer_list<int> codes) {
  std::string bytes;
  for (const int code : codes) bytes += static_cast<char>(code);
  return bytes;
}

// Returns the code page that kSingleByte stands for in the locale "C": Windows-1252.
CodePage WesternPage() {
  const Variable locale("LC_ALL", "C");
  return CodePage(TextCodec::kSingleByte);
}

// Checks that converting the bytes to shown text and back returns the same bytes. Checks also that
// the offset of the end of the bytes and the offset of the end of the shown text are converted to
// each other.
void ExpectLossless(const CodePage& page, const std::string& bytes) {
  const QString shown = page.Shown(bytes);
  const std::optional<std::string> back = page.Bytes(shown);
  ASSERT_TRUE(back.has_value()) << Hex(bytes);
  ASSERT_EQ(Hex(*back), Hex(bytes));
  ASSERT_EQ(page.BytesInFront(shown, shown.size()), bytes.size()) << Hex(bytes);
  ASSERT_EQ(page.CharactersInFront(shown, bytes.size()), shown.size()) << Hex(bytes);
}

TEST(Utf8Page, EveryByteAloneComesBack) {
  const CodePage page(TextCodec::kUtf8);
  for (int byte = 0; byte < 256; ++byte) ExpectLossless(page, Bytes({byte}));
}

TEST(Utf8Page, EveryPairOfBytesComesBack) {
  const CodePage page(TextCodec::kUtf8);
  for (int pair = 0; pair < 0x10000; ++pair) ExpectLossless(page, Bytes({pair >> 8, pair & 0xFF}));
}

TEST(Utf8Page, EveryThreeBytesAfterALeadOfThreeComeBack) {
  const CodePage page(TextCodec::kUtf8);
  for (int lead = 0xE0; lead <= 0xEF; ++lead) {
    for (int pair = 0; pair < 0x10000; pair += 7) {
      ExpectLossless(page, Bytes({lead, pair >> 8, pair & 0xFF}));
    }
  }
}

TEST(Utf8Page, FourBytesAtTheirBordersComeBack) {
  const CodePage page(TextCodec::kUtf8);
  for (int lead = 0xF0; lead <= 0xFF; ++lead) {
    for (const int second : {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF}) {
      for (const int third : {0x41, 0x7F, 0x80, 0xBF, 0xC0}) {
        for (const int fourth : {0x41, 0x7F, 0x80, 0xBF, 0xC0}) {
          ExpectLossless(page, Bytes({lead, second, third, fourth}));
        }
      }
    }
  }
}

TEST(Utf8Page, EveryCharacterIsShownAsItselfAndComesBack) {
  const CodePage page(TextCodec::kUtf8);
  constexpr char32_t kBlock = 0x400;
  for (char32_t first = 0; first <= 0x10FFFF; first += kBlock) {
    if (first >= 0xD800 && first <= 0xDFFF) continue;
    std::u32string characters;
    for (char32_t code = first; code < first + kBlock; ++code) characters += code;
    const QString shown = QString::fromStdU32String(characters);
    const std::string bytes = shown.toStdString();
    ASSERT_TRUE(page.Shown(bytes) == shown) << static_cast<std::uint32_t>(first);
    ASSERT_TRUE(page.Bytes(shown) == bytes) << static_cast<std::uint32_t>(first);
  }
}

TEST(Utf8Page, BytesThatAreNoUtf8AreShownAsLoneSurrogates) {
  const CodePage page(TextCodec::kUtf8);
  EXPECT_EQ(page.Shown("a\xFF\x80"), QString::fromUtf16(u"a\xDCFF\xDC80"));
  // In this order: an overlong form, a surrogate, a code above U+10FFFF, a truncated character.
  EXPECT_EQ(page.Shown("\xC0\xAF").size(), 2);
  EXPECT_EQ(page.Shown("\xED\xA0\x80").size(), 3);
  EXPECT_EQ(page.Shown("\xF4\x90\x80\x80").size(), 4);
  EXPECT_EQ(page.Shown("\xE2\x82").size(), 2);
}

TEST(Utf8Page, SurrogatesThatStandForNoByteCannotBeWritten) {
  const CodePage page(TextCodec::kUtf8);
  for (int code = 0xD800; code <= 0xDFFF; ++code) {
    const bool is_escape = code >= 0xDC80 && code <= 0xDCFF;
    EXPECT_EQ(page.Bytes(QString(QChar(code))).has_value(), is_escape)
        << static_cast<std::uint32_t>(code);
  }
}

TEST(Utf8Page, PlacesCountBytesAndNeverLieWithinACharacter) {
  const CodePage page(TextCodec::kUtf8);
  // The first four characters have 1, 2, 3 and 4 bytes; the fourth has two UTF-16 units.
  const QString shown = QString::fromUtf8("a\u00E9\u20AC\U0001F600z");
  ASSERT_EQ(shown.size(), 6);
  const std::size_t bytes_in_front[] = {0, 1, 3, 6, 6, 10, 11};
  for (qsizetype units = 0; units <= 6; ++units) {
    EXPECT_EQ(page.BytesInFront(shown, units), bytes_in_front[units]) << units;
  }
  EXPECT_EQ(page.BytesInFront(shown, 100), 11U);
  const qsizetype units_in_front[] = {0, 1, 1, 2, 2, 2, 3, 3, 3, 3, 5, 6};
  for (std::size_t bytes = 0; bytes <= 11; ++bytes) {
    EXPECT_EQ(page.CharactersInFront(shown, bytes), units_in_front[bytes]) << bytes;
  }
  EXPECT_EQ(page.CharactersInFront(shown, 100), 6);
}

TEST(Utf8Page, AnEmptyTextIsEmptyBothWays) {
  const CodePage page(TextCodec::kUtf8);
  EXPECT_EQ(page.Shown(""), QString());
  EXPECT_EQ(page.Bytes(""), "");
  EXPECT_EQ(page.BytesInFront("", 0), 0U);
  EXPECT_EQ(page.CharactersInFront("", 0), 0);
}

TEST(SingleBytePage, WithoutOneOfTheUsersItIsWindows1252) {
  const CodePage page = WesternPage();
  EXPECT_EQ(page.Shown("\x80\x85\x92\x99\x9F"), QString::fromUtf8("€…’™Ÿ"));
  EXPECT_EQ(page.Shown("\xE9\xFF\xA0"), QString::fromUtf8("éÿ\u00A0"));
  EXPECT_EQ(page.Bytes(QString::fromUtf8("Zoë kost €5")),
            "Zo\xEB kost \x80"
            "5");
}

TEST(SingleBytePage, BytesWithoutACharacterAreShownAsControls) {
  const CodePage page = WesternPage();
  for (const int byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(page.Shown(Bytes({byte})), QString(QChar(byte))) << byte;
  }
}

TEST(SingleBytePage, EveryByteIsOneCharacterAndComesBack) {
  const CodePage page = WesternPage();
  QString all;
  for (int byte = 0; byte < 256; ++byte) {
    ExpectLossless(page, Bytes({byte}));
    const QString shown = page.Shown(Bytes({byte}));
    ASSERT_EQ(shown.size(), 1);
    EXPECT_FALSE(all.contains(shown)) << byte;
    all += shown;
  }
}

TEST(SingleBytePage, EveryPairOfBytesComesBack) {
  const CodePage page = WesternPage();
  for (int pair = 0; pair < 0x10000; ++pair) ExpectLossless(page, Bytes({pair >> 8, pair & 0xFF}));
}

TEST(SingleBytePage, OnlyItsOwn256CharactersCanBeWritten) {
  const CodePage page = WesternPage();
  int written = 0;
  for (int code = 0; code < 0x10000; ++code) {
    const std::optional<std::string> bytes = page.Bytes(QString(QChar(code)));
    if (!bytes) continue;
    ++written;
    EXPECT_EQ(page.Shown(*bytes), QString(QChar(code)));
  }
  EXPECT_EQ(written, 256);
  EXPECT_FALSE(page.Bytes(QString::fromUtf8("a日b")).has_value());
  EXPECT_FALSE(page.Bytes(QString::fromUtf8("\U0001F600")).has_value());
}

TEST(SingleBytePage, PlacesInBytesArePlacesInCharacters) {
  const CodePage page = WesternPage();
  const QString shown = QString::fromUtf8("a€é");
  for (qsizetype place = 0; place <= 3; ++place) {
    EXPECT_EQ(page.BytesInFront(shown, place), static_cast<std::size_t>(place));
    EXPECT_EQ(page.CharactersInFront(shown, static_cast<std::size_t>(place)), place);
  }
}

TEST(SingleBytePage, AnUnknownLocaleAndOneOfSeveralBytesMeanWindows1252) {
  for (const char* name : {"xx_XX.NOSUCH", "C.UTF-8"}) {
    const Variable locale("LC_ALL", name);
    EXPECT_EQ(CodePage(TextCodec::kSingleByte).Shown("\x80"), QString::fromUtf8("€")) << name;
  }
}

TEST(FileNamePage, WithoutCharactersOfTheLocalesOwnNamesAreUtf8WhateverTheTextsAre) {
  if (!kNamesAreBytes) GTEST_SKIP() << "the system always has a page";
  for (const char* name : {"C", "xx_XX.NOSUCH", "C.UTF-8"}) {
    const Variable locale("LC_ALL", name);
    for (const TextCodec codec : {TextCodec::kSingleByte, TextCodec::kUtf8}) {
      const CodePage page = CodePage::OfFileNames(codec);
      EXPECT_EQ(page.Shown("/caf\xC3\xA9"), QString::fromUtf8("/café")) << name;
      EXPECT_EQ(page.Bytes(QString::fromUtf8("/日本")), "/日本") << name;
      ExpectLossless(page, "/caf\xE9");
    }
  }
}

// Makes a locale in a temporary folder.
class MadeLocale : public testing::Test {
 protected:
  void Make(const std::string& country, const std::string& characters) {
    name_ = country + "." + characters;
    const std::string command = "localedef -i " + country + " -f " + characters + " '" +
                                folder_.filePath(name_.c_str()).toStdString() + "' 2>/dev/null";
    if (std::system(command.c_str()) != 0) GTEST_SKIP() << "no sources for the locale " << name_;
  }

  QTemporaryDir folder_;
  std::string name_;
};

TEST_F(MadeLocale, ASingleByteLocaleBringsItsOwnCodePage) {
  Make("ru_RU", "KOI8-R");
  if (IsSkipped()) return;
  const Variable place("LOCPATH", folder_.path().toUtf8());
  const Variable locale("LC_ALL", QByteArray::fromStdString(name_));
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  const CodePage page(TextCodec::kSingleByte);
  EXPECT_EQ(std::setlocale(LC_CTYPE, nullptr), before) << "the C library's locale has changed";
  EXPECT_EQ(page.Shown("\xF0\xD2\xC9\xD7\xC5\xD4"), QString::fromUtf8("Привет"));
  EXPECT_EQ(page.Bytes(QString::fromUtf8("мир")), "\xCD\xC9\xD2");
  EXPECT_FALSE(page.Bytes(QString::fromUtf8("é")).has_value());
  EXPECT_EQ(CodePage::OfFileNames(TextCodec::kSingleByte).Shown("\xCD\xC9\xD2"),
            QString::fromUtf8("мир"));
  for (int byte = 0; byte < 256; ++byte) ExpectLossless(page, Bytes({byte}));
}

TEST_F(MadeLocale, BytesThatItHasNoCharacterForComeBackToo) {
  Make("el_GR", "ISO-8859-7");
  if (IsSkipped()) return;
  const Variable place("LOCPATH", folder_.path().toUtf8());
  const Variable locale("LC_ALL", QByteArray::fromStdString(name_));
  const CodePage page(TextCodec::kSingleByte);
  EXPECT_EQ(page.Shown("\xE1\xE2"), QString::fromUtf8("αβ"));
  EXPECT_EQ(page.Shown("\xD2"), QString(QChar(0xDCD2)));
  for (int byte = 0; byte < 256; ++byte) ExpectLossless(page, Bytes({byte}));
}

// Calls `work` five times with a text of `characters` characters. Returns the milliseconds of the
// fastest call.
template <class Work>
double Milliseconds(int characters, Work work) {
  const QString text = QString::fromUtf8("ÿ").repeated(characters);
  double least = 1e9;
  for (int i = 0; i < 5; ++i) {
    QElapsedTimer timer;
    timer.start();
    work(text);
    least = std::min(least, static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }
  return least;
}

TEST(CodePageCost, AMillionCharactersTakeMoments) {
  for (const TextCodec codec : {TextCodec::kUtf8, TextCodec::kSingleByte}) {
    const CodePage page(codec);
    const double taken = Milliseconds(1000000, [&](const QString& text) {
      const std::size_t bytes = page.BytesInFront(text, text.size());
      EXPECT_EQ(page.CharactersInFront(text, bytes), text.size());
      EXPECT_EQ(page.Shown(*page.Bytes(text)).size(), text.size());
    });
    EXPECT_LT(taken, 3000) << "with sanitizers on a busy machine it is some 100 ms";
  }
}

}  // namespace
}  // namespace morvex::test
