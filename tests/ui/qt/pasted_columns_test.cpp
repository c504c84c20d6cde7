// Which pasted texts count as rows with a left and a right text.
#include "ui/qt/pasted_columns.h"

#include <gtest/gtest.h>

#include <string>

namespace morvex::test {
namespace {

// Returns the rows as in "a=b;c=d", or "none".
std::string Columns(const char* text) {
  const auto rows = ColumnsOf(text);
  if (!rows) return "none";
  std::string shown;
  for (const auto& [left, right] : *rows) {
    shown += (shown.empty() ? "" : ";") + left.toStdString() + "=" + right.toStdString();
  }
  return shown;
}

TEST(PastedColumns, EachLineWithOneTabIsARow) {
  EXPECT_EQ(Columns("a\tb"), "a=b");
  EXPECT_EQ(Columns("a\tb\nc\td"), "a=b;c=d");
  EXPECT_EQ(Columns("a\tb\r\nc\td\r\n"), "a=b;c=d");
  EXPECT_EQ(Columns("a\tb\rc\td\r"), "a=b;c=d");
  EXPECT_EQ(Columns("a\t\n\tb"), "a=;=b");
}

TEST(PastedColumns, LinesWithoutATabOrWithSeveralAreNone) {
  for (const char* text : {"", "a", "\t", "a\nb", "a\tb\tc", "a\tb\nc", "a\tb\n\nc\td", "a\tb\n\n",
                           "\n", "a\tb\nc\td\te"}) {
    EXPECT_EQ(Columns(text), "none") << text;
  }
}

TEST(PastedColumns, OneLineEndIsTakenFromATextsEnd) {
  EXPECT_EQ(WithoutLastLineEnd("a\r\n"), "a");
  EXPECT_EQ(WithoutLastLineEnd("a\n"), "a");
  EXPECT_EQ(WithoutLastLineEnd("a\r"), "a");
  EXPECT_EQ(WithoutLastLineEnd("a\n\n"), "a\n");
  EXPECT_EQ(WithoutLastLineEnd("a\nb"), "a\nb");
  EXPECT_EQ(WithoutLastLineEnd(""), "");
}

}  // namespace
}  // namespace morvex::test
