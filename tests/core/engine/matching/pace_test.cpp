// When the watcher is asked, and what it is told.
#include "core/engine/matching/pace.h"

#include <gtest/gtest.h>

#include <vector>

namespace morvex::test {
namespace {

class Watcher : public SubstitutionWatcher {
 public:
  void OnHits(std::int64_t count) override { hits.push_back(count); }
  bool KeepGoing(std::uint64_t read) override {
    asked_at.push_back(read);
    return goes_on;
  }
  std::vector<std::int64_t> hits;
  std::vector<std::uint64_t> asked_at;
  bool goes_on = true;
};

TEST(Pace, AsksAtTheStartAndThenEveryFewTenThousandSteps) {
  Watcher watcher;
  Pace pace;
  pace.Open(watcher);
  EXPECT_TRUE(pace.MayGoOn(0));
  pace.AddSteps(65'535);
  EXPECT_TRUE(pace.MayGoOn(7));
  pace.AddSteps(1);
  EXPECT_TRUE(pace.MayGoOn(8));
  EXPECT_EQ(watcher.asked_at, (std::vector<std::uint64_t>{0, 8}));
}

TEST(Pace, TellsTheHitsSinceTheLastTime) {
  Watcher watcher;
  Pace pace;
  pace.Open(watcher);
  pace.AddHits(3);
  pace.MayGoOn(0);
  pace.AddHits(2);
  pace.TellHits();
  EXPECT_EQ(watcher.hits, (std::vector<std::int64_t>{3, 2}));
}

TEST(Pace, AStopIsFinalUntilAnotherSourceBegins) {
  Watcher watcher;
  Pace pace;
  pace.Open(watcher);
  watcher.goes_on = false;
  EXPECT_FALSE(pace.MayGoOn(0));
  EXPECT_TRUE(pace.stopped());
  watcher.goes_on = true;
  pace.AddSteps(1'000'000);
  EXPECT_FALSE(pace.MayGoOn(1));
  pace.Open(watcher);
  EXPECT_TRUE(pace.MayGoOn(0));
}

}  // namespace
}  // namespace morvex::test
