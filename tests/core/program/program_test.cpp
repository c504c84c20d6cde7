// Yielding to the windows, unloading forms, and the state of a new program.
#include "core/program/program.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using std::chrono::milliseconds;

TEST(YieldToWindows, HandlesEventsWhen15MillisecondsHavePassed) {
  TestProgram test;
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 1);
  test.system.steady += milliseconds(14);
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 1);
  test.system.steady += milliseconds(1);
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 2);
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 2);
}

TEST(YieldToWindows, CountsFromTheEndOfTheHandling) {
  TestProgram test;
  test.user.on_events = [&] { test.system.steady += milliseconds(100); };
  YieldToWindows(test.program);
  test.system.steady += milliseconds(14);
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 1);
  test.system.steady += milliseconds(1);
  YieldToWindows(test.program);
  EXPECT_EQ(test.user.events_handled, 2);
}

TEST(Unload, TakesAWindowOffTheScreen) {
  TestProgram test;
  test.program.frmOpties.loaded = true;
  test.program.frmOpties.visible = true;
  Unload(test.program.frmOpties);
  EXPECT_FALSE(test.program.frmOpties.loaded);
  EXPECT_FALSE(test.program.frmOpties.visible);
}

TEST(IsBusy, WhileARunWorksOrAListIsReadIntoTheGrid) {
  TestProgram test;
  EXPECT_FALSE(IsBusy(test.program));
  test.program.run.working = true;
  EXPECT_TRUE(IsBusy(test.program));
  test.program.run.working = false;
  test.program.frmReplacements.importing = true;
  EXPECT_TRUE(IsBusy(test.program));
}

TEST(Program, AFreshOneHasNoListNoWildcardAndOneCapturedZero) {
  MemoryFiles files;
  FakeSystem system;
  ScriptedUser user;
  const Program program(Host{files, system, user});
  EXPECT_FALSE(program.Beeindigd);
  EXPECT_EQ(program.settings.gJoker, 0);
  EXPECT_EQ(program.settings.gSeparator, "");
  EXPECT_EQ(program.tables.PairCount, 0);
  EXPECT_EQ(program.capture.CaptureBuffer, std::vector<std::uint8_t>{0});
  EXPECT_EQ(program.run.end, RunEnd::kNone);
  EXPECT_EQ(program.run.ResultTail, "");
}

TEST(Program, TwoProgramsShareNothing) {
  TestProgram one;
  TestProgram other;
  one.program.run.HitsTotal = 5;
  one.program.frmMorvex.lblFiles.caption = "here";
  EXPECT_EQ(other.program.run.HitsTotal, 0);
  EXPECT_EQ(other.program.frmMorvex.lblFiles.caption.get(), "");
}

}  // namespace
}  // namespace morvex::test
