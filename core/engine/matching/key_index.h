// Finds the rows whose key stands at a place, whatever the number of rows: the keys are a trie in
// which each step takes up to eight bytes at once and is looked up in one hash table. Where few
// rows are left they are compared one by one.
//
// A row that an earlier plain row always forestalls is left out. So of the plain rows found at a
// place the one with the longest key is the first in table order.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/engine/matching/begin_filter.h"
#include "core/engine/matching/compiled_list.h"

namespace morvex {

class KeyIndex {
 public:
  static constexpr std::int32_t kNone = -1;
  // Rows that need an attempt stand in front of the plain row, if there is one.
  static constexpr std::int32_t kUndecided = -2;
  // What is below means that just one row stands there, which needs an attempt: OnlyAttempt(row).
  // The function is its own inverse.
  template <class Number>
  static constexpr std::int32_t OnlyAttempt(Number row) {
    return -3 - static_cast<std::int32_t>(row);
  }

  // So many bytes may be read behind those that may be looked at. NULs must follow, or bytes of the
  // file and then NULs.
  static constexpr std::size_t kReadAhead = 32;

  // Indexes into the list's `rows`, which must outlive the index.
  explicit KeyIndex(const std::vector<CompiledRow>& rows);

  // So many places are looked at together: they wait for memory together and not one by one.
  static constexpr std::size_t kBatch = 16;

  // Of each of the `count` (kBatch at most) places, given by their offsets from `bytes`: the plain
  // row whose key stands there that is first in table order, kNone, kUndecided or an OnlyAttempt,
  // to `found`. `size` bytes may be looked at. Gives how many looks that took beyond the few of an
  // ordinary list.
  std::size_t LookAt(const std::uint8_t* bytes, std::size_t size, const std::uint16_t* places,
                     std::size_t count, std::int32_t* found) const;

  // The same for the place at `bytes`, of which `size` may be looked at, and with the rows that
  // need an attempt: appends those in front of the plain row to `attempts`, which is empty, in
  // table order. Gives the plain row or kNone.
  std::int32_t Find(const std::uint8_t* bytes, std::size_t size,
                    std::vector<std::int32_t>& attempts) const;

  // It does not fit into a core's own cache, nor will what belongs to the rows.
  bool is_large() const { return is_large_; }

  // A key stands only where the filter says so.
  const BeginFilter& filter() const { return filter_; }
  // The rows that are not forestalled, ordered by key.
  const std::vector<std::int32_t>& rows_by_key() const { return rows_by_key_; }

 private:
  // Steps from one node by the length of what is left of a key: 1, 2, 3, 4 to 7, 8 and more bytes.
  static constexpr std::size_t kLengths = 5;
  static constexpr std::uint32_t kNoRow = ~std::uint32_t{0};

  // One of the last rows behind a step, with what is left of its key.
  struct Member {
    std::uint64_t first = 0;   // bytes 1 to 8, as Load64 gives them
    std::uint64_t second = 0;  // bytes 9 to 16
    std::uint32_t size = 0;
    std::uint32_t plain = kNoRow;    // the row, if it is plain
    std::uint32_t attempt = kNoRow;  // the row, if it is not
    std::uint8_t short_size = 0;     // as many of `size` as `first` and `second` hold
    bool is_long = false;            // they do not hold all
    bool is_last = false;            // of its group
  };
  // The least of each kind among the rows found at a place.
  struct Best {
    std::uint32_t plain = kNoRow;
    std::uint32_t attempt = kNoRow;
    std::uint32_t behind_attempts = 0;  // the greatest, plus 1

    template <bool kAttempts>  // whether any row needs an attempt
    void Note(const Member& member, bool stands);
    template <bool kAttempts>
    std::int32_t Row() const;  // as LookAt gives it
  };
  struct Node {
    // Bytes that all keys below go on with; the first 8 as Load64 gives them.
    const std::uint8_t* label = nullptr;
    std::uint64_t label_begin = 0;
    std::uint32_t label_size = 0;
    std::uint32_t own = 0;  // the group of the rows whose key ends behind the label, if has_own
    bool has_own = false;
    // Of the steps of each length: the bytes they take, 0 when there are none; and one bit for the
    // lower half of every byte that one begins with, which spares most look-ups that would find
    // nothing.
    std::array<std::uint8_t, kLengths> takes{};
    std::array<std::uint16_t, kLengths> begins{};
  };
  // A step down the trie. `from` is the node and the length's number; kFree marks a free slot.
  struct Step {
    std::uint64_t bytes = 0;
    std::uint32_t from = kFree;
    std::uint32_t to = 0;  // a node, or with kGroup a group's first member
  };
  static constexpr std::uint32_t kFree = ~std::uint32_t{0};
  static constexpr std::uint32_t kGroup = std::uint32_t{1} << 31;
  // Where a step has led to, `at` bytes behind the first place.
  struct Reached {
    std::uint32_t to;
    std::uint32_t at;
    std::uint32_t place;  // index among the places looked at
  };
  // A step to look for.
  struct Wanted {
    std::uint64_t bytes;
    std::uint32_t from;
    std::uint32_t at;  // behind the step
    std::uint32_t place;
  };
  // Of the nodes that a place has under way at a time, one at most was reached by 8 bytes, with
  // steps of all lengths behind it, and one by 4 to 7, with the three short lengths. The others
  // have no steps: shorter steps leave nothing of a key, and joined ones lead to groups.
  static constexpr std::size_t kMostReached = kBatch * (2 * kLengths);
  using Members = std::vector<std::int32_t>;  // rows, ordered by key
  // Rows whose keys share their first `depth` bytes and that wait for their node.
  struct Waiting {
    Members members;
    std::size_t depth = 0;
    std::uint32_t node = 0;
  };

