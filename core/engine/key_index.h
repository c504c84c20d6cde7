// Finds the rows whose key stands at a place, whatever the number of rows: the keys are a trie in
// which each step takes up to eight bytes at once and is looked up in one hash table.
//
// A row that an earlier plain row always forestalls is left out. So of the plain rows that a walk
// meets the one with the longest key is the first in table order.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/engine/compiled_list.h"

namespace morvex {

// Reads 8 bytes, the first into the lowest bits.
inline std::uint64_t Load64(const std::uint8_t* bytes) {
  std::uint64_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  if constexpr (std::endian::native == std::endian::big) value = __builtin_bswap64(value);
  return value;
}

// Leaves the first `count` (1 to 8) bytes of a Load64.
constexpr std::uint64_t FirstBytesMask(std::size_t count) {
  return ~std::uint64_t{0} >> (64 - 8 * count);
}

// Mixes all bits of the value into all bits of the result.
inline std::uint64_t Mix(std::uint64_t value) {
  __extension__ using Product = unsigned __int128;
  const Product product = static_cast<Product>(value) * 0x9E3779B97F4A7C15;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// Says of a place that no key begins there. Where one does it never says so; elsewhere nearly
// always. It looks at as many bytes as the shortest key has, 16 at most.
class BeginFilter {
 public:
  // One key at least.
  explicit BeginFilter(const std::vector<std::string_view>& keys);

  // A table of 2^kSmallBits entries stays in a core's first cache; long lists need a larger one.
  static constexpr int kSmallBits = 15;
  static constexpr int kLargeBits = 18;
  bool is_large() const { return is_large_; }

  // 1 where a key may begin, else 0. Reads up to 16 bytes. kBits is the table's.
  template <int kBits>
  std::uint8_t MayHold(const std::uint8_t* bytes) const {
    const std::uint64_t hash = Hash(bytes);
    return entries_[First<kBits>(hash)] & entries_[Second<kBits>(hash)];
  }
  std::uint8_t MayHold(const std::uint8_t* bytes) const {
    return is_large_ ? MayHold<kLargeBits>(bytes) : MayHold<kSmallBits>(bytes);
  }

 private:
  static constexpr std::size_t kMostBytes = 16;

  // The product's upper bits depend on all bytes.
  std::uint64_t Hash(const std::uint8_t* bytes) const {
    const std::uint64_t last = Load64(bytes + last_load_) & mask_;
    return (Load64(bytes) & mask_) * 0x9E3779B97F4A7C15 ^ last * 0xC2B2AE3D27D4EB4F;
  }
  // Each beginning has two entries.
  template <int kBits>
  static std::size_t First(std::uint64_t hash) {
    return hash >> (64 - kBits);
  }
  template <int kBits>
  static std::size_t Second(std::uint64_t hash) {
    return hash >> (64 - kBits - 12) & ((std::size_t{1} << kBits) - 1);
  }

  std::size_t last_load_ = 0;  // where the last 8 of the bytes stand; 0 when there are no more
  std::uint64_t mask_ = 0;     // of the bytes, when there are fewer than 8
  bool is_large_ = false;
  std::vector<std::uint8_t> entries_;
};

class KeyIndex {
 public:
  static constexpr std::int32_t kNone = -1;

  // Indexes into the list's `rows`, which must outlive the index.
  explicit KeyIndex(const std::vector<CompiledRow>& rows);

  // The rows whose key stands at `bytes`, of which `size` may be looked at; 8 NULs or more bytes of
  // the file stand behind them. Gives the plain row among them that is first in table order, or
  // kNone; appends those that need an attempt and stand in front of it to `attempts`, which is
  // empty, in table order.
  std::int32_t Find(const std::uint8_t* bytes, std::size_t size,
                    std::vector<std::int32_t>& attempts) const {
    // With one kind of first step its result is often all that there is to find.
    if (const Node& root = nodes_.front(); root.take_count == 1) {
      const std::uint64_t wanted = Load64(bytes) & FirstBytesMask(root.takes[0]);
      const Step* const step = FindStep(wanted, 0);
      if (step == nullptr) return kNone;
      if ((step->to & kLeaf) != 0) return static_cast<std::int32_t>(step->to & ~kLeaf);
    }
    return Walk(bytes, size, attempts);
  }

  // Brings what the next calls of Find need into the cache, for places given by their offsets from
  // `bytes`, and the effects of the rows that they will find. So they wait for memory together and
  // not one by one.
  void Prefetch(const std::uint8_t* bytes, const std::uint16_t* places, std::size_t count,
                const RowEffect* effects) const;
  static constexpr std::size_t kPrefetched = 16;  // the most places of a call

  // A key stands only where one of them may hold.
  const std::vector<BeginFilter>& filters() const { return filters_; }
  // The rows that are not forestalled, ordered by key.
  const std::vector<std::int32_t>& rows_by_key() const { return rows_by_key_; }

 private:
  struct Node {
    // Bytes that all keys below go on with; the first 8 as Load64 gives them.
    const std::uint8_t* label = nullptr;
    std::uint64_t label_begin = 0;
    std::uint32_t label_size = 0;
    std::int32_t plain = kNone;  // the row whose key ends behind the label
    std::uint32_t attempts_begin = 0;
    std::uint32_t attempts_end = 0;
    // The bytes that the steps from here take, each number once, ascending. Only the last leads on.
    std::array<std::uint8_t, 4> takes{};
    std::uint32_t take_count = 0;
    // Of each of them: one bit for the lower half of every byte that such a step begins with.
    // Spares most of the look-ups that would find nothing, and so most waits for memory.
    std::array<std::uint16_t, 4> begins{};
  };
  // A step down the trie. No key holds a NUL, so the bytes tell their number and 0 marks a free
  // slot.
  struct Step {
    std::uint64_t bytes = 0;
    std::uint32_t from = 0;
    std::uint32_t to = 0;  // a node, or with kLeaf a plain row whose key ends here
  };
  static constexpr std::uint32_t kLeaf = std::uint32_t{1} << 31;
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
  static bool Continues(const Node& node, const std::uint8_t* bytes, std::size_t size);
  void NoteAttempts(const Node& node, std::vector<std::int32_t>& attempts) const;
  void OrderRows();
  void FillNode(const Waiting& here, std::vector<Waiting>& waiting);
  // The steps of `bytes` bytes from the node to the members' next nodes.
  void AddSteps(const Members& members, std::size_t depth, std::size_t bytes, std::uint32_t node,
                std::vector<Waiting>& waiting);
  void FillTable();
  std::size_t Slot(std::uint64_t bytes, std::uint32_t from) const {
    return Mix(bytes + from * 0xC2B2AE3D27D4EB4F) & table_mask_;
  }
  // Null when there is none. 0 bytes are none.
  const Step* FindStep(std::uint64_t bytes, std::uint32_t from) const {
    const Step* const table = table_.data();
    for (std::size_t slot = Slot(bytes, from);; slot = (slot + 1) & table_mask_) {
      const Step& step = table[slot];
      if (step.bytes == 0) return nullptr;
      if (step.bytes == bytes && step.from == from) return &step;
    }
  }
  std::int32_t Walk(const std::uint8_t* bytes, std::size_t size,
                    std::vector<std::int32_t>& attempts) const;

  const std::vector<CompiledRow>& rows_;
  Members rows_by_key_;
  std::vector<BeginFilter> filters_;
  std::vector<Node> nodes_;  // the first is the root
  std::vector<Step> steps_;  // all, until the table is filled
  std::vector<Step> table_;  // open addressing
  std::uint64_t table_mask_ = 0;
  bool is_large_ = false;               // does not fit into a core's own cache
  std::vector<std::int32_t> attempts_;  // rows, by node
};

}  // namespace morvex
