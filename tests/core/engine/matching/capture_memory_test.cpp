// The capture buffer as notes, and the moments at which it becomes bytes.
#include "core/engine/matching/capture_memory.h"

#include <gtest/gtest.h>

#include <string>

#include "core/engine/matching/bytes_in_memory.h"

namespace morvex::test {
namespace {

class CaptureMemoryTest : public ::testing::Test {
 protected:
  CaptureMemoryTest() : file_(bytes_), memory_(Cutting()) {
    window_.Open(file_);
    EXPECT_EQ(window_.MoveTo(0), ErrorNumber::kNone);
    row_.left = "a*;";
    row_.tail = ";";
    row_.width = 9;
    row_.joker = '*';
    row_.flag = PatternRow::Flag::kWildcard;
  }

  // Rows that cut begin with "q".
  static const std::array<std::vector<std::int64_t>, 256>& Cutting() {
    static std::array<std::vector<std::int64_t>, 256> rows;
    rows['q'] = {3};
    return rows;
  }

  // The attempt at `place` catches `count` bytes behind its first one.
  void CatchAt(std::uint64_t place, int count) {
    MatchAttempt attempt;
    std::vector<std::uint8_t> more;
    for (int round = 0; round <= count; ++round) {
      const std::uint8_t byte = *window_.At(place + static_cast<std::uint64_t>(round));
      ASSERT_TRUE(attempt.Round(row_, byte, false, more));
    }
    memory_.Caught(place, attempt, more);
    memory_.StartAt(place + 1);
  }

  std::string Settled() {
    memory_.Settle(window_);
    return {state_.CaptureBuffer.begin(), state_.CaptureBuffer.end()};
  }

  const std::string bytes_ = "..a123a45...q..";
  MemorySource file_;
  InputWindow window_;
  PatternRow row_;
  CaptureState state_;
  CaptureMemory memory_;
};

TEST_F(CaptureMemoryTest, KeepsWhatTheLastFileLeft) {
  state_.CaptureBuffer = {'x', 'y'};
  memory_.Open(state_);
  EXPECT_EQ(memory_.Bytes(window_), "xy");
  EXPECT_EQ(Settled(), "xy");
}

TEST_F(CaptureMemoryTest, HoldsWhatTheLastAttemptCaught) {
  memory_.Open(state_);
  CatchAt(2, 3);
  EXPECT_EQ(memory_.Bytes(window_), "123");
  CatchAt(6, 2);
  EXPECT_EQ(memory_.Bytes(window_), "45");
  EXPECT_EQ(Settled(), "45");
}

TEST_F(CaptureMemoryTest, ACutLeavesTheFirstByte) {
  memory_.Open(state_);
  CatchAt(2, 3);
  memory_.Cut();
  EXPECT_EQ(Settled(), "1");
  memory_.Cut();
  EXPECT_EQ(Settled(), "1");
}

TEST_F(CaptureMemoryTest, APlaceWhereACuttingRowBeginsCuts) {
  memory_.Open(state_);
  CatchAt(2, 3);
  memory_.TriedUpTo(window_, 12);
  EXPECT_EQ(memory_.Bytes(window_), "123");
  memory_.TriedUpTo(window_, 13);
  EXPECT_EQ(memory_.Bytes(window_), "1");
}

TEST_F(CaptureMemoryTest, PlacesThatWereNotTriedDoNotCut) {
  memory_.Open(state_);
  CatchAt(2, 3);
  memory_.StartAt(13);
  memory_.TriedUpTo(window_, 15);
  EXPECT_EQ(Settled(), "123");
}

}  // namespace
}  // namespace morvex::test
