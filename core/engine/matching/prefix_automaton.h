// Finds every offset of a text where a literal prefix stands, in time proportional to the length of
// the text: an Aho-Corasick automaton over the reversed prefixes, run from right to left. The state
// at an offset stands for the longest byte sequence that begins at the offset and is the end of
// some prefix.
//
// The states nearest to the root, in which the automaton is most of the time, have all their
// transitions in a table, also the transitions that they take over from their failure states. Every
// other state only knows its children and its failure state. So memory grows with the total size of
// the prefixes, and not with the number of different bytes in the prefixes.
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

  // An offset where a prefix stands, and the automaton's state there, by which RowsAt finds the
  // rows.
  struct Found {
    std::uint32_t offset = 0;
    std::uint32_t state = 0;
  };

  // A value for `states_in_table`: the automaton chooses the number of states in the table.
  static constexpr std::size_t kBySize = 0;

  // `members` are the indexes in `rows` of the rows to find, as PrefixIndex::rows_by_prefix()
  // returns them. The prefixes of these rows must have fewer than 2^30 distinct endings. `rows`
  // need not outlive the automaton. `states_in_table` affects speed and memory, not what is found.
  PrefixAutomaton(const std::vector<CompiledRow>& rows, const std::vector<std::int32_t>& members,
                  std::size_t states_in_table = kBySize);

  // Searches the first `count` (fewer than 2^32) offsets of `bytes`. Appends every offset where a
  // prefix stands to `found`, in descending order. `size` bytes must be readable, and `size` must
  // be at least `count`. Each call also reads bytes behind the first `count`, nearly as many as the
  // longest prefix has, so a small `count` wastes time.
  void Find(const std::uint8_t* bytes, std::size_t count, std::size_t size,
            std::vector<Found>& found) const;

  // Looks up the rows whose prefixes stand at an offset that Find found; `state` is the state
  // there. Returns the plain row that is first in table order, or kNone. Fills `attempts`, which
  // must be empty, with the rows that need an attempt and come before that plain row (all of them
  // if there is none), in table order.
  std::int32_t RowsAt(std::uint32_t state, std::vector<std::int32_t>& attempts) const;

 private:
  // If kSparse is set, the state's index in `sparse_`; otherwise the index in `table_` at which the
  // state's transitions begin. kHasOutput may be set as well.
  using State = std::uint32_t;
  static constexpr State kRoot = 0;
  static constexpr State kHasOutput = State{1} << 31;  // a prefix stands at offsets with this state
  static constexpr State kSparse = State{1} << 30;
  static constexpr State kIndexMask = kSparse - 1;

  // The rows whose prefixes stand at every offset where the automaton is in a certain state. The
  // failure chain is this state, its failure state, and so on. Output 0 has no rows.
  struct Output {
    std::int32_t plain = kNone;        // the plain row of the longest prefix on the failure chain
    std::uint32_t attempts_begin = 0;  // range in attempts_ of the state's own rows
    std::uint32_t attempts_end = 0;
    std::uint32_t next = 0;  // the next output on the failure chain that has attempts, or 0
  };
  // A state that is not in the table. If it has children, the next element of `sparse_` is its
  // first child.
  struct Sparse {
    State failure = kRoot;
    std::uint32_t output = 0;
    std::uint8_t first_class = 0;  // 0 when it has no children
    bool has_edges = false;        // it has further children, in edges_
  };
  // A transition from a sparse state to a child other than the first. An edge to the root marks a
  // free slot of the hash table.
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

  std::array<std::uint8_t, 256> classes_{};  // class of each byte; 0 if no prefix holds it
  std::size_t longest_ = 0;                  // length of the longest prefix in bytes
  // For each state in the table: the next state for each class, then the index of the state's
  // output.
  std::vector<std::uint32_t> table_;
  std::uint32_t stride_ = 0;
  std::vector<Sparse> sparse_;
  std::vector<Edge> edges_;  // a hash table with open addressing
  std::vector<Output> outputs_;
  std::vector<std::int32_t> attempts_;  // rows that need an attempt, by output
};

}  // namespace morvex
