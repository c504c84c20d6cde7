#include "core/engine/key_index.h"

#include <algorithm>
#include <array>

namespace morvex {
namespace {

constexpr std::size_t kStepBytes = 8;  // the most of one step
constexpr std::size_t kLongRest = 4;   // shorter rests of keys are steps of their own length

// A filter that keeps within a core's first cache does for so many beginnings.
constexpr std::size_t kFewBeginnings = 2048;

constexpr std::size_t kCache = std::size_t{256} << 10;

const std::uint8_t* Bytes(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

// `count` bytes of the key from `depth` on, as Load64 gives them.
std::uint64_t KeyBytes(std::string_view key, std::size_t depth, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t i = count; i > 0; --i) {
    value = value << 8 | static_cast<std::uint8_t>(key[depth + i - 1]);
  }
  return value;
}

}  // namespace

BeginFilter::BeginFilter(const std::vector<std::string_view>& keys) {
  std::size_t shortest = kMostBytes;
  for (const std::string_view key : keys) shortest = std::min(shortest, key.size());
  last_load_ = shortest > sizeof(std::uint64_t) ? shortest - sizeof(std::uint64_t) : 0;
  mask_ = FirstBytesMask(std::min(shortest, sizeof(std::uint64_t)));
  is_large_ = keys.size() > kFewBeginnings;
  entries_.resize(std::size_t{1} << (is_large_ ? kLargeBits : kSmallBits));
  std::array<std::uint8_t, kMostBytes> begin{};
  for (const std::string_view key : keys) {
    std::copy_n(key.begin(), shortest, begin.begin());
    const std::uint64_t hash = Hash(begin.data());
    if (is_large_) {
      entries_[First<kLargeBits>(hash)] = entries_[Second<kLargeBits>(hash)] = 1;
    } else {
      entries_[First<kSmallBits>(hash)] = entries_[Second<kSmallBits>(hash)] = 1;
    }
  }
}

KeyIndex::KeyIndex(const std::vector<CompiledRow>& rows) : rows_(rows) {
  OrderRows();
  nodes_.emplace_back();
  std::vector<Waiting> waiting;
  if (!rows_by_key_.empty()) waiting.push_back({rows_by_key_, 0, 0});
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    const Waiting here = std::move(waiting[next]);
    FillNode(here, waiting);
  }
  FillTable();
}

