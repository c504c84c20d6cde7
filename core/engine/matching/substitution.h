// The substitution of one source's bytes: at every offset the first row in table order that matches
// writes its right text; where none matches, the byte is copied.
//
// The literal way is to try every row at every byte (match_attempt.h). This class has the same
// result at a speed that hardly depends on the number of rows: a search finds the few offsets where
// a row can begin (prefix_search.h), the rows found there are tried (row_attempts.h), and the bytes
// between two matches are copied in whole blocks (result_writer.h). docs/engine.md explains the
// mechanisms.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/engine/matching/capture_state.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"
#include "core/engine/matching/pace.h"
#include "core/engine/matching/positioned_output.h"
#include "core/engine/matching/prefix_index.h"
#include "core/engine/matching/prefix_search.h"
#include "core/engine/matching/result_writer.h"
#include "core/engine/matching/row_attempts.h"
#include "core/engine/matching/substitution_watcher.h"
#include "core/engine/matching/unfinished_prefixes.h"

namespace morvex {

enum class SubstitutionEnd {
  kWholeFile,
  kStopped,      // by the watcher; the output holds what was written so far
  kReadFailed,   // read_error() says why
  kWriteFailed,  // the output's error() says why
  kNoProgress,   // a match consumed nothing: the program must end
};

class Substitution {
 public:
  // One object serves any number of sources. Rows with an empty left text are never tried. `tables`
  // must outlive the object and must not change. `wildcard` is the wildcard's character code, 0 for
  // none. The machine must support the kernel.
  Substitution(const SubstitutionTables& tables, std::uint8_t wildcard,
               Kernel kernel = BestKernel(), SearchMethod method = SearchMethod::kWhatPays);
  Substitution(const Substitution&) = delete;
  Substitution& operator=(const Substitution&) = delete;

  // `input` and `output` must have just been opened. `state` holds the capture buffer that the last
  // source left and receives the buffer that this source leaves. If the run ends early, `state` may
  // hold an intermediate buffer.
  SubstitutionEnd Run(InputWindow& input, PositionedOutput& output, CaptureState& state,
                      SubstitutionWatcher& watcher);

  ErrorNumber read_error() const { return read_error_; }

 private:
  void Open(InputWindow& input, PositionedOutput& output, CaptureState& state,
            SubstitutionWatcher& watcher);
  // Returns the reason to end in front of `offset`; kWholeFile if there is no reason.
  SubstitutionEnd ReasonToEnd(std::uint64_t offset);
  // Processes a block of offsets from `offset` on. Returns the first offset that is not decided
  // yet.
  std::uint64_t RunBlock(std::uint64_t offset);
  void WaitForMore(std::uint64_t offset);
  template <class Batch>
  std::uint64_t RunCandidates(std::uint64_t offset, Batch& batch);
  template <class Batch>
  bool SkipHopeless(Batch& batch, Candidate& candidate, std::uint64_t hopeless_until);
  void RunCandidate(Candidate candidate);
  bool MustLeaveBlock() const { return pace_.stopped() || no_progress_ || attempts_.undecided(); }
  void CountRow(std::int32_t row) {
    if (hits_of_rows_ != nullptr) {
      ++hits_of_rows_[list_.rows[static_cast<std::size_t>(row)].table_row];
    }
  }

  CompiledList list_;
  PrefixIndex index_;
  PrefixSearch search_;
  UnfinishedPrefixes unfinished_;
  RowAttempts attempts_;
  ResultWriter writer_;
  Pace pace_;

  // The members below belong to the current Run.
  InputWindow* input_ = nullptr;
  std::int64_t* hits_of_rows_ = nullptr;  // the watcher's counters, or null
  bool no_progress_ = false;
  ErrorNumber read_error_ = ErrorNumber::kNone;
};

}  // namespace morvex
