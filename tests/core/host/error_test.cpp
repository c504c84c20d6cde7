// Error numbers and their texts.
#include "core/host/error.h"

#include <gtest/gtest.h>

#include <string>

namespace morvex::test {
namespace {

TEST(Error, EveryNumberHasItsText) {
  struct Case {
    int number;
    const char* text;
  };
  const Case cases[] = {{0, ""},
                        {5, "Invalid procedure call or argument"},
                        {6, "Overflow"},
                        {7, "Out of memory"},
                        {9, "Subscript out of range"},
                        {13, "Type mismatch"},
                        {52, "Bad file name or number"},
                        {53, "File not found"},
                        {55, "File already open"},
                        {57, "Device I/O error"},
                        {58, "File already exists"},
                        {61, "Disk full"},
                        {67, "Too many files"},
                        {68, "Device unavailable"},
                        {70, "Permission denied"},
                        {75, "Path/File access error"},
                        {76, "Path not found"}};
  for (const Case& tested : cases) {
    EXPECT_EQ(ErrorText(static_cast<ErrorNumber>(tested.number)), tested.text) << tested.number;
  }
}

TEST(Error, AnUnknownNumberHasNoText) { EXPECT_EQ(ErrorText(static_cast<ErrorNumber>(1)), ""); }

TEST(Error, TheNumbersAreThoseThatAreLogged) {
  EXPECT_EQ(static_cast<int>(ErrorNumber::kNone), 0);
  EXPECT_EQ(static_cast<int>(ErrorNumber::kFileNotFound), 53);
  EXPECT_EQ(static_cast<int>(ErrorNumber::kDiskFull), 61);
  EXPECT_EQ(static_cast<int>(ErrorNumber::kPathFileAccess), 75);
}

TEST(Result, HoldsAValueOrAnError) {
  const Result<std::string> good = std::string("value");
  EXPECT_TRUE(good);
  EXPECT_EQ(good.value, "value");
  const Result<std::string> bad = ErrorNumber::kDiskFull;
  EXPECT_FALSE(bad);
  EXPECT_EQ(bad.error, ErrorNumber::kDiskFull);
  EXPECT_EQ(bad.value, "");
}

}  // namespace
}  // namespace morvex::test
