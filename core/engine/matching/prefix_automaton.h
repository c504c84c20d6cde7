// Finds every offset of a text where a prefix stands, in time that depends on the text alone: an
// Aho-Corasick automaton over the reversed prefixes, run from right to left. The state at an offset
// stands for the longest end of a prefix that the text continues with from there.
//
// The states nearest to the root, where the automaton is in most texts, have all their transitions
// in a table, failures included. The others only know their children and their failure state. So
// memory grows with the size of the prefixes and not with the number of different bytes in them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/compiled_list.h"

namespace morvex {

class PrefixAutomaton {
 public:
  static constexpr std::int32_t kNone = -1;

  // An offset where a prefix stands; RowsAt returns its rows by the state.
  struct Found {
    std::uint32_t offset = 0;
    std::uint32_t state = 0;
  };

  // The table then has as many states as pay.
  static constexpr std::size_t kBySize = 0;

  // `members` are the indexes of the rows to find, as in PrefixIndex::rows_by_prefix(). The
  // distinct ends of their prefixes are fewer than 2^30. The rows need not outlive the automaton.
  // The number of states in the table makes no difference to what is found.
  PrefixAutomaton(const std::vector<CompiledRow>& rows, const std::vector<std::int32_t>& members,
                  std::size_t states_in_table = kBySize);

  // Appends, in descending order, the offsets among the first `count` bytes (fewer than 2^32) where
  // a prefix stands. `size` (`count` or more) bytes may be read. A call also reads up to the size
  // of the longest prefix behind `count`, so `count` should be large against that.
  void Find(const std::uint8_t* bytes, std::size_t count, std::size_t size,
            std::vector<Found>& found) const;

  // The rows whose prefixes stand at an offset found. Returns the plain row among them that is
  // first in table order, or kNone; appends those that need an attempt and stand in front of it to
  // `attempts`, which is empty, in table order.
  std::int32_t RowsAt(std::uint32_t state, std::vector<std::int32_t>& attempts) const;

 private:
  // Where the state's transitions begin in `table_`, or with kSparse its index in `sparse_`.
  using State = std::uint32_t;
  static constexpr State kRoot = 0;
  static constexpr State kHasOutput = State{1} << 31;  // a prefix stands where this is the state
  static constexpr State kSparse = State{1} << 30;
  static constexpr State kIndexMask = kSparse - 1;

  // Of a state. The index 0 is none.
  struct Output {
    std::int32_t plain = kNone;        // the plain row of the longest prefix on the failure chain
    std::uint32_t attempts_begin = 0;  // of the state's own rows
    std::uint32_t attempts_end = 0;
    std::uint32_t next = 0;  // the next on the failure chain that has attempts of its own
  };
  // A state that is not in the table. If it has children, the next sparse state is its first child.
  struct Sparse {
    State failure = kRoot;
    std::uint32_t output = 0;
    std::uint8_t first_class = 0;  // 0 when it has no children
    bool has_edges = false;        // has further children
  };
  // From a sparse state to a child that is not its first. An edge to the root marks a free slot of
  // the hash table.
  struct Edge {
    std::uint32_t from = 0;
    State to = kRoot;
    std::uint8_t byte_class = 0;
  };
  struct Trie;

  void NumberClasses(const std::vector<CompiledRow>& rows,
                     const std::vector<std::int32_t>& members);
  void Grow(const std::vector<CompiledRow>& rows, const std::vector<std::int32_t>& members,
            Trie& trie);
  void NumberStates(std::size_t states_in_table, Trie& trie);
  void Link(Trie& trie);
  void LinkToFailure(Trie& trie, std::uint32_t node);
  void AddChild(State parent, bool is_first, std::uint8_t byte_class, State child);

  std::uint32_t OutputOf(State state) const {
    const State index = state & kIndexMask;
    return (state & kSparse) == 0 ? table_[index + stride_ - 1] : sparse_[index].output;
  }
  void SetOutput(State state, std::uint32_t output) {
    const State index = state & kIndexMask;
    ((state & kSparse) == 0 ? table_[index + stride_ - 1] : sparse_[index].output) = output;
  }
  std::size_t Slot(std::uint32_t from, std::uint8_t byte_class) const;
  State FindEdge(std::uint32_t from, std::uint8_t byte_class) const;
  State NextOfSparse(State state, std::uint8_t byte_class) const;
  State Next(State state, std::uint8_t byte_class) const {
    if ((state & kSparse) != 0) return NextOfSparse(state, byte_class);
    return table_[(state & kIndexMask) + byte_class];
  }

  std::array<std::uint8_t, 256> classes_{};  // by byte; 0 when no prefix holds it
  std::size_t longest_ = 0;                  // prefix, in bytes
  // By state of the table: the next states by class, then the output.
  std::vector<std::uint32_t> table_;
  std::uint32_t stride_ = 0;
  std::vector<Sparse> sparse_;
  std::vector<Edge> edges_;  // open addressing
  std::vector<Output> outputs_;
  std::vector<std::int32_t> attempts_;  // rows, by output
};

}  // namespace morvex