  std::string_view Key(std::int32_t row) const { return rows_[static_cast<std::size_t>(row)].key; }
  bool IsPlain(std::int32_t row) const {
    return rows_[static_cast<std::size_t>(row)].attempt == CompiledRow::kPlain;
  }
  static std::uint16_t BeginBit(std::uint64_t bytes) {
    return static_cast<std::uint16_t>(1U << (bytes & 15));
  }
  static std::uint32_t From(std::uint32_t node, std::size_t length) {
    return node << 3 | static_cast<std::uint32_t>(length);
  }

  // By key, and by row where that is the same.
  bool IsInFront(std::int32_t a, std::int32_t b) const {
    const int order = Key(a).compare(Key(b));
    return order != 0 ? order < 0 : a < b;
  }
  std::size_t Shortest(const Members& members) const;
  std::size_t EndOfStep(const Members& members, std::size_t at, std::size_t depth,
                        std::size_t take) const;
  void OrderRows();
  void FillNode(const Waiting& here, std::vector<Waiting>& waiting);
  std::array<bool, kLengths> Join(std::array<Members, kLengths>& by_length,
                                  std::size_t depth) const;
  // The steps of one length from the node to where the members go on: groups of at most so many.
  void AddSteps(const Members& members, std::size_t depth, std::size_t length,
                std::size_t group_size, std::uint32_t node, std::vector<Waiting>& waiting);
  std::uint32_t AddGroup(const Members& members, std::size_t depth);
  void FillTable();
  void MakeFilter();

  std::size_t Slot(std::uint64_t bytes, std::uint32_t from) const {
    const std::uint64_t mixed = (bytes ^ from * 0xC2B2AE3D27D4EB4F) * 0x9E3779B97F4A7C15;
    return mixed >> table_shift_;
  }
  // Null when there is none.
  const Step* FindStep(std::uint64_t bytes, std::uint32_t from) const {
    for (std::size_t slot = Slot(bytes, from);; ++slot) {
      const Step& step = table_[slot];
      if (step.bytes == bytes && step.from == from) return &step;
      if (step.from == kFree) return nullptr;
    }
  }
  template <bool kAttempts>
  std::size_t LookAtOneStep(const std::uint8_t* bytes, std::size_t size,
                            const std::uint16_t* places, std::size_t count,
                            std::int32_t* found) const;
  // Looks at the members of the group from `first` on, and calls `found` with each.
  template <class Found>
  std::size_t LookAtGroup(std::uint32_t first, const std::uint8_t* bytes, std::size_t size,
                          Found found) const;
  // Whether the key's bytes behind the 16th stand there too.
  bool GoesOn(const Member& member, const std::uint8_t* bytes, std::size_t size) const;
  static bool Continues(const Node& node, const std::uint8_t* bytes, std::size_t size);
  // Brings what a step leads to into the cache.
  void Prefetch(std::uint32_t to) const;
  // Takes the first steps. Gives how many led on, and where to.
  std::size_t Begin(const std::uint8_t* bytes, const std::uint16_t* places, std::size_t count,
                    Reached* reached) const;
  // Looks at all that the first steps have led to; `found` takes the place and a member there.
  template <class Found>
  std::size_t Walk(const std::uint8_t* bytes, std::size_t size, Reached* reached, std::size_t count,
                   Found found) const;

  const std::vector<CompiledRow>& rows_;
  Members rows_by_key_;
  BeginFilter filter_{{}};
  std::vector<Node> nodes_;  // the first is the root
  std::vector<Member> members_;
  std::vector<Step> steps_;  // all, until the table is filled
  std::vector<Step> table_;  // open addressing; slots behind the last hash spare the turn-around
  int table_shift_ = 0;
  // The bytes of a key's only step, where there is none but from the root and of one length; else
  // 0.
  std::size_t only_step_ = 0;
  std::uint32_t only_from_ = kFree;
  bool has_attempts_ = false;
  bool keys_are_short_ = false;  // have 16 bytes at most
  bool is_large_ = false;        // does not fit into a core's own cache
};

}  // namespace morvex
