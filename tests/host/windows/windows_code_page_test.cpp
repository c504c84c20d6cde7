#include "host/windows/windows_code_page.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "host/windows/windows_api.h"

namespace morvex::windows {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes.push_back(static_cast<char>(code));
  return bytes;
}

TEST(CodePage, EveryByteOfTheUsualPageComesBack) {
  const CodePage page(1252);
  const std::optional<std::wstring> wide = page.Wide(AllBytes());
  ASSERT_TRUE(wide.has_value());
  EXPECT_EQ(page.Bytes(*wide), AllBytes());
}

TEST(CodePage, CharactersHaveTheBytesOfTheirPage) {
  EXPECT_EQ(CodePage(1252).Bytes(L"\u20ac\u00e9\u0153"), "\x80\xe9\x9c");
  EXPECT_EQ(CodePage(1251).Bytes(L"\u0416"), "\xc6");
  EXPECT_EQ(CodePage(1251).Wide("\xc6"), std::wstring(L"\u0416"));
}

TEST(CodePage, NothingIsBentToFit) {
  const CodePage page(1252);
  // In this order: a Greek Alpha, a full-width A, an infinity sign, a dotless i; then a surrogate
  // pair.
  EXPECT_EQ(page.Bytes(L"\u0391\uff21\u221e\u0131"), "????");
  EXPECT_EQ(page.Bytes(L"\U0001f600"), "??");
}

TEST(CodePage, AByteWithoutACharacterIsNoText) {
  // In a 7-bit page, the system would convert the bytes 128 to 255 as if they were the bytes 0 to
  // 127.
  const CodePage ascii(20127);
  EXPECT_EQ(ascii.Number(), 20127U);
  for (const char byte : AllBytes()) {
    const std::optional<std::wstring> wide = ascii.Wide(std::string(1, byte));
    EXPECT_EQ(wide.has_value(), static_cast<unsigned char>(byte) < 128);
  }
  EXPECT_FALSE(ascii.Wide("caf\xe9").has_value());
}

TEST(CodePage, APageOfSeveralBytesForACharacterIsReplacedByTheUsualOne) {
  for (const unsigned number : {65001U, 932U, 65000U, 4711U}) {
    const CodePage page(number);
    EXPECT_EQ(page.Number(), 1252U) << number;
    EXPECT_EQ(page.Bytes(L"\u00e9"), "\xe9") << number;
  }
}

TEST(CodePage, TheSystemsPageTakesEveryAsciiText) {
  const std::string text = "C:\\Data\\report (1).txt";
  const std::optional<std::wstring> wide = SystemCodePage().Wide(text);
  ASSERT_TRUE(wide.has_value());
  EXPECT_EQ(*wide, L"C:\\Data\\report (1).txt");
  EXPECT_EQ(SystemCodePage().Bytes(*wide), text);
}

}  // namespace
}  // namespace morvex::windows
