// Finds the rows whose prefix stands at an offset, in time that hardly depends on the number of
// rows. The prefixes form a trie in which each step takes up to eight bytes at once and is looked
// up in one hash table for all nodes. Where few rows are left, they form a group and are compared
// one by one.
//
// The index leaves out shadowed rows: rows that an earlier plain row always beats. So the plain row
// with the longest prefix at an offset is also the first plain row there in table order.
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
  // LookUp's result where the prefixes of several rows stand and the first of these rows in table
  // order needs an attempt. Call Find to get the rows.
  static constexpr std::int32_t kUndecided = -2;
  // Returns LookUp's result where `row`, which needs an attempt, is the only row. The result is
  // less than kUndecided. The function is its own inverse: it also turns the result into the row.
  template <class Number>
  static constexpr std::int32_t OnlyAttempt(Number row) {
    return -3 - static_cast<std::int32_t>(row);
  }

  // LookUp and Find also read up to this many bytes behind the first `size` bytes. These bytes must
  // be NULs: as no prefix holds a NUL, they count as absent.
  static constexpr std::size_t kReadAhead = 32;

  // Names rows by their indexes in `rows`, which must outlive the index.
  explicit PrefixIndex(const std::vector<CompiledRow>& rows);

  // The most bytes of one step.
  static constexpr std::size_t kStepBytes = sizeof(std::uint64_t);

  // The most offsets that are looked up together, so that their waits for memory overlap.
  static constexpr std::size_t kBatch = 16;

  // Looks up `count` (kBatch at most) offsets, which count from `bytes`. Sets found[i] to kNone if
  // no row's prefix stands at offsets[i]. If one does, and the first such row in table order is
  // plain, sets found[i] to this row; otherwise to an OnlyAttempt result or kUndecided. `size`
  // bytes must be readable (see kReadAhead). Returns the number of extra probes: an estimate of the
  // work in excess of what an ordinary list takes.
  std::size_t LookUp(const std::uint8_t* bytes, std::size_t size, const std::uint16_t* offsets,
                     std::size_t count, std::int32_t* found) const;

  // Finds the rows whose prefix stands at `bytes`. Returns the first plain row among them in table
  // order, or kNone. Fills `attempts`, which must be empty, with the rows found that come before
  // this plain row (with all of them if there is none), in table order. Each of these rows needs an
  // attempt. `size` bytes must be readable (see kReadAhead).
  std::int32_t Find(const std::uint8_t* bytes, std::size_t size,
                    std::vector<std::int32_t>& attempts) const;

  // Whether the index is larger than a core's own cache. The rows' effects then are large, too, and
  // both are prefetched.
  bool is_large() const { return is_large_; }

  // A filter that passes every offset where a prefix stands.
  const HashFilter& filter() const { return filter_; }
  // The rows that are not shadowed, ordered by prefix.
  const std::vector<std::int32_t>& rows_by_prefix() const { return rows_by_prefix_; }

 private:
  // A node has up to five kinds of steps, called lengths. Which of them a prefix takes depends on
  // how many of its bytes are left: 1, 2, 3, 4 to 7, or 8 and more.
  static constexpr std::size_t kLengths = 5;
  static constexpr std::uint32_t kNoRow = ~std::uint32_t{0};

  // A row of a group, with the bytes that are left of its prefix.
  struct Member {
    std::uint64_t first = 0;   // bytes 1 to 8, as Load64 returns them
    std::uint64_t second = 0;  // bytes 9 to 16
    std::uint32_t size = 0;
    std::uint32_t plain = kNoRow;    // the row, if it is plain
    std::uint32_t attempt = kNoRow;  // the row, if it needs an attempt
    std::uint8_t short_size = 0;     // number of bytes in `first` and `second`, 16 at most
    bool is_long = false;            // `size` is more than 16
    bool is_last = false;            // in its group
  };
  // The first plain row, and the first row that needs an attempt, among the rows found at an
  // offset.
  struct Best {
    std::uint32_t plain = kNoRow;
    std::uint32_t attempt = kNoRow;
    std::uint32_t behind_attempts = 0;  // the last row that needs an attempt, plus 1

    template <bool kAttempts>  // whether any row of the list needs an attempt
    void Note(const Member& member, bool stands);
    template <bool kAttempts>
    std::int32_t Row() const;  // LookUp's result for the offset
  };
  struct Node {
    // `label`: the bytes with which all prefixes below the node continue. `label_begin`: the
    // label's first 8 bytes, as Load64 returns them.
    const std::uint8_t* label = nullptr;
    std::uint64_t label_begin = 0;
    std::uint32_t label_size = 0;
    std::uint32_t own = 0;  // if has_own, the group of the rows whose prefix ends behind the label
    bool has_own = false;
    // The node's steps, by kind (see kLengths). `takes`: how many bytes a step of that kind takes,
    // 0 if the node has none. `begins`: the bits that BeginBit returns for these steps; they spare
    // most probes that would find nothing.
    std::array<std::uint8_t, kLengths> takes{};
    std::array<std::uint16_t, kLengths> begins{};
  };
  // A step down the trie, as a slot of the hash table. `from` holds the node and the kind of the
  // step (see From); kFree marks a free slot.
  struct Step {
    std::uint64_t bytes = 0;
    std::uint32_t from = kFree;
    std::uint32_t to = 0;  // a node, or with kGroup the first member of a group
  };
  static constexpr std::uint32_t kFree = ~std::uint32_t{0};
  static constexpr std::uint32_t kGroup = std::uint32_t{1} << 31;
  // `to`: a node or group that the steps have led to. `at`: the offset behind these steps.
  struct Reached {
    std::uint32_t to;
    std::uint32_t at;
    std::uint32_t item;  // index of the offset in `offsets`
  };
  // A step to look up in the hash table.
  struct Wanted {
    std::uint64_t bytes;
    std::uint32_t from;
    std::uint32_t at;  // offset behind the step
    std::uint32_t item;
  };
  // Room for the nodes and groups that a batch reaches in one round of steps. In each round, at
  // most two of the nodes reached from one offset have steps of their own: one reached by a step of
  // 8 bytes, and one by a step of 4 to 7 bytes. A step of 1 to 3 bytes takes all that is left of
  // its prefixes. Only rows that have joined a shorter length (see Join) have more left, and their
  // steps lead to groups, which have no steps.
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

  // Orders rows by prefix, and rows with the same prefix by index.
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
  // Adds the node's steps of one kind, `length`. A step for at most `group_size` members leads to a
  // group, any other to a new node.
  void AddSteps(const Members& members, std::size_t depth, std::size_t length,
                std::size_t group_size, std::uint32_t node, std::vector<Waiting>& waiting);
  std::uint32_t AddGroup(const Members& members, std::size_t depth);
  void FillTable();
  void MakeFilter();

  std::size_t Slot(std::uint64_t bytes, std::uint32_t from) const {
    const std::uint64_t mixed = (bytes ^ from * 0xC2B2AE3D27D4EB4F) * 0x9E3779B97F4A7C15;
    return mixed >> table_shift_;
  }
  // Returns null if there is no such step.
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
  // Compares each member of the group that begins at `first` with `bytes`, and calls `found` with
  // the member and whether it stands there. Returns the number of extra probes.
  template <class Found>
  std::size_t CompareGroup(std::uint32_t first, const std::uint8_t* bytes, std::size_t size,
                           Found found) const;
  // Whether all bytes that are left of a long member's prefix stand at `bytes`.
  bool StandsWhole(const Member& member, const std::uint8_t* bytes, std::size_t size) const;
  static bool Continues(const Node& node, const std::uint8_t* bytes, std::size_t size);
  // Brings the node or group into the cache if the index is large.
  void Prefetch(std::uint32_t to) const;
  // Takes the first steps from the root at all offsets, and fills `reached` with the nodes and
  // groups to which these steps lead. If the root has a label, takes no step and fills `reached`
  // with the root, once for each offset. Returns the number of elements filled.
  std::size_t Begin(const std::uint8_t* bytes, const std::uint16_t* offsets, std::size_t count,
                    Reached* reached) const;
  // Follows the trie from the `count` elements of `reached` on. For each member that is compared,
  // calls `found` with the index of the offset, the member, and whether the member stands there.
  // Returns the number of probes.
  template <class Found>
  std::size_t Walk(const std::uint8_t* bytes, std::size_t size, Reached* reached, std::size_t count,
                   Found found) const;

  const std::vector<CompiledRow>& rows_;
  Members rows_by_prefix_;
  HashFilter filter_{{}};
  std::vector<Node> nodes_;  // the first is the root
  std::vector<Member> members_;
  std::vector<Step> steps_;  // all steps, until FillTable moves them to table_
  std::vector<Step> table_;  // open addressing; spare slots at the end, so a search never wraps
  int table_shift_ = 0;
  // If the root is the only node, has no label and has steps of one kind only: the number of bytes
  // that a step takes; else 0.
  std::size_t only_step_ = 0;
  std::uint32_t only_from_ = kFree;
  bool has_attempts_ = false;
  bool prefixes_are_short_ = false;  // 16 bytes at most
  bool is_large_ = false;            // larger than a core's own cache
};

}  // namespace morvex
