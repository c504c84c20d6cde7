// Where a substitution asks its watcher whether to go on, and what a stop leaves written.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/engine/matching/substitution.h"
#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

// Lets a substitution go on at the first `questions` questions and stops the substitution at the
// next question.
class Stopper : public SubstitutionWatcher {
 public:
  explicit Stopper(std::size_t questions) : questions_(questions) {}
  void OnHits(std::int64_t count) override { hits += count; }
  bool KeepGoing(std::uint64_t read) override {
    asked_at.push_back(read);
    return asked_at.size() <= questions_;
  }
  std::int64_t hits = 0;
  std::vector<std::uint64_t> asked_at;

 private:
  std::size_t questions_;
};

struct StoppedRun {
  SubstitutionEnd end = SubstitutionEnd::kWholeFile;
  std::string output;
};

StoppedRun Substitute(const std::string& bytes, SearchMethod method, Stopper& stopper) {
  EngineProgram scene(Rows{{"ab", "X"}});
  Substitution substitution(scene.program.tables, 0, BestKernel(), method);
  MemorySource source(bytes);
  MemorySink sink;
  InputWindow input;
  PositionedOutput output;
  input.Open(source);
  output.Open(sink);
  CaptureState state;
  StoppedRun run;
  run.end = substitution.Run(input, output, state, stopper);
  EXPECT_EQ(output.Finish(), ErrorNumber::kNone);
  run.output = sink.bytes();
  return run;
}

// A search by the automaton takes blocks of 64 KiB. A block ends earlier in front of the first
// offset from which the window shows fewer than kLookAhead bytes; then the window is refilled. In
// this text, the first such offset is 131,073. There the watcher is not asked, because only one
// byte was searched since the last question.
TEST(SubstitutionStop, ByTheAutomatonTheWatcherIsAskedBeforeEachBlock) {
  Stopper stopper(100);
  EXPECT_EQ(Substitute(std::string(200'000, '-'), SearchMethod::kAutomaton, stopper).end,
            SubstitutionEnd::kWholeFile);
  EXPECT_EQ(stopper.asked_at, (std::vector<std::uint64_t>{0, 65'536, 131'072, 196'609}));
}

TEST(SubstitutionStop, WhatIsWrittenIsTheResultOfTheBytesDone) {
  std::string bytes;
  while (bytes.size() < 200'000) bytes += "-ab-";
  for (const SearchMethod method : {SearchMethod::kWhatPays, SearchMethod::kAutomaton}) {
    Stopper stopper(1);
    const StoppedRun run = Substitute(bytes, method, stopper);
    EXPECT_EQ(run.end, SubstitutionEnd::kStopped);
    ASSERT_EQ(stopper.asked_at.size(), 2u);
    const std::uint64_t done = stopper.asked_at.back();
    EXPECT_GE(done, 60'000u);
    // Each "-ab-" becomes "-X-": four bytes become three.
    EXPECT_EQ(run.output.size(), done / 4 * 3 + done % 4 - (done % 4 == 3 ? 1 : 0));
    EXPECT_EQ(stopper.hits, static_cast<std::int64_t>(run.output.size() / 3));
  }
}

}  // namespace
}  // namespace morvex::test
