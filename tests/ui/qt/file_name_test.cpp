// Paths converted to the toolkit and back.
#include "ui/qt/file_name.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "tests/support/test_program.h"
#include "tests/ui/qt/file_names.h"

namespace morvex::test {
namespace {

// Returns a Greek code page, in which 0xC1 is Alpha and 0xD2 has no character.
PageCharacters GreekPage() {
  PageCharacters characters{};
  for (std::size_t byte = 0; byte < 0x80; ++byte) characters[byte] = static_cast<char16_t>(byte);
  for (std::size_t byte = 0xC1; byte <= 0xD9; ++byte) {
    if (byte != 0xD2) characters[byte] = static_cast<char16_t>(0x391 + byte - 0xC1);
  }
  return characters;
}

class PageSystem : public FakeSystem {
 public:
  std::optional<PageCharacters> SystemPage() override { return page; }
  std::optional<PageCharacters> page;
};

TEST(SystemPage, TextsAndNamesOfFilesGoByThePageThatTheSystemHas) {
  PageSystem system;
  system.page = GreekPage();
  for (const CodePage& page : {CodePage::OfTexts(system), CodePage::OfFileNames(system)}) {
    EXPECT_TRUE(page.is_of_system());
    EXPECT_EQ(page.Shown("a\xC1"), QString::fromUtf8("aΑ"));
    EXPECT_EQ(page.Bytes(QString::fromUtf8("aΑ")), "a\xC1");
    EXPECT_FALSE(page.Bytes(QString::fromUtf8("é")).has_value());
  }
}

TEST(SystemPage, EveryByteComesBack) {
  const CodePage page(GreekPage());
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(page.Bytes(page.Shown(bytes)), bytes);
}

TEST(SystemPage, WithoutOneTextsGoByTheCodec) {
  PageSystem system;
  system.codec = TextCodec::kUtf8;
  EXPECT_FALSE(CodePage::OfTexts(system).is_of_system());
  EXPECT_EQ(CodePage::OfTexts(system).Shown("\xC3\xA9"), QString::fromUtf8("é"));
  EXPECT_EQ(CodePage::OfFileNames(system).Shown("\xC3\xA9"), QString::fromUtf8("é"));
}

TEST(FileName, GoesByThePageThatTheSystemHas) {
  const CodePage page(GreekPage());
  EXPECT_EQ(ToolkitPath(page, "/a/\xC1"), QString::fromUtf8("/a/Α"));
  EXPECT_EQ(PathBytes(page, QString::fromUtf8("/a/Α")),
            QDir::toNativeSeparators("/a/").toStdString() + "\xC1");
}

TEST(FileName, IsNoneWhenThePageCannotSpellIt) {
  const CodePage page(GreekPage());
  EXPECT_FALSE(PathBytes(page, QString::fromUtf8("/a/é")).has_value());
  // The Cyrillic A looks like the code page's Alpha, but is another character.
  EXPECT_FALSE(PathBytes(page, QString::fromUtf8("/a/А")).has_value());
}

TEST(FileName, OtherwiseGoesByTheToolkitsRules) {
  if (!kNamesAreBytes) GTEST_SKIP() << "the system always has a page";
  const CodePage page = CodePage::OfFileNames(TextCodec::kUtf8);
  EXPECT_EQ(ToolkitPath(page, "/caf\xC3\xA9"), QString::fromUtf8("/café"));
  EXPECT_EQ(PathBytes(page, QString::fromUtf8("/café")), "/caf\xC3\xA9");
}

TEST(FileName, IsNoneWhenTheToolkitHasGarbledIt) {
  if (!kNamesAreBytes) GTEST_SKIP() << "the system always has a page";
  const CodePage page = CodePage::OfFileNames(TextCodec::kUtf8);
  const QTemporaryDir folder;
  const QString garbled = folder.path() + "/" + QChar(QChar::ReplacementCharacter);
  EXPECT_FALSE(PathBytes(page, garbled).has_value());
  ASSERT_TRUE(QDir().mkdir(garbled));
  EXPECT_TRUE(PathBytes(page, garbled).has_value());
}

}  // namespace
}  // namespace morvex::test
