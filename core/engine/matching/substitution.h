// The substitution of one file's bytes: at every place the first row in table order that matches
// writes its right text, otherwise the byte is copied.
//
// What that means is settled by trying every row at every byte (see match_attempt.h). Here the same
// result comes at a speed that hardly depends on the number of rows: a filter finds the few places
// where a row can begin, an index finds the rows that can match there, and the bytes between two
// matches go out in whole blocks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "core/engine/matching/candidate_filter.h"
#include "core/engine/matching/capture_memory.h"
#include "core/engine/matching/capture_state.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"
#include "core/engine/matching/key_automaton.h"
#include "core/engine/matching/key_index.h"
#include "core/engine/matching/occurrences.h"
#include "core/engine/matching/positioned_output.h"
#include "core/engine/matching/unfinished_keys.h"

namespace morvex {

// Follows a substitution as it goes.
class SubstitutionWatcher {
 public:
  virtual ~SubstitutionWatcher() = default;
  // So many matches since the last call; at least once more before the end.
  virtual void OnHits(std::int64_t count) = 0;
  // Called at the first byte and then every few ten thousand steps, of which each takes some
  // nanoseconds: a byte passed, a part of a look-up or of an attempt. `read` bytes are done. False
  // stops.
  virtual bool KeepGoing(std::uint64_t read) = 0;
  // Counters by row of the tables, each raised by one at a match of its row; null when nobody wants
  // to know. Asked once, at the start.
  virtual std::int64_t* HitsOfRows() { return nullptr; }
};

enum class SubstitutionEnd {
  kWholeFile,
  kStopped,      // the watcher wanted it; the output holds what was written so far
  kReadFailed,   // `read_error` says why
  kWriteFailed,  // the output's error() says why
  kNoProgress,   // a match consumed nothing: the program must end
};

// How the places where rows match are found. It makes no difference to what is found.
enum class Search {
  kAsItPays,   // by filter and index; by the automaton where rows nearly match too often
  kAutomaton,  // by the automaton alone
};

class Substitution {
 public:
  // Made once for a run. Rows with an empty left text are never tried. `tables` must outlive the
  // object and may not change; `joker` is the wildcard's code, 0 for none. The kernel must be
  // supported here.
  Substitution(const SubstitutionTables& tables, std::uint8_t joker, Kernel kernel = BestKernel(),
               Search search = Search::kAsItPays);
  Substitution(const Substitution&) = delete;
  Substitution& operator=(const Substitution&) = delete;

  // `input` and `output` have just been opened. `state` is what the attempts of the last file left,
  // and then what those of this one leave; after an early end it is any state they had.
  SubstitutionEnd Run(InputWindow& input, PositionedOutput& output, CaptureState& state,
                      SubstitutionWatcher& watcher);

  ErrorNumber read_error() const { return read_error_; }

 private:
  struct Match {
    std::int32_t row = KeyIndex::kNone;  // of the list's rows
    std::uint64_t length = 0;            // bytes matched
  };

  // A place where rows may match.
  struct Candidate {
    std::uint64_t place = 0;
    std::int32_t plain = KeyIndex::kNone;         // matches when no attempt in front of it does
    bool needs_attempts = false;                  // of the rows in `found_`, or of the only one
    std::int32_t only_attempt = KeyIndex::kNone;  // the row, when no other is found
  };

  static constexpr std::uint64_t kStepsBetweenQuestions = 65'536;

  void Open(CaptureState& state);
  // The block of places from `place` on. Gives the place behind it and its matches.
  std::uint64_t RunBlock(std::uint64_t place);
  void WaitForMore(std::uint64_t place);
  std::uint64_t RunByIndex(std::uint64_t place, std::size_t count);
  std::uint64_t RunByAutomaton(std::uint64_t place, std::size_t count);
  template <class NextCandidate>
  std::uint64_t RunCandidates(std::uint64_t begin, std::uint64_t place,
                              NextCandidate next_candidate);
  void RunCandidate(Candidate candidate);
  void NoteVain(std::int32_t row, std::uint64_t place);
  Match TryAttempts(std::uint64_t place, std::int32_t plain);
  // Whether the row of the attempt matches; `attempt_` is then as its last round left it. Neither
  // when that is undecided_.
  bool Try(CompiledAttempt& compiled, std::uint64_t place);
  // A stream has not given the byte yet, which may be any.
  bool IsStillToCome(std::uint64_t place) const {
    return place >= input_->end() && !input_->ended();
  }
  // Whether the rows of the table behind `after` and in front of `before` that begin with the byte
  // hold one that cuts the capture buffer.
  bool AnyCutBetween(std::uint8_t byte, std::int64_t after, std::int64_t before) const;
  void CopyUpTo(std::uint64_t place);
  void CountRow(std::int32_t row) {
    if (hits_of_rows_ != nullptr) {
      ++hits_of_rows_[list_.rows[static_cast<std::size_t>(row)].table_row];
    }
  }
  void WriteRightText(std::int32_t row);
  void WriteWithCaught(const CompiledRow& row, const std::uint8_t* text, std::size_t size);
  void Write(std::string_view bytes);
  void WritePadded(const std::uint8_t* bytes, std::size_t size);
  bool AskWatcher(std::uint64_t read);

  CompiledList list_;
  KeyIndex index_;
  CandidateFilter filter_;
  UnfinishedKeys unfinished_;
  std::optional<KeyAutomaton> automaton_;  // made when it is first needed
  Search search_;
  bool automaton_refused_ = false;  // would take too much memory
  CaptureMemory captures_;
  NextNul next_nul_;
  std::vector<NextTail> next_tails_;  // as the list's tails, without the first

  // Of the present Run.
  InputWindow* input_ = nullptr;
  PositionedOutput* output_ = nullptr;
  SubstitutionWatcher* watcher_ = nullptr;
  std::size_t places_for_automaton_ = 0;  // are still to be run by it
  std::uint64_t copied_ = 0;              // the bytes of the file in front of it are written
  std::int64_t write_position_ = 1;       // 1-based
  std::int64_t hits_ = 0;                 // that the watcher does not know of yet
  std::int64_t* hits_of_rows_ = nullptr;  // the watcher's
  std::uint64_t steps_ = 0;               // since the watcher was last asked
  bool undecided_ = false;  // the attempt at a place needs bytes that are still to come
  bool stopped_ = false;
  bool no_progress_ = false;
  std::array<std::uint16_t, CandidateFilter::kRoom> places_{};
  std::vector<KeyAutomaton::Found> found_by_automaton_;
  std::vector<std::int32_t> found_;  // rows that need an attempt at the present place
  MatchAttempt attempt_;             // the last one
  std::vector<std::uint8_t> more_;   // what it caught apart from the rest
  ErrorNumber read_error_ = ErrorNumber::kNone;
};

}  // namespace morvex
