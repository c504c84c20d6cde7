// Compares the engine with LiteralSubstitution. For the same list and files, both must write the
// same bytes, count the same hits, end in the same way and keep the same state for the next file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/engine/matching/substitution.h"
#include "tests/reference/literal_substitution.h"

namespace morvex::test {

// A list and how its tables were made. `flags` is the wildcard when the editor was opened, `tails`
// when its OK was clicked, `run` during the run; 0 means no wildcard. These three differ if the
// wildcard was changed in between.
struct JudgedList {
  std::vector<std::pair<std::string, std::string>> rows;  // left text, right text
  char flags = 0;
  char tails = 0;
  char run = 0;
  // JokerLeft ends at this row: only for the rows in front of it the tables say whether the left
  // text holds the wildcard.
  std::size_t flagged_rows = ~std::size_t{0};
};

// The list in a form that can be pasted into a test.
std::string Print(const JudgedList& list);
std::string PrintBytes(const std::string& bytes);

class Judge {
 public:
  Judge(const JudgedList& list, Kernel kernel) : Judge(list, list, kernel) {}
  // Gives the two engines different lists, to show that the judge notices differences.
  Judge(const JudgedList& literal_list, const JudgedList& engine_list, Kernel kernel);
  ~Judge();

  // Runs the file through both engines, after the files judged before. Returns an empty text if the
  // engines agree, else everything that a person needs to see why they differ.
  std::string Differences(const std::string& file);

  // Makes both engines forget what they kept from the files so far.
  void Forget();

 private:
  struct Outcome {
    SubstitutionEnd end = SubstitutionEnd::kWholeFile;
    std::string bytes;
    std::int64_t hits = 0;
    bool operator==(const Outcome&) const = default;
  };
  struct Buffers {
    InputWindow input;
    PositionedOutput output;
  };

  template <class Run>
  Outcome RunThrough(ByteSource& input, Run run);

  JudgedList list_;
  Kernel kernel_;
  SubstitutionTables literal_tables_;
  SubstitutionTables tables_;
  LiteralState literal_state_;
  CaptureState state_;
  CaptureState automaton_state_;
  CaptureState pieces_state_;
  std::unique_ptr<LiteralSubstitution> literal_;
  std::unique_ptr<Substitution> engine_;
  std::unique_ptr<Substitution> by_automaton_;
  std::unique_ptr<Substitution> in_pieces_;  // reads a stream that pauses at offsets of all kinds
  std::vector<std::string> files_;           // since the last Forget
  static Buffers& SharedBuffers();
};

// Every kernel that this machine supports.
std::vector<Kernel> SupportedKernels();

}  // namespace morvex::test
