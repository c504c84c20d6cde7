// What is copied between replacements, and the two ways to write a right text.
#include "core/engine/matching/result_writer.h"

#include <gtest/gtest.h>

#include <string>

#include "core/engine/matching/bytes_in_memory.h"
#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

class ResultWriterTest : public ::testing::Test {
 protected:
  ResultWriterTest()
      : program_(Rows{{"ab", "X"}, {"cd", std::string(40, 'Y')}}),
        list_(program_.program.tables, 0),
        source_(bytes_),
        writer_(list_),
        captures_(list_) {
    input_.Open(source_);
    EXPECT_EQ(input_.MoveTo(0), ErrorNumber::kNone);
    output_.Open(sink_);
    captures_.Open(input_, state_);
    writer_.Open(input_, output_);
  }

  std::string Finished() {
    writer_.CopyUpTo(bytes_.size());
    EXPECT_EQ(output_.Finish(), ErrorNumber::kNone);
    return sink_.bytes();
  }

  const std::string bytes_ = "-ab-cd-ab";
  EngineProgram program_;
  CompiledList list_;
  MemorySource source_;
  InputWindow input_;
  MemorySink sink_;
  PositionedOutput output_;
  CaptureState state_;
  ResultWriter writer_;
  CaptureMemory captures_;
  Pace pace_;
};

TEST_F(ResultWriterTest, WithoutReplacementsTheInputIsCopied) { EXPECT_EQ(Finished(), bytes_); }

TEST_F(ResultWriterTest, RightTextsStandInThePlaceOfWhatIsSkipped) {
  writer_.CopyUpTo(4);
  writer_.WriteRightText(1, captures_, pace_);
  writer_.SkipTo(6);
  EXPECT_EQ(writer_.copied(), 6u);
  EXPECT_EQ(Finished(), "-ab-" + std::string(40, 'Y') + "-ab");
}

TEST_F(ResultWriterTest, ABurstReplacesWhatHasShortRightTexts) {
  ResultWriter::Burst burst(writer_);
  EXPECT_TRUE(burst.Replace(1, list_.effects[0]));
  EXPECT_FALSE(burst.Replace(4, list_.effects[1])) << "its right text is long";
  EXPECT_TRUE(burst.Replace(7, list_.effects[0]));
  EXPECT_EQ(burst.End(), 2);
  EXPECT_EQ(Finished(), "-X-cd-X");
}

TEST_F(ResultWriterTest, ABurstWithoutReplacementsLeavesNothing) {
  ResultWriter::Burst burst(writer_);
  EXPECT_EQ(burst.End(), 0);
  EXPECT_EQ(writer_.copied(), 0u);
  EXPECT_EQ(Finished(), bytes_);
}

}  // namespace
}  // namespace morvex::test
