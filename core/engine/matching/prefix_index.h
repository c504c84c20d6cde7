// Finds the rows whose prefix stands at an offset, in time that hardly depends on the number of
// rows. The prefixes form a trie in which each step takes up to eight bytes at once and is looked
// up in one hash table for all nodes. Where few rows are left they are compared one by one, as a
// group.
//
// A shadowed row, one that an earlier plain row always beats, is left out. So of the plain rows
// found at an offset the one with the longest prefix is the first in table order.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/hash_filter.h"

namespace morvex {

class PrefixIndex {
 public:
  static constexpr std::int32_t kNone = -1;
  // Several rows that need an attempt stand there, or one in front of a plain row: call Find.
  static constexpr std::int32_t kUndecided = -2;
  // Exactly one row stands there, and it needs an attempt: OnlyAttempt(row), which is less than
  // kUndecided. The function is its own inverse.
  template <class Number>
  static constexpr std::int32_t OnlyAttempt(Number row) {
    return -3 - static_cast<std::int32_t>(row);
  }

  // So many bytes behind `size` are read but count as absent. They must be NULs, or bytes of the
  // source and then NULs.
  static constexpr std::size_t kReadAhead = 32;

  // Indexes into the list's `rows`, which must outlive the index.
  explicit PrefixIndex(const std::vector<CompiledRow>& rows);

  // The most bytes of one step.
  static constexpr std::size_t kStepBytes = sizeof(std::uint64_t);

  // So many offsets are looked up together, so that their waits for memory overlap.
  static constexpr std::size_t kBatch = 16;

  // Sets `found` for each of the `count` (kBatch at most) offsets from `bytes`: to the plain row
  // that is first in table order among those whose prefix stands there, to kNone, kUndecided or an
  // OnlyAttempt. `size` bytes may be read. Returns the number of probes beyond the few of an
  // ordinary list.
  std::size_t LookUp(const std::uint8_t* bytes, std::size_t size, const std::uint16_t* offsets,
                     std::size_t count, std::int32_t* found) const;

  // Finds all rows at `bytes`, of which `size` may be read. Returns the first plain row or kNone;
  // appends the rows in front of it, which need an attempt, to `attempts`, which is empty, in table
  // order.
  std::int32_t Find(const std::uint8_t* bytes, std::size_t size,
                    std::vector<std::int32_t>& attempts) const;

  // Larger than a core's own cache, as the effects of its rows are: look-ups prefetch.
  bool is_large() const { return is_large_; }

  // Passes every offset where a prefix stands.
  const HashFilter& filter() const { return filter_; }
  // The rows that are not shadowed, ordered by prefix.
  const std::vector<std::int32_t>& rows_by_prefix() const { return rows_by_prefix_; }

 private:
  // The steps of a node are sorted by the bytes that are left of a prefix: 1, 2, 3, 4 to 7, 8 and
  // more.
  static constexpr std::size_t kLengths = 5;
  static constexpr std::uint32_t kNoRow = ~std::uint32_t{0};

  // A row of a group, with the bytes that are left of its prefix.
  struct Member {
    std::uint64_t first = 0;   // bytes 1 to 8, as Load64 returns them
    std::uint64_t second = 0;  // bytes 9 to 16
    std::uint32_t size = 0;
    std::uint32_t plain = kNoRow;    // the row, if it is plain
    std::uint32_t attempt = kNoRow;  // the row, if it is not
    std::uint8_t short_size = 0;     // the bytes of `size` that are in `first` and `second`
    bool is_long = false;            // there are more than these
    bool is_last = false;            // in its group
  };
  // The first row of each kind among those found at an offset.
  struct Best {
    std::uint32_t plain = kNoRow;
    std::uint32_t attempt = kNoRow;
    std::uint32_t behind_attempts = 0;  // the last attempt, plus 1