// Sorts the rows and drops those that an earlier plain row forestalls: its key is the same or a
// beginning of theirs.
void KeyIndex::OrderRows() {
  Members sorted(rows_.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = static_cast<std::int32_t>(i);
  std::sort(sorted.begin(), sorted.end(), [this](std::int32_t a, std::int32_t b) {
    const int order = Key(a).compare(Key(b));
    return order != 0 ? order < 0 : a < b;
  });
  struct Prefix {
    std::string_view key;
    std::int32_t first_plain = kNone;  // of this key and all beginnings of it
  };
  std::vector<Prefix> prefixes;
  for (const std::int32_t row : sorted) {
    while (!prefixes.empty() && !Key(row).starts_with(prefixes.back().key)) prefixes.pop_back();
    std::int32_t first_plain = prefixes.empty() ? kNone : prefixes.back().first_plain;
    if (first_plain != kNone && first_plain < row) continue;
    if (IsPlain(row)) first_plain = row;
    prefixes.push_back({Key(row), first_plain});
    rows_by_key_.push_back(row);
  }
}

void KeyIndex::FillNode(const Waiting& here, std::vector<Waiting>& waiting) {
  const bool is_root = here.node == 0;
  std::size_t depth = here.depth;
  Node node;
  if (!is_root) {
    const std::string_view first = Key(here.members.front());
    const std::string_view last = Key(here.members.back());
    while (depth < first.size() && depth < last.size() && first[depth] == last[depth]) ++depth;
    node.label = Bytes(first) + here.depth;
    node.label_size = static_cast<std::uint32_t>(depth - here.depth);
    node.label_begin =
        KeyBytes(first, here.depth, std::min<std::size_t>(node.label_size, sizeof(std::uint64_t)));
  }
  node.attempts_begin = static_cast<std::uint32_t>(attempts_.size());
  std::array<Members, kLongRest> short_rests;  // by length
  Members long_rests;
  std::size_t step = kStepBytes;
  for (const std::int32_t row : here.members) {
    const std::size_t rest = Key(row).size() - depth;
    if (rest == 0) {
      if (IsPlain(row)) {
        node.plain = row;
      } else {
        attempts_.push_back(row);
      }
    } else if (rest < kLongRest) {
      short_rests[rest].push_back(row);
    } else {
      long_rests.push_back(row);
      step = std::min(step, rest);
    }
  }
  node.attempts_end = static_cast<std::uint32_t>(attempts_.size());
  nodes_[here.node] = node;
  for (std::size_t rest = 1; rest < kLongRest; ++rest) {
    AddSteps(short_rests[rest], depth, rest, here.node, waiting);
  }
  AddSteps(long_rests, depth, step, here.node, waiting);
}

void KeyIndex::AddSteps(const Members& members, std::size_t depth, std::size_t bytes,
                        std::uint32_t node, std::vector<Waiting>& waiting) {
  if (members.empty()) return;
  const std::size_t take = nodes_[node].take_count++;
  nodes_[node].takes[take] = static_cast<std::uint8_t>(bytes);
  if (node == 0) {
    std::vector<std::string_view> keys;
    for (const std::int32_t row : members) keys.push_back(Key(row));
    filters_.emplace_back(keys);
  }
  for (std::size_t at = 0; at < members.size();) {
    const std::uint64_t taken = KeyBytes(Key(members[at]), depth, bytes);
    nodes_[node].begins[take] |= BeginBit(taken);
    std::size_t end = at + 1;
    while (end < members.size() && KeyBytes(Key(members[end]), depth, bytes) == taken) ++end;
    const bool is_leaf =
        end == at + 1 && IsPlain(members[at]) && Key(members[at]).size() == depth + bytes;
    if (is_leaf) {
      steps_.push_back({taken, node, kLeaf | static_cast<std::uint32_t>(members[at])});
    } else {
      const auto to = static_cast<std::uint32_t>(nodes_.size());
      nodes_.emplace_back();
      steps_.push_back({taken, node, to});
      waiting.push_back({Members(members.begin() + static_cast<std::ptrdiff_t>(at),
                                 members.begin() + static_cast<std::ptrdiff_t>(end)),
                         depth + bytes, to});
    }
    at = end;
  }
}

void KeyIndex::FillTable() {
  const std::size_t size = std::bit_ceil(steps_.size() * 2 + 2);
  table_.resize(size);
  table_mask_ = size - 1;
  for (const Step& step : steps_) {
    std::size_t slot = Slot(step.bytes, step.from);
    while (table_[slot].bytes != 0) slot = (slot + 1) & (size - 1);
    table_[slot] = step;
  }
  std::vector<Step>().swap(steps_);
  is_large_ = size * sizeof(Step) + nodes_.size() * sizeof(Node) > kCache;
}

// Whether the node's label stands at `bytes`. No label holds a NUL, so a short one needs no look at
// the size.
inline bool KeyIndex::Continues(const Node& node, const std::uint8_t* bytes, std::size_t size) {
  if (node.label_size == 0) return true;
  const std::size_t begin = std::min<std::size_t>(node.label_size, sizeof(std::uint64_t));
  if ((Load64(bytes) & FirstBytesMask(begin)) != node.label_begin) return false;
  return node.label_size == begin ||
         (node.label_size <= size && std::memcmp(bytes, node.label, node.label_size) == 0);
}

std::int32_t KeyIndex::Walk(const std::uint8_t* bytes, std::size_t size,
                            std::vector<std::int32_t>& attempts) const {
  std::int32_t plain = kNone;
  std::uint32_t from = 0;
  for (bool goes_on = true; goes_on;) {
    goes_on = false;
    const Node& here = nodes_[from];
    const std::uint64_t ahead = Load64(bytes);
    for (std::uint32_t i = 0; i < here.take_count; ++i) {
      if ((here.begins[i] & BeginBit(ahead)) == 0) continue;
      const std::size_t taken = here.takes[i];
      const std::uint64_t wanted = ahead & FirstBytesMask(taken);
      if (wanted >> 8 * (taken - 1) == 0) continue;  // would be taken for a shorter step
      const Step* const step = FindStep(wanted, from);
      if (step == nullptr) continue;
      if ((step->to & kLeaf) != 0) {
        plain = static_cast<std::int32_t>(step->to & ~kLeaf);
        continue;
      }
      const Node& node = nodes_[step->to];
      // The step's bytes hold no NUL, so they lie in front of the end.
      if (!Continues(node, bytes + taken, size - taken)) continue;
      if (node.plain != kNone) plain = node.plain;
      if (node.attempts_begin != node.attempts_end) NoteAttempts(node, attempts);
      if (node.take_count == 0) continue;
      goes_on = true;
      from = step->to;
      bytes += taken + node.label_size;
      size -= taken + node.label_size;
    }
  }
  if (attempts.empty()) return plain;
  if (plain != kNone) {
    attempts.erase(std::remove_if(attempts.begin(), attempts.end(),
                                  [plain](std::int32_t row) { return row > plain; }),
                   attempts.end());
  }
  if (attempts.size() > 1) std::sort(attempts.begin(), attempts.end());
  return plain;
}

void KeyIndex::NoteAttempts(const Node& node, std::vector<std::int32_t>& attempts) const {
  attempts.insert(attempts.end(), attempts_.begin() + node.attempts_begin,
                  attempts_.begin() + node.attempts_end);
}

void KeyIndex::Prefetch(const std::uint8_t* bytes, const std::uint16_t* places, std::size_t count,
                        const RowEffect* effects) const {
  const Node& root = nodes_.front();
  if (!is_large_ || root.take_count == 0) return;
  const std::size_t first_take = root.takes[root.take_count - 1];
  const std::uint64_t mask = FirstBytesMask(first_take);
  for (std::size_t i = 0; i < count; ++i) {
    __builtin_prefetch(&table_[Slot(Load64(bytes + places[i]) & mask, 0)]);
  }
  constexpr std::uint32_t kNoNode = 0;
  std::array<std::uint32_t, kPrefetched> nodes{};
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t wanted = Load64(bytes + places[i]) & mask;
    const Step* const step = FindStep(wanted, 0);
    if (step == nullptr) continue;
    if ((step->to & kLeaf) != 0) {
      __builtin_prefetch(effects + (step->to & ~kLeaf));
    } else {
      nodes[i] = step->to;
      __builtin_prefetch(&nodes_[step->to]);
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (nodes[i] == kNoNode) continue;
    const Node& node = nodes_[nodes[i]];
    if (node.plain != kNone) __builtin_prefetch(effects + node.plain);
    if (node.take_count == 0 || node.label_size > sizeof(std::uint64_t)) continue;
    const std::uint64_t next = Load64(bytes + places[i] + first_take + node.label_size);
    for (std::uint32_t take = 0; take < node.take_count; ++take) {
      if ((node.begins[take] & BeginBit(next)) == 0) continue;
      __builtin_prefetch(&table_[Slot(next & FirstBytesMask(node.takes[take]), nodes[i])]);
    }
  }
}

}  // namespace morvex
