// Finds the offsets at which rows may match, and these rows.
//
// The filters and the index are fast where few prefixes stand, and slow where many prefixes nearly
// match: there they make several probes at each offset. The automaton takes the same short time for
// every byte. So the search begins with the filters and the index. When a block takes too many
// probes, the automaton searches the offsets that follow.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/engine/matching/candidate_filter.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/prefix_automaton.h"
#include "core/engine/matching/prefix_index.h"

namespace morvex {

// How candidates are found. The method affects speed, not what is found.
enum class SearchMethod {
  kWhatPays,   // filters and index; the automaton where rows nearly match too often
  kAutomaton,  // the automaton alone
};

// An offset at which rows may match.
struct Candidate {
  static constexpr std::int32_t kNone = -1;

  std::uint64_t offset = 0;
  std::int32_t plain = kNone;         // the plain row that matches if no earlier row does
  bool needs_attempts = false;        // rows must be tried: those in PrefixSearch::found()
  std::int32_t only_attempt = kNone;  // if set, the only row there: try it and ignore found()
};

class PrefixSearch {
 public:
  // `index` must be the index of `rows`; both must outlive the search. For `dense` see
  // CandidateFilter::kDense.
  PrefixSearch(const PrefixIndex& index, const std::vector<CompiledRow>& rows, Kernel kernel,
               SearchMethod method = SearchMethod::kWhatPays,
               std::size_t dense = CandidateFilter::kDense);

  // Call when another source begins.
  void Reset() { offsets_for_automaton_ = always_automaton_ ? kAllOffsets : 0; }

  // The most offsets that the next Search can take.
  std::size_t block() const {
    return offsets_for_automaton_ > 0 ? kAutomatonBlock : CandidateFilter::kBlock;
  }

  // Searches `count` (block() at most) offsets from `begin` on. `bytes` points to the byte at
  // `begin`; `size` bytes must be readable. Behind them must follow NULs, as many as the larger of
  // PrefixIndex::kReadAhead and ScanTables::kReadAhead.
  //
  // Calls `run_batch` for each batch of candidates, in ascending order. A batch has
  //   bool Next(std::uint64_t from, Candidate& candidate): sets the next candidate at or behind
  //     `from`, or returns false when the batch has no more;
  //   std::size_t extra_probes() const: the index's probes beyond those of an ordinary list;
  //   void Prefetch(effects) const: brings the effects of the batch's plain rows into the cache;
  //   kIsWholeBlock: the block has no other batch.
  // `run_batch` returns false to end the search. Search returns how many offsets were searched:
  // fewer than `count` if `run_batch` ended the search or the method changed.
  template <class RunBatch>
  std::size_t Search(const std::uint8_t* bytes, std::size_t count, std::size_t size,
                     std::uint64_t begin, RunBatch run_batch) {
    return offsets_for_automaton_ > 0 ? SearchByAutomaton(bytes, count, size, begin, run_batch)
                                      : SearchByIndex(bytes, count, size, begin, run_batch);
  }

  // The rows to try at the last candidate: those that need an attempt and come before its plain
  // row, in table order.
  const std::vector<std::int32_t>& found() const { return found_; }

 private:
  // When a block takes more than one extra probe per kFewProbes offsets, the automaton searches the
  // next kOffsetsForAutomaton offsets.
  static constexpr std::size_t kFewProbes = 4;
  static constexpr std::size_t kOffsetsForAutomaton = std::size_t{1} << 16;
  // About twice the longest possible prefix.
  static constexpr std::size_t kAutomatonBlock = std::size_t{1} << 16;
  static constexpr std::size_t kAllOffsets = ~std::size_t{0};

  class IndexBatch {
   public:
    static constexpr bool kIsWholeBlock = false;

    // Looks up the offsets and writes the results to `rows`, which the batch keeps using.
    IndexBatch(PrefixSearch& search, const std::uint8_t* bytes, std::size_t size,
               std::uint64_t begin, const std::uint16_t* offsets, std::size_t count,
               std::int32_t* rows)
        : search_(search),
          bytes_(bytes),
          size_(size),
          begin_(begin),
          offsets_(offsets),
          count_(count),
          rows_(rows),
          extra_probes_(search.index_.LookUp(bytes, size, offsets, count, rows)) {}

    std::size_t extra_probes() const { return extra_probes_; }
    void Prefetch(const std::vector<RowEffect>& effects) const {
      if (!search_.index_.is_large()) return;
      for (std::size_t i = 0; i < count_; ++i) {
        if (rows_[i] >= 0) __builtin_prefetch(&effects[static_cast<std::size_t>(rows_[i])]);
      }
    }
    bool Next(std::uint64_t from, Candidate& candidate) {
      for (; next_ < count_; ++next_) {
        candidate.offset = begin_ + offsets_[next_];
        candidate.plain = rows_[next_];
        if (candidate.offset < from || candidate.plain == PrefixIndex::kNone) continue;
        candidate.needs_attempts = candidate.plain < PrefixIndex::kNone;
        candidate.only_attempt = Candidate::kNone;
        if (candidate.needs_attempts) NameAttempts(candidate);
        ++next_;
        return true;
      }
      return false;
    }

