// Searches a file for the texts of a list, in one pass whatever the number of rows and encodings.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "core/engine/matching/byte_io.h"
#include "core/engine/matching/candidate_filter.h"
#include "core/engine/matching/prefix_search.h"
#include "core/engine/matching/scan_kernel.h"
#include "core/leftovers/sought.h"

namespace morvex {

// A leftover: a left text of the list that occurs in a file. `around` is valid only during the call
// of TellLeftover.
struct Leftover {
  std::uint64_t offset = 0;  // of the first byte, from 0
  std::int64_t line = 1;     // number of its line, from 1; lines end at LF
  std::int64_t row = 0;      // row of the tables
  Encoding encoding = Encoding::kBytes;
  bool as_written = true;  // false: in other letter case
  bool is_wildcard = false;
  // Size in bytes. A leftover of a wildcard row extends from the beginning of the row's first part
  // to the end of its last part.
  std::uint64_t size = 0;
  // The file's bytes: `before` bytes in front of the leftover, then the leftover and the bytes
  // behind it. A long leftover is cut off (see kShown).
  std::string_view around;
  std::size_t before = 0;
};

using TellLeftover = std::function<void(const Leftover&)>;

class LeftoverSearch {
 public:
  // The most bytes of Leftover::around in front of the leftover, and behind it.
  static constexpr std::size_t kAround = 32;
  // In Leftover::around a longer leftover counts as if it ended after this many bytes.
  static constexpr std::size_t kShown = 128;

  // One object serves any number of files. `sought` must outlive the object and may be shared by
  // searches in several threads. The machine must support the kernel. `block` is about the number
  // of bytes that are read at once.
  explicit LeftoverSearch(const Sought& sought, Kernel kernel = BestKernel(),
                          std::size_t block = std::size_t{256} << 10);

  // Searches the whole file and calls `tell` for each leftover, in the order of the offsets at
  // which their last parts begin. Asks `keep_going`, which may be empty, before every block;
  // returns kInvalidCall if `keep_going` returns false.
  ErrorNumber Run(ByteSource& file, const TellLeftover& tell,
                  const std::function<bool()>& keep_going = {});
  // The number of bytes of the last file that were read.
  std::uint64_t size() const { return base_ + filled_; }

 private:
  // An occurrence of the first part of a row, or of all its parts up to a later one.
  struct Occurrence {
    std::uint64_t begin = 0;  // offset of the first part
    std::uint64_t end = 0;
    std::int64_t line = 1;
    bool as_written = true;
    bool is_ascii = true;
    bool in_other_order = false;  // StandsInOtherOrder holds for every part
  };
  // Which of a sought row's parts have been found.
  struct Progress {
    bool touched = false;
    std::uint64_t not_before = 0;  // end of the last occurrence that had all parts
    // One for each part but the last. `ready`: the latest occurrence that ends at the current
    // offset or in front of it. `waiting`: occurrences that end behind the current offset.
    struct Stage {
      std::deque<Occurrence> waiting;
      std::optional<Occurrence> ready;
    };
    std::vector<Stage> stages;
  };

  void Open();
  void Slide();
  // Searches the offsets in front of `limit`. `limit` and every `at` below are offsets in the
  // buffer.
  void SearchUpTo(std::size_t limit);
  void FindRareKeys(std::size_t count);
  void FindRareKeysFrom(std::size_t begin, std::size_t end);
  void RareKeysInFrontOf(std::size_t at);
  void UsualKeyAt(std::size_t at, std::int32_t key);
  void KeyAt(std::size_t at, const SoughtKeys& keys, std::int32_t key);
  bool IsDone(std::size_t at, const SoughtPart& part) const;
  void PartAt(std::size_t at, const SoughtPart& part, const Standing& standing);
  bool StandsInOtherOrder(std::size_t at, const SoughtPart& part) const;
  std::optional<Occurrence> TakeReady(Progress::Stage& stage, std::uint64_t place) const;
  void Tell(const SoughtRow& row, const Occurrence& found);
  Progress& ProgressOf(const SoughtPart& part);
  std::int64_t LineAt(std::size_t at);
  std::string_view BytesFrom(std::size_t at) const {
    return {reinterpret_cast<const char*>(bytes_.get()) + at, filled_ - at};
  }

  // A rare key and the offset in the buffer where it stands.
  struct RareKey {
    std::size_t at;
    std::int32_t key;
  };

  const Sought& sought_;
  PrefixSearch search_;
  CandidateFilter rare_filter_;
  CandidateFilter rare_form_filter_;
  const std::size_t behind_;  // bytes in front of the current offset that the buffer keeps
  const std::size_t ahead_;
  const std::size_t capacity_;
  std::unique_ptr<std::uint8_t[]> bytes_;
  std::unique_ptr<std::uint8_t[]> folded_;
  std::array<std::uint16_t, CandidateFilter::kRoom> offsets_{};
  std::array<std::uint16_t, CandidateFilter::kRoom> rare_forms_{};
  std::vector<std::int32_t> keys_;
  std::vector<RareKey> rare_keys_;  // at the offsets being searched, ascending
  std::size_t next_rare_key_ = 0;
  std::vector<Progress> progress_;    // by index in sought_.rows()
  std::vector<std::size_t> touched_;  // indexes in progress_
  const TellLeftover* tell_ = nullptr;

  // The members below belong to the current file.
  std::uint64_t base_ = 0;   // offset in the file of bytes_[0]
  std::size_t filled_ = 0;   // bytes in the buffer
  std::size_t next_ = 0;     // the first offset in the buffer not yet searched
  std::size_t counted_ = 0;  // line breaks in front of this offset in the buffer are counted
  std::int64_t line_ = 1;
};

}  // namespace morvex
