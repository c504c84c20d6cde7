// The time that a run took.
#include "core/program/elapsed_time.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

std::string Between(const TimeOfDay& start, const TimeOfDay& end) {
  return MinutesAndSeconds(ElapsedBetween(SecondsOfDay(start), SecondsOfDay(end)));
}

TEST(ElapsedTime, SecondsOfDayCountFromMidnight) {
  EXPECT_EQ(SecondsOfDay({0, 0, 0}), 0);
  EXPECT_EQ(SecondsOfDay({1, 2, 3}), 3723);
  EXPECT_EQ(SecondsOfDay({23, 59, 59}), 86399);
}

TEST(ElapsedTime, ElapsedOf125SecondsIs2MinutesAnd5Seconds) {
  const ElapsedTime time = ElapsedBetween(1000, 1125);
  EXPECT_EQ(time.elapsed, 125);
  EXPECT_EQ(time.minutes, 2);
  EXPECT_EQ(time.seconds, 5);
  EXPECT_EQ(MinutesAndSeconds(time), "2 min 5 sec");
}

TEST(ElapsedTime, OverMidnightTheTimeIsNegative) {
  EXPECT_EQ(ElapsedBetween(SecondsOfDay({23, 59, 50}), SecondsOfDay({0, 0, 10})).elapsed, -86380);
  EXPECT_EQ(Between({23, 59, 50}, {0, 0, 10}), "-1439 min -40 sec");
  EXPECT_EQ(Between({23, 59, 59}, {23, 59, 0}), "0 min -59 sec");
}

TEST(ElapsedTime, AShortRunTakesNoTime) {
  EXPECT_EQ(Between({12, 0, 0}, {12, 0, 0}), "0 min 0 sec");
  EXPECT_EQ(Between({12, 0, 0}, {12, 0, 59}), "0 min 59 sec");
  EXPECT_EQ(Between({12, 0, 0}, {12, 1, 0}), "1 min 0 sec");
}

TEST(ElapsedTime, HoursAreMinutes) { EXPECT_EQ(Between({1, 0, 0}, {12, 30, 1}), "690 min 1 sec"); }

}  // namespace
}  // namespace morvex::test
