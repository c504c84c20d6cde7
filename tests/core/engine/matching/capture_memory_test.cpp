// The events that change the capture buffer, and the buffer's bytes after them.
#include "core/engine/matching/capture_memory.h"

#include <gtest/gtest.h>

#include <string>

#include "core/engine/matching/bytes_in_memory.h"
#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

class CaptureMemoryTest : public ::testing::Test {
 protected:
  // The first row captures bytes. An attempt of the second row at a "q", or of the third row at an
  // "a", leaves only the first of the captured bytes.
  CaptureMemoryTest()
      : program_(Rows{{"a*;", ""}, {"q", ""}, {"ab", ""}}, '*'),
        list_(program_.program.tables, '*'),
        source_(bytes_),
        memory_(list_) {
    window_.Open(source_);
    EXPECT_EQ(window_.MoveTo(0), ErrorNumber::kNone);
  }

  // Lets the attempt of the first row at `offset` capture the `count` bytes behind the byte at
  // `offset`.
  void CaptureAt(std::uint64_t offset, int count) {
    MatchAttempt attempt;
    std::vector<std::uint8_t> more;
    for (int round = 0; round <= count; ++round) {
      const std::uint8_t byte = *window_.At(offset + static_cast<std::uint64_t>(round));
      ASSERT_TRUE(attempt.Round(list_.attempts[0].pattern, byte, false, more));
    }
    memory_.Captured(offset, attempt, more);
    memory_.StartAt(offset + 1);
  }

  std::string Settled() {
    memory_.Settle();
    return {state_.CaptureBuffer.begin(), state_.CaptureBuffer.end()};
  }

  const std::string bytes_ = "..a123a45...q.." + std::string(40'000, 'x');
  EngineProgram program_;
  CompiledList list_;
  MemorySource source_;
  InputWindow window_;
  CaptureState state_;
  CaptureMemory memory_;
};

TEST_F(CaptureMemoryTest, KeepsWhatTheLastSourceLeft) {
  state_.CaptureBuffer = {'x', 'y'};
  memory_.Open(window_, state_);
  EXPECT_EQ(memory_.Bytes(), "xy");
  EXPECT_EQ(Settled(), "xy");
}

TEST_F(CaptureMemoryTest, HoldsWhatTheLastAttemptCaptured) {
  memory_.Open(window_, state_);
  CaptureAt(2, 3);
  EXPECT_EQ(memory_.Bytes(), "123");
  CaptureAt(6, 2);
  EXPECT_EQ(memory_.Bytes(), "45");
  EXPECT_EQ(Settled(), "45");
}

TEST_F(CaptureMemoryTest, ACutLeavesTheFirstByte) {
  memory_.Open(window_, state_);
  CaptureAt(2, 3);
  memory_.Cut();
  EXPECT_EQ(Settled(), "1");
  memory_.Cut();
  EXPECT_EQ(Settled(), "1");
}

TEST_F(CaptureMemoryTest, AnOffsetWhereACuttingRowBeginsCuts) {
  memory_.Open(window_, state_);
  CaptureAt(6, 2);
  memory_.TriedUpTo(12);
  EXPECT_EQ(memory_.Bytes(), "45");
  memory_.TriedUpTo(13);
  EXPECT_EQ(memory_.Bytes(), "4");
}

TEST_F(CaptureMemoryTest, OffsetsThatWereNotTriedDoNotCut) {
  memory_.Open(window_, state_);
  CaptureAt(6, 2);
  memory_.StartAt(13);
  memory_.TriedUpTo(15);
  EXPECT_EQ(Settled(), "45");
}

TEST_F(CaptureMemoryTest, OfTheRowsTriedBehindACaptureThoseThatBeginWithTheByteCut) {
  memory_.Open(window_, state_);
  CaptureAt(2, 3);
  memory_.TriedRows(2, 0, 2);  // tries only the row of "q"
  EXPECT_EQ(memory_.Bytes(), "123");
  CaptureAt(2, 3);
  memory_.TriedRows(2, 0, 3);
  EXPECT_EQ(memory_.Bytes(), "1");
}

TEST_F(CaptureMemoryTest, AnAttemptInVainCapturesUpToItsLastRoundAndTheRowsBehindItAreTried) {
  memory_.Open(window_, state_);
  CaptureAt(2, 3);
  // At offset 6 the file has an "a", with which the row "ab" begins. So an attempt of that row cuts
  // the captured bytes.
  memory_.CapturedInVain(0, 6);
  EXPECT_EQ(memory_.Bytes(), "4");
  // No row that cuts the captured bytes begins with "x".
  memory_.CapturedInVain(0, 20);
  EXPECT_EQ(memory_.Bytes(), std::string(MatchAttempt::kLastRound - 1, 'x'));
  memory_.CapturedInVain(0, 20);
  memory_.Cut();
  EXPECT_EQ(Settled(), "x");
}

TEST_F(CaptureMemoryTest, AnotherSourceForgetsTheEventsOfTheLastOne) {
  memory_.Open(window_, state_);
  CaptureAt(2, 3);
  memory_.TriedRows(2, 0, 3);
  state_.CaptureBuffer = {'x', 'y'};
  memory_.Open(window_, state_);
  EXPECT_EQ(Settled(), "xy");
}

}  // namespace
}  // namespace morvex::test
