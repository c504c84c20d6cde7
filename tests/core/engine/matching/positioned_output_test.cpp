// The output that is written at explicit offsets.
#include "core/engine/matching/positioned_output.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/engine/matching/bytes_in_memory.h"

namespace morvex::test {
namespace {

constexpr std::size_t kBlock = PositionedOutput::kBlock;

// Counts the calls, and lets them fail with `write_error` and `close_error`.
class Counted : public MemorySink {
 public:
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    ++calls;
    return write_error != ErrorNumber::kNone ? write_error : MemorySink::WriteAt(offset, bytes);
  }
  ErrorNumber Close() override {
    ++calls;
    return close_error;
  }
  std::int64_t calls = 0;
  ErrorNumber write_error = ErrorNumber::kNone;
  ErrorNumber close_error = ErrorNumber::kNone;
};

class PositionedOutputTest : public ::testing::Test {
 protected:
  const std::string& Finished(PositionedOutput& output) {
    EXPECT_EQ(output.Finish(), ErrorNumber::kNone);
    return sink_.bytes();
  }

  Counted sink_;
};

TEST_F(PositionedOutputTest, NothingWrittenMakesAnEmptyFile) {
  PositionedOutput output;
  output.Open(sink_);
  EXPECT_EQ(Finished(output), "");
}

TEST_F(PositionedOutputTest, WritesForward) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "a");
  output.Put(2, "bcd");
  output.Put(5, "e");
  EXPECT_EQ(Finished(output), "abcde");
}

TEST_F(PositionedOutputTest, WhatIsWrittenLastStands) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abcdef");
  output.Put(3, "XY");
  EXPECT_EQ(Finished(output), "abXYef");
}

TEST_F(PositionedOutputTest, GoesOnForwardAfterAStepBack) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  output.Put(2, "X");
  output.Put(3, "Y");
  output.Put(4, "Z");
  EXPECT_EQ(Finished(output), "aXYZ");
}

TEST_F(PositionedOutputTest, GoesBackAndForthByteByByte) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "......");
  for (const int position : {6, 1, 4, 2, 5, 3}) {
    output.Put(position, std::string(1, static_cast<char>('0' + position)));
  }
  EXPECT_EQ(Finished(output), "123456");
}

TEST_F(PositionedOutputTest, DropsWhatFallsBelowTheStart) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  output.Put(0, "X");
  output.Put(-5, "XXXXXX");
  output.Put(-1, "--X");
  EXPECT_EQ(Finished(output), "Xbc");
}

TEST_F(PositionedOutputTest, GoesOnBehindBytesThatReachFromBelowTheStart) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(-1, "xyz");
  output.Put(2, "a");
  EXPECT_EQ(Finished(output), "za");
}

TEST_F(PositionedOutputTest, AnEmptyTextWritesNothing) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "ab");
  output.Put(1, "");
  output.Put(3, "c");
  EXPECT_EQ(Finished(output), "abc");
}

TEST_F(PositionedOutputTest, OverwritesAcrossTheBorderOfABlock) {
  for (const std::size_t back : {std::size_t{1}, std::size_t{2}, std::size_t{3}}) {
    MemorySink sink;
    PositionedOutput output;
    output.Open(sink);
    std::string expected;
    for (std::size_t i = 1; i <= kBlock + 1; ++i) {
      output.Put(static_cast<std::int64_t>(i), std::string(1, static_cast<char>(i % 251)));
      expected += static_cast<char>(i % 251);
    }
    const std::size_t position = kBlock + 2 - back;
    output.Put(static_cast<std::int64_t>(position), "XYZ");
    expected.resize(std::max(expected.size(), position + 2));
    expected.replace(position - 1, 3, "XYZ");
    EXPECT_EQ(output.Finish(), ErrorNumber::kNone);
    EXPECT_TRUE(sink.bytes() == expected) << back;
  }
}

