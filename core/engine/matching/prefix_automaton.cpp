#include "core/engine/matching/prefix_automaton.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "core/engine/matching/hash_filter.h"

namespace morvex {
namespace {

// With at most kSmallStride entries per state, a table of all states takes hardly more memory than
// sparse states would, so the table holds all states. Otherwise the table has at most kTableEntries
// entries, which fit into a core's own caches.
constexpr std::uint32_t kSmallStride = 4;
constexpr std::size_t kTableEntries = std::size_t{1} << 17;

constexpr std::size_t kBlock = 512;

std::size_t CommonBeginning(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                  a.begin());
}

// The members' prefixes. Each is reversed, and each of its bytes is replaced by the byte's class
// (see classes_); the results are in ascending order.
struct ReversedPrefixes {
  struct Prefix {
    std::string_view bytes;
    std::int32_t row = 0;
  };

  ReversedPrefixes(const std::vector<CompiledRow>& rows, const std::vector<std::int32_t>& members,
                   const std::array<std::uint8_t, 256>& classes) {
    std::size_t size = 0;
    for (const std::int32_t row : members)
      size += rows[static_cast<std::size_t>(row)].prefix.size();
    all_bytes.reserve(size);  // `prefixes` point into all_bytes, so its bytes must not move
    prefixes.reserve(members.size());
    for (const std::int32_t row : members) {
      const std::string_view prefix = rows[static_cast<std::size_t>(row)].prefix;
      const std::size_t begin = all_bytes.size();
      for (std::size_t i = prefix.size(); i > 0; --i) {
        all_bytes += static_cast<char>(classes[static_cast<std::uint8_t>(prefix[i - 1])]);
      }
      prefixes.push_back({std::string_view(all_bytes).substr(begin), row});
    }
    std::sort(prefixes.begin(), prefixes.end(),
              [](const Prefix& a, const Prefix& b) { return a.bytes < b.bytes; });
  }
  ReversedPrefixes(const ReversedPrefixes&) = delete;
  ReversedPrefixes& operator=(const ReversedPrefixes&) = delete;

  std::string all_bytes;
  std::vector<Prefix> prefixes;
};

}  // namespace

// The trie of the reversed prefixes. The nodes are numbered in depth-first order: the first child
// of a node directly follows the node.
struct PrefixAutomaton::Trie {
  struct Node {
    std::uint32_t parent = 0;
    State state = kSparse;
    State failure = kRoot;
    std::uint16_t depth = 0;
    std::uint8_t byte_class = 0;
  };
  std::vector<Node> nodes;  // the first is the root
  std::vector<std::uint32_t> nodes_of_outputs;
  std::vector<std::uint32_t> by_depth;  // nodes, ordered by depth
  std::vector<std::size_t> levels;      // where each depth begins in `by_depth`; then the end
};

PrefixAutomaton::PrefixAutomaton(const std::vector<CompiledRow>& rows,
                                 const std::vector<std::int32_t>& members,
                                 std::size_t states_in_table) {
  NumberClasses(rows, members);
  Trie trie;
  Grow(rows, members, trie);
  NumberStates(states_in_table, trie);
  Link(trie);
}

void PrefixAutomaton::NumberClasses(const std::vector<CompiledRow>& rows,
                                    const std::vector<std::int32_t>& members) {
  for (const std::int32_t row : members) {
    const std::string_view prefix = rows[static_cast<std::size_t>(row)].prefix;
    longest_ = std::max(longest_, prefix.size());
    for (const char byte : prefix) classes_[static_cast<std::uint8_t>(byte)] = 1;
  }
  std::uint8_t count = 0;
  for (std::uint8_t& byte_class : classes_) {
    if (byte_class != 0) byte_class = ++count;  // 255 at most: no prefix holds a NUL
  }
  stride_ = count + 2U;
}