    template <bool kAttempts>  // whether any row of the list needs one
    void Note(const Member& member, bool stands);
    template <bool kAttempts>
    std::int32_t Row() const;  // as LookUp returns it
  };
  struct Node {
    // The bytes that all prefixes below share; the first 8 as Load64 returns them.
    const std::uint8_t* label = nullptr;
    std::uint64_t label_begin = 0;
    std::uint32_t label_size = 0;
    std::uint32_t own = 0;  // if has_own, the group of the rows whose prefix ends behind the label
    bool has_own = false;
    // By length: the bytes that the steps take, 0 when there are none, and a bit for the lower half
    // of every byte that a step begins with, which spares most probes that would find nothing.
    std::array<std::uint8_t, kLengths> takes{};
    std::array<std::uint16_t, kLengths> begins{};
  };
  // A step down the trie. `from` is the node and the number of the length; kFree marks a free slot.
  struct Step {
    std::uint64_t bytes = 0;
    std::uint32_t from = kFree;
    std::uint32_t to = 0;  // a node, or with kGroup the first member of a group
  };
  static constexpr std::uint32_t kFree = ~std::uint32_t{0};
  static constexpr std::uint32_t kGroup = std::uint32_t{1} << 31;
  // Where a step has led to, `at` bytes from the start of the bytes.
  struct Reached {
    std::uint32_t to;
    std::uint32_t at;
    std::uint32_t item;  // index of the offset among those looked up
  };
  // A step to probe for.
  struct Wanted {
    std::uint64_t bytes;
    std::uint32_t from;
    std::uint32_t at;  // behind the step
    std::uint32_t item;
  };
  // Of the nodes that are reached at a time from one offset, at most one was reached by 8 bytes and
  // has steps of all lengths, and at most one by 4 to 7 bytes and has the three short lengths. The
  // others have no steps: shorter steps leave nothing of a prefix, and joined ones lead to groups.
  static constexpr std::size_t kMostReached = kBatch * (2 * kLengths);
  using Members = std::vector<std::int32_t>;  // rows, ordered by prefix
  // Rows whose prefixes share their first `depth` bytes, and the node that is built for them later.
  struct Waiting {
    Members members;
    std::size_t depth = 0;
    std::uint32_t node = 0;
  };

  std::string_view Prefix(std::int32_t row) const {
    return rows_[static_cast<std::size_t>(row)].prefix;
  }
  bool IsPlain(std::int32_t row) const {
    return rows_[static_cast<std::size_t>(row)].attempt == CompiledRow::kPlain;
  }
  static std::uint16_t BeginBit(std::uint64_t bytes) {
    return static_cast<std::uint16_t>(1U << (bytes & 15));
  }
  static std::uint32_t From(std::uint32_t node, std::size_t length) {
    return node << 3 | static_cast<std::uint32_t>(length);
  }

  // The order by prefix, and by row where two are the same.
  bool IsInFront(std::int32_t a, std::int32_t b) const {
    const int order = Prefix(a).compare(Prefix(b));
    return order != 0 ? order < 0 : a < b;
  }
  std::size_t Shortest(const Members& members) const;
  std::size_t EndOfStep(const Members& members, std::size_t at, std::size_t depth,
                        std::size_t take) const;
  void OrderRows();
  void FillNode(const Waiting& here, std::vector<Waiting>& waiting);
  std::array<bool, kLengths> Join(std::array<Members, kLengths>& by_length,
                                  std::size_t depth) const;
  // Adds the node's steps of one length. Those for at most `group_size` members lead to groups.
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
  std::size_t LookUpOneStep(const std::uint8_t* bytes, std::size_t size,
                            const std::uint16_t* offsets, std::size_t count,
                            std::int32_t* found) const;
  // Compares the members of the group that begins at `first`, and calls `found` with each. Returns
  // the extra probes.
  template <class Found>
  std::size_t CompareGroup(std::uint32_t first, const std::uint8_t* bytes, std::size_t size,
                           Found found) const;
  // Compares all bytes that are left of the prefix of a long member.
  bool StandsWhole(const Member& member, const std::uint8_t* bytes, std::size_t size) const;
  static bool Continues(const Node& node, const std::uint8_t* bytes, std::size_t size);
  // Brings the node or group into the cache.
  void Prefetch(std::uint32_t to) const;
  // Takes the first steps from the root. Returns how many led on, and in `reached` where to.
  std::size_t Begin(const std::uint8_t* bytes, const std::uint16_t* offsets, std::size_t count,
                    Reached* reached) const;
  // Follows the trie from where the first steps have led to. `found` takes the index of the offset
  // and a member. Returns the number of probes.
  template <class Found>
  std::size_t Walk(const std::uint8_t* bytes, std::size_t size, Reached* reached, std::size_t count,
                   Found found) const;

  const std::vector<CompiledRow>& rows_;
  Members rows_by_prefix_;
  HashFilter filter_{{}};
  std::vector<Node> nodes_;  // the first is the root
  std::vector<Member> members_;
  std::vector<Step> steps_;  // all of them, until the table is filled
  std::vector<Step> table_;  // open addressing; spare slots at the end, so a search never wraps
  int table_shift_ = 0;
  // When the root is the only node and has steps of one length: the bytes that they take; else 0.
  std::size_t only_step_ = 0;
  std::uint32_t only_from_ = kFree;
  bool has_attempts_ = false;
  bool prefixes_are_short_ = false;  // 16 bytes at most
  bool is_large_ = false;            // larger than a core's own cache
};

}  // namespace morvex
