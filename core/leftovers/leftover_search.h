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

// A left text that stands in a file. The bytes are valid during the call alone.
struct Leftover {
  std::uint64_t offset = 0;  // of the first byte, from 0
  std::int64_t line = 1;     // counts from 1, by LF
  std::int64_t row = 0;      // of the tables
  Encoding encoding = Encoding::kBytes;
  bool as_written = true;  // false: in other letter case
  bool is_wildcard = false;
  std::uint64_t size = 0;  // bytes; of a wildcard row from its first part to the end of its last
  // What stands around: `before` bytes, then the text or its beginning, then what follows.
  std::string_view around;
  std::size_t before = 0;
};

using TellLeftover = std::function<void(const Leftover&)>;

class LeftoverSearch {
 public:
  // What is given of a leftover's surroundings, before and behind it.
  static constexpr std::size_t kAround = 32;
  // Bytes of the leftover itself that are given.
  static constexpr std::size_t kShown = 128;

  // Made once for any number of files; `sought` must outlive it. Searches of several threads may
  // share what is sought. The kernel must be supported here. `block` is what is read at once.
  explicit LeftoverSearch(const Sought& sought, Kernel kernel = BestKernel(),
                          std::size_t block = std::size_t{256} << 10);

  // The whole file, in the order of places where what is found ends its first part; kInvalidCall
  // when `keep_going`, which may be empty and is asked at every block, ended it.
  ErrorNumber Run(ByteSource& file, const TellLeftover& tell,
                  const std::function<bool()>& keep_going = {});
  // Bytes of the last file that were gone through.
  std::uint64_t size() const { return base_ + filled_; }

 private:
  // A part that stands somewhere, or the parts up to it.
  struct Occurrence {
    std::uint64_t begin = 0;  // of the first part
    std::uint64_t end = 0;
    std::int64_t line = 1;
    bool as_written = true;
    bool is_ascii = true;
    bool in_other_order = false;  // every part stands in UTF-16 of the other byte order as well
  };
  // How far one sought row has come.
  struct Progress {
    bool touched = false;
    std::uint64_t not_before = 0;  // the last leftover's end
    // By part but the last. What ends in front of the present place is the latest of `ready`.
    struct Stage {
      std::deque<Occurrence> waiting;
      std::optional<Occurrence> ready;
    };
    std::vector<Stage> stages;
  };

  void Open();
  void Slide();
  // The places in front of `limit`, of the buffer.
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

  // A rare key and where it stands in the buffer.
  struct RareKey {
    std::size_t at;
    std::int32_t key;
  };

  const Sought& sought_;
  PrefixSearch search_;
  CandidateFilter rare_filter_;
  CandidateFilter rare_form_filter_;
  const std::size_t behind_;  // bytes in front of the present place that stay
  const std::size_t ahead_;
  const std::size_t capacity_;
  std::unique_ptr<std::uint8_t[]> bytes_;
  std::unique_ptr<std::uint8_t[]> folded_;
  std::array<std::uint16_t, CandidateFilter::kRoom> places_{};
  std::array<std::uint16_t, CandidateFilter::kRoom> rare_forms_{};
  std::vector<std::int32_t> keys_;
  std::vector<RareKey> rare_keys_;  // of the places under way, ascending
  std::size_t next_rare_key_ = 0;
  std::vector<Progress> progress_;    // by sought row
  std::vector<std::size_t> touched_;  // of these
  const TellLeftover* tell_ = nullptr;

  // Of the present file.
  std::uint64_t base_ = 0;   // its offset of bytes_[0]
  std::size_t filled_ = 0;   // bytes of the buffer
  std::size_t next_ = 0;     // the first place that has not been searched
  std::size_t counted_ = 0;  // the line breaks in front of it are counted
  std::int64_t line_ = 1;
};

}  // namespace morvex