void PrefixAutomaton::Grow(const std::vector<CompiledRow>& rows,
                           const std::vector<std::int32_t>& members, Trie& trie) {
  const ReversedPrefixes reversed(rows, members, classes_);
  std::size_t nodes = 1;
  std::string_view last;
  for (const ReversedPrefixes::Prefix& prefix : reversed.prefixes) {
    nodes += prefix.bytes.size() - CommonBeginning(last, prefix.bytes);
    last = prefix.bytes;
  }
  trie.nodes.reserve(nodes);
  trie.nodes.emplace_back();
  outputs_.emplace_back();
  trie.nodes_of_outputs.push_back(0);
  std::vector<std::uint32_t> path(longest_ + 1);  // nodes on the way to the last prefix, by depth
  last = {};
  for (const ReversedPrefixes::Prefix& prefix : reversed.prefixes) {
    const std::size_t common = CommonBeginning(last, prefix.bytes);
    for (std::size_t depth = common; depth < prefix.bytes.size(); ++depth) {
      path[depth + 1] = static_cast<std::uint32_t>(trie.nodes.size());
      Trie::Node node;
      node.parent = path[depth];
      node.depth = static_cast<std::uint16_t>(depth + 1);
      node.byte_class = static_cast<std::uint8_t>(prefix.bytes[depth]);
      trie.nodes.push_back(node);
    }
    if (prefix.bytes != last) {
      Output output;
      output.attempts_begin = output.attempts_end = static_cast<std::uint32_t>(attempts_.size());
      outputs_.push_back(output);
      trie.nodes_of_outputs.push_back(path[prefix.bytes.size()]);
    }
    if (rows[static_cast<std::size_t>(prefix.row)].attempt == CompiledRow::kPlain) {
      outputs_.back().plain = prefix.row;
    } else {
      attempts_.push_back(prefix.row);
      ++outputs_.back().attempts_end;
    }
    last = prefix.bytes;
  }
}

void PrefixAutomaton::NumberStates(std::size_t states_in_table, Trie& trie) {
  std::vector<Trie::Node>& nodes = trie.nodes;
  trie.levels.resize(longest_ + 3);  // one empty level for the children of the deepest nodes
  for (const Trie::Node& node : nodes) ++trie.levels[node.depth + 1U];
  for (std::size_t i = 1; i < trie.levels.size(); ++i) trie.levels[i] += trie.levels[i - 1];
  std::vector<std::size_t> ends = trie.levels;
  trie.by_depth.resize(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    trie.by_depth[ends[nodes[i].depth]++] = static_cast<std::uint32_t>(i);
  }

  if (states_in_table == kBySize) {
    states_in_table = stride_ <= kSmallStride ? nodes.size() : kTableEntries / stride_;
  }
  const std::size_t dense =
      std::min({states_in_table, nodes.size(), std::size_t{kSparse} / stride_});
  for (std::size_t i = 0; i < dense; ++i) {
    nodes[trie.by_depth[i]].state = static_cast<State>(i * stride_);
  }
  table_.resize(dense * stride_);
  sparse_.resize(nodes.size() - dense);
  State next = kSparse;
  std::size_t edges = 0;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].state != kSparse) continue;
    nodes[i].state = next++;
    const bool is_first = nodes[i].parent + 1 == i;
    if ((nodes[nodes[i].parent].state & kSparse) != 0 && !is_first) ++edges;
  }
  edges_.resize(std::bit_ceil(edges * 2 + 1));
  for (std::size_t i = 1; i < outputs_.size(); ++i) {
    SetOutput(nodes[trie.nodes_of_outputs[i]].state, static_cast<std::uint32_t>(i));
  }
}

// Links the states level by level, from the root on. A state is linked by means of its failure
// state, which is nearer to the root and therefore already complete.
void PrefixAutomaton::Link(Trie& trie) {
  for (std::size_t depth = 0; depth <= longest_; ++depth) {
    for (std::size_t i = trie.levels[depth]; i < trie.levels[depth + 1] && depth > 0; ++i) {
      const Trie::Node& node = trie.nodes[trie.by_depth[i]];
      if ((node.state & kSparse) != 0) break;
      std::copy_n(table_.begin() + (node.failure & kIndexMask), stride_ - 1,
                  table_.begin() + (node.state & kIndexMask));
    }
    for (std::size_t i = trie.levels[depth + 1]; i < trie.levels[depth + 2]; ++i) {
      const std::uint32_t child = trie.by_depth[i];
      LinkToFailure(trie, child);
      const Trie::Node& node = trie.nodes[child];
      AddChild(trie.nodes[node.parent].state, node.parent + 1 == child, node.byte_class,
               node.state);
    }
  }
}

