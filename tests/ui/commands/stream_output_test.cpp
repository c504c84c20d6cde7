// Writing at offsets into a stream: which bytes are held back, and which are already sent.
#include "ui/commands/stream_output.h"

#include <gtest/gtest.h>

#include <vector>

namespace morvex::test {
namespace {

using namespace std::string_literals;

// An output that can only be appended to.
class Sink : public OutputFile {
 public:
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (fails) return ErrorNumber::kDiskFull;
    if (offset != all.size()) return ErrorNumber::kInvalidCall;
    all += bytes;
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override {
    closed = true;
    return ErrorNumber::kNone;
  }

  std::string all;
  bool closed = false;
  bool fails = false;
};

TEST(StreamOutputTest, WithNothingHeldBackBytesGoStraightThrough) {
  Sink sink;
  StreamOutput output(sink, 0);
  EXPECT_EQ(output.WriteAt(0, "abc"), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "abc");
  EXPECT_EQ(output.WriteAt(3, "de"), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "abcde");
  EXPECT_EQ(output.WriteAt(4, "x"), ErrorNumber::kInvalidCall);
  EXPECT_EQ(output.Close(), ErrorNumber::kNone);
  EXPECT_TRUE(sink.closed);
  EXPECT_EQ(sink.all, "abcde");
}

TEST(StreamOutputTest, HeldBytesMayBeWrittenOver) {
  Sink sink;
  StreamOutput output(sink, 4);
  EXPECT_EQ(output.WriteAt(0, "abcdef"), ErrorNumber::kNone);
  EXPECT_EQ(output.WriteAt(1, "XY"), ErrorNumber::kNone);
  EXPECT_EQ(output.WriteAt(5, "Zg"), ErrorNumber::kNone);
  EXPECT_EQ(output.Close(), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "aXYdeZg");
}

TEST(StreamOutputTest, NoMoreIsHeldThanTwiceWhatIsHeldBack) {
  Sink sink;
  StreamOutput output(sink, 4);
  EXPECT_EQ(output.WriteAt(0, "01234567"), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "");
  EXPECT_EQ(output.WriteAt(8, "8"), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "01234");
  EXPECT_EQ(output.WriteAt(5, "x"), ErrorNumber::kNone);
  EXPECT_EQ(output.WriteAt(4, "x"), ErrorNumber::kInvalidCall);
  EXPECT_EQ(output.Close(), ErrorNumber::kNone);
  EXPECT_EQ(sink.all, "01234x678");
}

TEST(StreamOutputTest, PlacesThatAreLeftOutAreNul) {
  for (const std::size_t held : {0U, 100U}) {
    Sink sink;
    StreamOutput output(sink, held);
    EXPECT_EQ(output.WriteAt(0, "a"), ErrorNumber::kNone);
    EXPECT_EQ(output.WriteAt(3, "b"), ErrorNumber::kNone);
    EXPECT_EQ(output.Close(), ErrorNumber::kNone);
    EXPECT_EQ(sink.all, "a\0\0b"s);
  }
}

TEST(StreamOutputTest, AnErrorOfTheStreamIsGiven) {
  Sink sink;
  sink.fails = true;
  StreamOutput direct(sink, 0);
  EXPECT_EQ(direct.WriteAt(0, "a"), ErrorNumber::kDiskFull);
  StreamOutput held(sink, 4);
  EXPECT_EQ(held.WriteAt(0, "a"), ErrorNumber::kNone);
  EXPECT_EQ(held.Close(), ErrorNumber::kDiskFull);
  EXPECT_TRUE(sink.closed);
}

}  // namespace
}  // namespace morvex::test
