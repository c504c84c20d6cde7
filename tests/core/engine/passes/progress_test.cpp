// The progress scale and the labels of a run.
#include "core/engine/passes/progress.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(Progress, TheScaleLeavesAtMostFourDigits) {
  struct Case {
    std::uint64_t bytes;
    int scale;
    std::int64_t maximum;
  };
  const Case cases[] = {
      {0, -3, 0},       {9, -3, 9000},       {10, -2, 1000},
      {999, -1, 9990},  {1000, 0, 1000},     {9999, 0, 9999},
      {10000, 1, 1000}, {12345678, 4, 1234}, {std::numeric_limits<std::uint64_t>::max(), 16, 1844}};
  for (const Case& tested : cases) {
    EXPECT_EQ(ScaleFor(tested.bytes), tested.scale) << tested.bytes;
    EXPECT_EQ(Scaled(tested.bytes, tested.scale), tested.maximum) << tested.bytes;
  }
}

TEST(Progress, TheFractionIsDropped) {
  EXPECT_EQ(Scaled(1999, 3), 1);
  EXPECT_EQ(Scaled(999, 3), 0);
}

TEST(Progress, TheBarShowsTheScaledBytes) {
  TestProgram test;
  test.program.frmMorvex.ProgressBar1.SetMaximum(1234);
  test.program.run.ProgressScale = 4;
  ShowProgress(test.program, 5'678'901);
  EXPECT_EQ(test.program.frmMorvex.ProgressBar1.value(), 567);
}

TEST(Progress, TheBarStaysInItsRange) {
  TestProgram test;
  test.program.frmMorvex.ProgressBar1.SetMaximum(100);
  ShowProgress(test.program, 101);
  EXPECT_EQ(test.program.frmMorvex.ProgressBar1.value(), 100);
}

TEST(Progress, TheHitsStandAboveTheResultTail) {
  TestProgram test;
  ShowHits(test.program, 1234567);
  EXPECT_EQ(test.program.frmMorvex.lblPercentage.caption.get(), "Hits: 1234567\r\n");
  test.program.run.ResultTail = "tail";
  ShowHits(test.program, 0);
  EXPECT_EQ(test.program.frmMorvex.lblPercentage.caption.get(), "Hits: 0\r\ntail");
}

TEST(Progress, TheFileCountsStandOnTwoLines) {
  TestProgram test;
  test.program.run.FilesDone = 70000;
  test.program.run.FilesSkipped = 4;
  ShowFileCounts(test.program, "Skipped: ");
  EXPECT_EQ(test.program.frmMorvex.lblTotalFiles.caption.get(), "Scanned: 70000\r\nSkipped: 4");
}

}  // namespace
}  // namespace morvex::test