TEST_F(PositionedOutputTest, ATextLargerThanABlockIsWrittenWhole) {
  PositionedOutput output;
  output.Open(sink_);
  const std::string text(3 * kBlock + 5, 't');
  output.Put(1, "a");
  output.Put(2, text);
  output.Put(static_cast<std::int64_t>(text.size() + 2), "b");
  EXPECT_TRUE(Finished(output) == "a" + text + "b");
}

TEST_F(PositionedOutputTest, SpeaksToTheFileInLargeBlocks) {
  PositionedOutput output;
  output.Open(sink_);
  const std::int64_t calls = sink_.calls;
  for (std::size_t i = 1; i <= 24 * kBlock; ++i) output.Put(static_cast<std::int64_t>(i), "x");
  EXPECT_LE(sink_.calls - calls, 24);
  EXPECT_EQ(Finished(output).size(), 24 * kBlock);
}

TEST_F(PositionedOutputTest, BytesFilledIntoItsRoomStandBetweenThoseThatArePut) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "ab");
  const PositionedOutput::Room room = output.RoomAt(3);
  ASSERT_GE(room.end - room.at, 1000);
  std::fill_n(room.at, 10, '?');  // the caller may write behind the end that it passes to Fill
  std::copy_n("cd", 2, room.at);
  output.Fill(room.at + 2);
  output.Put(5, "ef");
  output.Put(2, "B");
  EXPECT_EQ(Finished(output), "aBcdef");
}

TEST_F(PositionedOutputTest, ThereIsRoomOnlyRightBehindTheBytesBefore) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  EXPECT_EQ(output.RoomAt(3).at, nullptr);
  EXPECT_EQ(output.RoomAt(5).at, nullptr);
  EXPECT_EQ(output.RoomAt(0).at, nullptr);
  EXPECT_NE(output.RoomAt(4).at, nullptr);
}

TEST_F(PositionedOutputTest, AFullBlockHasNoRoom) {
  PositionedOutput output;
  output.Open(sink_);
  const PositionedOutput::Room room = output.RoomAt(1);
  std::fill(room.at, room.end, 'x');
  output.Fill(room.end);
  const PositionedOutput::Room left = output.RoomAt(1 + (room.end - room.at));
  EXPECT_EQ(left.at, left.end);
  output.Put(1 + (room.end - room.at), "y");
  EXPECT_EQ(Finished(output), std::string(static_cast<std::size_t>(room.end - room.at), 'x') + "y");
}

TEST_F(PositionedOutputTest, AWriteErrorStays) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  EXPECT_EQ(output.error(), ErrorNumber::kNone);
  sink_.write_error = ErrorNumber::kDiskFull;
  output.Put(4, std::string(kBlock, 'X'));
  EXPECT_EQ(output.error(), ErrorNumber::kDiskFull);
  sink_.write_error = ErrorNumber::kNone;
  output.Put(4, std::string(kBlock, 'Y'));
  EXPECT_EQ(output.error(), ErrorNumber::kDiskFull);
  EXPECT_EQ(output.Finish(), ErrorNumber::kDiskFull);
  EXPECT_EQ(sink_.bytes(), "");
}

TEST_F(PositionedOutputTest, AnErrorOfTheLastWriteIsGivenAtTheEnd) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  sink_.write_error = ErrorNumber::kDiskFull;
  EXPECT_EQ(output.Finish(), ErrorNumber::kDiskFull);
}

TEST_F(PositionedOutputTest, AnErrorOfClosingIsGivenAtTheEnd) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  sink_.close_error = ErrorNumber::kDeviceIo;
  EXPECT_EQ(output.Finish(), ErrorNumber::kDeviceIo);
}

TEST_F(PositionedOutputTest, TheFirstErrorIsTheOneThatIsGiven) {
  PositionedOutput output;
  output.Open(sink_);
  output.Put(1, "abc");
  sink_.write_error = ErrorNumber::kDiskFull;
  sink_.close_error = ErrorNumber::kDeviceIo;
  EXPECT_EQ(output.Finish(), ErrorNumber::kDiskFull);
}

}  // namespace
}  // namespace morvex::test