   private:
    void NameAttempts(Candidate& candidate) {
      if (candidate.plain == PrefixIndex::kUndecided) {
        const std::size_t at = offsets_[next_];
        search_.found_.clear();
        candidate.plain = search_.index_.Find(bytes_ + at, size_ - at, search_.found_);
      } else {
        candidate.only_attempt = PrefixIndex::OnlyAttempt(candidate.plain);
        candidate.plain = Candidate::kNone;
      }
    }

    PrefixSearch& search_;
    const std::uint8_t* bytes_;
    std::size_t size_;
    std::uint64_t begin_;
    const std::uint16_t* offsets_;
    std::size_t count_;
    std::size_t next_ = 0;
    const std::int32_t* rows_;
    std::size_t extra_probes_;
  };

  class AutomatonBatch {
   public:
    static constexpr bool kIsWholeBlock = true;

    AutomatonBatch(PrefixSearch& search, std::uint64_t begin)
        : search_(search),
          begin_(begin),
          next_(search.states_.data() + search.states_.size()),
          end_(search.states_.data()) {}

    static std::size_t extra_probes() { return 0; }
    static void Prefetch(const std::vector<RowEffect>& /*effects*/) {}
    bool Next(std::uint64_t from, Candidate& candidate) {
      while (next_ != end_ && begin_ + next_[-1].offset < from) --next_;
      if (next_ == end_) return false;
      --next_;
      std::vector<std::int32_t>& found = search_.found_;
      found.clear();
      candidate.offset = begin_ + next_->offset;
      candidate.plain = search_.automaton_->RowsAt(next_->state, found);
      candidate.needs_attempts = !found.empty();
      const bool is_only = found.size() == 1 && candidate.plain == Candidate::kNone;
      candidate.only_attempt = is_only ? found.front() : Candidate::kNone;
      return true;
    }

   private:
    PrefixSearch& search_;
    std::uint64_t begin_;
    // The automaton's offsets descend, so they are read from the last to the first. next_ points to
    // the element behind the next candidate.
    const PrefixAutomaton::Found* next_;
    const PrefixAutomaton::Found* end_;
  };

  template <class RunBatch>
  std::size_t SearchByIndex(const std::uint8_t* bytes, std::size_t count, std::size_t size,
                            std::uint64_t begin, RunBatch& run_batch) {
    const std::size_t passed = filter_.Find(bytes, count, offsets_.data());
    std::size_t extra_probes = 0;
    std::array<std::int32_t, PrefixIndex::kBatch> rows;
    for (std::size_t first = 0; first < passed; first += PrefixIndex::kBatch) {
      const std::uint16_t* const offsets = offsets_.data() + first;
      const std::size_t batch_size = std::min(passed - first, PrefixIndex::kBatch);
      IndexBatch batch(*this, bytes, size, begin, offsets, batch_size, rows.data());
      const std::size_t searched = offsets[batch_size - 1] + std::size_t{1};
      if (!run_batch(batch)) return searched;
      extra_probes += batch.extra_probes();
      if (extra_probes > count / kFewProbes && !automaton_refused_) {
        offsets_for_automaton_ = kOffsetsForAutomaton;
        return searched;
      }
    }
    return count;
  }

  template <class RunBatch>
  std::size_t SearchByAutomaton(const std::uint8_t* bytes, std::size_t count, std::size_t size,
                                std::uint64_t begin, RunBatch& run_batch) {
    offsets_for_automaton_ -= std::min(offsets_for_automaton_, count);
    RunAutomaton(bytes, count, size);
    AutomatonBatch batch(*this, begin);
    run_batch(batch);
    return count;
  }
  // Runs the automaton over `count` bytes and sets states_.
  void RunAutomaton(const std::uint8_t* bytes, std::size_t count, std::size_t size);

  const PrefixIndex& index_;
  const std::vector<CompiledRow>& rows_;
  CandidateFilter filter_;
  std::optional<PrefixAutomaton> automaton_;  // built when it is first needed
  bool always_automaton_;
  bool automaton_refused_;                 // building it would take too long
  std::size_t offsets_for_automaton_ = 0;  // how many offsets the automaton still has to search
  std::array<std::uint16_t, CandidateFilter::kRoom> offsets_{};
  std::vector<PrefixAutomaton::Found> states_;
  std::vector<std::int32_t> found_;
};

}  // namespace morvex