void PrefixAutomaton::LinkToFailure(Trie& trie, std::uint32_t node) {
  Trie::Node& here = trie.nodes[node];
  if (here.parent != 0) here.failure = Next(trie.nodes[here.parent].failure, here.byte_class);
  if ((here.state & kSparse) != 0) sparse_[here.state & kIndexMask].failure = here.failure;
  const std::uint32_t shorter = OutputOf(here.failure);
  const std::uint32_t own = OutputOf(here.state);
  if (own == 0) {
    SetOutput(here.state, shorter);
  } else {
    const Output& next = outputs_[shorter];
    Output& output = outputs_[own];
    if (output.plain == kNone) output.plain = next.plain;
    output.next = next.attempts_begin != next.attempts_end ? shorter : next.next;
  }
  if (own != 0 || shorter != 0) here.state |= kHasOutput;
}

void PrefixAutomaton::AddChild(State parent, bool is_first, std::uint8_t byte_class, State child) {
  const State index = parent & kIndexMask;
  if ((parent & kSparse) == 0) {
    table_[index + byte_class] = child;
    return;
  }
  if (is_first) {
    sparse_[index].first_class = byte_class;
    return;
  }
  sparse_[index].has_edges = true;
  std::size_t slot = Slot(index, byte_class);
  while (edges_[slot].to != kRoot) slot = (slot + 1) & (edges_.size() - 1);
  edges_[slot] = {index, child, byte_class};
}

std::size_t PrefixAutomaton::Slot(std::uint32_t from, std::uint8_t byte_class) const {
  return Mix(std::uint64_t{from} << 8 | byte_class) & (edges_.size() - 1);
}

// Returns the root if there is no such edge.
PrefixAutomaton::State PrefixAutomaton::FindEdge(std::uint32_t from,
                                                 std::uint8_t byte_class) const {
  for (std::size_t slot = Slot(from, byte_class);; slot = (slot + 1) & (edges_.size() - 1)) {
    const Edge& edge = edges_[slot];
    if (edge.to == kRoot || (edge.from == from && edge.byte_class == byte_class)) return edge.to;
  }
}

PrefixAutomaton::State PrefixAutomaton::NextOfSparse(State state, std::uint8_t byte_class) const {
  if (byte_class == 0) return kRoot;  // a leaf's first_class is 0, too, but means no child
  do {
    const State index = state & kIndexMask;
    const Sparse& here = sparse_[index];
    if (here.first_class == byte_class) {
      return (index + 1) | kSparse | (sparse_[index + 1].output != 0 ? kHasOutput : 0);
    }
    if (here.has_edges) {
      const State child = FindEdge(index, byte_class);
      if (child != kRoot) return child;
    }
    state = here.failure;
  } while ((state & kSparse) != 0);
  return table_[(state & kIndexMask) + byte_class];
}

void PrefixAutomaton::Find(const std::uint8_t* bytes, std::size_t count, std::size_t size,
                           std::vector<Found>& found) const {
  if (longest_ == 0) return;
  // At a byte that occurs in no prefix, the state is the root, whatever bytes stand behind that
  // byte. So the automaton can start in front of such a byte.
  const std::uint8_t* const end =
      std::find_if(bytes + count, bytes + std::min(size, count + longest_ - 1),
                   [this](std::uint8_t byte) { return classes_[byte] == 0; });
  State state = kRoot;
  for (const std::uint8_t* byte = end; byte > bytes + count; --byte) {
    state = Next(state, classes_[byte[-1]]);
  }
  std::array<Found, kBlock> block;
  for (std::size_t offset = count; offset > 0;) {
    const std::size_t begin = offset - std::min(offset, kBlock);
    std::size_t kept = 0;  // counted without a branch, which could not be predicted
    while (offset > begin) {
      --offset;
      state = Next(state, classes_[bytes[offset]]);
      block[kept] = {static_cast<std::uint32_t>(offset), state};
      kept += state / kHasOutput;
    }
    found.insert(found.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(kept));
  }
}

std::int32_t PrefixAutomaton::RowsAt(std::uint32_t state,
                                     std::vector<std::int32_t>& attempts) const {
  std::uint32_t index = OutputOf(state);
  const std::int32_t plain = outputs_[index].plain;
  for (; index != 0; index = outputs_[index].next) {
    const Output& output = outputs_[index];
    for (std::uint32_t i = output.attempts_begin; i < output.attempts_end; ++i) {
      if (plain == kNone || attempts_[i] < plain) attempts.push_back(attempts_[i]);
    }
  }
  if (attempts.size() > 1) std::sort(attempts.begin(), attempts.end());
  return plain;
}

}  // namespace morvex
