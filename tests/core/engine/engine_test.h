// What the engine's tests share: a program with a replacement list, and one file that runs through
// it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "core/engine/passes/process_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {

// The wildcard at three times, 0 for none: `flags` when the texts that hold the wildcard were
// flagged, `tails` when the tails (the parts of the left texts behind the wildcard) were taken,
// `run` during the run. The three differ if the setting changes between the editor's opening, its
// OK and the run.
struct Wildcards {
  char flags = 0;
  char tails = 0;
  char run = 0;
};

class EngineProgram : public TestProgram {
 public:
  explicit EngineProgram(const Rows& rows, char joker = 0) { SetList(rows, joker); }
  EngineProgram(const Rows& rows, Wildcards jokers) { SetList(rows, jokers); }

  void SetList(const Rows& rows, char joker) { SetList(rows, {joker, joker, joker}); }
  void SetList(const Rows& rows, Wildcards jokers) {
    ReplacementList list;
    for (const auto& [left, right] : rows) {
      const auto index = static_cast<std::int64_t>(list.rows.size());
      list.rows.push_back({left, right});
      Set_Joker(program.tables, "Left", index, Holds(left, jokers.flags));
      Set_Joker(program.tables, "Right", index, Holds(right, jokers.flags));
    }
    EXPECT_EQ(FillArrays(list, static_cast<std::uint8_t>(jokers.tails), program.tables),
              ErrorNumber::kNone);
    program.settings.gJoker = static_cast<std::uint8_t>(jokers.run);
  }

  // Processes a file of these bytes and returns the bytes of the result. The state that the engine
  // keeps from one file to the next is not reset.
  std::string Process(const std::string& bytes) {
    files.AddFile("/s/file.txt", bytes);
    program.run.ArmedAt = system.now;
    program.run.Hits_Per_File = 0;
    std::unique_ptr<WorkFile> work;
    const Outcome outcome = ProcessFile(program, LookUpSource(program, "/s", "file.txt"), work);
    EXPECT_EQ(outcome.kind, OutcomeKind::kProcessed);
    EXPECT_EQ(outcome.error, ErrorNumber::kNone);
    if (work == nullptr) return "(there is no result)";
    const std::string made = files.Bytes(work->path());
    EXPECT_EQ(work->Discard(), ErrorNumber::kNone);
    return made;
  }

  std::int64_t hits() const { return program.run.Hits_Per_File; }

 private:
  static bool Holds(const std::string& text, char joker) {
    return joker != 0 && text.find(joker) != std::string::npos;
  }
};

// Expects that a new program with this list turns `input` into `output`, with `hits` replacements.
inline void ExpectResult(const Rows& rows, char joker, const std::string& input,
                         const std::string& output, std::int64_t hits) {
  EngineProgram program(rows, joker);
  EXPECT_EQ(program.Process(input), output);
  EXPECT_EQ(program.hits(), hits);
}

}  // namespace morvex::test
