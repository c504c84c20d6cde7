// Finds every place of a text where a key begins, in time that grows with the text alone: an
// Aho-Corasick automaton over the reversed keys, run from right to left. The state at a place
// stands for the longest end of a key that the text goes on with from there.
//
// The states nearest to the root, where most texts keep the automaton, have all their transitions
// in a table, failures included. The others know their children and their failure state. So memory
// grows with the size of the keys and not with the number of different bytes in them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/compiled_list.h"

namespace morvex {

class KeyAutomaton {
 public:
  static constexpr std::int32_t kNone = -1;

  // A place where a key begins; which ones do, RowsAt tells by the state.
  struct Found {
    std::uint32_t place = 0;
    std::uint32_t state = 0;
  };

  // The table then takes what pays off.
  static constexpr std::size_t kBySize = 0;

  // `members` are the indexes of the rows to find, which no earlier plain row forestalls (see
  // KeyIndex::rows_by_key()). The distinct ends of their keys are fewer than 2^30. The rows need
  // not outlive the automaton. How many states the table takes makes no difference to what is
  // found.
  KeyAutomaton(const std::vector<CompiledRow>& rows, const std::vector<std::int32_t>& members,
               std::size_t states_in_table = kBySize);

  // Appends, in descending order, the places among the first `count` bytes (fewer than 2^32) where
  // a key begins. `size`, which is not less than `count`, is how far a key may reach. Up to one
  // byte less than the longest key has is looked at behind `count`; where that is much against
  // `count`, it is what a call costs.
  void Find(const std::uint8_t* bytes, std::size_t count, std::size_t size,
            std::vector<Found>& found) const;

  // The rows whose keys begin at a place found. Gives the plain row among them that is first in
  // table order, or kNone; appends those that need an attempt and stand in front of it to
  // `attempts`, which is empty, in table order.
  std::int32_t RowsAt(std::uint32_t state, std::vector<std::int32_t>& attempts) const;

 private:
  // Where the state's transitions begin in `table_`, or with kSparse its index in `sparse_`.
  using State = std::uint32_t;
  static constexpr State kRoot = 0;
  static constexpr State kHasOutput = State{1} << 31;  // a key begins where this is the state
  static constexpr State kSparse = State{1} << 30;
  static constexpr State kIndexMask = kSparse - 1;

  // Of a state. The index 0 is none.
  struct Output {
    std::int32_t plain = kNone;        // the longest key's of all plain rows on the failure chain
    std::uint32_t attempts_begin = 0;  // of the state's own rows
    std::uint32_t attempts_end = 0;
    std::uint32_t next = 0;  // the next on the failure chain that has attempts of its own
  };
  // A state that is not in the table. If it has children, the next one is the first of them.
  struct Sparse {
    State failure = kRoot;
    std::uint32_t output = 0;
    std::uint8_t first_class = 0;  // 0 when it has no children
    bool has_edges = false;        // has further children
  };
  // From a sparse state to a child that is not its first. One that leads to the root is a free slot
  // of the hash table.
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

  std::array<std::uint8_t, 256> classes_{};  // by byte; 0 when no key holds it
  std::size_t longest_ = 0;                  // key
  // By state of the table: the next states by class, then the output.
  std::vector<std::uint32_t> table_;
  std::uint32_t stride_ = 0;
  std::vector<Sparse> sparse_;
  std::vector<Edge> edges_;  // open addressing
  std::vector<Output> outputs_;
  std::vector<std::int32_t> attempts_;  // rows, by output
};

}  // namespace morvex
